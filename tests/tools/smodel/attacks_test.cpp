// Documents that mean ill, each read by the command, and once more while the system tells what the command opens.
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/attacks.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class SmodelAttacks : public testing::Test {
  protected:
    void SetUp() override { LayOutAttacks(directory.Path(".")); }
    std::string PathOf(const char* name) const { return directory.Path(std::string("model/") + name); }

    TestDirectory directory;
};

/** What the table tells of a run. */
void ExpectTold(const Attack& attack, int status, const std::string& text) {
    EXPECT_EQ(status, attack.status) << attack.name << "\n" << text;
    if (*attack.code)
        EXPECT_THAT(text, HasSubstr("error[" + std::string(attack.code) + "] ")) << attack.name;
    else
        EXPECT_THAT(text, Not(HasSubstr("error"))) << attack.name;
    EXPECT_THAT(text, Not(HasSubstr("secret</"))) << attack.name;
    EXPECT_THAT(text, Not(HasSubstr("root:"))) << attack.name;
}

/** Prefixes of what any program may open: the loader's, the C library's and the sanitizers' files. */
bool IsOfSystem(const std::string& path) {
    static const std::string build = std::filesystem::path(SMODEL_TOOL).parent_path().parent_path().string() + "/";
    for (const std::string& prefix :
         {std::string("/lib"), std::string("/usr/lib"), std::string("/usr/local/lib"), std::string("/usr/share/locale"),
          std::string("/etc/ld.so"), std::string("/etc/localtime"), std::string("/usr/share/zoneinfo"), std::string("/proc/self/"),
          std::string("/sys/"), std::string("/dev/null"), build})
        if (path.starts_with(prefix)) return true;
    return false;
}

/** The path between two characters of a line, or "". */
std::string Between(const std::string& line, const std::string& open, char close) {
    const std::size_t at = line.find(open);
    if (at == std::string::npos) return {};
    const std::size_t start = at + open.size();
    return line.substr(start, line.find(close, start) - start);
}

/** Lines of a trace that open something outside of the directory, or a socket. */
std::string Breaches(const std::string& trace, const std::string& root) {
    std::istringstream lines(trace);
    std::string breaches;
    const auto isInside = [&](const std::string& path) { return path == root || path.starts_with(root + "/"); };
    for (std::string line; std::getline(lines, line);) {
        const bool isSocket = line.find("socket(") != std::string::npos || line.find("connect(") != std::string::npos;
        const std::string asked = Between(line, "\"", '"'), opened = Between(line, ") = ", '>');
        const std::string path = opened.find('<') == std::string::npos ? std::string() : opened.substr(opened.find('<') + 1);
        // a relative name is judged by what came of it; one that came to nothing opened nothing
        const bool isAskedOutside = asked.starts_with("/") && !isInside(asked) && !IsOfSystem(asked);
        // where the command looks at itself, the system tells its number
        const bool isOfItself = path.starts_with("/proc/" + line.substr(0, line.find(' ')) + "/");
        const bool isOpenedOutside = path.starts_with("/") && !isInside(path) && !isOfItself && !IsOfSystem(path);
        if (isSocket || isAskedOutside || isOpenedOutside) breaches += line + "\n";
    }
    return breaches;
}

const std::string TRACED = "strace -f -y -qq -s 4096 -e trace=open,openat,openat2,creat,socket,connect -o ";

}  // namespace

TEST_F(SmodelAttacks, AreAllInTheTable) {
    std::set<std::string> named, there;
    for (const Attack& attack : Attacks()) named.insert(attack.name);
    for (const auto& entry : std::filesystem::directory_iterator(SMODEL_TEST_DATA "/attacks")) there.insert(entry.path().filename());
    EXPECT_EQ(named, there);
}

TEST_F(SmodelAttacks, HaveTheirCodeAndStatus) {
    for (const Attack& attack : Attacks()) {
        const ToolRun run = RunTool({"check", PathOf(attack.name)});
        ExpectTold(attack, run.status, run.out + run.err);
    }
}

