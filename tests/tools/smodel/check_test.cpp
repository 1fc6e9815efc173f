#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

const std::string CLEAN = ModelDocument(NamespaceElement("Sales") + MapElement("m", "v"));
const std::string ODD = ModelDocument(NamespaceElement("Sales", "<odd></odd><odd></odd><even></even>"));

std::size_t LinesWith(const std::string& text, const std::string& word) {
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++count;
    return count;
}

TEST(SmodelCheck, CountsTheObjectsOfACleanModelByKind) {
    const TestDirectory directory;
    const ToolRun run = RunTool({"check", directory.Write("a.xml", CLEAN)});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "           1  project\n           1  namespace\n           1  parameterMap\n           1  parameterMapEntry\n");
    EXPECT_THAT(run.err, IsEmpty());
}

TEST(SmodelCheck, PrintsPlaceSeverityCodeMessageAndObject) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", ODD);
    const ToolRun run = RunTool({"check", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith(path + ":2:"));
    EXPECT_THAT(run.out, ContainsRegex(":2:[0-9]+: error\\[SM1001\\] <odd> in \\[Sales\\] is not kept \\(11 bytes\\)\n"));
    EXPECT_THAT(run.err, IsEmpty());
}

TEST(SmodelCheck, TellsEachLossOnce) {
    const TestDirectory directory;
    const std::string out = RunTool({"check", directory.Write("a.xml", ODD)}).out;
    EXPECT_EQ(LinesWith(out, "error[SM1001] <odd>"), 2U);
    EXPECT_EQ(LinesWith(out, "error[SM1001] <even>"), 1U);
    EXPECT_EQ(LinesWith(out, "Unknown tag"), 0U);
}

TEST(SmodelCheck, FoldsRepeatedEventsWithTheirNumber) {
    const TestDirectory directory;
    const std::string event = "That a package is based on roles is not read";
    directory.Write("p.qva", "<package isRoleBased=\"true\"><name locale=\"en\">p</name><adminAccess></adminAccess></package>");
    const std::string placeholder = "<packagefile id=\"i\" name=\"p\" filename=\"p.qva\" filepath=\"\"></packagefile>";
    const std::string path = directory.Write(
        "a.xml", ModelDocument(NamespaceElement("n") + "<packages>" + placeholder + placeholder + placeholder + "</packages>"));
    const ToolRun folded = RunTool({"check", path}), all = RunTool({"check", "--all", path});
    EXPECT_EQ(LinesWith(all.out, event), 3U) << all.out;
    EXPECT_EQ(LinesWith(folded.out, event), 1U);
    EXPECT_THAT(folded.out, HasSubstr(" (3 times)"));
    EXPECT_THAT(all.out, Not(HasSubstr(" times)")));
}

TEST(SmodelCheck, TellsEachMissingFileOnce) {
    const TestDirectory directory;
    const std::string placeholder = "<smnamespacefile id=\"i\" name=\"n\" filename=\"gone.qvf\" filepath=\"\"></smnamespacefile>";
    const std::string path = directory.Write("a.xml", ModelDocument(NamespaceElement("Sales", placeholder + "\n" + placeholder)));
    const std::string out = RunTool({"check", path}).out;
    EXPECT_EQ(LinesWith(out, "gone.qvf: cannot open: No such file or directory"), 2U) << out;
    EXPECT_EQ(LinesWith(out,
                        "is not kept (83 bytes): error[SM3010] a separate file is missing or cannot be opened: error[SM2021] Error reading "
                        "SM model from XML: "),
              2U);
}

TEST(SmodelCheck, TellsTheReferencesThatLeadNowhere) {
    const TestDirectory directory;
    const std::string path = directory.Write(
        "a.xml",
        ModelDocument("\n" + NamespaceElement("Sales",
                                              "\n<shortcut><name locale=\"en\">a</name><refobj>[Sales]</refobj></shortcut>"
                                              "\n<shortcut><name locale=\"en\">b</name><refobj>[Sales].[gone]</refobj></shortcut>"
                                              "\n<shortcut><name locale=\"en\">c</name><refobj>[Sales].[gone]</refobj></shortcut>")));
    const ToolRun run = RunTool({"check", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_THAT(run.out, StartsWith(path +
                                    ":5:45: warning[SM3001] the reference [Sales].[gone] in 'refobj' names no object of the model "
                                    "[[Sales].[b]]\n" +
                                    path +
                                    ":6:45: warning[SM3001] the reference [Sales].[gone] in 'refobj' names no object of the model "
                                    "[[Sales].[c]]\n"));
    EXPECT_THAT(run.out, EndsWith("3  shortcut\n"));
}

TEST(SmodelCheck, ReadsStandardInput) {
    EXPECT_EQ(RunTool({"check", "-"}, CLEAN).status, 0);
    EXPECT_THAT(RunTool({"check", "-"}, ODD).out, StartsWith("<stdin>:2:"));
}

TEST(SmodelCheck, GoesOnWhereStandardInputStands) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", "a line before\n" + CLEAN);
    const std::string script = "{ read -r line; " SMODEL_TOOL " check -; } < " + path + " > " + directory.Path("out");
    EXPECT_EQ(std::system(("sh -c '" + script + "'").c_str()), 0);
    EXPECT_THAT(directory.Read("out"), HasSubstr("1  namespace"));
}

TEST(SmodelCheck, TellsOnStandardErrorWhyADocumentCannotBeRead) {
    const TestDirectory directory;
    const std::string absent = directory.Path("absent.xml"), cut = directory.Write("cut.xml", CLEAN.substr(0, 150));
    const std::string empty = directory.Write("empty.xml", ""), other = directory.Write("other.xml", "<a></a>");
    struct Case {
        std::string path, told;
    };
    for (const Case& bad : {Case{absent, absent + ": error[SM2021] cannot open: No such file or directory\n"},
                            Case{directory.Path("."), directory.Path(".") + ": error[SM2023] cannot read: Is a directory\n"},
                            Case{cut, cut + ":2:"}, Case{empty, empty + ":1:1: error[SM2002] the document is empty\n"},
                            Case{other, other + ":1:1: error[SM2003] no model document: the root element is <a>, not <project>\n"}}) {
        const ToolRun run = RunTool({"check", bad.path});
        EXPECT_EQ(run.status, 2) << bad.path;
        EXPECT_THAT(run.out, IsEmpty());
        EXPECT_THAT(run.err, StartsWith(bad.told));
    }
}

TEST(SmodelCheck, HandsNoControlCharacterToATerminal) {
    const ToolRun run = RunTool({"check", "-"}, ModelDocument(NamespaceElement("a\xC2\x9B"
                                                                               "31m",
                                                                               "<odd></odd>")));
    EXPECT_THAT(run.out, HasSubstr("[a\\x9b31m]"));
    EXPECT_THAT(run.out, Not(HasSubstr("\xC2\x9B")));
}

TEST(SmodelCheck, ColoursOnATerminalAlone) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", ODD);
    EXPECT_THAT(RunToolOnTerminal({"check", path}).out, HasSubstr("\x1b[1;31m"));
    EXPECT_THAT(RunToolOnTerminal({"NO_COLOR=1", "check", path}).out, Not(HasSubstr("\x1b[")));
    EXPECT_THAT(RunTool({"check", path}).out, Not(HasSubstr("\x1b[")));
}

}  // namespace
