#include "objects/base/smobjectbase_002_000.h"

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

class ObjectBase : public testing::Test {
  protected:
    ProjectPtr project = NewProject();
    QvSmartPtr<PlainObject> object = new PlainObject(project);

    std::string Properties() const { return Str(object->WritePropertiesToString()); }
};

using ObjectBaseModel = ObjectBase;
using ObjectBaseRows = ObjectBase;

}  // namespace

TEST_F(ObjectBaseModel, StartsBare) {
    EXPECT_EQ(object->GetId(), "");
    EXPECT_EQ(object->GetVersionNo(), 0);
    EXPECT_EQ(object->displayOrder, 0);
    EXPECT_FALSE(object->GetLastChangedDate().IsSet());
    EXPECT_EQ(object->GetModelType(), 9);
    EXPECT_EQ(object->BasicObjType(), 1);
    EXPECT_EQ(object->GetTagName(), "");
    EXPECT_EQ(object->GetNameForSMPath(), "");
    EXPECT_EQ(object->GetSMID(false), "");
    EXPECT_FALSE(object->IsFolder());
}

TEST_F(ObjectBaseModel, TakesIdVersionAndDateFromReservedProperties) {
    object->SetProperty("id", "anything", "the id");
    object->SetProperty("version", "", "12");
    object->SetProperty("lastChanged", "", "2001-02-03T04:05:06");
    EXPECT_EQ(object->GetId(), "the id");
    EXPECT_EQ(object->GetVersionNo(), 12);
    EXPECT_EQ(object->GetLastChangedDate().ToString(), "2001-02-03T04:05:06");
    EXPECT_EQ(Properties(), "");
}

TEST_F(ObjectBaseModel, DropsAVersionThatIsNoNumber) {
    const CapturedLog log;
    object->SetVersionNo(4);
    for (const char* text : {"abc", "", "-1", " 5", "1.0"}) object->SetProperty("version", "", text);
    EXPECT_EQ(object->GetVersionNo(), 4);
    EXPECT_EQ(object->GetProperty("version"), nullptr);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ObjectBaseModel, ReplacesAPropertyAlsoByNothing) {
    object->SetProperty("a", "type", "value");
    object->SetProperty("a", "", "");
    ASSERT_NE(object->GetProperty("a"), nullptr);
    EXPECT_EQ(object->GetProperty("a")->value, "");
    EXPECT_EQ(object->GetProperty("a")->type, "");
    EXPECT_EQ(object->GetProperty("b"), nullptr);
}

TEST_F(ObjectBaseModel, UpdatesAPropertyOnlyWithThreeTexts) {
    object->SetProperty("a", "type", "value");
    object->AddOrUpdateProperty("a", "type", "");
    object->AddOrUpdateProperty("a", "", "new");
    object->AddOrUpdateProperty("", "type", "new");
    EXPECT_EQ(Properties(), R"(<property name="a" type="type">value</property>)");
    object->AddOrUpdateProperty("a", "t", "new");
    EXPECT_EQ(Properties(), R"(<property name="a" type="t">new</property>)");
}

TEST_F(ObjectBaseModel, UpdatesReservedNamesAsIfTheyWereNone) {
    object->SetId("kept");
    object->AddOrUpdateProperty("id", "type", "other");
    EXPECT_EQ(object->GetId(), "kept");
    EXPECT_EQ(object->GetProperty("id")->value, "other");
}

TEST_F(ObjectBaseModel, HidesAPropertyByItsType) {
    object->SetHiddenProperty("a", "1");
    EXPECT_EQ(object->GetProperty("a")->type, "hidden");
    object->SetHiddenProperty("id", "2");
    EXPECT_EQ(object->GetId(), "2");
}

TEST_F(ObjectBaseModel, DoesNotStampForProperties) {
    object->SetProperty("a", "b", "c");
    object->AddOrUpdateProperty("a", "b", "d");
    EXPECT_FALSE(object->GetLastChangedDate().IsSet());
}

