#include "objects/links/smshortcut2_002_000.h"

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
    QvSmartPtr<SMShortcut2> shortcut = new SMShortcut2(project->GetRootNamespace(), project);

    explicit Fixture(const std::string& elements = "") {
        SMShortcutBuilder builder(shortcut);
        ParseInside(builder, elements);
    }
};

}  // namespace

TEST(SMShortcut2Xml, HasDateReferenceAndTypeAlways) {
    const Fixture fixture;
    EXPECT_EQ(WriteElement(*fixture.shortcut),
              "<shortcut><property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>"
              "<lastChanged></lastChanged><refobj></refobj><targetType></targetType></shortcut>");
}

TEST(SMShortcut2Xml, HasTheDateBehindTipAndProperties) {
    const Fixture fixture;
    fixture.shortcut->AddName("en", "n");
    fixture.shortcut->AddDescription("en", "d");
    fixture.shortcut->AddScreenTip("en", "s");
    fixture.shortcut->SetQvRef("w");
    fixture.shortcut->SetProperty("z", "t", "v");
    fixture.shortcut->SetRefObj("[ns].[a]");
    fixture.shortcut->SetTargetType("querySubject");
    fixture.shortcut->SetLastChangedDate(QvDate("2020-01-02T03:04:05"));
    EXPECT_EQ(WriteElement(*fixture.shortcut),
              "<shortcut><name locale=\"en\">n</name><description locale=\"en\">d</description><screenTip locale=\"en\">s</screenTip>"
              "<property name=\"qvref\" type=\"hidden\">w</property><property name=\"id\" type=\"hidden\"></property>"
              "<property name=\"version\" type=\"hidden\">0</property><property name=\"z\" type=\"t\">v</property>"
              "<lastChanged>2020-01-02T03:04:05</lastChanged><refobj>[ns].[a]</refobj><targetType>querySubject</targetType></shortcut>");
}

TEST(SMShortcut2Builder, KnowsAllThatItWrites) {
    const CapturedLog log;
    const Fixture fixture(
        "<name locale=\"en\">n</name><description locale=\"en\">d</description><screenTip locale=\"en\">s</screenTip>"
        "<property name=\"qvref\">w</property><property name=\"z\" type=\"t\">v</property>"
        "<refobj>[ns].[a]</refobj><targetType>dimension</targetType><lastChanged>2020-01-02T03:04:05</lastChanged>");
    EXPECT_EQ(fixture.shortcut->GetName(), "n");
    EXPECT_EQ(fixture.shortcut->GetDescription(), "d");
    EXPECT_EQ(fixture.shortcut->GetScreenTip(), "s");
    EXPECT_EQ(fixture.shortcut->GetQvRef(), "w");
    EXPECT_EQ(fixture.shortcut->GetProperty("z")->type, "t");
    EXPECT_EQ(fixture.shortcut->GetRefObj(), "[ns].[a]");
    EXPECT_EQ(fixture.shortcut->GetTargetType(), "dimension");
    EXPECT_EQ(fixture.shortcut->GetLastChangedDate(), QvDate("2020-01-02T03:04:05"));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMShortcut2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<left></left>");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag 'left'", "4 Unknown tag 'left'"));
}

TEST(SMShortcut2Model, HasAnIdOfNamespaceAndName) {
    const ProjectPtr project = NewProject("ns");
    SMFolder2* folder = project->GetRootNamespace()->AddOrUpdateFolder("folder");
    const SMShortcut2* shortcut = folder->AddOrUpdateShortcut("s", nullptr);
    EXPECT_EQ(shortcut->GetSMID(false), "[ns].[s]") << "folders leave no trace";
    EXPECT_EQ(shortcut->GetSMType(), 169);
}

TEST(SMShortcut2Model, HoldsTextAloneAndDoesNotStampIt) {
    const Fixture fixture;
    fixture.shortcut->SetLastChangedDate(QvDate(false));
    fixture.shortcut->SetRefObj("[nobody]");
    fixture.shortcut->SetTargetType("no type at all");
    EXPECT_EQ(fixture.shortcut->GetRefObj(), "[nobody]");
    EXPECT_EQ(fixture.shortcut->GetTargetType(), "no type at all");
    EXPECT_FALSE(fixture.shortcut->GetLastChangedDate().IsSet());
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    fixture.shortcut->getChildObjects(children);
    EXPECT_EQ(children.size(), 0u);
}

