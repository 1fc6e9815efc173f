#include "objects/publication/smpackage2_002_000.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/qvutils/persist/cltask.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "tests/support/capturedlog.h"
#include "tests/support/columns.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Package {
    Package() : project(NewProject()), package(new SMPackage2(project, project)) {}
    explicit Package(const std::string& content) : Package() {
        SMPackageBuilder builder(package);
        ParseInside(builder, content);
    }
    SMPackage2* operator->() const { return package; }

    ProjectPtr project;
    QvSmartPtr<SMPackage2> package;
};

/** The element of a package without names and id. */
std::string Element(const std::string& content) {
    return "<package><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
           "<property name=\"version\" type=\"hidden\">0</property>" +
           content + "</package>";
}

std::vector<std::string> Texts(const std::list<I18NString>& list) {
    std::vector<std::string> texts;
    for (const I18NString& text : list) texts.push_back(Str(text));
    return texts;
}

struct Task : CLTask {
    const std::map<QvULString, CLObjectTask*>& GetMapTargetID2ObjectTask() const override { return targets; }
    std::map<QvULString, CLObjectTask*> targets;
};

/** A directory that goes with the test. */
class Directory {
  public:
    Directory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "smpackage2-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~Directory() { std::filesystem::remove_all(m_path); }
    const std::string& Path() const { return m_path; }
    void Write(const std::string& name, const std::string& text) const { std::ofstream(m_path + "/" + name) << text; }

  private:
    std::string m_path;
};

}  // namespace

// ---- memory

TEST(SMPackage2Model, TakesAViewOnceAndALocaleTwice) {
    Package package;
    for (int i = 0; i < 2; ++i) {
        package->AddViewref("v");
        package->AddLocale("en");
    }
    EXPECT_THAT(Texts(package->GetViewrefs()), ElementsAre("v"));
    EXPECT_THAT(Texts(package->GetLocales()), ElementsAre("en", "en"));
}

TEST(SMPackage2Model, HasItsKindAndFileWords) {
    Package package;
    EXPECT_EQ(package->GetModelType(), 20);
    EXPECT_EQ(Str(package->GetFileExtension()), "qva");
    EXPECT_EQ(Str(package->GetPlaceholderTag()), "packagefile");
    EXPECT_TRUE(package->GetSMID(false).empty());
}

TEST(SMPackage2Model, HasAPlaceholderThatLeadsToItsFile) {
    Package package;
    package->SetId("i");
    package->AddName("en", "n");
    I18NString text;
    QvStringWriter target(text);
    QvSAX2PrintHandler handler("UTF-8", false, target, false);
    package->WriteXMLPlaceholder("n.qva", &handler);
    EXPECT_THAT(Str(text), testing::EndsWith("<packagefile id=\"i\" name=\"n\" filename=\"n.qva\" filepath=\"\"></packagefile>"));
}

TEST(SMPackage2Model, IsWrittenWholeUnlessATaskLeavesItOut) {
    Package package;
    package->SetId("i");
    EXPECT_EQ(package->WriteWhat(), 2);
    Task task;
    package.project->setActiveExportTask(&task);
    EXPECT_EQ(package->WriteWhat(), 0);
    package->AddName("en", "project");
    EXPECT_EQ(package->WriteWhat(), 1);
    package->AddName("en", "Project");
    EXPECT_EQ(package->WriteWhat(), 0);
    task.targets["i"] = nullptr;
    EXPECT_EQ(package->WriteWhat(), 2);
}

// ---- document

TEST(SMPackage2Xml, WritesTheFramesOfANewPackage) {
    CapturedLog log;
    EXPECT_EQ(WriteElement(*Package().package),
              Element("<maxVersions>0</maxVersions><locales></locales><definition></definition><adminAccess></adminAccess>"));
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{4, "smpackage2", "SMPackage2", "WriteXMLElement",
                                        "Writing to XML a package containing no adminAccess element.  Adding an empty tag.", ""}));
}

