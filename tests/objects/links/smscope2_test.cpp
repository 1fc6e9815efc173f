// Scopes and the measure scopes inside them.
#include "objects/links/smscope2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/columns.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Fixture {
    ProjectPtr project = NewProject();
    QvSmartPtr<SMScope2> scope = new SMScope2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMScopeBuilder builder(scope);
        ParseInside(builder, elements);
    }
    const SMMeasureScope2& Measure(std::size_t place = 0) const { return *scope->GetMeasureScopes().at(place); }
};

void ExpectNoRow(SMObjectBase& object) {
    RecordingContext context;
    EXPECT_TRUE(object.read(context));
    EXPECT_TRUE(object.write_next(context));
    EXPECT_TRUE(object.write_no_seq_inc(context));
    EXPECT_THAT(context.Actions(), IsEmpty());
    EXPECT_THAT(ColumnsOf(object), IsEmpty());
    for (const I18NString& column : {object.GetIdCol(), object.GetVersionCol(), object.GetParentIdCol(), object.GetParentVersionCol()})
        EXPECT_EQ(column, "");
    const Row row = Row().Text("id", "other");
    object.constructFromIOParameter(*row);
    EXPECT_EQ(object.GetId(), "");
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    object.getChildObjects(children);
    EXPECT_EQ(children.size(), 0u);
}

LoggedEvent Unknown(const char* module, const char* className, const char* method, const char* message) {
    return {4, module, className, method, message, ""};
}

}  // namespace

TEST(SMScope2Xml, HasItsLevelAlways) {
    EXPECT_EQ(WriteElement(*Fixture().scope), "<scope><levelRef></levelRef></scope>");
}

TEST(SMScope2Xml, HasItsMeasureScopesInTheOrderOfComing) {
    const Fixture fixture;
    fixture.scope->m_levelRef = "[ns].[d].[h].[l]";
    fixture.scope->AddNewMeasureScope("[m2]", true);
    fixture.scope->AddNewMeasureScope("[m1]", false);
    EXPECT_EQ(WriteElement(*fixture.scope),
              "<scope><levelRef>[ns].[d].[h].[l]</levelRef><measureScope excluded=\"true\"><refobj>[m2]</refobj></measureScope>"
              "<measureScope excluded=\"false\"><refobj>[m1]</refobj></measureScope></scope>");
}

TEST(SMMeasureScope2Xml, HasExclusionAndReferenceAlways) {
    const Fixture fixture;
    fixture.scope->AddNewMeasureScope("", false);
    EXPECT_EQ(WriteElement(fixture.Measure()), "<measureScope excluded=\"false\"><refobj></refobj></measureScope>");
}

TEST(SMMeasureScope2Xml, HasRollupAndAllocationBeforeTheReference) {
    const Fixture fixture;
    SMMeasureScope2* measure = fixture.scope->AddNewMeasureScope("[ns].[m].[x]", false);
    measure->m_rollup = SMEnum_aggregationRule::countDistinct;
    measure->m_allocation = "[ns].[m].[y]";
    EXPECT_EQ(WriteElement(*measure),
              "<measureScope excluded=\"false\"><rollup>countDistinct</rollup><allocation>[ns].[m].[y]</allocation>"
              "<refobj>[ns].[m].[x]</refobj></measureScope>");
}

TEST(SMScope2Builder, ReadsLevelAndMeasureScopes) {
    const CapturedLog log;
    const Fixture fixture(
        "<levelRef>[l]</levelRef><measureScope excluded='true'><rollup>sum</rollup><allocation>[a]</allocation><refobj>[m]</refobj>"
        "</measureScope><measureScope><rollup></rollup></measureScope>");
    EXPECT_EQ(fixture.scope->m_levelRef, "[l]");
    ASSERT_EQ(fixture.scope->GetMeasureScopes().size(), 2u);
    EXPECT_TRUE(fixture.Measure(0).m_excluded);
    EXPECT_EQ(fixture.Measure(0).m_rollup, SMEnum_aggregationRule::sum);
    EXPECT_EQ(fixture.Measure(0).m_allocation, "[a]");
    EXPECT_EQ(fixture.Measure(0).m_refobj, "[m]");
    EXPECT_EQ(fixture.Measure(0).parent, fixture.scope.get());
    EXPECT_EQ(fixture.Measure(0).GetSMProject(), fixture.project.get());
    EXPECT_FALSE(fixture.Measure(1).m_excluded);
    EXPECT_EQ(fixture.Measure(1).m_rollup, -1);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMScope2Builder, LeavesTheRollupWhenItsTextIsEmpty) {
    const Fixture fixture("<measureScope><rollup>sum</rollup><rollup></rollup></measureScope>");
    EXPECT_EQ(fixture.Measure().m_rollup, SMEnum_aggregationRule::sum);
    EXPECT_EQ(Fixture("<measureScope><rollup>sum</rollup><rollup>nobody's</rollup></measureScope>").Measure().m_rollup, -1);
}

