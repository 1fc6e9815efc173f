// The project's face towards the repository, and the sets and maps of a save.
#include <gmock/gmock.h>

#include "objects/base/smxmlobject2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const UPGRADING = "Upgrading Meridian RTM database to Meridian hotsite version";

/** The row of a project as the first answer of a read. */
QvSmartPtr<IOParameter> ProjectRow() {
    return Row().Text("id", "p").Number("version", 2).Text("name", "n").Text("defaultLocale", "en");
}

QvSmartPtr<IOParameter> LocalesRow(long parentVersion = 2) {
    return Row()
        .Text("xml_element_id", "p/locales")
        .Number("xml_element_version", 4)
        .Number("xml_element_parent_version", parentVersion)
        .Text("name", "locales")
        .Text("value", "<locales><locale>en</locale><locale>fr</locale></locales>");
}

QvSmartPtr<IOParameter> NamespaceRow(const char* name) {
    return Row().Text("id", name).Text("name", name).Text("description", "").Text("screenTip", "");
}

class ProjectRows : public testing::Test {
  protected:
    ProjectPtr project = NewProject("root");
    RecordingContext context;
    CapturedLog log;
};

using ProjectSets = ProjectRows;

}  // namespace

TEST_F(ProjectRows, SendNameAndDefaultLocale) {
    project->SetName("n");
    EXPECT_TRUE(project->write_no_seq_inc(context));
    EXPECT_EQ(context.Names().front(), "AT_InsertObject SM_PROJECT");
    EXPECT_THAT(context.Attributes(0), ElementsAre("PROJECT_ID S \"\"", "PROJECT_VERSION_NO L 0", "PARENT_ID S \"\"", "PARENT_VERSION L 0",
                                                   "LASTCHANGED D null", "NAME S \"n\"", "DEFAULTLOCALE S \"en\""));
}

TEST_F(ProjectRows, SendNoEmptyListOfLocales) {
    EXPECT_TRUE(project->write_next(context));
    EXPECT_THAT(context.Names(), testing::Not(testing::Contains("AT_WriteRemainingInfo SM_REMAIN_INFO")));
    project->AddLocale("en");
    RecordingContext other;
    EXPECT_TRUE(project->write_next(other));
    EXPECT_EQ(other.Names().front(), "AT_WriteRemainingInfo SM_REMAIN_INFO");
}

TEST_F(ProjectRows, TellOfASlowSaveOnce) {
    context.SetFixingLostRemainingInfo(true);
    EXPECT_TRUE(project->write_next(context));
    EXPECT_TRUE(project->write_next(context));
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{3, "smproject2", "SMProject2", "write_next",
                                        "This save will be slow - saving upgraded Meridian database.  This should only happen once.", ""}));
}

TEST_F(ProjectRows, EndTheRepairAlsoWithAFailure) {
    context.SetFixingLostRemainingInfo(true);
    context.FailAt(1);
    EXPECT_FALSE(project->write_next(context));
    EXPECT_FALSE(context.GetFixingLostRemainingInfo());
    EXPECT_EQ(log.Events().size(), 1u) << "a root that fails has no words";
}

TEST_F(ProjectRows, TellOfAMapThatFails) {
    const ProjectPtr bare = NewProject();
    bare->AddParameterMapOrReturnExisting("a", false);
    bare->AddParameterMapOrReturnExisting("b", false);
    context.FailAt(1);
    EXPECT_FALSE(bare->write_next(context));
    EXPECT_EQ(context.Actions().size(), 1u);
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{1, "smproject2", "SMProject2", "write_next",
                                                      "Failed to write a ParameterMap child of smproject.", ""}));
}

TEST_F(ProjectRows, AreReadFromTheProjectDown) {
    SMProject2 read;
    context.answers = {{ProjectRow()}, {LocalesRow()}, {NamespaceRow("r"), NamespaceRow("further")}};
    EXPECT_TRUE(read.read(context));
    EXPECT_THAT(LinesOf(*context.Actions()[0].params),
                ElementsAre("attributes {}", "history_attributes {}", "clauses {}", "object S \"project\""));
    EXPECT_EQ(read.GetName(), "n");
    EXPECT_EQ(read.GetVersionNo(), 2);
    EXPECT_THAT(read.GetLocales(), ElementsAre("en", "fr"));
    EXPECT_EQ(read.GetRootNamespace()->GetName(), "r") << "further rows are ignored";
    EXPECT_EQ(read.GetNamespaceMap().size(), 1u);
    EXPECT_THAT(context.noted, ElementsAre("p", "r"));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ProjectRows, UpgradeAStoreWithoutLocales) {
    SMProject2 read;
    context.answers = {{ProjectRow()}, {LocalesRow(1)}, {LocalesRow(1)}};
    EXPECT_TRUE(read.read(context));
    EXPECT_THAT(read.GetLocales(), ElementsAre("en", "fr")) << "the second read takes records of any version";
    EXPECT_TRUE(context.GetFixingLostRemainingInfo());
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{3, "smproject2", "SMProject2", "read", UPGRADING, ""}));
}

