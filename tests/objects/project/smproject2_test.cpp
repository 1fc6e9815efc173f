#include "objects/project/smproject2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Project : public testing::Test {
  protected:
    static std::list<QvULString> Path(std::initializer_list<const char*> names) { return {names.begin(), names.end()}; }
    SMNamespace2* FromPath(std::initializer_list<const char*> names) {
        std::list<QvULString> path = Path(names);
        return project->FindOrCreateNamespaceFromPath(path);
    }

    ProjectPtr project = NewProject("root");
    SMNamespace2* root = project->GetRootNamespace();
    CapturedLog log;
};

using ProjectModel = Project;
using ProjectNamespaces = Project;

}  // namespace

TEST_F(ProjectModel, StartsBare) {
    SMProject2 bare;
    EXPECT_EQ(bare.GetSMType(), 125);
    EXPECT_EQ(bare.GetModelType(), 23);
    EXPECT_EQ(bare.GetSMProject(), &bare);
    EXPECT_EQ(bare.parent, nullptr);
    EXPECT_EQ(bare.GetRootNamespace(), nullptr);
    EXPECT_FALSE(bare.m_keepIdMap);
    EXPECT_EQ(bare.getActiveExportTask(), nullptr);
    EXPECT_EQ(bare.GetIdCol(), "PROJECT_ID");
    EXPECT_EQ(bare.GetVersionCol(), "PROJECT_VERSION_NO");
    EXPECT_EQ(bare.GetParentIdCol(), "");
    EXPECT_EQ(bare.GetParentVersionCol(), "");
    EXPECT_EQ(bare.GetAllObjects().GetCount(), 0);
}

TEST_F(ProjectModel, GivesAMapTheNewFlagEachTime) {
    SMParameterMap2* map = project->AddParameterMapOrReturnExisting("m", true);
    EXPECT_TRUE(map->IsHidden());
    EXPECT_EQ(project->AddParameterMapOrReturnExisting("m", false), map);
    EXPECT_FALSE(map->IsHidden());
    EXPECT_EQ(project->GetParameterMaps().size(), 1u);
    EXPECT_EQ(map->parent, project.get());
    EXPECT_EQ(project->GetParameterMapWithName("m"), map);
    EXPECT_EQ(project->GetParameterMapWithName("M"), nullptr);
}

TEST_F(ProjectModel, LooksForMapsByTheirPresentName) {
    SMParameterMap2* a = project->AddParameterMapOrReturnExisting("a", false);
    SMParameterMap2* b = project->AddParameterMapOrReturnExisting("b", false);
    a->SetName("b");
    EXPECT_EQ(project->GetParameterMapWithName("b"), a) << "the first in order";
    EXPECT_NE(project->AddParameterMapOrReturnExisting("a", false), a);
    a->SetName("c");
    EXPECT_EQ(project->GetParameterMapWithName("b"), b);
}

TEST_F(ProjectModel, ListsMapsBeforeTheRootAsChildren) {
    SMParameterMap2* map = project->AddParameterMapOrReturnExisting("m", false);
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    project->getChildObjects(children);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0].get(), map);
    EXPECT_EQ(children[1].get(), root);
}

TEST_F(ProjectModel, RenamesInMaps) {
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    SMParameterMap2* map = project->AddParameterMapOrReturnExisting("m", false);
    map->AddOrUpdateParameterMapEntry("k", "[A].[x].[y]");
    project->RenameObjects(list);
    EXPECT_EQ(map->GetEntries()[0]->GetValue(), "[B].[x].[y]");
    EXPECT_EQ(root->GetName(), "root");
}

TEST_F(ProjectModel, GivesNewIdsToAll) {
    SMParameterMap2* map = project->AddParameterMapOrReturnExisting("m", false);
    std::map<QvULString, QvULString> ids;
    project->RegenerateIds(ids);
    for (const SMObjectBase* object :
         {static_cast<SMObjectBase*>(project), static_cast<SMObjectBase*>(root), static_cast<SMObjectBase*>(map)})
        EXPECT_EQ(object->GetId().length(), 36);
}

