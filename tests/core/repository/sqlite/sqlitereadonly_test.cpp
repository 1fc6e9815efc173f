// A file of SQLite that the reader may not write to.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <sqlite3.h>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "core/repository/smrepository.h"
#include "core/repository/sqlite/sqlitebackend.h"
#include "tests/core/repository/failingbackend.h"
#include "tests/core/repository/testnode.h"
#include "tests/support/tempdir.h"

namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

class SqliteReadOnly : public testing::Test {
  protected:
    SqliteReadOnly() {
        fs::permissions(directory.Path(), fs::perms{0755});
        SMRepository repository(file, SMRepository::createIfAbsent);
        Put(repository, "one");
    }
    ~SqliteReadOnly() override { fs::permissions(directory.Path(), fs::perms::owner_all); }

    static void Put(SMRepository& repository, const char* name) {
        const auto context = repository.Projects().empty() ? repository.NewProject() : repository.OpenProject(1);
        QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT", "p");
        project->Named(name).AddSection("Root", "r");
        context->DocumentTarget()->write(name);
        EXPECT_TRUE(project->write(*context));
    }
    /** Nobody may write to the file, nor beside it. */
    void Lock() const {
        for (const fs::directory_entry& entry : fs::directory_iterator(directory.Path())) fs::permissions(entry.path(), fs::perms{0444});
        fs::permissions(directory.Path(), fs::perms{0555});
    }
    static std::string NameIn(SMRepositoryHelper& context) {
        TklByteBuffer document;
        QvByteBufferWriter writer(document);
        context.ReadDocument(writer);
        const QvSmartPtr<TestNode> project = ReadTestProject(context);
        return project && project->children.size() == 1 ? std::string(document.view()) : "not read";
    }
    template <class Work>
    static std::string Told(Work&& work) {
        CaughtLog log;
        try {
            work();
        } catch (const TklRuntimeError& error) {
            return error.what();
        }
        return log.Only();
    }

    const TempDir directory;
    const std::string file = directory.Path("models?50%#1.db");
};

TEST_F(SqliteReadOnly, IsReadAndSaysThatItCannotBeWritten) {
    Lock();
    const WithoutPrivileges user;
    SMRepository repository(file);
    EXPECT_EQ(repository.Revisions(1).size(), 1u);
    EXPECT_EQ(NameIn(*repository.OpenProject(1)), "one");
    QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT", "p");
    project->Named("two");
    EXPECT_THAT(Told([&] { EXPECT_FALSE(project->write(*repository.OpenProject(1))); }),
                HasSubstr("It can only be read: you may not write to the file, or to its directory"));
}

TEST_F(SqliteReadOnly, IsReadThroughALink) {
    Lock();
    const TempDir elsewhere;
    fs::permissions(elsewhere.Path(), fs::perms::all);
    fs::create_symlink(file, elsewhere.Path("link.db"));
    const WithoutPrivileges user;
    EXPECT_EQ(SMRepository(elsewhere.Path("link.db")).Revisions(1).size(), 1u);
}

TEST_F(SqliteReadOnly, WithALogBesideItTellsWhatToDo) {
    const std::string kept = directory.Path("kept");
    {
        SMRepository repository(file);
        const auto line = qv::MakeSqliteBackend(file)->Connect();  // keeps the log there
        Put(repository, "two");
        fs::copy_file(file + "-wal", kept);
    }
    fs::rename(kept, file + "-wal");
    Lock();
    const WithoutPrivileges user;
    EXPECT_EQ(Told([&] { SMRepository repository(file); }),
              "Repository '" + file + "': It can only be read, and beside it stands its log, " + file +
                  "-wal, which needs the right to write. Let somebody open it who has that, or copy both files to where you have it.");
}

TEST_F(SqliteReadOnly, WhileSomebodyWritesIsReadWithTheLog) {
    SMRepository repository(file);
    const auto line = qv::MakeSqliteBackend(file)->Connect();
    Put(repository, "two");
    Lock();
    const WithoutPrivileges user;
    EXPECT_EQ(NameIn(*SMRepository(file).OpenProject(1)), "two");
}

TEST_F(SqliteReadOnly, ThatChangesWhileItIsReadIsTold) {
    const auto plan = std::make_shared<FailurePlan>();
    Lock();
    auto user = std::make_unique<WithoutPrivileges>();
    SMRepository repository(std::make_shared<FailingBackend>(qv::MakeSqliteBackend(file), plan));
    const auto context = repository.OpenProject(1);
    plan->Meanwhile(2, [&] {
        user.reset();  // its owner writes to it
        fs::last_write_time(file, fs::file_time_type::clock::now() + std::chrono::seconds(1));
    });
    EXPECT_THAT(Told([&] { ReadTestProject(*context); }), HasSubstr("The file changed while it was read. Read it again."));
}

/** Leaves the beginning of the file, from which it is known. */
void Damage(const std::string& file) {
    constexpr std::size_t PAGE = 4096;
    std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
    bytes.seekp(2 * PAGE);
    bytes << std::string(fs::file_size(file) - 2 * PAGE, 'Z');
}

TEST_F(SqliteReadOnly, ThatLooksDamagedSinceItChangesIsToldAsChanged) {
    const auto plan = std::make_shared<FailurePlan>();
    Lock();
    auto user = std::make_unique<WithoutPrivileges>();
    SMRepository repository(std::make_shared<FailingBackend>(qv::MakeSqliteBackend(file), plan));
    plan->Meanwhile(1, [&] {
        user.reset();
        Damage(file);
        fs::last_write_time(file, fs::file_time_type::clock::now() + std::chrono::seconds(1));
    });
    EXPECT_THAT(Told([&] { repository.Projects(); }), HasSubstr("The file changed while it was read. Read it again."));
}

TEST_F(SqliteReadOnly, ThatIsDamagedTellsWhatToDo) {
    Damage(file);
    EXPECT_EQ(Told([&] { SMRepository repository(file); }),
              "Repository '" + file + "': database disk image is malformed: the file is damaged; bring back a copy of it");
}

}  // namespace
