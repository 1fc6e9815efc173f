// Saves of very large models made in memory: the first one beside its rows alone, then one after an edit of one item beside a whole
// load. SMODEL_BENCH_ITEMS names a single size in place of the three.
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include <sqlite3.h>

#include "tests/support/itemmodel.h"
#include "bench/support/measure.h"
#include "bench/support/plainfloor.h"
#include "bench/support/store.h"
#include "core/qvutils/base/sha256.h"
#include "core/repository/smrepository.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "objects/face/smmodelstore_002_000.h"

using namespace schema_002_000;

namespace {

/** Knows a document by the digest of its blocks. */
class DigestTarget : public QvXMLFormatTarget {
  public:
    DigestTarget() {
        m_at = m_block;
        m_end = m_block + sizeof m_block;
    }
    std::string Digest() {
        Close(static_cast<std::size_t>(m_at - m_block));
        return m_digest;
    }

  protected:
    void overflow(const char* bytes, std::size_t length) override {
        while (length > 0) {
            const std::size_t part = std::min(length, static_cast<std::size_t>(m_end - m_at));
            std::memcpy(m_at, bytes, part);
            m_at += part;
            bytes += part;
            length -= part;
            if (m_at == m_end) Close(sizeof m_block);
        }
    }

  private:
    void Close(std::size_t length) {
        const auto digest = qv::Sha256(m_digest + std::string(m_block, length));
        m_digest = qv::ToHex(digest.data(), digest.size());
        m_at = m_block;
    }
    std::string m_digest;
    char m_block[65536];
};

/** A model, and the store that it was put into as its first revision. */
class Scenario {
  public:
    explicit Scenario(std::size_t items) : size(items) {
        buildSeconds = bench::TimeOf([&] { project = ItemModel(items, m_changing); });
        DigestTarget target;
        if (!SMWriteModel(*project, target).IsDone()) std::abort();
        m_first = target.Digest();
        SMRepository repository(store.Path(), SMRepository::createIfAbsent);
        context = repository.NewProject();
        const bench::PeakMemory memory;
        putSeconds = Put(*context);
        putBytes = memory.Grown();
    }

    /** Seconds of a save with its document. */
    double Put(SMRepositoryHelper& to) {
        return bench::TimeOf([&] {
            if (!SMPutModel(*project, to).IsDone()) std::abort();
        });
    }
    void Edit() { m_changing->ChangeDefaultName(QvULString("Another name " + std::to_string(++m_edits))); }
    std::unique_ptr<SMRepositoryHelper> Open() const { return SMRepository(store.Path()).OpenProject(1); }
    bool FirstDocumentStands() const {
        const auto reader = Open();
        reader->ReadAt(1);
        DigestTarget target;
        return reader->ReadDocument(target) && target.Digest() == m_first;
    }

    /** Rows of each table that came with the newest revision, under the table's name; "old_" stands before those that went. */
    std::map<std::string, double> RowsOfLast() const {
        std::map<std::string, double> rows;
        const std::string newest = std::to_string(context->Revision());
        for (const std::string& table : Texts("SELECT name FROM sqlite_master WHERE type='table'")) {
            if (Texts("SELECT name FROM pragma_table_info('" + table + "') WHERE name='END_REVISION'").empty()) continue;
            const auto count = [&](const std::string& key, const std::string& where) {
                if (const double found = Number("SELECT count(*) FROM " + table + " WHERE " + where + "=" + newest); found > 0)
                    rows[key] = found;
            };
            count(table, "FIRST_REVISION");
            count("old_" + table, "END_REVISION");
        }
        return rows;
    }
    double Pieces() const { return Number("SELECT count(*) FROM REPO_PIECE"); }

    const std::size_t size;
    const bench::Store store;
    QvSmartPtr<SMProject2> project;
    std::unique_ptr<SMRepositoryHelper> context;
    double buildSeconds, putSeconds, putBytes;