TEST_F(ProjectModel, LetsGoOfWhatOthersHold) {
    const QvSmartPtr<SMNamespace2> held = root;
    const QvSmartPtr<SMNamespace2> replacement = new SMNamespace2(project, project);
    project->SetRootNamespace(replacement);
    const QvSmartPtr<SMParameterMap2> map = project->AddParameterMapOrReturnExisting("m", false);
    const QvSmartPtr<SMFolder2> folder = root->AddOrUpdateFolder("f");
    project = nullptr;
    for (const SMObjectBase* object :
         {static_cast<SMObjectBase*>(held), static_cast<SMObjectBase*>(replacement), static_cast<SMObjectBase*>(map)}) {
        EXPECT_EQ(object->GetSMProject(), nullptr);
        EXPECT_EQ(object->GetParentSMObj(), nullptr);
    }
    EXPECT_EQ(folder->GetParentSMObj(), held.get());
    EXPECT_EQ(folder->GetName("en"), "No project");
}

// ---- recorded objects

TEST_F(ProjectModel, RecordsOnlyWhenAsked) {
    root->AddOrUpdateNamespace("a", "");
    EXPECT_TRUE(project->m_idMap.empty());
    project->m_keepIdMap = true;
    SMNamespace2* b = root->AddOrUpdateNamespace("b", "");
    EXPECT_THAT(project->m_idMap, ElementsAre(testing::Pair(QvULString("[b]"), b)));
}

TEST_F(ProjectModel, KeepsAnExistingRecord) {
    project->m_keepIdMap = true;
    project->m_idMap["[b]"] = root;
    SMNamespace2* b = root->AddOrUpdateNamespace("b", "");
    EXPECT_EQ(project->m_idMap["[b]"], root);
    root->DeleteNamespace(b);
    EXPECT_EQ(project->m_idMap["[b]"], root) << "not its own entry";
}

TEST_F(ProjectModel, ForgetsTheRecordsOfAnObjectThatDies) {
    project->m_keepIdMap = true;
    SMNamespace2* ns = root->AddOrUpdateNamespace("before", "");
    ns->ChangeDefaultName(I18NString("after"));
    root->AddOrUpdateFolder("f")->AddOrUpdateNamespace("after", "");
    EXPECT_EQ(project->m_idMap.size(), 2u) << "recorded again when it moved";
    project->DeleteNamespaceWithName("after");
    EXPECT_TRUE(project->m_idMap.empty());
}

TEST_F(ProjectModel, ErasesTheBareNameOfANamespaceThatMoves) {
    project->m_keepIdMap = true;
    root->AddOrUpdateNamespace("n", "");
    project->m_idMap["n"] = root;
    root->AddOrUpdateFolder("f")->AddOrUpdateNamespace("n", "");
    EXPECT_EQ(project->m_idMap.count("n"), 0u);
    EXPECT_EQ(project->m_idMap.count("[n]"), 1u);
}

// ---- namespaces

TEST_F(ProjectNamespaces, KeepTheEntryOfAReplacedRoot) {
    auto* second = new SMNamespace2(project, project);
    second->SetNameDontTouchNamespaceMap("second");
    project->SetRootNamespace(second);
    EXPECT_EQ(project->GetRootNamespace(), second);
    EXPECT_EQ(project->FindNamespaceByName("root"), root);
    EXPECT_EQ(root->GetName(), "root") << "still alive";
    project->RebuildNamespaceMap();
    EXPECT_EQ(project->FindNamespaceByName("root"), nullptr);
}

TEST_F(ProjectNamespaces, BecomeChildrenOfTheProjectAsItsRoot) {
    SMNamespace2* const inner = root->AddOrUpdateFolder("f")->AddOrUpdateNamespace("inner", "");
    project->SetRootNamespace(inner);
    EXPECT_EQ(inner->GetParentSMObj(), project.get());
}

TEST_F(ProjectNamespaces, MayTakeAReplacedRootIn) {
    auto* second = new SMNamespace2(project, project);
    second->SetNameDontTouchNamespaceMap("second");
    project->SetRootNamespace(second);
    EXPECT_EQ(second->AddOrUpdateNamespace("root", ""), root);
    EXPECT_EQ(root->parent, second);
    EXPECT_EQ(second->GetNamespaces()[0].get(), root);
}

