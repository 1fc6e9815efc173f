#include "objects/query/smquerysubject2_002_000.h"

#include <gmock/gmock.h>

#include "objects/publication/smdatasource2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smdeterminant2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMQuerySubject2> subject = new SMQuerySubject2(project->GetRootNamespace(), project, project->GetRootNamespace());

    /** A subject with a database query. */
    explicit Fixture(const std::string& elements = "<definition><dbQuery></dbQuery></definition>") {
        SMQuerySubjectBuilder builder(subject);
        ParseInside(builder, elements);
        subject->AddName("en", "Orders");
        subject->SetLastChangedDate(QvDate(false));
    }
    SMQueryItem2* Item(const char* name) const {
        auto* item = new SMQueryItem2(subject, project);
        item->AddName("en", name);
        subject->AddQueryItem(item);
        return item;
    }
    SMQueryItemFolder2* Folder() const {
        auto* folder = new SMQueryItemFolder2(subject, project);
        subject->AddQueryItemFolder(folder);
        return folder;
    }
    SMQueryItem2* ItemIn(SMQueryItemFolder2* folder, const char* name) const {
        auto* item = new SMQueryItem2(folder, project);
        item->AddName("en", name);
        folder->AddQueryItem(item);
        return item;
    }
    std::string Text() const { return WriteElement(*subject); }
};

QvSmartPtr<DBTable> TableWith(const char* columnId, EDB_TYPE type, const char* tableId = "table") {
    const QvSmartPtr<DBTable> table = new DBTable;
    table->SetId(tableId);
    const QvSmartPtr<DBColumn> column = new DBColumn;
    column->SetId(columnId);
    column->setType(type);
    table->AddColumn(column);
    return table;
}

const QvDate UNSET(false);

}  // namespace

// ---- document

TEST(SMQuerySubject2Xml, PutsDeterminantsBeforeTheItems) {
    const CapturedLog log;
    const Fixture fixture(
        "<queryItem><name locale=\"en\">a</name></queryItem><definition id=\"d\"><dbQuery></dbQuery></definition>"
        "<determinants><determinant id=\"x\" version=\"7\"><name>k</name></determinant></determinants>"
        "<property name=\"qvqs_type\" type=\"shown\">kind</property><property name=\"qvdbref\">table</property>"
        "<externalizeMethod>tab</externalizeMethod><externalizeAutoSummary>true</externalizeAutoSummary>");
    fixture.subject->SetStatus(SMEnum_status::invalid);
    EXPECT_TRUE(
        SameXml("<querySubject status=\"invalid\"><name locale=\"en\">Orders</name><lastChanged></lastChanged>"
                "<property name=\"qvdbref\" type=\"hidden\">table</property><property name=\"qvqs_type\" type=\"hidden\">kind</property>"
                "<property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>"
                "<definition id=\"d\"><dbQuery><sources></sources></dbQuery></definition><externalizeMethod>tab</externalizeMethod>"
                "<externalizeAutoSummary>true</externalizeAutoSummary><determinants><determinant id=\"x\" version=\"7\"><name>k</name>"
                "<canGroup>false</canGroup><identifiesRow>false</identifiesRow></determinant></determinants>"
                "<queryItem><name locale=\"en\">a</name><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
                "<property name=\"version\" type=\"hidden\">0</property><size>0</size></queryItem></querySubject>",
                fixture.Text()));
    EXPECT_EQ(fixture.subject->GetDeterminants()[0]->GetVersionNo(), 7);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQuerySubject2Xml, LeavesOutWhatIsUnset) {
    EXPECT_EQ(
        Fixture().Text(),
        "<querySubject><name locale=\"en\">Orders</name><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
        "<property name=\"version\" type=\"hidden\">0</property><definition id=\"\"><dbQuery><sources></sources></dbQuery></definition>"
        "</querySubject>");
}

TEST(SMQuerySubject2Xml, LogsAMissingDefinitionAndGoesOn) {
    const Fixture fixture("");
    const CapturedLog log;
    EXPECT_THAT(fixture.Text(), testing::EndsWith("</querySubject>"));
    const LoggedEvent missing{
        4, "smquerysubjecttype2", "SMQuerySubjectType2", "WriteXMLElementChildren", "SMQuerySubject with missing definition.", ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(missing));
}

