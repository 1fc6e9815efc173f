#include "core/repository/catalogue.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(Catalogue, NamesAreUniqueWithinATable) {
    std::set<std::string_view> tables;
    for (const qv::CatalogueTable& table : qv::CatalogueTables()) {
        EXPECT_TRUE(tables.insert(table.name).second) << table.name;
        std::set<std::string_view> columns = {table.id, table.version}, keys = {"id", "version"};
        if (!table.parentId.empty()) {
            EXPECT_TRUE(columns.insert(table.parentId).second) << table.name;
            EXPECT_TRUE(columns.insert(table.parentVersion).second) << table.name;
        }
        for (const qv::CatalogueColumn& column : table.columns) {
            EXPECT_TRUE(column.name.empty() || columns.insert(column.name).second) << table.name << "." << column.name;
            EXPECT_TRUE(column.key.empty() || keys.insert(column.key).second) << table.name << " " << column.key;
        }
    }
}

TEST(Catalogue, IdColumnsTellTheTablesOfObjectsApart) {
    std::set<std::string_view> ids;
    for (const qv::CatalogueTable& table : qv::CatalogueTables())
        EXPECT_TRUE(table.name == qv::REMAIN_INFO || table.name == qv::LANG_TEXT || ids.insert(table.id).second) << table.name;
}

TEST(Catalogue, EachKindHasItsTableAndItsColumnOfTypes) {
    std::set<std::string_view> tags;
    for (const qv::CatalogueKind& kind : qv::CatalogueKinds()) {
        EXPECT_TRUE(tags.insert(kind.tag).second);
        const qv::CatalogueTable* const table = qv::FindTable(kind.table);
        ASSERT_NE(table, nullptr) << kind.tag;
        EXPECT_EQ(kind.typeColumn.empty(), kind.type.empty());
        if (kind.typeColumn.empty()) continue;
        const qv::CatalogueColumn* const column = qv::FindColumn(*table, kind.typeColumn);
        ASSERT_NE(column, nullptr) << kind.tag;
        EXPECT_EQ(column->group, qv::KeyGroup::objectType);
    }
}

TEST(Catalogue, EachTableOfObjectsIsReadBySomeKind) {
    std::set<std::string_view> read;
    for (const qv::CatalogueKind& kind : qv::CatalogueKinds()) read.insert(kind.table);
    for (const qv::CatalogueTable& table : qv::CatalogueTables())
        EXPECT_TRUE(table.name == qv::REMAIN_INFO || table.name == qv::LANG_TEXT || read.count(table.name) == 1) << table.name;
}

TEST(Catalogue, FindsNamesAndKeysWithoutRegardToCase) {
    const qv::CatalogueTable& items = *qv::FindTable("SM_QUERY_ITEM");
    EXPECT_EQ(qv::FindColumn(items, "externalname")->key, "externalName");
    EXPECT_EQ(qv::FindKey(items, "UNSORTABLE")->name, "UNSORTABLE");
    EXPECT_EQ(qv::FindKey(items, "qvref")->name, "WAREHOUSE_OBJECT_ID");
    EXPECT_EQ(qv::FindKey(items, "nothing"), nullptr);
    EXPECT_EQ(qv::FindColumn(items, ""), nullptr);
    EXPECT_EQ(qv::FindTable("sm_query_item"), nullptr);
    EXPECT_EQ(qv::FindKind("determinants/determinant")->table, "SM_DETERMINANT");
    EXPECT_EQ(qv::FindKind("nothing"), nullptr);
}

TEST(Catalogue, KeysThatAreNoColumnAreReadAsNull) {
    for (const char* const table : {"SM_PACKAGE", "SM_CALCULATION", "SM_FILTER", "SM_SHORTCUT", "SM_FUNCTION"})
        for (const char* const key : {"description", "screenTip"}) {
            const qv::CatalogueColumn* const column = qv::FindKey(*qv::FindTable(table), key);
            ASSERT_NE(column, nullptr) << table;
            EXPECT_EQ(column->name, "") << table;
        }
}

}  // namespace