TEST(SMPackage2Xml, WritesItsPartsInTheirOrder) {
    const std::string content =
        "<lastPublished>2020-01-02T03:04:05</lastPublished><maxVersions>-3</maxVersions><locales><locale>en</locale><locale>en</locale>"
        "</locales><definition><viewref>v</viewref><viewref>w</viewref></definition><adminAccess a=\"b\"><x> </x></adminAccess>";
    CapturedLog log;
    Package package(content);
    EXPECT_EQ(WriteElement(*package.package), Element(content));
    package->SetRoleBased(true);
    EXPECT_THAT(WriteElement(*package.package), testing::StartsWith("<package isRoleBased=\"true\"><lastChanged>"));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMPackage2Xml, TellsEmptyTextsInItsRecordsOnly) {
    Package package;
    package->AddScreenTip("fr", "");
    package->AddScreenTip("en", "t");
    EXPECT_EQ(Str(package->WriteMapToString("screenTip", package->GetScreenTips())),
              "<screenTip locale=\"fr\"></screenTip><screenTip locale=\"en\">t</screenTip>");
    EXPECT_THAT(WriteElement(*package.package), testing::Not(testing::HasSubstr("\"fr\"")));
}

TEST(SMPackage2Xml, WritesAnEmptyPlaceholder) {
    Package package;
    package->SetId("i");
    package->AddName("en", "project");
    I18NString unused;
    QvStringWriter target(unused);
    EXPECT_EQ(Printed([&](QvContentHandler* handler) { package->WriteXMLEmptyPlaceholder(nullptr, handler, target); }),
              "<packagefile id=\"i\" name=\"project\"></packagefile>");
}

TEST(SMPackageBuilder, TakesAViewFromTheTextOfTheDefinition) {
    EXPECT_THAT(Texts(Package("<definition>v</definition>")->GetViewrefs()), ElementsAre("v"));
    EXPECT_THAT(Texts(Package("<definition></definition>")->GetViewrefs()), IsEmpty());
    EXPECT_THAT(Texts(Package("<definition><viewref>v</viewref>\n <viewref>w</viewref>\n</definition>")->GetViewrefs()),
                ElementsAre("v", "w"));
}

TEST(SMPackageBuilder, IgnoresAnEmptyDateOfPublication) {
    EXPECT_EQ(Package("<lastPublished></lastPublished>")->GetLastPublished(), nullptr);
    Package package("<lastPublished>2020-01-02T03:04:05.678Z</lastPublished>");
    ASSERT_NE(package->GetLastPublished(), nullptr);
    EXPECT_EQ(Str(package->GetLastPublished()->ToString()), "2020-01-02T03:04:05");
}

TEST(SMPackageBuilder, DoesNotReadTheRoleFlag) {
    EXPECT_FALSE(Package("<package isRoleBased=\"true\"></package>")->IsRoleBased());
}

TEST(SMPackageBuilder, HandsUnknownTagsToTheBase) {
    CapturedLog log;
    Package package("<set></set><property name=\"p\">x</property><screenTip locale=\"en\">s</screenTip>");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag 'set'", "4 Unknown tag 'set'"));
    EXPECT_EQ(Str(package->GetProperty("p")->value), "x");
    EXPECT_EQ(Str(package->GetScreenTip()), "s");
}

// ---- own files

TEST(SMPackage2File, ReadsAFileBelowTheBaseDirectory) {
    Directory directory;
    std::filesystem::create_directory(directory.Path() + "/sub");
    directory.Write("sub/p.qva", "<package isRoleBased=\"true\"><name locale=\"en\">p</name><definition>v</definition></package>");
    Package package;
    package.project->m_baseDirectory = directory.Path().c_str();
    CapturedLog log;
    EXPECT_TRUE(package->ReadFromXMLFile("sub", "p.qva"));
    EXPECT_EQ(Str(package->GetName()), "p");
    EXPECT_FALSE(package->IsRoleBased());
    EXPECT_THAT(Texts(package->GetViewrefs()), ElementsAre("v"));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMPackage2File, LogsABadFileInItsOwnWords) {
    Directory directory;
    directory.Write("bad.qva", "<package><name");
    Package package;
    package.project->m_baseDirectory = directory.Path().c_str();
    CapturedLog log;
    EXPECT_FALSE(package->ReadFromXMLFile("", "bad.qva"));
    EXPECT_FALSE(package->ReadFromXMLFile("", "missing.qva"));
    ASSERT_EQ(log.Events().size(), 2u);
    for (LoggedEvent event : log.Events()) {
        EXPECT_FALSE(event.detail.empty());
        event.detail.clear();
        EXPECT_EQ(event,
                  (LoggedEvent{1, "smpackage2", "SMPackage2", "ReadFromXMLFile", "Error reading SM model from XML", "", "QvOne/qve"}));
    }
}