TEST(SMQuerySubject2Xml, KeepsFiltersAndFragmentsForTheRepositoryAlone) {
    const CapturedLog log;
    const Fixture fixture(
        "<definition><dbQuery></dbQuery></definition><hierarchies>h</hierarchies><levels>l</levels>"
        "<previewFilters><previewFilter><refobj>[p]</refobj><displayName>p</displayName><expression>1</expression></previewFilter>"
        "</previewFilters><securityFilters><securityFilterDefinition><securityObject type=\"group\"><displayPath>d</displayPath>"
        "<cmSearchPath>c</cmSearchPath></securityObject><basedOn><cmSearchPath>b</cmSearchPath></basedOn><refobj>[s]</refobj>"
        "<displayName>s</displayName><expression>2</expression></securityFilterDefinition></securityFilters>");
    EXPECT_EQ(fixture.Text(), Fixture().Text());
    EXPECT_EQ(fixture.subject->WritePreviewFiltersToString(),
              "<previewFilters><previewFilter><refobj>[p]</refobj><displayName>p</displayName><expression>1</expression></previewFilter>"
              "</previewFilters>");
    EXPECT_EQ(fixture.subject->WriteSecurityFiltersToString(),
              "<securityFilters><securityFilterDefinition><securityObject type=\"group\"><displayPath>d</displayPath>"
              "<cmSearchPath>c</cmSearchPath></securityObject><basedOn><cmSearchPath>b</cmSearchPath></basedOn><refobj>[s]</refobj>"
              "<displayName>s</displayName><expression>2</expression></securityFilterDefinition></securityFilters>");
    EXPECT_EQ(fixture.subject->hierarchiesXml->buffer.view(), "<hierarchies>h</hierarchies>");
    EXPECT_EQ(fixture.subject->levelsXml->buffer.view(), "<levels>l</levels>");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQuerySubject2Xml, WritesTheEmptyTextsOfASecurityObject) {
    const Fixture fixture("<securityFilters><securityFilterDefinition></securityFilterDefinition></securityFilters>");
    EXPECT_EQ(
        fixture.subject->WriteSecurityFiltersToString(),
        "<securityFilters><securityFilterDefinition><securityObject type=\"\"><displayPath></displayPath><cmSearchPath></cmSearchPath>"
        "</securityObject></securityFilterDefinition></securityFilters>");
}

// ---- builder

TEST(SMQuerySubject2Builder, PutsADisplayPathIntoTheLastRecordWhereverItStands) {
    const CapturedLog log;
    const Fixture fixture(
        "<displayPath>dropped</displayPath><securityFilters><securityFilterDefinition></securityFilterDefinition>"
        "<securityFilterDefinition></securityFilterDefinition></securityFilters><displayPath>late</displayPath>"
        "<cmSearchPath>dropped</cmSearchPath><displayName>dropped</displayName><refobj>dropped</refobj><expression>dropped</expression>");
    const auto& filters = fixture.subject->GetFilters().Securities();
    ASSERT_EQ(filters.size(), 2u);
    EXPECT_EQ(filters[0].displayPath, "");
    EXPECT_EQ(filters[1].displayPath, "late");
    EXPECT_EQ(filters[1].cmSearchPath, "");
    EXPECT_EQ(filters[1].basedOnCmSearchPath, "");
    EXPECT_EQ(filters[1].displayName, "");
    EXPECT_EQ(filters[1].refobj, "");
    EXPECT_FALSE(filters[1].expression);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQuerySubject2Builder, DropsValuesThatComeBeforeAnyRecord) {
    const CapturedLog log;
    const Fixture fixture(
        "<previewFilters><refobj>r</refobj><displayName>d</displayName><expression>e</expression></previewFilters>"
        "<securityFilters><securityObject type=\"role\"><cmSearchPath>c</cmSearchPath></securityObject><refobj>r</refobj>"
        "<expression>e</expression></securityFilters>");
    EXPECT_THAT(fixture.subject->GetFilters().Previews(), testing::IsEmpty());
    EXPECT_THAT(fixture.subject->GetFilters().Securities(), testing::IsEmpty());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQuerySubject2Builder, NumbersItemsAndFoldersButNoDeterminants) {
    const Fixture fixture(
        "<queryItem></queryItem><determinants><determinant version=\"x\"></determinant></determinants><queryItemFolder></queryItemFolder>"
        "<queryItem></queryItem>");
    EXPECT_EQ(fixture.subject->GetQueryItems()[0]->displayOrder, 0);
    EXPECT_EQ(fixture.subject->GetQueryItemFolders()[0]->displayOrder, 1);
    EXPECT_EQ(fixture.subject->GetQueryItems()[1]->displayOrder, 2);
    EXPECT_EQ(fixture.subject->GetDeterminants()[0]->displayOrder, 0);
    EXPECT_EQ(fixture.subject->GetDeterminants()[0]->GetVersionNo(), 0);
    EXPECT_THAT(fixture.subject->GetDisplayOrderItems(),
                testing::ElementsAre(fixture.subject->GetQueryItems()[0].get(), fixture.subject->GetQueryItemFolders()[0].get(),
                                     fixture.subject->GetQueryItems()[1].get()));
}

