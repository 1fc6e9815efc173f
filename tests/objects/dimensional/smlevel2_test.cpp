#include "objects/dimensional/smlevel2_002_000.h"

#include <gmock/gmock.h>

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smhierarchy2_002_000.h"
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
    QvSmartPtr<SMDimension2> dimension = new SMDimension2(project->GetRootNamespace(), project, project->GetRootNamespace());
    QvSmartPtr<SMHierarchy2> hierarchy = new SMHierarchy2(dimension, project);
    QvSmartPtr<SMLevel2> level = new SMLevel2(hierarchy, project);

    explicit Fixture(const std::string& elements = "") {
        dimension->AddName("en", "Time");
        hierarchy->AddName("en", "Year");
        level->AddName("en", "Month");
        SMLevelBuilder builder(level);
        ParseInside(builder, elements);
    }
    std::string Text() const { return WriteElement(*level); }
    SMQueryItem2* Update(const char* name, const char* expression) const {
        return level->AddOrUpdateSMQueryItem(name, expression, SMEnum_usage::attribute, SMEnum_datatype::decimal, 1, 2, 3, true,
                                             SMEnum_aggregationRule::Enum(-1), SMEnum_aggregationRule::Enum(-1));
    }
};

const std::string FRAME =
    "<name locale=\"en\">Month</name><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
    "<property name=\"version\" type=\"hidden\">0</property>";

}  // namespace

TEST(SMLevel2Xml, WritesIsManualAlwaysAndOtherFlagsWhenTrue) {
    const CapturedLog log;
    EXPECT_EQ(Fixture().Text(), "<level>" + FRAME + "<isManual>false</isManual></level>");
    const Fixture fixture(
        "<memberSort>m</memberSort><isManual>true</isManual><externalName>e</externalName><externalOrdinal>0</externalOrdinal>"
        "<isUnique>true</isUnique><hidden>true</hidden><queryItem></queryItem>");
    EXPECT_EQ(fixture.Text(),
              "<level>" + FRAME +
                  "<hidden>true</hidden><isUnique>true</isUnique><externalOrdinal>0</externalOrdinal><externalName>e</externalName>"
                  "<isManual>true</isManual><queryItem><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
                  "<property name=\"version\" type=\"hidden\">0</property><size>0</size></queryItem><memberSort>m</memberSort></level>");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMLevel2Xml, KeepsTheLastOfSeveralSortings) {
    EXPECT_THAT(Fixture("<memberSort>a</memberSort><memberSort>b</memberSort>").Text(),
                testing::EndsWith("<memberSort>b</memberSort></level>"));
}

TEST(SMLevel2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<measure></measure>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'measure'", "4 Unknown tag 'measure'"));
}

TEST(SMLevel2Model, IgnoresANegativeOrdinal) {
    const Fixture fixture;
    fixture.level->SetExternalOrdinal(-5);
    EXPECT_EQ(fixture.level->GetExternalOrdinal(), -1);
    fixture.level->SetExternalOrdinal(4);
    fixture.level->SetExternalOrdinal(-5);
    EXPECT_EQ(fixture.level->GetExternalOrdinal(), 4);
    EXPECT_EQ(Fixture("<externalOrdinal>-7</externalOrdinal>").level->GetExternalOrdinal(), -1);
}

TEST(SMLevel2Model, HasTheIdOfItsHierarchyAndItsName) {
    const Fixture fixture;
    EXPECT_EQ(fixture.level->GetSMID(false), "[Sales].[Time].[Year].[Month]");
    EXPECT_EQ(fixture.level->GetModelType(), 9);
}

TEST(SMLevel2Model, LogsAnIdOutsideOfAHierarchy) {
    const ProjectPtr project = NewProject("Sales");
    const QvSmartPtr<SMLevel2> level = new SMLevel2(project->GetRootNamespace(), project);
    const CapturedLog log;
    EXPECT_EQ(level->GetSMID(false), "");
    const LoggedEvent own{1, "smlevel2", "SMLevel2", "GetSMID", "Attempting to build an SM ID for a level that is not inside a hierarchy.",
                          ""};
    ASSERT_FALSE(log.Events().empty());
    EXPECT_EQ(log.Events().back(), own);
}

TEST(SMLevel2Model, TakesTheNameForDescriptionAndScreenTip) {
    const Fixture fixture;
    SMQueryItem2* item = fixture.Update("i", "x &gt; 1");
    EXPECT_EQ(item->GetDescription(), "i");
    EXPECT_EQ(item->GetScreenTip(), "i");
    EXPECT_EQ(item->GetExpressionStr(), "x &gt; 1");
    EXPECT_EQ(item->GetUsage(), SMEnum_usage::attribute);
    EXPECT_EQ(fixture.level->TakeDisplayOrder(), 0) << "no number is taken";
    item->SetLastChangedDate(QvDate(false));
    EXPECT_EQ(fixture.Update("i", "x &gt; 1"), item);
    EXPECT_FALSE(item->GetLastChangedDate().IsSet());
    fixture.Update("i", "y");
    EXPECT_EQ(item->GetExpressionStr(), "y");
    EXPECT_TRUE(item->GetLastChangedDate().IsSet());
}

