#include "objects/dimensional/smmeasurefolder2_002_000.h"

#include <gmock/gmock.h>

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMDimension2> dimension = new SMDimension2(project->GetRootNamespace(), project, project->GetRootNamespace());
    QvSmartPtr<SMMeasureFolder2> folder = new SMMeasureFolder2(dimension, project);

    explicit Fixture(const std::string& elements = "") {
        dimension->AddName("en", "Facts");
        SMMeasureFolderBuilder builder(folder);
        ParseInside(builder, elements);
    }
    std::string Text() const { return WriteElement(*folder); }
};

std::string WithId(const std::string& tag, const std::string& id) {
    return "<" + tag + "><property name=\"id\">" + id + "</property></" + tag + ">";
}

}  // namespace

TEST(SMMeasureFolder2Xml, WritesHiddenAlways) {
    const CapturedLog log;
    EXPECT_EQ(Fixture().Text(),
              "<measureFolder><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
              "<property name=\"version\" type=\"hidden\">0</property><hidden>false</hidden></measureFolder>");
    const Fixture fixture("<hidden>true</hidden><hidden></hidden>");
    EXPECT_TRUE(fixture.folder->IsHidden()) << "an empty text changes nothing";
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMMeasureFolder2Xml, KeepsMeasuresAndFoldersInTheOrderOfTheirComing) {
    const Fixture fixture(WithId("measureFolder", "a") + WithId("measure", "b") + WithId("measureFolder", "c"));
    fixture.folder->GetMeasures()[0]->displayOrder = -1;
    const std::string text = fixture.Text();
    EXPECT_LT(text.find(">a<"), text.find(">b<"));
    EXPECT_LT(text.find(">b<"), text.find(">c<"));
    for (const SMObjectBase* child : fixture.folder->GetDisplayOrderItems()) EXPECT_LE(child->displayOrder, 0);
}

TEST(SMMeasureFolder2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<queryItem></queryItem>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'queryItem'", "4 Unknown tag 'queryItem'"));
}

TEST(SMMeasureFolder2Model, RecordsAMeasureThatItFindsToo) {
    const Fixture fixture;
    fixture.project->m_keepIdMap = true;
    SMMeasure2* measure = fixture.folder->AddOrReturnExistingMeasure("m");
    EXPECT_EQ(measure->displayOrder, 0);
    EXPECT_EQ(measure->GetParentSMObj(), fixture.folder.get());
    fixture.project->m_idMap.clear();
    EXPECT_EQ(fixture.folder->AddOrReturnExistingMeasure("m"), measure);
    EXPECT_THAT(fixture.project->m_idMap, testing::ElementsAre(testing::Pair("[Sales].[Facts].[m]", measure)));
    SMMeasureFolder2* inner = fixture.folder->AddOrUpdateMeasureFolder("f", "d");
    EXPECT_EQ(fixture.folder->AddOrUpdateMeasureFolder("f", "e"), inner);
    EXPECT_EQ(inner->GetDescription(), "e");
    EXPECT_TRUE(fixture.folder->IsFolder());
}

TEST(SMMeasureFolder2Model, FindsDirectMeasuresByAReferenceThatIsNotEmpty) {
    const Fixture fixture("<measureFolder><measure><property name=\"qvref\">w</property></measure></measureFolder><measure></measure>");
    EXPECT_EQ(fixture.folder->GetMeasureByWHOID("w"), nullptr);
    EXPECT_EQ(fixture.folder->GetMeasureByWHOID(""), nullptr);
    fixture.folder->GetMeasures()[0]->SetQvRef("w");
    EXPECT_EQ(fixture.folder->GetMeasureByWHOID("w"), fixture.folder->GetMeasures()[0].get());
}

TEST(SMMeasureFolder2Model, WritesAndSavesWhatWasDeletedFromItsTypedCollections) {
    const Fixture fixture(WithId("measure", "gone") + WithId("measureFolder", "left") + WithId("measure", "stays"));
    fixture.folder->DeleteMeasureById("gone");
    fixture.folder->DeleteMeasureFolderById("left");
    fixture.folder->DeleteMeasureById("nobody");
    EXPECT_EQ(fixture.folder->GetMeasures().size(), 1u);
    EXPECT_TRUE(fixture.folder->GetMeasureFolders().empty());
    EXPECT_EQ(fixture.folder->GetDisplayOrderItems().size(), 3u);
    EXPECT_THAT(fixture.Text(), testing::AllOf(testing::HasSubstr(">gone<"), testing::HasSubstr(">left<"), testing::HasSubstr(">stays<")));
    RecordingContext context;
    EXPECT_TRUE(fixture.folder->write(context));
    EXPECT_THAT(context.Names(), testing::Contains("AT_InsertObject SM_QUERY_ITEM").Times(2));
    EXPECT_THAT(context.Names(), testing::Contains("AT_InsertObject SM_QUERY_ITEM_FOLDER").Times(2));
}

TEST(SMMeasureFolder2Rows, BringMeasuresBeforeFolders) {
    const CapturedLog log;
    const Fixture fixture(WithId("measureFolder", "a") + WithId("measure", "b"));
    fixture.folder->SetId("f");
    StoreContext store;
    ASSERT_TRUE(fixture.folder->write(store));
    EXPECT_THAT(store.Attributes(0), testing::IsSupersetOf({"ITEM_FOLDER_TYPE_NAME S \"measureFolder\"", "HIDDEN B false",
                                                            "DISPLAY_ORDER L 0", "QS_ID S \"\""}));
    EXPECT_THAT(store.Attributes(1), testing::Contains("QS_ID S \"f\""));
    const QvSmartPtr<SMMeasureFolder2> read = new SMMeasureFolder2(fixture.dimension, fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_QUERY_ITEM_FOLDER", "f"));
    ASSERT_TRUE(read->read(store));
    ASSERT_EQ(read->GetDisplayOrderItems().size(), 2u);
    EXPECT_EQ(read->GetDisplayOrderItems()[0]->GetId(), "b");
    EXPECT_EQ(read->GetDisplayOrderItems()[1]->GetId(), "a");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMMeasureFolder2Rows, StopAtTheChildThatFails) {
    const Fixture fixture(WithId("measure", "a") + WithId("measure", "b"));
    const CapturedLog log;
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(fixture.folder->write(context));
    const LoggedEvent event{1, "smmeasurefolder2", "SMMeasureFolder2", "write_next", "Failed to write a child of a measure folder", "a"};
    EXPECT_THAT(log.Events(), testing::ElementsAre(event));
}