TEST(SMQuerySubject2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<measure></measure>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'measure'", "4 Unknown tag 'measure'"));
}

// ---- look-ups

TEST(SMQuerySubject2Model, SearchesFoldersByNameOnlyWhereToldTo) {
    const Fixture fixture;
    SMQueryItem2* direct = fixture.Item("direct");
    SMQueryItem2* nested = fixture.ItemIn(fixture.Folder(), "nested");
    nested->SetQvRef("w");
    EXPECT_EQ(fixture.subject->GetQueryItemByName("direct"), direct);
    EXPECT_EQ(fixture.subject->GetQueryItemByName("nested"), nullptr);
    EXPECT_EQ(fixture.subject->GetQueryItemWithName("direct"), direct);
    EXPECT_EQ(fixture.subject->GetQueryItemWithName("nested"), nested);
    EXPECT_EQ(fixture.subject->GetQueryItemWithName("none"), nullptr);
    EXPECT_EQ(fixture.subject->GetQueryItemByWHOID("w"), nullptr);
}

TEST(SMQuerySubject2Model, FindsNothingUnderAnEmptyWarehouseReference) {
    const Fixture fixture;
    SMQueryItem2* item = fixture.Item("a");
    EXPECT_EQ(fixture.subject->GetQueryItemByWHOID(""), nullptr);
    item->SetQvRef("w");
    EXPECT_EQ(fixture.subject->GetQueryItemByWHOID("w"), item);
}

TEST(SMQuerySubject2Model, SearchesTheFirstFolderAloneByColumnType) {
    const Fixture fixture;
    const auto table = TableWith("c1", EDB_TYPE::surrogate_column);
    fixture.subject->SetDBTargetTable(table);
    SMQueryItemFolder2* first = fixture.Folder();
    SMQueryItem2* late = fixture.ItemIn(fixture.Folder(), "late");
    late->SetPhysicalObjectId("c1");
    EXPECT_EQ(fixture.subject->GetQueryItemByDBType(EDB_TYPE::surrogate_column), nullptr);
    SMQueryItem2* early = fixture.ItemIn(first, "early");
    early->SetPhysicalObjectId("c1");
    EXPECT_EQ(fixture.subject->GetQueryItemByDBType(EDB_TYPE::surrogate_column), early);
    SMQueryItem2* direct = fixture.Item("direct");
    direct->SetPhysicalObjectId("c1");
    EXPECT_EQ(fixture.subject->GetQueryItemByDBType(EDB_TYPE::surrogate_column), direct);
}

TEST(SMQuerySubject2Model, KeepsItsTablesWhenGivenNone) {
    const Fixture fixture;
    EXPECT_EQ(fixture.subject->GetDBTargetTableID(), "");
    const auto first = TableWith("c", EDB_TYPE::surrogate_column, "t1"), second = TableWith("c", EDB_TYPE::level_no, "t2");
    fixture.subject->SetDBTargetTable(first);
    fixture.subject->Set2ndDBTargetTable(second);
    fixture.subject->SetDBTargetTable(nullptr);
    fixture.subject->Set2ndDBTargetTable(nullptr);
    EXPECT_EQ(fixture.subject->GetDBTargetTable(), first.get());
    EXPECT_EQ(fixture.subject->Get2ndDBTargetTable(), second.get());
    EXPECT_EQ(fixture.subject->GetDBTargetTableID(), "t1");
    EXPECT_EQ(fixture.subject->Get2ndDBTargetTableID(), "t2");
    EXPECT_EQ(fixture.subject->GetProperty("refDbObjId")->type, "hidden");
    fixture.subject->SetDBTargetTable(TableWith("c", EDB_TYPE::level_no, ""));
    EXPECT_EQ(fixture.subject->GetDBTargetTableID(), "t1") << "an empty id is no property";
    EXPECT_NE(fixture.subject->GetDBTargetTable(), first.get());
}

