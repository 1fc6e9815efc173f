#include "objects/dimensional/smmeasure2_002_000.h"

#include <gmock/gmock.h>

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smmeasurefolder2_002_000.h"
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

    explicit Fixture(const std::string& elements) {
        dimension->AddName("en", "Facts");
        SMDimensionBuilder builder(dimension);
        ParseInside(builder, elements);
    }
    SMMeasure2& Measure() const { return *dimension->GetMeasures().at(0); }
    std::string Text() const { return WriteElement(Measure()); }
};

std::string Named(const std::string& name, const std::string& content = "") {
    return "<measure><name locale=\"en\">" + name + "</name><property name=\"id\">" + name + "</property>" + content + "</measure>";
}

const std::string FRAME =
    "<lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>";

}  // namespace

TEST(SMMeasure2Xml, WritesIdAndVersionAlwaysAndTheFlagWhenTrue) {
    const CapturedLog log;
    EXPECT_EQ(Fixture("<measure></measure>").Text(), "<measure id=\"\" version=\"0\">" + FRAME + "<size>0</size></measure>");
    EXPECT_EQ(Fixture("<measure><isHierarchical>true</isHierarchical><aggregateRules a=\"1\">r</aggregateRules></measure>").Text(),
              "<measure id=\"\" version=\"0\">" + FRAME +
                  "<size>0</size><aggregateRules a=\"1\">r</aggregateRules><isHierarchical>true</isHierarchical></measure>");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMMeasure2Builder, TakesIdAndVersionFromThePropertiesAlone) {
    const Fixture fixture(
        "<measure id=\"dropped\" version=\"9\"><property name=\"id\">m</property><property name=\"version\">3</property></measure>");
    EXPECT_EQ(fixture.Measure().GetId(), "m");
    EXPECT_EQ(fixture.Measure().GetVersionNo(), 3);
}

TEST(SMMeasure2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<measure><level></level></measure>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'level'", "4 Unknown tag 'level'"));
}