TEST_F(SmodelAttacks, OpenNothingOutsideOfTheModelAndNoSocket) {
    if (std::system("strace -o /dev/null true >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "strace is not installed, or this machine lets no process trace another one";
    const std::string root = std::filesystem::canonical(directory.Path("model"));
    ASSERT_THAT(Breaches("1 openat(AT_FDCWD</x>, \"/etc/passwd\", O_RDONLY) = 3</etc/passwd>\n", root), Not(IsEmpty()));
    ASSERT_THAT(Breaches("1 openat(3<" + root + ">, \"..\", O_PATH) = 4</tmp>\n", root), Not(IsEmpty()));
    ASSERT_THAT(Breaches("12 open(\"/proc/self/mem\", O_RDONLY) = 4</proc/13/mem>\n", root), Not(IsEmpty()));
    ASSERT_THAT(Breaches("12 open(\"/proc/self/maps\", O_RDONLY) = 4</proc/12/maps>\n", root), IsEmpty());
    ASSERT_THAT(Breaches("1 socket(AF_INET, SOCK_STREAM, 0) = 3<socket:[1]>\n", root), Not(IsEmpty()));
    for (const Attack& attack : Attacks()) {
        const std::string log = directory.Path("trace"), told = directory.Path("told");
        // the leak check traces its own process, which only one may do
        const int waited = std::system(("ASAN_OPTIONS=detect_leaks=0 " + TRACED + log + " " SMODEL_TOOL " check " + root + "/" +
                                        attack.name + " >" + told + " 2>&1 </dev/null")
                                           .c_str());
        ASSERT_TRUE(WIFEXITED(waited)) << attack.name;
        ExpectTold(attack, WEXITSTATUS(waited), directory.Read("told"));
        const std::string trace = directory.Read("trace");
        ASSERT_THAT(trace, HasSubstr(root + "/" + attack.name)) << "the trace shows the document itself";
        EXPECT_THAT(Breaches(trace, root), IsEmpty()) << attack.name;
    }
}

TEST_F(SmodelAttacks, AreNoMatchForAnyCommandThatReads) {
    for (const std::string& path : {PathOf("external-entity.xml"), PathOf("billion-laughs.xml")})
        for (const std::vector<std::string>& words : {std::vector<std::string>{"fmt", path},
                                                      {"ls", path},
                                                      {"show", path, "[a]"},
                                                      {"join", path},
                                                      {"split", path, "-d", directory.Path("d")},
                                                      {"repo", "put", directory.Path("r.db"), path}}) {
            const ToolRun run = RunTool(words);
            EXPECT_EQ(run.status, 2) << words[0];
            EXPECT_THAT(run.err, HasSubstr("error[SM2")) << words[0];
            EXPECT_THAT(run.out, IsEmpty()) << words[0];
        }
    EXPECT_FALSE(std::filesystem::exists(directory.Path("d")));
    EXPECT_FALSE(std::filesystem::exists(directory.Path("r.db")));
}

// ---- files that cannot be read

TEST(SmodelUnreadable, TellsWhyEachPathCannotBeRead) {
    const TestDirectory directory;
    directory.Write("file.xml", "");
    for (const auto& [path, code] : {std::pair<std::string, const char*>{directory.Path("absent.xml"), "SM2021"},
                                     {directory.Path("file.xml/below.xml"), "SM2021"},
                                     {directory.Path("."), "SM2023"},
                                     {"/dev/null", "SM2002"},
                                     {"/dev/zero", "SM2006"},
                                     {directory.Path(std::string(300, 'x')), "SM2024"},
                                     {"/proc/self/mem", "SM2024"}}) {
        const ToolRun run = RunTool({"check", path});
        EXPECT_EQ(run.status, 2) << path;
        EXPECT_THAT(run.err, HasSubstr("error[" + std::string(code) + "] ")) << path;
    }
}

TEST(SmodelUnreadable, TellsThatAFileMayNotBeRead) {
    const TestDirectory directory;
    const std::string path = directory.Write("closed.xml", "<project></project>");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    if (::access(path.c_str(), R_OK) == 0) GTEST_SKIP() << "this user may read everything";
    const ToolRun run = RunTool({"check", path});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("error[SM2022] cannot open: Permission denied"));
}

// ---- the option

TEST(SmodelLimits, ListsThemWithTheirDefaults) {
    const ToolRun run = RunTool({"check", "--limits", "help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("  depth=1000            elements inside each other\n"));
    EXPECT_THAT(run.out, HasSubstr("  document=16G "));
}

TEST(SmodelLimits, RefusesWhatIsNoneAndListsThem) {
    for (const char* words : {"breadth=3", "depth", "depth=", "depth=3k", "depth=-1", "depth=1KK", "text=99999999999999999G"}) {
        const ToolRun run = RunTool({"check", "--limits", words, "absent.xml"});
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_THAT(run.err, HasSubstr("  depth=1000 ")) << words;
    }
}

TEST(SmodelLimits, HoldForEachCommandThatReads) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", "<project><name>p</name><locales><locale>en</locale></locales></project>");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"check", path},
                                                  {"fmt", path},
                                                  {"ls", path},
                                                  {"show", path, "[a]"},
                                                  {"join", path},
                                                  {"split", path, "-d", directory.Path("d")},
                                                  {"rename", path, "a=b", "-o", directory.Path("o")},
                                                  {"repo", "put", directory.Path("r.db"), path}}) {
        std::vector<std::string> limited = words;
        limited.insert(limited.end(), {"--limits", "depth=1M,elements=2"});
        const ToolRun run = RunTool(limited);
        EXPECT_EQ(run.status, 2) << words[0];
        EXPECT_THAT(run.err, HasSubstr("error[SM2103] there are more than 2 elements; ")) << words[0];
    }
}
