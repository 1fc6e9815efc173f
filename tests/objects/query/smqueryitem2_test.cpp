#include "objects/query/smqueryitem2_002_000.h"

#include <gmock/gmock.h>

#include "objects/query/smqueryitemfolder2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject();
    QvSmartPtr<SMQueryItem2> item = new SMQueryItem2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMQueryItemBuilder builder(item);
        ParseInside(builder, elements);
    }
    std::string Text() const { return WriteElement(*item); }
};

const std::string FRAME =
    "<lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>";

}  // namespace

TEST(SMQueryItem2Xml, LeavesOutWhatIsUnset) {
    const Fixture fixture;
    EXPECT_EQ(fixture.Text(), "<queryItem>" + FRAME + "<size>0</size></queryItem>");
}

TEST(SMQueryItem2Xml, WritesWhatItHasReadInTheSameOrder) {
    const CapturedLog log;
    const std::string elements =
        "<name locale=\"en\">n</name><description locale=\"en\">d</description><lastChanged>2020-01-02T03:04:05</lastChanged>"
        "<screenTip locale=\"en\">s</screenTip><property name=\"qvdbref\" type=\"hidden\">column</property>"
        "<property name=\"physicalName\" type=\"hidden\">c1</property><property name=\"qvref\" type=\"hidden\">w</property>"
        "<property name=\"id\" type=\"hidden\">i</property><property name=\"version\" type=\"hidden\">3</property>"
        "<property name=\"custom\">1</property><expression a=\"1\">x</expression><externalName>e</externalName><hidden>true</hidden>"
        "<usage>fact</usage><format>f</format><currency>c</currency><datatype>decimal</datatype><precision>10</precision><scale>2</scale>"
        "<size>8</size><nullable>true</nullable><aggregationRule>average</aggregationRule><displayType>link</displayType>"
        "<mimeType>m</mimeType><promptInfo version=\"0\"><promptType>editBox</promptType></promptInfo>"
        "<regularAggregate>count</regularAggregate><semiAggregate>median</semiAggregate><sortOnRef>[s]</sortOnRef>"
        "<unSortable>true</unSortable><sort>desending</sort><roles id=\"all\"><role id=\"\" version=\"0\"><name locale=\"en\">r</name>"
        "</role></roles><collationSequenceName>en</collationSequenceName><collationSequenceLevel>1</collationSequenceLevel>"
        "<originalCollationSequenceName>o</originalCollationSequenceName><originalEncodingName>UTF-8</originalEncodingName>";
    EXPECT_TRUE(SameXml("<queryItem>" + elements + "</queryItem>", Fixture(elements).Text()));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQueryItem2Xml, HasPrecisionAndScaleForTheTypesThatTheySaySomethingAbout) {
    const std::set<int> types = {2, 3, 4, 5, 6, 7, 8, 9, 12, 14, 16, 17, 18, 29, 30};
    for (int type = -1; type <= 30; ++type) {
        const Fixture fixture;
        fixture.item->SetDatatype(SMEnum_datatype::Enum(type));
        const bool has = fixture.Text().find("<precision>0</precision><scale>0</scale><size>") != std::string::npos;
        EXPECT_EQ(has, types.count(type) > 0) << type;
        EXPECT_EQ(fixture.Text().find("<precision>") != std::string::npos, has) << type;
    }
}

TEST(SMQueryItem2Xml, LosesTheIdOfRolesWithoutARole) {
    EXPECT_EQ(Fixture("<roles id=\"all\"></roles>").Text(), "<queryItem>" + FRAME + "<size>0</size></queryItem>");
}

TEST(SMQueryItem2Xml, WritesACollationLevelThatIsNotZero) {
    EXPECT_EQ(Fixture("<collationSequenceLevel>0</collationSequenceLevel>").Text(), "<queryItem>" + FRAME + "<size>0</size></queryItem>");
    EXPECT_EQ(Fixture("<collationSequenceLevel>-1</collationSequenceLevel>").Text(),
              "<queryItem>" + FRAME + "<size>0</size><collationSequenceLevel>-1</collationSequenceLevel></queryItem>");
}

