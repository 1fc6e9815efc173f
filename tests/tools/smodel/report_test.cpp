#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/codes.h"
#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/** Something unknown, a word that is none, a reference that leads nowhere; then a dot beyond the plane of most characters. */
const std::string ODD =
    ModelDocument("\n" + NamespaceElement("Sales",
                                          "\n<odd>1</odd>"
                                          "\n<querySubject status=\"broken\"><name locale=\"en\">s</name></querySubject>"
                                          "\n<shortcut><name locale=\"en\">\xF0\x9F\x98\x80</name><refobj>[gone]</refobj></shortcut>"));

json Finding(const json& report, const std::string& code) {
    for (const json& found : report.at("findings"))
        if (found.value("code", "") == code) return found;
    ADD_FAILURE() << code;
    return json::object();
}

TEST(SmodelCheckReport, TellsAllAsOneObject) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", ODD);
    const ToolRun run = RunTool({"check", "--json", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, IsEmpty());
    const json report = json::parse(run.out);
    EXPECT_EQ(report.at("file"), path);
    EXPECT_EQ(report.at("status"), "findings");
    EXPECT_EQ(report.at("objects"), (json{{"project", 1}, {"namespace", 1}, {"querySubject", 1}, {"shortcut", 1}}));
    EXPECT_EQ(Finding(report, "SM1001"), (json{{"code", "SM1001"},
                                               {"severity", "error"},
                                               {"file", path},
                                               {"line", 4},
                                               {"column", 1},
                                               {"object", "[Sales]"},
                                               {"message", "<odd> in [Sales] is not kept (12 bytes)"},
                                               {"bytes", 12},
                                               {"element", "odd"}}));
    const json lost = Finding(report, "SM1002");
    EXPECT_EQ(lost.at("attribute"), "status");
    EXPECT_EQ(lost.at("value"), "broken");
    EXPECT_EQ(lost.at("reason"), "SM3006");
    EXPECT_EQ(lost.at("column"), 15);
    const json dangling = Finding(report, "SM3001");
    EXPECT_EQ(dangling.at("severity"), "warning");
    EXPECT_EQ(dangling.at("line"), 6);
    EXPECT_EQ(dangling.at("column"), 46) << "columns count units of UTF-16";
}

TEST(SmodelCheckReport, TellsACleanModelAndOneThatCannotBeRead) {
    const ToolRun clean = RunTool({"check", "--json", "-"}, ModelDocument(NamespaceElement("Sales")));
    EXPECT_EQ(clean.status, 0);
    const json report = json::parse(clean.out);
    EXPECT_EQ(report.at("status"), "clean");
    EXPECT_THAT(report.at("findings"), IsEmpty());
    const ToolRun cut = RunTool({"check", "--json", "-"}, "<project>");
    EXPECT_EQ(cut.status, 2);
    const json failed = json::parse(cut.out);
    EXPECT_EQ(failed.at("status"), "unusable");
    EXPECT_EQ(failed.at("findings").size(), 1u);
    EXPECT_EQ(failed.at("findings")[0].at("file"), "<stdin>");
    EXPECT_THAT(failed.at("objects"), IsEmpty());
}

