#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;

const std::string ORDERS = SubjectElement("Orders", {"Amount", "Day"});

TEST(SmodelRepoPut, TellsTheRevisionAndWhatItChanges) {
    const ToolRepository repository;
    EXPECT_EQ(repository.Put(SalesModel(ORDERS)).out, "revision 1: 5 objects added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Put(SalesModel(SubjectElement("Orders", {"Amount"}) + SubjectElement("Lines", {}))).out,
              "revision 2: 1 object added, 0 changed, 1 removed\n");
    EXPECT_EQ(repository.Put(SalesModel(SubjectElement("Orders", {"Amount"}) + SubjectElement("Lines", {}))).out,
              "nothing changed; the newest revision is 2\n");
}

TEST(SmodelRepoPut, WritesNothingForADocumentWithoutDatesThatIsPutAgainLater) {
    const std::string model = SalesModel(
        "<querySubject><name locale=\"en\">Orders</name><description locale=\"en\">all of them</description></querySubject>"
        "<filter><name locale=\"en\">F</name><description locale=\"en\">f</description><expression>1</expression></filter>");
    const ToolRepository repository;
    repository.Put(model);
    const std::string before = Formatted(model);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    EXPECT_EQ(repository.Put(model).out, "nothing changed; the newest revision is 1\n");
    EXPECT_EQ(Formatted(model), before);
}