TEST(SMQueryItem2Builder, SetsItsLinksWhateverTheTypeOfTheProperty) {
    const Fixture fixture("<property name=\"qvdbref\">column</property><property name=\"physicalName\" type=\"x\">c1</property>");
    EXPECT_EQ(fixture.item->GetPhysicalObjectId(), "column");
    EXPECT_EQ(fixture.item->GetPhysicalName(), "c1");
    EXPECT_EQ(fixture.item->GetProperty("qvdbref"), nullptr);
    EXPECT_THAT(fixture.Text(), testing::HasSubstr("<property name=\"qvdbref\" type=\"hidden\">column</property>"));
}

TEST(SMQueryItem2Model, LogsAnIdOutsideOfSubjectsAndLevelsInTheWordsOfLevels) {
    const CapturedLog log;
    const Fixture fixture;
    EXPECT_EQ(fixture.item->GetSMID(false), "");
    const LoggedEvent walk{4,
                           "smobjects",
                           "SMObjectBase",
                           "GetContainingObjectOfType",
                           "GetContainingObjectOfType() called on an object that is not inside something of  the required type.",
                           ""};
    const LoggedEvent own{
        4, "smlevel2", "SMLevel2", "GetSMID", "Attempting to build an SM ID for a query item that is not inside a query subject or level.",
        ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(walk, own));
}

TEST(SMQueryItem2Model, HasTheTypesOfAQueryItem) {
    const Fixture fixture;
    EXPECT_EQ(fixture.item->GetSMType(), SMEnum_xmltag::Enum::queryItem);
    EXPECT_EQ(fixture.item->GetModelType(), 25);
    EXPECT_EQ(fixture.item->GetTagName(), "queryItem");
    EXPECT_EQ(fixture.item->GetQueryItemTypeName(), "queryItem");
}

TEST(SMQueryItem2Model, ListsPromptAndRolesAsChildren) {
    const Fixture fixture("<roles><role></role></roles><promptInfo></promptInfo>");
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    fixture.item->getChildObjects(children);
    std::vector<IOObject*> listed(children.begin(), children.end());
    EXPECT_THAT(listed, testing::ElementsAre(fixture.item->GetPromptInfo(), fixture.item->GetRoles()[0].get()));
}

TEST(SMQueryItem2Rows, NameTheFolderAsParentAndAsSubject) {
    const Fixture fixture;
    const QvSmartPtr<SMQueryItemFolder2> folder = new SMQueryItemFolder2(fixture.project, fixture.project);
    folder->SetId("folder");
    folder->SetVersionNo(5);
    const QvSmartPtr<SMQueryItem2> item = new SMQueryItem2(folder, fixture.project);
    item->SetId("i");
    RecordingContext context;
    ASSERT_TRUE(item->write(context));
    EXPECT_THAT(context.Attributes(0), testing::IsSupersetOf({"ITEM_FOLDER_ID S \"folder\"", "ITEM_FOLDER_VERSION_NO L 5",
                                                              "QS_ID S \"folder\"", "QS_VERSION_NO L 5"}));
}

TEST(SMQueryItem2Rows, HaveTheColumnsOfAnItem) {
    const Fixture fixture("<name locale=\"en\">n</name><sort>desending</sort><expression>x &gt; 1</expression><size>8</size>");
    fixture.item->SetId("i");
    fixture.item->displayOrder = 7;
    RecordingContext context;
    ASSERT_TRUE(fixture.item->write(context));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre(
                    "QS_ITEM_ID S \"i\"", "QS_ITEM_VERSION_NO L 1", "ITEM_FOLDER_ID S \"\"", "ITEM_FOLDER_VERSION_NO L 0",
                    "LASTCHANGED D null", "NAME S \"n\"", "DESCRIPTION S \"\"", "SCREENTIP S \"\"", "WAREHOUSE_OBJECT_ID S \"\"",
                    "QS_ITEM_TYPE_NAME S \"queryItem\"", "QS_ID S \"\"", "QS_VERSION_NO L 0", "PHYSICAL_OBJECT_ID S \"\"",
                    "PHYSICAL_NAME S \"\"", "DISPLAY_ORDER L 7", "EXTERNALNAME S \"\"", "EXPRESSION S \"x &gt; 1\"", "SORT L 1",
                    "UNSORTABLE B false", "SORTONREF S \"\"", "SEMIAGGREGATE S \"\"", "REGULARAGGREGATE S \"\"", "MIMETYPE S \"\"",
                    "DISPLAYTYPE S \"\"", "AGGREGATIONRULE S \"\"", "SCALE L 0", "NULLABLE B false", "SIZE L 8", "PRECISION L 0",
                    "DATATYPE S \"\"", "CURRENCY S \"\"", "FORMAT S \"\"", "USAGE S \"\"", "HIDDEN B false", "COLLATIONSEQNAME S \"\"",
                    "COLLATIONSEQLEVEL L 0", "ORIGINALCOLLATIONSEQNAME S \"\"", "ORIGINALENCODINGNAME S \"\""));
}

