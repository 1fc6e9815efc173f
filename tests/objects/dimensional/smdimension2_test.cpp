#include "objects/dimensional/smdimension2_002_000.h"

#include <gmock/gmock.h>

#include "objects/dimensional/smhierarchy2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "objects/dimensional/smmeasurefolder2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMDimension2> dimension = new SMDimension2(project->GetRootNamespace(), project, project->GetRootNamespace());

    explicit Fixture(const std::string& elements = "") {
        dimension->AddName("en", "Time");
        SMDimensionBuilder builder(dimension);
        ParseInside(builder, elements);
        dimension->SetLastChangedDate(QvDate(false));
    }
    std::string Text() const { return WriteElement(*dimension); }
};

const std::string FRAME = "<property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>";

}  // namespace

// ---- document

TEST(SMDimension2Xml, WritesRollupAloneWhenItHasNothingElse) {
    const CapturedLog log;
    EXPECT_EQ(Fixture().Text(), "<dimension><name locale=\"en\">Time</name><lastChanged></lastChanged>" + FRAME +
                                    "<membersRollup>true</membersRollup></dimension>");
    EXPECT_THAT(log.Events(), testing::IsEmpty()) << "unlike a query subject it needs no definition";
}

TEST(SMDimension2Xml, WritesFragmentsAndFiltersBeforeItsOwnFields) {
    const CapturedLog log;
    const std::string filters =
        "<previewFilters><previewFilter><refobj>[p]</refobj></previewFilter></previewFilters>"
        "<securityFilters><securityFilterDefinition><securityObject "
        "type=\"account\"><displayPath></displayPath><cmSearchPath>c</cmSearchPath>"
        "</securityObject><basedOn><cmSearchPath>b</cmSearchPath></basedOn><displayName>s</displayName><expression>e</expression>"
        "</securityFilterDefinition></securityFilters>";
    const std::string elements =
        "<definition id=\"d\"><mdQuery></mdQuery></definition><hierarchies>h</hierarchies><levels>l</levels>" + filters +
        "<externalizeMethod>iqd</externalizeMethod><externalizeAutoSummary>true</externalizeAutoSummary><type>time</type>"
        "<membersRollup>false</membersRollup><defaultHierarchy>Year</defaultHierarchy>";
    const Fixture fixture(elements);
    fixture.dimension->SetStatus(SMEnum_status::valid);
    EXPECT_TRUE(SameXml(
        "<dimension status=\"valid\"><name locale=\"en\">Time</name><lastChanged></lastChanged>" + FRAME + elements + "</dimension>",
        fixture.Text()));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMDimension2Xml, InterleavesItsChildrenInDisplayOrder) {
    const Fixture fixture(
        "<measure></measure><hierarchy></hierarchy><queryItemFolder></queryItemFolder><measureFolder></measureFolder><queryItem></"
        "queryItem>");
    fixture.dimension->GetMeasures()[0]->displayOrder = 9;
    fixture.dimension->SortDisplayOrder();
    std::vector<std::string> tags;
    for (const SMObjectBase* child : fixture.dimension->GetDisplayOrderItems())
        tags.push_back(Str(SMEnum_xmltag::GetInstance()->_enum2string(child->GetSMType())));
    EXPECT_THAT(tags, testing::ElementsAre("hierarchy", "queryItemFolder", "measureFolder", "queryItem", "measure"));
    const std::string text = fixture.Text();
    EXPECT_LT(text.find("<hierarchy>"), text.find("<queryItemFolder>"));
    EXPECT_LT(text.find("<queryItem>"), text.find("<measure "));
}

TEST(SMDimension2Builder, TakesAStatusThatIsGiven) {
    const Fixture fixture("<dimension status=\"invalid\"></dimension>");
    EXPECT_EQ(fixture.dimension->GetStatus(), SMEnum_status::invalid);
    EXPECT_EQ(Fixture("<dimension></dimension>").dimension->GetStatus(), SMEnum_status::Enum(-1));
}