TEST_F(ProjectNamespaces, AreNotRebuiltWithoutARoot) {
    const ProjectPtr bare = NewProject();
    const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(bare, bare);
    ns->ChangeDefaultName(I18NString("n"));
    bare->RebuildNamespaceMap();
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smobjects", "SMProject2", "RebuildNamespaceMap",
                                                      "Attempting to rebuild namespace map when there is no top-level namespace.", ""}));
    EXPECT_EQ(bare->FindNamespaceByName("n"), ns.get());
}

TEST_F(ProjectNamespaces, AreRebuiltFromTheTree) {
    SMNamespace2* ns = root->AddOrUpdateFolder("f")->AddOrUpdateNamespace("n", "");
    project->RemoveNamespaceAndDescendentsFromMap(root);
    EXPECT_TRUE(project->GetNamespaceMap().empty());
    project->RebuildNamespaceMap();
    EXPECT_EQ(project->FindNamespaceByName("n"), ns);
    EXPECT_EQ(project->GetNamespaceMap().size(), 2u);
    project->RemoveNamespaceAndDescendentsFromMap(nullptr);
}

TEST_F(ProjectNamespaces, AreFoundByNameAndId) {
    root->SetId("i");
    EXPECT_EQ(project->FindNamespaceByName("ROOT"), nullptr);
    EXPECT_EQ(project->FindNamespaceByNameCaseInsensitive("ROOT"), root);
    EXPECT_EQ(project->FindNamespaceByNameCaseInsensitive("other"), nullptr);
    EXPECT_EQ(project->FindNamespaceById("i"), root);
    EXPECT_EQ(project->FindNamespaceById("none"), nullptr);
    EXPECT_EQ(project->GenerateUniqueNamespaceName("root"), "root1");
}

TEST_F(ProjectNamespaces, GetNumbersBehindTheirNamesUntilTheseAreFree) {
    for (const char* const name : {"a", "a1", "a2", "a4"}) root->AddOrUpdateNamespace(name, "");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a"), "a3");
    root->AddOrUpdateNamespace("a3", "");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a"), "a5");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a2"), "a5");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a7"), "a7");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a02"), "a5");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("b"), "b");
    EXPECT_EQ(project->GenerateUniqueNamespaceName(""), "1");
    project->DeleteNamespaceWithName("a1");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a"), "a1");
    EXPECT_EQ(project->GenerateUniqueNamespaceName("a2"), "a5");
}

TEST_F(ProjectNamespaces, AreFoundInKeyOrderWithoutRegardToCase) {
    SMNamespace2* upper = root->AddOrUpdateNamespace("NAME", "");
    root->AddOrUpdateNamespace("name", "");
    EXPECT_EQ(project->FindNamespaceByNameCaseInsensitive("Name"), upper);
}

TEST_F(ProjectNamespaces, ChangeTheirEntryWithTheOldName) {
    root->SetNameDontTouchNamespaceMap("new");
    project->AddOrUpdateNamespaceNameMap(root, "root");
    EXPECT_EQ(project->FindNamespaceByName("root"), nullptr);
    EXPECT_EQ(project->FindNamespaceByName("new"), root);
    SMNamespace2* other = root->AddOrUpdateNamespace("other", "");
    project->AddOrUpdateNamespaceNameMap(root, "other");
    EXPECT_EQ(project->FindNamespaceByName("other"), nullptr) << "whoever has it";
    EXPECT_EQ(other->parent, root);
}

TEST_F(ProjectNamespaces, LeaveTheMapAloneWhileTheyAreBuilt) {
    SMNamespace2 building(nullptr, project);
    building.SetNameDontTouchNamespaceMap("new");
    project->AddOrUpdateNamespaceNameMap(&building, "root");
    EXPECT_EQ(project->FindNamespaceByName("root"), root);
    EXPECT_EQ(project->FindNamespaceByName("new"), nullptr);
}

