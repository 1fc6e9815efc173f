#include <csignal>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/cuttingproxy.h"
#include "tests/support/postgresserver.h"
#include "tests/support/waitfor.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(SmodelRepoOnPostgres, KeepsTheHistoryOfAModel) {
    const PostgresSchema schema;
    ToolRepository repository;
    repository.SetLocation(schema.Location());
    const std::string models[] = {SalesModel(SubjectElement("Orders", {"Amount"})),
                                  SalesModel(SubjectElement("Orders", {"Amount", "Day"}))};
    EXPECT_EQ(repository.Put(models[0]).out, "revision 1: 4 objects added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Put(models[1]).out, "revision 2: 1 object added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Put(SalesModel(""), {"--base", "1"}).status, 4);
    EXPECT_EQ(repository.Get("1"), Formatted(models[0]));
    EXPECT_EQ(repository.Get(), Formatted(models[1]));
    EXPECT_THAT(repository.Run("log").out, StartsWith("2\t"));
    EXPECT_THAT(repository.Run("diff", {"1"}).out, StartsWith("added queryItem Test / Sales / Orders / Day "));
    EXPECT_EQ(repository.Run("blame", {"[Sales].[Orders].[Day]"}).status, 0);
    EXPECT_EQ(repository.Run("verify", {"--all"}).out, "revision 1: clean\nrevision 2: clean\n");
    EXPECT_THAT(repository.Run("prune", {"--keep", "1"}).out, HasSubstr("the oldest revision is now 2"));
    EXPECT_EQ(repository.Run("verify").out, "revision 2: clean\n");
}

/** A second put, on its way to the server. */
class SmodelRepoLine : public testing::Test {
  protected:
    SmodelRepoLine() : proxy(schema.Host()) {
        repository.SetLocation(schema.Location());
        EXPECT_EQ(repository.Put(SalesModel("")).status, 0);
    }
    /** Begins it, and waits until the server has the statement, whose answer is held back. */
    void HoldAt(std::string_view statement) {
        proxy.HoldAnswersTo(statement);
        put = std::make_unique<RunningTool>(std::vector<std::string>{"repo", "put", schema.LocationBy(proxy.Host()), "-"},
                                            ModelDocument(NamespaceElement("Costs")));
        WaitFor([&] { return proxy.Holds(); });
    }
    /** The server has made the commit then. */
    void HoldAtCommit() {
        using namespace std::string_view_literals;
        HoldAt("COMMIT\0"sv);  // "READ COMMITTED" is none
        WaitFor([&] { return SMRepository(repository.Location()).Revisions(1).size() == 2; });
    }

    const PostgresSchema schema;
    ToolRepository repository;
    CuttingProxy proxy;
    std::unique_ptr<RunningTool> put;
};

TEST_F(SmodelRepoLine, OfAPutThatIsInterruptedTwiceInItsCommitSaysThatTheLogTellsWhatBecameOfIt) {
    HoldAtCommit();
    put->Interrupt(SIGINT);
    put->Interrupt(SIGINT);
    const ToolRun run = put->Wait();
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.err, "smodel: interrupted in the midst of the commit: 'smodel repo log' tells whether the revision was saved\n");
    EXPECT_THAT(repository.Run("log").out, StartsWith("2\t"));
}

TEST_F(SmodelRepoLine, OfAPutThatIsInterruptedTwiceBeforeItsCommitSaysThatNothingWasWritten) {
    HoldAt("BEGIN");
    put->Interrupt(SIGINT);
    put->Interrupt(SIGTERM);
    const ToolRun run = put->Wait();
    EXPECT_EQ(run.status, 143);
    EXPECT_EQ(run.err, "smodel: error: interrupted; nothing was written\n");
    EXPECT_THAT(repository.Run("log").out, StartsWith("1\t"));
}

