// Building and updating by name: the cost of one object must not grow with the number of its siblings.
#include <string>
#include <vector>

#include "bench/support/measure.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"

using namespace schema_002_000;

namespace {

std::vector<I18NString> Names(std::size_t count) {
    std::vector<I18NString> names;
    for (std::size_t i = 0; i < count; ++i) names.emplace_back(("name of a sibling " + std::to_string(i)).c_str());
    return names;
}

/** Runs `build` for each name twice, the first time to create and the second to update, and tells the nanoseconds of one. */
template <class Build>
void Twice(benchmark::State& state, Build build) {
    const auto names = Names(static_cast<std::size_t>(state.range(0)));
    const double each = 1e9 / static_cast<double>(names.size());
    for (auto _ : state) {
        const QvSmartPtr<SMProject2> project = new SMProject2();
        project->SetDefaultLocale("en");
        auto* root = new SMNamespace2(project, project);
        project->SetRootNamespace(root);
        const auto all = [&] {
            for (const I18NString& name : names) build(*root, name);
        };
        state.counters["create_ns"] = bench::TimeOf(all) * each;
        state.counters["update_ns"] = bench::TimeOf(all) * each;
    }
}

void BM_SubjectsByName(benchmark::State& state) {
    Twice(state, [](SMNamespace2& root, const I18NString& name) { root.AddOrUpdateQuerySubject(name, name); });
}
BENCHMARK(BM_SubjectsByName)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_ItemsByName(benchmark::State& state) {
    Twice(state, [](SMNamespace2& root, const I18NString& name) {
        SMQuerySubject2* subject = root.GetQuerySubjectByName("one");
        if (!subject) subject = root.AddOrUpdateDBQuerySubject("one", "one");
        subject->AddOrReturnExistingQueryItem(name, name, name, SMEnum_usage::attribute, SMEnum_datatype::int32, 1, 0, 4, true,
                                              SMEnum_aggregationRule::sum, SMEnum_aggregationRule::sum, name);
    });
}
BENCHMARK(BM_ItemsByName)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_ReferencesOfAView(benchmark::State& state) {
    Twice(state, [](SMNamespace2& root, const I18NString& name) {
        SMSecurityView2* view = root.GetSMProject()->AddSecurityViewOrReturnExisting("view");
        view->InsertRefID(SMEnum_includeRule::include, name, SMSecurityDefinitionSet2::refobj);
    });
}
BENCHMARK(BM_ReferencesOfAView)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
