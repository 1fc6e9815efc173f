#include "objects/dimensional/smhierarchy2_002_000.h"

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMHierarchy2* Make(SMProject2& project) {
    return new SMHierarchy2(smtest::DimensionOf(project), &project);
}

void Fill(SMHierarchy2& hierarchy, smtest::Values& values) {
    smtest::FillTexts(hierarchy, values);
    if (!values.AreRandom()) {  // a repository does not bring them back, which would hide what it loses of other items
        hierarchy.SetQueryItem(smtest::NewChild<SMQueryItem2>(hierarchy, "inner item", values));
        hierarchy.SetQueryItemFolder(smtest::NewChild<SMQueryItemFolder2>(hierarchy, "inner item folder", values));
    }
    for (int count = values.Count(2); count > 0; --count) hierarchy.AddLevel(smtest::NewChild<SMLevel2>(hierarchy, "inner level", values));
    hierarchy.m_externalName = values.Text("external name").c_str();
    hierarchy.m_multiRoot = values.Flag();
    hierarchy.m_balanced = !values.Flag();
    hierarchy.m_ragged = values.Flag();
    hierarchy.m_rootMember = values.Text("root member").c_str();
    hierarchy.SetRootMUN(values.Text("[all]").c_str());
    if (values.Flag()) hierarchy.SetRootCaption(values.Text("all").c_str());
    if (values.Flag()) hierarchy.AddRootCaption("fr", values.Text("tous").c_str());
    if (values.Flag()) hierarchy.m_sortedHierarchy = SMEnum_sortedHierarchy::Enum(values.Choice(1, 3));
    if (values.Flag()) hierarchy.m_cardinality = values.Number(100);
    hierarchy.m_parentChild = values.Flag();
    if (values.Flag()) hierarchy.m_externalNumberOfLevels = values.Number(5);
    hierarchy.m_isWideFan = values.Flag();
    hierarchy.displayOrder = values.Number(4);
    smtest::FillBase(hierarchy, values);
}

SMHierarchy2* Read(SMProject2& project, const std::string& element) {
    SMDimensionBuilder builder(smtest::DimensionOf(project));
    smtest::ParseInside(builder, element);
    return smtest::DimensionOf(project)->GetHierarchies().back();
}

const smtest::Register<SMHierarchy2> ENTRY{"SMHierarchy2", Make, Fill, Read};

}  // namespace
