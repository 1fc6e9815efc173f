// Reading, writing, memory, find-or-create and renaming of a model, each beside its floor.
#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/support/framedocument.h"
#include "bench/support/itemdocument.h"
#include "bench/support/measure.h"
#include "bench/support/scaledocument.h"
#include "bench/support/subjectdocument.h"
#include "bench/support/xerces_floor.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smaccounting_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

using namespace schema_002_000;

namespace {

constexpr std::size_t MB = 1'000'000;

const std::string& Document(std::size_t bytes) {
    static std::unordered_map<std::size_t, std::string> made;
    std::string& document = made[bytes];
    if (document.empty()) document = bench::FrameDocument::Make(bytes);
    return document;
}

QvSmartPtr<SMProject2> Read(const std::string& document) {
    QvSmartPtr<SMProject2> project = new SMProject2();
    SMProjectBuilder builder(project);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    parser.parse(document.data(), document.size());
    return project;
}

/** Takes bytes and forgets them. */
class NoTarget : public QvXMLFormatTarget {
  public:
    NoTarget() {
        m_at = m_window;
        m_end = m_window + sizeof m_window;
    }

  protected:
    void overflow(const char*, std::size_t) override { m_at = m_window; }

  private:
    char m_window[65536];
};

void Write(const SMProject2& project) {
    NoTarget target;
    QvSAX2PrintHandler handler("UTF-8", false, target, false);
    project.WriteXMLDocument(nullptr, &handler, target);
}

void BM_Read(benchmark::State& state) {
    const std::string& document = Document(static_cast<std::size_t>(state.range(0)) * MB);
    bench::XercesFloor floor;
    bench::Ratio ratio(state, 2.4, 1.8);
    QvSmartPtr<SMProject2> project;
    double drop = 1e9;  // the floor has nothing to let go, so this is a figure of its own
    for (auto _ : state) {
        ratio.Take([&] { floor.Parse(document); }, [&] { project = Read(document); });
        drop = std::min(drop, bench::TimeOf([&] { project = nullptr; }));
    }
    state.counters["drop_ms"] = drop * 1e3;
}
BENCHMARK(BM_Read)->Arg(10)->Arg(100)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

/** How the ratio of reading grows with the document. */
void BM_ReadGrowth(benchmark::State& state) {
    bench::XercesFloor floor;
    double small = 1e9, smallFloor = 1e9, large = 1e9, largeFloor = 1e9;
    for (auto _ : state) {
        QvSmartPtr<SMProject2> project;
        smallFloor = std::min(smallFloor, bench::TimeOf([&] { floor.Parse(Document(10 * MB)); }));
        small = std::min(small, bench::TimeOf([&] { project = Read(Document(10 * MB)); }));
        project = nullptr;
        largeFloor = std::min(largeFloor, bench::TimeOf([&] { floor.Parse(Document(100 * MB)); }));
        large = std::min(large, bench::TimeOf([&] { project = Read(Document(100 * MB)); }));
    }
    bench::Report(state, (large / largeFloor) / (small / smallFloor), 1.10, 1.03);
}
BENCHMARK(BM_ReadGrowth)->Iterations(4)->Unit(benchmark::kMillisecond);

/** Reading with an account of what is kept, beside reading alone: for each subject of a document of all kinds of objects. */
void BM_ReadAccounted(benchmark::State& state) {
    const std::string document = bench::ScaleDocument(static_cast<unsigned>(state.range(0)));
    if (!SMLoadModelBytesAccounted(document).losses.empty()) std::abort();
    bench::Ratio ratio(state, 1.5, 1.25);
    ratio.Run([&] { SMLoadModelBytes(document); }, [&] { SMLoadModelBytesAccounted(document); });
    state.counters["MB"] = static_cast<double>(document.size()) / 1e6;
}
BENCHMARK(BM_ReadAccounted)->Arg(560)->Arg(5600)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

/** The same for items that have everything. */
void BM_ReadItemsAccounted(benchmark::State& state) {
    const std::string document = bench::ItemDocument(static_cast<std::size_t>(state.range(0)) * MB);
    bench::Ratio ratio(state, 1.5, 1.25);
    ratio.Run([&] { SMLoadModelBytes(document); }, [&] { SMLoadModelBytesAccounted(document); });
}
BENCHMARK(BM_ReadItemsAccounted)->Arg(100)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_Write(benchmark::State& state) {
    const std::string& document = Document(100 * MB);
    const QvSmartPtr<SMProject2> project = Read(document);
    bench::XercesFloor floor;
    const double before = bench::HeapBytes();
    {
        bench::Ratio ratio(state, 0.6, 0.35);
        ratio.Run([&] { floor.Parse(document); }, [&] { Write(*project); });
    }
    state.counters["grown_MB"] = (bench::HeapBytes() - before) / 1e6;
}
BENCHMARK(BM_Write)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

/** Heap after reading, over the bytes of the document. */
void BM_ReadHeap(benchmark::State& state) {
    const std::string& document = Document(100 * MB);
    for (auto _ : state) {
        const double before = bench::HeapBytes();
        const QvSmartPtr<SMProject2> project = Read(document);
        const double held = bench::HeapBytes() - before;
        bench::Report(state, held / static_cast<double>(document.size()), 1.6, 1.1);
        state.counters["bytes_per_object"] = held / project->GetAllObjects().GetCount();
    }
}
BENCHMARK(BM_ReadHeap)->Iterations(1)->Unit(benchmark::kMillisecond);

/** An object of the size of a folder, made and kept as the floor's map does it. */
struct PlainFolder {
    explicit PlainFolder(std::string text) : name(std::move(text)) {}
    std::string name;
    char rest[sizeof(SMFolder2) - sizeof(std::string)];
};

std::vector<I18NString> Names(std::size_t count) {
    std::vector<I18NString> names;
    for (std::size_t i = 0; i < count; ++i) names.emplace_back(("folder name " + std::to_string(i * 7919 % count)).c_str());
    return names;
}

double FloorOfFindOrCreate(const std::vector<I18NString>& names) {
    return bench::TimeOf([&] {
        std::unordered_map<std::string, std::unique_ptr<PlainFolder>> map;
        for (const I18NString& name : names) {
            auto& slot = map[std::string(name.utf8())];
            if (!slot) slot = std::make_unique<PlainFolder>(std::string(name.utf8()));
            benchmark::DoNotOptimize(slot.get());
        }
    });
}

double FindOrCreate(const std::vector<I18NString>& names) {
    return bench::TimeOf([&] {
        const QvSmartPtr<SMProject2> project = new SMProject2();
        project->SetDefaultLocale("en");
        auto* root = new SMNamespace2(project, project);
        project->SetRootNamespace(root);
        for (const I18NString& name : names) benchmark::DoNotOptimize(root->AddOrUpdateFolder(name));
        if (root->GetFolders().size() != names.size()) std::abort();
    });
}

void BM_FindOrCreate(benchmark::State& state) {
    const auto few = Names(100'000), many = Names(1'000'000);
    double workFew = 1e9, floorFew = 1e9, workMany = 1e9, floorMany = 1e9;
    for (auto _ : state) {
        floorFew = std::min(floorFew, FloorOfFindOrCreate(few));
        workFew = std::min(workFew, FindOrCreate(few));
        floorMany = std::min(floorMany, FloorOfFindOrCreate(many));
        const double seconds = FindOrCreate(many);
        workMany = std::min(workMany, seconds);
        state.SetIterationTime(seconds);
    }
    bench::Report(state, workMany / floorMany, 2.5, 1.5);
    state.counters["growth_ratio"] = (workMany / workFew) / (floorMany / floorFew);
    state.counters["growth_must"] = 1.2;
    state.counters["growth_goal"] = 1.05;
}
BENCHMARK(BM_FindOrCreate)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

/** Looking up every reference of a model, beside reading it. */
void BM_CheckReferences(benchmark::State& state) {
    const std::string document = bench::SubjectDocument(static_cast<std::size_t>(state.range(0)) * MB);
    const QvSmartPtr<SMProject2> project = Read(document);
    SMReferenceCheck check;
    {
        bench::Ratio ratio(state, 1.0, 0.5);
        ratio.Run([&] { Read(document); }, [&] { check = SMCheckReferences(*project); });
    }
    if (!check.IsDone() || !check.dangling.empty()) std::abort();
    const int objects = project->GetAllObjects().GetCount();
    state.counters["references_per_object"] = static_cast<double>(check.references) / objects;
    state.counters["ns_per_object"] = state.counters["best_ms"] * 1e6 / objects;
}
BENCHMARK(BM_CheckReferences)->Arg(10)->Arg(100)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

/** Renaming over kept fragments, beside a reused parser that prints back. */
void BM_RenameFragments(benchmark::State& state) {
    constexpr int COUNT = 100'000;
    TklByteBuffer fragment;
    fragment << "<expression><refobj>[Sales].[orders].[amount]</refobj> * <refobj>[Rates].[rate].[value]</refobj></expression>";
    SMRenameList2 list;
    list.AddRenameNamespace("Rates", "Exchange");
    bench::Ratio ratio(state, 1.2, 0.8);
    ratio.Run(
        [&] {
            QvSAX2Parser parser;
            for (int i = 0; i < COUNT; ++i) {
                TklByteBuffer out;
                QvByteBufferWriter writer(out);
                QvSAX2PrintHandler printer("UTF-8", false, writer, true);
                parser.setContentHandler(&printer);
                parser.parse(fragment);
            }
        },
        [&] {
            for (int i = 0; i < COUNT; ++i) {
                TklByteBuffer copy = fragment;
                list.PerformRenamesEscaped(copy);
            }
        });
}
BENCHMARK(BM_RenameFragments)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