TEST(SMDimension2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<determinants></determinants>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'determinants'", "4 Unknown tag 'determinants'"));
}

// ---- find or create

TEST(SMDimension2Model, StampsAHierarchyWhoseRootIsAnother) {
    const Fixture fixture;
    fixture.project->m_keepIdMap = true;
    SMHierarchy2* hierarchy = fixture.dimension->AddOrUpdateHierarchy("Year", "[all]", "d");
    EXPECT_EQ(hierarchy->displayOrder, 0);
    EXPECT_EQ(hierarchy->GetRootMUN(), "[all]");
    EXPECT_EQ(hierarchy->GetDescription(), "d");
    fixture.project->m_idMap.clear();
    hierarchy->SetLastChangedDate(QvDate(false));
    EXPECT_EQ(fixture.dimension->AddOrUpdateHierarchy("Year", "[all]", "d"), hierarchy);
    EXPECT_FALSE(hierarchy->GetLastChangedDate().IsSet());
    EXPECT_THAT(fixture.project->m_idMap, testing::ElementsAre(testing::Pair("[Sales].[Time].[Year]", hierarchy)))
        << "a found one is recorded too";
    fixture.dimension->AddOrUpdateHierarchy("Year", "[other]", "d");
    EXPECT_TRUE(hierarchy->GetLastChangedDate().IsSet());
    EXPECT_EQ(fixture.dimension->TakeDisplayOrder(), 1);
}

TEST(SMDimension2Model, RecordsAMeasureThatItMakesAlone) {
    const Fixture fixture;
    fixture.project->m_keepIdMap = true;
    SMMeasureFolder2* folder = fixture.dimension->AddOrUpdateMeasureFolder("f", "d");
    EXPECT_EQ(fixture.dimension->AddOrUpdateMeasureFolder("f", "e"), folder);
    EXPECT_EQ(folder->GetDescription(), "e");
    SMMeasure2* measure = fixture.dimension->AddOrReturnExistingMeasure("m");
    EXPECT_EQ(folder->displayOrder, 0);
    EXPECT_EQ(measure->displayOrder, 1);
    EXPECT_THAT(fixture.project->m_idMap, testing::ElementsAre(testing::Pair("[Sales].[Time].[m]", measure)));
    fixture.project->m_idMap.clear();
    EXPECT_EQ(fixture.dimension->AddOrReturnExistingMeasure("m"), measure);
    EXPECT_TRUE(fixture.project->m_idMap.empty());
}

TEST(SMDimension2Model, FindsDirectMeasuresByAReferenceThatIsNotEmpty) {
    const Fixture fixture("<measure></measure><measureFolder><measure><property name=\"qvref\">w</property></measure></measureFolder>");
    EXPECT_EQ(fixture.dimension->GetMeasureByWHOID(""), nullptr);
    EXPECT_EQ(fixture.dimension->GetMeasureByWHOID("w"), nullptr) << "folders are not searched";
    fixture.dimension->GetMeasures()[0]->SetQvRef("w");
    EXPECT_EQ(fixture.dimension->GetMeasureByWHOID("w"), fixture.dimension->GetMeasures()[0].get());
}

TEST(SMDimension2Model, HasTheTypesOfADimension) {
    const Fixture fixture;
    EXPECT_EQ(fixture.dimension->GetModelType(), 9);
    EXPECT_EQ(fixture.dimension->GetTagName(), "dimension");
    EXPECT_EQ(fixture.dimension->GetSMID(false), "[Sales].[Time]");
    EXPECT_TRUE(fixture.dimension->GetQueryItems().empty());
}

// ---- walks

