// The records of XML that have no column.
#include <gmock/gmock.h>

#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** A row of remaining info as a store gives it. */
Row Record(const char* tag, const char* value, long version = 5, long parentVersion = 2) {
    return Row()
        .Text("xml_element_id", (std::string("i/") + tag).c_str())
        .Number("xml_element_version", version)
        .Number("xml_element_parent_version", parentVersion)
        .Text("name", tag)
        .Text("value", value);
}

class RemainingInfo : public testing::Test {
  protected:
    RemainingInfo() {
        object->SetId("i");
        object->SetVersionNo(2);
    }
    bool Write(const char* text) { return object->write_remaining_info(context, "tag", text, version); }
    /** The parts of the last record sent that tell its state. */
    std::string Sent() {
        const auto& actions = context.Actions();
        if (actions.size() < 2) return "";
        const auto columns = context.Attributes(actions.size() - 2);
        return columns[1] + ", " + columns[3] + ", " + columns[6];
    }
    bool ReadKept(QvSmartPtr<SMXMLObject2>& result, const char* tag) {
        return object->read_remaining_info_into_smxmlobject(context, object, result, tag);
    }
    bool ReadInto(std::map<QvULString, long*> wanted) {
        SMNestedObjectBuilder builder(object);
        return object->read_remaining_info_into_builder(context, object, &builder, wanted);
    }

    ProjectPtr project = NewProject();
    QvSmartPtr<PlainNested> object = new PlainNested(project);
    RecordingContext context;
    CapturedLog log;
    long version = 77;
};

using RemainingInfoWrite = RemainingInfo;
using RemainingInfoRead = RemainingInfo;

LoggedEvent Misuse(const char* method, const char* message) {
    return {4, "smobjectbase", "SMObjectBase", method, message, ""};
}

}  // namespace

TEST_F(RemainingInfoWrite, SendsANewRecordAsVersionOne) {
    EXPECT_TRUE(Write("<tag/>"));
    EXPECT_EQ(version, 1);
    EXPECT_THAT(context.Names(), ElementsAre("AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject"));
    EXPECT_THAT(LinesOf(*context.Actions()[0].params),
                ElementsAre("attributes {xml_element_id S \"i/tag\", xml_element_version L 1, xml_element_parent_id S \"i\", "
                            "xml_element_parent_version L 2, xml_element_type L 6, name S \"tag\", value S \"<tag/>\", display_order L 0}",
                            "history_attributes {xml_element_version L 0, xml_element_parent_version L 2}",
                            "table_name S \"SM_REMAIN_INFO\"", "object S \"SM_REMAIN_INFO\""));
}

TEST_F(RemainingInfoWrite, SendsNothingThatIsKnown) {
    context.records["i/tag"] = {4, 2, "<tag/>"};
    EXPECT_TRUE(Write("<tag/>"));
    EXPECT_EQ(version, 4);
    EXPECT_THAT(context.Names(), IsEmpty());
}

TEST_F(RemainingInfoWrite, SendsANewTextAsTheNextVersion) {
    context.records["i/tag"] = {4, 2, "<tag/>"};
    EXPECT_TRUE(Write("<tag>new</tag>"));
    EXPECT_EQ(version, 5);
    EXPECT_EQ(Sent(), "xml_element_version L 5, xml_element_parent_version L 2, value S \"<tag>new</tag>\"");
}

TEST_F(RemainingInfoWrite, SendsTheSameTextForANewVersionOfTheOwner) {
    context.records["i/tag"] = {4, 1, "<tag/>"};
    EXPECT_TRUE(Write("<tag/>"));
    EXPECT_EQ(Sent(), "xml_element_version L 5, xml_element_parent_version L 2, value S \"<tag/>\"");
}

TEST_F(RemainingInfoWrite, SendsEverythingWhileRecordsAreRepaired) {
    context.records["i/tag"] = {4, 2, "<tag/>"};
    context.SetFixingLostRemainingInfo(true);
    EXPECT_TRUE(Write("<tag/>"));
    EXPECT_EQ(version, 5);
}

TEST_F(RemainingInfoWrite, FailsWithEitherStepAndKeepsTheNumber) {
    for (const std::size_t at : {1u, 2u}) {
        RecordingContext failing;
        failing.FailAt(at);
        long number = 77;
        EXPECT_FALSE(object->write_remaining_info(failing, "tag", "<tag/>", number));
        EXPECT_EQ(number, 1);
        EXPECT_EQ(failing.Actions().size(), at);
    }
}