// ---- find or create

TEST(SMQuerySubject2Model, RecordsAnItemThatItFindsToo) {
    const Fixture fixture;
    SMQueryItem2* nested = fixture.ItemIn(fixture.Folder(), "nested");
    fixture.project->m_keepIdMap = true;
    EXPECT_EQ(fixture.subject->AddOrReturnExistingQueryItem("nested"), nested);
    SMQueryItem2* made = fixture.subject->AddOrReturnExistingQueryItem("made");
    EXPECT_EQ(made->displayOrder, 0);
    EXPECT_EQ(fixture.subject->TakeDisplayOrder(), 0) << "no number is taken for it";
    EXPECT_THAT(fixture.project->m_idMap, testing::UnorderedElementsAre(testing::Pair(nested->GetSMID(false), nested),
                                                                        testing::Pair("[Sales].[Orders].[made]", made)));
}

TEST(SMQuerySubject2Model, GivesAnItemItsScreenTipAsExternalNameAndLeavesAnExpressionForAnEmptyOne) {
    const Fixture fixture;
    const auto update = [&](const char* tip, const char* expression) {
        return fixture.subject->AddOrReturnExistingQueryItem("i", tip, expression, SMEnum_usage::fact, SMEnum_datatype::decimal, 1, 2, 3,
                                                             true, SMEnum_aggregationRule::Enum(-1), SMEnum_aggregationRule::Enum(-1), "d");
    };
    SMQueryItem2* item = update("tip", "x");
    EXPECT_EQ(item->GetScreenTip(), "tip");
    EXPECT_EQ(item->GetExternalName(), "tip");
    EXPECT_EQ(item->GetDescription(), "d");
    EXPECT_EQ(item->GetExpressionStr(), "x");
    EXPECT_EQ(item->GetEnumDatatype(), SMEnum_datatype::decimal);
    EXPECT_EQ(item->GetPrecision() * 100 + item->GetScale() * 10 + item->GetSize(), 123);
    EXPECT_TRUE(item->IsNullable());
    item->SetLastChangedDate(UNSET);
    EXPECT_EQ(update("tip", ""), item);
    EXPECT_EQ(item->GetExpressionStr(), "x");
    EXPECT_EQ(item->GetLastChangedDate(), UNSET) << "nothing has changed";
    update("tip", "y");
    EXPECT_EQ(item->GetExpressionStr(), "y");
    EXPECT_NE(item->GetLastChangedDate(), UNSET);
}

TEST(SMQuerySubject2Model, AppendsReferencesToADeterminantAtEveryCall) {
    const Fixture fixture;
    SMQuerySubject2::ItemCollection keys, attributes;
    keys.push_back(fixture.Item("k"));
    attributes.push_back(fixture.Item("a"));
    SMDeterminant2* made = fixture.subject->AddOrUpdateDeterminant("d", keys, attributes, true, false);
    EXPECT_EQ(made->displayOrder, 0);
    EXPECT_TRUE(made->CanGroup());
    EXPECT_FALSE(made->IdentifiesRow());
    EXPECT_EQ(fixture.subject->TakeDisplayOrder(), 1);
    made->SetLastChangedDate(UNSET);
    EXPECT_EQ(fixture.subject->AddOrUpdateDeterminant("d", keys, attributes, false, true), made);
    EXPECT_THAT(made->GetKeyRefObjs(), testing::ElementsAre("[Sales].[Orders].[k]", "[Sales].[Orders].[k]"));
    EXPECT_THAT(made->GetAttrRefObjs(), testing::ElementsAre("[Sales].[Orders].[a]", "[Sales].[Orders].[a]"));
    EXPECT_FALSE(made->CanGroup());
    EXPECT_TRUE(made->IdentifiesRow());
    EXPECT_NE(made->GetLastChangedDate(), UNSET);
    for (const bool isKey : {true, false}) {
        made->SetLastChangedDate(UNSET);
        fixture.subject->AddOrUpdateDeterminant("d", isKey ? keys : SMQuerySubject2::ItemCollection(),
                                                isKey ? SMQuerySubject2::ItemCollection() : attributes, false, true);
        EXPECT_NE(made->GetLastChangedDate(), UNSET) << isKey;
    }
    made->SetLastChangedDate(UNSET);
    fixture.subject->AddOrUpdateDeterminant("d", {}, {}, true, true);
    EXPECT_EQ(made->GetLastChangedDate(), UNSET) << "flags alone leave the date";
    EXPECT_EQ(fixture.subject->GetDeterminants().size(), 1u);
    EXPECT_EQ(fixture.subject->GetDisplayOrderItems().size(), 2u) << "determinants have no place in the display list";
}

