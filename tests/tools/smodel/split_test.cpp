#include <string>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string PACKAGE = "<packages><package><name locale=\"en\">P</name><adminAccess></adminAccess></package></packages>";
const std::string MODEL = ModelDocument(NamespaceElement("Root", NamespaceElement("Sales")) + PACKAGE);

TEST(SmodelSplit, WritesAndNamesTheFiles) {
    const TestDirectory directory;
    const ToolRun run = RunTool({"split", "-", "-d", directory.Path("parts"), "--by", "namespace,package"}, MODEL);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, IsEmpty());
    std::string expected;
    for (const char* name : {"P.qva", "Root.qvf", "Sales.qvf", "main.xml"}) expected += directory.Path("parts/") + name + "\n";
    EXPECT_EQ(run.out, expected);
    const ToolRun again = RunTool({"split", "-", "-d", directory.Path("parts")}, MODEL);
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.out, IsEmpty()) << "nothing has changed";
}

TEST(SmodelSplit, TakesTheKindsAndTheNameOfTheMainDocument) {
    const TestDirectory directory;
    EXPECT_EQ(RunTool({"split", "-", "-d", directory.Path("p"), "--by", "package", "--main", "m.xml"}, MODEL).out,
              directory.Path("p/P.qva\n") + directory.Path("p/m.xml\n"));
    EXPECT_EQ(RunTool({"split", "-", "-d", directory.Path("n"), "--by", "namespace"}, MODEL).out,
              directory.Path("n/Root.qvf\n") + directory.Path("n/Sales.qvf\n") + directory.Path("n/main.xml\n"));
    const ToolRun wrong = RunTool({"split", "-", "-d", directory.Path("x"), "--by", "folder"}, MODEL);
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("--by"));
    EXPECT_EQ(RunTool({"split", "-"}, MODEL).status, 2) << "a directory is needed";
    EXPECT_THAT(directory.Files(), ElementsAre("n", "p"));
}

TEST(SmodelSplit, TellsWhatIsLost) {
    const TestDirectory directory;
    const ToolRun run = RunTool({"split", SMODEL_SOURCE_DIR "/examples/models/everything.xml", "-d", directory.Path("parts")});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("note[SM3013] the files do not keep where its namespaces stand among its other objects"));
    EXPECT_THAT(run.err, HasSubstr("note[SM3015] that it is based on roles is not read back from its file"));
}

TEST(SmodelSplit, WritesNothingOfAnIncompleteModel) {
    const TestDirectory directory;
    const std::string main = directory.Write("main.xml", ModelDocument("<smnamespacefile filename=\"gone.qvf\"></smnamespacefile>"));
    const ToolRun run = RunTool({"split", main, "-d", directory.Path("parts")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr(directory.Path("gone.qvf") + ": cannot open: No such file"));
    EXPECT_THAT(run.err, HasSubstr("the model is not complete, so nothing was written"));
    EXPECT_THAT(directory.Files(), ElementsAre("main.xml"));
}

TEST(SmodelJoin, GivesTheCanonicalDocumentBack) {
    const TestDirectory directory;
    RunTool({"split", "-", "-d", directory.Path("parts")}, MODEL);
    const std::string canonical = RunTool({"fmt", "-"}, MODEL).out;
    const ToolRun run = RunTool({"join", directory.Path("parts/main.xml")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, canonical);
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_EQ(RunTool({"join", directory.Path("parts/main.xml"), "-o", directory.Path("out.xml")}).status, 0);
    EXPECT_EQ(directory.Read("out.xml"), canonical);
    EXPECT_THAT(RunTool({"join", "--indent", directory.Path("parts/main.xml")}).out, HasSubstr("\n  <namespace>\n"));
}

TEST(SmodelJoin, TellsWhatWasLost) {
    const TestDirectory directory;
    RunTool({"split", SMODEL_SOURCE_DIR "/examples/models/everything.xml", "-d", directory.Path("parts")});
    const ToolRun refused = RunTool({"join", directory.Path("parts/main.xml"), "-o", directory.Path("out.xml")});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("error[SM1002] the attribute isRoleBased of <package> in "));
    const ToolRun run = RunTool({"join", "--accept-loss", directory.Path("parts/main.xml"), "-o", directory.Path("out.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("note[SM3016] the files do not tell where its namespaces stood among its other objects"));
    EXPECT_THAT(run.err, HasSubstr("note: That a package is based on roles is not read from a file of its own."));
}

TEST(SmodelJoin, NeverOpensAFileElsewhere) {
    const TestDirectory directory;
    ASSERT_EQ(0, ::mkfifo(directory.Path("secret.qvf").c_str(), 0600));  // who opens it waits for ever
    ASSERT_EQ(0, ::mkdir(directory.Path("model").c_str(), 0700));
    const std::string main =
        directory.Write("model/main.xml", ModelDocument("<smnamespacefile filename=\"../secret.qvf\"></smnamespacefile>"));
    for (const char* command : {"join", "check", "fmt"}) {
        const ToolRun run = RunTool({command, main});
        EXPECT_NE(run.status, 0) << command;
        EXPECT_THAT(run.err + run.out, HasSubstr("out of the directory of the model")) << command;
    }
}

TEST(SmodelJoin, WritesNothingOfAnIncompleteModel) {
    const TestDirectory directory;
    const std::string main = directory.Write("main.xml", ModelDocument("<smnamespacefile filename=\"gone.qvf\"></smnamespacefile>"));
    const ToolRun run = RunTool({"join", main, "-o", directory.Path("out.xml")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err,
                HasSubstr("the model is not complete, so nothing was written: 1 file of it could not be read; mend what is told above"));
    EXPECT_THAT(directory.Files(), ElementsAre("main.xml"));
}

}  // namespace
