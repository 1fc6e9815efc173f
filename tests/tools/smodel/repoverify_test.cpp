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
    forms.leftUnverified = true;
    forms.Run("put", {"--accept-loss", MODELS + "reader_forms.xml"});
    const ToolRun run = forms.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("  SCALE: \"9\" -> \"0\"\n")) << "no document has the scale of a type without one";
}

TEST_F(SmodelRepoVerify, NamesARowThatWasChangedByHand) {
    ASSERT_EQ(ChangeByHand(repository, "UPDATE SM_QUERY_ITEM SET NAME = 'Sum' WHERE NAME = 'Amount' AND END_REVISION IS NULL"), 1);
    const ToolRun run = repository.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, AllOf(StartsWith("revision 2:\n  the rows tell something else than the document:\nchanged queryItem "),
                               HasSubstr("\n  NAME: \"Sum\" -> \"Amount\"\n")));
}

TEST_F(SmodelRepoVerify, NamesAProjectThatTheRegistryCallsOtherwise) {
    ASSERT_EQ(ChangeByHand(repository, "UPDATE REPO_PROJECT SET NAME = 'Other', PROJECT_ID = 'o'"), 1);
    const ToolRun run = repository.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out,
              "revision 2:\n  REPO_PROJECT: its id is 'o', and that of SM_PROJECT is 'p'\n"
              "  REPO_PROJECT: its name is 'Other', and that of SM_PROJECT is 'Test'\n");
    EXPECT_EQ(repository.Run("verify", {"--at", "1"}).out, "revision 1: clean\n") << "the registry tells the newest name";
}

TEST_F(SmodelRepoVerify, FindsAProjectThatWasRenamedClean) {
    std::string renamed = SECOND;
    renamed.replace(renamed.find(">Test<"), 6, ">Renamed<");
    ASSERT_EQ(repository.Put(renamed).out, "revision 3: 0 objects added, 1 changed, 0 removed\n");
    EXPECT_EQ(repository.Run("verify", {"--all"}).out, "revision 1: clean\nrevision 2: clean\nrevision 3: clean\n");
}

TEST_F(SmodelRepoVerify, ReadsTheRecordedDocumentWithinTheLimitsThatAreGiven) {
    std::string deep = SubjectElement("Orders", {"Amount"});
    for (int depth = 0; depth < 1'000; ++depth) deep = "<folder><name locale=\"en\">f</name>" + deep + "</folder>";
    repository.leftUnverified = true;
    ASSERT_EQ(repository.Put(SalesModel(deep), {"--limits", "depth=2000"}).status, 0);
    EXPECT_EQ(repository.Run("verify", {"--limits", "depth=2000"}).out, "revision 3: clean\n");
    const ToolRun run = repository.Run("verify");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, AllOf(StartsWith("revision 3:\n  the document is no model\n"), HasSubstr("error[SM2102]")));
}

