// Namespaces of a project: their names are unique, and they move.
#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>

#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Namespaces : public testing::Test {
  protected:
    /** The names of the map, with a mark at those under which no namespace of that name stands. */
    static std::vector<std::string> Map(const SMProject2& of) {
        std::vector<std::string> names;
        for (const auto& entry : of.GetNamespaceMap())
            names.push_back(std::string(entry.first.c_str()) + (entry.second->GetName() == entry.first ? "" : "*"));
        return names;
    }
    SMNamespace2* Add(SMSectionType2* section, const char* name) { return section->AddOrUpdateNamespace(name, ""); }

    ProjectPtr project = NewProject("root");
    SMNamespace2* root = project->GetRootNamespace();
    CapturedLog log;
};

}  // namespace

TEST_F(Namespaces, AreRenamedWhenTheirNameIsTaken) {
    Add(root, "Sales");
    const QvSmartPtr<SMNamespace2> second = new SMNamespace2(root, project);
    second->SetNameDontTouchNamespaceMap("Sales");
    root->AddNamespace(second);
    EXPECT_EQ(second->GetName(), "Sales1");
    EXPECT_EQ(second->GetSMID(false), "[Sales1]");
    EXPECT_EQ(project->FindNamespaceByName("Sales1"), second.get());
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{1, "smsectiontype2", "SMSectionType2", "AddNamespace",
                                                      "A namespace with name 'Sales' already exists - renaming this namespace to 'Sales1'.",
                                                      "", "code/zeb"}));
}

TEST_F(Namespaces, TakeANumberThatIsFreeAgain) {
    const auto another = [&] {
        const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(root, project);
        ns->SetNameDontTouchNamespaceMap("Sales");
        root->AddNamespace(ns);
        return std::string(ns->GetName().utf8());
    };
    const auto rename = [&](const char* from, const char* to) {
        SMNamespace2* ns = project->FindNamespaceByName(from);
        ns->SetNameDontTouchNamespaceMap(to);
        project->AddOrUpdateNamespaceNameMap(ns, from);
    };
    for (const char* name : {"Sales", "Sales1", "Sales2", "Sales3"}) EXPECT_EQ(another(), name);
    project->DeleteNamespaceWithName("Sales2");
    EXPECT_EQ(another(), "Sales2");
    EXPECT_EQ(another(), "Sales4");
    rename("Sales1", "Costs");
    EXPECT_EQ(another(), "Sales1");
    EXPECT_EQ(another(), "Sales5");
    rename("Sales3", "Sales9");
    EXPECT_EQ(another(), "Sales3");
    for (const char* name : {"Sales6", "Sales7", "Sales8", "Sales10"}) EXPECT_EQ(another(), name);
    project->DeleteNamespace(project->FindNamespaceByName("Sales"));
    EXPECT_EQ(another(), "Sales");
    EXPECT_EQ(another(), "Sales11");
    project->RebuildNamespaceMap();
    EXPECT_EQ(another(), "Sales12");
}

TEST_F(Namespaces, OfOneNameAreNumberedAtTheSameCostEach) {
    constexpr int COUNT = 20'000;
    const std::clock_t start = std::clock();
    for (int i = 0; i < COUNT; ++i) {
        const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(root, project);
        ns->SetNameDontTouchNamespaceMap("Sales");
        root->AddNamespace(ns);
    }
    EXPECT_EQ(root->GetNamespaces().back()->GetName().utf8(), "Sales" + std::to_string(COUNT - 1));
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 15) << "seconds; when each looks at all before it, they are many more";
}

TEST_F(Namespaces, ClashWithTheirOwnEntryOfTheMap) {
    const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(root, project);
    ns->ChangeDefaultName(I18NString("Sales"));
    root->AddNamespace(ns);
    EXPECT_EQ(ns->GetName(), "Sales1");
    EXPECT_THAT(Map(*project), ElementsAre("Sales*", "Sales1", "root"));
}

TEST_F(Namespaces, AreMadeWithNameDescriptionAndNumber) {
    project->m_keepIdMap = true;
    SMNamespace2* ns = root->AddOrUpdateNamespace("n", "d");
    EXPECT_EQ(ns->parent, root);
    EXPECT_EQ(ns->GetDescription(), "d");
    EXPECT_EQ(ns->displayOrder, 0);
    EXPECT_EQ(Add(root, "m")->displayOrder, 1);
    EXPECT_EQ(project->m_idMap["[n]"], ns);
    EXPECT_EQ(root->GetDisplayOrderItems()[0], ns);
}