TEST(SMPackage2File, WritesAFileOfItsOwnAndAPlaceholder) {
    Directory directory;
    Package package("<adminAccess></adminAccess>");
    package->SetId("i");
    package->AddName("en", "P/1");
    package.project->m_baseDirectory = directory.Path().c_str();
    package.project->AppendPackage(package.package);
    MultiFileHelper files({"package"});
    const std::string document = WriteProject(*package.project, &files);
    EXPECT_THAT(document, testing::HasSubstr("<packages><packagefile id=\"i\" name=\"P/1\" filename=\"P%2F1.qva\" filepath=\"\">"
                                             "</packagefile></packages>"));
    const ProjectPtr read = NewProject();
    const QvSmartPtr<SMPackage2> again = new SMPackage2(read, read);
    read->m_baseDirectory = directory.Path().c_str();
    EXPECT_TRUE(again->ReadFromXMLFile("", "P%2F1.qva"));
    EXPECT_EQ(WriteElement(*again), WriteElement(*package.package));
}

TEST(SMPackage2File, StaysInTheDocumentWhenPackagesAreNotSeparate) {
    Package package("<adminAccess></adminAccess>");
    package.project->AppendPackage(package.package);
    MultiFileHelper files({"namespace"});
    EXPECT_THAT(WriteProject(*package.project, &files), testing::HasSubstr("<packages><package>"));
}

TEST(SMPackage2File, WritesNothingForATaskThatLeavesItOut) {
    Package package;
    Task task;
    package.project->AppendPackage(package.package);
    package.project->setActiveExportTask(&task);
    MultiFileHelper files({"package"});
    EXPECT_THAT(WriteProject(*package.project, &files), testing::HasSubstr("<packages></packages>"));
    package->AddName("en", "project");
    EXPECT_THAT(WriteProject(*package.project, &files),
                testing::HasSubstr("<packages><packagefile id=\"\" name=\"project\"></packagefile></packages>"));
}

// ---- repository

TEST(SMPackage2Rows, LeavesOutTheDateOfAPackageThatWasNeverPublished) {
    Package package;
    const auto columns = ColumnsOf(*package.package);
    EXPECT_THAT(columns, testing::Not(testing::Contains(testing::StartsWith("LASTPUBLISHED"))));
    EXPECT_THAT(columns, testing::IsSupersetOf({"ISROLEBASED B false", "MAXVERSIONS L 0"}));
    package->SetLastPublished(QvDate("2020-01-02T03:04:05"));
    EXPECT_THAT(ColumnsOf(*package.package), testing::Contains("LASTPUBLISHED D 2020-01-02T03:04:05"));
}

TEST(SMPackage2Rows, ReadsARowOfAPackageThatWasNeverPublished) {
    CapturedLog log;
    Package package;
    Row row;
    row.Text("id", "i").Text("name", "n").Text("description", "").Text("screenTip", "").Date("lastChanged", "2020-01-02T03:04:05");
    package->constructFromIOParameter(*row.Number("maxVersions", 4));
    EXPECT_EQ(package->GetMaxVersions(), 4);
    EXPECT_EQ(package->GetLastPublished(), nullptr);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMPackage2Rows, WritesLanguageRowsThenItsRecordsInTheirOrder) {
    Package package("<name locale=\"fr\">f</name><adminAccess></adminAccess>");
    package->SetId("i");
    RecordingContext context;
    EXPECT_TRUE(package->write(context));
    const auto names = context.Names();
    EXPECT_EQ(names[0], "AT_InsertObject SM_PACKAGE");
    EXPECT_EQ(names[1], "AT_WriteLangText");
    std::vector<std::string> ids;
    for (std::size_t place = 2; place < names.size(); ++place)
        if (names[place] != "EndObject") ids.push_back(context.Attributes(place)[0].substr(context.Attributes(place)[0].find('"')));
    EXPECT_THAT(ids, ElementsAre("\"i/description\"", "\"i/screenTip\"", "\"i/definition\"", "\"i/locales\"", "\"i/adminAccess\""));
}

