#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <ostream>
#include <string>

#include "core/repository/memory/memorybackend.h"
#include "core/repository/postgres/postgresbackend.h"
#include "core/repository/smrepository.h"
#include "core/repository/sqlite/sqlitebackend.h"
#include "tests/core/repository/failingbackend.h"
#include "tests/core/repository/testnode.h"
#include "tests/support/postgresserver.h"
#include "tests/support/storecheck.h"

/** A store in a schema of its own, which goes with it. */
inline std::shared_ptr<qv::StoreBackend> MakeSchemaBackend() {
    struct Kept {
        PostgresSchema schema;
        std::shared_ptr<qv::StoreBackend> backend = qv::MakePostgresBackend(schema.Location());
    };
    const auto kept = std::make_shared<Kept>();
    return {kept, kept->backend.get()};
}

/** A kind of store that the conformance suite runs on. */
struct StoreKind {
    const char* name;
    std::shared_ptr<qv::StoreBackend> (*make)(const std::string& file);
};

inline const StoreKind STORE_KINDS[] = {
    {"Memory", [](const std::string&) { return qv::MakeMemoryBackend("memory"); }},
    {"Sqlite", [](const std::string& file) { return qv::MakeSqliteBackend(file); }},
    {"Postgres", [](const std::string&) { return MakeSchemaBackend(); }},
};

inline void PrintTo(const StoreKind& kind, std::ostream* out) {
    *out << kind.name;
}

/** A new repository of each kind, and a small project to put there. */
class RepositoryTest : public testing::TestWithParam<StoreKind> {
  protected:
    RepositoryTest() {
        const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(info.test_suite_name()) + info.name();
        for (char& character : name)
            if (character == '/') character = '_';
        m_directory = std::filesystem::temp_directory_path() / (name + "." + std::to_string(::getpid()));
        std::filesystem::remove_all(m_directory);
        std::filesystem::create_directories(m_directory);
        plan = std::make_shared<FailurePlan>();
        backend = std::make_shared<FailingBackend>(GetParam().make((m_directory / "models.db").string()), plan);
        repository = std::make_unique<SMRepository>(backend, SMRepository::createIfAbsent);
    }
    ~RepositoryTest() override { std::filesystem::remove_all(m_directory); }

    /** Whatever a test has done, and whatever was made to fail in it, the store is sound. */
    void TearDown() override {
        plan->failsAt = 0;
        if (changedByHand || HasFailure()) return;
        EXPECT_EQ(StoreFaults(*repository, *backend, plan->tables), "");
    }

    /** A project with a root, two sections below it, and a map of three entries. */
    static QvSmartPtr<TestNode> Sample() {
        QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT", "p");
        project->Named("Sample").Set("DEFAULTLOCALE", TestNode::Text("en"));
        project->records["locales"] = "<locale>en</locale>";
        TestNode& root = project->AddSection("Root", "r");
        root.AddSection("Zebra", "s2");
        root.AddSection("Apple", "s1", "folder");
        TestNode& map = project->Add("SM_PARAMETER_MAP", "m");
        map.Named("Map").Set("DEFAULTVALUE", TestNode::Text("")).Set("HIDDEN", TestNode::Text("false"));
        map.AddEntry("c", "3", "e3");
        map.AddEntry("a", "1", "e1");
        map.AddEntry("b", "2", "e2");
        return project;
    }
    static TestNode& Root(TestNode& project) { return project.Child(0); }
    static TestNode& Map(TestNode& project) { return project.Child(1); }

    /** Puts a project as a new one and gives its number. */
    long Put(TestNode& project) {
        const auto context = repository->NewProject();
        EXPECT_TRUE(project.write(*context));
        return context->ProjectNumber();
    }
    /** Rows written and ended by a save of the project. */
    std::pair<long, long> Save(TestNode& project, long number) {
        const auto context = repository->OpenProject(number);
        EXPECT_TRUE(project.write(*context));
        return {context->Counters().rowsWritten, context->Counters().rowsEnded};
    }
    QvSmartPtr<TestNode> Get(long number) { return ReadTestProject(*repository->OpenProject(number)); }
    std::string DumpOf(long number, bool versions = true) {
        const QvSmartPtr<TestNode> project = Get(number);
        return project ? project->Dump(versions) : "read failed";
    }

    /** Rows of a save besides those of objects: the revision, and for a new project its entry. */
    static constexpr long REVISION = 1, NEW_PROJECT = 2;

    /** Set by tests that write rows that no save would. */
    bool changedByHand = false;
    std::filesystem::path m_directory;
    std::shared_ptr<FailurePlan> plan;
    std::shared_ptr<qv::StoreBackend> backend;
    std::unique_ptr<SMRepository> repository;
};