TEST(SMDimension2Model, RenamesEachChildOnce) {
    const std::string content = "<expression>[A].[x].[y]</expression>";
    const Fixture fixture("<measure>" + content + "</measure><measureFolder><measure>" + content + "</measure></measureFolder><queryItem>" +
                          content + "</queryItem><queryItemFolder><queryItem>" + content +
                          "</queryItem></queryItemFolder><hierarchy><level>" + "<queryItem>" + content + "</queryItem></level><queryItem>" +
                          content + "</queryItem></hierarchy>");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    list.AddRenameNamespace("B", "C");
    fixture.dimension->RenameObjects(list);
    const std::string text = fixture.Text();
    std::size_t renamed = 0;
    for (std::size_t at = text.find("[B].[x].[y]"); at != std::string::npos; at = text.find("[B].[x].[y]", at + 1)) ++renamed;
    EXPECT_EQ(renamed, 6u) << text;
    EXPECT_EQ(text.find("[C]"), std::string::npos);
}

// ---- deletes that leave the display list alone

TEST(SMDimension2Model, WritesAndSavesWhatWasDeletedFromItsTypedCollections) {
    const Fixture fixture(
        "<measure><name locale=\"en\">gone</name><property name=\"id\">m</property></measure><measureFolder><name locale=\"en\">left</name>"
        "<property name=\"id\">f</property></measureFolder><measure><property name=\"id\">stays</property></measure>");
    fixture.dimension->DeleteMeasureById("m");
    fixture.dimension->DeleteMeasureById("nobody");
    fixture.dimension->DeleteMeasureFolderById("f");
    EXPECT_EQ(fixture.dimension->GetMeasures().size(), 1u);
    EXPECT_TRUE(fixture.dimension->GetMeasureFolders().empty());
    EXPECT_EQ(fixture.dimension->GetDisplayOrderItems().size(), 3u);

    fixture.dimension->SortDisplayOrder();
    EXPECT_THAT(fixture.Text(), testing::AllOf(testing::HasSubstr("gone"), testing::HasSubstr("left")));
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    fixture.dimension->getChildObjects(children);
    EXPECT_EQ(children.size(), 1u);
    RecordingContext context;
    EXPECT_TRUE(fixture.dimension->write(context));
    EXPECT_THAT(context.Names(), testing::Contains("AT_InsertObject SM_QUERY_ITEM").Times(2));
    EXPECT_THAT(context.Names(), testing::Contains("AT_InsertObject SM_QUERY_ITEM_FOLDER").Times(1));
}

TEST(SMDimension2Model, LetsGoOfADeletedMeasureThatACallerKeeps) {
    QvSmartPtr<SMMeasure2> kept;
    {
        const Fixture fixture("<measure><property name=\"id\">m</property></measure>");
        kept = fixture.dimension->GetMeasures()[0];
        fixture.dimension->DeleteMeasureById("m");
        EXPECT_EQ(kept->GetParentSMObj(), fixture.dimension.get());
    }
    EXPECT_EQ(kept->GetParentSMObj(), nullptr);
}

// ---- repository

TEST(SMDimension2Rows, HaveTheColumnsOfADimension) {
    const Fixture fixture("<type>measure</type><defaultHierarchy>Year</defaultHierarchy>");
    fixture.dimension->SetId("d");
    fixture.dimension->displayOrder = 3;
    RecordingContext context;
    ASSERT_TRUE(fixture.dimension->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_QUERY_SUBJECT", "EndObject"));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre("QS_ID S \"d\"", "QS_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                                     "LASTCHANGED D null", "NAME S \"Time\"", "DESCRIPTION S \"\"", "SCREENTIP S \"\"",
                                     "WAREHOUSE_OBJECT_ID S \"\"", "DISPLAY_ORDER L 3", "TM_QS_IDENTIFIER S \"measure\"",
                                     "MEMBERSROLLUP B true", "DEFAULTHIERARCHY S \"Year\"", "QUERY_SUBJECT_TYPE_NAME S \"dimension\""));
    const Fixture defined("<definition><mdQuery></mdQuery></definition>");
    RecordingContext second;
    ASSERT_TRUE(defined.dimension->write(second));
    EXPECT_THAT(second.Attributes(0), testing::IsSupersetOf({"TM_QS_IDENTIFIER S \"\"", "QUERY_TYPE_NAME S \"mdQuery\""}));
}

