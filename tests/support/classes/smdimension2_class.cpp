#include "objects/dimensional/smdimension2_002_000.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/dimensional/smhierarchy2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "objects/dimensional/smmeasurefolder2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMDimension2* Make(SMProject2& project) {
    SMNamespace2* root = smtest::RootOf(project);
    return new SMDimension2(root, &project, root);
}

void Fill(SMDimension2& dimension, smtest::Values& values) {
    if (values.Flag()) dimension.SetType(SMEnum_dimensionType::Enum(values.Choice(1, 4)));
    dimension.SetMembersRollup(!values.Flag());
    dimension.SetDefaultHierarchy(values.Text("default hierarchy").c_str());
    for (int count = values.Count(1); count > 0; --count) {
        dimension.AddHierarchy(smtest::NewChild<SMHierarchy2>(dimension, "inner hierarchy", values));
        dimension.AddMeasureFolder(smtest::NewChild<SMMeasureFolder2>(dimension, "inner measure folder", values));
        dimension.AddMeasure(smtest::NewChild<SMMeasure2>(dimension, "inner measure", values));
    }
    smtest::FillItems(dimension, values);
    smtest::FillSubject(dimension, values);
}

SMDimension2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetDimensions().back();
}

const smtest::Register<SMDimension2> ENTRY{"SMDimension2", Make, Fill, Read};

}  // namespace
