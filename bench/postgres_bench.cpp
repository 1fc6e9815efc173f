// Putting a model into a store on a server and getting it back, each beside the same rows moved with the client library alone.
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/support/measure.h"
#include "bench/support/postgresfloor.h"
#include "bench/support/storedmodel.h"
#include "tests/support/postgresserver.h"

using namespace schema_002_000;

namespace {

/** A server of its own, with a store in each schema. */
class ServedStores {
  public:
    void Clear(const std::string& schema) const {
        m_server.Sql("SET client_min_messages = warning; DROP SCHEMA IF EXISTS " + schema + " CASCADE");
        m_server.Sql("CREATE SCHEMA " + schema);
    }
    std::string Location(const std::string& schema) const { return m_server.Address() + "&options=-csearch_path%3D" + schema; }
    /** Makes the store, and gives its rows. */
    std::unique_ptr<bench::PostgresFloor> Put(const std::string& schema) const {
        Clear(schema);
        const QvSmartPtr<SMProject2> project = bench::StoredModel();
        bench::PutNew(Location(schema), *project);
        return std::make_unique<bench::PostgresFloor>(Location(schema));
    }

  private:
    PostgresServer m_server{{"max_wal_size = 4GB"}};
};

void BM_PostgresPut(benchmark::State& state) {
    const ServedStores stores;
    const auto floor = stores.Put("store");
    state.counters["rows"] = static_cast<double>(floor->Rows());
    const QvSmartPtr<SMProject2> project = bench::StoredModel();
    bench::Ratio ratio(state, 2.5, 1.6);
    for (auto _ : state) {
        floor->Remove();
        stores.Clear("target");
        ratio.Take([&] { floor->Insert(); }, [&] { bench::PutNew(stores.Location("target"), *project); });
    }
}
BENCHMARK(BM_PostgresPut)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_PostgresGet(benchmark::State& state) {
    const ServedStores stores;
    const auto floor = stores.Put("store");
    SMRepository repository(stores.Location("store"));
    bench::Ratio ratio(state, 4.0, 2.5);
    ratio.Run([&] { benchmark::DoNotOptimize(floor->Step()); },
              [&] {
                  const auto context = repository.OpenProject(1);
                  const QvSmartPtr<SMProject2> project = new SMProject2();
                  if (!project->read(*context)) std::abort();
              });
}
BENCHMARK(BM_PostgresGet)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
