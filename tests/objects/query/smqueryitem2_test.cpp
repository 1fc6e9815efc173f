#include "objects/query/smqueryitem2_002_000.h"

#include <gmock/gmock.h>

#include "objects/catalogue/dbtable_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
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

/** A subject "orders" of a namespace "Sales" with an item "amount" two folders down, and two tables with columns of ids. */
struct Subject {
    ProjectPtr project = NewProject("Sales");
    SMNamespace2* ns = project->GetRootNamespace();
    QvSmartPtr<SMQuerySubject2> subject = new SMQuerySubject2(ns, project, ns);
    SMQueryItem2* item = nullptr;

    Subject() {
        SMQuerySubjectBuilder builder(subject);
        ParseInside(
            builder,
            "<name locale=\"en\">orders</name><queryItemFolder><queryItemFolder><queryItem><name locale=\"en\">amount</name>"
            "</queryItem></queryItemFolder></queryItemFolder><queryItemFolder><queryItem><name locale=\"en\">late</name></queryItem>"
            "</queryItemFolder><queryItem><name locale=\"en\">direct</name></queryItem>");
        item = subject->GetQueryItemWithName("amount");
        subject->SetDBTargetTable(Table({{"c1", EDB_TYPE(1)}, {"c2", EDB_TYPE(2)}}));
        subject->Set2ndDBTargetTable(Table({{"c2", EDB_TYPE(10)}, {"c3", EDB_TYPE(11)}}));
    }
    static DBTable* Table(const std::vector<std::pair<const char*, EDB_TYPE>>& columns) {
        auto* table = new DBTable("t");
        table->SetId("table");
        for (const auto& [id, type] : columns) {
            auto* column = new DBColumn(id);
            column->SetId(id);
            column->setType(type);
            table->AddColumn(column);
        }
        return table;
    }
    EDB_TYPE TypeOf(const char* columnId) const {
        item->SetPhysicalObjectId(columnId);
        return item->GetColDBType();
    }
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

TEST(SMQueryItem2Model, TakesItsIdFromTheSubjectPastFolders) {
    const Subject fixture;
    EXPECT_EQ(fixture.item->GetSMID(false), "[Sales].[orders].[amount]");
    fixture.item->AddName("en", "a < b");
    EXPECT_EQ(fixture.item->GetSMID(true), "[Sales].[orders].[a &lt; b]");
}

TEST(SMQueryItem2Model, FindsItsColumnInTheFirstTableBeforeTheSecond) {
    const Subject fixture;
    EXPECT_EQ(fixture.TypeOf("c1"), EDB_TYPE(1));
    EXPECT_EQ(fixture.TypeOf("c2"), EDB_TYPE(2));
    EXPECT_EQ(fixture.TypeOf("c3"), EDB_TYPE(11));
}

TEST(SMQueryItem2Model, HasNoColumnTypeWhereALinkIsMissing) {
    const CapturedLog log;
    const Subject fixture;
    EXPECT_EQ(fixture.TypeOf(""), EDB_TYPE::unknown);
    EXPECT_EQ(fixture.TypeOf("c4"), EDB_TYPE::unknown);
    const QvSmartPtr<SMQuerySubject2> bare = new SMQuerySubject2(fixture.ns, fixture.project, fixture.ns);
    EXPECT_EQ(bare->FindTargetColumn("c1"), nullptr);
    const QvSmartPtr<SMQueryItem2> alone = new SMQueryItem2(nullptr, fixture.project);
    alone->SetPhysicalObjectId("c1");
    EXPECT_EQ(alone->GetColDBType(), EDB_TYPE::unknown);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQueryItem2Model, HasNoColumnTypeInLevelsAndDimensions) {
    const Subject fixture;
    const QvSmartPtr<SMLevel2> level = new SMLevel2(fixture.subject, fixture.project);
    const QvSmartPtr<SMDimension2> dimension = new SMDimension2(fixture.ns, fixture.project, fixture.ns);
    for (SMObjectBase* parent : {static_cast<SMObjectBase*>(level), static_cast<SMObjectBase*>(dimension)}) {
        const QvSmartPtr<SMQueryItem2> item = new SMQueryItem2(parent, fixture.project);
        item->SetPhysicalObjectId("c1");
        EXPECT_EQ(item->GetColDBType(), EDB_TYPE::unknown);
    }
}

TEST(SMQueryItem2Model, IsFoundByColumnTypeInTheFirstFolderOnly) {
    const Subject fixture;
    fixture.item->SetPhysicalObjectId("c1");
    fixture.subject->GetQueryItemWithName("late")->SetPhysicalObjectId("c3");
    EXPECT_EQ(fixture.subject->GetQueryItemByDBType(EDB_TYPE(1)), fixture.item);
    EXPECT_EQ(fixture.subject->GetQueryItemByDBType(EDB_TYPE(11)), nullptr);
    EXPECT_EQ(fixture.subject->GetQueryItemFolders()[1]->GetQueryItemByDBType(EDB_TYPE(11)), fixture.subject->GetQueryItemWithName("late"));
}

TEST(SMQueryItem2Model, PutsTheThirdItemOfAPromptIntoTheReferenceForCascading) {
    const Subject fixture;
    SMQueryItem2* display = fixture.subject->GetQueryItemByName("direct");
    SMQueryItem2* cascade = fixture.subject->GetQueryItemWithName("late");
    const SMPromptInfo2* prompt = fixture.item->AddOrUpdatePromptInfo(SMEnum_promptType::editBox, display, nullptr, cascade);
    EXPECT_EQ(prompt, fixture.item->GetPromptInfo());
    EXPECT_EQ(prompt->GetParentSMObj(), fixture.item);
    EXPECT_EQ(prompt->GetPromptType(), "editBox");
    EXPECT_EQ(prompt->GetPromptDisplayItemRef(), "[Sales].[orders].[direct]");
    EXPECT_EQ(prompt->GetPromptFilterItemRef(), "");
    EXPECT_EQ(prompt->GetPromptCascadeOnRef(), "[Sales].[orders].[late]");
    EXPECT_EQ(prompt->GetPromptUseItemRef(), "");
    EXPECT_THAT(WriteElement(*prompt), testing::Not(testing::HasSubstr("late")));
}

TEST(SMQueryItem2Model, StampsAPromptThatChanges) {
    const Subject fixture;
    SMQueryItem2* other = fixture.subject->GetQueryItemByName("direct");
    const auto stamps = [&](SMEnum_promptType::Enum type, SMQueryItem2* filter) {
        fixture.item->SetLastChangedDate(QvDate(false));
        fixture.item->AddOrUpdatePromptInfo(type, nullptr, filter, nullptr);
        return fixture.item->GetLastChangedDate().IsSet();
    };
    EXPECT_TRUE(stamps(SMEnum_promptType::Enum(-1), nullptr));
    EXPECT_FALSE(stamps(SMEnum_promptType::Enum(-1), nullptr));
    EXPECT_TRUE(stamps(SMEnum_promptType::editBox, nullptr));
    EXPECT_TRUE(stamps(SMEnum_promptType::editBox, other));
    EXPECT_FALSE(stamps(SMEnum_promptType::editBox, other));
    EXPECT_FALSE(stamps(SMEnum_promptType::editBox, nullptr));
    EXPECT_EQ(fixture.item->GetPromptInfo()->GetPromptFilterItemRef(), "[Sales].[orders].[direct]");
}

TEST(SMQueryItem2Model, EntersItsPartsAndItsPropertiesIntoTheMapsOfASave) {
    const Subject fixture;
    std::set<QvULString> pidid, ids;
    MapId2MiniObject miniObjects;
    MapId2RemainingInfo remainingInfo;
    fixture.subject->SetDefinition(nullptr);
    fixture.ns->AddQuerySubject(fixture.subject);
    fixture.item->SetId("i");
    fixture.item->SetPhysicalName("c1");
    fixture.item->AddOrUpdatePromptInfo(SMEnum_promptType::editBox, nullptr, nullptr, nullptr)->SetId("p");
    fixture.item->AddRoleOfType(SMEnum_role::_memberCaption);
    fixture.item->GetRoles()[0]->SetId("r");
    fixture.project->InitAndAddSetPIDIDAndMiniObject(&pidid, &ids, &miniObjects, &remainingInfo);
    EXPECT_TRUE(pidid.count("i+p") && pidid.count("i+r"));
    ASSERT_NE(remainingInfo.Find("i/property"), nullptr);
    EXPECT_EQ(remainingInfo.Find("i/property")->value, "<property name=\"physicalName\" type=\"hidden\">c1</property>");
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
