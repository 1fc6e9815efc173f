// Putting a model into a new store and getting it back, each beside the same rows moved with the C API of SQLite alone.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/support/framedocument.h"
#include "bench/support/measure.h"
#include "bench/support/sqlitefloor.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/repository/smrepository.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

using namespace schema_002_000;

namespace {

constexpr std::size_t MB = 1'000'000;

/** A store of its own in a folder of its own, gone with the object. */
class Store {
  public:
    Store() {
        char name[] = "/tmp/smodel-bench-XXXXXX";
        if (!mkdtemp(name)) std::abort();
        m_folder = name;
    }
    ~Store() { std::filesystem::remove_all(m_folder); }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    std::string Path() const { return m_folder + "/store.db"; }
    void Remove() const {
        for (const auto& file : std::filesystem::directory_iterator(m_folder)) std::filesystem::remove(file);
    }

  private:
    std::string m_folder;
};

/** The document to store: of namespaces, folders and maps, or the one that SMODEL_BENCH_MODEL names. */
QvSmartPtr<SMProject2> Model() {
    QvSmartPtr<SMProject2> project = new SMProject2();
    SMProjectBuilder builder(project);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    if (const char* path = std::getenv("SMODEL_BENCH_MODEL")) {
        parser.parse(I18NString(path));
    } else {
        const std::string document = bench::FrameDocument::Make(10 * MB);
        parser.parse(document.data(), document.size());
    }
    return project;
}

void Put(const std::string& path, SMProject2& project) {
    SMRepository repository(path, SMRepository::createIfAbsent);
    const auto context = repository.NewProject();
    if (!project.write(*context)) std::abort();
}

void BM_Put(benchmark::State& state) {
    const Store store, plain;
    {
        const QvSmartPtr<SMProject2> project = Model();
        Put(store.Path(), *project);
    }
    const bench::SqliteFloor floor(store.Path());
    const QvSmartPtr<SMProject2> project = Model();
    state.counters["rows"] = static_cast<double>(floor.Rows());
    bench::Ratio ratio(state, 1.8, 1.4);
    ratio.Run(
        [&] {
            plain.Remove();
            floor.Insert(plain.Path());
        },
        [&] {
            store.Remove();
            Put(store.Path(), *project);
        });
}
BENCHMARK(BM_Put)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_Get(benchmark::State& state) {
    const Store store;
    {
        const QvSmartPtr<SMProject2> project = Model();
        Put(store.Path(), *project);
    }
    const bench::SqliteFloor floor(store.Path());
    SMRepository repository(store.Path());
    bench::Ratio ratio(state, 4.5, 3.0);
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
    const Store store;
    const QvSmartPtr<SMProject2> project = Model();
    Put(store.Path(), *project);
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
