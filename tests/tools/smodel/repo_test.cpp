#include <csignal>
#include <memory>
#include <string>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "objects/face/smmodelstore_002_000.h"
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

/** So many that a put takes a while to look at them. */
#ifdef NDEBUG
constexpr int OBJECTS = 100'000;
#else
constexpr int OBJECTS = 15'000;
#endif

/** Begins the first put into a repository, and ends it by a signal when the repository is there. `meanwhile` comes before that. */
template <class Meanwhile>
ToolRun InterruptFirstPut(const TestDirectory& directory, const Meanwhile& meanwhile) {
    const std::string in = directory.Write("in.xml", BigModel(OBJECTS)), repository = directory.Path("r.db");
    RunningTool tool({"repo", "put", repository, in}, {});
    while (directory.Files().size() < 2) ::usleep(1'000);
    ::usleep(20'000);
    meanwhile(repository);
    ::kill(tool.Process(), SIGINT);
    return tool.Wait();
}

TEST(SmodelRepo, LeavesAnEmptyRepositoryOfAFirstPutThatIsInterrupted) {
    const TestDirectory directory;
    const ToolRun run = InterruptFirstPut(directory, [](const std::string&) {});
    EXPECT_EQ(run.status, 130);
    EXPECT_THAT(run.err, HasSubstr("interrupted; nothing was written\n"));
    const std::string repository = directory.Path("r.db");
    EXPECT_TRUE(SMRepository(repository).Projects().empty());
    EXPECT_EQ(RunTool({"repo", "put", repository, MODELS + "minimal.xml"}).status, 0);
    EXPECT_THAT(directory.Files(), ElementsAre("in.xml", "r.db"));
}

TEST(SmodelRepo, KeepsWhatAnotherPutsWhileTheFirstPutFails) {
    const TestDirectory directory;
    std::unique_ptr<SMRepository> other;
    InterruptFirstPut(directory, [&](const std::string& repository) {
        other = std::make_unique<SMRepository>(repository, SMRepository::createIfAbsent);
    });
    const auto context = other->NewProject();
    ASSERT_TRUE(schema_002_000::SMPutModel(*schema_002_000::SMLoadModel(MODELS + "minimal.xml").project, *context).IsDone());
    EXPECT_EQ(SMRepository(directory.Path("r.db")).Projects().size(), 1u);
}

TEST(SmodelRepo, MakesNoRepositoryForAProjectThatMustBeThere) {
    const TestDirectory directory;
    EXPECT_EQ(RunTool({"repo", "put", directory.Path("r.db"), MODELS + "minimal.xml", "--project", "nobody"}).status, 2);
    EXPECT_THAT(directory.Files(), IsEmpty());
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
