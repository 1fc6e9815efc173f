#include "objects/dimensional/smhierarchy2_002_000.h"

#include <gmock/gmock.h>

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
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
    QvSmartPtr<SMHierarchy2> hierarchy = new SMHierarchy2(dimension, project);

    explicit Fixture(const std::string& elements = "") {
        dimension->AddName("en", "Time");
        dimension->AddHierarchy(hierarchy);
        hierarchy->AddName("en", "Year");
        SMHierarchyBuilder builder(hierarchy);
        ParseInside(builder, elements + "<hierarchy></hierarchy>");
    }
    std::string Text() const { return WriteElement(*hierarchy); }
};

const std::string FRAME =
    "<name locale=\"en\">Year</name><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
    "<property name=\"version\" type=\"hidden\">0</property>";

std::string Item(const std::string& name) {
    return "<queryItem><name locale=\"en\">" + name + "</name></queryItem>";
}

}  // namespace

TEST(SMHierarchy2Xml, LeavesOutWhatIsUnsetAndTheBalanceThatIsTheDefault) {
    const CapturedLog log;
    const Fixture fixture;
    EXPECT_EQ(fixture.Text(), "<hierarchy>" + FRAME + "</hierarchy>");
    EXPECT_TRUE(fixture.hierarchy->m_balanced);
    EXPECT_THAT(Fixture("<balanced>false</balanced>").Text(), testing::HasSubstr("<balanced>false</balanced>"));
    EXPECT_EQ(Fixture("<balanced>true</balanced>").Text(), fixture.Text());
    EXPECT_EQ(Fixture("<cardinality>-1</cardinality><externalNumberOfLevels>-2</externalNumberOfLevels>").Text(), fixture.Text());
    EXPECT_THAT(Fixture("<cardinality>0</cardinality>").Text(), testing::HasSubstr("<cardinality>0</cardinality>"));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMHierarchy2Xml, PutsItsItemAndFolderBeforeTheLevels) {
    const Fixture fixture("<level></level><queryItemFolder></queryItemFolder><queryItem></queryItem>");
    const std::string text = fixture.Text();
    EXPECT_LT(text.find("<queryItem>"), text.find("<queryItemFolder "));
    EXPECT_LT(text.find("<queryItemFolder "), text.find("<level>"));
}

TEST(SMHierarchy2Xml, WritesTheLevelsInTheOrderOfTheirComing) {
    const Fixture fixture("<level><name locale=\"en\">first</name></level><level><name locale=\"en\">second</name></level>");
    fixture.hierarchy->GetLevels()[0]->displayOrder = 9;
    fixture.hierarchy->SortDisplayOrder();
    EXPECT_EQ(fixture.hierarchy->GetDisplayOrderItems()[0], fixture.hierarchy->GetLevels()[1].get());
    const std::string text = fixture.Text();
    EXPECT_LT(text.find("first"), text.find("second"));
}

TEST(SMHierarchy2Builder, LogsAnObjectElement) {
    const CapturedLog log;
    const Fixture fixture("<object></object>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'object'"));
}

TEST(SMHierarchy2Builder, KeepsACaptionWithoutALocale) {
    const Fixture fixture("<rootCaption>all</rootCaption><rootCaption locale=\"fr\">tous</rootCaption>");
    EXPECT_EQ(fixture.hierarchy->GetRootCaptions().size(), 2u);
    EXPECT_THAT(fixture.Text(), testing::HasSubstr("<rootCaption locale=\"\">all</rootCaption>"));
}

TEST(SMHierarchy2Builder, LeavesAReplacedItemInTheDisplayListAlone) {
    const Fixture fixture(Item("first") + Item("second") +
                          "<queryItemFolder></queryItemFolder><queryItemFolder></queryItemFolder><level></level>");
    EXPECT_EQ(fixture.hierarchy->GetQueryItem()->GetName(), "second");
    ASSERT_EQ(fixture.hierarchy->GetDisplayOrderItems().size(), 5u);
    // the list was sorted at the end of the element, over objects that no slot names any more
    EXPECT_EQ(fixture.hierarchy->GetDisplayOrderItems()[0]->displayOrder, 0);
    EXPECT_EQ(static_cast<const SMQueryItem2*>(fixture.hierarchy->GetDisplayOrderItems()[0])->GetName(), "first");
    EXPECT_THAT(fixture.Text(), testing::Not(testing::HasSubstr("first")));
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    fixture.hierarchy->getChildObjects(children);
    EXPECT_EQ(children.size(), 3u);
    RecordingContext context;
    EXPECT_TRUE(fixture.hierarchy->write(context));
    EXPECT_THAT(context.Names(), testing::Contains("AT_InsertObject SM_QUERY_ITEM").Times(1));
}

