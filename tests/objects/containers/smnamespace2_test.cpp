#include "objects/containers/smnamespace2_002_000.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Namespace : public testing::Test {
  protected:
    ProjectPtr project = NewProject("root");
    SMNamespace2* root = project->GetRootNamespace();
    CapturedLog log;
};

class NamespaceFile : public Namespace {
  protected:
    NamespaceFile() {
        std::filesystem::create_directories(directory + "/sub");
        project->m_baseDirectory = directory.c_str();
    }
    ~NamespaceFile() override { std::filesystem::remove_all(directory); }
    void Write(const std::string& name, const std::string& text) { std::ofstream(directory + "/" + name, std::ios::binary) << text; }

    std::string directory = testing::TempDir() + "smodel-namespace-" + std::to_string(::getpid());
    QvSmartPtr<SMNamespace2> ns = new SMNamespace2(root, project);
};

using NamespaceModel = Namespace;
using NamespaceBuilder = Namespace;

}  // namespace

TEST_F(NamespaceModel, HasTheConstantsOfItsKind) {
    EXPECT_EQ(root->GetModelType(), 21);
    EXPECT_EQ(root->GetSMType(), 107);
    EXPECT_EQ(root->GetTagName(), "namespace");
    EXPECT_EQ(root->GetFileExtension(), "qvf");
    EXPECT_EQ(root->GetPlaceholderTag(), "smnamespacefile");
    EXPECT_FALSE(root->IsFolder());
    EXPECT_EQ(root->GetIdCol(), "SECTION_ID");
    EXPECT_EQ(root->GetVersionCol(), "SECTION_VERSION_NO");
    EXPECT_EQ(root->GetParentIdCol(), "PROJECT_ID");
    EXPECT_EQ(root->GetParentVersionCol(), "PROJECT_VERSION_NO");
    const SMFolder2 folder(root, project);
    EXPECT_EQ(const_cast<SMFolder2&>(folder).GetModelType(), 22);
    EXPECT_EQ(folder.GetSMType(), 60);
    EXPECT_EQ(folder.GetTagName(), "folder");
    EXPECT_TRUE(folder.IsFolder());
    EXPECT_EQ(folder.GetIdCol(), "SECTION_ID");
}

TEST_F(NamespaceModel, HasAnIdThatDoesNotTellWhereItLies) {
    SMNamespace2* ns = root->AddOrUpdateNamespace("a", "")->AddOrUpdateNamespace("b.c", "");
    EXPECT_EQ(ns->GetSMID(false), "[b.c]");
    EXPECT_EQ(ns->GetSMID(true), "[b&#46;c]");
}

TEST_F(NamespaceModel, KeepsItsOldNameInTheMapAfterARename) {
    root->ChangeDefaultName(I18NString("new"));
    EXPECT_EQ(project->FindNamespaceByName("new"), root);
    EXPECT_EQ(project->FindNamespaceByName("root"), root);
    EXPECT_TRUE(root->GetLastChangedDate().IsSet());
    project->RebuildNamespaceMap();
    EXPECT_EQ(project->FindNamespaceByName("root"), nullptr);
}

TEST_F(NamespaceModel, EntersTheMapAlsoWithTheNameItHas) {
    project->RemoveNamespaceAndDescendentsFromMap(root);
    root->SetLastChangedDate(QvDate(false));
    root->ChangeDefaultName(I18NString("root"));
    EXPECT_EQ(project->FindNamespaceByName("root"), root);
    EXPECT_FALSE(root->GetLastChangedDate().IsSet());
}

TEST_F(NamespaceModel, LeavesTheMapAloneWhenTold) {
    root->SetNameDontTouchNamespaceMap("new");
    EXPECT_EQ(project->FindNamespaceByName("new"), nullptr);
    EXPECT_EQ(root->GetName(), "new");
}

TEST_F(NamespaceModel, TakesChildrenThatWereMovedInBulk) {
    SMNamespace2* from = root->AddOrUpdateNamespace("from", "");
    SMFolder2* folder = from->AddOrUpdateFolder("f");
    root->GetChildrenInOrder().push_back(nullptr);
    root->GetChildrenInOrder().push_back(folder);
    root->CorrectChildrenParentPtrs();
    EXPECT_EQ(folder->parent, root);
    EXPECT_EQ(from->parent, root);
    root->GetChildrenInOrder().resize(1);
}

// ---- builder

