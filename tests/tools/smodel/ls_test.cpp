#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using ::testing::HasSubstr;

TEST(SmodelLs, ListsOneObjectALine) {
    const ToolRun run = RunTool({"ls", "-"}, ModelDocument(NamespaceElement("root", NamespaceElement("a")) + MapElement("m", "v")));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out,
              "project\t\t(project).().(p)\tp\n"
              "namespace\t[root]\t[root]\t\n"
              "namespace\t[a]\t[root].[a]\t\n"
              "parameterMap\t\t(parameterMap).().()\t\n"
              "parameterMapEntry\t\t(parameterMapEntry).().(e1)\te1\n");
}

TEST(SmodelLs, EscapesTabsLineEndsAndBackslashesInNames) {
    const ToolRun run = RunTool({"ls", "-"}, ModelDocument(NamespaceElement("a&#9;b&#10;c\\d")));
    EXPECT_THAT(run.out, HasSubstr("namespace\t[a\\tb\\nc\\\\d]\t[a\\tb\\nc\\\\d]\t\n"));
}

TEST(SmodelLs, PrintsJson) {
    const ToolRun run = RunTool({"ls", "--json", "-"}, ModelDocument(NamespaceElement("a\"&#9;\xC3\xA4")));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out,
              "[\n"
              "{\"kind\":\"project\",\"objectId\":\"\",\"path\":\"(project).().(p)\",\"id\":\"p\"},\n"
              "{\"kind\":\"namespace\",\"objectId\":\"[a\\\"\\t\xC3\xA4]\",\"path\":\"[a\\\"\\t\xC3\xA4]\",\"id\":\"\"}\n"
              "]\n");
}

TEST(SmodelLs, ListsNothingOfABrokenDocument) {
    const ToolRun run = RunTool({"ls", "--json", "-"}, "<project>");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("<stdin>:1:"));
}

}  // namespace
