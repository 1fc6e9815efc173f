#include <random>

#include "tests/core/repository/repositorytest.h"

namespace {

/** A context goes on from what it saved; what it remembers is what the store holds. */
class RepositorySameContext : public RepositoryTest {
  protected:
    /** What stands in the store, and no wish to change it, in this context or in a new one. */
    void ExpectSettled(SMRepositoryHelper& context, TestNode& project, const std::string& what) {
        ASSERT_EQ(DumpOf(context.ProjectNumber()), project.Dump()) << what;
        const long revision = context.Revision();
        ASSERT_TRUE(project.write(context)) << what;
        ASSERT_EQ(context.Revision(), revision) << what << ", again";
        ASSERT_EQ(Save(project, context.ProjectNumber()), std::make_pair(0L, 0L)) << what << ", in a new context";
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, RepositorySameContext, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

/** One change of a project with two maps, as chance has it. */
std::string ChangeSomething(TestNode& project, std::minstd_rand& random) {
    const auto any = [&](std::size_t size) { return random() % size; };
    TestNode &map = project.Child(1 + any(2)), &other = project.Child(1 + any(2));
    const std::string word = std::to_string(random());
    switch (any(8)) {
    case 0: map.Named("Map " + word); return "a name";
    case 1: project.Child(0).records["property"] = "<a>" + word + "</a>"; return "a record";
    case 2: project.Child(0).records.erase("property"); return "no record";
    case 3: map.AddEntry(word, ""); return "a new entry";
    case 4:
        project.Child(0).Child(any(2)).names["fr"] = word;
        project.Child(0).Child(0).Named(word);
        return "a text";
    default: break;
    }
    if (map.children.empty()) return "nothing";
    const std::size_t at = any(map.children.size());
    switch (any(4)) {
    case 0: map.Remove(map.Child(at)); return "an entry less";
    case 1: std::swap(map.children[at], map.children[0]); return "another order";
    case 2: map.Child(at).Set("VALUE", TestNode::Text(word)); return "a value";
    default: break;
    }
    const QvSmartPtr<TestNode> moved = map.children[at];
    map.Remove(*moved);
    moved->parent = &other;
    other.children.push_back(moved);
    return "a move";
}

TEST_P(RepositorySameContext, WhateverChangesTheNextSaveStartsFromWhatTheStoreHolds) {
    std::minstd_rand random(7);
    const QvSmartPtr<TestNode> project = Sample();
    project->Add("SM_PARAMETER_MAP", "n").Named("Other").AddEntry("x", "1");
    const auto context = repository->NewProject();
    ASSERT_TRUE(project->write(*context));
    for (int step = 0; step < 60; ++step) {
        const std::string what = std::to_string(step) + ": " + ChangeSomething(*project, random);
        ASSERT_TRUE(project->write(*context)) << what;
        ExpectSettled(*context, *project, what);
    }
    EXPECT_GT(context->Revision(), 30);
}

TEST_P(RepositorySameContext, AnObjectThatCameBackIsWrittenAgain) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    ASSERT_TRUE(project->write(*context));
    const QvSmartPtr<TestNode> entry = Map(*project).children[1];
    Map(*project).Remove(*entry);
    ASSERT_TRUE(project->write(*context));
    Map(*project).children.push_back(entry);
    ASSERT_TRUE(project->write(*context));
    EXPECT_EQ(entry->GetVersionNo(), 2);
    ExpectSettled(*context, *project, "back");
}

TEST_P(RepositorySameContext, ALaterSaveReadsNoRowOfAnObject) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    ASSERT_TRUE(project->write(*context));
    for (int edit = 0; edit < 3; ++edit) {
        const long read = context->Counters().rowsRead;
        Map(*project).Named("Edit " + std::to_string(edit));
        Root(*project).records["property"] = std::to_string(edit);
        ASSERT_TRUE(project->write(*context));
        EXPECT_LE(context->Counters().rowsRead - read, edit == 0 ? 2 : 0) << "but the two records of order, once";
    }
}

TEST_P(RepositorySameContext, ASaveThatFailedIsNotRemembered) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    ASSERT_TRUE(project->write(*context));
    plan->commits = true;
    bool done = false;
    for (long at = 1; !done; ++at) {
        Map(*project).Named("Edit " + std::to_string(at));
        Map(*project).Child(0).Set("VALUE", TestNode::Text(std::to_string(at)));
        if (at == 1) Map(*project).AddEntry("new", "");
        Root(*project).records["property"] = std::to_string(at);
        plan->writes = 0;
        plan->failsAt = at;
        const CaughtLog log;
        done = project->write(*context);
        plan->failsAt = 0;
        ASSERT_LT(at, 100);
    }
    ExpectSettled(*context, *project, "at last");
}

TEST_P(RepositorySameContext, ASaveOfAPartLeavesTheRestKnown) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    ASSERT_TRUE(project->write(*context));
    Map(*project).Child(0).Set("VALUE", TestNode::Text("alone"));
    ASSERT_TRUE(Map(*project).Child(0).write(*context));
    ExpectSettled(*context, *project, "one entry");
    Map(*project).Remove(Map(*project).Child(2));
    ASSERT_TRUE(Map(*project).write(*context));
    ExpectSettled(*context, *project, "one map");
}

/** Looks at what it has filled in, which few classes do. */
class Peeking : public TestNode {
  public:
    using TestNode::TestNode;
    void getAttributes(IOParameter& attrs, IOParameter& history) override {
        TestNode::getAttributes(attrs, history);
        if (attrs.HasKey("name") && attrs.GetByName("NAME")->GetQvStringValue() == I18NString("left out")) attrs.erase("NAME");
    }
};

TEST_P(RepositorySameContext, ARowMayBeReadWhileItIsFilled) {
    const QvSmartPtr<TestNode> project = Sample();
    project->children.emplace_back(new Peeking(project, "SM_PARAMETER_MAP", "n"));
    TestNode& peeking = *project->children.back();
    peeking.Named("left out");
    const long number = Put(*project);
    EXPECT_EQ(Save(*project, number), std::make_pair(0L, 0L));
    peeking.Named("there");
    EXPECT_EQ(Save(*project, number), std::make_pair(1L + REVISION, 1L));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

/** Sends a value for a column, then another one, or none. */
class Twice : public TestNode {
  public:
    using TestNode::TestNode;
    void getAttributes(IOParameter& attrs, IOParameter& history) override {
        auto* const shared = new IOQvStringParam("shared");
        attrs.insertOrReplace("NAME", shared);
        attrs.insertOrReplace("DEFAULTVALUE", shared);
        TestNode::getAttributes(attrs, history);
        attrs.insertOrReplace("DEFAULTVALUE", IOQvStringParam::Null());
    }
};

TEST_P(RepositorySameContext, OfAColumnThatComesTwiceTheLaterValueCounts) {
    const QvSmartPtr<TestNode> project = Sample();
    project->children.emplace_back(new Twice(project, "SM_PARAMETER_MAP", "n"));
    project->children.back()->Named("named");
    const long number = Put(*project);
    EXPECT_EQ(Save(*project, number), std::make_pair(0L, 0L));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

}  // namespace