TEST_F(NamespaceBuilder, JoinsTheModelAtItsEnd) {
    const ProjectPtr read = ParseProject(Document{.defaultLocale = "en", .root = NamespaceElement("a", NamespaceElement("b"))}.Text());
    ASSERT_NE(read->GetRootNamespace(), nullptr);
    EXPECT_EQ(read->GetRootNamespace()->GetName(), "a");
    EXPECT_EQ(read->FindNamespaceByName("b"), read->GetRootNamespace()->GetNamespaces()[0].get());
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(NamespaceBuilder, MakesNamesUniqueFromTheInsideOut) {
    const ProjectPtr read = ParseProject(Document{.defaultLocale = "en", .root = NamespaceElement("n", NamespaceElement("n"))}.Text());
    SMNamespace2* outer = read->GetRootNamespace();
    EXPECT_EQ(outer->GetName(), "n") << "a root is not renamed";
    EXPECT_EQ(outer->GetNamespaces()[0]->GetName(), "n");
    EXPECT_EQ(read->FindNamespaceByName("n"), outer->GetNamespaces()[0].get()) << "it came first";
}

TEST_F(NamespaceBuilder, SortsAtTheEnd) {
    const ProjectPtr read =
        ParseProject(Document{.defaultLocale = "en", .root = NamespaceElement("r", NamespaceElement("n") + FolderElement("f"))}.Text());
    const auto& order = read->GetRootNamespace()->GetDisplayOrderItems();
    EXPECT_THAT(order, ElementsAre(read->GetRootNamespace()->GetNamespaces()[0].get(), read->GetRootNamespace()->GetFolders()[0].get()));
}

// ---- a file of its own

TEST_F(NamespaceFile, StandsForTheRootElement) {
    Write("n.qvf", NamespaceElement("n", NamespaceElement("inner")));
    EXPECT_TRUE(ns->ReadFromXMLFile("", "n.qvf"));
    EXPECT_EQ(ns->GetName(), "n");
    ASSERT_EQ(ns->GetNamespaces().size(), 1u);
    EXPECT_EQ(ns->GetNamespaces()[0]->GetName(), "inner");
    EXPECT_EQ(root->GetNamespaces()[0].get(), ns.get()) << "joins its parent at its end";
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(NamespaceFile, IsFoundBelowTheBaseDirectory) {
    Write("sub/n.qvf", NamespaceElement("n"));
    EXPECT_TRUE(ns->ReadFromXMLFile("sub", "n.qvf"));
    EXPECT_EQ(ns->GetName(), "n");
}

TEST_F(NamespaceFile, MayBeReadIntoTheRoot) {
    Write("n.qvf", NamespaceElement("n"));
    ns->parent = project;
    EXPECT_TRUE(ns->ReadFromXMLFile("", "n.qvf"));
    EXPECT_EQ(project->GetRootNamespace(), ns.get());
}

TEST_F(NamespaceFile, IsLoggedWhenItIsMissing) {
    EXPECT_FALSE(ns->ReadFromXMLFile("", "missing.qvf"));
    ASSERT_EQ(log.Events().size(), 1u);
    const LoggedEvent& event = log.Events()[0];
    EXPECT_EQ(event.level, 1);
    EXPECT_EQ(event.origin, "QvOne/qve");
    EXPECT_EQ(event.module, "smnamespace2");
    EXPECT_EQ(event.className, "SMNamespace2");
    EXPECT_EQ(event.method, "ReadFromXMLFile");
    EXPECT_EQ(event.message, "Error reading SM model from XML");
    EXPECT_THAT(event.detail, testing::HasSubstr("missing.qvf"));
    EXPECT_TRUE(root->GetNamespaces().empty());
}

TEST_F(NamespaceFile, LeavesWhatItHasReadOfABadFile) {
    Write("n.qvf", "<namespace><name locale='en'>n</name><folder><name locale='en'>f</name></folder>");
    auto* borrowed = new SMNamespace2(root, project);  // nobody shares it, and it must not go all the same
    EXPECT_FALSE(borrowed->ReadFromXMLFile("", "n.qvf"));
    EXPECT_EQ(borrowed->GetName(), "n");
    EXPECT_EQ(borrowed->GetFolders().size(), 1u);
    EXPECT_TRUE(root->GetNamespaces().empty());
    EXPECT_EQ(project->FindNamespaceByName("n"), nullptr);
    const QvSmartPtr<SMNamespace2> released = borrowed;
}

TEST_F(NamespaceFile, WhoseRootIsAnotherElementIsReadAsContent) {
    Write("n.qvf", "<folder><name locale='en'>f</name></folder>");
    EXPECT_TRUE(ns->ReadFromXMLFile("", "n.qvf"));
    EXPECT_EQ(ns->GetFolders().size(), 1u);
    EXPECT_TRUE(root->GetNamespaces().empty());
}

TEST_F(NamespaceFile, IsAddedOnceWhenItIsReadAgain) {
    Write("n.qvf", NamespaceElement("n"));
    EXPECT_TRUE(ns->ReadFromXMLFile("", "n.qvf"));
    EXPECT_TRUE(ns->ReadFromXMLFile("", "n.qvf"));
    EXPECT_EQ(root->GetNamespaces().size(), 1u);
    EXPECT_EQ(ns->GetName(), "n");
    EXPECT_THAT(log.Events(), IsEmpty());
}
