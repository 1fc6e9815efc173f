// What a query item that has everything takes in memory, beside the bytes of its element.
#include <string>

#include "bench/support/itemdocument.h"
#include "bench/support/measure.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"

using namespace schema_002_000;

namespace {

/** Reading: what the heap holds afterwards, for an item, and the most memory that was in use meanwhile, over what is held. */
void BM_ItemHeap(benchmark::State& state) {
    const std::string document = bench::ItemDocument(static_cast<std::size_t>(state.range(0)) * 1'000'000);
    for (auto _ : state) {
        const bench::PeakMemory memory;
        const double heap = bench::HeapBytes();
        const QvSmartPtr<SMProject2> project = new SMProject2();
        {
            SMProjectBuilder builder(project);
            QvSAX2Parser parser;
            parser.setContentHandler(&builder);
            parser.parse(document.data(), document.size());
        }
        const double held = bench::HeapBytes() - heap;
        double items = 0;
        for (const auto& subject : project->GetRootNamespace()->GetQuerySubjects())
            items += static_cast<double>(subject->GetQueryItems().size());
        bench::Report(state, held / static_cast<double>(document.size()), 1.6, 1.1);
        state.counters["bytes_per_item"] = held / items;
        state.counters["bytes_of_element"] = static_cast<double>(document.size()) / items;
        state.counters["peak_over_heap"] = memory.Grown() / held;
        state.counters["peak_must"] = 1.2;
        state.counters["peak_goal"] = 1.05;
    }
}
BENCHMARK(BM_ItemHeap)->Arg(10)->Arg(100)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
