#include "core/repository/backend.h"

#include <sqlite3.h>

#include "tests/core/repository/repositorytest.h"

using qv::Cell;
using qv::ColumnType;
using qv::Condition;
using qv::TableShape;

namespace {

enum : std::size_t { KEY, NUMBER, BYTES };

TableShape Things() {
    return {
        "THINGS", {{"KEY", ColumnType::text, true}, {"NUMBER", ColumnType::integer, false}, {"BYTES", ColumnType::bytes, false}}, {KEY}};
}

/** A store of a table of things, one line to it, and a transaction begun. */
class StoreBackendTest : public RepositoryTest {
  protected:
    StoreBackendTest() {
        connection->Begin();
        connection->MakeTable(things);
        Add("a", Cell::Number(1), Cell::Text(std::string_view("\0x\xff'", 4)));
        Add("b", Cell::Number(2), Cell::Text(""));
        Add("c", {}, {});
    }
    void Add(std::string_view key, const Cell& number, const Cell& bytes) {
        const auto insert = connection->PrepareInsert(things);
        const Cell row[] = {Cell::Text(key), number, bytes};
        insert->Add(row);
        insert->Finish();
    }
    /** The keys of the rows that fit, sorted and joined. */
    std::string Keys(std::vector<Condition> where, std::vector<Cell> parameters) {
        const auto source = connection->Prepare(qv::Query{&things, {KEY}, std::move(where)});
        source->Start(parameters);
        std::string keys;
        Cell row[1];
        while (source->Next(row)) keys += row[0].view;
        std::sort(keys.begin(), keys.end());
        return keys;
    }

    TableShape things = Things();
    std::unique_ptr<qv::StoreConnection> connection = backend->Connect();
};

}  // namespace

TEST_P(StoreBackendTest, KeepsBytesAsTheyAre) {
    const auto source = connection->Prepare(qv::Query{&things, {BYTES}, {{KEY, Condition::equal}}});
    const auto bytes = [&](std::string_view key) {
        const Cell parameters[] = {Cell::Text(key)};
        Cell row[1];
        source->Start(parameters);
        EXPECT_TRUE(source->Next(row));
        std::string held(row[0].view);
        const bool null = row[0].kind == Cell::null;
        EXPECT_FALSE(source->Next(row));
        return null ? std::string("null") : held;
    };
    EXPECT_EQ(bytes("a"), std::string("\0x\xff'", 4));
    EXPECT_EQ(bytes("b"), "");
    EXPECT_EQ(bytes("c"), "null");
}

TEST_P(StoreBackendTest, ComparesWithoutNulls) {
    EXPECT_EQ(Keys({{NUMBER, Condition::above}}, {Cell::Number(1)}), "b");
    EXPECT_EQ(Keys({{NUMBER, Condition::atMost}}, {Cell::Number(1)}), "a");
    EXPECT_EQ(Keys({{NUMBER, Condition::nullOrAbove}}, {Cell::Number(1)}), "bc");
    EXPECT_EQ(Keys({{NUMBER, Condition::notNull}}, {}), "ab");
}

TEST_P(StoreBackendTest, RemovesTheRowsThatFit) {
    const auto removal = connection->Prepare(qv::Removal{&things, {{NUMBER, Condition::atMost}}});
    const Cell parameters[] = {Cell::Number(2)};
    EXPECT_EQ(removal->Run(parameters), 2);
    EXPECT_EQ(Keys({}, {}), "c");
    EXPECT_EQ(removal->Run(parameters), 0);
}

TEST_P(StoreBackendTest, TakesBackWhatATransactionRemoved) {
    connection->Commit();
    connection->Begin();
    const Cell parameters[] = {Cell::Text("b")};
    EXPECT_EQ(connection->Prepare(qv::Removal{&things, {{KEY, Condition::equal}}})->Run(parameters), 1);
    connection->Rollback();
    EXPECT_EQ(Keys({}, {}), "abc");
}

TEST_P(StoreBackendTest, AddsColumnsThatAreNullInWhatIsThere) {
    things.columns.push_back({"LATER", ColumnType::text, false});
    connection->AddColumns(things, 1);
    EXPECT_EQ(Keys({{3, Condition::notNull}}, {}), "");
    const auto insert = connection->PrepareInsert(things);
    const Cell row[] = {Cell::Text("d"), {}, {}, Cell::Text("now")};
    insert->Add(row);
    insert->Finish();
    EXPECT_EQ(Keys({{3, Condition::equal}}, {Cell::Text("now")}), "d");
}

TEST_P(StoreBackendTest, TakesBackATableThatATransactionMade) {
    connection->Rollback();
    connection->Begin();
    EXPECT_NO_THROW(connection->MakeTable(things));
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreBackendTest, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST(SqliteBackend, ShowsAViewOfTheRowsThatFit) {
    static const TableShape kinds = {
        "KINDS", {{"KEY", ColumnType::text, true}, {"ENDED", ColumnType::integer, false}, {"KIND", ColumnType::text, false}}, {0}};
    const std::filesystem::path file = std::filesystem::temp_directory_path() / ("views." + std::to_string(::getpid()) + ".db");
    std::filesystem::remove(file);
    qv::MakeSqliteBackend(file.string())->Create(std::vector{kinds}, [](qv::StoreConnection& connection) {
        connection.MakeView({"folders", &kinds, {0}, 1, 2, "folder"});
        const auto insert = connection.PrepareInsert(kinds);
        const Cell rows[][3] = {{Cell::Text("stands"), {}, Cell::Text("folder")},
                                {Cell::Text("ended"), Cell::Number(7), Cell::Text("folder")},
                                {Cell::Text("other"), {}, Cell::Text("namespace")}};
        for (const auto& row : rows) insert->Add(row);
        insert->Finish();
    });
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    std::string keys;
    const auto append = [](void* out, int, char** values, char**) { return *static_cast<std::string*>(out) += values[0], 0; };
    EXPECT_EQ(sqlite3_exec(database, "SELECT KEY FROM folders", append, &keys, nullptr), SQLITE_OK);
    sqlite3_close(database);
    std::filesystem::remove(file);
    EXPECT_EQ(keys, "stands");
}
