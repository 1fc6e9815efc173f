#include <string>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";

std::string Canonical(const std::string& document) {
    return CanonicalText(*schema_002_000::SMLoadModelBytes(document).project);
}

TEST(SmodelRepo, GivesBackWhatWasPut) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db");
    const ToolRun put = RunTool({"repo", "put", repository, MODELS + "minimal.xml"});
    EXPECT_EQ(put.status, 0) << put.err;
    EXPECT_EQ(put.out, "revision 1: 2 objects added, 0 changed, 0 removed\n");
    const ToolRun got = RunTool({"repo", "get", "sqlite:" + repository, "-o", "-"});
    EXPECT_EQ(got.status, 0) << got.err;
    EXPECT_EQ(got.out, RunTool({"fmt", MODELS + "minimal.xml"}).out);
    EXPECT_THAT(directory.Files(), ElementsAre("r.db"));
}

TEST(SmodelRepo, PutsANewStateOverTheOldOne) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db");
    const std::string first = Canonical(ModelDocument(NamespaceElement("a"))), second = Canonical(ModelDocument(NamespaceElement("b")));
    EXPECT_EQ(RunTool({"repo", "put", repository, "-"}, first).status, 0);
    EXPECT_EQ(RunTool({"repo", "put", repository, "-"}, second).status, 0);
    const ToolRun got = RunTool({"repo", "get", repository, "-o", "-"});
    EXPECT_THAT(got.out, HasSubstr(">b</name>"));
    EXPECT_THAT(got.out, Not(HasSubstr(">a</name>")));
}

TEST(SmodelRepo, AsksWhichOfSeveralProjects) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db");
    RunTool({"repo", "put", repository, MODELS + "minimal.xml"});
    RunTool({"repo", "put", repository, "-"}, ModelDocument(NamespaceElement("a")));
    const ToolRun asked = RunTool({"repo", "get", repository, "-o", "-"});
    EXPECT_EQ(asked.status, 2);
    EXPECT_THAT(asked.err, HasSubstr("minimal (8fcc84a2-9764-5124-98f2-981632abb095), Test (p)"));
    EXPECT_EQ(RunTool({"repo", "get", repository, "--project", "minimal", "-o", "-"}).out, RunTool({"fmt", MODELS + "minimal.xml"}).out);
    EXPECT_THAT(RunTool({"repo", "get", repository, "--project", "p", "-o", "-"}).out, HasSubstr("<name>Test</name>"));
    EXPECT_EQ(RunTool({"repo", "get", repository, "--project", "nobody", "-o", "-"}).status, 2);
}

TEST(SmodelRepo, RefusesWhatIsNoRepository) {
    const TestDirectory directory;
    const std::string document = directory.Write("a.xml", ModelDocument(NamespaceElement("a")));
    const std::string before = directory.Read("a.xml");
    for (const std::string& place : {document, directory.Path("."), directory.Path("absent/r.db")}) {
        const ToolRun put = RunTool({"repo", "put", place, document});
        EXPECT_EQ(put.status, 2) << place;
        EXPECT_THAT(put.err, HasSubstr("smodel: error: ")) << place;
    }
    EXPECT_EQ(directory.Read("a.xml"), before);
    EXPECT_EQ(RunTool({"repo", "get", directory.Path("r.db"), "-o", "-"}).status, 2);
    EXPECT_THAT(directory.Files(), ElementsAre("a.xml"));
}

TEST(SmodelRepo, DoesNotRepeatAPassword) {
    const ToolRun run = RunTool({"repo", "get", "postgresql://user:secret@/db?host=/nowhere", "-o", "-"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("postgresql://user@/db?host=/nowhere"));
    EXPECT_THAT(run.err, Not(HasSubstr("secret")));
}

TEST(SmodelRepo, MakesNoRepositoryForABrokenDocument) {
    const TestDirectory directory;
    EXPECT_EQ(RunTool({"repo", "put", directory.Path("r.db"), "-"}, "<project>").status, 2);
    EXPECT_THAT(directory.Files(), IsEmpty());
}

TEST(SmodelRepo, LeavesNothingOfAPutThatIsInterrupted) {
    const TestDirectory directory;
    const std::string in = directory.Write("in.xml", BigModel(100'000));
    RunningTool tool({"repo", "put", directory.Path("r.db"), in}, {});
    while (directory.Files().size() < 2) ::usleep(1000);
    ::usleep(20'000);
    ::kill(tool.Process(), SIGINT);
    const ToolRun run = tool.Wait();
    EXPECT_EQ(run.status, 130);
    EXPECT_THAT(run.err, HasSubstr("interrupted; nothing was written\n"));
    EXPECT_THAT(directory.Files(), ElementsAre("in.xml"));
}

TEST(SmodelRepo, WritesNothingWhenNothingChanged) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(RunTool({"repo", "put", repository, MODELS + "minimal.xml"}).status, 0);
        EXPECT_EQ(SMRepository(repository).Projects().at(0).revision, 1);
    }
}

TEST(SmodelRepo, TellsThatTheRepositoryHasMovedOn) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db");
    ASSERT_EQ(RunTool({"repo", "put", repository, "-"}, ModelDocument(NamespaceElement("first"))).status, 0);
    RunningTool slow({"repo", "put", repository, directory.Write("big.xml", BigModel(100'000))}, {});
    while (directory.Files().size() < 3) ::usleep(1000);  // until it has opened the repository
    ::usleep(100'000);
    ASSERT_EQ(RunTool({"repo", "put", repository, "-"}, ModelDocument(NamespaceElement("second"))).status, 0);
    const ToolRun run = slow.Wait();
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.err, HasSubstr("The repository has moved on"));
    EXPECT_THAT(RunTool({"repo", "get", repository, "-o", "-"}).out, HasSubstr(">second</name>"));
}

}  // namespace