TEST_F(RemainingInfoWrite, TakesTagTextAndVersionOfKeptXml) {
    SMXMLObject2 kept("kept", "x", true);
    context.records["i/kept"] = {8, 1, ""};
    EXPECT_TRUE(object->write_remaining_info(context, &kept));
    EXPECT_EQ(kept.version, 9);
    EXPECT_EQ(Sent(), "xml_element_version L 9, xml_element_parent_version L 2, value S \"<kept>x</kept>\"");
}

// ---- reading kept XML

TEST_F(RemainingInfoRead, AsksForTheRecordsOfTheOwner) {
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    EXPECT_THAT(context.Names(), ElementsAre("AT_ReadRemainingInfo"));
    EXPECT_THAT(LinesOf(*context.Actions()[0].params),
                ElementsAre("clauses {xml_element_parent_id S \"i\", xml_element_parent_version L 2}"));
    EXPECT_EQ(result.get(), nullptr);
}

TEST_F(RemainingInfoRead, TakesTheFirstRecordOfTheTag) {
    context.answers = {{Record("other", "<o/>"), Record("tag", "<tag>1</tag>"), Record("tag", "<tag>2</tag>")}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    ASSERT_NE(result.get(), nullptr);
    EXPECT_STREQ(result->buffer.str(), "<tag>1</tag>");
    EXPECT_EQ(result->tagName, "tag");
    EXPECT_EQ(result->version, 5);
    ASSERT_EQ(context.records.size(), 1u);
    EXPECT_EQ(context.records["i/tag"].version, 5);
    EXPECT_EQ(context.records["i/tag"].parentVersion, 2);
    EXPECT_EQ(context.records["i/tag"].value, "<tag>1</tag>");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(RemainingInfoRead, EndsAtAnEmptyRecordOfTheTag) {
    context.answers = {{Record("tag", ""), Record("tag", "<tag>2</tag>")}};
    QvSmartPtr<SMXMLObject2> result = new SMXMLObject2("before");
    EXPECT_TRUE(ReadKept(result, "tag"));
    EXPECT_EQ(result.get(), nullptr);
}

TEST_F(RemainingInfoRead, SkipsARecordWithoutAValue) {
    const Row bare = Row().Text("name", "tag").Number("xml_element_parent_version", 2);
    context.answers = {{bare, Record("tag", "<tag>2</tag>")}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    EXPECT_STREQ(result->buffer.str(), "<tag>2</tag>");
}

TEST_F(RemainingInfoRead, PassesOverRecordsOfOtherVersionsOfTheOwner) {
    const Row noVersion = Row().Text("name", "tag").Text("value", "<tag>0</tag>");
    context.answers = {{noVersion, Record("tag", "<tag>1</tag>", 5, 1), Record("tag", "<tag>2</tag>", 6, 2)}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    EXPECT_STREQ(result->buffer.str(), "<tag>2</tag>");
    EXPECT_THAT(log.Events(),
                ElementsAre(Misuse("read_remaining_info_into_smxmlobject", "No parent_version column in remaining info result set.")));
}

TEST_F(RemainingInfoRead, TakesRecordsOfAnyVersionWhileTheyAreRepaired) {
    context.SetFixingLostRemainingInfo(true);
    context.answers = {{Record("tag", "<tag>1</tag>", 5, 1)}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    ASSERT_NE(result.get(), nullptr);
    EXPECT_EQ(context.records["i/tag"].parentVersion, 2) << "noted under the owner's version";
}

TEST_F(RemainingInfoRead, TakesARecordWithoutAnIdWithoutNotingIt) {
    const Row row =
        Row().Text("name", "tag").Text("value", "<tag/>").Number("xml_element_parent_version", 2).Number("xml_element_version", 9);
    context.answers = {{row}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    ASSERT_NE(result.get(), nullptr);
    EXPECT_EQ(result->version, 9);
    EXPECT_TRUE(context.records.empty());
    EXPECT_THAT(log.Events(), ElementsAre(Misuse("read_remaining_info_into_smxmlobject", "Unable to find an ID for remaining info.")));
}

TEST_F(RemainingInfoRead, TakesARecordWithoutAVersionAsTheFirst) {
    const Row row =
        Row().Text("name", "tag").Text("value", "<tag/>").Number("xml_element_parent_version", 2).Text("xml_element_id", "i/tag");
    context.answers = {{row}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    ASSERT_NE(result.get(), nullptr);
    EXPECT_EQ(result->version, 1);
    EXPECT_TRUE(context.records.empty());
    EXPECT_THAT(log.Events(), ElementsAre(Misuse("read_remaining_info_into_smxmlobject", "Unable to find a version for remaining info.")));
}

TEST_F(RemainingInfoRead, FailsWithItsAction) {
    context.FailAt(1);
    QvSmartPtr<SMXMLObject2> result = new SMXMLObject2("before");
    EXPECT_FALSE(ReadKept(result, "tag"));
    EXPECT_EQ(result.get(), nullptr);
}

// ---- replaying into a builder

TEST_F(RemainingInfoRead, ReplaysSiblingsIntoTheBuilder) {
    context.answers = {{Record("unwanted", "<name locale='en'>no</name>"),
                        Record("property", "<property name='a'>1</property><name locale='en'>yes</name>")}};
    EXPECT_TRUE(ReadInto({{"property", &version}}));
    EXPECT_EQ(object->GetName(), "yes");
    EXPECT_EQ(object->GetProperty("a")->value, "1");
    EXPECT_EQ(version, 5);
    EXPECT_EQ(context.records.size(), 1u);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(RemainingInfoRead, LeavesTheBuilderAloneWithoutAWantedRecord) {
    context.answers = {{Record("unwanted", "<name locale='en'>no</name>")}};
    EXPECT_TRUE(ReadInto({{"property", &version}}));
    EXPECT_EQ(object->GetName(), "");
    EXPECT_EQ(version, 77);
    EXPECT_TRUE(context.records.empty());
}

TEST_F(RemainingInfoRead, TakesTheVersionOfAnEmptyRecord) {
    context.answers = {{Record("property", "", 3)}};
    EXPECT_TRUE(ReadInto({{"property", &version}}));
    EXPECT_EQ(version, 3);
}

TEST_F(RemainingInfoRead, FailsWithARecordThatDoesNotParse) {
    context.answers = {{Record("property", "<name locale='en'>read</name><name locale='fr'>cut")}};
    EXPECT_FALSE(ReadInto({{"property", &version}}));
    EXPECT_EQ(object->GetName(), "read") << "what came before stays";
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].method, "read_remaining_info_into_builder");
}

TEST_F(RemainingInfoRead, ComesBackAsItWasSent) {
    StoreContext store;
    object->AddName("fr", "nom");
    object->SetProperty("a", "t", "1");
    I18NString text = object->WritePropertiesToString() + "<name locale=\"fr\">nom</name>";
    long first = 0;
    ASSERT_TRUE(object->write_remaining_info(store, "property", text, first));
    const QvSmartPtr<PlainNested> other = new PlainNested(project);
    other->SetId("i");
    other->SetVersionNo(2);
    SMNestedObjectBuilder builder(other);
    EXPECT_TRUE(other->read_custom_property_locale(store, other, &builder));
    EXPECT_EQ(other->GetName("fr"), "nom");
    EXPECT_EQ(other->WritePropertiesToString(), object->WritePropertiesToString());
}

TEST_F(RemainingInfoRead, LooksAtNoRecordBehindTheOneOfItsTag) {
    context.answers = {{Record("tag", "<tag></tag>"), Row().Text("name", "tag")}};
    QvSmartPtr<SMXMLObject2> result;
    EXPECT_TRUE(ReadKept(result, "tag"));
    EXPECT_TRUE(result);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(RemainingInfoRead, FailsWithAValueOfAnotherKind) {
    const std::vector<QvSmartPtr<IOParameter>> rows = {
        Record("tag", "<tag></tag>").Text("xml_element_parent_version", "2"), Record("tag", "<tag></tag>").Text("xml_element_version", "5"),
        Record("tag", "<tag></tag>").Number("xml_element_id", 1), Record("tag", "<tag></tag>").Number("name", 1),
        Record("tag", "").Number("value", 1)};
    for (const auto& row : rows) {
        for (const char* method : {"read_remaining_info_into_smxmlobject", "read_remaining_info_into_builder"}) {
            RecordingContext other;
            other.answers = {{row}};
            log.Clear();
            QvSmartPtr<SMXMLObject2> result;
            SMNestedObjectBuilder builder(object);
            std::map<QvULString, long*> wanted{{"tag", &version}};
            if (method[25] == 's')
                EXPECT_FALSE(object->read_remaining_info_into_smxmlobject(other, object, result, "tag"));
            else
                EXPECT_FALSE(object->read_remaining_info_into_builder(other, object, &builder, wanted));
            EXPECT_FALSE(result);
            ASSERT_EQ(log.Events().size(), 1u) << Str(row->toString(""));
            EXPECT_EQ(log.Events()[0].level, 1);
            EXPECT_EQ(log.Events()[0].method, method);
            EXPECT_THAT(log.Events()[0].message, testing::StartsWith("Error reading object. Message: A "));
        }
    }
}
