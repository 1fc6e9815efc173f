#include <csignal>
#include <fstream>
#include <memory>
#include <string>
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

/** Whether no signal waits to be taken by the process. */
bool HasTakenItsSignals(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("ShdPnd:") || line.starts_with("SigPnd:"))
            if (line.find_first_not_of("0 \t", line.find(':') + 1) != std::string::npos) return false;
    return true;
}

/** A second put, whose commit the server has made while the put still waits to hear so. */
class SmodelRepoCommit : public testing::Test {
  protected:
    SmodelRepoCommit() : proxy(HostOf(schema)) {
        repository.SetLocation(schema.Location());
        EXPECT_EQ(repository.Put(SalesModel("")).status, 0);
        using namespace std::string_view_literals;
        proxy.HoldAnswersTo("COMMIT\0"sv);  // "READ COMMITTED" is none
        std::string location = schema.Location();
        location.replace(location.find(HostOf(schema)), HostOf(schema).size(), proxy.Host());
        put =
            std::make_unique<RunningTool>(std::vector<std::string>{"repo", "put", location, "-"}, ModelDocument(NamespaceElement("Costs")));
        WaitFor([&] { return proxy.Holds() && SMRepository(repository.Location()).Revisions(1).size() == 2; });
    }
    static std::string HostOf(const PostgresSchema& schema) {
        const std::string location = schema.Location();
        const std::size_t begin = location.find("host=") + 5;
        return location.substr(begin, location.find('&') - begin);
    }
    void Interrupt() const {
        ::kill(put->Process(), SIGINT);
        WaitFor([&] { return HasTakenItsSignals(put->Process()); });
    }

    const PostgresSchema schema;
    ToolRepository repository;
    CuttingProxy proxy;
    std::unique_ptr<RunningTool> put;
};

TEST_F(SmodelRepoCommit, InterruptedTwiceSaysThatTheLogTellsWhatBecameOfIt) {
    Interrupt();
    Interrupt();
    const ToolRun run = put->Wait();
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.err, "smodel: interrupted in the midst of the commit: 'smodel repo log' tells whether the revision was saved\n");
    EXPECT_THAT(repository.Run("log").out, StartsWith("2\t"));
}

TEST_F(SmodelRepoCommit, InterruptedOnceStandsAndIsTold) {
    Interrupt();
    proxy.Release();
    const ToolRun run = put->Wait();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "revision 2: saved; the interruption came too late\n");
}

}  // namespace
