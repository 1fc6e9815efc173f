#include "objects/catalogue/dbtable_002_000.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/support/cputime.h"

using namespace schema_002_000;

namespace {

using Table = QvSmartPtr<DBTable>;
using Column = QvSmartPtr<DBColumn>;

Column WithId(const std::string& id) {
    const Column column = new DBColumn;
    column->SetId(id.c_str());
    return column;
}

/** What the index must answer. */
DBColumn* Search(const DBTable& table, const QvULString& id) {
    for (const Column& column : table.GetColumns())
        if (column->GetId() == id) return column;
    return nullptr;
}

}  // namespace

TEST(DBTableModel, KeepsNameAndId) {
    const Table table = new DBTable("orders");
    EXPECT_TRUE(table->GetId().empty());
    table->SetId("t1");
    EXPECT_EQ(table->GetId(), "t1");
    EXPECT_EQ(table->GetName(), "orders");
    EXPECT_EQ(table->print(), "");
    EXPECT_EQ(Table(new DBTable)->GetName(), "");
}

TEST(DBTableModel, SharesItsColumnsInOrder) {
    const Table table = new DBTable;
    const Column a = WithId("a");
    const Column b = WithId("b");
    table->AddColumn(b);
    table->AddColumn(a);
    table->AddColumn(nullptr);
    ASSERT_EQ(table->GetColumns().size(), 2u);
    EXPECT_EQ(table->GetColumns()[0].get(), b.get());
    EXPECT_EQ(table->GetColumns()[1].get(), a.get());
    EXPECT_EQ(a->getReferenceCount(), 2);
}

TEST(DBTableModel, LeavesOutARemovedColumn) {
    const Table table = new DBTable;
    const Column a = WithId("a");
    const Column b = WithId("b");
    for (const Column& column : {a, b, a}) table->AddColumn(column);
    table->RemoveColumn(a);
    EXPECT_EQ(table->GetColumns(), (QvSmartVector<DBColumn>{b, a}));
    table->RemoveColumn(WithId("a"));
    table->RemoveColumn(nullptr);
    EXPECT_EQ(table->GetColumns().size(), 2u);
}

TEST(DBTableFind, GivesTheFirstColumnWithTheId) {
    const Table table = new DBTable;
    const Column first = WithId("x");
    table->AddColumn(WithId("a"));
    table->AddColumn(first);
    table->AddColumn(WithId("x"));
    EXPECT_EQ(table->FindColumnById("x"), first.get());
    EXPECT_EQ(table->FindColumnById("X"), nullptr);
    EXPECT_EQ(Table(new DBTable)->FindColumnById("x"), nullptr);
}

TEST(DBTableFind, GivesAnEmptyIdToTheFirstColumnWithoutOne) {
    const Table table = new DBTable;
    table->AddColumn(WithId("a"));
    EXPECT_EQ(table->FindColumnById(""), nullptr);
    const Column unnamed = WithId("");
    table->AddColumn(unnamed);
    EXPECT_EQ(table->FindColumnById(""), unnamed.get());
}

TEST(DBTableFind, SeesColumnsThatCameAfterALookUp) {
    const Table table = new DBTable;
    table->AddColumn(WithId("a"));
    EXPECT_EQ(table->FindColumnById("b"), nullptr);
    const Column late = WithId("b");
    table->AddColumn(late);
    EXPECT_EQ(table->FindColumnById("b"), late.get());
}

TEST(DBTableFind, SeesAChangedId) {
    const Table table = new DBTable;
    const Column a = WithId("a");
    const Column b = WithId("b");
    table->AddColumn(a);
    table->AddColumn(b);
    EXPECT_EQ(table->FindColumnById("b"), b.get());
    a->SetId("b");
    EXPECT_EQ(table->FindColumnById("b"), a.get());
    EXPECT_EQ(table->FindColumnById("a"), nullptr);
    a->SetId("");
    EXPECT_EQ(table->FindColumnById("b"), b.get());
}

TEST(DBTableFind, SeesAFirstId) {
    const Table table = new DBTable;
    const Column early = WithId("");
    const Column late = WithId("x");
    table->AddColumn(early);
    table->AddColumn(late);
    EXPECT_EQ(table->FindColumnById("x"), late.get());
    early->SetId("x");
    EXPECT_EQ(table->FindColumnById("x"), early.get());
}

