#include "objects/base/smnamedobject2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class NamedObject : public testing::Test {
  protected:
    ProjectPtr project = NewProject();
    QvSmartPtr<PlainNamed> object = new PlainNamed(project);

    std::string Names() const {
        return Printed([&](QvContentHandler* handler) { object->WriteLocaleMap(handler, "name", object->GetNames()); });
    }
    bool IsStamped() const { return object->GetLastChangedDate().IsSet(); }
};

using NamedObjectModel = NamedObject;
using NamedObjectXml = NamedObject;
using NamedObjectRows = NamedObject;
using NamedObjectFiles = NamedObject;

}  // namespace

TEST_F(NamedObjectModel, TakesTheDefaultNameInAnySpellingOfTheLocale) {
    object->AddName("EN", "name");
    EXPECT_EQ(object->GetName(), "name");
    EXPECT_EQ(object->GetNameForSMPath(), "name");
    EXPECT_FALSE(IsStamped());
}

TEST_F(NamedObjectModel, KeepsNamesOfOtherLocalesApart) {
    object->AddName("fr", "nom");
    EXPECT_EQ(object->GetName(), "");
    EXPECT_EQ(object->GetName("fr"), "nom");
    object->AddName("FR", "autre");
    EXPECT_EQ(object->GetNames().size(), 1u);
    EXPECT_EQ(object->GetNames().begin()->first, "fr");
    EXPECT_EQ(object->GetName("F-R"), "autre");
}

TEST_F(NamedObjectModel, TakesATextOfItsOwn) {
    for (const char* const locale : {"fr", "en", "de"}) object->AddName(locale, "text");
    object->AddName("es", object->GetName("en"));  // the entries move
    object->AddName("it", object->GetName("de"));  // and find another place
    EXPECT_EQ(object->GetName("es"), "text");
    EXPECT_EQ(object->GetName("it"), "text");
}

TEST_F(NamedObjectModel, FallsBackToNothing) {
    object->AddName("en", "name");
    EXPECT_EQ(object->GetName("de"), "");
    EXPECT_EQ(object->GetName(""), "name");
}

TEST_F(NamedObjectModel, AsksTheProjectForTheDefaultLocaleEachTime) {
    object->AddName("en", "name");
    object->AddName("fr", "nom");
    project->SetDefaultLocale("fr");
    EXPECT_EQ(object->GetName(""), "nom");
    EXPECT_EQ(object->GetName(), "name") << "the field of its own stays";
}

TEST_F(NamedObjectModel, SaysNoProjectWithoutOne) {
    PlainNamed alone(nullptr);
    alone.AddName("en", "name");
    EXPECT_EQ(alone.GetName("en"), "No project");
    EXPECT_EQ(alone.GetName(""), "No project");
    EXPECT_EQ(alone.GetName(), "");
    EXPECT_EQ(alone.GetNames().size(), 1u);
}

TEST_F(NamedObjectModel, StampsAChangedDefaultNameOnly) {
    object->ChangeDefaultName("");
    EXPECT_TRUE(object->GetNames().empty());
    EXPECT_FALSE(IsStamped());
    object->ChangeDefaultName("name");
    EXPECT_EQ(object->GetName("en"), "name");
    EXPECT_TRUE(IsStamped());
    object->SetLastChangedDate(QvDate(false));
    object->ChangeDefaultName("name");
    EXPECT_FALSE(IsStamped());
}

TEST_F(NamedObjectModel, TakesItsWarehouseLinkFromAProperty) {
    object->SetProperty("qvref", "whatever", "w");
    EXPECT_EQ(object->GetQvRef(), "w");
    EXPECT_EQ(object->GetProperty("qvref"), nullptr);
    object->SetProperty("other", "t", "v");
    EXPECT_EQ(object->GetProperty("other")->value, "v");
}

TEST_F(NamedObjectModel, MapsItsLinksWhenItGetsANewId) {
    object->SetId("old");
    object->SetQvRef("a");
    object->SetProperty("erpDatasourceRef", "visible", "b");
    std::map<QvULString, QvULString> ids = {{"a", "1"}, {"b", "2"}};
    object->RegenerateIds(ids);
    EXPECT_EQ(object->GetQvRef(), "1");
    EXPECT_EQ(object->GetProperty("erpDatasourceRef")->value, "2");
    EXPECT_EQ(object->GetProperty("erpDatasourceRef")->type, "hidden");
    EXPECT_EQ(object->GetId().length(), 36);
}

TEST_F(NamedObjectModel, KeepsLinksThatTheMapDoesNotKnow) {
    object->SetQvRef("a");
    object->SetProperty("erpDatasourceRef", "visible", "b");
    std::map<QvULString, QvULString> ids = {{"", "1"}, {"c", "2"}};
    object->RegenerateIds(ids);
    EXPECT_EQ(object->GetQvRef(), "a");
    EXPECT_EQ(object->GetProperty("erpDatasourceRef")->type, "visible");
}

TEST_F(NamedObjectModel, KeepsALinkThatIsMappedToNothing) {
    object->SetProperty("erpDatasourceRef", "visible", "b");
    std::map<QvULString, QvULString> ids = {{"b", ""}};
    object->RegenerateIds(ids);
    EXPECT_EQ(object->GetProperty("erpDatasourceRef")->value, "b");
}

// ---- document