TEST(SMHierarchy2Model, HasTheIdOfItsDimensionAndItsName) {
    const Fixture fixture;
    EXPECT_EQ(fixture.hierarchy->GetSMID(false), "[Sales].[Time].[Year]");
    EXPECT_EQ(fixture.hierarchy->GetModelType(), 31);
}

TEST(SMHierarchy2Model, LogsAnIdOutsideOfADimension) {
    const ProjectPtr project = NewProject("Sales");
    const QvSmartPtr<SMHierarchy2> hierarchy = new SMHierarchy2(project->GetRootNamespace(), project);
    const CapturedLog log;
    EXPECT_EQ(hierarchy->GetSMID(false), "");
    const LoggedEvent own{
        1, "smhierarchy2", "SMHierarchy2", "GetSMID", "Attempting to build an SM ID for a hierarchy that is not inside a dimension.", ""};
    ASSERT_FALSE(log.Events().empty());
    EXPECT_EQ(log.Events().back(), own);
}

TEST(SMHierarchy2Model, StampsALevelWhoseKindChanges) {
    const Fixture fixture;
    fixture.project->m_keepIdMap = true;
    SMLevel2* level = fixture.hierarchy->AddOrUpdateLevel("Month", false);
    EXPECT_EQ(level->displayOrder, 0);
    fixture.project->m_idMap.clear();
    level->SetLastChangedDate(QvDate(false));
    EXPECT_EQ(fixture.hierarchy->AddOrUpdateLevel("Month", false), level);
    EXPECT_FALSE(level->GetLastChangedDate().IsSet());
    EXPECT_THAT(fixture.project->m_idMap, testing::ElementsAre(testing::Pair("[Sales].[Time].[Year].[Month]", level)));
    fixture.hierarchy->AddOrUpdateLevel("Month", true);
    EXPECT_TRUE(level->IsManual());
    EXPECT_TRUE(level->GetLastChangedDate().IsSet());
    EXPECT_EQ(fixture.hierarchy->TakeDisplayOrder(), 1);
}

TEST(SMHierarchy2Model, FindsAndDeletesLevelsByAReferenceThatIsNotEmpty) {
    const Fixture fixture("<level></level><level><property name=\"qvref\">w</property></level><level></level>");
    EXPECT_EQ(fixture.hierarchy->GetLevelByQvRefId(""), nullptr);
    SMLevel2* found = fixture.hierarchy->GetLevels()[1];
    EXPECT_EQ(fixture.hierarchy->GetLevelByQvRefId("w"), found);
    fixture.hierarchy->DeleteLevelByQvRefId("");
    fixture.hierarchy->DeleteLevelByQvRefId("nothing");
    EXPECT_EQ(fixture.hierarchy->GetLevels().size(), 3u);
    fixture.hierarchy->DeleteLevelByQvRefId("w");
    ASSERT_EQ(fixture.hierarchy->GetLevels().size(), 2u);
    // the ids of all three are empty: the list loses the level found, not the first of that id
    EXPECT_THAT(fixture.hierarchy->GetDisplayOrderItems(),
                testing::ElementsAre(fixture.hierarchy->GetLevels()[0].get(), fixture.hierarchy->GetLevels()[1].get()));
    EXPECT_EQ(fixture.hierarchy->GetLevels()[1]->displayOrder, 2);
}

TEST(SMHierarchy2Model, FindsLevelsByTheirKindInACalendar) {
    const Fixture fixture("<level></level><level></level>");
    const auto month = SMLevel2::eCalendarLevelType(3);
    EXPECT_EQ(fixture.hierarchy->GetLevelByTMGCalendarLevelType(month), nullptr);
    fixture.hierarchy->GetLevels()[1]->SetTMGCalendarLevelType(month);
    EXPECT_EQ(fixture.hierarchy->GetLevelByTMGCalendarLevelType(month), fixture.hierarchy->GetLevels()[1].get());
    EXPECT_EQ(fixture.hierarchy->GetTMGCalendarHierType(), SMHierarchy2::calendarHierUnset);
    fixture.hierarchy->SetTMGCalendarHierType(SMHierarchy2::eCalendarHierType(2));
    EXPECT_EQ(fixture.hierarchy->GetTMGCalendarHierType(), 2);
}

