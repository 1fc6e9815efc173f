// What a query item that has everything takes in memory, beside the bytes of its element.
#include <fstream>
#include <string>

#include <malloc.h>

#include "bench/support/itemdocument.h"
#include "bench/support/measure.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"

using namespace schema_002_000;

namespace {

/** A figure of the process in bytes, as the kernel tells it in kB: "VmRSS:", "VmHWM:". */
double ProcessBytes(const std::string& figure) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double kilobytes = 0; word == figure && status >> kilobytes) return kilobytes * 1024;
    return 0;
}

/** Reading: what the heap holds afterwards, for an item, and the most memory that was in use meanwhile, over what is held. */
void BM_ItemHeap(benchmark::State& state) {
    const std::string document = bench::ItemDocument(static_cast<std::size_t>(state.range(0)) * 1'000'000);
    for (auto _ : state) {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5;  // the peak counts from here
        const double heap = bench::HeapBytes(), resident = ProcessBytes("VmRSS:");
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
        state.counters["peak_over_heap"] = (ProcessBytes("VmHWM:") - resident) / held;
        state.counters["peak_must"] = 1.2;
        state.counters["peak_goal"] = 1.05;
    }
}
BENCHMARK(BM_ItemHeap)->Arg(10)->Arg(100)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
