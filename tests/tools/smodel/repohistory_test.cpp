#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";
const std::string ORDERS = SubjectElement("Orders", {"Amount", "Day"});

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    EXPECT_NE(text.find(what), std::string::npos);
    return text.replace(text.find(what), what.size(), by);
}

/** Three revisions: the sample; another expression; an item less and a subject more. */
void PutThree(const ToolRepository& repository) {
    repository.Put(SalesModel(ORDERS), {"-m", "first", "--author", "ada"});
    repository.Put(SalesModel(Replaced(ORDERS, "Amount + 1", "Amount * 2")), {"-m", "second", "--author", "bob"});
    repository.Put(SalesModel(SubjectElement("Orders", {"Day"}) + SubjectElement("Lines", {})), {"-m", "third", "--author", "cy"});
}

/** Lines without their moments. */
std::string WithoutMoments(const std::string& text) {
    std::string plain;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start), tab = text.find('\t', start);
        plain += text.substr(start, tab - start) + text.substr(tab + 20, end + 1 - tab - 20);
        start = end + 1;
    }
    return plain;
}

}  // namespace

TEST(SmodelRepoHistory, ListsTheProjects) {
    const ToolRepository repository;
    repository.Run("put", {MODELS + "minimal.xml"});
    repository.Put(SalesModel(ORDERS), {"--author", "ada"});
    repository.Put(SalesModel(""), {"--author", "b\to"});
    EXPECT_THAT(repository.Run("ls").out, MatchesRegex("1\tminimal\t8fcc84a2-9764-5124-98f2-981632abb095\t1\t....-..-..T..:..:..\t[^\t]*\n"
                                                       "2\tTest\tp\t2\t....-..-..T..:..:..\tb\\\\to\n"));
    EXPECT_THAT(repository.Run("ls", {"--json"}).out,
                AllOf(StartsWith("[\n  {\n    \"number\": 1,\n    \"name\": \"minimal\",\n"), HasSubstr("\"author\": \"b\\to\"")));
    EXPECT_EQ(RunTool({"repo", "ls", repository.directory.Path("absent.db")}).status, 2);
}

TEST(SmodelRepoHistory, ListsTheRevisionsTheNewestFirst) {
    const ToolRepository repository;
    PutThree(repository);
    EXPECT_EQ(WithoutMoments(repository.Run("log").out), "3\tcy\tthird\n2\tbob\tsecond\n1\tada\tfirst\n");
    EXPECT_THAT(repository.Run("log", {"--json"}).out,
                MatchesRegex("\\[\n  \\{\n    \"revision\": 3,\n    \"savedAt\": \"....-..-..T..:..:..\",\n    \"author\": \"cy\",\n"
                             "    \"message\": \"third\",\n    \"document\": true\n  \\},(.|\n)*"));
}

TEST(SmodelRepoHistory, ListsTheRevisionsOfAnObjectEvenOfOneThatWent) {
    const ToolRepository repository;
    PutThree(repository);
    EXPECT_EQ(WithoutMoments(repository.Run("log", {"[Sales].[Lines]"}).out), "3\tcy\tthird\n");
    EXPECT_EQ(WithoutMoments(repository.Run("log", {"[Sales].[Orders].[Amount]"}).out), "3\tcy\tthird\n2\tbob\tsecond\n1\tada\tfirst\n");
    EXPECT_EQ(WithoutMoments(repository.Run("log", {"id:p"}).out), "1\tada\tfirst\n");
}

TEST(SmodelRepoHistory, TellsOfASubjectWhatItsQueryAndDeterminantsWere) {
    const auto model = [](const std::string& table, const std::string& canGroup) {
        return SalesModel("<querySubject><name locale=\"en\">Orders</name><definition><dbQuery><sql type=\"x\">Select 1 from <table>" +
                          table +
                          "</table></sql><tableType>table</tableType></dbQuery></definition><determinants><determinant><name>Key</name>"
                          "<canGroup>" +
                          canGroup + "</canGroup><identifiesRow>true</identifiesRow></determinant></determinants></querySubject>");
    };
    const ToolRepository repository;
    repository.Put(model("orders", "false"), {"--author", "ada", "-m", "first"});
    repository.Put(model("orders", "true"), {"--author", "bob", "-m", "second"});
    repository.Put(model("lines", "true"), {"--author", "cy", "-m", "third"});
    const std::string address = "[Sales].[Orders]";
    EXPECT_EQ(WithoutMoments(repository.Run("log", {address}).out), "3\tcy\tthird\n2\tbob\tsecond\n1\tada\tfirst\n");
    EXPECT_THAT(
        WithoutMoments(repository.Run("blame", {address}).out),
        AllOf(HasSubstr("1\tada\tNAME\tOrders\n"), MatchesRegex("(.|\n)*\n3\tcy\tdefinition.SQL\t[^\n]*lines(.|\n)*"),
              HasSubstr("\n2\tbob\tdeterminant [Key].CANGROUP\ttrue\n"), HasSubstr("\n1\tada\tdeterminant [Key].IDENTIFIESROW\ttrue\n")));
    EXPECT_EQ(repository.Run("restore", {address + "@1", "--author", "di", "-m", "back"}).status, 0);
    EXPECT_THAT(WithoutMoments(repository.Run("log", {address}).out), StartsWith("4\tdi\tback\n3\tcy\tthird\n"));
}