TEST(SMPackage2Rows, StoresNoAccessThatIsNotThereAndLogsIt) {
    Package package;
    RecordingContext context;
    CapturedLog log;
    EXPECT_TRUE(package->write(context));
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smpackage2", "SMPackage2", "write_next",
                                                      "Writing to DB a package containing no adminAccess element.", ""}));
    EXPECT_EQ(context.Names().size(), 1u + 2 * 4 + 1);
}

TEST(SMPackage2Rows, SaysNothingOfTheAccessAfterAFailure) {
    Package package;
    RecordingContext context;
    context.FailAt(2);
    CapturedLog log;
    EXPECT_FALSE(package->write(context));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMPackage2Rows, KeepsTheStoredDateWhenItReadsItsTexts) {
    Package package(
        "<description locale=\"en\">d</description><description locale=\"fr\"></description><screenTip locale=\"en\">s</screenTip>"
        "<locale>en</locale><viewref>v</viewref><adminAccess><a></a></adminAccess>"),
        other;
    package->SetId("i");
    StoreContext store;
    ASSERT_TRUE(package->write(store));
    other->SetId("i");
    other->SetVersionNo(package->GetVersionNo());
    other->SetLastChangedDate(QvDate("2001-02-03T04:05:06"));
    ASSERT_TRUE(other->read(store));
    EXPECT_EQ(Str(other->GetLastChangedDate().ToString()), "2001-02-03T04:05:06");
    EXPECT_EQ(Str(other->GetDescription()), "d");
    EXPECT_EQ(other->GetDescriptions().size(), 2u);
    EXPECT_EQ(Str(other->GetScreenTip()), "s");
    EXPECT_THAT(Texts(other->GetLocales()), ElementsAre("en"));
    EXPECT_THAT(Texts(other->GetViewrefs()), ElementsAre("v"));
    EXPECT_EQ(std::string(other->GetAdminAccess()->buffer.view()), "<adminAccess><a></a></adminAccess>");
}

TEST(SMPackage2Rows, KeepsTheStoredDateWhenAReadFails) {
    Package package;
    package->SetLastChangedDate(QvDate("2001-02-03T04:05:06"));
    for (const std::size_t action : {1u, 2u}) {
        RecordingContext context;
        context.FailAt(action);
        EXPECT_FALSE(package->read(context));
        EXPECT_EQ(context.Actions().size(), action);
        EXPECT_EQ(Str(package->GetLastChangedDate().ToString()), "2001-02-03T04:05:06");
    }
}

TEST(SMPackage2Rows, RegistersItsTextsAndItsAccess) {
    struct Recorder : MapId2RemainingInfo {
        void AddObject(const QvULString& id, int version, int parentVersion, const QvULString& value) override {
            lines.push_back(id.c_str() + ("|" + std::to_string(version)) + "|" + std::to_string(parentVersion) + "|" + value.c_str());
        }
        std::vector<std::string> lines;
    } records;
    Package package("<locale>en</locale><viewref>v</viewref><adminAccess></adminAccess><screenTip locale=\"en\">s</screenTip>");
    package->SetId("i");
    package->SetVersionNo(4);
    package.project->AppendPackage(package.package);
    package.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    EXPECT_THAT(records.lines, ElementsAre("i/description|0|4|", "i/screenTip|0|4|<screenTip locale=\"en\">s</screenTip>",
                                           "i/definition|0|4|<definition><viewref>v</viewref></definition>",
                                           "i/locales|0|4|<locales><locale>en</locale></locales>",
                                           "i/adminAccess|1|4|<adminAccess></adminAccess>", "/locales|0|0|<locales></locales>"));
}