TEST_F(SmodelRepoVerify, NamesARowThatWasTakenAwayByHand) {
    ASSERT_EQ(ChangeByHand(repository, "DELETE FROM SM_QUERY_ITEM WHERE NAME = 'Day'"), 1);
    const ToolRun run = repository.Run("verify", {"--all"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out,
                AllOf(StartsWith("revision 1: clean\nrevision 2:\n"), HasSubstr("\nadded queryItem Test / Sales / Orders / Day ")));
}

TEST_F(SmodelRepoVerify, FindsADamagedPiece) {
    ASSERT_GT(ChangeByHand(repository, "UPDATE REPO_PIECE SET BYTES = x'00'"), 0);
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

TEST_F(SmodelRepoVerify, TellsWhatToDoInsteadOfAllWithSomethingElse) {
    for (const std::vector<std::string>& rest : {std::vector<std::string>{"--all", "--at", "1"}, {"--all", "-"}}) {
        const ToolRun run = repository.Run("verify", rest, SECOND);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.err, HasSubstr("leave it out to look at one revision or to compare a model with it, or give it alone"));
    }
}

namespace {

/** What is told of a store that was damaged by hand; a statement must change something. */
class SmodelRepoVerifyRows : public SmodelRepoVerify {
  protected:
    std::string Damaged(const std::string& statement) {
        EXPECT_GT(ChangeByHand(repository, statement), 0) << statement;
        const ToolRun run = repository.Run("verify");
        EXPECT_EQ(run.status, 1) << run.out << run.err;
        return run.out;
    }
};

}  // namespace

TEST_F(SmodelRepoVerifyRows, NamesAnObjectWhoseParentDoesNotStand) {
    EXPECT_THAT(Damaged("UPDATE SM_QUERY_ITEM SET ITEM_FOLDER_ID = 'nobody' WHERE NAME = 'Day'"),
                HasSubstr("' hangs below 'nobody', which does not stand\n"));
}

TEST_F(SmodelRepoVerifyRows, NamesAnObjectThatHangsBelowItself) {
    EXPECT_THAT(Damaged("UPDATE SM_QUERY_SUBJECT SET SECTION_ID = QS_ID"), HasSubstr("' hangs below itself\n"));
}

TEST_F(SmodelRepoVerifyRows, NamesAnObjectThatStandsTwice) {
    repository.Put(
        SalesModel("<querySubject><name locale=\"en\">Orders</name><queryItem><name locale=\"en\">Amount</name>"
                   "<expression>2</expression></queryItem></querySubject>"));
    EXPECT_THAT(Damaged("UPDATE SM_QUERY_ITEM SET END_REVISION = NULL WHERE NAME = 'Amount'"),
                HasSubstr("' stands twice, in the versions 1 and 2\n"));
}

TEST_F(SmodelRepoVerifyRows, NamesAnIdThatTwoKindsHave) {
    EXPECT_THAT(Damaged("UPDATE SM_QUERY_ITEM SET QS_ITEM_ID = 'p' WHERE NAME = 'Day'"),
                HasSubstr("the id 'p' is that of an object in SM_"));
}

TEST_F(SmodelRepoVerifyRows, NamesARecordWithoutAnOwner) {
    EXPECT_THAT(Damaged("UPDATE SM_REMAIN_INFO SET PARENT_ID = 'nobody' WHERE NAME = 'locales'"),
                HasSubstr("  SM_REMAIN_INFO: record 'locales' of 'nobody' belongs to nothing that stands\n"));
}

TEST_F(SmodelRepoVerifyRows, NamesATextWithoutItsVersion) {
    repository.Put(
        SalesModel("<querySubject><name locale=\"en\">Orders</name><queryItem><name locale=\"en\">Amount</name>"
                   "<name locale=\"fr\">Montant</name><expression>2</expression></queryItem></querySubject>"));
    ASSERT_EQ(repository.Run("verify").out, "revision 3: clean\n");
    EXPECT_THAT(Damaged("UPDATE SM_LANG_TEXT SET OBJECT_VERSION_NO = 7"), HasSubstr("' belongs to version 7, and version 2 stands\n"));
    EXPECT_THAT(Damaged("UPDATE SM_LANG_TEXT SET OBJECT_ID = 'nobody'"),
                HasSubstr("  SM_LANG_TEXT: name[fr] of 'nobody' belongs to nothing that stands\n"));
}

TEST_F(SmodelRepoVerifyRows, NamesOrdersThatFitNothing) {
    const auto insert = [](const char* values) {
        return "INSERT INTO REPO_ORDER (PROJECT_NO, PARENT_ID, TABLE_NAME, FIRST_REVISION, IDS) VALUES (1, " + std::string(values) + ")";
    };
    EXPECT_THAT(Damaged(insert("'nobody', 'SM_QUERY_ITEM', 1, 'a'")),
                HasSubstr("  REPO_ORDER: the order of SM_QUERY_ITEM below 'nobody' belongs to nothing that stands\n"));
    EXPECT_THAT(Damaged(insert("'p', 'SM_NOTHING', 1, 'a'")), HasSubstr("the order of SM_NOTHING below 'p' is that of no table\n"));
    EXPECT_THAT(Damaged(insert("'p', 'SM_DATASOURCE', 1, 'a' || char(10) || 'b' || char(10) || 'a'")),
                HasSubstr("the order of SM_DATASOURCE below 'p' lists 'a' twice\n"));
    EXPECT_THAT(Damaged(insert("'p', 'SM_DATASOURCE', 2, ''")),
                AllOf(HasSubstr("the order of SM_DATASOURCE below 'p' stands twice\n"), HasSubstr("lists an empty id\n")));
}

TEST_F(SmodelRepoVerifyRows, NamesRevisionsThatAreNotThere) {
    EXPECT_THAT(Damaged("UPDATE SM_QUERY_ITEM SET END_REVISION = 9 WHERE NAME = 'Day'"),
                HasSubstr("' ends in revision 9, which is not there\n"));
    EXPECT_THAT(Damaged("DELETE FROM REPO_REVISION WHERE REVISION_NO = 2"),
                HasSubstr("  REPO_PROJECT: its newest revision is 2, and that of REPO_REVISION is 1\n"));
}
