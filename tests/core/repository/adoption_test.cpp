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

}  // namespace
