// docs/repository.md and docs/repository/columns.md, held against a store that the library makes.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "core/repository/catalogue.h"
#include "core/repository/smrepository.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/query/smdefinition2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/facemodel.h"
#include "tests/support/modelclasses.h"
#include "tests/support/page.h"
#include "tests/support/postgresserver.h"
#include "tests/support/tempdir.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

const char* const COLUMNS_PAGE = "docs/repository/columns.md";
const char* const REPOSITORY_PAGE = "docs/repository.md";

using Cells = std::vector<std::string>;

void PutModels(const std::string& location, const std::vector<std::string>& models) {
    SMRepository repository(location, SMRepository::createIfAbsent);
    for (const std::string& model : models) {
        const SMLoadResult loaded = SMLoadModel(SMODEL_SOURCE_DIR "/examples/models/" + model + ".xml");
        EXPECT_TRUE(loaded.project) << model;
        EXPECT_EQ(SMPutModel(*loaded.project, *repository.NewProject()).status, SMStatus::done) << model;
    }
}

/** A store with models in it, asked in SQL as its readers would. */
class Store {
  public:
    explicit Store(const std::vector<std::string>& models) {
        PutModels(m_directory.Path("r.db"), models);
        EXPECT_EQ(sqlite3_open_v2(m_directory.Path("r.db").c_str(), &m_database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    }
    ~Store() { sqlite3_close(m_database); }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    std::vector<Cells> Ask(const std::string& question) {
        std::vector<Cells> answer;
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(m_database, question.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << sqlite3_errmsg(m_database) << "\n"
            << question;
        while (statement && sqlite3_step(statement) == SQLITE_ROW) {
            Cells& row = answer.emplace_back();
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
                row.push_back(text ? text : "");
            }
        }
        sqlite3_finalize(statement);
        return answer;
    }

  private:
    TempDir m_directory;
    sqlite3* m_database = nullptr;
};

std::string NameOfType(const std::string& declared) {
    static const std::map<std::string, std::string> names = {
        {"INTEGER", "number"}, {"TEXT", "text"}, {"BOOLEAN", "flag"}, {"TIMESTAMP", "moment"}, {"BLOB", "bytes"}};
    return names.at(declared);
}

/** "column type", in their order; tables of rows without the three columns that all of them have. */
Cells ColumnsOf(Store& store, const std::string& table) {
    Cells columns;
    for (const Cells& row : store.Ask("SELECT name, type FROM pragma_table_info('" + table + "') ORDER BY cid")) {
        const bool common = row[0] == "PROJECT_NO" || row[0] == "FIRST_REVISION" || row[0] == "END_REVISION";
        if (!common || table.rfind("REPO_", 0) == 0) columns.push_back(row[0] + " " + NameOfType(row[1]));
    }
    return columns;
}

/** The tables of the page that describe a table of the store. */
std::map<std::string, PageTable> TablesOnThePage() {
    std::map<std::string, PageTable> tables;
    for (const PageTable& table : TablesOf(COLUMNS_PAGE))
        if (table.head.at(0) == "Column") tables[table.heading] = table;
    return tables;
}

/** Objects without content: one of each class, and a definition without a query. */
std::vector<QvSmartPtr<SMObjectBase>> FreshObjects(SMProject2& project) {
    std::vector<QvSmartPtr<SMObjectBase>> objects;
    for (const ModelClass& entry : ModelClasses()) objects.push_back(entry.make(project));
    objects.emplace_back(new SMDefinition2(RootOf(project), &project));
    return objects;
}

/** For each table, the rows that these objects send, each as the names of its columns. */
std::map<std::string, std::vector<std::set<std::string>>> RowsSent(const std::vector<QvSmartPtr<SMObjectBase>>& objects) {
    std::map<std::string, std::vector<std::set<std::string>>> rows;
    for (const auto& object : objects) {
        RecordingContext context;
        EXPECT_TRUE(object->write(context));
        for (const RecordingContext::Action& action : context.Actions()) {
            if (action.name.rfind("AT_InsertObject ", 0) != 0) continue;
            std::set<std::string>& row = rows[action.name.substr(action.name.find(' ') + 1)].emplace_back();
            const auto& attributes = *action.params->GetByName(IOParamTag::ATTRIBUTES);
            for (const auto& pair : static_cast<const IOHashParam&>(attributes).pairs()) row.insert(Str(pair.key));
        }
    }
    return rows;
}

/** The names of the records that classes send when they are filled, by the table of their owner. */
std::map<std::string, std::set<std::string>> RecordsSent() {
    std::map<std::string, std::set<std::string>> records;
    for (const ModelClass& entry : ModelClasses()) {
        const ProjectPtr project = NewProject();
        project->SetId("project");
        const auto object = entry.Filled(*project);
        RecordingContext context;
        EXPECT_TRUE(object->write(context)) << entry.name;
        std::map<std::string, std::string> tables;  // by the id of the row
        for (const RecordingContext::Action& action : context.Actions()) {
            if (!action.params || !action.params->HasKey(IOParamTag::ATTRIBUTES)) continue;
            const auto attributes = action.params->GetByName(IOParamTag::ATTRIBUTES);
            const auto text = [&](const I18NString& key) { return Str(attributes->GetByName(key)->GetQvStringValue()); };
            if (action.name == "AT_WriteRemainingInfo SM_REMAIN_INFO") {
                records[tables[text(IOParamTag::XML_ELEMENT_PARENT_ID)]].insert(text(IOParamTag::XML_ELEMENT_NAME));
            } else if (const std::size_t at = action.name.find(" SM_"); at != std::string::npos) {
                const qv::CatalogueTable& table = *qv::FindTable(action.name.substr(at + 1));
                const I18NString id(table.id);
                tables[text(attributes->HasKey(id) ? id : I18NString("ID"))] = std::string(table.name);  // functions name no columns
            }
        }
    }
    return records;
}

using Edges = std::set<std::string>;

/** Which tables have rows below rows of which others. */
Edges EdgesOf(Store& store) {
    std::string owners;
    for (const qv::CatalogueTable& table : qv::CatalogueTables())
        if (table.name != qv::REMAIN_INFO && table.name != qv::LANG_TEXT)
            owners += (owners.empty() ? "" : " UNION ALL ") + std::string("SELECT PROJECT_NO AS project, ") + std::string(table.id) +
                      " AS id, '" + std::string(table.name) + "' AS name FROM " + std::string(table.name);
    Edges edges;
    for (const qv::CatalogueTable& table : qv::CatalogueTables()) {
        const std::string_view link = table.name == qv::LANG_TEXT ? table.id : table.parentId;
        if (link.empty()) continue;
        const std::string name(table.name);
        for (const Cells& row : store.Ask("SELECT DISTINCT o.name FROM " + name + " t JOIN (" + owners +
                                          ") o ON o.project = t.PROJECT_NO AND o.id = t." + std::string(link)))
            edges.insert(row[0] + " " + name);
    }
    return edges;
}

Edges EdgesOnThePage() {
    Edges edges;
    static const std::regex edge("(SM_\\w+) \\|\\|--o\\{ (SM_\\w+)");
    const std::string picture = BlocksOf(REPOSITORY_PAGE, "mermaid").at(0);
    for (std::sregex_iterator at(picture.begin(), picture.end(), edge), end; at != end; ++at) edges.insert(at->str(1) + " " + at->str(2));
    for (const PageTable& table : TablesOf(REPOSITORY_PAGE))
        if (table.head.at(0) == "Beside them")
            for (const PageTable::Row& row : table.rows)
                for (const std::string& owner : CodesIn(row.at(1))) edges.insert(owner + " " + CodesIn(row.at(0)).at(0));
    return edges;
}

}  // namespace

TEST(ColumnsPage, ListsTheColumnsOfEachTableOfAStore) {
    Store store({"minimal"});
    std::map<std::string, PageTable> listed = TablesOnThePage();
    for (const Cells& table : store.Ask("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        Cells columns;
        for (const PageTable::Row& row : listed[table[0]].rows) columns.push_back(CodesIn(row.at(0)).at(0) + " " + row.at(1));
        EXPECT_EQ(columns, ColumnsOf(store, table[0])) << table[0];
        listed.erase(table[0]);
    }
    for (const auto& [name, table] : listed) ADD_FAILURE() << "There is no table " << name;
}

TEST(ColumnsPagePostgres, TellsTheTypesOfBothStores) {
    std::map<std::string, std::string> onServer;  // by the type of the page
    for (const PageTable& table : TablesOf(COLUMNS_PAGE))
        if (table.head.at(0) == "Type")
            for (const PageTable::Row& row : table.rows) {
                EXPECT_EQ(NameOfType(row.at(1)), row.at(0));
                onServer[row.at(0)] = row.at(2);
            }
    EXPECT_EQ(onServer.size(), 5u);
    const PostgresSchema schema;
    { SMRepository repository(schema.Location(), SMRepository::createIfAbsent); }
    for (const auto& [name, table] : TablesOnThePage())
        for (const PageTable::Row& row : table.rows)
            EXPECT_EQ(schema.Sql("SELECT upper(split_part(data_type, ' ', 1)) FROM information_schema.columns WHERE table_schema = "
                                 "current_schema() AND table_name = lower('" +
                                 name + "') AND column_name = lower('" + CodesIn(row.at(0)).at(0) + "')"),
                      onServer[row.at(1)])
                << name << "." << row.at(0);
}

TEST(ColumnsPage, TellsTheKeyUnderWhichAColumnIsReadBack) {
    const std::map<std::string, PageTable> listed = TablesOnThePage();
    for (const qv::CatalogueTable& table : qv::CatalogueTables())
        for (const PageTable::Row& row : listed.at(std::string(table.name)).rows) {
            const qv::CatalogueColumn* column = qv::FindColumn(table, CodesIn(row.at(0)).at(0));
            if (!column) continue;  // an id, a version
            const Cells keys = CodesIn(row.at(4));
            EXPECT_EQ(keys.empty() ? "" : keys[0], column->key) << table.name << "." << column->name;
            EXPECT_EQ(keys.empty(), row.at(4).rfind("not read", 0) == 0) << table.name << "." << column->name;
        }
}

TEST(ColumnsPage, TellsWhichColumnsAreAlwaysWritten) {
    const CapturedLog log;
    const ProjectPtr project = NewProject();
    project->SetId("project");
    const auto sent = RowsSent(FreshObjects(*project));
    const std::map<std::string, PageTable> listed = TablesOnThePage();
    for (const qv::CatalogueTable& table : qv::CatalogueTables()) {
        if (table.name == qv::REMAIN_INFO || table.name == qv::LANG_TEXT) continue;
        const auto& rows = sent.at(std::string(table.name));
        for (const PageTable::Row& line : listed.at(std::string(table.name)).rows) {
            const std::string column = CodesIn(line.at(0)).at(0);
            if (!qv::FindColumn(table, column)) continue;
            const bool always = std::all_of(rows.begin(), rows.end(), [&](const auto& row) { return row.count(column) > 0; });
            EXPECT_EQ(always, line.at(3) == "always") << table.name << "." << column;
        }
    }
}

TEST(ColumnsPage, ListsTheRecordsOfEachTable) {
    const CapturedLog log;
    std::map<std::string, std::set<std::string>> stored;
    Store store({"everything"});
    for (const qv::CatalogueTable& table : qv::CatalogueTables()) {
        if (table.name == qv::REMAIN_INFO || table.name == qv::LANG_TEXT) continue;
        const std::string name(table.name);
        for (const Cells& row : store.Ask("SELECT DISTINCT r.NAME FROM SM_REMAIN_INFO r JOIN " + name +
                                          " o ON o.PROJECT_NO = r.PROJECT_NO AND o." + std::string(table.id) + " = r.PARENT_ID"))
            stored[name].insert(row[0]);
    }
    for (const auto& [name, records] : RecordsSent()) stored[name].insert(records.begin(), records.end());
    std::map<std::string, std::set<std::string>> listed;
    for (const PageTable& table : TablesOf(COLUMNS_PAGE)) {
        if (table.head.at(0) != "Owner") continue;
        for (const PageTable::Row& row : table.rows) {
            std::set<std::string>& records = listed[CodesIn(row.at(0)).at(0)];
            for (const std::string& record : CodesIn(row.at(1))) records.insert(record);
            for (const std::string& record : CodesIn(row.at(2))) records.insert(record);
            const auto unread = qv::UnreadRecords();
            for (const std::string& record : records) {
                const bool isUnread = std::find(unread.begin(), unread.end(), record) != unread.end();
                const Cells told = CodesIn(row.at(2));
                EXPECT_EQ(isUnread, std::find(told.begin(), told.end(), record) != told.end()) << row.at(0) << " " << record;
            }
        }
    }
    EXPECT_EQ(stored, listed);
}

TEST(RepositoryPage, AsksQuestionsThatAStoreAnswers) {
    const CapturedLog log;
    Store store({"tpcds", "everything"});
    const std::vector<std::string> questions = BlocksOf(REPOSITORY_PAGE, "sql");
    EXPECT_FALSE(questions.empty());
    for (const std::string& question : questions) EXPECT_FALSE(store.Ask(question).empty()) << question;
}

TEST(RepositoryPagePostgres, AsksQuestionsThatAStoreAnswers) {
    const CapturedLog log;
    const PostgresSchema schema;
    PutModels(schema.Location(), {"tpcds", "everything"});
    for (std::string question : BlocksOf(REPOSITORY_PAGE, "sql")) {
        question.erase(question.rfind(';'));
        EXPECT_NE(schema.Sql("SELECT count(*) FROM (" + question + ") AS answer"), "0") << question;
    }
}

TEST(RepositoryPage, ShowsWhatStandsBelowWhat) {
    const CapturedLog log;
    Store store({"everything", "foodmart"});
    const Edges listed = EdgesOnThePage();
    Edges stored = EdgesOf(store);
    for (const std::string& edge : stored) EXPECT_EQ(listed.count(edge), 1u) << edge << " is not in the picture";
    for (const qv::UnreadChild& child : qv::UnreadChildren())  // no document of the examples has them
        stored.insert(std::string(child.parentTable) + " " + std::string(child.childTable));
    for (const std::string& edge : listed) EXPECT_EQ(stored.count(edge), 1u) << edge << " is in the picture, but in no store";
}