TEST(SMQuerySubject2Model, FindsADeterminantByItsPresentName) {
    const Fixture fixture;
    const SMQuerySubject2::ItemCollection none;
    SMDeterminant2* first = fixture.subject->AddOrUpdateDeterminant("d", none, none, false, false);
    EXPECT_TRUE(first->GetLastChangedDate().IsSet()) << "made, and so changed, also without references";
    first->SetName("e");
    EXPECT_NE(fixture.subject->AddOrUpdateDeterminant("d", none, none, false, false), first);
    EXPECT_EQ(fixture.subject->AddOrUpdateDeterminant("e", none, none, false, false), first);
}

TEST(SMQuerySubject2Model, MakesAnEmptyDefinitionForAFilterAndLogsThatItHasNoQuery) {
    const Fixture fixture("");
    const CapturedLog log;
    fixture.subject->AddOrUpdateFilterDefinition(SMEnum_apply::always, "f", "x");
    const LoggedEvent unknown{
        4, "smquerysubject2", "SMQuerySubject2", "AddOrUpdateFilterDefinition", "Unknown query type for AddOrUpdateFilterDefinition call.",
        ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(unknown));
    EXPECT_NE(fixture.subject->GetDefinition(), nullptr);
    EXPECT_NE(fixture.subject->GetLastChangedDate(), UNSET);
}

TEST(SMQuerySubject2Model, HandsFiltersSqlAndSourcesToItsQuery) {
    const Fixture fixture;
    const QvSmartPtr<SMDatasource2> source = new SMDatasource2(fixture.project, fixture.project);
    source->AddName("en", "db");
    fixture.subject->AddOrUpdateDataSourceRef(source);
    fixture.subject->AddOrUpdateDataSourceRef(nullptr);
    fixture.subject->SetSQL("select 1");
    fixture.subject->AddOrUpdateFilterDefinition(SMEnum_apply::asNeeded, "f", "x");
    fixture.subject->AddOrUpdateFilterDefinition(SMEnum_apply::asNeeded, "g", "y");
    fixture.subject->RemoveFilterDefinition("f");
    EXPECT_EQ(WriteElement(*fixture.subject->GetDefinition()),
              "<definition id=\"\"><dbQuery><sources><dataSourceRef>[].[dataSources].[db]</dataSourceRef></sources>"
              "<sql type=\"lumora\">select 1</sql><filters><filterDefinition apply=\"asNeeded\"><displayName>g</displayName>"
              "<expression>y</expression></filterDefinition></filters></dbQuery></definition>");
    EXPECT_EQ(fixture.subject->GetLastChangedDate(), UNSET) << "the definition is stamped, not the subject";
}

TEST(SMQuerySubject2Model, DoesNothingToADefinitionThatIsNotThere) {
    const Fixture fixture("");
    const QvSmartPtr<SMDatasource2> source = new SMDatasource2(fixture.project, fixture.project);
    const CapturedLog log;
    fixture.subject->SetSQL("x");
    fixture.subject->RemoveFilterDefinition("f");
    fixture.subject->AddOrUpdateDataSourceRef(source);
    EXPECT_EQ(fixture.subject->GetDefinition(), nullptr);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQuerySubject2Model, LogsADataSourceForAQueryOfAnotherKind) {
    const Fixture fixture("<definition><modelQuery></modelQuery></definition>");
    const QvSmartPtr<SMDatasource2> source = new SMDatasource2(fixture.project, fixture.project);
    const CapturedLog log;
    fixture.subject->AddOrUpdateDataSourceRef(source);
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 4);
}

