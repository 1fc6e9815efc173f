#include "core/qvutils/io/stagedfiles.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "core/qvutils/diag/tklerrors.h"
#include "tests/support/tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using qv::StagedFiles;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

void Stage(const StagedFiles& files, const std::string& name, const std::string& text) {
    std::ofstream(files.Path() + "/" + name, std::ios::binary) << text;
}

struct stat StatusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(0, ::lstat(path.c_str(), &status)) << path;
    return status;
}

std::string ErrorOf(StagedFiles& files, const std::string& last) {
    try {
        files.Publish(last);
    } catch (const TklRuntimeError& error) {
        return error.what();
    }
    return "no error";
}

TEST(StagedFiles, TakeTheirPlacesTheLastOneLast) {
    const TempDir dir;
    {
        StagedFiles files(dir.Path());
        for (const char* name : {"main.xml", "b.qvf", "z.qva"}) Stage(files, name, name);
        EXPECT_EQ(1u, dir.Files()) << "nothing but the hidden directory";
        EXPECT_THAT(files.Publish("main.xml"), ElementsAre("b.qvf", "z.qva", "main.xml"));
    }
    EXPECT_EQ("main.xml", dir.Read("main.xml"));
    EXPECT_EQ("b.qvf", dir.Read("b.qvf"));
    EXPECT_EQ(3u, dir.Files());
}

