#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/repository/backend.h"

/** What the connections of a failing store share: how many writes there were, and which of them fails. */
struct FailurePlan {
    long writes = 0;
    /** From 1; 0 for none. */
    long failsAt = 0;
    bool commits = false;
    /** Counts, and fails at, all that is asked of a connection: reads too, and what prepares and ends a write. */
    bool everything = false;

    /** What the store was made of. */
    std::vector<qv::TableShape> tables;

    /** Called once, before the n-th question is asked from now on, counted from 1. */
    std::function<void()> meanwhile;
    long questionsLeft = 0;
    void Meanwhile(long n, std::function<void()> work) {
        questionsLeft = n;
        meanwhile = std::move(work);
    }
    void Question() {
        if (meanwhile && --questionsLeft == 0) std::exchange(meanwhile, nullptr)();
    }

    /** Statements that were prepared, and rows that went into each table and were changed in it. */
    long prepared = 0;
    std::map<std::string, long> inserted, changed;
    void ForgetCounts() {
        prepared = 0;
        inserted.clear();
        changed.clear();
    }

    void Write() {
        if (++writes == failsAt) throw qv::StoreError("the disk is on fire");
    }
    void Ask() {
        if (everything) Write();
    }
};

/** A store in front of another one that fails at a chosen write. */
class FailingBackend : public qv::StoreBackend {
  public:
    FailingBackend(std::shared_ptr<qv::StoreBackend> inner, std::shared_ptr<FailurePlan> plan)
        : m_inner(std::move(inner)), m_plan(std::move(plan)) {}

    std::string Name() const override { return m_inner->Name(); }
    State Inspect() override { return m_inner->Inspect(); }
    void Create(std::span<const qv::TableShape> tables, void (*fill)(qv::StoreConnection&)) override {
        m_plan->tables.assign(tables.begin(), tables.end());
        m_inner->Create(tables, fill);
    }
    std::unique_ptr<qv::StoreConnection> Connect() override { return std::make_unique<Connection>(m_inner->Connect(), m_plan); }

  private:
    class Source : public qv::RowSource {
      public:
        Source(std::unique_ptr<qv::RowSource> inner, std::shared_ptr<FailurePlan> plan)
            : m_inner(std::move(inner)), m_plan(std::move(plan)) {}
        void Start(std::span<const qv::Cell> parameters) override {
            m_plan->Ask();
            m_plan->Question();
            m_inner->Start(parameters);
        }
        bool Next(std::span<qv::Cell> row) override {
            m_plan->Ask();
            return m_inner->Next(row);
        }

      private:
        std::unique_ptr<qv::RowSource> m_inner;
        std::shared_ptr<FailurePlan> m_plan;
    };

    class Insert : public qv::RowInsert {
      public:
        Insert(std::unique_ptr<qv::RowInsert> inner, std::shared_ptr<FailurePlan> plan, const qv::TableShape& table)
            : m_inner(std::move(inner)), m_plan(std::move(plan)), m_table(table.name) {}
        void Add(std::span<const qv::Cell> row) override {
            m_plan->Write();
            m_inner->Add(row);
            ++m_plan->inserted[m_table];
        }
        void Finish() override {
            m_plan->Ask();
            m_inner->Finish();
        }

      private:
        std::unique_ptr<qv::RowInsert> m_inner;
        std::shared_ptr<FailurePlan> m_plan;
        std::string m_table;
    };

    class Change : public qv::RowChange {
      public:
        Change(std::unique_ptr<qv::RowChange> inner, std::shared_ptr<FailurePlan> plan, const qv::TableShape& table)
            : m_inner(std::move(inner)), m_plan(std::move(plan)), m_table(table.name) {}
        std::int64_t Run(std::span<const qv::Cell> parameters) override {
            m_plan->Write();
            const std::int64_t rows = m_inner->Run(parameters);
            m_plan->changed[m_table] += static_cast<long>(rows);
            return rows;
        }

      private:
        std::unique_ptr<qv::RowChange> m_inner;
        std::shared_ptr<FailurePlan> m_plan;
        std::string m_table;
    };

    class Connection : public qv::StoreConnection {
      public:
        Connection(std::unique_ptr<qv::StoreConnection> inner, std::shared_ptr<FailurePlan> plan)
            : m_inner(std::move(inner)), m_plan(std::move(plan)) {}
        std::unique_ptr<qv::RowSource> Prepare(const qv::Query& query) override {
            m_plan->Ask();
            ++m_plan->prepared;
            return std::make_unique<Source>(m_inner->Prepare(query), m_plan);
        }
        std::unique_ptr<qv::RowChange> Prepare(const qv::Change& change) override {
            m_plan->Ask();
            ++m_plan->prepared;
            return std::make_unique<Change>(m_inner->Prepare(change), m_plan, *change.table);
        }
        std::unique_ptr<qv::RowChange> Prepare(const qv::Removal& removal) override {
            ++m_plan->prepared;
            return std::make_unique<Change>(m_inner->Prepare(removal), m_plan, *removal.table);
        }
        void MakeTable(const qv::TableShape& table) override {
            m_plan->Write();
            m_inner->MakeTable(table);
        }
        void AddColumns(const qv::TableShape& table, std::size_t count) override {
            m_plan->Write();
            m_inner->AddColumns(table, count);
        }
        void MakeView(const qv::ViewShape& view) override {
            m_plan->Write();
            m_inner->MakeView(view);
        }
        std::unique_ptr<qv::RowInsert> PrepareInsert(const qv::TableShape& table) override {
            m_plan->Ask();
            ++m_plan->prepared;
            return std::make_unique<Insert>(m_inner->PrepareInsert(table), m_plan, table);
        }
        void Begin() override {
            m_plan->Ask();
            m_inner->Begin();
        }
        void Commit() override {
            if (m_plan->commits || m_plan->everything) m_plan->Write();
            m_inner->Commit();
        }
        void Rollback() noexcept override { m_inner->Rollback(); }

      private:
        std::unique_ptr<qv::StoreConnection> m_inner;
        std::shared_ptr<FailurePlan> m_plan;
    };

    std::shared_ptr<qv::StoreBackend> m_inner;
    std::shared_ptr<FailurePlan> m_plan;
};