  private:
    std::vector<std::string> Texts(const std::string& sql) const {
        sqlite3* database = nullptr;
        sqlite3_stmt* rows = nullptr;
        if (sqlite3_open(store.Path().c_str(), &database) != SQLITE_OK) std::abort();
        if (sqlite3_prepare_v2(database, sql.c_str(), -1, &rows, nullptr) != SQLITE_OK) std::abort();
        std::vector<std::string> texts;
        while (sqlite3_step(rows) == SQLITE_ROW) texts.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(rows, 0)));
        sqlite3_finalize(rows);
        sqlite3_close(database);
        return texts;
    }
    double Number(const std::string& sql) const { return std::stod(Texts(sql).front()); }

    SMQueryItem2* m_changing = nullptr;
    int m_edits = 0;
    std::string m_first;
};

/** The benchmarks of one size share what is long in the making. */
Scenario& Of(std::size_t items) {
    static std::unique_ptr<Scenario> scenario;
    if (!scenario || scenario->size != items) {
        scenario.reset();
        scenario = std::make_unique<Scenario>(items);
    }
    return *scenario;
}

double PerItem(double seconds, const Scenario& scenario) {
    return seconds * 1e6 / static_cast<double>(scenario.size);
}

void FirstPut(benchmark::State& state, std::size_t items) {
    const Scenario& scenario = Of(items);
    const bench::Store plain;
    for (auto _ : state) {
        const bench::PlainFloor floor(scenario.store.Path(), plain.Path());
        bench::Report(state, scenario.putSeconds / floor.Seconds(), 4.0, 2.5);
        state.counters["rows"] = static_cast<double>(floor.Rows());
        state.counters["floor_ms"] = floor.Seconds() * 1e3;
        state.counters["build_ms"] = scenario.buildSeconds * 1e3;
        state.counters["put_ms"] = scenario.putSeconds * 1e3;
        state.counters["us_per_item"] = PerItem(scenario.putSeconds, scenario);
        state.counters["peak_MB"] = scenario.putBytes / 1e6;
        state.SetIterationTime(scenario.putSeconds);
    }
}

/** In the context that saved the model before, or in a new one each time, which has to look at what the store holds. */
void EditedPut(benchmark::State& state, std::size_t items, bool anew) {
    Scenario& scenario = Of(items);
    double peak = 0, pieces = 0, put = 1e9;
    {
        bench::Ratio ratio(state, 1.0, 0.5);
        for (auto _ : state) {
            if (anew) scenario.context = scenario.Open();
            scenario.Edit();
            pieces = scenario.Pieces();
            const bench::PeakMemory memory;
            const double seconds = scenario.Put(*scenario.context);
            put = std::min(put, seconds);
            peak = memory.Grown();
            pieces = scenario.Pieces() - pieces;
            ratio.Count(bench::TimeOf([&] {
                            const auto reader = scenario.Open();
                            if (!SMGetModel(*reader).IsDone()) std::abort();
                        }),
                        seconds);
        }
    }
    state.counters["us_per_item"] = PerItem(put, scenario);
    state.counters["peak_MB"] = peak / 1e6;
    state.counters["rows_REPO_PIECE"] = pieces;
    for (const auto& [table, rows] : scenario.RowsOfLast()) state.counters["rows_" + table] = rows;
    if (!scenario.FirstDocumentStands()) state.SkipWithError("The document of the first revision is another one.");
}

const bool REGISTERED = [] {
    std::vector<std::size_t> sizes = {10'000, 100'000, 1'000'000};
    if (const char* const items = std::getenv("SMODEL_BENCH_ITEMS")) sizes = {std::stoul(items)};
    for (const std::size_t items : sizes) {
        const auto add = [items](const std::string& name, const std::function<void(benchmark::State&)>& run) {
            return benchmark::RegisterBenchmark((name + "/" + std::to_string(items)).c_str(), run)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        };
        add("BM_MillionFirstPut", [items](benchmark::State& state) { FirstPut(state, items); })->Iterations(1);
        add("BM_MillionEditedPut", [items](benchmark::State& state) { EditedPut(state, items, false); })->Iterations(3);
        add("BM_MillionEditedPutAnew", [items](benchmark::State& state) { EditedPut(state, items, true); })->Iterations(2);
    }
    return true;
}();

}  // namespace