TEST(SMQuerySubject2Model, KeepsEachAssociationOnce) {
    const Fixture fixture;
    for (const char* association : {"b", "", "a", "b"}) fixture.subject->AddFromAssociation(association);
    EXPECT_THAT(fixture.subject->GetAssociations(), testing::ElementsAre("a", "b"));
}

TEST(SMQuerySubject2Model, StampsNothingWithPlainSetters) {
    const Fixture fixture;
    fixture.subject->SetStatus(SMEnum_status::valid);
    fixture.subject->SetExternalizeMethod(SMEnum_externalizeMethod::csv);
    fixture.subject->SetExternalizeAutoSummary(true);
    fixture.subject->SetDefinition(nullptr);
    EXPECT_EQ(fixture.subject->GetLastChangedDate(), UNSET);
}

TEST(SMQuerySubject2Model, HasTheTypesOfASubject) {
    const Fixture fixture;
    EXPECT_EQ(static_cast<int>(fixture.subject->GetSMType()), 140);
    EXPECT_EQ(fixture.subject->GetModelType(), 24);
    EXPECT_EQ(fixture.subject->GetTagName(), "querySubject");
    EXPECT_EQ(fixture.subject->GetSMID(false), "[Sales].[Orders]");
}

// ---- walks

TEST(SMQuerySubject2Model, ListsFoldersItemsDeterminantsAndTheDefinition) {
    const Fixture fixture;
    SMQueryItem2* item = fixture.Item("i");
    SMQueryItemFolder2* folder = fixture.Folder();
    auto* determinant = new SMDeterminant2(fixture.subject, fixture.project);
    fixture.subject->AddDeterminant(determinant);
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    fixture.subject->getChildObjects(children);
    EXPECT_THAT(std::vector<IOObject*>(children.begin(), children.end()),
                testing::ElementsAre(folder, item, determinant, fixture.subject->GetDefinition()));
}

TEST(SMQuerySubject2Model, RegistersLevelsNowhereButHierarchiesAndFilters) {
    const Fixture fixture(
        "<property name=\"id\">s</property><property name=\"custom\">1</property><definition "
        "id=\"d\"><modelQuery></modelQuery></definition>"
        "<hierarchies>h</hierarchies><levels>l</levels><previewFilters><previewFilter></previewFilter></previewFilters>");
    fixture.project->GetRootNamespace()->AddQuerySubject(fixture.subject);
    MapId2RemainingInfo records;
    fixture.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    for (const char* id : {"s/hierarchies", "s/previewFilters", "s/property"}) EXPECT_NE(records.Find(id), nullptr) << id;
    for (const char* id : {"s/levels", "s/securityFilters"}) EXPECT_EQ(records.Find(id), nullptr) << id;
}

// ---- the display list

TEST(SMQuerySubject2Model, DeletesAnItemFromBothLists) {
    const Fixture fixture;
    fixture.Item("gone")->SetId("g");
    fixture.Item("stays")->SetId("s");
    fixture.subject->DeleteQueryItemById("g");
    fixture.subject->DeleteQueryItemById("nobody");
    ASSERT_EQ(fixture.subject->GetQueryItems().size(), 1u);
    EXPECT_THAT(fixture.subject->GetDisplayOrderItems(), testing::ElementsAre(fixture.subject->GetQueryItems()[0].get()));
    EXPECT_THAT(fixture.Text(), testing::Not(testing::HasSubstr("gone")));
}

TEST(SMQuerySubject2Model, DeletesOneObjectOfARepeatedId) {
    const Fixture fixture;
    fixture.Folder();  // has the empty id too, and stands before the items
    fixture.Item("first");
    SMQueryItem2* second = fixture.Item("second");
    fixture.subject->DeleteQueryItemById("");
    EXPECT_THAT(fixture.subject->GetDisplayOrderItems(), testing::ElementsAre(fixture.subject->GetQueryItemFolders()[0].get(), second));
    EXPECT_EQ(fixture.subject->GetQueryItems().size(), 1u);
    fixture.subject->SortDisplayOrder();
    EXPECT_THAT(fixture.Text(), testing::HasSubstr("second"));
}

// ---- repository