TEST_F(ObjectBaseModel, ReadsItsDateByPattern) {
    EXPECT_EQ(SMObjectBase::GetSMDateFormat(), "yyyy-MM-dd'T'HH:mm:ss");
    object->SetSMLastChangedDate("2010-11-12T13:14:15");
    EXPECT_EQ(object->GetLastChangedDate().ToString(), "2010-11-12T13:14:15");
    object->SetSMLastChangedDate("yesterday");
    EXPECT_FALSE(object->GetLastChangedDate().IsSet());
    object->SetLastChangedDateToNow();
    EXPECT_TRUE(object->GetLastChangedDate().IsSet());
}

TEST_F(ObjectBaseModel, GetsANewIdAlone) {
    object->SetId("old");
    object->RegenerateIds();
    const QvULString first = object->GetId();
    EXPECT_EQ(first.length(), 36);
    object->RegenerateIds();
    EXPECT_LT(first, object->GetId());
}

TEST_F(ObjectBaseModel, HasAParentOnlyAmongModelObjects) {
    EXPECT_EQ(object->GetParentSMObj(), nullptr);
    HostObject host;
    const PlainObject below(project, &host), deeper(project, object);
    EXPECT_EQ(below.GetParentSMObj(), nullptr);
    EXPECT_EQ(deeper.GetParentSMObj(), object.get());
}

TEST_F(ObjectBaseModel, OutlivesItsProjectAndItsParent) {
    QvSmartPtr<PlainObject> child = new PlainObject(project, project);
    project = nullptr;
    EXPECT_EQ(child->GetSMProject(), nullptr);
    EXPECT_EQ(child->GetParentSMObj(), nullptr);
}

TEST(DisplayOrder, IsLessByNumberAndNeverForNull) {
    PlainObject a(nullptr), b(nullptr);
    a.displayOrder = 1;
    b.displayOrder = 2;
    EXPECT_TRUE(DisplayOrderSort(&a, &b));
    EXPECT_FALSE(DisplayOrderSort(&b, &a));
    EXPECT_FALSE(DisplayOrderSort(&a, &a));
    EXPECT_FALSE(DisplayOrderSort(nullptr, &a));
    EXPECT_FALSE(DisplayOrderSort(&a, nullptr));
    EXPECT_FALSE(DisplayOrderSort(nullptr, nullptr));
}

TEST(DisplayOrder, LosesTheFirstItemOfAnId) {
    PlainObject a(nullptr), b(nullptr), c(nullptr);
    a.SetId("1");
    b.SetId("2");
    c.SetId("2");
    std::vector<SMObjectBase*> items = {&a, nullptr, &b, &c};
    RemoveDisplayOrderItemById(items, "2");
    EXPECT_THAT(items, ElementsAre(&a, nullptr, &c));
    RemoveDisplayOrderItemById(items, "none");
    EXPECT_EQ(items.size(), 3u);
}

// ---- rows

