#include "objects/dimensional/smlevel2_002_000.h"

#include "objects/dimensional/smhierarchy2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMLevel2* Make(SMProject2& project) {
    return new SMLevel2(smtest::HierarchyOf(project), &project);
}

void Fill(SMLevel2& level, smtest::Values& values) {
    smtest::FillTexts(level, values);
    smtest::FillItems(level, values);
    level.SetHidden(values.Flag());
    level.SetIsUnique(values.Flag());
    level.SetIsManual(values.Flag());
    level.SetExternalName(values.Text("external name").c_str());
    if (values.Flag()) level.SetExternalOrdinal(values.Number(2));
    level.m_memberSort = smtest::KeptXml("memberSort", "kept sorting", values);
    level.displayOrder = values.Number(4);
    smtest::FillBase(level, values);
}

SMLevel2* Read(SMProject2& project, const std::string& element) {
    SMHierarchyBuilder builder(smtest::HierarchyOf(project));
    smtest::ParseInside(builder, element);
    return smtest::HierarchyOf(project)->GetLevels().back();
}

const smtest::Register<SMLevel2> ENTRY{"SMLevel2", Make, Fill, Read};

}  // namespace