TEST_F(ProjectRows, UpgradeAnEmptyStoreToo) {
    SMProject2 read;
    EXPECT_TRUE(read.read(context));
    EXPECT_EQ(read.GetRootNamespace(), nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre(std::string("3 ") + UPGRADING));
}

TEST_F(ProjectRows, AreNotUpgradedAfterAFailure) {
    SMProject2 read;
    context.FailAt(2);
    EXPECT_FALSE(read.read(context));
    EXPECT_FALSE(context.GetFixingLostRemainingInfo());
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ProjectRows, KeepWhatWasReadBeforeAFailure) {
    SMProject2 read;
    context.answers = {{ProjectRow()}, {LocalesRow()}, {NamespaceRow("r")}};
    context.FailAt(4);
    EXPECT_FALSE(read.read(context));
    EXPECT_EQ(read.GetRootNamespace()->GetName(), "r");
}

TEST_F(ProjectRows, LogAMissingKeyBeforeTheBase) {
    SMProject2 read;
    read.constructFromIOParameter(*Row().Text("id", "p").Text("defaultLocale", "en"));
    EXPECT_EQ(read.GetDefaultLocale(), "en");
    EXPECT_EQ(read.GetId(), "p");
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].module, "smproject2");
    EXPECT_EQ(log.Events()[0].className, "SMProject2");
}

TEST_F(ProjectRows, SendOnlyWhatChangedOfRecords) {
    project->AddLocale("en");
    StoreContext store;
    EXPECT_TRUE(project->write_next(store));
    const std::size_t first = store.Actions().size();
    EXPECT_TRUE(project->write_next(store));
    const auto names = store.Names();
    EXPECT_EQ(std::count(names.begin() + static_cast<std::ptrdiff_t>(first), names.end(), "AT_WriteRemainingInfo SM_REMAIN_INFO"), 0);
}

// ---- sets and maps

TEST_F(ProjectSets, ListEveryObjectWithItsParent) {
    project->SetId("p");
    project->GetRootNamespace()->SetId("r");
    SMParameterMap2* map = project->AddParameterMapOrReturnExisting("m", false);
    map->SetId("m");
    map->AddOrUpdateParameterMapEntry("k", "v");
    map->GetEntries()[0]->SetId("e");
    std::set<QvULString> pairs = {"before"}, ids = {"before"};
    MapId2MiniObject objects;
    MapId2RemainingInfo records;
    records.AddObject("before", 1, 1, "");
    project->InitAndAddSetPIDIDAndMiniObject(&pairs, &ids, &objects, &records);
    EXPECT_THAT(pairs, testing::UnorderedElementsAre("+p", "p+r", "p+m", "m+e"));
    EXPECT_THAT(ids, testing::UnorderedElementsAre("p", "r", "m", "e"));
    EXPECT_EQ(objects.Size(), 4u);
    ASSERT_EQ(records.Size(), 1u);
    EXPECT_EQ(records.Find("p/locales")->value, "<locales></locales>");
}

TEST_F(ProjectSets, GiveADoubledIdANewOneAfterTheMapHasSeenIt) {
    project->SetId("p");
    project->GetRootNamespace()->SetId("same");
    SMNamespace2* ns = project->GetRootNamespace()->AddOrUpdateNamespace("n", "");
    ns->SetId("same");
    std::set<QvULString> pairs, ids;
    MapId2MiniObject objects;
    project->InitAndAddSetPIDIDAndMiniObject(&pairs, &ids, &objects, nullptr);
    EXPECT_EQ(project->GetRootNamespace()->GetId(), "same");
    EXPECT_EQ(ns->GetId().length(), 36);
    EXPECT_EQ(ids.count(ns->GetId()), 1u);
    EXPECT_EQ(objects.Find(ns->GetId()), nullptr);
    EXPECT_EQ(pairs.count("same+same"), 1u);
}

TEST_F(ProjectSets, MayAllBeLeftOut) {
    project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, nullptr);
    project->AddToMiniRemainingInfoMap("id", 1, "tag", 2, "text");
    EXPECT_EQ(project->GetRootNamespace()->GetId(), "");
}

TEST_F(ProjectSets, TakeRecordsInThreeForms) {
    MapId2RemainingInfo records;
    project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    SMXMLObject2 kept("kept", "x", true);
    kept.version = 7;
    project->AddToMiniRemainingInfoMap("o", 3, &kept);
    project->AddToMiniRemainingInfoMap("o", 4, "tag", 5, "text");
    project->AddToMiniRemainingInfoMap("record", 6, 8, "whole");
    EXPECT_EQ(records.Find("o/kept")->version, 7);
    EXPECT_EQ(records.Find("o/kept")->parentVersion, 3);
    EXPECT_EQ(records.Find("o/kept")->value, "<kept>x</kept>");
    EXPECT_EQ(records.Find("o/tag")->version, 5);
    EXPECT_EQ(records.Find("o/tag")->parentVersion, 4);
    EXPECT_EQ(records.Find("record")->version, 8);
    EXPECT_EQ(records.Find("record")->parentVersion, 6);
}
