// A project with every kind through its three faces, and what is left of it, of its store and of the log when a step fails.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "core/repository/catalogue.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "tests/core/repository/repositorytest.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/golden.h"
#include "tests/support/storerows.h"
#include "tools/smodel/textdiff.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string EVERYTHING = SMODEL_SOURCE_DIR "/examples/models/everything.xml";
/** One object of each kind, small enough to fail at each of its steps. */
const std::string EVERY_KIND = SMODEL_TEST_DATA "/everykind.xml";

ProjectPtr Load(const std::string& path) {
    const SMLoadResult loaded = SMLoadModel(path);
    EXPECT_TRUE(loaded.IsDone());
    return loaded.project;
}

ProjectPtr Every() {
    return ParseProject(ReadFile(EVERY_KIND));
}

/** The context of a repository, in which one action can fail. */
class BreakingContext : public SMRepositoryHelper {
  public:
    /** For a new project. */
    explicit BreakingContext(const std::shared_ptr<qv::StoreBackend>& backend) : SMRepositoryHelper(backend, 0, 0) {}
    BreakingContext(const std::shared_ptr<qv::StoreBackend>& backend, const SMRepositoryProject& project)
        : SMRepositoryHelper(backend, project.number, project.revision) {}

    bool DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam& results) override {
        return Goes(Str(action) + At(params, IOParamTag::OBJECT)) && SMRepositoryHelper::DoReadAction(action, params, results);
    }
    bool DoWriteAction(const I18NString& action, const IOHashParam& params) override {
        const bool ofObject = action == IOAction::AT_InsertObject;
        const std::string what =
            ofObject ? At(params, IOParamTag::TABLE_NAME) : At(*params.GetByName(IOParamTag::ATTRIBUTES), IOParamTag::XML_ELEMENT_NAME);
        return Goes(Str(action) + what) && SMRepositoryHelper::DoWriteAction(action, params);
    }
    bool EndObject() override { return Goes("EndObject after " + m_last) && SMRepositoryHelper::EndObject(); }

    /** From 1; 0 for none. */
    long failsAt = 0;
    long actions = 0;
    std::string failed;

  private:
    static std::string At(const IOParameter& values, const QvULString& key) {
        return values.HasKey(key) ? " " + Str(values.GetByName(key)->GetQvStringValue()) : "";
    }
    bool Goes(const std::string& action) {
        if (++actions == failsAt) failed = action;
        if (action.rfind("EndObject", 0) != 0) m_last = action;
        return actions != failsAt;
    }

    std::string m_last;
};

/** What failed and what the log told of it, without the ids of the objects: each text once. */
class Told {
  public:
    void Add(const std::string& failed, const CapturedLog& log) {
        std::string text = failed + "\n";
        for (const LoggedEvent& event : log.Events())
            text += "  " + std::to_string(event.level) + " " + event.className + "::" + event.method + ": " + event.message + "\n";
        if (m_seen.insert(text).second) m_text += text;
    }
    const std::string& Text() const { return m_text; }

  private:
    std::set<std::string> m_seen;
    std::string m_text;
};

class WholeProject : public RepositoryTest {
  protected:
    /** A store of its own beside the fixture's; the one before goes. */
    std::shared_ptr<qv::StoreBackend> NewStore() {
        const std::string file = (m_directory / "other.db").string();
        for (const char* const tail : {"", "-wal", "-shm"}) std::filesystem::remove(file + tail);
        const auto store = std::make_shared<FailingBackend>(GetParam().make(file), plan);
        SMRepository(store, SMRepository::createIfAbsent);
        return store;
    }
    std::string Rows(const std::shared_ptr<qv::StoreBackend>& store) const { return RowsOf(*store, plan->tables); }
    std::string TimelessRows(const std::shared_ptr<qv::StoreBackend>& store) const { return RowsButForTimes(*store, plan->tables); }
    static SMRepositoryProject OnlyProject(const std::shared_ptr<qv::StoreBackend>& store) { return SMRepository(store).Projects().at(0); }
    static void Put(const std::shared_ptr<qv::StoreBackend>& store, SMProject2& project) {
        BreakingContext context(store);
        EXPECT_TRUE(project.write(context));
    }
    static ProjectPtr Get(const std::shared_ptr<qv::StoreBackend>& store) {
        BreakingContext context(store, OnlyProject(store));
        const ProjectPtr project = new SMProject2();
        EXPECT_TRUE(project->read(context));
        return project;
    }
    /** Makes every object differ from its row. */
    static void Touch(SMProject2& project) {
        for (SMObjectBase* const object : project.GetAllObjects().GetObjects())
            if (object) object->SetLastChangedDate(QvDate("2021-02-03T04:05:06"));
        project.SetLastChangedDate(QvDate("2021-02-03T04:05:06"));
    }
    /** The places at which a test of a file, which is slow, fails: the first ones and then some of each stretch. */
    bool IsTried(long at) const { return std::string_view(GetParam().name) == "Memory" || at < 8 || at % 11 == 0; }
};