TEST(SmodelRepoHistory, NamesObjectsAlikeForOneThatNeverWas) {
    const ToolRepository repository;
    PutThree(repository);
    for (const char* const word : {"log", "blame"}) {
        const ToolRun run = repository.Run(word, {"[Sales].[Order]"});
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.err, HasSubstr("No revision has an object '[Sales].[Order]'"));
        EXPECT_THAT(run.err, HasSubstr("did you mean [Sales].[Orders]"));
        EXPECT_THAT(repository.Run(word, {"id:nobody"}).err,
                    HasSubstr("No revision has an object of the id 'nobody'; 'smodel repo diff' tells the ids of what changed."));
    }
}

TEST(SmodelRepoHistory, TellsADifferenceObjectByObject) {
    const ToolRepository repository;
    PutThree(repository);
    const ToolRun run = repository.Run("diff", {"1", "2"});
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_THAT(run.out, MatchesRegex("changed queryItem Test / Sales / Orders / Amount \\([^)]*\\)\n"
                                      "  EXPRESSION: \"[^\"]*Amount \\+ 1[^\"]*\" -> \"[^\"]*Amount \\* 2[^\"]*\"\n"
                                      "The documents differ.\n"));
    const std::string newest = repository.Run("diff", {"2"}).out;
    EXPECT_THAT(newest,
                AllOf(HasSubstr("removed queryItem Test / Sales / Orders / Amount"), HasSubstr("added querySubject Test / Sales / Lines")));
    EXPECT_EQ(repository.Run("diff", {"3", "3"}).status, 0);
    EXPECT_EQ(repository.Run("diff", {"4"}).status, 2);
}

TEST(SmodelRepoHistory, TellsALongValueByItsLines) {
    const ToolRepository repository;
    std::string text;
    for (int i = 0; i < 30; ++i) text += "line " + std::to_string(i) + "\n";
    const std::string first = SalesModel(Replaced(ORDERS, "Amount + 1", text));
    repository.Put(first);
    repository.Put(Replaced(first, "line 7\n", "another\n"));
    EXPECT_THAT(repository.Run("diff", {"1"}).out, HasSubstr("  EXPRESSION: \n    -8: line 7\n    +8: another\n"));
}

