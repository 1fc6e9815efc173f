#include "objects/dimensional/smmeasure2_002_000.h"

#include "objects/dimensional/smdimension2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMMeasure2* Make(SMProject2& project) {
    return new SMMeasure2(smtest::DimensionOf(project), &project);
}

SMMeasure2* AppendMeasure(SMMeasure2& outer, const char* name, smtest::Values& values) {
    auto* measure = new SMMeasure2(&outer, outer.GetSMProject());
    outer.AppendMeasure(measure);
    return smtest::Named(measure, name, values);
}

void Fill(SMMeasure2& measure, smtest::Values& values) {
    smtest::FillTexts(measure, values);
    measure.SetBasicProperties(SMEnum_usage::fact, SMEnum_datatype::decimal, values.Number(10), values.Number(2), values.Number(8),
                               values.Flag(), SMEnum_aggregationRule::Enum(values.Choice(1, 3)), SMEnum_aggregationRule::Enum(0));
    measure.SetExternalName(values.Text("external name").c_str());
    measure.SetExpression(smtest::KeptXml("expression", "[ns].[s].[i] * 2", values));
    measure.SetPhysicalName(values.Text("COLUMN").c_str());
    measure.SetSort(SMEnum_sort::Enum(values.Choice(1, 3)));
    measure.SetRolesId(values.Text("id of the roles").c_str());
    for (int count = values.Count(1); count > 0; --count) smtest::FillRole(measure, values);
    measure.m_aggregateRules = smtest::KeptXml("aggregateRules", "kept rules", values);
    measure.SetIsHierarchical(values.Flag());
    for (int count = values.Count(2); count > 0; --count)
        AppendMeasure(*AppendMeasure(measure, "nested measure", values), "innermost measure", values);
    measure.displayOrder = values.Number(4);
    smtest::FillBase(measure, values);
}

SMMeasure2* Read(SMProject2& project, const std::string& element) {
    SMDimensionBuilder builder(smtest::DimensionOf(project));
    smtest::ParseInside(builder, element);
    return smtest::DimensionOf(project)->GetMeasures().back();
}

// the ids of its roles are written, but not read
const smtest::Register<SMMeasure2> ENTRY{"SMMeasure2", Make, Fill, Read, false};

}  // namespace