INSTANTIATE_TEST_SUITE_P(Stores, WholeProject, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

}  // namespace

// ---- three faces

TEST(WholeProjectDocuments, HaveEveryElementAndAttribute) {
    const std::string text = ReadFile(EVERYTHING);
    std::ifstream vocabulary(SMODEL_TEST_DATA "/vocabulary/SMEnum_xmltag.txt");
    std::string tag;
    for (int number; vocabulary >> number >> tag;) {
        bool found = false;
        for (const std::string& form : {"<" + tag + ">", "<" + tag + " ", "<" + tag + "/>", " " + tag + "=\"", "=\"" + tag + "\""})
            found |= text.find(form) != std::string::npos;
        EXPECT_TRUE(found) << tag;
    }
    EXPECT_EQ(tag, "xsi:schemaLocation") << "the last of the vocabulary";
}

TEST_P(WholeProject, FillsEveryTableAndColumn) {
    Put(backend, *Load(EVERYTHING));
    const std::string rows = Rows(backend);
    std::string empty;
    for (const qv::CatalogueTable& table : qv::CatalogueTables()) {
        const std::size_t at = rows.find(std::string(table.name) + "\n");
        ASSERT_NE(at, std::string::npos) << table.name;
        std::size_t end = rows.find("\n", at) + 1;
        while (end < rows.size() && rows[end] == ' ') end = rows.find("\n", end) + 1;
        const std::string of = rows.substr(at, end - at);
        for (const qv::CatalogueColumn& column : table.columns) {
            if (column.name.empty()) continue;
            const std::string name = " " + std::string(column.name) + "=";
            bool filled = false;
            for (std::size_t cell = of.find(name); cell != std::string::npos && !filled; cell = of.find(name, cell + 1))
                filled = of[cell + name.size()] != '-' || std::isdigit(static_cast<unsigned char>(of[cell + name.size() + 1]));
            if (!filled) empty += std::string(table.name) + "." + std::string(column.name) + "\n";
        }
    }
    ExpectGolden("everything.emptycolumns", empty);
}

TEST_P(WholeProject, ComesBackButForTheLosses) {
    const CapturedLog log;
    const ProjectPtr project = Load(EVERYTHING);
    Put(backend, *project);
    const std::string put = WriteElement(*project, true), got = WriteElement(*Get(backend), true);
    std::string lost;
    for (const LineChange& change : DiffLines(put, got, 5000)) lost += change.sign + std::string(change.line) + "\n";
    ExpectGolden("everything.losses", lost);
}

TEST_P(WholeProject, LosesNothingMoreTheSecondTime) {
    const CapturedLog log;
    Put(backend, *Load(EVERYTHING));
    const ProjectPtr once = Get(backend);
    const std::string text = WriteElement(*once);
    const auto other = NewStore();
    Put(other, *once);
    EXPECT_TRUE(SameXml(text, WriteElement(*Get(other))));
}

// ---- a store of the release before