TEST(SMQueryItem2Rows, SendTextsRecordPromptAndRoles) {
    const Fixture fixture(
        "<name locale=\"fr\">n</name><promptInfo></promptInfo><roles><role><name locale=\"en\">a</name></role><role></role></roles>");
    RecordingContext context;
    ASSERT_TRUE(fixture.item->write(context));
    EXPECT_THAT(context.Names(),
                testing::ElementsAre("AT_InsertObject SM_QUERY_ITEM", "AT_WriteLangText", "AT_WriteRemainingInfo SM_REMAIN_INFO",
                                     "EndObject", "AT_InsertObject SM_PROMPTINFO", "EndObject", "AT_InsertObject SM_ROLES", "EndObject",
                                     "AT_InsertObject SM_ROLES", "EndObject", "EndObject"));
}

TEST(SMQueryItem2Rows, BringAllBackButTheSortAndTheIdOfRoles) {
    const CapturedLog log;
    const Fixture fixture(
        "<name locale=\"en\">n</name><name locale=\"fr\">m</name><description locale=\"en\">d</description><screenTip "
        "locale=\"fr\">s</screenTip>"
        "<property name=\"qvdbref\">column</property><property name=\"physicalName\">c1</property><property name=\"custom\">1</property>"
        "<property name=\"id\">i</property><property name=\"qvref\">w</property>"
        "<expression>x</expression><externalName>e</externalName><hidden>true</hidden><usage>fact</usage><format>f</format>"
        "<currency>c</currency><datatype>decimal</datatype><precision>10</precision><scale>2</scale><size>8</size><nullable>true</nullable>"
        "<aggregationRule>average</aggregationRule><displayType>link</displayType><mimeType>m</mimeType>"
        "<promptInfo><promptType>editBox</promptType></promptInfo><regularAggregate>count</regularAggregate>"
        "<semiAggregate>median</semiAggregate><sortOnRef>[s]</sortOnRef><unSortable>true</unSortable><sort>desending</sort>"
        "<roles id=\"all\"><role><name locale=\"en\">r</name></role></roles><collationSequenceName>en</collationSequenceName>"
        "<collationSequenceLevel>1</collationSequenceLevel><originalCollationSequenceName>o</originalCollationSequenceName>"
        "<originalEncodingName>UTF-8</originalEncodingName>");
    StoreContext store;
    ASSERT_TRUE(fixture.item->write(store));
    const QvSmartPtr<SMQueryItem2> read = new SMQueryItem2(fixture.project, fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_QUERY_ITEM", "i"));
    ASSERT_TRUE(read->read(store));
    EXPECT_EQ(read->GetSort(), SMEnum_sort::Enum(-1));
    EXPECT_EQ(read->GetRolesId(), "");
    read->SetSort(SMEnum_sort::desending);
    read->SetRolesId("all");
    EXPECT_TRUE(SameXml(fixture.Text(), WriteElement(*read)));
    EXPECT_THAT(store.Faults(), testing::IsEmpty());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQueryItem2Rows, StopAtTheRoleThatFails) {
    const Fixture fixture("<roles><role></role><role></role></roles>");
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(fixture.item->write(context));
    EXPECT_EQ(context.Actions().size(), 2u);
}