TEST_F(SmodelRepoLine, OfAPutThatIsInterruptedOnceInItsCommitStandsAndIsTold) {
    HoldAtCommit();
    put->Interrupt(SIGINT);
    proxy.Release();
    const ToolRun run = put->Wait();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "revision 2: saved; the interruption came too late\n");
}

TEST_F(SmodelRepoLine, OfAPutThatIsOvertakenTellsThatTheRepositoryHasMovedOn) {
    HoldAt("BEGIN");
    EXPECT_EQ(repository.Put(ModelDocument(NamespaceElement("second"))).status, 0);
    proxy.Release();
    const ToolRun run = put->Wait();
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.err, HasSubstr("The repository has moved on"));
    EXPECT_THAT(repository.Get(), HasSubstr(">second</name>"));
}

TEST_F(SmodelRepoLine, OfARestorationThatIsInterruptedInItsPreparationEndsAtOnce) {
    EXPECT_EQ(repository.Put(ModelDocument(NamespaceElement("Costs"))).status, 0);
    proxy.HoldAnswersTo("repo_piece");
    RunningTool tool({"repo", "restore", schema.LocationBy(proxy.Host()), "[Sales]@1"}, {});
    WaitFor([&] { return proxy.Holds(); });
    ::kill(tool.Process(), SIGINT);
    const ToolRun run = tool.Wait();  // which would wait for the answer else, until it takes the server for gone
    EXPECT_EQ(run.status, 130) << run.err;
    EXPECT_EQ(run.err, "smodel: error: interrupted; nothing was written\n");
    EXPECT_THAT(repository.Run("log").out, StartsWith("2\t"));
}

TEST_F(SmodelRepoLine, OfAVerificationGoesOnWhereAPruneTakesRevisionsAway) {
    for (const char* const name : {"two", "three"}) EXPECT_EQ(repository.Put(ModelDocument(NamespaceElement(name))).status, 0);
    proxy.HoldAnswersTo("repo_piece");
    RunningTool tool({"repo", "verify", schema.LocationBy(proxy.Host()), "--all"}, {});
    WaitFor([&] { return proxy.Holds(); });
    SMRepository(repository.Location()).Prune(1, 1);
    proxy.Release();
    const ToolRun run = tool.Wait();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "revision 1: removed by a prune meanwhile\nrevision 2: removed by a prune meanwhile\nrevision 3: clean\n");
}

TEST_F(SmodelRepoLine, OfAPruneThatIsInterruptedRemovesNothing) {
    EXPECT_EQ(repository.Put(ModelDocument(NamespaceElement("Costs"))).status, 0);
    proxy.HoldAnswersTo("DELETE");
    RunningTool tool({"repo", "prune", schema.LocationBy(proxy.Host()), "--keep", "1"}, {});
    WaitFor([&] { return proxy.Holds(); });
    tool.Interrupt(SIGINT);
    proxy.Release();
    const ToolRun run = tool.Wait();
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "smodel: error: interrupted; nothing was written\n");
    EXPECT_EQ(SMRepository(repository.Location()).Revisions(1).size(), 2u);
}

TEST_F(SmodelRepoLine, OfAPruneThatIsInterruptedTwiceInItsCommitSaysThatTheLogTellsWhatBecameOfIt) {
    EXPECT_EQ(repository.Put(ModelDocument(NamespaceElement("Costs"))).status, 0);
    using namespace std::string_view_literals;
    proxy.HoldAnswersTo("COMMIT\0"sv);
    RunningTool tool({"repo", "prune", schema.LocationBy(proxy.Host()), "--keep", "1"}, {});
    WaitFor([&] { return proxy.Holds(); });
    tool.Interrupt(SIGINT);
    tool.Interrupt(SIGINT);
    const ToolRun run = tool.Wait();
    EXPECT_EQ(run.status, 130);
    EXPECT_THAT(run.err, HasSubstr("in the midst of the commit: 'smodel repo log' tells whether the old revisions were removed"));
}

}  // namespace
