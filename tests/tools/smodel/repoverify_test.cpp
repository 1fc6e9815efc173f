#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";
const std::string FIRST = SalesModel(SubjectElement("Orders", {"Amount"})),
                  SECOND = SalesModel(SubjectElement("Orders", {"Amount", "Day"}));

class SmodelRepoVerify : public testing::Test {
  protected:
    SmodelRepoVerify() {
        repository.Put(FIRST);
        repository.Put(SECOND);
    }
    ToolRepository repository;
};

}  // namespace

TEST_F(SmodelRepoVerify, FindsASoundRepositoryClean) {
    EXPECT_EQ(repository.Run("verify").out, "revision 2: clean\n");
    const ToolRun all = repository.Run("verify", {"--all"});
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(all.out, "revision 1: clean\nrevision 2: clean\n");
    EXPECT_EQ(repository.Run("verify", {"-"}, SECOND).status, 0);
    EXPECT_EQ(repository.Run("verify", {"--at", "1", "-"}, FIRST).status, 0);
}

TEST_F(SmodelRepoVerify, FindsEachExampleClean) {
    for (const char* const name : {"minimal.xml", "foodmart.xml", "tpcds.xml", "everything.xml", "multifile/single.xml"}) {
        const ToolRepository examples;
        examples.Run("put", {MODELS + name});
        const ToolRun run = examples.Run("verify", {MODELS + name});
        EXPECT_LE(run.status, 1) << name;
        EXPECT_EQ(run.out, "revision 1: clean\n") << name;
    }
}

TEST_F(SmodelRepoVerify, NamesWhatOnlyTheRowsKeep) {
    const ToolRepository forms;
    forms.Run("put", {MODELS + "reader_forms.xml"});
    const ToolRun run = forms.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("  SCALE: \"9\" -> \"0\"\n")) << "no document has the scale of a type without one";
}

TEST_F(SmodelRepoVerify, NamesARowThatWasChangedByHand) {
    ASSERT_EQ(ChangeByHand(repository.Location(), "UPDATE SM_QUERY_ITEM SET NAME = 'Sum' WHERE NAME = 'Amount' AND END_REVISION IS NULL"),
              1);
    const ToolRun run = repository.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, AllOf(StartsWith("revision 2:\n  the rows tell something else than the document:\nchanged queryItem "),
                               HasSubstr("\n  NAME: \"Sum\" -> \"Amount\"\n")));
}

TEST_F(SmodelRepoVerify, NamesARowThatWasTakenAwayByHand) {
    ASSERT_EQ(ChangeByHand(repository.Location(), "DELETE FROM SM_QUERY_ITEM WHERE NAME = 'Day'"), 1);
    const ToolRun run = repository.Run("verify", {"--all"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out,
                AllOf(StartsWith("revision 1: clean\nrevision 2:\n"), HasSubstr("\nadded queryItem Test / Sales / Orders / Day ")));
}

TEST_F(SmodelRepoVerify, FindsADamagedPiece) {
    ASSERT_GT(ChangeByHand(repository.Location(), "UPDATE REPO_PIECE SET BYTES = x'00'"), 0);
    const ToolRun run = repository.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("revision 2:\n  the document cannot be read: "));
}

TEST_F(SmodelRepoVerify, NamesWhatAModelHasDifferent) {
    const ToolRun run = repository.Run("verify", {"-"}, FIRST);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out,
                AllOf(HasSubstr("  the model is another than the document:\n    -"), HasSubstr(": <name locale=\"en\">Day</name>\n"),
                      HasSubstr("  the model is another than the rows:\nremoved queryItem Test / Sales / Orders / Day ")));
}

TEST_F(SmodelRepoVerify, RefusesWhatIsNotThere) {
    EXPECT_EQ(repository.Run("verify", {"--at", "3"}).status, 2);
    EXPECT_EQ(repository.Run("verify", {"--project", "nobody"}).status, 2);
    EXPECT_EQ(repository.Run("verify", {repository.directory.Path("absent.xml")}).status, 2);
    EXPECT_EQ(repository.Run("verify", {"--all", "--at", "1"}).status, 2);
    EXPECT_EQ(RunTool({"repo", "verify", repository.directory.Path("absent.db")}).status, 2);
}