TEST(StagedFiles, LeaveAloneWhatHoldsTheSame) {
    const TempDir dir;
    const std::string big(200'000, 'x');
    dir.Write("same", big);
    dir.Write("other", big.substr(1) + "y");
    dir.Write("longer", "ab");
    dir.Write("empty", "");
    const struct stat before = StatusOf(dir.Path("same")), old = StatusOf(dir.Path("other"));
    StagedFiles files(dir.Path());
    Stage(files, "same", big);
    Stage(files, "other", big);
    Stage(files, "longer", "abc");
    Stage(files, "empty", "");
    EXPECT_THAT(files.Publish(""), ElementsAre("longer", "other"));
    const struct stat after = StatusOf(dir.Path("same"));
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
    EXPECT_NE(old.st_ino, StatusOf(dir.Path("other")).st_ino);
    EXPECT_EQ(big, dir.Read("other"));
}

TEST(StagedFiles, LeaveNothingWhenTheyAreGivenUp) {
    const TempDir dir;
    dir.Write("a", "old");
    {
        const StagedFiles files(dir.Path());
        Stage(files, "a", "new");
    }
    EXPECT_EQ("old", dir.Read("a"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(StagedFiles, MakeTheirDirectoryAndTakeItAwayWhenGivenUp) {
    const TempDir dir;
    { const StagedFiles files(dir.Path("new")); }
    EXPECT_FALSE(fs::exists(dir.Path("new")));
    {
        StagedFiles files(dir.Path("new"));
        Stage(files, "a", "text");
        files.Publish("a");
    }
    EXPECT_EQ("text", dir.Read("new/a"));
    EXPECT_THROW(StagedFiles(dir.Path("absent/new")), TklRuntimeError);
    EXPECT_THROW(StagedFiles(dir.Path("new/a")), TklRuntimeError);
}

TEST(StagedFiles, MoveNoneWhenOneCannotBeMoved) {
    const TempDir dir;
    dir.Write("a", "old");
    fs::create_directory(dir.Path("b"));
    StagedFiles files(dir.Path());
    Stage(files, "a", "new");
    Stage(files, "b", "new");
    Stage(files, "new", "new");
    EXPECT_THAT(ErrorOf(files, "a"), HasSubstr(dir.Path("b") + ": cannot write: Is a directory"));
    EXPECT_EQ("old", dir.Read("a"));
    EXPECT_FALSE(fs::exists(dir.Path("new")));
}

TEST(StagedFiles, TakeBackWhatWasMovedBeforeTheOneThatFails) {
    if (::geteuid() != 0) GTEST_SKIP() << "takes two users";
    const TempDir dir;
    // in such a directory nobody moves the files of others
    ASSERT_EQ(0, ::chmod(dir.Path().c_str(), 01777));
    ASSERT_EQ(0, ::chmod(dir.Write("z", "old").c_str(), 0666));
    const WithoutPrivileges user;
    const struct stat before = StatusOf(dir.Write("a", "old"));
    {
        StagedFiles files(dir.Path());
        for (const char* name : {"a", "b", "z"}) Stage(files, name, "new");
        EXPECT_THAT(ErrorOf(files, "z"), HasSubstr(dir.Path("z") + ": cannot write: Operation not permitted"));
    }
    EXPECT_EQ("old", dir.Read("a"));
    EXPECT_EQ(before.st_ino, StatusOf(dir.Path("a")).st_ino);
    EXPECT_FALSE(fs::exists(dir.Path("b")));
    EXPECT_EQ("old", dir.Read("z"));
    EXPECT_EQ(2u, dir.Files());
}

TEST(StagedFiles, KeepPermissions) {
    const TempDir dir;
    ASSERT_EQ(0, ::chmod(dir.Write("a", "old").c_str(), 0640));
    StagedFiles files(dir.Path());
    Stage(files, "a", "new");
    files.Publish("a");
    EXPECT_EQ(0640u, StatusOf(dir.Path("a")).st_mode & 07777);
}

TEST(StagedFiles, RespectAFileThatMayNotBeWritten) {
    const TempDir dir;
    ASSERT_EQ(0, ::chmod(dir.Write("a", "old").c_str(), 0444));
    ASSERT_EQ(0, ::chmod(dir.Path().c_str(), 0777));
    {
        const WithoutPrivileges user;
        StagedFiles files(dir.Path());
        Stage(files, "a", "new");
        EXPECT_THAT(ErrorOf(files, "a"), HasSubstr("Permission denied"));
    }
    EXPECT_EQ("old", dir.Read("a"));
}

TEST(StagedFiles, ReplaceALinkAndLeaveItsTarget) {
    const TempDir dir;
    fs::create_directory(dir.Path("in"));
    dir.Write("outside", "old");
    fs::create_symlink("../outside", dir.Path("in/a"));
    StagedFiles files(dir.Path("in"));
    Stage(files, "a", "new");
    EXPECT_THAT(files.Publish("a"), ElementsAre("a"));
    EXPECT_EQ("old", dir.Read("outside"));
    EXPECT_EQ("new", dir.Read("in/a"));
    EXPECT_FALSE(fs::is_symlink(dir.Path("in/a")));
}

TEST(StagedFiles, TidyUpWhatAKilledProcessLeftAndNothingElse) {
    const TempDir dir;
    fs::create_directories(dir.Path(".smodel-0123456789abcdef.staging/x"));
    fs::create_directories(dir.Path("outside"));
    fs::create_directory_symlink("outside", dir.Path(".smodel-link.staging"));
    dir.Write("outside/kept", "x");
    const StagedFiles living(dir.Path());
    Stage(living, "a", "new");
    { const StagedFiles files(dir.Path()); }
    EXPECT_FALSE(fs::exists(dir.Path(".smodel-0123456789abcdef.staging")));
    EXPECT_TRUE(fs::exists(living.Path() + "/a"));
    EXPECT_TRUE(fs::exists(dir.Path("outside/kept")));
    EXPECT_TRUE(fs::is_symlink(dir.Path(".smodel-link.staging")));
}

TEST(StagedFiles, WorkInTheWorkingDirectory) {
    const TempDir dir;
    const fs::path before = fs::current_path();
    fs::current_path(dir.Path());
    {
        StagedFiles files("");
        Stage(files, "a", "text");
        EXPECT_THAT(files.Publish("a"), ElementsAre("a"));
    }
    fs::current_path(before);
    EXPECT_EQ("text", dir.Read("a"));
    EXPECT_EQ(1u, dir.Files());
}

}  // namespace
