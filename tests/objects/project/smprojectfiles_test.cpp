// A model whose namespaces and packages stand in files of their own.
#include <gmock/gmock.h>

#include <filesystem>
#include <regex>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/persist/cltask.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/tempdir.h"

using namespace schema_002_000;
using namespace smtest;
using testing::IsEmpty;

namespace {

const std::string EXAMPLE = std::string(SMODEL_SOURCE_DIR) + "/examples/models/multifile";

struct Task : CLTask {
    const std::map<QvULString, CLObjectTask*>& GetMapTargetID2ObjectTask() const override { return targets; }
    std::map<QvULString, CLObjectTask*> targets;
};

ProjectPtr ReadFrom(const std::string& directory, const std::string& document) {
    ProjectPtr project = new SMProject2();
    project->m_baseDirectory = directory.c_str();
    SMProjectBuilder builder(project);
    ParseInto(builder, document);
    return project;
}

/** Without the white space that indents elements for people. */
std::string Settled(const std::string& document) {
    // a quotation mark in a text is written as it stands; the files have it escaped
    return std::regex_replace(std::regex_replace(document, std::regex(">\n *(<|$)"), ">$1"), std::regex("&quot;"), "\"");
}

/** A namespace with an id and a name, which joins its parent. */
SMNamespace2* AddNamespace(SMSectionType2& parent, const char* id, const char* name) {
    auto* ns = new SMNamespace2(&parent, parent.GetSMProject());
    ns->SetId(id);
    ns->SetNameDontTouchNamespaceMap(name);
    parent.AddNamespace(ns);
    return ns;
}

/** The main document of a project whose namespaces stand in files of their own, without what stands around the root. */
std::string MainDocument(const SMProject2& project) {
    MultiFileHelper files({"namespace"});
    const std::string document = WriteProject(project, &files);
    const std::size_t start = document.find("<smnamespacefile"), end = document.find("<dataSources>");
    return start > end ? std::string() : document.substr(start, end - start);
}

const char* const END = "</smnamespacefile>";

}  // namespace

TEST(SMProject2Files, GiveTheSameModelAsOneFile) {
    CapturedLog log;
    const ProjectPtr split = ReadFrom(EXAMPLE, ReadFile(EXAMPLE + "/main.xml")), whole = ParseProject(ReadFile(EXAMPLE + "/single.xml"));
    EXPECT_EQ(split->GetPackages().size(), 2u);
    EXPECT_TRUE(SameXml(WriteProject(*whole), WriteProject(*split)));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMProject2Files, AreWrittenAsTheyWereRead) {
    const TempDir directory;
    const ProjectPtr project = ReadFrom(EXAMPLE, ReadFile(EXAMPLE + "/main.xml"));
    project->SetVersionNo(1);  // a model that is not stored keeps its connections to itself
    const std::string whole = WriteProject(*project);
    project->m_baseDirectory = directory.Path().c_str();
    MultiFileHelper files({"namespace", "package"});
    const std::string main = WriteProject(*project, &files);
    EXPECT_TRUE(SameXml(WriteProject(*ReadFrom(directory.Path(), main)), whole));
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLE)) {
        const std::string name = entry.path().filename().string();
        if (name == "single.xml") continue;
        const std::string written = name == "main.xml" ? main : ReadFile(directory.Path() + "/" + name);
        EXPECT_TRUE(SameXml(Settled(ReadFile(entry.path().string())), Settled(written))) << name;
    }
}

// ---- what an export takes along

class SMNamespace2Files : public testing::Test {
  protected:
    SMNamespace2Files() : project(NewProject("Root")), root(project->GetRootNamespace()) {
        project->m_baseDirectory = directory.Path().c_str();
        root->SetId("r");
    }

    const TempDir directory;
    const ProjectPtr project;
    SMNamespace2* const root;
    Task task;
};

TEST_F(SMNamespace2Files, AreWrittenForEachWithoutATask) {
    AddNamespace(*root, "c", "Child");
    EXPECT_EQ(MainDocument(*project), std::string("<smnamespacefile id=\"r\" name=\"Root\" filename=\"Root.qvf\" filepath=\"\">"
                                                  "<smnamespacefile id=\"c\" name=\"Child\" filename=\"Child.qvf\" filepath=\"\">") +
                                          END + END);
    EXPECT_EQ(directory.Files(), 2u);
    EXPECT_EQ(directory.Read("Child.qvf").find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<namespace><name locale=\"en\">Child</name>"),
              0u);
}