TEST_P(WholeProject, IsUpgradedByOneReadAndOneSave) {
    changedByHand = true;
    const ProjectPtr project = Every();
    Put(backend, *project);
    const std::string text = WriteElement(*Get(backend));
    // that release kept no locales, and its records did not follow the versions of their owners
    SetInRows(*backend, plan->tables, "SM_REMAIN_INFO", "END_REVISION", qv::Cell::Number(1), "PARENT_ID", project->GetId().utf8());
    SetInRows(*backend, plan->tables, "SM_REMAIN_INFO", "PARENT_VERSION_NO", qv::Cell::Number(4711));
    const auto slow = LoggedEvent{3,
                                  "smproject2",
                                  "SMProject2",
                                  "write_next",
                                  "This save will be slow - saving upgraded Meridian database.  This should only happen once.",
                                  ""};
    const auto upgrading =
        LoggedEvent{3, "smproject2", "SMProject2", "read", "Upgrading Meridian RTM database to Meridian hotsite version", ""};

    CapturedLog log;
    BreakingContext context(backend, OnlyProject(backend));
    const ProjectPtr old = new SMProject2();
    ASSERT_TRUE(old->read(context));
    EXPECT_THAT(log.Events(), ElementsAre(upgrading));
    EXPECT_TRUE(context.GetFixingLostRemainingInfo());
    EXPECT_THAT(old->GetLocales(), IsEmpty());
    for (const I18NString& locale : project->GetLocales()) old->AddLocale(locale);
    log.Clear();
    ASSERT_TRUE(old->write(context));
    EXPECT_THAT(log.Events(), testing::Contains(slow).Times(1));
    EXPECT_FALSE(context.GetFixingLostRemainingInfo());

    log.Clear();
    BreakingContext later(backend, OnlyProject(backend));
    const ProjectPtr upgraded = new SMProject2();
    ASSERT_TRUE(upgraded->read(later));
    EXPECT_THAT(log.Events(), IsEmpty());
    EXPECT_TRUE(SameXml(text, WriteElement(*upgraded)));
    std::istringstream rows(Rows(backend));
    for (std::string line; std::getline(rows, line);) {
        if (line.find("END_REVISION=- ") == std::string::npos || line.find("PARENT_VERSION_NO=4711 ") == std::string::npos) continue;
        const std::span<const std::string_view> unread = qv::UnreadRecords();
        EXPECT_TRUE(std::any_of(unread.begin(), unread.end(),
                                [&](std::string_view name) { return line.find("NAME='" + std::string(name) + "'") != std::string::npos; }))
            << "only what nobody reads stays as it was: " << line;
    }
    ASSERT_TRUE(upgraded->write(later));
    EXPECT_EQ(later.Counters().rowsWritten, 0) << "once, and not again";
}

TEST_P(WholeProject, IsUpgradedInEveryReadUntilLocalesAreSaved) {
    changedByHand = true;
    const ProjectPtr project = Every();
    Put(backend, *project);
    SetInRows(*backend, plan->tables, "SM_REMAIN_INFO", "END_REVISION", qv::Cell::Number(1), "PARENT_ID", project->GetId().utf8());
    for (const bool first : {true, false}) {
        CapturedLog log;
        BreakingContext context(backend, OnlyProject(backend));
        const ProjectPtr old = new SMProject2();
        ASSERT_TRUE(old->read(context)) << first;
        EXPECT_EQ(log.Events().size(), 1u) << first;
        EXPECT_TRUE(old->write(context)) << "a save of no locales writes none";
    }
}

// ---- steps that fail

TEST_P(WholeProject, KeepsAnEmptyStoreWhenAnyActionOfTheFirstSaveFails) {
    const auto whole = NewStore();
    BreakingContext counting(whole);
    ASSERT_TRUE(Every()->write(counting));
    ASSERT_GT(counting.actions, 150);
    const std::string expected = TimelessRows(whole);
    Told told;
    for (long at = 1; at <= counting.actions; ++at) {
        if (!IsTried(at)) continue;
        const auto store = NewStore();
        const std::string before = Rows(store);
        BreakingContext context(store);
        context.failsAt = at;
        const ProjectPtr project = Every();
        {
            const CapturedLog log;
            ASSERT_FALSE(project->write(context)) << at;
            told.Add(context.failed, log);
        }
        ASSERT_EQ(Rows(store), before) << at << " " << context.failed;
        const CapturedLog log;
        ASSERT_TRUE(project->write(context)) << at;
        ASSERT_EQ(TimelessRows(store), expected) << at << " " << context.failed;
    }
    if (std::string_view(GetParam().name) == "Memory") ExpectGolden("everykind.savefailures", told.Text());
}

