#include "objects/links/smrelationshipshortcut2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("ns");
    QvSmartPtr<SMRelationshipShortcut2> shortcut = new SMRelationshipShortcut2(project->GetRootNamespace(), project);

    explicit Fixture(const std::string& elements = "") {
        SMRelationshipShortcutBuilder builder(shortcut);
        ParseInside(builder, elements);
    }
};

}  // namespace

TEST(SMRelationshipShortcut2Xml, HasBothEndsAndTheRelationshipAlways) {
    const Fixture fixture;
    fixture.shortcut->SetLastChangedDate(QvDate("2020-01-02T03:04:05"));
    EXPECT_EQ(WriteElement(*fixture.shortcut),
              "<relationshipShortcut><property name=\"id\" type=\"hidden\"></property><property name=\"version\" "
              "type=\"hidden\">0</property><left><refobj></refobj></left><right><refobj></refobj></right>"
              "<relationshipRef></relationshipRef></relationshipShortcut>")
        << "there is no date";
}

TEST(SMRelationshipShortcut2Xml, HasNamesPropertiesEndsAndTheRelationshipInThisOrder) {
    const Fixture fixture;
    fixture.shortcut->AddName("en", "n");
    fixture.shortcut->SetQvRef("w");
    fixture.shortcut->leftRefObj = "[ns].[a]";
    fixture.shortcut->rightRefObj = "[ns].[s]";
    fixture.shortcut->relationshipRef = "[ns].[r]";
    EXPECT_EQ(
        WriteElement(*fixture.shortcut),
        "<relationshipShortcut><name locale=\"en\">n</name><property name=\"qvref\" type=\"hidden\">w</property><property name=\"id\" "
        "type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property><left><refobj>[ns].[a]</refobj></left>"
        "<right><refobj>[ns].[s]</refobj></right><relationshipRef>[ns].[r]</relationshipRef></relationshipShortcut>");
}

TEST(SMRelationshipShortcut2Builder, KnowsAllThatItWritesAndADate) {
    const CapturedLog log;
    const Fixture fixture(
        "<name locale=\"en\">n</name><lastChanged>2020-01-02T03:04:05</lastChanged><property name=\"z\" type=\"t\">v</property>"
        "<left><refobj>[a]</refobj></left><right><refobj>[s]</refobj></right><relationshipRef>[r]</relationshipRef>");
    EXPECT_EQ(fixture.shortcut->GetName(), "n");
    EXPECT_EQ(fixture.shortcut->GetLastChangedDate(), QvDate("2020-01-02T03:04:05"));
    EXPECT_EQ(fixture.shortcut->GetProperty("z")->type, "t");
    EXPECT_EQ(fixture.shortcut->leftRefObj, "[a]");
    EXPECT_EQ(fixture.shortcut->rightRefObj, "[s]");
    EXPECT_EQ(fixture.shortcut->relationshipRef, "[r]");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMRelationshipShortcut2Builder, GivesAReferenceOutsideOfTheEndsToTheLastOne) {
    const Fixture fixture("<left><refobj>[a]</refobj></left><refobj>[late]</refobj><right></right><refobj>[later]</refobj>");
    EXPECT_EQ(fixture.shortcut->leftRefObj, "[late]");
    EXPECT_EQ(fixture.shortcut->rightRefObj, "[later]");
}

TEST(SMRelationshipShortcut2Builder, DropsAReferenceBeforeTheFirstEnd) {
    const Fixture fixture("<refobj>[early]</refobj><left></left>");
    EXPECT_EQ(fixture.shortcut->leftRefObj, "");
    EXPECT_EQ(fixture.shortcut->rightRefObj, "");
}

TEST(SMRelationshipShortcut2Builder, LogsADescription) {
    const CapturedLog log;
    const Fixture fixture("<description locale=\"en\">d</description>");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag 'description'", "4 Unknown tag 'description'"));
}

TEST(SMRelationshipShortcut2Model, HasAnIdOfNamespaceAndName) {
    const ProjectPtr project = NewProject("ns");
    SMFolder2* folder = project->GetRootNamespace()->AddOrUpdateFolder("folder");
    const SMRelationshipShortcut2* shortcut = folder->AddOrUpdateRelationshipShortcut("s", nullptr, nullptr, nullptr);
    EXPECT_EQ(shortcut->GetSMID(false), "[ns].[s]") << "folders leave no trace";
    EXPECT_EQ(shortcut->GetSMType(), 147);
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    shortcut->getChildObjects(children);
    EXPECT_EQ(children.size(), 0u);
}

