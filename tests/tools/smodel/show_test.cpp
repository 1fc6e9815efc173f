#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

const std::string MODEL = ModelDocument(NamespaceElement(
    "Sales",
    "<querySubject><name locale=\"en\">Orders</name><queryItem><name locale=\"en\">Amount</name><name locale=\"de\">Betrag</name>"
    "<expression>2\n* <refobj>[Sales].[Orders].[Gone]</refobj></expression></queryItem></querySubject>"
    "<shortcut><name locale=\"en\">Cut</name><refobj>[Sales].[Orders]</refobj></shortcut>"));

TEST(SmodelShow, PrintsAnObjectForPeople) {
    const ToolRun run = RunTool({"show", "-", "[Sales].[Orders].[Amount]"}, MODEL);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_THAT(run.out, StartsWith("queryItem [Sales].[Orders].[Amount]\n"));
    EXPECT_THAT(run.out, HasSubstr("  name (de)  Betrag\n"));
    EXPECT_THAT(run.out, HasSubstr("\n  expression  2\n              * [Sales].[Orders].[Gone]\n"));
    EXPECT_THAT(run.out,
                HasSubstr("\nstands in\n  project       (project).().(p)\n  namespace     [Sales]\n  querySubject  [Sales].[Orders]\n"));
    EXPECT_THAT(run.out, HasSubstr("\nrefers to\n  expression  [Sales].[Orders].[Gone]  (not in the model)\n"));
    EXPECT_THAT(run.out, HasSubstr("\nNothing refers to it.\n"));
}

TEST(SmodelShow, TellsWhatASubjectHoldsAndWhoRefersToIt) {
    const ToolRun run = RunTool({"show", "-", "[Sales].[Orders]"}, MODEL);
    EXPECT_THAT(run.out, HasSubstr("\nholds 1 object\n  queryItem  [Sales].[Orders].[Amount]\n"));
    EXPECT_THAT(run.out, HasSubstr("\nreferred to 1 time\n  shortcut  [Sales].[Cut]  (refobj)\n"));
    EXPECT_THAT(run.out, Not(HasSubstr("Betrag")));
}

TEST(SmodelShow, PrintsJson) {
    const ToolRun run = RunTool({"show", "--json", "-", "[Sales].[Cut]"}, MODEL);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, StartsWith("{\n  \"kind\": \"shortcut\",\n  \"objectId\": \"[Sales].[Cut]\",\n"));
    EXPECT_THAT(run.out, HasSubstr("\"refersTo\": [\n    {\n      \"field\": \"refobj\",\n      \"text\": \"[Sales].[Orders]\",\n"
                                   "      \"resolves\": true\n    }\n  ]"));
    EXPECT_THAT(run.out, HasSubstr("\"referredToBy\": []"));
}

TEST(SmodelShow, NamesObjectsAlikeWhenThereIsNone) {
    const ToolRun run = RunTool({"show", "-", "[Sale].[Orders].[amount]"}, MODEL);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(run.err,
              "smodel: error: - has no object '[Sale].[Orders].[amount]'; object ids look like [namespace].[subject].[item]; did you mean "
              "[Sales].[Orders].[Amount]?\n");
}

TEST(SmodelShow, ShowsNothingOfABrokenDocument) {
    const ToolRun run = RunTool({"show", "-", "[a]"}, "<project>");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, HasSubstr("<stdin>:1:"));
}

}  // namespace