TEST_P(WholeProject, KeepsTheRevisionWhenAnyActionOfALaterSaveFails) {
    const auto saved = [&] {
        const auto store = NewStore();
        const CapturedLog log;
        Put(store, *Every());
        return store;
    };
    const auto whole = saved();
    const CapturedLog quiet;
    BreakingContext counting(whole, OnlyProject(whole));
    const ProjectPtr first = new SMProject2();
    ASSERT_TRUE(first->read(counting));
    Touch(*first);
    const long reads = counting.actions;
    ASSERT_TRUE(first->write(counting));
    const std::string expected = TimelessRows(whole);
    for (long at = 1; at <= counting.actions - reads; ++at) {
        if (!IsTried(at)) continue;
        const auto store = saved();
        const std::string before = Rows(store);
        BreakingContext context(store, OnlyProject(store));
        const ProjectPtr project = new SMProject2();
        ASSERT_TRUE(project->read(context));
        Touch(*project);
        context.failsAt = context.actions + at;
        ASSERT_FALSE(project->write(context)) << at;
        ASSERT_EQ(Rows(store), before) << at << " " << context.failed;
        ASSERT_TRUE(project->write(context)) << at << " " << context.failed;
        ASSERT_EQ(TimelessRows(store), expected) << at << " " << context.failed;
    }
}

TEST_P(WholeProject, KeepsTheRevisionWhenTheStoreFailsAtAnythingInASave) {
    Put(backend, *Every());
    const std::string before = Rows(backend);
    long at = 0;
    for (bool done = false; !done; plan->failsAt = 0) {
        plan->everything = false;
        BreakingContext context(backend, OnlyProject(backend));
        const ProjectPtr project = new SMProject2();
        ASSERT_TRUE(project->read(context));
        Touch(*project);
        plan->everything = true;
        plan->writes = 0;
        for (++at; !IsTried(at);) ++at;
        plan->failsAt = at;
        const CapturedLog log;
        done = project->write(context);
        plan->failsAt = 0;
        if (done) break;
        ASSERT_FALSE(log.Events().empty()) << at;
        ASSERT_NE(log.Events().front().message.find("the disk is on fire"), std::string::npos) << log.Events().front().message;
        for (const LoggedEvent& event : log.Events()) ASSERT_EQ(event.level, 1) << event.message;
        ASSERT_EQ(Rows(backend), before) << at;
    }
    EXPECT_GT(at, 300);
}

TEST_P(WholeProject, IsReadInPartWhenAnyActionOfItsReadFails) {
    Put(backend, *Every());
    const std::string rows = Rows(backend), text = WriteElement(*Get(backend));
    Told told;
    bool done = false;
    long at = 0;
    for (; !done;) {
        BreakingContext context(backend, OnlyProject(backend));
        context.failsAt = ++at;
        const ProjectPtr project = new SMProject2();
        const CapturedLog log;
        done = project->read(context);
        if (done) break;
        told.Add(context.failed, log);
        const ProjectPtr again = new SMProject2();
        ASSERT_TRUE(again->read(context)) << at << " " << context.failed;
        ASSERT_TRUE(SameXml(text, WriteElement(*again))) << at << " " << context.failed;
    }
    EXPECT_GT(at, 60);
    EXPECT_EQ(Rows(backend), rows);
    ExpectGolden("everykind.readfailures", told.Text());
}

TEST_P(WholeProject, IsReadWholeOrNotWhenTheStoreFailsAtAnythingInARead) {
    Put(backend, *Every());
    const std::string text = WriteElement(*Get(backend));
    const SMRepositoryProject entry = OnlyProject(backend);
    plan->everything = true;
    long at = 0;
    for (bool over = false; !over;) {
        BreakingContext context(backend, entry);
        plan->writes = 0;
        plan->failsAt = ++at;
        const ProjectPtr project = new SMProject2();
        CapturedLog log;
        const bool done = project->read(context);
        over = plan->writes < at;
        plan->failsAt = 0;
        if (done) {
            ASSERT_TRUE(SameXml(text, WriteElement(*project))) << at;
            ASSERT_THAT(log.Events(), IsEmpty()) << at;
            continue;
        }
        ASSERT_EQ(log.Events().size(), 1u) << at;
        ASSERT_EQ(log.Events().front().level, 1);
        const ProjectPtr again = new SMProject2();
        ASSERT_TRUE(again->read(context)) << at;
        ASSERT_TRUE(SameXml(text, WriteElement(*again))) << at;
    }
    EXPECT_GT(at, 100);
}