TEST_F(NamedObjectXml, WritesTheHighestLocaleFirstAndNoEmptyText) {
    object->AddName("en", "n");
    object->AddName("fr", "m");
    object->AddName("de", "");
    EXPECT_EQ(Names(), R"(<name locale="fr">m</name><name locale="en">n</name>)");
}

TEST_F(NamedObjectXml, WritesTheWarehouseLinkFirstAndHidden) {
    object->SetId("i");
    object->SetProperty("a", "", "v");
    const auto properties = [&](bool hidden) {
        return Printed([&](QvContentHandler* handler) { object->WriteProperties(handler, hidden); });
    };
    EXPECT_EQ(properties(false), R"(<property name="a">v</property>)");
    object->SetProperty("qvref", "visible", "w");
    EXPECT_EQ(properties(false), R"(<property name="qvref" type="hidden">w</property><property name="a">v</property>)");
    EXPECT_EQ(properties(true), R"(<property name="qvref" type="hidden">w</property><property name="id" type="hidden">i</property>)"
                                R"(<property name="version" type="hidden">0</property><property name="a">v</property>)");
}

// ---- rows

TEST_F(NamedObjectRows, SendsTheDefaultName) {
    object->AddName("en", "n");
    object->AddName("fr", "m");
    object->SetQvRef("w");
    RecordingContext context;
    object->write_no_seq_inc(context);
    EXPECT_EQ(context.Attributes(0).back(), "NAME S \"n\"");
}

TEST_F(NamedObjectRows, ReadsNameAndLink) {
    const CapturedLog log;
    object->constructFromIOParameter(*Row().Text("name", "n").Text("qvref", "w").Text("id", "i"));
    EXPECT_EQ(object->GetName(), "n");
    EXPECT_EQ(object->GetName("en"), "n");
    EXPECT_EQ(object->GetQvRef(), "w");
    EXPECT_EQ(object->GetId(), "i");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(NamedObjectRows, OverwritesANameButNotByNothing) {
    object->AddName("en", "before");
    object->constructFromIOParameter(*Row().Text("name", "").Text("id", "i").Put("qvref", IOQvStringParam::Null()));
    EXPECT_EQ(object->GetName(), "before");
    object->constructFromIOParameter(*Row().Text("name", "after").Text("id", "i"));
    EXPECT_EQ(object->GetName("en"), "after");
}

TEST_F(NamedObjectRows, LogsAMissingNameAndReadsTheRestOfTheBase) {
    const CapturedLog log;
    object->constructFromIOParameter(*Row().Text("id", "i").Text("qvref", "w"));
    EXPECT_EQ(object->GetId(), "i");
    EXPECT_EQ(object->GetQvRef(), "") << "what follows the missing key stays unread";
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].module, "smnamedobject");
    EXPECT_EQ(log.Events()[0].className, "SMNamedObject2");
    EXPECT_EQ(log.Events()[0].method, "constructFromIOParameter");
    EXPECT_THAT(log.Events()[0].message, testing::StartsWith("Error reading object. Message: "));
    EXPECT_THAT(log.Events()[0].detail, testing::StartsWith("Probably a missing parameter: "));
}

TEST_F(NamedObjectRows, SendsTextsOfOtherLocalesOnly) {
    object->SetId("i");
    object->SetVersionNo(2);
    object->AddName("en", "n");
    RecordingContext context;
    EXPECT_TRUE(object->write_lang_elements(context));
    EXPECT_THAT(context.Names(), IsEmpty());
    object->AddName("fr", "");
    EXPECT_TRUE(object->write_lang_elements(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_WriteLangText"));
    EXPECT_THAT(context.Attributes(0), ElementsAre("xml_element_id S \"i\"", "xml_element_version L 2", "xml_element_locale S \"fr\"",
                                                   "name S \"name\"", "value S \"\""))
        << "empty texts are sent";
}

TEST_F(NamedObjectRows, TakesAnotherSpellingOfTheDefaultLocaleForAnotherLocale) {
    project->SetDefaultLocale("en-us");
    object->AddName("en_us", "n");
    object->AddName("EN-US", "n");
    RecordingContext context;
    EXPECT_TRUE(object->write_lang_elements(context));
    EXPECT_EQ(context.Names().size(), 1u) << "the map holds one entry, under the first spelling";
    EXPECT_EQ(object->GetName(), "n");
}

TEST_F(NamedObjectRows, StopsAtTheFirstTextThatFails) {
    object->AddName("fr", "1");
    object->AddName("de", "2");
    object->AddName("it", "3");
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(object->write_lang_elements(context));
    EXPECT_EQ(context.Names().size(), 2u);
}

// ---- files of their own

TEST_F(NamedObjectFiles, AreNotForEveryClass) {
    const CapturedLog log;
    EXPECT_EQ(object->GetFileExtension(), "");
    EXPECT_EQ(object->GetPlaceholderTag(), "");
    EXPECT_EQ(object->WriteWhat(), 2);
    I18NString text;
    QvStringWriter target(text);
    object->WriteXMLEmptyPlaceholder(nullptr, nullptr, target);
    const char* const message =
        "This method should have been implemented in the subclass for any objects that can be MultiFileHelper "
        "break objects.";
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smnamedobject2", "SMNamedObject2", "GetFileExtension", message, ""},
                                          LoggedEvent{4, "smnamedobject2", "SMNamedObject2", "GetPlaceHolderTag", message, ""},
                                          LoggedEvent{4, "smnamedobject", "SMNamedObject2", "WriteXMLEmptyPlaceholder",
                                                      "Method not implemented in this object.", ""}));
}
