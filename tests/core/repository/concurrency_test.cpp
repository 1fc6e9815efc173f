// Many at once on one store, each with a context of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <mutex>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "tests/core/repository/repositorytest.h"
#include "tests/support/storecheck.h"
#include "tests/support/tempdir.h"

namespace {

constexpr int SECTIONS = 12;

/** A store that several processes or threads can reach, each over a line of its own. */
struct SharedStore {
    const char* name;
    bool onServer;
};

void PrintTo(const SharedStore& store, std::ostream* out) {
    *out << store.name;
}

QvSmartPtr<TestNode> Numbered(const std::string& text) {
    QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT", "p");
    project->Named(text);
    for (int at = 0; at < SECTIONS; ++at) project->AddSection(text, "s" + std::to_string(at));
    return project;
}

std::string DocumentOf(const std::string& text) {
    return "<put>" + text + std::string(9'000, '.') + "</put>";
}

/** Puts a model and its document. */
bool PutNumbered(SMRepositoryHelper& context, const std::string& text) {
    context.DocumentTarget()->write(DocumentOf(text));
    return Numbered(text)->write(context);
}

std::string DocumentIn(SMRepositoryHelper& context) {
    TklByteBuffer bytes;
    QvByteBufferWriter writer(bytes);
    return context.ReadDocument(writer) ? std::string(bytes.view()) : "none";
}

class RepositoryConcurrency : public testing::TestWithParam<SharedStore> {
  protected:
    RepositoryConcurrency() {
        if (GetParam().onServer) schema = std::make_unique<PostgresSchema>();
        location = schema ? schema->Location() : directory.Path("models.db");
        plan = std::make_shared<FailurePlan>();
        backend = schema ? qv::MakePostgresBackend(location) : qv::MakeSqliteBackend(location);
    }
    void TearDown() override {
        SMRepository repository(location);
        EXPECT_EQ(StoreFaults(repository, *backend, plan->tables), "");
    }
    /** Makes the repository with a first revision. */
    void PutFirst() {
        SMRepository repository(std::make_shared<FailingBackend>(backend, plan), SMRepository::createIfAbsent);
        ASSERT_TRUE(PutNumbered(*repository.NewProject(), "first"));
    }
    /** Runs the work in threads at once, each with its number. */
    template <class Work>
    static void AtOnce(int threads, Work work) {
        std::atomic<int> ready = 0;
        std::vector<std::thread> running;
        for (int thread = 0; thread < threads; ++thread)
            running.emplace_back([&, thread] {
                for (++ready; ready < threads;) std::this_thread::yield();
                work(thread);
            });
        for (std::thread& thread : running) thread.join();
    }
    std::string NameAt(SMRepository& repository, long revision) {
        const auto context = repository.OpenProject(1);
        context->ReadAt(revision);
        const QvSmartPtr<TestNode> node = ReadTestProject(*context);
        return node ? node->Dump(false) : "not read";
    }

    const TempDir directory;
    std::unique_ptr<PostgresSchema> schema;
    std::string location;
    std::shared_ptr<FailurePlan> plan;
    std::shared_ptr<qv::StoreBackend> backend;
};

constexpr SharedStore SHARED_STORES[] = {{"Sqlite", false}, {"Postgres", true}};
INSTANTIATE_TEST_SUITE_P(Stores, RepositoryConcurrency, testing::ValuesIn(SHARED_STORES), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryConcurrency, OfManyWritersOnEachBaseOneWinsAndTheOthersAreTold) {
    PutFirst();
    std::vector<std::string> winners = {"first"};
    for (const int writers : {2, 4, 8, 16}) {
        std::vector<std::string> told(static_cast<std::size_t>(writers));
        std::vector<long> revisions(told.size());
        SMRepository repository(location);
        std::vector<std::unique_ptr<SMRepositoryHelper>> contexts;
        for (int writer = 0; writer < writers; ++writer) contexts.push_back(repository.OpenProject(1));
        const std::string round = std::to_string(writers) + " writers, of number ";
        AtOnce(writers, [&](int writer) {
            const auto at = static_cast<std::size_t>(writer);
            CaughtLog log;
            if (PutNumbered(*contexts[at], round + std::to_string(writer)))
                revisions[at] = contexts[at]->Revision();
            else
                told[at] = contexts[at]->MovedOn() ? "moved on" : log.Only();
        });
        const auto base = static_cast<long>(winners.size());
        ASSERT_EQ(std::count(revisions.begin(), revisions.end(), base + 1), 1) << round;
        ASSERT_EQ(std::count(told.begin(), told.end(), "moved on"), writers - 1) << testing::PrintToString(told);
        winners.push_back(round + std::to_string(std::find(revisions.begin(), revisions.end(), base + 1) - revisions.begin()));
    }
    SMRepository repository(location);
    ASSERT_EQ(repository.Revisions(1).size(), winners.size());
    for (std::size_t at = 0; at < winners.size(); ++at) {
        EXPECT_EQ(NameAt(repository, static_cast<long>(at) + 1), Numbered(winners[at])->Dump(false));
        const auto context = repository.OpenProject(1);
        context->ReadAt(static_cast<long>(at) + 1);
        EXPECT_EQ(DocumentIn(*context), DocumentOf(winners[at]));
    }
}

TEST_P(RepositoryConcurrency, OfManyWhoMakeAProjectAtOnceOneDoes) {
    { SMRepository repository(std::make_shared<FailingBackend>(backend, plan), SMRepository::createIfAbsent); }
    std::atomic<int> done = 0;
    AtOnce(8, [&](int writer) {
        CaughtLog log;
        SMRepository repository(location);
        done += PutNumbered(*repository.NewProject(), std::to_string(writer));
    });
    EXPECT_EQ(done, 1);
    EXPECT_EQ(SMRepository(location).Projects().size(), 1u);
}

TEST_P(RepositoryConcurrency, OfManyWhoMakeTheRepositoryAtOnceAllFindOne) {
    plan->tables.clear();
    std::vector<std::string> faults(6);
    AtOnce(6, [&](int thread) {
        try {
            SMRepository repository(location, SMRepository::createIfAbsent);
        } catch (const TklRuntimeError& error) {
            faults[static_cast<std::size_t>(thread)] = error.what();
        }
    });
    EXPECT_EQ(faults, std::vector<std::string>(6));
    PutFirst();
}

TEST_P(RepositoryConcurrency, ReadersSeeOneRevisionWholeWhileAWriterPuts) {
    PutFirst();
    constexpr int READERS = 4, PUTS = 40;
    std::mutex mutex;
    std::vector<std::string> known = {"first"};
    std::atomic<bool> ends = false;
    std::atomic<int> loads = 0;
    std::vector<std::string> faults(READERS + 1);
    AtOnce(READERS + 1, [&](int thread) {
        CaughtLog log;
        std::string& fault = faults[static_cast<std::size_t>(thread)];
        try {
            SMRepository repository(location);
            if (thread == 0) {
                const auto context = repository.OpenProject(1);
                for (int put = 2; put < PUTS + 2 && fault.empty(); ++put) {
                    {
                        const std::lock_guard lock(mutex);
                        known.push_back("put " + std::to_string(put));
                    }
                    if (!PutNumbered(*context, "put " + std::to_string(put))) fault = log.Only();
                    // each revision is seen by somebody
                    for (const int before = loads;
                         loads < before + 2 && std::all_of(faults.begin(), faults.end(), [](const auto& told) { return told.empty(); });)
                        std::this_thread::yield();
                }
                ends = true;
            }
            for (const auto context = repository.OpenProject(1); !ends && fault.empty(); ++loads) {
                const QvSmartPtr<TestNode> node = ReadTestProject(*context);
                const std::string document = DocumentIn(*context);
                std::string expected;
                {
                    const std::lock_guard lock(mutex);
                    expected = known.at(static_cast<std::size_t>(context->Revision()) - 1);
                }
                if (!node || node->Dump(false) != Numbered(expected)->Dump(false))
                    fault = "rows of revision " + expected + ": " + (node ? node->Dump(false) : log.Only());
                if (document != DocumentOf(expected)) fault += " document of revision " + expected + ": " + document.substr(0, 20);
            }
        } catch (const std::exception& error) {
            fault = error.what();
        }
        if (!fault.empty()) ends = true;
    });
    EXPECT_EQ(faults, std::vector<std::string>(READERS + 1));
    EXPECT_GT(loads, PUTS);
    EXPECT_EQ(SMRepository(location).Revisions(1).size(), std::size_t{PUTS + 1});
}

TEST_P(RepositoryConcurrency, NoLockOutlivesAKilledWriter) {
    PutFirst();
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t process = ::fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        const auto own = GetParam().onServer ? qv::MakePostgresBackend(location) : qv::MakeSqliteBackend(location);
        const auto connection = own->Connect();
        const qv::TableShape& projects = *std::find_if(plan->tables.begin(), plan->tables.end(),
                                                       [](const qv::TableShape& shape) { return shape.name == "REPO_PROJECT"; });
        connection->Begin();
        const qv::Cell parameters[] = {qv::Cell::Number(2), qv::Cell::Number(1)};
        connection->Prepare(qv::Change{&projects, {3}, {{0, qv::Condition::equal}}})->Run(parameters);
        if (::write(ends[1], "x", 1) == 1) ::pause();
        ::_exit(1);
    }
    char told = 0;
    ASSERT_EQ(::read(ends[0], &told, 1), 1);
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
    SMRepository repository(location);
    EXPECT_TRUE(PutNumbered(*repository.OpenProject(1), "second"));
}

}  // namespace
