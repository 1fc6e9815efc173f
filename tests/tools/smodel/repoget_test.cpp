#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "objects/face/smmodelstore_002_000.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";

/** A save without its document. */
void PutRowsOnly(const std::string& location, const std::string& document) {
    SMRepository repository(location, SMRepository::createIfAbsent);
    const auto context = repository.Projects().empty() ? repository.NewProject() : repository.OpenProject(1);
    const schema_002_000::SMLoadResult loaded = schema_002_000::SMLoadModelBytes(document);
    ASSERT_TRUE(loaded.project->write(*context));
}

TEST(SmodelRepoGet, GivesEachExampleBackByteForByte) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(MODELS)) {
        if (entry.path().extension() != ".xml") continue;
        const ToolRepository repository;
        const std::string path = entry.path().string();
        repository.leftUnverified = entry.path().stem() == "reader_forms";  // it has forms that its document alone keeps
        EXPECT_LE(repository.Run("put", {"--accept-loss", path}).status, 1) << path;
        EXPECT_TRUE(repository.Get() == RunTool({"fmt", "--accept-loss", path}).out) << path;
    }
}

TEST(SmodelRepoGet, LoadsRowsWithoutAFindingThoughTheyDoNotCarryAll) {
    for (const char* const name : {"foodmart.xml", "everything.xml", "tpcds.xml", "multifile/main.xml"}) {
        const ToolRepository repository;
        repository.Run("put", {MODELS + name});
        const ToolRun rows = repository.Run("get", {"--rows", "-o", "-"});
        EXPECT_EQ(rows.status, 0) << name;
        EXPECT_EQ(rows.err, "") << name;
        for (const char* const form : {"mdQuery", "storedProcedure", "queryOperation"})
            EXPECT_EQ(rows.out.find(std::string("<") + form) == std::string::npos,
                      repository.Get().find(std::string("<") + form) == std::string::npos)
                << name << " " << form;
    }
}

TEST(SmodelRepoGet, GivesRowsAsADocumentThatFmtAndPutTake) {
    for (const char* const name : {"foodmart.xml", "everything.xml", "tpcds.xml"}) {
        const ToolRepository repository;
        EXPECT_EQ(repository.Run("put", {MODELS + name}).status, 0);
        const std::string rows = repository.Run("get", {"--rows", "-o", "-"}).out;
        const ToolRun formatted = RunTool({"fmt", "-"}, rows);
        EXPECT_EQ(formatted.status, 0) << name << formatted.err;
        EXPECT_EQ(formatted.out, rows) << name;
        // each object is found again; what rows do not tell is lost, texts in other locales among it
        EXPECT_THAT(repository.Put(rows).out, AllOf(HasSubstr(": 0 objects added, "), HasSubstr(" changed, 0 removed"))) << name;
    }
}

TEST(SmodelRepoGet, TellsOfAQueryThatItsRecordDoesNotHoldAnyMore) {
    const ToolRepository repository;
    repository.Run("put", {MODELS + "foodmart.xml"});
    EXPECT_EQ(ChangeByHand(repository, "DELETE FROM SM_REMAIN_INFO WHERE NAME = 'mdQuery'"), 1);
    const ToolRun rows = repository.Run("get", {"--rows", "-o", "-"});
    EXPECT_EQ(rows.status, 1);
    EXPECT_THAT(rows.err, HasSubstr("Constructing a definition with query type 'mdQuery', which we don't know what to do with."));
    EXPECT_THAT(rows.err, Not(HasSubstr("'storedProcedure'"))) << "its own is there";
}

TEST(SmodelRepoGet, GivesEachRevisionBackByNumber) {
    const ToolRepository repository;
    const std::string models[] = {SalesModel(""), SalesModel(SubjectElement("Orders", {"Amount"})), SalesModel("")};
    for (const std::string& model : models) EXPECT_LE(repository.Put(model).status, 1);
    for (int revision = 1; revision <= 3; ++revision) {
        EXPECT_EQ(repository.Get(std::to_string(revision)), Formatted(models[revision - 1])) << revision;
        const ToolRun rows = repository.Run("get", {"--rows", "--at", std::to_string(revision), "-o", "-"});
        EXPECT_EQ(rows.out.find("Amount") != std::string::npos, revision == 2);
    }
}

TEST(SmodelRepoGet, FindsTheRevisionOfAMomentOrADay) {
    const ToolRepository repository;
    repository.Put(SalesModel(""));
    repository.Put(SalesModel(SubjectElement("Orders", {})));
    const std::string first = std::string(SMRepository(repository.Location()).Revisions(1)[0].savedAt.ToString().utf8());
    EXPECT_EQ(repository.Get("2999-01-01T00:00:00"), Formatted(SalesModel(SubjectElement("Orders", {}))));
    EXPECT_EQ(repository.Get("2999-01-01"), Formatted(SalesModel(SubjectElement("Orders", {}))));
    EXPECT_EQ(repository.Run("get", {"--at", first.substr(0, 10), "-o", "-"}).status, 0) << "a day reaches to its end";
    const ToolRun early = repository.Run("get", {"--at", "1999-01-01", "-o", "-"});
    EXPECT_EQ(early.status, 2);
    EXPECT_THAT(early.err, HasSubstr("Nothing had been saved at 1999-01-01; the oldest revision, 1, is of " + first + " (UTC)."));
}

TEST(SmodelRepoGet, RefusesWhatIsNoRevision) {
    const ToolRepository repository;
    repository.Put(SalesModel(""));
    for (const char* const at : {"0", "2", "-1", "yesterday", "2026-13-40", "2026-01-01T00", "99999999999999999999", "1x"}) {
        const ToolRun run = repository.Run("get", {"--at=" + std::string(at), "-o", repository.directory.Path("out.xml")});
        EXPECT_EQ(run.status, 2) << at;
        EXPECT_THAT(run.err, HasSubstr("smodel: error: ")) << at;
    }
    EXPECT_FALSE(std::filesystem::exists(repository.directory.Path("out.xml")));
}

TEST(SmodelRepoGet, TakesTheRowsOfARevisionWithoutDocument) {
    const ToolRepository repository;
    PutRowsOnly(repository.Location(), SalesModel(SubjectElement("Orders", {})));
    const ToolRun got = repository.Run("get", {"-o", "-"});
    EXPECT_LE(got.status, 1);
    EXPECT_THAT(got.err, HasSubstr("revision 1 was saved without its document, so it comes from its rows"));
    EXPECT_THAT(got.out, HasSubstr("<name locale=\"en\">Orders</name>"));
}

TEST(SmodelRepoGet, LeavesTheOldFileWhenTheDocumentIsDamaged) {
    const ToolRepository repository;
    repository.Run("put", {MODELS + "foodmart.xml"});
    ASSERT_GT(ChangeByHand(repository, "UPDATE REPO_PIECE SET BYTES = x'00'"), 0);
    const std::string out = repository.directory.Write("out.xml", "as it was");
    const ToolRun got = repository.Run("get", {"-o", out});
    EXPECT_EQ(got.status, 2);
    EXPECT_THAT(got.err, HasSubstr(" is damaged. Bring back a copy of the repository, or take what the rows tell of the revision."));
    EXPECT_EQ(repository.directory.Read("out.xml"), "as it was");
}

}  // namespace
