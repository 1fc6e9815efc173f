#include "tests/core/repository/repositorytest.h"
#include "tests/support/storerows.h"

namespace {

/** The store fails at one write after the other; each time it holds what it held. */
class RepositoryFailure : public RepositoryTest {};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryFailure, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryFailure, OfAnyWriteOfAFirstSaveLeavesNoProject) {
    plan->commits = true;
    Put(*Sample());
    const long writes = plan->writes;
    ASSERT_GT(writes, 10);
    for (long at = 1; at <= writes; ++at) {
        const QvSmartPtr<TestNode> project = Sample();
        project->SetId("p2");
        plan->writes = 0;
        plan->failsAt = at;
        CaughtLog log;
        const auto context = repository->NewProject();
        ASSERT_FALSE(project->write(*context)) << at;
        ASSERT_EQ(log.levels, std::vector<int>({1})) << at;
        ASSERT_NE(log.Only().find("the disk is on fire"), std::string::npos) << log.Only();
        ASSERT_EQ(repository->Projects().size(), 1u) << at;
        plan->failsAt = 0;
    }
    const QvSmartPtr<TestNode> project = Sample();
    project->SetId("p2");
    const long number = Put(*project);
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositoryFailure, OfAnyWriteOfALaterSaveLeavesTheRevisionBefore) {
    plan->commits = true;
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const std::string before = DumpOf(number);
    const auto change = [](TestNode& node) {
        Root(node).Named("Other");
        Root(node).records["property"] = "<a></a>";
        std::swap(Map(node).children[0], Map(node).children[1]);
        Map(node).Remove(Map(node).Child(2));
        Map(node).AddEntry("new", "");
    };
    long at = 0;
    for (bool done = false; !done; plan->failsAt = 0) {
        const auto context = repository->OpenProject(number);
        const QvSmartPtr<TestNode> node = ReadTestProject(*context);
        change(*node);
        plan->writes = 0;
        plan->failsAt = ++at;
        CaughtLog log;
        done = node->write(*context);
        if (!done) {
            ASSERT_EQ(log.levels, std::vector<int>({1})) << at;
            ASSERT_EQ(DumpOf(number), before) << at;
        } else {
            ASSERT_TRUE(log.messages.empty());
            ASSERT_EQ(DumpOf(number), node->Dump());
        }
    }
    EXPECT_GT(at, 8);
}

TEST_P(RepositoryFailure, OfWhoWatchesTheRowsGoLeavesTheRevisionBefore) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const std::string before = DumpOf(number);
    for (int entry = 0; entry < 1000; ++entry) Map(*project).AddEntry(std::to_string(entry), "");
    const auto context = repository->OpenProject(number);
    std::vector<std::size_t> counts;
    context->WatchSending([&](std::size_t done, std::size_t total) {
        EXPECT_EQ(total, 1000u);
        counts.push_back(done);
        if (counts.size() == 3) throw TklRuntimeError("enough");
    });
    EXPECT_THROW(project->write(*context), TklRuntimeError);
    EXPECT_EQ(counts, (std::vector<std::size_t>{256, 512, 768}));
    EXPECT_EQ(DumpOf(number), before);
    context->WatchSending(nullptr);
    EXPECT_TRUE(project->write(*context));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositoryFailure, IsToldWithTableIdAndObject) {
    plan->failsAt = 4;
    CaughtLog log;
    EXPECT_FALSE(Sample()->write(*repository->NewProject()));
    EXPECT_EQ(log.Only(), "Repository '" + backend->Name() + "': table SM_SECTION_TYPE, id 'r', object 'path of r': the disk is on fire");
}

struct Samples : RepositoryTest {
    using RepositoryTest::Sample;
};

TEST(RepositoryRows, WithAValueOfAnotherKindAreRefusedByColumn) {
    const std::pair<const char*, qv::Cell> values[] = {{"NAME", qv::Cell::Number(7)},
                                                       {"SECTION_VERSION_NO", qv::Cell::Text("1")},
                                                       {"PROJECT_ID", qv::Cell::Number(7)},
                                                       {"PROJECT_VERSION_NO", qv::Cell::Text("1")}};
    for (const auto& [column, value] : values) {
        const auto plan = std::make_shared<FailurePlan>();
        const auto backend = std::make_shared<FailingBackend>(qv::MakeMemoryBackend("memory"), plan);
        SMRepository repository(backend, SMRepository::createIfAbsent);
        ASSERT_TRUE(Samples::Sample()->write(*repository.NewProject()));
        SetInRows(*backend, plan->tables, "SM_SECTION_TYPE", column, value);
        CaughtLog log;
        EXPECT_FALSE(ReadTestProject(*repository.OpenProject(1)));
        ASSERT_EQ(log.messages.size(), 1u);
        EXPECT_NE(log.Only().find("Column SM_SECTION_TYPE." + std::string(column) +
                                  " holds a value of another kind, so it is damaged. Bring back a copy of the repository."),
                  std::string::npos)
            << log.Only();
    }
}

}  // namespace