/** What the schema of SARIF 2.1.0 requires, and the values that it allows. */
void ExpectSarif(const json& log) {
    EXPECT_THAT(log.at("$schema").get<std::string>(), EndsWith("sarif-2.1.0.json"));
    EXPECT_EQ(log.at("version"), "2.1.0");
    ASSERT_EQ(log.at("runs").size(), 1u);
    const json& run = log.at("runs")[0];
    EXPECT_EQ(run.at("columnKind"), "utf16CodeUnits");
    EXPECT_TRUE(run.at("invocations")[0].at("executionSuccessful").is_boolean());
    const json& driver = run.at("tool").at("driver");
    EXPECT_EQ(driver.at("name"), "smodel");
    std::set<std::string> rules;
    const std::set<std::string> levels = {"none", "note", "warning", "error"};
    for (const json& rule : driver.at("rules")) {
        EXPECT_TRUE(rules.insert(rule.at("id").get<std::string>()).second);
        EXPECT_TRUE(rule.at("shortDescription").at("text").is_string());
        EXPECT_TRUE(rule.at("fullDescription").at("text").is_string());
        EXPECT_EQ(levels.count(rule.at("defaultConfiguration").at("level").get<std::string>()), 1u);
    }
    EXPECT_EQ(rules.size(), SMCodes().size());
    for (const json& result : run.at("results")) {
        EXPECT_TRUE(result.at("message").at("text").is_string());
        EXPECT_EQ(levels.count(result.at("level").get<std::string>()), 1u);
        EXPECT_TRUE(!result.contains("ruleId") || rules.count(result.at("ruleId").get<std::string>()) == 1);
        for (const json& location : result.value("locations", json::array()))
            if (location.contains("physicalLocation")) {
                const json region = location.at("physicalLocation").value("region", json{{"startLine", 1}});
                EXPECT_GE(region.at("startLine").get<long>(), 1);
                EXPECT_GE(region.value("startColumn", 1L), 1);
                EXPECT_TRUE(location.at("physicalLocation").at("artifactLocation").at("uri").is_string());
            }
    }
}

TEST(SmodelCheckReport, TellsFindingsAsSarif) {
    const TestDirectory directory;
    const std::string path = directory.Write("a model.xml", ODD);
    const ToolRun run = RunTool({"check", "--sarif", path});
    EXPECT_EQ(run.status, 1);
    const json log = json::parse(run.out);
    ExpectSarif(log);
    const json& results = log.at("runs")[0].at("results");
    ASSERT_EQ(results.size(), 3u);
    EXPECT_TRUE(log.at("runs")[0].at("invocations")[0].at("executionSuccessful"));
    const json& lost = results[1];
    EXPECT_EQ(lost.at("ruleId"), "SM1002");
    EXPECT_EQ(lost.at("properties").at("reason"), "SM3006");
    const json& dangling = results[2];
    EXPECT_EQ(dangling.at("ruleId"), "SM3001");
    EXPECT_EQ(dangling.at("level"), "warning");
    const json& location = dangling.at("locations")[0];
    EXPECT_EQ(location.at("physicalLocation").at("region"), (json{{"startLine", 6}, {"startColumn", 46}}));
    const std::string uri = location.at("physicalLocation").at("artifactLocation").at("uri");
    EXPECT_THAT(uri, StartsWith("file:///"));
    EXPECT_THAT(uri, EndsWith("/a%20model.xml"));
    EXPECT_THAT(location.at("logicalLocations")[0].at("fullyQualifiedName").get<std::string>(), StartsWith("[Sales].["));
}

TEST(SmodelCheckReport, TellsPathsAsTheyWereGivenFromTheWorkingDirectory) {
    const TestDirectory directory;
    const std::string given = std::filesystem::relative(directory.Write("\xC3\xA9:#%.xml", ODD)).string();
    const json log = json::parse(RunTool({"check", "--sarif", given}).out);
    const json& run = log.at("runs")[0];
    const std::string base = run.at("invocations")[0].at("workingDirectory").at("uri");
    EXPECT_THAT(base, StartsWith("file:///"));
    EXPECT_THAT(base, EndsWith("/"));
    const std::string uri = run.at("results")[0].at("locations")[0].at("physicalLocation").at("artifactLocation").at("uri");
    EXPECT_THAT(uri, StartsWith("../"));
    EXPECT_THAT(uri, EndsWith("/%C3%A9%3A%23%25.xml"));
}

