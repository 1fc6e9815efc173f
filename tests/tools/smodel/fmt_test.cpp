#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"
#include "tests/support/waitfor.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string LOOSE = ModelDocument("\n  " + NamespaceElement("Sales") + "\n");

TEST(SmodelFmt, WritesTheCanonicalDocument) {
    const ToolRun run = RunTool({"fmt", "-"}, LOOSE);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, CanonicalText(*schema_002_000::SMLoadModelBytes(LOOSE).project));
    EXPECT_THAT(run.err, IsEmpty());
}

TEST(SmodelFmt, IsAFixedPointOnEachDocument) {
    for (const char* name : {"minimal.xml", "everything.xml", "reader_forms.xml", "foodmart.xml", "tpcds.xml", "multifile/main.xml"}) {
        ToolRun once = RunTool({"fmt", "--accept-loss", std::string(SMODEL_SOURCE_DIR "/examples/models/") + name});
        EXPECT_LE(once.status, 1) << name;
        // intrinsic roles and the lists of a calculation do not come back from a canonical document
        if (std::string(name) == "reader_forms.xml") once = RunTool({"fmt", "--accept-loss", "-"}, once.out);
        const ToolRun again = RunTool({"fmt", "-"}, once.out);
        EXPECT_TRUE(again.out == once.out) << name;
    }
}

TEST(SmodelFmt, ReplacesAFileByItself) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", LOOSE);
    EXPECT_EQ(RunTool({"fmt", path, "-o", path}).status, 0);
    EXPECT_EQ(directory.Read("a.xml"), RunTool({"fmt", "-"}, LOOSE).out);
    EXPECT_THAT(directory.Files(), ElementsAre("a.xml"));
}

TEST(SmodelFmt, IndentsForPeople) {
    const ToolRun run = RunTool({"fmt", "--indent", "-"}, LOOSE);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("\n  <namespace>\n    <name locale=\"en\">Sales</name>\n"));
    EXPECT_EQ(RunTool({"fmt", "-"}, run.out).out, RunTool({"fmt", "-"}, LOOSE).out);
}

TEST(SmodelFmt, RefusesToDropContent) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", ModelDocument("<odd></odd>"));
    const std::string target = directory.Write("b.xml", "old");
    const ToolRun run = RunTool({"fmt", path, "-o", target});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.err, HasSubstr("error[SM1001] <odd> in "));
    EXPECT_THAT(run.err, HasSubstr("nothing was written, since 1 piece of content would be lost"));
    EXPECT_EQ(directory.Read("b.xml"), "old");
}

TEST(SmodelFmt, DropsContentWhenThatIsAccepted) {
    const ToolRun run = RunTool({"fmt", "--accept-loss", "-"}, ModelDocument("<odd></odd>"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("error[SM1001] <odd> in "));
    EXPECT_THAT(run.out, ::testing::Not(HasSubstr("odd")));
}

/** What is not there needs no keeping: `check` ends with 0 too. */
TEST(SmodelFmt, TellsWhatOnlyWritingNotesWithoutAFinding) {
    const std::string model =
        ModelDocument("<namespace><name locale=\"en\">n</name><querySubject><name locale=\"en\">s</name></querySubject></namespace>");
    const TestDirectory directory;
    for (const std::vector<std::string>& words : {std::vector<std::string>{"fmt", "-"},
                                                  {"split", "-", "-d", directory.Path("parts")},
                                                  {"join", "-"},
                                                  {"repo", "put", directory.Path("r.db"), "-"}}) {
        const ToolRun run = RunTool(words, model);
        EXPECT_EQ(run.status, 0) << words.front();
        EXPECT_THAT(run.err, HasSubstr("warning: SMQuerySubject with missing definition.")) << words.front();
    }
    EXPECT_EQ(RunTool({"check", "-"}, model).status, 0);
    EXPECT_EQ(RunTool({"fmt", "-", "-o", "/dev/full"}, model).status, 2);
}

/** Nobody has seen what a file holds that cannot be read, so nobody can accept its loss. */
TEST(SmodelFmt, RefusesAModelThatLacksAFileAsAllCommandsThatWriteDo) {
    const TestDirectory directory;
    const std::string main = directory.Write("main.xml", ModelDocument("<smnamespacefile filename=\"gone.qvf\"></smnamespacefile>"));
    const std::string out = directory.Path("out");
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{{"fmt", main, "-o", out},
                                                                                         {"join", main, "-o", out},
                                                                                         {"split", main, "-d", out},
                                                                                         {"rename", main, "A=B", "-o", out},
                                                                                         {"repo", "put", out, main}})
        for (const bool isAccepted : {false, true}) {
            std::vector<std::string> words = command;
            if (isAccepted) words.push_back("--accept-loss");
            const ToolRun run = RunTool(words);
            EXPECT_EQ(run.status, 2) << command[0] << run.err;
            EXPECT_THAT(run.err, HasSubstr("error[SM3010] a separate file is missing or cannot be opened")) << command[0];
            EXPECT_THAT(run.err, HasSubstr("nothing was written: 1 file of it could not be read")) << command[0];
            EXPECT_THAT(directory.Files(), ElementsAre("main.xml")) << command[0];
        }
}

