#include "tests/core/repository/repositorytest.h"

namespace {

/** Objects without ids take those of the stored objects that they most likely are. */
class RepositoryAdoption : public RepositoryTest {
  protected:
    using Rows = std::pair<long, long>;

    /** As a document would give it again: no id but those that documents keep. */
    static void ForgetIds(TestNode& node) {
        node.SetId("");
        node.SetVersionNo(0);
        for (const QvSmartPtr<TestNode>& child : node.children) ForgetIds(*child);
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryAdoption, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryAdoption, AProjectWithoutAnyIdsIsUnchanged) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const std::string before = project->Dump();
    ForgetIds(*project);
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    EXPECT_EQ(project->Dump(), before);
}

TEST_P(RepositoryAdoption, GoesByNameBeforePlace) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    ForgetIds(*project);
    std::swap(Map(*project).children[0], Map(*project).children[2]);
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1)) << "only the order changed";
    EXPECT_EQ(Map(*project).Child(0).GetId(), "e2");
}

TEST_P(RepositoryAdoption, GoesByPlaceWhereNoNameFits) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    ForgetIds(*project);
    Map(*project).Child(1).Set("KEY", TestNode::Text("renamed"));
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(Map(*project).Child(1).GetId(), "e1");
    EXPECT_EQ(Map(*project).Child(1).GetVersionNo(), 2);
}

TEST_P(RepositoryAdoption, ANewFirstChildDoesNotTakeTheIdThatANameClaims) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    ForgetIds(*project);
    TestNode& added = Map(*project).AddEntry("new", "");
    std::rotate(Map(*project).children.begin(), Map(*project).children.end() - 1, Map(*project).children.end());
    Save(*project, number);
    EXPECT_EQ(added.GetId().length(), 36);
    EXPECT_EQ(Map(*project).Child(1).GetId(), "e3");
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositoryAdoption, DoesNotTakeAnIdThatAnotherObjectHas) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    TestNode& added = Map(*project).AddEntry("new", "");
    std::rotate(Map(*project).children.begin(), Map(*project).children.end() - 1, Map(*project).children.end());
    CaughtLog log;
    Save(*project, number);
    EXPECT_TRUE(log.messages.empty());
    EXPECT_EQ(added.GetId().length(), 36);
    EXPECT_EQ(Map(*project).Child(1).GetId(), "e3");
}

TEST_P(RepositoryAdoption, KindsOfOneTableAreNotMixed) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    TestNode& section = Root(*project).Child(0);
    section.SetId("");
    section.Set("SECTION_TYPE_NAME", TestNode::Text("folder"));
    Save(*project, number);
    EXPECT_EQ(section.GetId().length(), 36) << "a folder is not the namespace of its name";
}

TEST_P(RepositoryAdoption, ObjectsWithoutNamesGoByPlace) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& item = Root(*project).Add("SM_QUERY_SUBJECT", "q").Named("s").Add("SM_QUERY_ITEM", "i");
    item.Named("n").Set("QS_ITEM_TYPE_NAME", TestNode::Text("queryItem"));
    TestNode& prompt = item.Add("SM_PROMPTINFO").Set("PROMPTTYPE", TestNode::Text("a"));
    item.Add("SM_ROLES").Named("role");
    const long number = Put(*project);
    const QvULString given = prompt.GetId();
    prompt.SetId("");
    prompt.Set("PROMPTTYPE", TestNode::Text("b"));
    item.Child(1).SetId("");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(prompt.GetId(), given);
}

TEST_P(RepositoryAdoption, ADeletedObjectsIdIsNotTaken) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const QvSmartPtr<TestNode> entry = &Map(*project).Child(0);
    Map(*project).Remove(*entry);
    Save(*project, number);
    entry->SetId("");
    Map(*project).children.push_back(entry);
    Save(*project, number);
    EXPECT_EQ(entry->GetId().length(), 36);
}

TEST_P(RepositoryAdoption, TheLaterBearerOfAnIdKeepsTheOneThatItGot) {
    const auto doubled = [] {
        QvSmartPtr<TestNode> project = Sample();
        Map(*project).AddEntry("d", "4", "e1");
        Map(*project).AddEntry("e", "5", "e1");
        project->AddSection("Second root", "m").AddSection("Below it", "s1");
        return project;
    };
    const QvSmartPtr<TestNode> first = doubled(), second = doubled();
    CaughtLog log;
    const long number = Put(*first);
    log.messages.clear();
    EXPECT_EQ(Save(*second, number), Rows(0, 0));
    EXPECT_EQ(second->Dump(), first->Dump());
    ASSERT_EQ(log.messages.size(), 4u);
    EXPECT_EQ(log.messages[0], "The id 'e1' is that of another object; object 'path of e1' keeps the one that it was given before.");
}

TEST_P(RepositoryAdoption, ACopyOfManyObjectsIsTheSameAtEachPut) {
    const auto withCopy = [](bool hasNewItem) {
        QvSmartPtr<TestNode> project = Sample();
        for (const char* const name : {"Orders", "Copy"}) {
            TestNode& subject = Root(*project).Add("SM_QUERY_SUBJECT", "q").Named(name);
            if (hasNewItem && std::string(name) == "Copy") subject.Add("SM_QUERY_ITEM", "i1").Named("new");
            for (int i = 0; i < 10; ++i) subject.Add("SM_QUERY_ITEM", "i" + std::to_string(i)).Named("n" + std::to_string(i));
        }
        Root(*project).AddSection("Behind", "behind").AddSection("Below", "below");
        return project;
    };
    const QvSmartPtr<TestNode> first = withCopy(false), second = withCopy(false), third = withCopy(true);
    CaughtLog log;
    const long number = Put(*first);
    EXPECT_EQ(Save(*second, number), Rows(0, 0));
    EXPECT_EQ(second->Dump(), first->Dump());
    EXPECT_EQ(Save(*third, number), Rows(1 + 1 + REVISION, 0)) << "the item and the order: names go before places";
}

TEST_P(RepositoryAdoption, DoesNotTakeAnIdOfAnObjectBehindADoubledOne) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const QvSmartPtr<TestNode> last = &Map(*project).Child(2);
    Map(*project).Remove(*last);
    Map(*project).AddEntry("copy", "3", "e3");
    Map(*project).AddEntry("new", "");
    Map(*project).children.push_back(last);
    CaughtLog log;
    Save(*project, number);
    EXPECT_EQ(log.messages.size(), 1u);
    EXPECT_EQ(Map(*project).Child(2).GetId().length(), 36);
    EXPECT_EQ(last->GetId(), "e2");
    EXPECT_EQ(last->GetVersionNo(), 1);
}

}  // namespace
