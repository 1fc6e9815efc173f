#include "core/qvutils/persist/multifilehelper.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string PathOf(MultiFileHelper& files, const char* name, const char* extension = "qvf") {
    I18NString path("/tmp/models");
    files.GiveFilePath(name, extension, path);
    return std::string(path.utf8());
}

TEST(MultiFileHelper, IsOfKindThreeAndKnowsItsTags) {
    const MultiFileHelper files({"namespace"});
    EXPECT_EQ(files.GetHelperKind(), 3);
    EXPECT_TRUE(files.IsSeparateFile("namespace"));
    EXPECT_FALSE(files.IsSeparateFile("package"));
    EXPECT_FALSE(MultiFileHelper().IsSeparateFile("namespace"));
}

TEST(MultiFileHelperPath, PutsTheFileIntoTheDirectory) {
    MultiFileHelper files;
    EXPECT_EQ(PathOf(files, "Database Layer"), "/tmp/models/Database Layer.qvf");
    EXPECT_EQ(PathOf(files, "a/b", ""), "/tmp/models/a%2Fb~c");
    I18NString none;
    MultiFileHelper::MakeFilePath("..", "qva", none);
    EXPECT_EQ(none, "%2E%2E.qva");
}

TEST(MultiFileHelperPath, NumbersObjectsOfOneNameWithinADocument) {
    MultiFileHelper files;
    EXPECT_EQ(PathOf(files, "Sales"), "/tmp/models/Sales.qvf");
    EXPECT_EQ(PathOf(files, "Sales"), "/tmp/models/Sales~~2.qvf");
    EXPECT_EQ(PathOf(files, "Sales"), "/tmp/models/Sales~~3.qvf");
    EXPECT_EQ(PathOf(files, "Sales", "qva"), "/tmp/models/Sales.qva");
    files.BeginDocument();
    EXPECT_EQ(PathOf(files, "Sales"), "/tmp/models/Sales.qvf");
}

}  // namespace
