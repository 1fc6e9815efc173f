#include "objects/base/smnamedescobject2_002_000.h"

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

/** Opens the record of properties and texts, which only classes of the library send. */
class Described : public PlainNameDesc {
  public:
    using PlainNameDesc::PlainNameDesc;
    using PlainNameDesc::write_custom_property_locale;
};

class NameDescObject : public testing::Test {
  protected:
    ProjectPtr project = NewProject();
    QvSmartPtr<Described> object = new Described(project);

    bool IsStamped() const { return object->GetLastChangedDate().IsSet(); }
    void Unstamp() { object->SetLastChangedDate(QvDate(false)); }
};

using NameDescObjectModel = NameDescObject;
using NameDescObjectRows = NameDescObject;

}  // namespace

TEST_F(NameDescObjectModel, StampsADescriptionOfTheDefaultLocaleThatDiffers) {
    object->AddDescription("fr", "la");
    EXPECT_FALSE(IsStamped());
    object->AddDescription("EN", "the");
    EXPECT_TRUE(IsStamped());
    EXPECT_EQ(object->GetDescription(), "the");
    Unstamp();
    object->AddDescription("en", "the");
    EXPECT_FALSE(IsStamped());
}

TEST_F(NameDescObjectModel, SetsTheDescriptionOfTheDefaultLocale) {
    object->SetDescription("");
    EXPECT_TRUE(object->GetDescriptions().empty());
    EXPECT_FALSE(IsStamped());
    object->SetDescription("d");
    EXPECT_EQ(object->GetDescription("en"), "d");
    EXPECT_TRUE(IsStamped());
    Unstamp();
    object->SetDescription("d");
    EXPECT_FALSE(IsStamped());
}

TEST_F(NameDescObjectModel, NeverStampsAnAddedScreenTip) {
    object->AddScreenTip("en", "t");
    EXPECT_EQ(object->GetScreenTip(), "t");
    EXPECT_FALSE(IsStamped());
    object->ChangeDefaultScreenTip("t");
    EXPECT_FALSE(IsStamped());
    object->ChangeDefaultScreenTip("u");
    EXPECT_EQ(object->GetScreenTip(I18NString("en")), "u");
    EXPECT_TRUE(IsStamped());
}

TEST_F(NameDescObjectModel, SaysNoProjectWithoutOne) {
    const Described alone(nullptr);
    EXPECT_EQ(alone.GetDescription("en"), "No project");
    EXPECT_EQ(alone.GetScreenTip(I18NString("en")), "No project");
}

TEST_F(NameDescObjectModel, HasNoQueryItems) {
    EXPECT_TRUE(object->GetQueryItems().empty());
    EXPECT_EQ(&object->GetQueryItems(), &Described(nullptr).GetQueryItems());
}

// ---- rows

TEST_F(NameDescObjectRows, SendTextsOfTheDefaultLocale) {
    object->AddDescription("en", "d");
    object->AddScreenTip("en", "t");
    object->SetQvRef("w");
    RecordingContext context;
    object->write_no_seq_inc(context);
    const auto columns = context.Attributes(0);
    EXPECT_THAT(std::vector<std::string>(columns.end() - 4, columns.end()),
                ElementsAre("NAME S \"\"", "DESCRIPTION S \"d\"", "SCREENTIP S \"t\"", "WAREHOUSE_OBJECT_ID S \"w\""));
}

TEST_F(NameDescObjectRows, LeaveEmptyEntriesOfTheDefaultLocaleBehind) {
    RecordingContext context;
    object->write_no_seq_inc(context);
    ASSERT_EQ(object->GetDescriptions().size(), 1u);
    EXPECT_EQ(object->GetDescriptions().begin()->first, "en");
    EXPECT_EQ(object->GetDescriptions().begin()->second, "");
    EXPECT_EQ(object->GetScreenTips().size(), 1u);
    EXPECT_EQ(Printed([&](QvContentHandler* handler) { object->WriteLocaleMap(handler, "description", object->GetDescriptions()); }), "");
}

TEST_F(NameDescObjectRows, KeepAnEntryThatIsThereButNotTheDefaultText) {
    object->AddDescription("en", "before");
    object->AddScreenTip("en", "before");
    object->constructFromIOParameter(*Row().Text("description", "after").Text("screenTip", "after").Text("name", "n").Text("id", "i"));
    EXPECT_EQ(object->GetDescription("en"), "before");
    EXPECT_EQ(object->GetDescription(), "after");
    EXPECT_EQ(object->GetScreenTip(I18NString("en")), "before");
    EXPECT_EQ(object->GetScreenTip(), "after");
}

TEST_F(NameDescObjectRows, LogAMissingTextInTheirOwnWordsAndGoOn) {
    const CapturedLog log;
    object->constructFromIOParameter(*Row().Text("description", "d").Text("name", "n").Text("id", "i"));
    EXPECT_EQ(object->GetDescription(), "d");
    EXPECT_EQ(object->GetName(), "n");
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].module, "smnamedescobject");
    EXPECT_EQ(log.Events()[0].className, "SMNameDescObject2");
}

TEST_F(NameDescObjectRows, SendDescriptionsThenScreenTipsThenNames) {
    object->AddName("fr", "1");
    object->AddDescription("fr", "2");
    object->AddScreenTip("fr", "3");
    RecordingContext context;
    EXPECT_TRUE(object->write_lang_elements(context));
    std::vector<std::string> tags;
    for (std::size_t place = 0; place < 3; ++place) tags.push_back(context.Attributes(place)[3]);
    EXPECT_THAT(tags, ElementsAre("name S \"description\"", "name S \"screenTip\"", "name S \"name\""));
    for (std::size_t at = 1; at <= 3; ++at) {
        RecordingContext failing;
        failing.FailAt(at);
        EXPECT_FALSE(object->write_lang_elements(failing));
        EXPECT_EQ(failing.Actions().size(), at);
    }
}

TEST_F(NameDescObjectRows, KeepPropertiesAndOtherLocalesInOneRecord) {
    object->SetId("i");
    object->SetVersionNo(4);
    object->SetQvRef("not here");
    object->SetProperty("b", "t", "2");
    object->SetProperty("a", "", "1");
    object->AddName("en", "not here");
    object->AddName("fr", "n");
    object->AddName("de", "");
    object->AddDescription("EN", "not here");
    object->AddDescription("fr", "d");
    object->AddScreenTip("fr", "s");
    RecordingContext context;
    EXPECT_TRUE(object->write_custom_property_locale(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject"));
    EXPECT_THAT(context.Attributes(0),
                testing::Contains("value S \"<property name=\"a\">1</property><property name=\"b\" type=\"t\">2</property>"
                                  "<name locale=\"fr\">n</name><description locale=\"fr\">d</description>"
                                  "<screenTip locale=\"fr\">s</screenTip>\""));
}

TEST_F(NameDescObjectRows, SendNoEmptyRecord) {
    object->AddName("en", "n");
    object->AddName("fr", "");
    RecordingContext context;
    context.FailAt(1);
    EXPECT_TRUE(object->write_custom_property_locale(context));
    EXPECT_THAT(context.Names(), IsEmpty());
}