TEST_F(SMNamespace2Files, AreLeftOutByATaskButForThePlacesOfThoseBelow) {
    SMNamespace2* const child = AddNamespace(*root, "c", "Child");
    AddNamespace(*child, "g", "Grandchild");
    task.targets["g"] = nullptr;
    project->setActiveExportTask(&task);
    EXPECT_EQ(MainDocument(*project),
              std::string("<smnamespacefile id=\"r\" name=\"Root\"><smnamespacefile id=\"c\" name=\"Child\">"
                          "<smnamespacefile id=\"g\" name=\"Grandchild\" filename=\"Grandchild.qvf\" filepath=\"\">") +
                  END + END + END);
    EXPECT_EQ(directory.Files(), 1u);
}

TEST_F(SMNamespace2Files, LeaveThePlaceOfOneThatIsLeftOutToTheEnclosingDocument) {
    SMNamespace2* const child = AddNamespace(*root, "c", "Child");
    AddNamespace(*child, "g", "Grandchild");
    task.targets = {{"r", nullptr}, {"g", nullptr}};
    project->setActiveExportTask(&task);
    EXPECT_EQ(MainDocument(*project),
              std::string("<smnamespacefile id=\"r\" name=\"Root\" filename=\"Root.qvf\" filepath=\"\">"
                          "<smnamespacefile id=\"c\" name=\"Child\">"
                          "<smnamespacefile id=\"g\" name=\"Grandchild\" filename=\"Grandchild.qvf\" filepath=\"\">") +
                  END + END + END);
    EXPECT_THAT(directory.Read("Root.qvf"), testing::Not(testing::HasSubstr("smnamespacefile")));
}

TEST_F(SMNamespace2Files, AreWrittenForTargetAndSourceThatHoldMoreThanNamespaces) {
    project->setActiveExportTask(&task);
    for (const char* name : {"Target", "Source", "target", "Other"}) {
        const bool isTop = std::string(name) == "Target" || std::string(name) == "Source";
        const ProjectPtr other = NewProject(name);
        other->m_baseDirectory = directory.Path().c_str();
        other->setActiveExportTask(&task);
        AddNamespace(*other->GetRootNamespace(), "c", "Child");
        EXPECT_EQ(other->GetRootNamespace()->WriteWhat(), 1) << name << ": namespaces do not count";
        ParseInside(*QvSmartPtr<SMNamespaceBuilder>(new SMNamespaceBuilder(other->GetRootNamespace(), false)),
                    "<querySubject><name locale=\"en\">q</name></querySubject>");
        EXPECT_EQ(other->GetRootNamespace()->WriteWhat(), isTop ? 2 : 1) << name;
    }
}

TEST_F(SMNamespace2Files, CountEachOtherKindForTarget) {
    project->setActiveExportTask(&task);
    for (const char* kind : {"folder", "function", "shortcut", "querySubject", "updateSubject", "relationship", "relationshipShortcut",
                             "filter", "calculation", "dimension", "scopeRelationship"}) {
        const ProjectPtr other = NewProject("Target");
        other->setActiveExportTask(&task);
        ParseInside(*QvSmartPtr<SMNamespaceBuilder>(new SMNamespaceBuilder(other->GetRootNamespace(), false)),
                    "<" + std::string(kind) + "></" + kind + ">");
        EXPECT_EQ(other->GetRootNamespace()->WriteWhat(), 2) << kind;
    }
}

TEST_F(SMNamespace2Files, OfFoldersHaveTheirPlacesInTheFileAroundThem) {
    auto* folder = new SMFolder2(root, project);
    folder->AddName("en", "Folder");
    root->AddFolder(folder);
    AddNamespace(*folder, "c", "Child");
    EXPECT_EQ(MainDocument(*project), std::string("<smnamespacefile id=\"r\" name=\"Root\" filename=\"Root.qvf\" filepath=\"\">") + END);
    EXPECT_THAT(
        directory.Read("Root.qvf"),
        testing::HasSubstr("<smnamespacefile id=\"c\" name=\"Child\" filename=\"Child.qvf\" filepath=\"\"></smnamespacefile></folder>"));
    const ProjectPtr read = ReadFrom(directory.Path(), Document{.defaultLocale = "en", .root = MainDocument(*project)}.Text());
    EXPECT_EQ(read->FindNamespaceByName("Child")->parent, read->GetRootNamespace()->GetFolders()[0].get());
}

TEST_F(SMNamespace2Files, CanBeWrittenAgainAfterAFailure) {
    AddNamespace(*root, "c", "Child");
    std::filesystem::create_directory(directory.Path("Child.qvf"));
    MultiFileHelper files({"namespace"});
    EXPECT_THROW(WriteProject(*project, &files), TklRuntimeError);
    std::filesystem::remove(directory.Path("Child.qvf"));
    EXPECT_THAT(MainDocument(*project), testing::HasSubstr("filename=\"Child.qvf\" filepath=\"\"></smnamespacefile></smnamespacefile>"));
}

// ---- reading