TEST(SMMeasure2Faces, BringMeasuresThreeDeepBackInTheirOrder) {
    const CapturedLog log;
    const Fixture fixture(Named("m", Named("b", Named("d", Named("e")) + Named("c")) + Named("a")));
    const std::string text = fixture.Text();
    EXPECT_TRUE(SameXml(text, Fixture(text).Text()));
    StoreContext store;
    ASSERT_TRUE(fixture.Measure().write(store));
    const QvSmartPtr<SMMeasure2> read = new SMMeasure2(fixture.dimension, fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_QUERY_ITEM", "m"));
    ASSERT_TRUE(read->read(store));
    EXPECT_TRUE(SameXml(fixture.Text(), WriteElement(*read)));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMMeasure2Model, HasTheIdOfTheDimensionWhereverItStands) {
    const Fixture fixture(Named("m", Named("n", Named("o"))) + "<measureFolder>" + Named("p") + "</measureFolder>");
    const SMMeasure2& nested = *fixture.Measure().GetMeasures()[0];
    EXPECT_EQ(fixture.Measure().GetSMID(false), "[Sales].[Facts].[m]");
    EXPECT_EQ(nested.GetMeasures()[0]->GetSMID(false), "[Sales].[Facts].[o]");
    EXPECT_EQ(fixture.dimension->GetMeasureFolders()[0]->GetMeasures()[0]->GetSMID(false), "[Sales].[Facts].[p]");
}

TEST(SMMeasure2Model, LogsAnIdOutsideOfADimensionUnderAMisspelledModule) {
    const ProjectPtr project = NewProject("Sales");
    const QvSmartPtr<SMMeasure2> measure = new SMMeasure2(project->GetRootNamespace(), project);
    const CapturedLog log;
    EXPECT_EQ(measure->GetSMID(false), "");
    const LoggedEvent own{
        1, "smeasure2", "SMMeasure2", "GetSMID", "Attempting to build an SM ID for a measure that is not inside a dimension.", ""};
    ASSERT_FALSE(log.Events().empty());
    EXPECT_EQ(log.Events().back(), own);
}

TEST(SMMeasure2Model, RenamesItselfAndItsRulesButNoNestedMeasure) {
    const std::string expression = "<expression>[A].[x].[y]</expression>";
    const Fixture fixture(Named("m", expression + "<aggregateRules>[A].[x].[y]</aggregateRules>" + Named("n", expression)));
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.Measure().RenameObjects(list);
    EXPECT_EQ(fixture.Measure().GetExpressionStr(), "[B].[x].[y]");
    EXPECT_EQ(InnerXmlOf(fixture.Measure().m_aggregateRules), "[B].[x].[y]");
    EXPECT_EQ(fixture.Measure().GetMeasures()[0]->GetExpressionStr(), "[A].[x].[y]");
}

TEST(SMMeasure2Model, GivesNestedMeasuresNewIds) {
    const Fixture fixture(Named("m", Named("n")));
    std::map<QvULString, QvULString> ids;
    fixture.Measure().RegenerateIds(ids);
    EXPECT_NE(fixture.Measure().GetId(), "m");
    EXPECT_NE(fixture.Measure().GetMeasures()[0]->GetId(), "n");
}

TEST(SMMeasure2Model, HasTheTypesOfAMeasure) {
    const Fixture fixture("<measure></measure>");
    EXPECT_EQ(fixture.Measure().GetModelType(), 25);
    EXPECT_EQ(fixture.Measure().GetTagName(), "queryItem") << "inherited";
    EXPECT_EQ(fixture.Measure().GetQueryItemTypeName(), "measure");
}

TEST(SMMeasure2Rows, HaveTheFlagAsTextUnderAMisspelledName) {
    const Fixture fixture(Named("m", "<isHierarchical>true</isHierarchical><aggregateRules>r</aggregateRules>"));
    StoreContext store;
    ASSERT_TRUE(fixture.Measure().write(store));
    EXPECT_EQ(store.Attributes(0).back(), "ISHIERARCHIAL S \"true\"");
    EXPECT_THAT(store.Attributes(0), testing::Contains("QS_ITEM_TYPE_NAME S \"measure\""));
    EXPECT_THAT(store.records, testing::Contains(testing::Key("m/aggregateRules")));
    const auto row = store.RowOf("SM_QUERY_ITEM", "m");
    EXPECT_TRUE(row->HasKey("isHierarchial"));
    const QvSmartPtr<SMMeasure2> read = new SMMeasure2(fixture.dimension, fixture.project);
    read->constructFromIOParameter(*row);
    EXPECT_TRUE(read->IsHierarchical());
}

TEST(SMMeasure2Rows, StopAtTheNestedMeasureThatFails) {
    const Fixture fixture(Named("m", Named("a") + Named("b")));
    const CapturedLog log;
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(fixture.Measure().write(context));
    const LoggedEvent event{1, "smmeasure2", "SMMeasure2", "write_next", "Failed to write a measure child of a measure", "a"};
    EXPECT_THAT(log.Events(), testing::ElementsAre(event));
}

TEST(SMMeasure2Rows, TakeRowsOfMeasuresAlone) {
    const CapturedLog log;
    const Fixture fixture(Named("m") + "<queryItem><property name=\"id\">i</property></queryItem>");
    StoreContext store;
    ASSERT_TRUE(fixture.dimension->write(store));
    const QvSmartPtr<SMMeasure2> read = new SMMeasure2(fixture.dimension, fixture.project);
    RecordingContext context;
    context.answers.resize(5);
    context.answers[4] = {store.RowOf("SM_QUERY_ITEM", "i"), store.RowOf("SM_QUERY_ITEM", "m")};
    ASSERT_TRUE(read->read(context));
    EXPECT_EQ(context.Names()[4], "AT_ReadSMObject measure");
    ASSERT_EQ(read->GetMeasures().size(), 1u);
    EXPECT_EQ(read->GetMeasures()[0]->GetId(), "m");
    EXPECT_EQ(read->GetMeasures()[0]->GetParentSMObj(), read.get());
    EXPECT_THAT(context.noted, testing::ElementsAre("m"));
}

TEST(SMMeasure2Model, FollowsNewIdsInItsRules) {
    const Fixture fixture(Named("m", "<aggregateRules>'old'</aggregateRules>"));
    fixture.Measure().m_aggregateRules->version = 4;
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.Measure().RegenerateIds(ids);
    EXPECT_EQ(InnerXmlOf(fixture.Measure().m_aggregateRules), "'new'");
    EXPECT_EQ(fixture.Measure().m_aggregateRules->version, 1);
}

TEST(SMMeasure2Rows, FailWithATypeOfAnotherKind) {
    const CapturedLog log;
    const Fixture fixture("");
    const auto refused = [&](SMObjectBase& object, std::size_t place) {
        RecordingContext context;
        context.answers.resize(place + 1);
        context.answers[place] = {Row().Text("id", "m").Number("object_type", 1)};
        EXPECT_FALSE(object.read(context));
        EXPECT_EQ(context.Names().back(), "AT_ReadSMObject measure");
    };
    refused(*QvSmartPtr<SMMeasure2>(new SMMeasure2(fixture.dimension, fixture.project)), 4);
    refused(*QvSmartPtr<SMMeasureFolder2>(new SMMeasureFolder2(fixture.dimension, fixture.project)), 0);
    refused(*fixture.dimension, 5);
    EXPECT_THAT(log.Messages(), testing::Each("1 Error reading object. Message: A number was asked for a text."));
    EXPECT_EQ(log.Messages().size(), 3u);
}