TEST(SMShortcut2Model, FollowsARenameWithAPathOfThreeParts) {
    const Fixture fixture;
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.shortcut->SetRefObj("[A].[d].[h]");
    fixture.shortcut->RenameObjects(list);
    EXPECT_EQ(fixture.shortcut->GetRefObj(), "[B].[d].[h]");
    fixture.shortcut->SetRefObj("[A].[a]");
    fixture.shortcut->RenameObjects(list);
    EXPECT_EQ(fixture.shortcut->GetRefObj(), "[A].[a]") << "as the format has it";
}

TEST(SMShortcut2Model, MapsItsWarehouseLinkButNotItsReference) {
    const Fixture fixture;
    fixture.shortcut->SetQvRef("old");
    fixture.shortcut->SetRefObj("old");
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.shortcut->RegenerateIds(ids);
    EXPECT_EQ(fixture.shortcut->GetQvRef(), "new");
    EXPECT_EQ(fixture.shortcut->GetRefObj(), "old");
    EXPECT_EQ(fixture.shortcut->GetId().length(), 36);
}

TEST(SMShortcut2Rows, HaveNoDescriptionsAndNoRecord) {
    const Fixture fixture;
    fixture.shortcut->SetId("s");
    fixture.shortcut->AddName("en", "n");
    fixture.shortcut->AddName("fr", "lost");
    fixture.shortcut->AddDescription("en", "lost");
    fixture.shortcut->SetProperty("custom", "", "lost");
    fixture.shortcut->SetQvRef("w");
    fixture.shortcut->SetRefObj("[ns].[a]");
    fixture.shortcut->SetTargetType("querySubject");
    fixture.shortcut->SetLastChangedDate(QvDate(false));
    RecordingContext context;
    ASSERT_TRUE(fixture.shortcut->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_SHORTCUT", "EndObject"));
    EXPECT_THAT(context.Attributes(0), ElementsAre("SHORTCUT_ID S \"s\"", "SHORTCUT_VERSION_NO L 1", "SECTION_ID S \"\"",
                                                   "SECTION_VERSION_NO L 0", "LASTCHANGED D null", "NAME S \"n\"", "REFOBJ S \"[ns].[a]\"",
                                                   "TARGETTYPE S \"querySubject\"", "DISPLAY_ORDER L 0", "WAREHOUSE_OBJECT_ID S \"w\""));
}

TEST(SMShortcut2Rows, AskForARecordOfTextsWhenTheyAreRead) {
    const Fixture fixture;
    fixture.shortcut->SetId("s");
    RecordingContext context;
    context.answers = {{Row()
                            .Text("xml_element_id", "s/property")
                            .Number("xml_element_version", 2)
                            .Number("xml_element_parent_version", 0)
                            .Text("name", "property")
                            .Text("value", "<property name='a'>v</property><name locale='fr'>n</name>")}};
    ASSERT_TRUE(fixture.shortcut->read(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_ReadRemainingInfo"));
    ASSERT_NE(fixture.shortcut->GetProperty("a"), nullptr);
    EXPECT_EQ(fixture.shortcut->GetProperty("a")->value, "v");
    EXPECT_EQ(fixture.shortcut->GetName("fr"), "n");
}

TEST(SMShortcut2Rows, BringReferenceTypeAndLinkBack) {
    const CapturedLog log;
    const Fixture fixture(
        "<property name=\"id\">s</property><property name=\"qvref\">w</property><name locale=\"en\">n</name>"
        "<refobj>[ns].[a]</refobj><targetType>querySubject</targetType>");
    fixture.shortcut->displayOrder = 4;
    StoreContext store;
    ASSERT_TRUE(fixture.shortcut->write(store));
    const QvSmartPtr<SMShortcut2> read = new SMShortcut2(fixture.project->GetRootNamespace(), fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_SHORTCUT", "s"));
    ASSERT_TRUE(read->read(store));
    EXPECT_EQ(read->GetName(), "n");
    EXPECT_EQ(read->GetRefObj(), "[ns].[a]");
    EXPECT_EQ(read->GetTargetType(), "querySubject");
    EXPECT_EQ(read->GetQvRef(), "w");
    EXPECT_EQ(read->displayOrder, 4);
    EXPECT_THAT(store.Faults(), IsEmpty());
    EXPECT_THAT(log.Events(), IsEmpty());
}