TEST_F(ProjectNamespaces, AreDeletedByName) {
    SMNamespace2* a = root->AddOrUpdateNamespace("a", "");
    a->AddOrUpdateFolder("f")->AddOrUpdateNamespace("b", "");
    project->DeleteNamespaceWithName("none");
    project->DeleteNamespaceWithName("a");
    EXPECT_TRUE(root->GetNamespaces().empty());
    EXPECT_EQ(project->GetNamespaceMap().size(), 1u);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ProjectNamespaces, AreDeletedAlsoWithoutIds) {
    root->AddOrUpdateNamespace("a", "");
    SMNamespace2* b = root->AddOrUpdateNamespace("b", "");
    project->DeleteNamespaceWithName("b");
    ASSERT_EQ(root->GetNamespaces().size(), 1u);
    EXPECT_EQ(root->GetNamespaces()[0]->GetName(), "a") << "not the first of the empty id";
    EXPECT_NE(root->GetNamespaces()[0].get(), b);
}

TEST_F(ProjectNamespaces, LoseTheEntriesButNotTheRoot) {
    root->AddOrUpdateNamespace("a", "");
    project->DeleteNamespaceWithName("root");
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{1, "smobjects", "SMProject2", "DeleteNamespaceWithName", "Warning: deleting root namespace.", ""}));
    EXPECT_EQ(project->GetRootNamespace(), root);
    EXPECT_TRUE(project->GetNamespaceMap().empty());
    EXPECT_EQ(root->GetNamespaces().size(), 1u);
}

TEST_F(ProjectNamespaces, AreMadeAlongAPath) {
    const ProjectPtr bare = NewProject();
    std::list<QvULString> path = Path({"a", "b"});
    SMNamespace2* b = bare->FindOrCreateNamespaceFromPath(path);
    SMNamespace2* a = bare->GetRootNamespace();
    EXPECT_EQ(a->GetName(), "a");
    EXPECT_EQ(a->GetDescription(), "a");
    EXPECT_EQ(b->GetName(), "b");
    EXPECT_EQ(b->GetDescription(), "b");
    EXPECT_EQ(b->parent, a);
    EXPECT_EQ(path.size(), 1u) << "the path is used up";
}

TEST_F(ProjectNamespaces, AreFoundByTheLastNameOfAPathAlone) {
    SMNamespace2* n = root->AddOrUpdateNamespace("n", "");
    EXPECT_EQ(FromPath({"what", "ever", "n"}), n);
    EXPECT_EQ(project->GetNamespaceMap().size(), 2u);
    EXPECT_EQ(FromPath({"else", "n", "m"})->parent, n);
}

TEST_F(ProjectNamespaces, GetANewRootFromAPathOfOneNewName) {
    SMNamespace2* second = FromPath({"second"});
    EXPECT_EQ(project->GetRootNamespace(), second);
    EXPECT_EQ(project->FindNamespaceByName("root"), root);
}

TEST_F(ProjectNamespaces, AreNotMadeFromAnEmptyPath) {
    std::list<QvULString> path;
    try {
        project->FindOrCreateNamespaceFromPath(path);
        FAIL() << "nothing thrown";
    } catch (const QvLogEvent& event) {
        EXPECT_EQ(event.level, 1);
        EXPECT_STREQ(event.what(), "Failed to find namespace.");
    }
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{1, "smobjects", "SMProject2", "FindOrCreateNamespaceFromPath", "Failed to find namespace.",
                                        "This method should never be called with an empty path."}));
}

TEST_F(ProjectModel, GivesNoTokenOfLifeThatAnotherProjectGives) {
    const ProjectPtr other = NewProject("root");
    const std::uint64_t token = project->WatchLife(root);
    EXPECT_EQ(project->WatchLife(root), token);
    EXPECT_TRUE(project->IsWatchedAlive(root, token));
    EXPECT_NE(other->WatchLife(root), token);
    EXPECT_FALSE(other->IsWatchedAlive(root, token));
    project->ForgetObject(root);
    EXPECT_FALSE(project->IsWatchedAlive(root, token));
    EXPECT_NE(project->WatchLife(root), token) << "what stands at the address later is another object";
    other->ForgetObject(root);
}
