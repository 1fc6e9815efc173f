// Puts that are ended from outside, and puts of many at once, on both kinds of stores.
#include <algorithm>
#include <csignal>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/postgresserver.h"
#include "tests/support/waitfor.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

/** So many that each step of a put takes long enough to be told, or to be ended in. */
#ifdef NDEBUG
constexpr int OBJECTS = 400'000;
#else
constexpr int OBJECTS = 50'000;
#endif

/** A model so big that its progress is seen on some machine: they are taken in turn, until it is. */
struct ProgressSize {
    int objects;
    const char* told;
};
constexpr ProgressSize SIZES[] = {{8'000, "8,002"}, {50'000, "50,002"}, {400'000, "400,002"}};

const std::string FIRST = ModelDocument(NamespaceElement("Sales"));

class SmodelRepoMany : public testing::TestWithParam<bool> {
  protected:
    SmodelRepoMany() {
        if (!GetParam()) return;
        schema = std::make_unique<PostgresSchema>();
        repository.SetLocation(schema->Location());
    }
    /** Whether somebody is in the midst of writing. */
    bool IsWritten() const {
        if (schema) return schema->HasLines("state <> 'idle' AND query LIKE 'COPY%'");
        sqlite3* database = nullptr;
        sqlite3_open(repository.Location().c_str(), &database);
        const bool isWritten = sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_BUSY;
        sqlite3_close(database);
        return isWritten;
    }
    /** Puts a big model and ends that by a signal while its rows are on their way; what stood must stand. */
    void EndBy(int signal, int status) {
        const std::string big = repository.directory.Write("big.xml", BigModel(OBJECTS));
        const auto revisions = [&] { return SMRepository(repository.Location()).Revisions(1).size(); };
        ToolRun run;
        std::size_t before = 0;
        // where the machine is busy, the put may be done before it is seen
        for (int tries = 0; tries < 5 && run.status != status; ++tries) {
            EXPECT_EQ(repository.Put(FIRST).status, 0);
            before = revisions();
            RunningTool tool({"repo", "put", repository.Location(), big}, {});
            WaitFor([&] { return IsWritten() || revisions() > before; });
            if (tool.Pause() && IsWritten()) run = tool.ResumeWith(signal);
        }
        EXPECT_EQ(run.status, status) << run.out << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(repository.Get(), Formatted(FIRST));
        EXPECT_EQ(revisions(), before);
    }
    /** How many of so many puts at once end with each status. */
    std::vector<int> StatusesOf(int puts, const std::vector<std::string>& rest) {
        std::vector<std::unique_ptr<RunningTool>> tools;
        for (int put = 0; put < puts; ++put) {
            std::vector<std::string> words = {"repo", "put", repository.Location(), "-"};
            words.insert(words.end(), rest.begin(), rest.end());
            const std::string text = std::to_string(puts) + " " + std::to_string(put);
            tools.push_back(std::make_unique<RunningTool>(words, ModelDocument(NamespaceElement(text))));
        }
        std::vector<int> counts(5);
        for (const auto& tool : tools) {
            const ToolRun run = tool->Wait();
            EXPECT_TRUE(run.status == 0 || run.status == 4) << run.status << run.out << run.err;
            if (run.status >= 0 && run.status <= 4) ++counts[static_cast<std::size_t>(run.status)];
        }
        return counts;
    }

    std::unique_ptr<PostgresSchema> schema;
    ToolRepository repository;
};

INSTANTIATE_TEST_SUITE_P(Stores, SmodelRepoMany, testing::Bool(), [](const auto& store) { return store.param ? "Postgres" : "Sqlite"; });

TEST_P(SmodelRepoMany, LeavesWhatStoodWhenThePutIsInterrupted) {
    EndBy(SIGINT, 130);
}

TEST_P(SmodelRepoMany, LeavesWhatStoodWhenThePutIsTerminated) {
    EndBy(SIGTERM, 143);
}

TEST_P(SmodelRepoMany, TellsThatThePutStandsWhenItIsInterruptedBehindItsCommit) {
    EXPECT_EQ(repository.Put(FIRST).status, 0);
    RunningTool tool({"repo", "put", repository.Location(), repository.directory.Write("big.xml", BigModel(OBJECTS / 5))}, {});
    WaitFor([&] { return SMRepository(repository.Location()).Revisions(1).size() == 2; });
    ::kill(tool.Process(), SIGINT);
    const ToolRun run = tool.Wait();
    EXPECT_EQ(run.status, 0) << run.err;
    // where the signal comes later still, it is told what the put changed
    EXPECT_THAT(run.out, AnyOf("revision 2: saved; the interruption came too late\n", HasSubstr(" objects added, ")));
    repository.leftUnverified = true;
}

TEST_P(SmodelRepoMany, TellsThatThePutStandsWhenItIsInterruptedTwice) {
    EXPECT_EQ(repository.Put(FIRST).status, 0);
    RunningTool tool({"repo", "put", repository.Location(), repository.directory.Write("big.xml", BigModel(OBJECTS / 5))}, {});
    WaitFor([&] { return SMRepository(repository.Location()).Revisions(1).size() == 2; });
    for (int i = 0; i < 2; ++i) {
        ::kill(tool.Process(), SIGINT);
        ::usleep(2'000);
    }
    const ToolRun run = tool.Wait();
    // others see a commit before the put has heard of it
    EXPECT_THAT(run.status, AnyOf(0, 130)) << run.err;
    EXPECT_THAT(run.out + run.err,
                HasSubstr(run.status == 0 ? "revision 2" : "interrupted in the midst of the commit: 'smodel repo log' tells"));
    repository.leftUnverified = true;
}

TEST_P(SmodelRepoMany, OfManyPutsOnOneBaseOneWins) {
    repository.Put(FIRST);
    long base = 1;
    for (const int puts : {2, 16}) {
        const std::vector<int> counts = StatusesOf(puts, {"--base", std::to_string(base)});
        EXPECT_EQ(counts[0], 1);
        EXPECT_EQ(counts[4], puts - 1);
        EXPECT_EQ(SMRepository(repository.Location()).Revisions(1).back().number, ++base);
    }
}

TEST_P(SmodelRepoMany, FirstPutsAtOnceComeOneAfterTheOtherOrAreTold) {
    const std::vector<int> counts = StatusesOf(6, {});
    EXPECT_GE(counts[0], 1);
    const std::vector<SMRepositoryProject> projects = SMRepository(repository.Location()).Projects();
    ASSERT_EQ(projects.size(), 1u);
    EXPECT_EQ(projects[0].revision, counts[0]);
}

TEST(SmodelRepoProgress, TellsObjectsRateAndTimeLeftOnATerminal) {
    std::string out;
    const auto shows = [&](const char* things) {
        return std::regex_search(
            out, std::regex(std::string("saving to [^\r]*: [0-9,]+ of [0-9,]+ ") + things + ", [0-9,]+/s, [0-9]+:[0-9][0-9] left"));
    };
    const auto showsReading = [&] {
        return std::regex_search(out, std::regex("reading [^\r]*big.xml: [0-9,]+ elements, [0-9,]+/s, [0-9]+:[0-9][0-9] left"));
    };
#ifdef NDEBUG
    const bool isSlow = false;  // rows go out too fast to be seen for certain
#else
    const bool isSlow = true;
#endif
    for (const ProgressSize& size : SIZES) {
        const ToolRepository repository;
        repository.leftUnverified = true;
        out = RunToolOnTerminal({"repo", "put", repository.Location(), repository.directory.Write("big.xml", BigModel(size.objects))}).out;
        EXPECT_THAT(out, HasSubstr(std::string("revision 1: ") + size.told + " objects added"));
        if (shows("objects") && showsReading() && (!isSlow || shows("rows"))) break;
    }
    EXPECT_TRUE(showsReading()) << out;
    EXPECT_TRUE(shows("objects")) << out;
    EXPECT_TRUE(!isSlow || shows("rows")) << out;
    EXPECT_THAT(out, HasSubstr("\r\x1b[Krevision 1: ")) << "the line is wiped";
}

/** The counts of the lines about something, in turn. */
std::vector<long> CountsIn(const std::string& out, const std::string& about) {
    std::vector<long> counts;
    const std::regex line("\r" + about + "[^\r]*: ([0-9,]+) elements");
    for (std::sregex_iterator at(out.begin(), out.end(), line), end; at != end; ++at) {
        std::string digits = (*at)[1];
        std::erase(digits, ',');
        counts.push_back(std::stol(digits));
    }
    return counts;
}

TEST(SmodelRepoProgress, GoesOnWhereADocumentIsReadASecondTime) {
    const TestDirectory directory;
    std::vector<long> counts;
    long elements = 0;
    for (const ProgressSize& size : SIZES) {
        std::string model = BigModel(size.objects);
        model.insert(model.rfind("</namespace></project>"), "<unknown/>");  // for whose place it is read again
        elements = static_cast<long>(std::count(model.begin(), model.end(), '<')) / 2;
        counts = CountsIn(RunToolOnTerminal({"check", directory.Write("big.xml", model)}).out, "reading ");
        if (!counts.empty() && counts.back() > elements) break;
    }
    ASSERT_FALSE(counts.empty());
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end())) << testing::PrintToString(counts);
    EXPECT_GT(counts.back(), elements);
}

TEST(SmodelRepoProgress, IsShownWhileARestorationIsPrepared) {
    std::string out;
    for (const ProgressSize& size : SIZES) {
        const ToolRepository repository;
        repository.leftUnverified = true;
        const std::string model = BigModel(size.objects);
        repository.Put(model);
        repository.Put(std::string(model).replace(model.find(">n7<"), 4, ">seven<"));
        out = RunToolOnTerminal({"repo", "restore", repository.Location(), "[n7]@1"}).out;
        EXPECT_THAT(out, HasSubstr("revision 3: "));
        if (!CountsIn(out, "restoring \\[n7\\]").empty()) break;
    }
    EXPECT_FALSE(CountsIn(out, "restoring \\[n7\\]").empty()) << out;
}

}  // namespace
