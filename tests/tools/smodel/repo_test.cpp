#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "objects/face/smmodelstore_002_000.h"
#include "tests/support/waitfor.h"
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
    EXPECT_THAT(asked.err, HasSubstr("1: minimal (8fcc84a2-9764-5124-98f2-981632abb095), 2: Test (p)"));
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

/** How many projects stand there; none where no repository is, or a process that is stopped holds a lock of it. */
std::optional<std::size_t> ProjectsOf(const std::string& file) {
    try {
        return SMRepository(file).Projects().size();
    } catch (const TklRuntimeError&) {
        return std::nullopt;
    }
}

/** Begins the first put into a repository, and ends it by a signal when the repository is there. `meanwhile` comes before that. */
template <class Meanwhile>
ToolRun InterruptFirstPut(const TestDirectory& directory, const Meanwhile& meanwhile) {
    const std::string in = directory.Write("in.xml", BigModel(OBJECTS)), repository = directory.Path("r.db");
    ToolRun run;
    // where the machine is busy, the put may be done before it is seen, or stop while it holds a lock
    for (int tries = 0; tries < 5 && run.status != 130; ++tries) {
        for (const std::string& file : directory.Files())
            if (file != "in.xml") std::filesystem::remove(directory.Path(file));
        RunningTool tool({"repo", "put", repository, in}, {});
        WaitFor([&] { return ProjectsOf(repository).has_value(); });
        if (!tool.Pause() || ProjectsOf(repository) != 0u) continue;
        meanwhile(repository);
        run = tool.ResumeWith(SIGINT);
    }
    return run;
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
    const ToolRun run = InterruptFirstPut(directory, [&](const std::string& repository) {
        other = std::make_unique<SMRepository>(repository, SMRepository::createIfAbsent);
    });
    ASSERT_EQ(run.status, 130) << run.err;
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

TEST(SmodelRepo, TakesAProjectByWhatTheListShows) {
    const ToolRepository repository;
    const auto model = [](const std::string& id, const std::string& name) {
        return "<?xml version=\"1.0\"?>\n<project id=\"" + id + "\"><name>" + name +
               "</name><locales><locale>en</locale></locales><defaultLocale>en</defaultLocale>" + NamespaceElement(id) + "</project>";
    };
    for (const auto& [id, name] : {std::pair("a", "One"), {"b", "Two"}, {"c", "Two"}, {"3", "Four"}})
        ASSERT_EQ(repository.Put(model(id, name)).status, 0);
    const auto got = [&](const std::string& project) { return repository.Run("get", {"-o", "-", "--project", project}); };
    for (const auto& [project, space] : {std::pair("a", "a"), {"One", "a"}, {"1", "a"}, {"2", "b"}, {"4", "3"}})
        EXPECT_THAT(got(project).out, HasSubstr("<name locale=\"en\">" + std::string(space) + "</name>")) << project;
    EXPECT_THAT(got("3").out, HasSubstr("<name>Four</name>")) << "an id comes before a number";
    EXPECT_THAT(got("Two").err, HasSubstr("holds several projects 'Two', name one by its id or number: 2: Two (b), 3: Two (c)\n"));
    EXPECT_THAT(got("Five").err, HasSubstr("holds no project 'Five'; there are: 1: One (a), 2: Two (b), 3: Two (c), 4: Four (3)\n"));
    EXPECT_THAT(repository.Run("log").err, HasSubstr("holds more than one project, name one of them by --project: 1: One (a), "));
}

TEST(SmodelRepo, TellsWhatStandsThoughStandardOutputIsFull) {
    const TestDirectory directory;
    const std::string repository = directory.Path("r.db"), told = directory.Path("told");
    const auto run = [&](const std::string& words) {
        return std::system(("exec " SMODEL_TOOL " repo " + words + " >/dev/full 2>" + told).c_str());
    };
    for (const char* const model : {"minimal.xml", "minimal.xml"}) {
        const bool isFirst = !std::filesystem::exists(repository);
        EXPECT_EQ(run("put " + repository + " " + MODELS + model), 2 << 8);
        EXPECT_EQ(directory.Read("told").find("revision 1 was saved, though this cannot be told on standard output") != std::string::npos,
                  isFirst);
    }
    const std::string other = directory.Write("other.xml", ModelDocument(NamespaceElement("n")));
    EXPECT_EQ(run("put " + repository + " " + other + " --project 1"), 2 << 8);
    EXPECT_EQ(run("prune " + repository + " --keep 1"), 2 << 8);
    EXPECT_THAT(directory.Read("told"), HasSubstr("the old revisions were removed, though this cannot be told on standard output; the "
                                                  "oldest is now 2"));
}

TEST(SmodelRepo, SaysThatNothingWasWrittenWhenInterruptedAtItsInput) {
    const TestDirectory directory;
    ASSERT_EQ(::mkfifo(directory.Path("in").c_str(), 0600), 0);
    RunningTool tool({"repo", "put", directory.Path("r.db"), directory.Path("in")}, {});
    const int writer = ::open(directory.Path("in").c_str(), O_WRONLY);  // waits until the command reads
    ASSERT_GE(writer, 0);
    ::kill(tool.Process(), SIGINT);
    const ToolRun run = tool.Wait();
    ::close(writer);
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.err, "smodel: error: interrupted; nothing was written\n");
    EXPECT_THAT(directory.Files(), ElementsAre("in"));
}

}  // namespace
