#include "objects/catalogue/repositorynames_002_000.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace schema_002_000;

namespace {

using Names = std::vector<std::pair<std::string, std::string>>;

/** The names as they were handed down, in their order: a line "constant text" each. */
Names HandedDown() {
    std::ifstream in(SMODEL_TEST_DATA "/vocabulary/repository_names.txt");
    Names names;
    for (std::string constant, text; in >> constant >> text;) names.emplace_back(constant, text);
    return names;
}

bool IsTable(const std::string& constant) {
    return constant.starts_with("SQLTAB_");
}

/** The constant as another program links to it. */
const void* SymbolOf(const std::string& constant) {
    return dlsym(RTLD_DEFAULT, ("_ZN14schema_002_000" + std::to_string(constant.size()) + constant + "E").c_str());
}

}  // namespace

TEST(RepositoryNames, AreThoseHandedDownInOrder) {
    Names built;
#define SM_SQLTAB(CONSTANT, TEXT) built.emplace_back(#CONSTANT, CONSTANT.utf8());
#define SM_SQLCOL(CONSTANT, TEXT) built.emplace_back(#CONSTANT, CONSTANT.utf8());
#include "objects/catalogue/repositorynames_list.inc"
    EXPECT_EQ(built, HandedDown());
}

TEST(RepositoryNames, AreExportedEachUnderItsName) {
    for (const auto& [constant, text] : HandedDown()) {
        const void* const symbol = SymbolOf(constant);
        ASSERT_NE(symbol, nullptr) << constant;
        if (IsTable(constant))
            EXPECT_EQ(*static_cast<const I18NString*>(symbol), text.c_str()) << constant;
        else
            EXPECT_EQ(*static_cast<const QvULString*>(symbol), text.c_str()) << constant;
    }
}

TEST(RepositoryNames, AreTwentyOneTablesAndTwoHundredSeventeenColumns) {
    std::set<std::string> tables, columns;
    for (const auto& [constant, text] : HandedDown()) (IsTable(constant) ? tables : columns).insert(constant);
    EXPECT_EQ(tables.size(), 21u);
    EXPECT_EQ(columns.size(), 217u);
}

TEST(RepositoryNames, AreTextsOfTheTwoClasses) {
    static_assert(std::is_same_v<decltype(SQLTAB_PCL_TASK), const I18NString>);
    static_assert(std::is_same_v<decltype(SQLCOL_NAME), const QvULString>);
    EXPECT_EQ(SQLTAB_PCL_TASK, "PCL_TASK");
    EXPECT_EQ(SQLCOL_NAME, "NAME");
}

TEST(RepositoryNames, HoldFiveTextsMoreThanOnce) {
    std::map<std::string, int> count;
    for (const auto& [constant, text] : HandedDown()) ++count[text];
    std::erase_if(count, [](const auto& entry) { return entry.second == 1; });
    EXPECT_EQ(count, (std::map<std::string, int>{{"DATA_TYPE", 3}, {"NAME", 3}, {"DESCRIPTION", 2}, {"EXPRESSION", 2}, {"OBJECT_ID", 2}}));
}

TEST(RepositoryNames, DifferFromTheirConstantsWhereTheStoreDoes) {
    EXPECT_EQ(SQLCOL_PROJECT_VERSION, "PROJECT_VERSION_NO");
    EXPECT_EQ(SQLCOL_PROJECT_ID, "PROJECT_ID");
    EXPECT_EQ(SQLCOL_DESC, "DESCRIPTION");
    EXPECT_EQ(SQLCOL_SOURCE_QUERY_ITEM_REF, "SM_QUERY_ITEM");
    EXPECT_EQ(SQLCOL_QS_ID, "QUERY_SUBJECT_ID");
    EXPECT_EQ(SQLTAB_PCL_INDEXFILE, "contentlibraryindex");
}

TEST(RepositoryNames, AreNeverCounted) {
    const QvULString copy = SQLCOL_CL_TASK_NAME;
    EXPECT_TRUE(copy.shared().same(SQLCOL_NAME.shared()));  // equal immortal texts are one
}
