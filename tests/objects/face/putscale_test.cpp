// What a save of a model through the public face costs does not hang on how many objects it has.
#include <set>

#include <sqlite3.h>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "objects/face/smmodelstore_002_000.h"
#include "tests/core/repository/repositorytest.h"
#include "tests/support/itemmodel.h"

namespace {

using namespace schema_002_000;

class PutScale : public RepositoryTest {
  protected:
    using Rows = std::map<std::string, long>;

    std::string DocumentOf(SMRepositoryHelper& context) {
        TklByteBuffer bytes;
        QvByteBufferWriter writer(bytes);
        EXPECT_TRUE(context.ReadDocument(writer));
        return std::string(bytes.view());
    }
    /** Statements of a first put, a get, a put after an edit in the same context, and one in another. */
    std::array<long, 4> Statements(std::size_t items) {
        std::array<long, 4> counts{};
        SMQueryItem2* item = nullptr;
        const QvSmartPtr<SMProject2> project = ItemModel(items, item);
        const auto counted = [&](long& count, const std::function<bool()>& work) {
            plan->ForgetCounts();
            EXPECT_TRUE(work());
            count = plan->prepared;
        };
        const auto context = repository->NewProject();
        counted(counts[0], [&] { return SMPutModel(*project, *context).IsDone(); });
        const auto getting = repository->OpenProject(context->ProjectNumber());
        counted(counts[1], [&] { return SMGetModel(*getting).IsDone(); });
        item->ChangeDefaultName("another name");
        counted(counts[2], [&] { return SMPutModel(*project, *context).IsDone(); });
        item->ChangeDefaultName("and another");
        const auto putting = repository->OpenProject(context->ProjectNumber());
        counted(counts[3], [&] { return SMPutModel(*project, *putting).IsDone(); });
        return counts;
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, PutScale, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(PutScale, StatementsArePreparedByTableNotByObject) {
    const std::array<long, 4> few = Statements(100), many = Statements(10'000);
    EXPECT_EQ(few, many);
    const long tables = static_cast<long>(qv::CatalogueTables().size());
    for (const long count : many) EXPECT_LE(count, 2 * tables + 12);
}

TEST_P(PutScale, AnEditOfOneItemWritesThatItemOnly) {
    SMQueryItem2* item = nullptr;
    const QvSmartPtr<SMProject2> project = ItemModel(500, item);
    const auto context = repository->NewProject();
    ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
    const std::string first = DocumentOf(*context);
    for (const bool anew : {false, true}) {
        item->ChangeDefaultName(anew ? "a third name" : "another name");
        const auto putting = anew ? repository->OpenProject(context->ProjectNumber()) : nullptr;
        plan->ForgetCounts();
        ASSERT_TRUE(SMPutModel(*project, anew ? *putting : *context).IsDone());
        const long pieces = plan->inserted["REPO_PIECE"];
        EXPECT_GE(pieces, 2) << "a piece of the document, and the list that holds it";
        EXPECT_LE(pieces, 4) << "or two pieces, where the edit lies between them, or is cut otherwise";
        const Rows written = {
            {"SM_QUERY_ITEM", 1}, {"SM_LANG_TEXT", 1}, {"SM_REMAIN_INFO", 1}, {"REPO_REVISION", 1}, {"REPO_PIECE", pieces}};
        const Rows ended = {{"SM_QUERY_ITEM", 1}, {"SM_LANG_TEXT", 1}, {"SM_REMAIN_INFO", 1}, {"REPO_PROJECT", 1}};
        EXPECT_EQ(plan->inserted, written) << anew;
        EXPECT_EQ(plan->changed, ended) << anew;
        EXPECT_EQ(item->GetVersionNo(), anew ? 3 : 2);
    }
    const auto reader = repository->OpenProject(context->ProjectNumber());
    EXPECT_EQ(reader->Revision(), 3);
    reader->ReadAt(1);
    EXPECT_TRUE(DocumentOf(*reader) == first);
}

/** Takes down the text of every statement that the library of SQLite prepares on any connection made in its life. */
class SqlTexts {
  public:
    SqlTexts() {
        Now() = this;
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Watch));
    }
    ~SqlTexts() {
        sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&Watch));
        Now() = nullptr;
    }
    std::set<std::string> texts;

  private:
    static SqlTexts*& Now() {
        static SqlTexts* now = nullptr;
        return now;
    }
    static int Watch(sqlite3* database, char**, const void*) {
        const auto take = [](unsigned, void*, void*, void* sql) {
            if (Now()) Now()->texts.insert(static_cast<const char*>(sql));
            return 0;
        };
        return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, take, nullptr);
    }
};

TEST(PutScaleSqlite, RunsTheSameTextsForFewObjectsAndForMany) {
    const auto path = std::filesystem::temp_directory_path() / ("putscale." + std::to_string(::getpid()) + ".db");
    std::set<std::string> texts[2];
    for (const bool many : {false, true}) {
        std::filesystem::remove(path);
        SqlTexts watched;
        SMRepository repository(path.string(), SMRepository::createIfAbsent);
        SMQueryItem2* item = nullptr;
        const QvSmartPtr<SMProject2> project = ItemModel(many ? 10'000 : 100, item);
        const auto context = repository.NewProject();
        ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
        item->ChangeDefaultName("'; another name");
        ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
        ASSERT_TRUE(SMGetModel(*repository.OpenProject(1)).IsDone());
        texts[many] = watched.texts;
        EXPECT_GT(watched.texts.size(), 20u);
    }
    EXPECT_EQ(texts[0], texts[1]);
    for (const std::string& text : texts[1]) EXPECT_EQ(text.find("another name"), std::string::npos) << text;
    for (const char* const end : {"", "-wal", "-shm"}) std::filesystem::remove(path.string() + end);
}

}  // namespace