TEST(SMRelationshipShortcut2Model, FollowsARenameWithPathsOfThreeParts) {
    const Fixture fixture;
    fixture.shortcut->leftRefObj = "[A].[a].[h]";
    fixture.shortcut->rightRefObj = "[A].[s].[h]";
    fixture.shortcut->relationshipRef = "[A].[r]";
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.shortcut->RenameObjects(list);
    EXPECT_EQ(fixture.shortcut->leftRefObj, "[B].[a].[h]");
    EXPECT_EQ(fixture.shortcut->rightRefObj, "[B].[s].[h]");
    EXPECT_EQ(fixture.shortcut->relationshipRef, "[A].[r]") << "as the format has it";
    fixture.shortcut->relationshipRef = "[A].[r].[x]";
    fixture.shortcut->RenameObjects(list);
    EXPECT_EQ(fixture.shortcut->relationshipRef, "[B].[r].[x]");
}

TEST(SMRelationshipShortcut2Model, MapsItsWarehouseLinkButNotItsReferences) {
    const Fixture fixture;
    fixture.shortcut->SetQvRef("old");
    fixture.shortcut->leftRefObj = fixture.shortcut->relationshipRef = "old";
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.shortcut->RegenerateIds(ids);
    EXPECT_EQ(fixture.shortcut->GetQvRef(), "new");
    EXPECT_EQ(fixture.shortcut->leftRefObj, "old");
    EXPECT_EQ(fixture.shortcut->relationshipRef, "old");
    EXPECT_EQ(fixture.shortcut->GetId().length(), 36);
}

TEST(SMRelationshipShortcut2Rows, HaveNoWarehouseLinkAndNoRecord) {
    const Fixture fixture(
        "<property name=\"id\">s</property><property name=\"qvref\">lost</property><property name=\"z\">lost</property>"
        "<name locale=\"en\">n</name><name locale=\"fr\">lost</name><left><refobj>[a]</refobj></left>");
    fixture.shortcut->SetLastChangedDate(QvDate(false));
    RecordingContext context;
    ASSERT_TRUE(fixture.shortcut->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_RELATIONSHIP_SHORTCUT", "EndObject"));
    EXPECT_THAT(context.Attributes(0), ElementsAre("REL_SHORTCUT_ID S \"s\"", "REL_SHORTCUT_VERSION_NO L 1", "SECTION_ID S \"\"",
                                                   "SECTION_VERSION_NO L 0", "LASTCHANGED D null", "NAME S \"n\"", "RELATIONSHIPREF S \"\"",
                                                   "LEFT_REFOBJ S \"[a]\"", "RIGHT_REFOBJ S \"\"", "DISPLAY_ORDER L 0"));
    RecordingContext reading;
    EXPECT_TRUE(fixture.shortcut->read(reading));
    EXPECT_THAT(reading.Actions(), IsEmpty());
}

TEST(SMRelationshipShortcut2Rows, BringTheThreeReferencesBack) {
    const CapturedLog log;
    const Fixture fixture(
        "<property name=\"id\">s</property><name locale=\"en\">n</name><left><refobj>[a]</refobj></left>"
        "<right><refobj>[s]</refobj></right><relationshipRef>[r]</relationshipRef>");
    fixture.shortcut->displayOrder = 4;
    StoreContext store;
    ASSERT_TRUE(fixture.shortcut->write(store));
    const QvSmartPtr<SMRelationshipShortcut2> read = new SMRelationshipShortcut2(fixture.project->GetRootNamespace(), fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_RELATIONSHIP_SHORTCUT", "s"));
    EXPECT_EQ(read->GetName(), "n");
    EXPECT_EQ(read->leftRefObj, "[a]");
    EXPECT_EQ(read->rightRefObj, "[s]");
    EXPECT_EQ(read->relationshipRef, "[r]");
    EXPECT_EQ(read->displayOrder, 4);
    EXPECT_THAT(store.Faults(), IsEmpty());
    EXPECT_THAT(log.Events(), IsEmpty());
}