TEST(SMQuerySubject2Rows, HaveItsColumnsAlsoWhenEmpty) {
    const Fixture fixture;
    fixture.subject->SetId("s");
    fixture.subject->displayOrder = 4;
    RecordingContext context;
    ASSERT_TRUE(fixture.subject->write(context));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre("QS_ID S \"s\"", "QS_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                                     "LASTCHANGED D null", "NAME S \"Orders\"", "DESCRIPTION S \"\"", "SCREENTIP S \"\"",
                                     "WAREHOUSE_OBJECT_ID S \"\"", "DISPLAY_ORDER L 4", "QUERY_SUBJECT_TYPE_NAME S \"querySubject\"",
                                     "QUERY_TYPE_NAME S \"dbQuery\"", "PHYSICAL_OBJECT_ID S \"\"", "TM_QS_IDENTIFIER S \"\""));
}

TEST(SMQuerySubject2Rows, LeaveTheQueryKindEmptyWithoutADefinition) {
    const Fixture fixture("");
    const CapturedLog log;
    RecordingContext context;
    EXPECT_TRUE(fixture.subject->write(context));
    EXPECT_THAT(context.Attributes(0), testing::Contains("QUERY_TYPE_NAME S \"\""));
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 4);
}

TEST(SMQuerySubject2Rows, LoseTheFiltersAndBringTheFragmentsBack) {
    const CapturedLog log;
    const Fixture fixture(
        "<property name=\"id\">s</property><definition id=\"d\"><modelQuery></modelQuery></definition><hierarchies>h</hierarchies>"
        "<levels>l</levels><previewFilters><previewFilter></previewFilter></previewFilters>"
        "<securityFilters><securityFilterDefinition></securityFilterDefinition></securityFilters>");
    StoreContext store;
    ASSERT_TRUE(fixture.subject->write(store));
    EXPECT_THAT(store.records,
                testing::AllOf(testing::Contains(testing::Key("s/previewFilters")), testing::Contains(testing::Key("s/securityFilters"))));
    const Fixture other("");
    other.subject->constructFromIOParameter(*store.RowOf("SM_QUERY_SUBJECT", "s"));
    ASSERT_TRUE(other.subject->read(store));
    EXPECT_THAT(other.subject->GetFilters().Previews(), testing::IsEmpty());
    EXPECT_THAT(other.subject->GetFilters().Securities(), testing::IsEmpty());
    EXPECT_EQ(other.subject->hierarchiesXml->buffer.view(), "<hierarchies>h</hierarchies>");
    EXPECT_EQ(other.subject->levelsXml->buffer.view(), "<levels>l</levels>");
    EXPECT_NE(other.subject->GetDefinition()->GetModelQuery(), nullptr);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQuerySubject2Rows, AskForDefinitionDeterminantsItemsAndFolders) {
    const Fixture fixture("");
    RecordingContext context;
    ASSERT_TRUE(fixture.subject->read(context));
    std::vector<std::string> kinds;
    for (const std::string& name : context.Names())
        if (name.rfind("AT_ReadSMObject ", 0) == 0) kinds.push_back(name.substr(16));
    EXPECT_THAT(kinds, testing::ElementsAre("definition2", "determinants/determinant", "queryItem", "queryItemFolder"));
}

TEST(SMQuerySubject2Rows, KeepTheLastOfSeveralDefinitions) {
    const CapturedLog log;
    const Fixture fixture("");
    RecordingContext context;
    const auto row = [](const char* id) {
        return Row().Text("id", id).Text("name", "").Text("description", "").Text("screenTip", "").Text("qvref", "");
    };
    fixture.subject->constructFromIOParameter(*Row()
                                                   .Text("id", "s")
                                                   .Text("name", "")
                                                   .Text("description", "")
                                                   .Text("screenTip", "")
                                                   .Text("object_type", "modelQuery")
                                                   .Text("qvdbref", "t")
                                                   .Text("qvqs_type", "k"));
    context.answers = {{}, {}, {}, {row("d1"), row("d2")}};
    ASSERT_TRUE(fixture.subject->read(context));
    ASSERT_NE(fixture.subject->GetDefinition(), nullptr);
    EXPECT_EQ(fixture.subject->GetDefinition()->GetId(), "d2");
    EXPECT_THAT(context.noted, testing::ElementsAre("d1", "d2"));
    EXPECT_EQ(fixture.subject->GetPhysicalObjectId(), "t");
    EXPECT_EQ(fixture.subject->GetTargetQSIdentifier(), "k");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}
