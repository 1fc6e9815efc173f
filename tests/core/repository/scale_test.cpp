#include "tests/core/repository/repositorytest.h"

namespace {

/** What a save and a load cost does not hang on how many objects a project has. */
class RepositoryScale : public RepositoryTest {
  protected:
    static QvSmartPtr<TestNode> Big(int maps, int entries) {
        QvSmartPtr<TestNode> project = Sample();
        for (int map = 0; map < maps; ++map) {
            TestNode& node = project->Add("SM_PARAMETER_MAP").Named("map " + std::to_string(map));
            node.records["queryItemMap"] = "<m></m>";
            for (int entry = 0; entry < entries; ++entry) node.AddEntry("key " + std::to_string(entry), "value");
        }
        return project;
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryScale, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryScale, StatementsAreCountedByTableNotByObject) {
    long put[2], get[2], save[2];
    for (int size = 0; size < 2; ++size) {
        const QvSmartPtr<TestNode> project = Big(size == 0 ? 2 : 40, size == 0 ? 2 : 50);
        project->SetId(size == 0 ? "small" : "big");
        const auto putting = repository->NewProject();
        ASSERT_TRUE(project->write(*putting));
        put[size] = putting->Counters().statementsPrepared;
        const auto getting = repository->OpenProject(putting->ProjectNumber());
        const QvSmartPtr<TestNode> got = ReadTestProject(*getting);
        ASSERT_EQ(got->Dump(), project->Dump());
        get[size] = getting->Counters().statementsPrepared;
        Map(*got).Child(0).Set("VALUE", TestNode::Text("other"));
        const auto saving = repository->OpenProject(putting->ProjectNumber());
        ASSERT_TRUE(got->write(*saving));
        EXPECT_EQ(saving->Counters().rowsWritten, 1 + REVISION);
        save[size] = saving->Counters().statementsPrepared;
    }
    EXPECT_EQ(put[0], put[1]);
    EXPECT_EQ(get[0], get[1]);
    EXPECT_EQ(save[0], save[1]);
    const long tables = static_cast<long>(qv::CatalogueTables().size());
    EXPECT_LE(put[1], tables + 8);
    EXPECT_LE(get[1], tables + 8);
    EXPECT_LE(save[1], 2 * tables + 8);
}

TEST_P(RepositoryScale, EachRowIsFetchedOnceInALoad) {
    const QvSmartPtr<TestNode> project = Big(20, 30);
    const auto putting = repository->NewProject();
    ASSERT_TRUE(project->write(*putting));
    const auto context = repository->OpenProject(putting->ProjectNumber());
    ASSERT_TRUE(ReadTestProject(*context));
    // all but the project's entry and its revision
    EXPECT_EQ(context->Counters().rowsRead, putting->Counters().rowsWritten - NEW_PROJECT);
    // a second load in the same context fetches all again, once
    const long before = context->Counters().rowsRead;
    ASSERT_TRUE(ReadTestProject(*context));
    EXPECT_EQ(context->Counters().rowsRead, 2 * before);
}

TEST_P(RepositoryScale, AskingForOneParentAgainAndAgainFetchesItsTableTwiceAtMost) {
    const QvSmartPtr<TestNode> project = Big(20, 30);
    const auto context = repository->OpenProject(Put(*project));
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    for (int time = 0; time < 10; ++time) {
        ASSERT_TRUE(project->Child(5).ReadKind(*context, "parameterMapEntry", *rows));
        ASSERT_EQ(rows->Size(), 30);
    }
    EXPECT_LE(context->Counters().rowsRead, 2 * (20 * 30 + 3) + 5);
}

TEST_P(RepositoryScale, ManyRowsOfOneParentKeepTheirOrder) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& map = Map(*project);
    for (int entry = 0; entry < 3000; ++entry) map.AddEntry(std::to_string(entry), "", "id " + std::to_string(entry * 7919 % 3001));
    const long number = Put(*project);
    EXPECT_EQ(DumpOf(number), project->Dump());
    EXPECT_EQ(Save(*project, number), std::make_pair(0L, 0L));
}

}  // namespace