TEST_F(SMNamespace2Files, ThatWereLeftOutComeBackAsStubs) {
    const ProjectPtr read = ReadFrom(directory.Path(), Document{.defaultLocale = "en",
                                                                .root = "<namespace><name locale=\"en\">R</name><smnamespacefile id=\"s\" "
                                                                        "name=\"Stub\"><smnamespacefile id=\"d\" name=\"Deep\">"
                                                                        "</smnamespacefile></smnamespacefile></namespace>"}
                                                           .Text());
    SMNamespace2* const stub = read->FindNamespaceByName("Stub");
    ASSERT_TRUE(stub);
    EXPECT_EQ(stub->GetId(), "s");
    EXPECT_EQ(stub->parent, read->GetRootNamespace());
    EXPECT_EQ(read->FindNamespaceByName("Deep")->parent, stub);
}

TEST_F(SMNamespace2Files, ThatWereLeftOutLeaveWhatIsThere) {
    const ProjectPtr read = ReadFrom(
        directory.Path(), Document{.defaultLocale = "en",
                                   .root = NamespaceElement("R", NamespaceElement("There") + "<smnamespacefile id=\"s\" name=\"There\">"
                                                                                             "<smnamespacefile id=\"d\" name=\"Deep\">"
                                                                                             "</smnamespacefile></smnamespacefile>")}
                              .Text());
    SMNamespace2* const there = read->FindNamespaceByName("There");
    EXPECT_NE(there->GetId(), "s");
    EXPECT_EQ(read->GetRootNamespace()->GetNamespaces().size(), 1u);
    EXPECT_EQ(read->FindNamespaceByName("Deep")->parent, there);
}

TEST_F(SMNamespace2Files, AreFoundWhereThePathLeadsWithoutARoot) {
    std::filesystem::create_directory(directory.Path("model"));
    directory.Write("outside.qvf", NamespaceElement("Outside"));
    std::filesystem::create_symlink("../outside.qvf", directory.Path("model/link.qvf"));
    for (const char* place :
         {"filename='outside.qvf' filepath='..'", "filename='../outside.qvf' filepath=''", "filename='link.qvf' filepath=''"}) {
        const ProjectPtr read = ReadFrom(directory.Path("model"),
                                         Document{.defaultLocale = "en", .root = "<smnamespacefile " + std::string(place) + "/>"}.Text());
        EXPECT_TRUE(read->FindNamespaceByName("Outside")) << place;
    }
}

TEST_F(SMNamespace2Files, AreRefusedOutsideOfARoot) {
    directory.Write("outside.qvf", NamespaceElement("Outside"));
    std::filesystem::create_directories(directory.Path("model/sub"));
    directory.Write("model/inside.qvf", NamespaceElement("Inside"));
    const ProjectPtr read = NewProject("R");
    read->m_partFiles.SetRoot(directory.Path("model"));
    const auto readInto = [&](const std::string& base, const char* file) {
        read->m_baseDirectory = base.c_str();
        const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(read->GetRootNamespace(), read);
        return ns->ReadFromXMLFile("", file);
    };
    CapturedLog log;
    EXPECT_TRUE(readInto(directory.Path("model/sub"), "../inside.qvf"));
    EXPECT_FALSE(readInto(directory.Path("model"), "../outside.qvf"));
    EXPECT_FALSE(readInto(directory.Path(), "outside.qvf"));
    EXPECT_FALSE(readInto("", (directory.Path("outside.qvf")).c_str()));
    ASSERT_EQ(log.Events().size(), 3u);
    for (const LoggedEvent& event : log.Events()) {
        EXPECT_EQ(event.message, "Error reading SM model from XML");
        EXPECT_EQ(event.origin, "QvOne/qve");
        EXPECT_THAT(event.detail, testing::HasSubstr("out of the directory of the model"));
    }
    EXPECT_EQ(read->m_partFiles.UnreadCount(), 3u);
}

TEST_F(SMNamespace2Files, AreNeverReadInsideThemselves) {
    directory.Write("a.qvf", NamespaceElement("A", "<smnamespacefile filename=\"b.qvf\" filepath=\"\"></smnamespacefile>"));
    directory.Write("b.qvf", NamespaceElement("B", "<smnamespacefile filename=\"a.qvf\" filepath=\"\"></smnamespacefile>"));
    CapturedLog log;
    const ProjectPtr read =
        ReadFrom(directory.Path(), Document{.defaultLocale = "en", .root = "<smnamespacefile filename='a.qvf' filepath=''/>"}.Text());
    EXPECT_THAT(log.Messages(), testing::ElementsAre("1 Error reading SM model from XML"));
    EXPECT_TRUE(read->FindNamespaceByName("A"));
    EXPECT_TRUE(read->FindNamespaceByName("B"));
}