TEST(SmodelRepoHistory, TellsADifferenceOfDocumentsAlone) {
    const ToolRepository repository;
    const std::string first = SalesModel(
        "<calculation><name locale=\"en\">C</name><description "
        "locale=\"en\">before</description><lastChanged>2007-01-08T10:01:02</lastChanged><expression>1</expression></calculation>");
    repository.Put(first);
    EXPECT_EQ(repository.Put(Replaced(first, "before", "after")).out,
              "revision 2: 0 objects added, 0 changed, 0 removed; the document changed in what no row holds\n");
    const ToolRun run = repository.Run("diff", {"1", "2"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, MatchesRegex("The rows are the same; the documents differ in what only they carry:\n"
                                      "  -[0-9]+: <description locale=\"en\">before</description>\n"
                                      "  \\+[0-9]+: <description locale=\"en\">after</description>\n"));
    EXPECT_THAT(repository.Run("diff", {"1", "2", "--json"}).out, HasSubstr("\"changes\": [],\n  \"documentDiffers\": true"));
}

TEST(SmodelRepoHistory, FindsNoDifferenceWhereTheSameCameBack) {
    const auto filter = [](const std::string& name) {
        return "<filter><name locale=\"en\">" + name + "</name><expression>1</expression></filter>";
    };
    const ToolRepository repository;
    repository.Put(SalesModel(filter("A") + filter("B")));
    repository.Put(SalesModel(filter("B") + filter("A")));
    repository.Put(SalesModel(filter("A") + filter("B")));
    EXPECT_THAT(repository.Run("diff", {"1", "2"}).out,
                AllOf(HasSubstr("  the order of what it holds\n"), HasSubstr("\nThe documents differ.\n")));
    EXPECT_EQ(repository.Run("diff", {"1", "3"}).out, "");
    EXPECT_EQ(repository.Run("diff", {"1", "3"}).status, 0);
    EXPECT_THAT(repository.Run("diff", {"1", "3", "--json"}).out, HasSubstr("\"changes\": [],\n  \"documentDiffers\": false"));
}

TEST(SmodelRepoHistory, PrintsADifferenceAsJson) {
    const ToolRepository repository;
    PutThree(repository);
    const std::string json = repository.Run("diff", {"--json", "1", "2"}).out;
    EXPECT_THAT(
        json,
        StartsWith(
            "{\n  \"from\": 1,\n  \"to\": 2,\n  \"changes\": [\n    {\n      \"what\": \"changed\",\n      \"kind\": \"queryItem\",\n"));
    EXPECT_THAT(json, HasSubstr("\"name\": \"EXPRESSION\",\n          \"before\": \""));
    EXPECT_THAT(json, HasSubstr("],\n  \"documentDiffers\": true\n}\n"));
}

TEST(SmodelRepoHistory, BlamesTheRevisionThatSetEachValue) {
    const ToolRepository repository;
    PutThree(repository);
    repository.Put(SalesModel(Replaced(SubjectElement("Orders", {"Day"}), "Day + 1", "Day * 3")), {"--author", "di"});
    const ToolRun run = repository.Run("blame", {"[Sales].[Orders].[Day]"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(WithoutMoments(run.out),
                AllOf(HasSubstr("1\tada\tNAME\tDay\n"), MatchesRegex("(.|\n)*4\tdi\tEXPRESSION\t[^\n]*Day \\* 3[^\n]*\n(.|\n)*")));
    EXPECT_THAT(repository.Run("blame", {"--json", "[Sales].[Orders].[Day]"}).out,
                HasSubstr("\"name\": \"NAME\",\n    \"value\": \"Day\",\n    \"setIn\": {"));
}

TEST(SmodelRepoHistory, BlamesNobodyForWhatWent) {
    const ToolRepository repository;
    PutThree(repository);
    const ToolRun run = repository.Run("blame", {"[Sales].[Orders].[Amount]"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("'[Sales].[Orders].[Amount]' went in revision 3; only what stands has values to blame for"));
}

TEST(SmodelRepoHistory, PruningTellsWhatItRemoves) {
    const ToolRepository repository;
    PutThree(repository);
    const std::string third = repository.Get("3");
    const ToolRun run = repository.Run("prune", {"--keep", "1"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, MatchesRegex("removed 2 revisions, [0-9]+ rows and 2 pieces of documents; the oldest revision is now 3\n"));
    EXPECT_EQ(WithoutMoments(repository.Run("log").out), "3\tcy\tthird\n");
    EXPECT_EQ(repository.Get(), third);
    EXPECT_EQ(repository.Run("prune", {"--keep", "1"}).out, "nothing to remove\n");
    EXPECT_EQ(repository.Run("get", {"--at", "1", "-o", "-"}).status, 2);
}

TEST(SmodelRepoHistory, PrunesNothingWithoutANumberToKeep) {
    const ToolRepository repository;
    PutThree(repository);
    for (const std::vector<std::string>& words : {std::vector<std::string>{}, {"--keep", "0"}, {"--keep", "-1"}, {"--keep", "x"}})
        EXPECT_EQ(repository.Run("prune", words).status, 2);
    EXPECT_THAT(repository.Run("prune", {"--keep", "0"}).err,
                HasSubstr("--keep: '0' is no number of revisions to keep; give one from 1 on, for the newest always stays\n"));
    EXPECT_EQ(SMRepository(repository.Location()).Revisions(1).size(), 3u);
}

TEST(SmodelRepoHistory, AsksWhichOfSeveralProjects) {
    const ToolRepository repository;
    PutThree(repository);
    repository.Run("put", {MODELS + "minimal.xml"});
    EXPECT_THAT(repository.Run("log").err, HasSubstr("name one of them by --project: 1: Test (p), 2: minimal"));
    EXPECT_EQ(repository.Run("diff", {"1", "--project", "p"}).status, 1);
    EXPECT_EQ(repository.Run("blame", {"[Model]", "--project", "minimal"}).status, 0);
    EXPECT_EQ(repository.Run("log", {"--project", "nobody"}).status, 2);
}

TEST(SmodelRepoHistory, FindsWhatWentLongAgoByItsAddress) {
    const ToolRepository repository;
    PutThree(repository);
    for (int i = 0; i < 4; ++i) repository.Put(SalesModel(SubjectElement("Lines" + std::to_string(i), {})));
    EXPECT_EQ(WithoutMoments(repository.Run("log", {"[Sales].[Orders].[Amount]"}).out), "3\tcy\tthird\n2\tbob\tsecond\n1\tada\tfirst\n");
    EXPECT_EQ(repository.Run("log", {"[Sales].[Lines1]"}).status, 0);
}

TEST(SmodelRepoHistory, FindsAnObjectByTheAddressThatItHadBeforeItsFolderMoved) {
    const auto folder = [](const std::string& content) {
        return "<folder><name locale=\"en\">F</name><property name=\"id\" type=\"hidden\">f</property>" + content + "</folder>";
    };
    const auto model = [](const std::string& a, const std::string& b) {
        return ModelDocument(NamespaceElement("root", NamespaceElement("A", a) + NamespaceElement("B", b)));
    };
    const std::string subject =
        "<querySubject><name locale=\"en\">S</name><property name=\"id\" type=\"hidden\">s</property></querySubject>";
    const ToolRepository repository;
    repository.Put(model(folder(subject), ""));
    repository.Put(model("", folder(subject)));
    repository.Put(model("", folder(subject) + SubjectElement("T", {})));
    EXPECT_EQ(repository.Run("log", {"[A].[S]"}).out, repository.Run("log", {"id:s"}).out);
    EXPECT_EQ(repository.Run("log", {"[A].[S]"}).status, 0);
}