TEST(DBTableFind, SeesARegeneratedId) {
    const Table table = new DBTable;
    const Column column = WithId("old");
    table->AddColumn(column);
    EXPECT_EQ(table->FindColumnById("old"), column.get());
    std::map<QvULString, QvULString> ids;
    const QvULString id = column->RegenerateIds(ids);
    EXPECT_EQ(table->FindColumnById(id), column.get());
    EXPECT_EQ(table->FindColumnById("old"), nullptr);
}

TEST(DBTableFind, SeesThatAColumnTookThePlaceOfAnother) {
    const Table table = new DBTable;
    const Column a = WithId("a");
    const Column b = WithId("b");
    table->AddColumn(a);
    EXPECT_EQ(table->FindColumnById("a"), a.get());
    table->RemoveColumn(a);
    table->AddColumn(b);
    EXPECT_EQ(table->FindColumnById("a"), nullptr);
    EXPECT_EQ(table->FindColumnById("b"), b.get());
}

TEST(DBTableFind, IsRightInEveryTableOfAColumn) {
    const Table one = new DBTable;
    const Table two = new DBTable;
    const Column shared = WithId("a");
    one->AddColumn(shared);
    two->AddColumn(WithId("z"));
    two->AddColumn(shared);
    EXPECT_EQ(one->FindColumnById("a"), shared.get());
    EXPECT_EQ(two->FindColumnById("a"), shared.get());
    shared->SetId("b");
    EXPECT_EQ(one->FindColumnById("b"), shared.get());
    EXPECT_EQ(two->FindColumnById("b"), shared.get());
}

TEST(DBTableFind, StaysRightWhileAColumnIsListedOnceMore) {
    const Table table = new DBTable;
    const Column twice = WithId("a");
    table->AddColumn(twice);
    table->AddColumn(twice);
    table->RemoveColumn(twice);
    EXPECT_EQ(table->FindColumnById("a"), twice.get());
    twice->SetId("b");
    EXPECT_EQ(table->FindColumnById("b"), twice.get());
    EXPECT_EQ(table->FindColumnById("a"), nullptr);
    table->RemoveColumn(twice);
    EXPECT_EQ(table->FindColumnById("b"), nullptr);
}

TEST(DBTableFind, LeavesACopyAlone) {
    const Table table = new DBTable;
    const Column column = WithId("a");
    table->AddColumn(column);
    const Column copy = new DBColumn(*column);
    copy->SetId("b");
    EXPECT_EQ(table->FindColumnById("a"), column.get());
    EXPECT_EQ(table->FindColumnById("b"), nullptr);
}

TEST(DBTableFind, LetsColumnsOutliveTheTable) {
    const Column column = WithId("a");
    {
        const Table table = new DBTable;
        table->AddColumn(column);
        table->AddColumn(column);
        EXPECT_EQ(table->FindColumnById("a"), column.get());
    }
    EXPECT_EQ(column->getReferenceCount(), 1);
    column->SetId("b");
    EXPECT_EQ(column->GetId(), "b");
}

TEST(DBTableFind, AnswersAsASearchWould) {
    std::mt19937 random(4711);
    const auto pick = [&random](int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); };
    const auto anyId = [&pick] { return pick(4) == 0 ? std::string() : std::to_string(pick(12)); };
    const Table table = new DBTable;
    std::vector<Column> columns;
    for (int i = 0; i < 16; ++i) columns.push_back(WithId(anyId()));
    for (int step = 0; step < 5000; ++step) {
        const Column& column = columns[static_cast<std::size_t>(pick(16))];
        switch (pick(4)) {
        case 0:
            if (table->GetColumns().size() < 20) table->AddColumn(column);
            break;
        case 1:
            if (pick(3) == 0) table->RemoveColumn(column);
            break;
        default: column->SetId(anyId().c_str());
        }
        const QvULString id = anyId().c_str();
        ASSERT_EQ(table->FindColumnById(id), Search(*table, id)) << "step " << step;
    }
}

TEST(DBTableFind, DoesNotSearchAWideTable) {
    const Table table = new DBTable;
    for (int i = 0; i < 100000; ++i) table->AddColumn(WithId("column " + std::to_string(i)));
    const auto findAll = [&] {
        for (int i = 0; i < 100000; ++i) ASSERT_NE(table->FindColumnById(("column " + std::to_string(i)).c_str()), nullptr);
    };
    EXPECT_LT(CpuSecondsOf(findAll), 20);  // a search of each would take minutes
}