TEST(SMScope2Builder, LogsWhatItDoesNotKnowAndSkipsItsText) {
    const CapturedLog log;
    const Fixture fixture("<levelRef>[l]</levelRef><zeb>text</zeb><measureScope><refobj>[m]</refobj></measureScope>");
    EXPECT_EQ(fixture.scope->m_levelRef, "[l]");
    EXPECT_EQ(fixture.Measure().m_refobj, "[m]");
    EXPECT_THAT(log.Events(), ElementsAre(Unknown("smscope2", "SMScopeBuilder::smtagStartElement", "smtagStartElement", "Unknown tag:zeb"),
                                          Unknown("smscope2", "SMScopeBuilder::smtagEndElement", "smtagEndElement", "Unknown tag:zeb")));
}

TEST(SMMeasureScope2Builder, LogsWhatItDoesNotKnowUnderTwoModules) {
    const CapturedLog log;
    const Fixture fixture("<measureScope><refobj>[m]</refobj><name>text</name></measureScope>");
    EXPECT_EQ(fixture.Measure().m_refobj, "[m]");
    EXPECT_THAT(log.Events(),
                ElementsAre(Unknown("smMeasureScope2", "SMMeasureScopeBuilder::smtagStartElement", "smtagStartElement", "Unknown tag:name"),
                            Unknown("smmeasurescope2", "SMMeasureScopeBuilder::smtagEndElement", "smtagEndElement", "Unknown tag:name")));
}

TEST(SMScope2Model, HasTheTypesOfItsTags) {
    const Fixture fixture;
    EXPECT_EQ(fixture.scope->GetSMType(), 159);
    EXPECT_EQ(fixture.scope->AddNewMeasureScope("", false)->GetSMType(), 97);
}

TEST(SMScope2Model, MakesMeasureScopesOfItsOwn) {
    const Fixture fixture;
    const SMMeasureScope2* measure = fixture.scope->AddNewMeasureScope("[m]", true);
    EXPECT_EQ(measure->parent, fixture.scope.get());
    EXPECT_EQ(measure->GetSMProject(), fixture.project.get());
    EXPECT_TRUE(measure->m_excluded);
    EXPECT_EQ(measure->m_refobj, "[m]");
    EXPECT_EQ(measure->m_rollup, -1);
    EXPECT_EQ(measure->m_allocation, "");
}

TEST(SMScope2Model, FindsTheFirstMeasureScopeOfAMeasure) {
    const Fixture fixture;
    fixture.scope->AddNewMeasureScope("[a]", false);
    SMMeasureScope2* first = fixture.scope->AddNewMeasureScope("[b]", false);
    fixture.scope->AddNewMeasureScope("[b]", true);
    EXPECT_EQ(fixture.scope->GetMeasureScopeWithRefobj("[b]"), first);
    EXPECT_EQ(fixture.scope->GetMeasureScopeWithRefobj("[B]"), nullptr);
    EXPECT_EQ(fixture.scope->GetMeasureScopeWithRefobj(""), nullptr);
}

TEST(SMScope2Model, HasNoRow) {
    const Fixture fixture;
    fixture.scope->AddNewMeasureScope("[m]", true);
    ExpectNoRow(*fixture.scope);
    ExpectNoRow(*fixture.scope->GetMeasureScopes()[0]);
}

TEST(SMScope2Model, RenamesLevelMeasureAndAllocation) {
    const Fixture fixture;
    fixture.scope->m_levelRef = "[A].[d].[h].[l]";
    SMMeasureScope2* measure = fixture.scope->AddNewMeasureScope("[A].[m].[x]", false);
    measure->m_allocation = "[A].[m].[y]";
    SMMeasureScope2* bare = fixture.scope->AddNewMeasureScope("[A].[m]", false);
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.scope->RenameObjects(list);
    EXPECT_EQ(fixture.scope->m_levelRef, "[B].[d].[h].[l]");
    EXPECT_EQ(measure->m_refobj, "[B].[m].[x]");
    EXPECT_EQ(measure->m_allocation, "[B].[m].[y]");
    EXPECT_EQ(bare->m_refobj, "[A].[m]") << "as the format has it";
    EXPECT_EQ(bare->m_allocation, "");
}

TEST(SMScope2Model, GivesNewIdsToItsMeasureScopesToo) {
    const Fixture fixture;
    const SMMeasureScope2* measure = fixture.scope->AddNewMeasureScope("[m]", false);
    fixture.scope->RegenerateIds();
    EXPECT_EQ(fixture.scope->GetId().length(), 36);
    EXPECT_EQ(measure->GetId().length(), 36);
    EXPECT_NE(measure->GetId(), fixture.scope->GetId());
}

TEST(SMScope2Model, LeavesAMeasureScopeThatOutlivesItWithoutAParent) {
    Fixture fixture;
    const QvSmartPtr<SMMeasureScope2> measure = fixture.scope->AddNewMeasureScope("[m]", false);
    fixture.scope = nullptr;
    EXPECT_EQ(measure->parent, nullptr);
    EXPECT_EQ(measure->GetParentSMObj(), nullptr);
}