TEST(SmodelFmt, LeavesTheOutputAloneWhenTheInputIsBroken) {
    const TestDirectory directory;
    const std::string out = directory.Write("out.xml", "old");
    EXPECT_EQ(RunTool({"fmt", "-", "-o", out}, "<project>").status, 2);
    EXPECT_EQ(directory.Read("out.xml"), "old");
    EXPECT_THAT(directory.Files(), ElementsAre("out.xml"));
}

TEST(SmodelFmt, TellsThatAnOutputCannotBeWritten) {
    const TestDirectory directory;
    for (const std::string& out : {directory.Path("absent/out.xml"), directory.Path("."), std::string("/dev/full")}) {
        const ToolRun run = RunTool({"fmt", "-", "-o", out}, LOOSE);
        EXPECT_EQ(run.status, 2) << out;
        EXPECT_THAT(run.err, HasSubstr(out + ": error: cannot write: "));
    }
    EXPECT_THAT(directory.Files(), IsEmpty());
}

TEST(SmodelFmt, TellsThatStandardOutputIsFull) {
    EXPECT_EQ(std::system(("exec " SMODEL_TOOL " fmt " SMODEL_SOURCE_DIR "/examples/models/minimal.xml >/dev/full 2>&1")), 2 << 8);
    EXPECT_EQ(std::system(("exec " SMODEL_TOOL " check " SMODEL_SOURCE_DIR "/examples/models/minimal.xml >/dev/full 2>&1")), 2 << 8);
}

TEST(SmodelFmt, EndsAtOnceWhenInterruptedAtItsInput) {
    const TestDirectory directory;
    ASSERT_EQ(::mkfifo(directory.Path("in").c_str(), 0600), 0);
    RunningTool tool({"fmt", directory.Path("in"), "-o", directory.Path("out.xml")}, {});
    const int writer = ::open(directory.Path("in").c_str(), O_WRONLY);  // waits until the command reads
    ASSERT_GE(writer, 0);
    ASSERT_EQ(::write(writer, "<project>", 9), 9);
    ::kill(tool.Process(), SIGINT);
    const ToolRun run = tool.Wait();
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.err, "smodel: error: interrupted; nothing was written\n");
    ::close(writer);
    EXPECT_THAT(directory.Files(), ElementsAre("in"));
}

TEST(SmodelFmt, WritesNothingWhenInterruptedAtItsOutput) {
    const TestDirectory directory;
    std::string content;
    for (int i = 0; i < 200'000; ++i) content += NamespaceElement("n" + std::to_string(i));
    const std::string in = directory.Write("in.xml", ModelDocument(NamespaceElement("root", content)));
    ToolRun run;
    // where the machine is busy, all may be written before it is seen
    for (int tries = 0; tries < 5 && run.status != 130; ++tries) {
        std::filesystem::remove(directory.Path("out.xml"));
        RunningTool tool({"fmt", in, "-o", directory.Path("out.xml")}, {});
        WaitFor([&] { return directory.Files().size() >= 2; });  // until the file beside the output is there
        if (tool.Pause()) run = tool.ResumeWith(SIGINT);
    }
    EXPECT_EQ(run.status, 130);
    EXPECT_THAT(directory.Files(), ElementsAre("in.xml"));
}

}  // namespace
