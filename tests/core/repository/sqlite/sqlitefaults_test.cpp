// What stands in a file of SQLite after any write, sync or change of a file has failed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <ostream>
#include <set>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/repository/smrepository.h"
#include "tests/core/repository/testnode.h"
#include "tests/support/faultyfiles.h"
#include "tests/support/tempdir.h"

namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

/** Runs statements on a file as it is, and gives what they answer: a line a row, the moments of saves left out. */
std::string Ask(const std::string& file, const std::string& statements) {
    sqlite3* database = nullptr;
    std::string answer;
    EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    const auto take = [](void* text, int count, char** values, char** names) {
        for (int at = 0; at < count; ++at)
            if (std::string_view(names[at]) != "SAVED_AT")
                *static_cast<std::string*>(text) += std::string(values[at] ? values[at] : "-") + " ";
        *static_cast<std::string*>(text) += "\n";
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, statements.c_str(), take, &answer, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
    return answer;
}

/** Everything that a file holds; "nothing" for one without tables. */
std::string ContentOf(const std::string& file) {
    if (!std::filesystem::exists(file)) return "nothing";
    std::string content = Ask(file, "SELECT sql FROM sqlite_master ORDER BY name");
    if (content.empty()) return "nothing";
    content += Ask(file, "PRAGMA integrity_check");
    const std::string tables =
        Ask(file, "SELECT group_concat('SELECT ''' || name || ''', * FROM ' || name, ';') FROM sqlite_master WHERE type = 'table'");
    return content + Ask(file, tables.substr(0, tables.find_last_not_of(" \n") + 1));
}

QvSmartPtr<TestNode> Model(int edition) {
    QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT", "p");
    project->Named("Sample");
    project->records["locales"] = "<locale>en</locale>";
    TestNode& root = project->AddSection("Root", "r");
    root.AddSection("Zebra", edition == 1 ? "z" : "y");
    root.AddSection("Apple", "a", "folder").names["fr"] = "Pomme";
    project->Add("SM_PARAMETER_MAP", "m").Named(edition == 1 ? "Map" : "Renamed").AddEntry("k", std::to_string(edition), "e");
    return project;
}

/** What an operation tells that failed; empty when it did what it is for. */
template <class Work>
std::string Fault(Work&& work) {
    CaughtLog log;
    try {
        return work() ? "" : log.Only();
    } catch (const TklRuntimeError& error) {
        return error.what();
    }
}

std::string Open(const std::string& file) {
    return Fault([&] { return SMRepository(file, SMRepository::createIfAbsent).Name() == file; });
}

std::string Put(const std::string& file, int edition) {
    return Fault([&] {
        SMRepository repository(file);
        const auto context = repository.Projects().empty() ? repository.NewProject() : repository.OpenProject(1);
        // long enough for a few pages of a piece that cannot be packed well
        std::string document = "<p>";
        for (unsigned at = 0, seed = 7; at < 12'000; ++at)
            document += static_cast<char>('a' + (seed = seed * 1103515245 + 12345) / 65536 % 26);
        context->DocumentTarget()->write(document + std::to_string(edition) + "</p>");
        return Model(edition)->write(*context);
    });
}

/** Something that is done to a store of a file. */
struct Operation {
    const char* name;
    void (*prepare)(const std::string& file);
    std::string (*run)(const std::string& file);
    /** How far the next step that fails is from the last one, where there are many. */
    long stride = 1;
    /** It ends with its commit, so that a failure which is known leaves what stood. */
    bool isSave = true;
};

void PutTwice(const std::string& file) {
    Open(file);
    Put(file, 1);
    Put(file, 2);
}

/** Makes it a store of the first format, which had no documents, no authors and no views. */
void MakeOld(const std::string& file) {
    Open(file);
    Put(file, 1);
    const std::string views = Ask(file, "SELECT group_concat('DROP VIEW ' || name, ';') FROM sqlite_master WHERE type = 'view'");
    Ask(file, views.substr(0, views.find_last_not_of(" \n") + 1));
    Ask(file, "DROP TABLE REPO_PIECE; UPDATE REPO_STORE SET VALUE = '0.1'");
    for (const char* const column : {"AUTHOR", "MESSAGE", "DOCUMENT", "DOCUMENT_DEPTH", "DOCUMENT_BYTES"})
        Ask(file, std::string("ALTER TABLE REPO_REVISION DROP COLUMN ") + column);
}

const Operation OPERATIONS[] = {
    {"Making", [](const std::string&) {}, Open, 7, false},
    {"FirstPut", [](const std::string& file) { Open(file); }, [](const std::string& file) { return Put(file, 1); }},
    {"LaterPut",
     [](const std::string& file) {
         Open(file);
         Put(file, 1);
     },
     [](const std::string& file) { return Put(file, 2); }, 1},
    {"Prune", PutTwice, [](const std::string& file) { return Fault([&] { return SMRepository(file).Prune(1, 1).oldest == 2; }); }},
    {"Upgrade", MakeOld, Open, 3, false},
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

struct Trouble {
    FaultyFiles::Fault fault;
    bool andAfter;
};

/** A disk that fails once, one that is gone from then on, one that is full, and one that is full in the middle of a write. */
constexpr Trouble TROUBLES[] = {
    {FaultyFiles::breaks, false}, {FaultyFiles::breaks, true}, {FaultyFiles::full, true}, {FaultyFiles::shortens, true}};

class SqliteFaults : public testing::TestWithParam<Operation> {
  protected:
    SqliteFaults() {
        GetParam().prepare(file);
        before = ContentOf(file);
        Restore();
        EXPECT_EQ(GetParam().run(file), "");
        after = ContentOf(file);
        EXPECT_NE(before, after);
    }
    /** Keeps the prepared file the first time, and brings it back later. */
    void Restore() {
        const bool isThere = before != "nothing" || std::filesystem::exists(kept);
        if (isThere && !std::filesystem::exists(kept)) std::filesystem::copy_file(file, kept);
        for (const char* const end : {"", "-wal", "-shm", "-journal"}) std::filesystem::remove(file + end);
        if (isThere) std::filesystem::copy_file(kept, file);
    }
    /** Runs the operation with its n-th step failing. False when it has not so many. */
    bool RunWithStepFailing(long n, const Trouble& trouble) {
        Restore();
        files.FailAt(n, trouble.fault, trouble.andAfter);
        const std::string told = GetParam().run(file);
        const bool hasFailed = files.HasFailed();
        if (files.Steps() < n) return false;
        files.FailAt(0);
        const std::string content = ContentOf(file);
        EXPECT_TRUE(content == before || content == after) << content;
        if (told.empty()) {
            EXPECT_EQ(content, after);
        } else {
            ++failures;
            EXPECT_TRUE(hasFailed) << told;
            EXPECT_THAT(told, HasSubstr(file));
            EXPECT_THAT(told, AnyOf(HasSubstr("disk I/O error"), HasSubstr("disk is full"), HasSubstr("unable to open database file")));
            if (content == after && GetParam().isSave) {
                EXPECT_THAT(told, HasSubstr("It is not known whether the save stands"));
            }
        }
        EXPECT_EQ(GetParam().run(file), "") << "a second time";
        EXPECT_EQ(ContentOf(file), after);
        return true;
    }

    FaultyFiles files;
    TempDir directory;
    std::string file = directory.Path("models.db"), kept = directory.Path("kept.db");
    std::string before, after;
    int failures = 0;
};

INSTANTIATE_TEST_SUITE_P(Operations, SqliteFaults, testing::ValuesIn(OPERATIONS), [](const auto& kind) { return kind.param.name; });

TEST_P(SqliteFaults, LeaveTheOldOrTheNewRevisionAndNothingElse) {
    for (const Trouble& trouble : TROUBLES) {
        failures = 0;
        // each step fails once; where all behind it fail too, some of them must do
        const long stride = GetParam().stride * (trouble.andAfter ? 5 : 1);
        for (long n = 1; RunWithStepFailing(n, trouble); n += stride)
            ASSERT_FALSE(HasFailure()) << "step " << n << ", fault " << trouble.fault << (trouble.andAfter ? " and after" : "");
        EXPECT_GT(failures, 0) << "of fault " << trouble.fault;
    }
}

TEST(SqliteFault, IsToldWithTheStepThatFailed) {
    const TempDir directory;
    const std::string file = directory.Path("models.db");
    Open(file);
    const std::string kept = directory.Path("kept.db");
    std::filesystem::copy_file(file, kept);
    std::set<std::string> told;
    FaultyFiles files;
    for (long n = 1; files.Steps() >= n - 1; ++n) {
        for (const char* const end : {"", "-wal", "-shm"}) std::filesystem::remove(file + end);
        std::filesystem::copy_file(kept, file);
        files.FailAt(n);
        const std::string fault = Put(file, 1);
        if (const std::size_t at = fault.find("disk I/O error"); at != std::string::npos) told.insert(fault.substr(at));
    }
    const std::string unknown = ". It is not known whether the save stands; look before saving again.";
    EXPECT_THAT(told, testing::Contains("disk I/O error while writing" + unknown));
    EXPECT_THAT(told, testing::Contains("disk I/O error while bringing what was written to the disk" + unknown));
    EXPECT_THAT(told, testing::Contains("disk I/O error: Input/output error"));
}

}  // namespace
