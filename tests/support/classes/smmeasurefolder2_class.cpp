#include "objects/dimensional/smmeasurefolder2_002_000.h"

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMMeasureFolder2* Make(SMProject2& project) {
    return new SMMeasureFolder2(smtest::DimensionOf(project), &project);
}

void AddMeasure(SMMeasureFolder2& folder, const char* name, smtest::Values& values) {
    auto* measure = new SMMeasure2(&folder, folder.GetSMProject());
    folder.AddMeasure(measure);
    smtest::Named(measure, name, values);
}

void Fill(SMMeasureFolder2& folder, smtest::Values& values) {
    smtest::FillTexts(folder, values);
    folder.SetHidden(values.Flag());
    for (int count = values.Count(1); count > 0; --count) {
        auto* inner = new SMMeasureFolder2(&folder, folder.GetSMProject());
        AddMeasure(*inner, "innermost measure", values);
        folder.AddMeasureFolder(inner);
        smtest::Named(inner, "inner folder", values);
        AddMeasure(folder, "inner measure", values);
    }
    folder.displayOrder = values.Number(4);
    smtest::FillBase(folder, values);
}

SMMeasureFolder2* Read(SMProject2& project, const std::string& element) {
    SMDimensionBuilder builder(smtest::DimensionOf(project));
    smtest::ParseInside(builder, element);
    return smtest::DimensionOf(project)->GetMeasureFolders().back();
}

const smtest::Register<SMMeasureFolder2> ENTRY{"SMMeasureFolder2", Make, Fill, Read};

}  // namespace