TEST_F(Namespaces, TakeADescriptionWhereTheyStand) {
    SMNamespace2* ns = Add(root, "n");
    ns->SetLastChangedDate(QvDate(false));
    EXPECT_EQ(root->AddOrUpdateNamespace("n", ""), ns);
    EXPECT_FALSE(ns->GetLastChangedDate().IsSet());
    EXPECT_EQ(root->AddOrUpdateNamespace("n", "d"), ns);
    EXPECT_EQ(ns->GetDescription(), "d");
    EXPECT_EQ(root->GetNamespaces().size(), 1u);
}

TEST_F(Namespaces, MoveHereFromAnywhereAndKeepTheirId) {
    SMNamespace2* from = Add(root, "from");
    SMFolder2* to = root->AddOrUpdateFolder("to");
    SMNamespace2* ns = Add(from, "n");
    SMNamespace2* below = Add(ns, "below");
    ns->SetId("i");
    ns->SetLastChangedDate(QvDate(false));
    EXPECT_EQ(to->AddOrUpdateNamespace("n", "d"), ns);
    EXPECT_EQ(ns->parent, to);
    EXPECT_EQ(ns->GetId(), "i");
    EXPECT_EQ(ns->GetDescription(), "d");
    EXPECT_TRUE(ns->GetLastChangedDate().IsSet());
    EXPECT_TRUE(from->GetNamespaces().empty());
    EXPECT_THAT(from->GetDisplayOrderItems(), IsEmpty());
    EXPECT_THAT(to->GetDisplayOrderItems(), ElementsAre(ns));
    EXPECT_EQ(project->FindNamespaceByName("below"), below) << "what is below comes along";
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(Namespaces, KeepTheirRecordWhenTheyMove) {
    project->m_keepIdMap = true;
    SMNamespace2* ns = Add(Add(root, "from"), "n");
    Add(Add(root, "to"), "n");
    EXPECT_EQ(project->m_idMap["[n]"], ns);
    EXPECT_EQ(project->m_idMap.size(), 3u);
}

TEST_F(Namespaces, StayWhereTheyWouldMoveBelowThemselves) {
    SMNamespace2* outer = Add(root, "outer");
    SMNamespace2* inner = Add(outer, "inner");
    EXPECT_EQ(inner->AddOrUpdateNamespace("outer", "d"), outer);
    EXPECT_EQ(outer->parent, root);
    EXPECT_EQ(outer->GetDescription(), "d");
    EXPECT_EQ(inner->AddOrUpdateNamespace("root", ""), root);
    EXPECT_EQ(root->parent, project.get());
    inner->ImportNamespace(outer);
    EXPECT_EQ(outer->parent, root);
    EXPECT_EQ(log.Events().size(), 3u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(Map(*project).size(), 3u);
}

TEST_F(Namespaces, AreFoundBelowTheirSectionOnly) {
    SMNamespace2* ns = Add(root, "n");
    SMNamespace2* below = Add(ns, "below");
    EXPECT_EQ(root->GetChildNamespaceByName("n"), ns);
    EXPECT_EQ(root->GetChildNamespaceByName("below"), nullptr);
    EXPECT_EQ(ns->GetChildNamespaceByName("below"), below);
    EXPECT_EQ(root->GetChildNamespaceByName("none"), nullptr);
}

TEST_F(Namespaces, GoByTheirId) {
    Add(root, "a")->SetId("1");
    Add(root, "b")->SetId("2");
    root->DeleteNamespaceById("1");
    root->DeleteNamespaceById("none");
    EXPECT_EQ(root->GetNamespaces().size(), 1u);
    EXPECT_EQ(root->GetDisplayOrderItems().size(), 1u);
    EXPECT_EQ(project->FindNamespaceByName("a"), nullptr) << "a namespace that dies leaves the map";
}

TEST_F(Namespaces, LeaveTheMapUnderAllTheirNamesWhenTheyDie) {
    SMNamespace2* ns = Add(root, "first");
    ns->ChangeDefaultName(I18NString("second"));
    ns->ChangeDefaultName(I18NString("third"));
    EXPECT_THAT(Map(*project), ElementsAre("first*", "root", "second*", "third"));
    root->DeleteNamespace(ns);
    EXPECT_THAT(Map(*project), ElementsAre("root"));
}

TEST_F(Namespaces, EnterAndLeaveAMapWithAllBelow) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    SMNamespace2* inFolder = Add(folder, "b");
    SMNamespace2* a = Add(root, "a");
    SMNamespace2* below = Add(a, "c");
    std::map<QvULString, SMNamespace2*> map = {{"a", nullptr}};
    root->AddDescendentNamespacesToMap(map);
    EXPECT_THAT(map, ElementsAre(testing::Pair("a", nullptr), testing::Pair("b", inFolder), testing::Pair("c", below)))
        << "an entry that is there stays";
    root->RemoveDescendentNamespacesFromMap();
    EXPECT_THAT(Map(*project), ElementsAre("root"));
}

// ---- import

TEST_F(Namespaces, ComeFromAnotherProjectWithAllBelow) {
    const ProjectPtr other = NewProject("other root");
    SMNamespace2* ns = Add(other->GetRootNamespace(), "n");
    SMFolder2* folder = ns->AddOrUpdateFolder("f");
    SMNamespace2* inFolder = Add(folder, "in folder");
    SMNamespace2* child = Add(ns, "child");
    root->ImportNamespace(ns);
    for (const SMObjectBase* object : {static_cast<SMObjectBase*>(ns), static_cast<SMObjectBase*>(folder),
                                       static_cast<SMObjectBase*>(inFolder), static_cast<SMObjectBase*>(child)})
        EXPECT_EQ(object->GetSMProject(), project.get());
    EXPECT_EQ(ns->parent, root);
    EXPECT_THAT(ns->GetDisplayOrderItems(), ElementsAre(folder, child)) << "each child once";
    EXPECT_THAT(Map(*project), ElementsAre("child", "in folder", "n", "root"));
    EXPECT_THAT(Map(*other), ElementsAre("other root"));
    const auto& slots = other->GetAllObjects().GetObjects();
    EXPECT_EQ(slots.size() - static_cast<std::size_t>(std::count(slots.begin(), slots.end(), nullptr)), 1u);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(Namespaces, AreMadeUniqueWhenTheyComeFromAnotherProject) {
    const ProjectPtr other = NewProject("other root");
    SMNamespace2* ns = Add(other->GetRootNamespace(), "root");
    SMNamespace2* child = Add(ns, "child");
    Add(root, "child");
    root->ImportNamespace(ns);
    EXPECT_EQ(ns->GetName(), "root1");
    EXPECT_EQ(child->GetName(), "child1");
    EXPECT_EQ(log.Events().size(), 2u);
    EXPECT_EQ(project->FindNamespaceByName("child1"), child);
}

TEST_F(Namespaces, LeaveNoFormerNameInTheProjectTheyLeave) {
    const ProjectPtr other = NewProject("other root");
    SMNamespace2* ns = Add(other->GetRootNamespace(), "before");
    ns->ChangeDefaultName(I18NString("after"));
    root->ImportNamespace(ns);
    root->DeleteNamespace(ns);
    EXPECT_THAT(Map(*other), ElementsAre("other root"));
    EXPECT_THAT(Map(*project), ElementsAre("root"));
}

TEST_F(Namespaces, MayBeTheRootOfAnotherProject) {
    ProjectPtr other = NewProject("other root");
    const QvSmartPtr<SMNamespace2> theirs = other->GetRootNamespace();
    root->ImportNamespace(theirs);
    EXPECT_THAT(log.Messages(), ElementsAre("1 Warning: deleting root namespace."));
    EXPECT_EQ(other->GetRootNamespace(), theirs.get()) << "the root remains";
    other = nullptr;
    EXPECT_EQ(theirs->parent, root);
    EXPECT_EQ(theirs->GetSMProject(), project.get());
}

TEST_F(Namespaces, MoveToTheEndWhenTheyAreImportedWhereTheyStand) {
    SMNamespace2* a = Add(root, "a");
    SMNamespace2* b = Add(root, "b");
    root->ImportNamespace(a);
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(b, a));
    EXPECT_EQ(root->GetNamespaces().size(), 2u);
    EXPECT_EQ(a->GetName(), "a");
}