TEST_F(ObjectBaseRows, SendsItsKeysAndItsDate) {
    project->SetId("p");
    project->SetVersionNo(2);
    PlainObject child(project, project);
    child.SetId("c");
    child.SetVersionNo(5);
    child.SetSMLastChangedDate("2001-02-03T04:05:06");
    child.displayOrder = 9;
    RecordingContext context;
    EXPECT_TRUE(child.write_no_seq_inc(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_PLAIN"));
    EXPECT_THAT(LinesOf(*context.Actions()[0].params),
                ElementsAre("attributes {PLAIN_ID S \"c\", PLAIN_VERSION L 5, OWNER_ID S \"p\", OWNER_VERSION L 2, LASTCHANGED D "
                            "2001-02-03T04:05:06}",
                            "history_attributes {}", "table_name S \"SM_PLAIN\"", "object S \"SM_PLAIN\""));
}

TEST_F(ObjectBaseRows, FailsWithItsInsert) {
    RecordingContext context;
    context.FailAt(1);
    EXPECT_FALSE(object->write_no_seq_inc(context));
}

TEST_F(ObjectBaseRows, ReadsTheKeysOfEveryRow) {
    const CapturedLog log;
    object->constructFromIOParameter(
        *Row().Text("id", "x").Number("version", 3).Date("lastChanged", "2001-02-03T04:05:06").Number("display_order", 7));
    EXPECT_EQ(object->GetId(), "x");
    EXPECT_EQ(object->GetVersionNo(), 3);
    EXPECT_EQ(object->GetLastChangedDate().ToString(), "2001-02-03T04:05:06");
    EXPECT_EQ(object->displayOrder, 7);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ObjectBaseRows, StampsARowWithoutADate) {
    object->constructFromIOParameter(*Row().Text("id", "x"));
    EXPECT_TRUE(object->GetLastChangedDate().IsSet());
}

TEST_F(ObjectBaseRows, TakesANullDateAsUnset) {
    object->SetLastChangedDateToNow();
    object->constructFromIOParameter(*Row().Text("id", "x").Put("lastChanged", new QvDateParam()));
    EXPECT_FALSE(object->GetLastChangedDate().IsSet());
}

TEST_F(ObjectBaseRows, KeepsNumbersThatARowHasAsNull) {
    object->SetVersionNo(4);
    object->displayOrder = 5;
    object->constructFromIOParameter(*Row().Text("id", "x").Put("version", IOLongParam::Null()).Put("display_order", IOLongParam::Null()));
    EXPECT_EQ(object->GetVersionNo(), 4);
    EXPECT_EQ(object->displayOrder, 5);
}

TEST_F(ObjectBaseRows, LogsARowWithoutAnIdAndStops) {
    const CapturedLog log;
    object->constructFromIOParameter(*Row().Number("version", 3));
    EXPECT_EQ(object->GetVersionNo(), 0);
    ASSERT_EQ(log.Events().size(), 1u);
    const LoggedEvent& event = log.Events()[0];
    EXPECT_EQ(event.level, 1);
    EXPECT_EQ(event.module, "smobjectbase");
    EXPECT_EQ(event.className, "SMObjectBase");
    EXPECT_EQ(event.method, "constructFromIOParameter");
    EXPECT_THAT(event.message, testing::MatchesRegex("Error reading object\\. Message: .*id.*"));
    EXPECT_THAT(event.detail, testing::StartsWith("Probably a missing parameter: "));
    EXPECT_THAT(event.detail, testing::HasSubstr("version"));
}

namespace {

class MappingContext : public IOHelper {
  public:
    QvSmartPtr<IOParameter> GetObjectMapping(const QvULString& tag) const override {
        if (!(tag == "known")) return nullptr;
        const QvSmartPtr<IOHashParam> mapping = new IOHashParam, attributes = new IOHashParam, properties = new IOHashParam;
        attributes->insertOrReplace("id", new IOQvStringParam);
        properties->insertOrReplace("qvref", new IOQvStringParam);
        mapping->insertOrReplace(IOParamTag::SMPROPERTYELEMENT, properties);
        mapping->insertOrReplace(IOParamTag::SMATTRIBUTE, attributes);
        mapping->insertOrReplace(IOParamTag::SMSIMPLEELEMENT, new IOQvStringParam("no keyed collection"));
        mapping->insertOrReplace(IOParamTag::XML_ELEMENT_ORDER, new IOLongParam(5));
        mapping->insertOrReplace(IOParamTag::OBJECT_TYPE, new IOQvStringParam("x"));
        return mapping.get();
    }
};

}  // namespace

TEST_F(ObjectBaseRows, AsksForTheKeysOfTheMapping) {
    object->SetId("me");
    object->SetVersionNo(2);
    EXPECT_THAT(LinesOf(*object->PrepareReadAttributes(MappingContext(), "known")),
                ElementsAre("object S \"known\"", "table_name S \"\"", "history_attributes {}",
                            "clauses {xml_element_parent_id S \"me\", xml_element_parent_version L 2}",
                            "attributes {id S \"\", qvref S \"\", display_order L 0, object_type S \"\"}"));
}

TEST_F(ObjectBaseRows, AsksWithoutKeysForAnUnknownKind) {
    EXPECT_THAT(LinesOf(*object->PrepareReadAttributes(MappingContext(), "unknown")), testing::Contains("attributes {}"));
}