TEST(SmodelCheckReport, ReadsFromAPipeAndWritesIntoOne) {
    const TestDirectory directory;
    const std::string path = directory.Write("a.xml", ODD), out = directory.Path("out");
    const std::string script = "cat " + path + " | " SMODEL_TOOL " check --json - | cat > " + out;
    ASSERT_EQ(std::system(("sh -c '" + script + "'").c_str()), 0);
    const json report = json::parse(directory.Read("out"));
    EXPECT_EQ(report.at("file"), "-");
    ASSERT_EQ(report.at("findings").size(), 3u);
    for (const json& found : report.at("findings")) EXPECT_EQ(found.at("file"), "<stdin>");
}

TEST(SmodelCheckReport, EndsSoonWhereAnEndlessInputGoesWrong) {
    const TestDirectory directory;
    for (const std::string endless : {"yes", "yes \"<a>\"", "yes \"<project>\"", "cat /dev/urandom", "cat /dev/zero"}) {
        const std::string script = endless + " | timeout 60 " SMODEL_TOOL " check - 2>" + directory.Path("err");
        const int status = std::system(("sh -c '" + script + "'").c_str());
        EXPECT_EQ(WEXITSTATUS(status), 2) << endless;
        EXPECT_THAT(directory.Read("err"), testing::ContainsRegex("^<stdin>:[0-9]+:[0-9]+: error\\[SM2")) << endless;
    }
}

TEST(SmodelCheckReport, TellsThatAPipeHoldsMoreThanAFileMay) {
    const TestDirectory directory;
    const std::string script = "ulimit -f 16; yes \"<!-- -->\" | head -c 1000000 | " SMODEL_TOOL " check - 2>" + directory.Path("err");
    const int status = std::system(("sh -c '" + script + "'").c_str());
    EXPECT_EQ(WEXITSTATUS(status), 2);
    EXPECT_THAT(directory.Read("err"), testing::HasSubstr("<stdin>: error: cannot keep what comes from it: File too large"));
}

TEST(SmodelExplain, TakesACodeInLowerCase) {
    const ToolRun run = RunTool({"explain", "sm1001"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, StartsWith("### SM1001"));
}

TEST(SmodelCheckReport, CallsStandardInputByAUriThatIsNoFile) {
    const json log = json::parse(RunTool({"check", "--sarif", "-"}, ODD).out);
    EXPECT_EQ(log.at("runs")[0].at("results")[0].at("locations")[0].at("physicalLocation").at("artifactLocation").at("uri"), "stdin:");
}

TEST(SmodelCheckReport, IsOneDocumentWhateverBytesStandInTheModel) {
    const std::string latin = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + ODD.substr(ODD.find("?>") + 2);
    EXPECT_EQ(json::parse(RunTool({"check", "--json", "-"}, latin).out).at("findings").size(), 3u);
    EXPECT_EQ(json::parse(RunTool({"check", "--json", "-"}, "<project>\xFF").out).at("status"), "unusable");
    const std::string name = "\xFF.xml";
    EXPECT_EQ(json::parse(RunTool({"check", "--json", name}).out).at("status"), "unusable");
    EXPECT_EQ(json::parse(RunTool({"check", "--sarif", name}).out).at("version"), "2.1.0");
}

TEST(SmodelCheckReport, TellsAsSarifWhyADocumentCannotBeRead) {
    const ToolRun run = RunTool({"check", "--sarif", "-"}, "<project>");
    EXPECT_EQ(run.status, 2);
    const json log = json::parse(run.out);
    ExpectSarif(log);
    EXPECT_FALSE(log.at("runs")[0].at("invocations")[0].at("executionSuccessful"));
    ASSERT_EQ(log.at("runs")[0].at("results").size(), 1u);
    EXPECT_EQ(log.at("runs")[0].at("results")[0].at("level"), "error");
}

TEST(SmodelCheckReport, TakesOneFormAtATime) {
    EXPECT_EQ(RunTool({"check", "--json", "--sarif", "-"}, ODD).status, 2);
}

}  // namespace
