// Putting a model into a new store and getting it back, each beside the same rows moved with the C API of SQLite alone.
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/support/measure.h"
#include "bench/support/sqlitefloor.h"
#include "bench/support/store.h"
#include "bench/support/storedmodel.h"

using namespace schema_002_000;

namespace {

void BM_Put(benchmark::State& state) {
    const bench::Store store, plain;
    {
        const QvSmartPtr<SMProject2> project = bench::StoredModel();
        bench::PutNew(store.Path(), *project);
    }
    const bench::SqliteFloor floor(store.Path());
    const QvSmartPtr<SMProject2> project = bench::StoredModel();
    state.counters["rows"] = static_cast<double>(floor.Rows());
    bench::Ratio ratio(state, 1.8, 1.3);
    ratio.Run(
        [&] {
            plain.Remove();
            floor.Insert(plain.Path());
        },
        [&] {
            store.Remove();
            bench::PutNew(store.Path(), *project);
        });
}
BENCHMARK(BM_Put)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_Get(benchmark::State& state) {
    const bench::Store store;
    {
        const QvSmartPtr<SMProject2> project = bench::StoredModel();
        bench::PutNew(store.Path(), *project);
    }
    const bench::SqliteFloor floor(store.Path());
    SMRepository repository(store.Path());
    bench::Ratio ratio(state, 4.0, 2.5);
    ratio.Run([&] { benchmark::DoNotOptimize(floor.Step(store.Path())); },
              [&] {
                  const auto context = repository.OpenProject(1);
                  const QvSmartPtr<SMProject2> project = new SMProject2();
                  if (!project->read(*context)) std::abort();
              });
}
BENCHMARK(BM_Get)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

/** A put that finds nothing changed, beside a get: it has to look at every row and to write none. */
void BM_PutUnchanged(benchmark::State& state) {
    const bench::Store store;
    const QvSmartPtr<SMProject2> project = bench::StoredModel();
    bench::PutNew(store.Path(), *project);
    SMRepository repository(store.Path());
    long written = 0;
    for (auto _ : state) {
        const auto context = repository.OpenProject(1);
        if (!project->write(*context)) std::abort();
        written += context->Counters().rowsWritten;
    }
    state.counters["rows_written"] = static_cast<double>(written);
}
BENCHMARK(BM_PutUnchanged)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