TEST(SmodelRepoPut, WritesNothingForADocumentWithAnIdTwiceThatIsPutAgain) {
    const std::string id = "<property name=\"id\" type=\"hidden\">", end = "</property>";
    const auto filter = [&](const std::string& name) {
        return "<filter><name locale=\"en\">" + name + "</name>" + id + "f" + end + "<expression>1</expression></filter>";
    };
    const auto subject = [&](const std::string& name) {
        std::string items;
        for (int i = 0; i < 10; ++i) {
            const std::string item = "i" + std::to_string(i);
            items += "<queryItem><name locale=\"en\">" + item + "</name>" + id + item + end + "<expression>1</expression></queryItem>";
        }
        return "<querySubject><name locale=\"en\">" + name + "</name>" + id + "q" + end + items + "</querySubject>";
    };
    const std::string model = SalesModel(subject("Orders") + subject("Copy") + filter("Year 1997") + filter("Year 1998"));
    const ToolRepository repository;
    EXPECT_EQ(repository.Put(model).out, "revision 1: 26 objects added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Run("verify").out, "revision 1: clean\n");
    for (int i = 0; i < 2; ++i) EXPECT_EQ(repository.Put(model).out, "nothing changed; the newest revision is 1\n");
}

TEST(SmodelRepoPut, TellsAFullDiskAndLeavesAnEmptyRepository) {
    const TestDirectory directory;
    const std::string in = directory.Write("in.xml", BigModel(5'000)), disk = directory.Path("disk");
    std::filesystem::create_directory(disk);
    // a disk of so much room that goes with the shell: enough for the tables, and not for the model
    const std::string script =
        directory.Write("put.sh", "mount -t tmpfs -o size=260k none '" + disk + "' || exit 99\n'" SMODEL_TOOL "' repo put '" + disk +
                                      "/new.db' '" + in + "'\necho \"status $?\"\n'" SMODEL_TOOL "' repo ls '" + disk + "/new.db'\n");
    const std::string told = directory.Path("told");
    if (std::system(("unshare -m sh '" + script + "' >'" + told + "' 2>&1").c_str()) != 0) GTEST_SKIP() << "nothing can be mounted here";
    EXPECT_THAT(directory.Read("told"),
                MatchesRegex(".*database or disk is full while writing to the file or its log; make room, and do it "
                             "again\nstatus 2\n"));
}

TEST(SmodelRepoPut, AsksWhichProjectIsMeantWhereSeveralHaveTheNameOfAModelWithoutAnId) {
    const auto model = [](const std::string& id, const std::string& content) {
        std::string text = SalesModel(content);
        return text.replace(text.find(" id=\"p\""), 7, id.empty() ? "" : " id=\"" + id + "\"");
    };
    const ToolRepository repository;
    repository.Put(model("A", ""));
    EXPECT_EQ(repository.Put(model("", ORDERS)).out, "revision 2: 3 objects added, 0 changed, 0 removed\n") << "only one has the name";
    repository.Put(model("B", ""));
    const ToolRun run = repository.Put(model("", ""));
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("it has no id and they have its name; name one of them by --project: "));
    EXPECT_THAT(run.err, HasSubstr("Test (A), "));
    EXPECT_THAT(run.err, HasSubstr("Test (B)\n"));
    EXPECT_EQ(SMRepository(repository.Location()).Projects().front().revision, 2);
    EXPECT_EQ(repository.Put(model("", ORDERS), {"--project", "B"}).out, "revision 2: 3 objects added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Put(model("A", "")).out, "revision 3: 0 objects added, 0 changed, 3 removed\n") << "its id tells which";
}

TEST(SmodelRepoPut, KeepsAuthorAndMessage) {
    const ToolRepository repository;
    repository.Put(SalesModel(ORDERS), {"-m", "why\nand how", "--author", "ada"});
    repository.Put(SalesModel(""));
    const std::vector<SMRepositoryRevision> revisions = SMRepository(repository.Location()).Revisions(1);
    ASSERT_EQ(revisions.size(), 2u);
    EXPECT_EQ(revisions[0].author, I18NString("ada"));
    EXPECT_EQ(revisions[0].message, I18NString("why\nand how"));
    EXPECT_FALSE(revisions[1].author.empty()) << "the login name";
}

TEST(SmodelRepoPut, NamesWhatBothChangedAndWritesNothing) {
    const ToolRepository repository;
    repository.Put(SalesModel(ORDERS + SubjectElement("Lines", {"Number"})));
    std::string theirs = SalesModel(ORDERS + SubjectElement("Lines", {"Number"})), mine = theirs;
    for (const char* const item : {"Amount", "Number"})
        theirs.replace(theirs.find(std::string(item) + " + 1"), std::string(item).size() + 4, "theirs");
    for (const char* const item : {"Amount", "Day"})
        mine.replace(mine.find(std::string(item) + " + 1"), std::string(item).size() + 4, "mine");
    repository.Put(theirs);
    const ToolRun run = repository.Put(mine, {"--base", "1"});
    EXPECT_EQ(run.status, 4);
    EXPECT_EQ(run.out,
              "1 object changed by both since revision 1:\n"
              "  queryItem Test / Sales / Orders / Amount\n"
              "The other side, now at revision 2, changed 1 further object.\n");
    EXPECT_THAT(run.err, HasSubstr("nothing was written; get the newest revision, bring the change into it, and put it again"));
    EXPECT_EQ(repository.Get(), Formatted(theirs));
    EXPECT_EQ(SMRepository(repository.Location()).Revisions(1).size(), 2u);
}

TEST(SmodelRepoPut, TellsWhenNothingWasChangedByBoth) {
    const ToolRepository repository;
    repository.Put(SalesModel(ORDERS));
    repository.Put(SalesModel(ORDERS + SubjectElement("Lines", {})));
    const ToolRun run = repository.Put(SalesModel(SubjectElement("Orders", {"Amount"})), {"--base", "1"});
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.out, HasSubstr("No object was changed by both since revision 1.\n"));
}

TEST(SmodelRepoPut, TakesABaseThatIsStillTheNewest) {
    const ToolRepository repository;
    repository.Put(SalesModel(ORDERS));
    EXPECT_EQ(repository.Put(SalesModel(""), {"--base", "1"}).status, 0);
}

TEST(SmodelRepoPut, RefusesABaseThatIsNotThere) {
    const ToolRepository repository;
    EXPECT_EQ(repository.Put(SalesModel(ORDERS), {"--base", "1"}).status, 2);
    EXPECT_THAT(repository.directory.Files(), IsEmpty());
    repository.Put(SalesModel(ORDERS));
    const ToolRun run = repository.Put(SalesModel(""), {"--base", "7"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("There is no revision 7; there are 1 to 1."));
    EXPECT_EQ(repository.Get(), Formatted(SalesModel(ORDERS)));
}

TEST(SmodelRepoPut, PutsIntoTheProjectThatIsNamed) {
    const ToolRepository repository;
    repository.Put(SalesModel(ORDERS));
    std::string renamed = SalesModel("");
    renamed.replace(renamed.find("id=\"p\""), 6, "id=\"q\"");
    EXPECT_EQ(repository.Put(renamed, {"--project", "nobody"}).status, 2);
    EXPECT_EQ(repository.Put(renamed, {"--project", "p"}).status, 0);
    const std::vector<SMRepositoryProject> projects = SMRepository(repository.Location()).Projects();
    ASSERT_EQ(projects.size(), 1u);
    EXPECT_EQ(projects[0].id, QvULString("q"));
}

}  // namespace
