#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <thread>

#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "tests/support/tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace {

class CountingSink : public SMLogSink {
  public:
    void Take(const QvLogEvent& event, const SMSourceContext*) override {
        ++events;
        detail = event.detail.utf8();
    }
    int events = 0;
    std::string detail;
};

mode_t ModeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(0, ::stat(path.c_str(), &status));
    return status.st_mode & 07777;
}

template <class Action>
TklRuntimeError ErrorOf(Action action) {
    try {
        action();
    } catch (const TklRuntimeError& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return TklRuntimeError("");
}

}  // namespace

TEST(QvFileWriter, PutsTheFileInItsPlaceAtClose) {
    const TempDir dir;
    dir.Write("f", "old");
    QvFileWriter target(dir.Path("f").c_str());
    target.write("new ", 4);
    target.write('x');
    target.flush();
    EXPECT_EQ("old", dir.Read("f"));
    target.close();
    EXPECT_EQ("new x", dir.Read("f"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, ClosesWhenItIsLeftInTheOrdinaryWay) {
    const TempDir dir;
    { QvFileWriter(dir.Path("f").c_str()).write("text", 4); }
    EXPECT_EQ("text", dir.Read("f"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, WritesPiecesOfAllSizesInTheirOrder) {
    const TempDir dir;
    std::string expected;
    QvFileWriter target(dir.Path("f").c_str());
    for (const std::size_t size : {0u, 1u, 100u, 65'535u, 1u, 65'536u, 7u, 65'537u, 300'000u, 65'000u, 1'000u}) {
        const std::string piece(size, static_cast<char>('a' + expected.size() % 26));
        target.write(piece);
        expected += piece;
    }
    target.close();
    EXPECT_TRUE(expected == dir.Read("f"));
}

TEST(QvFileWriter, LeavesTheOldFileWhenAnExceptionPasses) {
    const TempDir dir;
    dir.Write("f", "old");
    EXPECT_THROW(
        {
            QvFileWriter target(dir.Path("f").c_str());
            target.write(std::string(100'000, 'x'));
            throw std::logic_error("no");
        },
        std::logic_error);
    EXPECT_EQ("old", dir.Read("f"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, ClosesWhenUsedWhileAnotherExceptionPasses) {
    const TempDir dir;
    struct Saver {
        std::string path;
        ~Saver() { QvFileWriter(path.c_str()).write("saved", 5); }
    };
    EXPECT_THROW(
        {
            const Saver saver{dir.Path("f")};
            throw std::logic_error("no");
        },
        std::logic_error);
    EXPECT_EQ("saved", dir.Read("f"));
}

TEST(QvFileWriter, KeepsThePermissionsOfTheFileItReplaces) {
    const TempDir dir;
    const std::string path = dir.Write("f", "old");
    ASSERT_EQ(0, ::chmod(path.c_str(), 0640));
    QvFileWriter(path.c_str()).close();
    EXPECT_EQ(0640u, ModeOf(path));
}

TEST(QvFileWriter, ObeysTheMaskForANewFile) {
    const TempDir dir;
    const mode_t before = ::umask(027);
    QvFileWriter(dir.Path("f").c_str()).close();
    ::umask(before);
    EXPECT_EQ(0640u, ModeOf(dir.Path("f")));
}

TEST(QvFileWriter, ReplacesTheTargetOfALink) {
    const TempDir dir;
    std::filesystem::create_directory(dir.Path("sub"));
    dir.Write("sub/f", "old");
    std::filesystem::create_symlink("sub/f", dir.Path("inner"));
    std::filesystem::create_symlink(dir.Path("inner"), dir.Path("outer"));
    QvFileWriter target(dir.Path("outer").c_str());
    target.write("new", 3);
    target.close();
    EXPECT_EQ("new", dir.Read("sub/f"));
    EXPECT_TRUE(std::filesystem::is_symlink(dir.Path("outer")));
    EXPECT_TRUE(std::filesystem::is_symlink(dir.Path("inner")));
}

TEST(QvFileWriter, MakesTheFileThatALinkPromises) {
    const TempDir dir;
    std::filesystem::create_symlink("later", dir.Path("link"));
    { QvFileWriter(dir.Path("link").c_str()).write("x", 1); }
    EXPECT_EQ("x", dir.Read("later"));
}

TEST(QvFileWriter, WritesAFileInTheWorkingDirectory) {
    const TempDir dir;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir.Path());
    { QvFileWriter("plain").write("x", 1); }
    std::filesystem::current_path(before);
    EXPECT_EQ("x", dir.Read("plain"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, WritesAPipeDirectly) {
    const TempDir dir;
    const std::string path = dir.Path("pipe");
    ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
    std::string read;
    std::thread reader([&] {
        std::ifstream file(path);
        read.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    });
    { QvFileWriter(path.c_str()).write("through", 7); }
    reader.join();
    EXPECT_EQ("through", read);
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, GoesOnWhereAnInheritedDescriptorStands) {
    const TempDir dir;
    const std::string path = dir.Write("f", "");
    const int file = ::open(path.c_str(), O_WRONLY);
    ASSERT_EQ(6, ::write(file, "before", 6));
    { QvFileWriter(("/dev/fd/" + std::to_string(file)).c_str()).write(" between ", 9); }
    ASSERT_EQ(5, ::write(file, "after", 5));
    ::close(file);
    EXPECT_EQ("before between after", dir.Read("f"));
}

TEST(QvFileWriter, RaisesWhenItCannotBegin) {
    const TempDir dir;
    const auto expect = [](const std::string& path, const char* reason) {
        const TklRuntimeError error = ErrorOf([&] { QvFileWriter target(path.c_str()); });
        EXPECT_EQ(path, error.file());
        EXPECT_THAT(error.message(), HasSubstr(reason));
    };
    expect(dir.Path(), "Is a directory");
    expect(dir.Path("absent/f"), "No such file");
    expect("", "No such file");
    expect(dir.Write("file", "x") + "/f", "Not a directory");
    std::filesystem::create_symlink("loop", dir.Path("loop"));
    expect(dir.Path("loop"), "Too many levels");
    expect(dir.Path("absent/"), "Is a directory");
    expect("/proc/f", "");
    EXPECT_THROW(QvFileWriter(nullptr), TklRuntimeError);
    EXPECT_EQ(2u, dir.Files());
}

TEST(QvFileWriter, RaisesWhereItMayNotWrite) {
    const TempDir dir;
    const std::string path = dir.Write("f", "old");
    ASSERT_EQ(0, ::chmod(path.c_str(), 0444));
    {
        ASSERT_EQ(0, ::chmod(dir.Path().c_str(), 0777));
        const WithoutPrivileges user;
        EXPECT_THAT(ErrorOf([&] { QvFileWriter target(path.c_str()); }).message(), HasSubstr("Permission denied"));
    }
    {
        ASSERT_EQ(0, ::chmod(dir.Path().c_str(), 0555));
        const WithoutPrivileges user;
        EXPECT_THAT(ErrorOf([&] { QvFileWriter target(dir.Path("g").c_str()); }).message(), HasSubstr("Permission denied"));
    }
    ASSERT_EQ(0, ::chmod(dir.Path().c_str(), 0755));
    EXPECT_EQ("old", dir.Read("f"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, RaisesWhenTheDeviceIsFull) {
    QvFileWriter target("/dev/full");
    target.write("x", 1);
    const TklRuntimeError error = ErrorOf([&] { target.close(); });
    EXPECT_EQ("/dev/full", error.file());
    EXPECT_THAT(error.message(), HasSubstr("No space left"));
    EXPECT_THROW(target.write("x", 1), TklRuntimeError) << "it is closed";
    EXPECT_NO_THROW(target.close());
}

TEST(QvFileWriter, RaisesInTheMiddleWhenTheDeviceIsFull) {
    QvFileWriter target("/dev/full");
    EXPECT_THROW(target.write(std::string(100'000, 'x')), TklRuntimeError);
    EXPECT_THAT(ErrorOf([&] { target.close(); }).message(), HasSubstr("an earlier write failed"));
}

TEST(QvFileWriter, LeavesTheOldFileWhenAWriteFails) {
    const TempDir dir;
    dir.Write("f", "old");
    // A bound on the size of files stands for a full disk.
    struct rlimit before {};
    ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &before));
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small { 100'000, before.rlim_max };
    ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &small));
    const TklRuntimeError error = ErrorOf([&] {
        QvFileWriter target(dir.Path("f").c_str());
        for (int i = 0; i < 300; ++i) target.write(std::string(1000, 'x'));
    });
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(dir.Path("f"), error.file());
    EXPECT_THAT(error.message(), HasSubstr("File too large"));
    EXPECT_EQ("old", dir.Read("f"));
    EXPECT_EQ(1u, dir.Files());
}

TEST(QvFileWriter, TellsTheLogWhenItsDestructorFails) {
    CountingSink sink;
    const SMLogScope scope(sink);
    { QvFileWriter("/dev/full").write("x", 1); }
    EXPECT_EQ(1, sink.events);
    EXPECT_THAT(sink.detail, HasSubstr("/dev/full: cannot write: No space left"));
}

TEST(QvFileWriter, RefusesToPublishAfterAFailedWriteThatNobodyMinded) {
    const TempDir dir;
    dir.Write("f", "old");
    {
        struct rlimit before {};
        ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &before));
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit small { 10, before.rlim_max };
        QvFileWriter target(dir.Path("f").c_str());
        ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &small));
        EXPECT_THROW(target.write(std::string(100'000, 'x')), TklRuntimeError);
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        target.write("more", 4);
    }
    EXPECT_EQ("old", dir.Read("f"));
    EXPECT_EQ(1u, dir.Files());
}
