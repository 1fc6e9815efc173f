#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string Model(const std::string& value) {
    return ModelDocument(NamespaceElement("root", NamespaceElement("A") + NamespaceElement("B") + NamespaceElement("x=y")) +
                         MapElement("m", value));
}

TEST(SmodelRename, WritesTheRenamedModel) {
    const ToolRun run = RunTool({"rename", "-", "A=Z", "-o", "-"}, Model("[A].[x].[y]"));
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr(">Z</name>"));
    EXPECT_THAT(run.out, HasSubstr("<value>[Z].[x].[y]</value>"));
    EXPECT_THAT(run.err, IsEmpty());
}

TEST(SmodelRename, Swaps) {
    const ToolRun run = RunTool({"rename", "-", "A=B", "B=A", "-o", "-"}, Model("[A].[x].[y] [B].[x].[y]"));
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("<value>[B].[x].[y] [A].[x].[y]</value>"));
}

TEST(SmodelRename, TakesAnEqualsSignBehindABackslashForAPartOfTheName) {
    const ToolRun run = RunTool({"rename", "-", "x\\=y=C\\D=E", "-o", "-"}, Model("[x=y].[x].[y]"));
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("<value>[C\\D=E].[x].[y]</value>"));
}

TEST(SmodelRename, ListsWhatStillUsesTheOldName) {
    const TestDirectory directory;
    const std::string out = directory.Path("out.xml");
    const ToolRun run = RunTool({"rename", "-", "A=Z", "-o", out}, Model("[A].[x]"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr(out + ":2:"));
    EXPECT_THAT(run.err,
                ContainsRegex("warning: This text still names the namespace 'A': .* \\[\\(parameterMapEntry\\)\\.\\(\\)\\.\\(e1\\)\\]\n"));
    EXPECT_THAT(directory.Read("out.xml"), HasSubstr("<value>[A].[x]</value>"));
}

TEST(SmodelRename, WritesNothingWhenItRefuses) {
    const TestDirectory directory;
    const std::string out = directory.Write("out.xml", "old");
    for (const std::vector<std::string>& renames :
         {std::vector<std::string>{"A=B"}, {"absent=Z"}, {"A=Z", "B=Z"}, {"A"}, {"A="}, {"=A"}, {"A=[x]"}, {"[A=Z]"}}) {
        std::vector<std::string> words{"rename", "-", "-o", out};
        words.insert(words.begin() + 2, renames.begin(), renames.end());
        const ToolRun run = RunTool(words, Model("v"));
        EXPECT_EQ(run.status, 2) << renames.front();
        EXPECT_NE(run.err, "");
        EXPECT_EQ(directory.Read("out.xml"), "old");
    }
    EXPECT_THAT(directory.Files(), ElementsAre("out.xml"));
}

TEST(SmodelRename, TakesNamesOfAnyForm) {
    const std::string model = ModelDocument(NamespaceElement("[root,1]"));
    const ToolRun run = RunTool({"rename", "-", "[root,1]=a,b", "-o", "-"}, model);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr(">a,b</name>"));
}

}  // namespace
