#include "core/qvutils/io/openbeneath.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "core/qvutils/diag/tklerrors.h"
#include "tests/support/tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

/** A root with a file, a folder with a file, and a secret beside the root that must never be opened. */
class OpenBeneath : public testing::Test {
  protected:
    OpenBeneath() {
        fs::create_directories(m_directory.Path("inner/sub"));
        m_directory.Write("inner/file", "inside");
        m_directory.Write("inner/sub/deep", "deep");
        // who opens it waits for ever, and the test with him
        EXPECT_EQ(0, ::mkfifo(m_directory.Path("secret").c_str(), 0600));
    }

    std::string Read(const std::string& path) const {
        const qv::Descriptor file = qv::OpenBeneath(m_directory.Path("inner"), path, "shown");
        char text[64];
        const ssize_t length = ::read(file.Get(), text, sizeof text);
        return std::string(text, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    }

    std::string WhyNot(const std::string& path) const {
        try {
            return "opened: " + Read(path);
        } catch (const TklRuntimeError& error) {
            EXPECT_EQ(error.file(), "shown");
            return error.message();
        }
    }

    void Link(const std::string& target, const std::string& name) const { fs::create_symlink(target, m_directory.Path("inner/" + name)); }

    TempDir m_directory;
};

TEST_F(OpenBeneath, OpensWhatIsInside) {
    EXPECT_EQ(Read("file"), "inside");
    EXPECT_EQ(Read("sub/deep"), "deep");
    EXPECT_EQ(Read("./sub//./deep"), "deep");
    EXPECT_EQ(Read("sub/../file"), "inside");
}

TEST_F(OpenBeneath, FollowsLinksThatStayInside) {
    Link("file", "link");
    Link("sub", "folder");
    Link("../file", "sub/up");
    Link("link", "chain");
    EXPECT_EQ(Read("link"), "inside");
    EXPECT_EQ(Read("folder/deep"), "deep");
    EXPECT_EQ(Read("folder/up"), "inside");
    EXPECT_EQ(Read("chain"), "inside");
}

TEST_F(OpenBeneath, TakesARootThatIsALink) {
    fs::create_directory_symlink("inner", m_directory.Path("alias"));
    EXPECT_TRUE(qv::OpenBeneath(m_directory.Path("alias"), "file", "shown"));
}

TEST_F(OpenBeneath, RefusesPathsThatLeaveTheRoot) {
    for (const char* path : {"../secret", "sub/../../secret", "sub/../../inner/file", "..", "../inner/file"})
        EXPECT_THAT(WhyNot(path), HasSubstr("out of the directory of the model")) << path;
    EXPECT_THAT(WhyNot(m_directory.Path("secret")), HasSubstr("absolute path"));
    EXPECT_THAT(WhyNot(m_directory.Path("inner/file")), HasSubstr("absolute path"));
}

TEST_F(OpenBeneath, RefusesLinksThatLeaveTheRootAtAnyStep) {
    Link("../secret", "out");
    Link(m_directory.Path("secret"), "absolute");
    Link("..", "parent");
    Link("../..", "sub/above");
    Link("out", "chain");
    for (const char* path : {"out", "absolute", "parent/secret", "sub/above/secret", "chain", "parent/inner/file"})
        EXPECT_THAT(WhyNot(path), HasSubstr("out of the directory of the model")) << path;
}

TEST_F(OpenBeneath, NeverOpensWhatIsNoRegularFile) {
    ASSERT_EQ(0, ::mkfifo(m_directory.Path("inner/pipe").c_str(), 0600));
    EXPECT_THAT(WhyNot("pipe"), HasSubstr("no regular file"));
    EXPECT_THAT(WhyNot("sub"), HasSubstr("Is a directory"));
    EXPECT_THAT(WhyNot("sub/"), HasSubstr("Is a directory"));
    EXPECT_THAT(WhyNot("."), HasSubstr("Is a directory"));
}

TEST_F(OpenBeneath, TellsWhatIsMissing) {
    Link("loop", "loop");
    EXPECT_THAT(WhyNot("absent"), HasSubstr("No such file"));
    EXPECT_THAT(WhyNot("absent/file"), HasSubstr("No such file"));
    EXPECT_THAT(WhyNot(""), HasSubstr("No such file"));
    EXPECT_THAT(WhyNot("file/x"), HasSubstr("Not a directory"));
    EXPECT_THAT(WhyNot("loop"), HasSubstr("Too many levels"));
    EXPECT_THAT(WhyNot(std::string("file\0x", 6)), HasSubstr("Invalid argument"));
    EXPECT_THROW(qv::OpenBeneath(m_directory.Path("nowhere"), "file", "shown"), TklRuntimeError);
}

TEST_F(OpenBeneath, TellsWhatMayNotBeRead) {
    ASSERT_EQ(0, ::chmod(m_directory.Path().c_str(), 0755));
    ASSERT_EQ(0, ::chmod(m_directory.Path("inner/file").c_str(), 0));
    const WithoutPrivileges user;
    EXPECT_THAT(WhyNot("file"), HasSubstr("Permission denied"));
}

}  // namespace
