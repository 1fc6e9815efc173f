#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/toolrun.h"

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(Smodel, EndsWithStatusTwoOnWrongUsage) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{},
                                                  {"nonsense"},
                                                  {"check"},
                                                  {"check", "--nonsense", "a.xml"},
                                                  {"fmt", "a.xml", "b.xml"},
                                                  {"rename", "a.xml", "A=B"},
                                                  {"check", "a.xml", "-o", "x"}}) {
        const ToolRun run = RunTool(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.out, IsEmpty());
        EXPECT_NE(run.err, "");
    }
}

TEST(Smodel, RefusesAnEmptyTextForWhatNamesSomething) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db"), model = SMODEL_SOURCE_DIR "/examples/models/minimal.xml";
    ASSERT_EQ(RunTool({"repo", "put", repository, model, "-m", "", "--author", ""}).status, 0) << "these are texts";
    for (const std::vector<std::string>& words : {std::vector<std::string>{"repo", "put", repository, model, "--base", ""},
                                                  {"repo", "put", repository, model, "--base="},
                                                  {"repo", "put", repository, model, "--project", ""},
                                                  {"repo", "get", repository, "-o", "-", "--at", ""},
                                                  {"repo", "get", repository, "-o", ""},
                                                  {"repo", "verify", repository, "--at", ""},
                                                  {"repo", "verify", repository, ""},
                                                  {"repo", "log", repository, ""},
                                                  {"repo", "diff", repository, "1", ""},
                                                  {"repo", "restore", repository, "[minimal]@1", "--base", ""},
                                                  {"fmt", model, "-o", ""}}) {
        const ToolRun run = RunTool(words);
        EXPECT_EQ(run.status, 2) << words[1] << run.out;
        EXPECT_THAT(run.out, IsEmpty());
        EXPECT_NE(run.err, "");
    }
    EXPECT_THAT(RunTool({"repo", "put", repository, model, "--base", ""}).err, HasSubstr("--base: is given an empty text"));
}

TEST(Smodel, PrintsHelpAndVersionWhenAsked) {
    const ToolRun help = RunTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("Exit status: 0 clean"));
    EXPECT_THAT(help.err, IsEmpty());
    EXPECT_EQ(RunTool({"help"}).out, help.out);
    const ToolRun check = RunTool({"check", "--help"});
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(RunTool({"help", "check"}).out, check.out);
    EXPECT_EQ(RunTool({"help", "repo", "put"}).out, RunTool({"repo", "put", "--help"}).out);
    EXPECT_THAT(RunTool({"--version"}).out, ::testing::StartsWith("smodel "));
}

}  // namespace