TEST(SMLevel2Model, LooksIntoFoldersOnlyForAnUpdate) {
    const Fixture fixture(
        "<queryItemFolder><queryItem><name locale=\"en\">i</name><property name=\"qvref\">w</property></queryItem></queryItemFolder>");
    SMQueryItem2* nested = fixture.level->GetQueryItemFolders()[0]->GetItems()[0];
    EXPECT_EQ(fixture.Update("i", "x"), nested);
    EXPECT_EQ(fixture.level->GetQueryItemByName("i"), nullptr);
    EXPECT_EQ(fixture.level->GetQueryItemByWHOID("w"), nullptr);
    SMQueryItem2* direct = fixture.level->AddOrReturnExistingSMQueryItem("i");
    EXPECT_NE(direct, nested);
    EXPECT_EQ(direct->displayOrder, 1);
    EXPECT_EQ(fixture.level->GetQueryItemByName("i"), direct);
    EXPECT_EQ(fixture.level->GetQueryItemByWHOID(""), nullptr);
    direct->SetQvRef("w");
    EXPECT_EQ(fixture.level->GetQueryItemByWHOID("w"), direct);
}

TEST(SMLevel2Model, RecordsAnItemThatItMakesAlone) {
    const Fixture fixture;
    fixture.project->m_keepIdMap = true;
    SMQueryItem2* made = fixture.level->AddOrReturnExistingSMQueryItem("a");
    SMQueryItem2* updated = fixture.Update("b", "x");
    EXPECT_THAT(fixture.project->m_idMap,
                testing::UnorderedElementsAre(testing::Pair(made->GetSMID(false), made), testing::Pair(updated->GetSMID(false), updated)));
    fixture.project->m_idMap.clear();
    fixture.level->AddOrReturnExistingSMQueryItem("a");
    fixture.Update("b", "x");
    EXPECT_TRUE(fixture.project->m_idMap.empty());
}

TEST(SMLevel2Model, WritesWhatWasDeletedFromItsTypedCollection) {
    const Fixture fixture(
        "<queryItem><name locale=\"en\">gone</name><property name=\"id\">i</property></queryItem><queryItem></queryItem>");
    fixture.level->DeleteQueryItemById("i");
    fixture.level->DeleteQueryItemById("i");
    EXPECT_EQ(fixture.level->GetLevelItems().size(), 1u);
    EXPECT_EQ(fixture.level->GetDisplayOrderItems().size(), 2u);
    fixture.level->SortDisplayOrder();
    EXPECT_THAT(fixture.Text(), testing::HasSubstr("gone"));
    RecordingContext context;
    EXPECT_TRUE(fixture.level->write(context));
    EXPECT_THAT(context.Names(), testing::Contains("AT_InsertObject SM_QUERY_ITEM").Times(1)) << "rows come from the typed collection";
}

TEST(SMLevel2Rows, HaveAnOrdinalWhenThereIsOne) {
    const Fixture fixture;
    fixture.level->SetId("l");
    RecordingContext context;
    ASSERT_TRUE(fixture.level->write(context));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre("LEVEL_ID S \"l\"", "LEVEL_VERSION_NO L 1", "HIERARCHY_ID S \"\"", "HIERARCHY_VERSION_NO L 0",
                                     "LASTCHANGED D null", "NAME S \"Month\"", "DESCRIPTION S \"\"", "SCREENTIP S \"\"",
                                     "WAREHOUSE_OBJECT_ID S \"\"", "HIDDEN B false", "ISUNIQUE B false", "EXTERNALNAME S \"\"",
                                     "ISMANUAL B false", "DISPLAY_ORDER L 0"));
    fixture.level->SetExternalOrdinal(0);
    RecordingContext second;
    ASSERT_TRUE(fixture.level->write(second));
    EXPECT_THAT(second.Attributes(0), testing::Contains("EXTERNALORDINAL L 0"));
}

TEST(SMLevel2Rows, LogTheChildThatFails) {
    const Fixture fixture("<queryItem></queryItem><queryItemFolder></queryItemFolder>");
    const auto messages = [&](std::size_t failing) {
        const CapturedLog log;
        RecordingContext context;
        context.FailAt(failing);
        EXPECT_FALSE(fixture.level->write(context));
        return log.Messages();
    };
    EXPECT_THAT(messages(2), testing::ElementsAre("1 Failed to write a queryitem of a level."));
    EXPECT_THAT(messages(4), testing::ElementsAre("1 Failed to write a queryitemfolder of a level."));
}

TEST(SMLevel2Model, FollowsNewIdsInItsSorting) {
    const Fixture fixture("<memberSort>'old'</memberSort>");
    fixture.level->m_memberSort->version = 4;
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.level->RegenerateIds(ids);
    EXPECT_EQ(InnerXmlOf(fixture.level->m_memberSort), "'new'");
    EXPECT_EQ(fixture.level->m_memberSort->version, 1);
}
