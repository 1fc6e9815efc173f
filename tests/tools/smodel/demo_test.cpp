#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";

TEST(SmodelDemo, TakesAModelToARepositoryAndBack) {
    const TestDirectory directory;
    const ToolRun run = RunTool({"demo", "--keep", directory.Path("kept"), MODELS + "minimal.xml"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, ContainsRegex("put .* ms .* MB/s   [0-9]+ rows written\n"));
    EXPECT_THAT(run.out, ContainsRegex("get .* ms .* MB/s   [0-9]+ rows read\n"));
    EXPECT_THAT(run.out, HasSubstr("   project minimal\n     namespace Model\n"));
    EXPECT_THAT(run.out, HasSubstr("The document got is the document put, to the byte."));
    EXPECT_THAT(run.out, HasSubstr("1 model taken to a repository and back: 1 the same to the byte, 0 with differences\n"));
    EXPECT_EQ(RunTool({"fmt", directory.Path("kept/1-minimal.xml")}).out, RunTool({"fmt", MODELS + "minimal.xml"}).out);
}

TEST(SmodelDemo, CutsWideLevelsShort) {
    std::string content;
    for (int i = 0; i < 9; ++i) content += NamespaceElement("n" + std::to_string(i));
    const TestDirectory directory;
    const ToolRun run = RunTool({"demo", directory.Write("a.xml", ModelDocument(NamespaceElement("root", content)))});
    EXPECT_THAT(run.out, HasSubstr("       namespace n4\n       and 4 more\n"));
    EXPECT_THAT(run.out, Not(HasSubstr("namespace n5")));
}

TEST(SmodelDemo, ShowsTheDifferencesThatARepositoryMakes) {
    const TestDirectory directory;
    const std::string folder = "<folder><name locale=\"en\">f</name><name locale=\"fr\">dossier</name></folder>";
    const ToolRun run = RunTool({"demo", directory.Write("a.xml", ModelDocument(NamespaceElement("root", folder)))});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("The document got differs from the document put in 1 line:\n"));
    EXPECT_THAT(run.out, ContainsRegex(" - +<name locale=\"fr\">dossier</name>\n"));
}

TEST(SmodelDemo, LeavesNothingBehind) {
    const TestDirectory directory;
    EXPECT_EQ(RunTool({"TMPDIR=" + directory.Path("."), "demo", MODELS + "minimal.xml"}).status, 0);
    EXPECT_THAT(directory.Files(), ElementsAre());
}

TEST(SmodelDemo, GoesOnBehindABrokenModel) {
    const TestDirectory directory;
    const ToolRun run = RunTool({"demo", directory.Write("a.xml", "<project>"), MODELS + "minimal.xml"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, HasSubstr("project minimal"));
}

TEST(SmodelDemo, DrawsForEyesOnly) {
    EXPECT_THAT(RunToolOnTerminal({"LC_ALL=C.UTF-8", "demo", MODELS + "minimal.xml"}).out, HasSubstr("└─ "));
    EXPECT_THAT(RunTool({"LC_ALL=C.UTF-8", "demo", MODELS + "minimal.xml"}).out, Not(HasSubstr("└─ ")));
}

}  // namespace