TEST(SMHierarchy2Model, SetsItsCaptionInTheDefaultLocale) {
    const Fixture fixture("<rootCaption locale=\"fr\">tous</rootCaption>");
    fixture.hierarchy->SetRootCaption("all");
    fixture.hierarchy->SetRootCaption("everything");
    EXPECT_THAT(fixture.Text(), testing::AllOf(testing::HasSubstr("<rootCaption locale=\"en\">everything</rootCaption>"),
                                               testing::HasSubstr("<rootCaption locale=\"fr\">tous</rootCaption>")));
}

TEST(SMHierarchy2Rows, HaveAllColumnsAndTheCaptionOfTheDefaultLocale) {
    const Fixture fixture("<rootCaption locale=\"fr\">tous</rootCaption>");
    fixture.dimension->SetId("d");
    fixture.dimension->SetVersionNo(4);
    fixture.hierarchy->SetId("h");
    RecordingContext context;
    ASSERT_TRUE(fixture.hierarchy->write(context));
    EXPECT_THAT(
        context.Attributes(0),
        testing::ElementsAre("HIERARCHY_ID S \"h\"", "HIERARCHY_VERSION_NO L 1", "QS_ID S \"d\"", "QS_VERSION_NO L 4", "LASTCHANGED D null",
                             "NAME S \"Year\"", "DESCRIPTION S \"\"", "SCREENTIP S \"\"", "WAREHOUSE_OBJECT_ID S \"\"",
                             "EXTERNALNUMBEROFLEVELS L -1", "PARENTCHILD B false", "CARDINALITY L -1", "SORTEDHIERARCHY S \"\"",
                             "ROOTMEMBER S \"\"", "RAGGED B false", "BALANCED B true", "MULTIROOT B false", "ISWIDEFAN B false",
                             "ROOTCAPTION S \"\"", "ROOTMUN S \"\"", "EXTERNALNAME S \"\"", "DISPLAY_ORDER L 0"));
    EXPECT_EQ(fixture.hierarchy->GetRootCaptions().size(), 1u) << "the look-up makes no entry";
}

TEST(SMHierarchy2Rows, LoseItsItemAndFolderAndOtherCaptions) {
    const CapturedLog log;
    const Fixture fixture(
        "<property name=\"id\">h</property>" + Item("i") +
        "<queryItemFolder></queryItemFolder><level><name locale=\"en\">l</name></level>"
        "<rootCaption locale=\"en\">all</rootCaption><rootCaption locale=\"fr\">tous</rootCaption><balanced>false</balanced>");
    StoreContext store;
    ASSERT_TRUE(fixture.hierarchy->write(store));
    const Fixture other;
    other.hierarchy->constructFromIOParameter(*store.RowOf("SM_HIERARCHY", "h"));
    ASSERT_TRUE(other.hierarchy->read(store));
    EXPECT_EQ(other.hierarchy->GetQueryItem(), nullptr);
    EXPECT_EQ(other.hierarchy->GetQueryItemFolder(), nullptr);
    ASSERT_EQ(other.hierarchy->GetLevels().size(), 1u);
    EXPECT_EQ(other.hierarchy->GetLevels()[0]->GetName(), "l");
    EXPECT_FALSE(other.hierarchy->m_balanced);
    EXPECT_THAT(other.Text(), testing::AllOf(testing::HasSubstr("<rootCaption locale=\"en\">all</rootCaption>"),
                                             testing::Not(testing::HasSubstr("tous"))));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMHierarchy2Rows, StopAtTheLevelThatFails) {
    const Fixture fixture("<level><property name=\"id\">a</property></level><level><property name=\"id\">b</property></level>");
    const CapturedLog log;
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(fixture.hierarchy->write(context));
    const LoggedEvent event{1, "smhierarchy2", "SMHierarchy2", "write_next", "Failed to write a child of a hierarchy.", "a"};
    EXPECT_THAT(log.Events(), testing::ElementsAre(event));
}