TEST(SMDimension2Rows, LogTheChildThatFailsAndEachThatIsLeft) {
    const Fixture fixture(
        "<measure><property name=\"id\">a</property></measure><hierarchy><property name=\"id\">b</property></hierarchy>"
        "<queryItem><property name=\"id\">c</property></queryItem>");
    const CapturedLog log;
    RecordingContext context;
    context.FailAt(4);  // the hierarchy, behind the dimension's row and the two actions of the measure
    EXPECT_FALSE(fixture.dimension->write(context));
    EXPECT_EQ(context.Actions().size(), 4u);
    const auto event = [](const char* id) {
        return LoggedEvent{1, "smdimension2", "SMDimension2", "write_next", "Failed to write a child of a dimension", id};
    };
    EXPECT_THAT(log.Events(), testing::ElementsAre(event("b"), event("c")));
}

TEST(SMDimension2Rows, TellMeasuresFromItemsByTheirType) {
    const CapturedLog log;
    const Fixture fixture("<queryItem><property name=\"id\">i</property></queryItem><measure><property name=\"id\">m</property></measure>");
    StoreContext store;
    ASSERT_TRUE(fixture.dimension->write(store));
    const auto item = store.RowOf("SM_QUERY_ITEM", "i"), measure = store.RowOf("SM_QUERY_ITEM", "m");
    // a context that hands both kinds of rows of the table to who asks for one
    const Fixture other;
    RecordingContext context;
    context.answers.resize(13);
    context.answers[5] = context.answers[12] = {item, measure};
    ASSERT_TRUE(other.dimension->read(context));
    EXPECT_EQ(context.Names()[5], "AT_ReadSMObject measure");
    EXPECT_EQ(context.Names()[12], "AT_ReadSMObject queryItem");
    ASSERT_EQ(other.dimension->GetMeasures().size(), 1u);
    EXPECT_EQ(other.dimension->GetMeasures()[0]->GetId(), "m");
    ASSERT_EQ(other.dimension->GetDirectQueryItems().size(), 1u);
    EXPECT_EQ(other.dimension->GetDirectQueryItems()[0]->GetId(), "i");
}

TEST(SMDimension2Rows, AskForTheKindsOfChildrenInAFixedOrder) {
    const Fixture fixture;
    RecordingContext context;
    ASSERT_TRUE(fixture.dimension->read(context));
    std::vector<std::string> kinds;
    for (const std::string& name : context.Names())
        if (name.rfind("AT_ReadSMObject ", 0) == 0) kinds.push_back(name.substr(16));
    EXPECT_THAT(kinds, testing::ElementsAre("definition2", "hierarchy", "measure", "measureFolder", "queryItem", "queryItemFolder"));
}

TEST(SMDimension2Rows, LogAMissingColumnAndKeepWhatCameBefore) {
    const Fixture fixture;
    const CapturedLog log;
    fixture.dimension->constructFromIOParameter(*Row()
                                                     .Text("id", "d")
                                                     .Text("name", "n")
                                                     .Text("description", "")
                                                     .Text("screenTip", "")
                                                     .Text("qvref", "")
                                                     .Put("membersRollup", new IOBoolParam(false)));
    EXPECT_FALSE(fixture.dimension->GetMembersRollup());
    EXPECT_EQ(fixture.dimension->GetName(), "n");
    ASSERT_FALSE(log.Events().empty());
    EXPECT_EQ(log.Events()[0].module, "smdimension2");
    EXPECT_EQ(log.Events()[0].className, "SMDimension2");
    EXPECT_EQ(log.Events()[0].method, "constructFromIOParameter");
    EXPECT_THAT(log.Events()[0].message, testing::StartsWith("Error reading object. Message: "));
    EXPECT_THAT(log.Events()[0].message + log.Events()[0].detail, testing::HasSubstr("Probably a missing parameter: "));
}
