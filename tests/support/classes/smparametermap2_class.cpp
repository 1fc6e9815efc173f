#include "objects/publication/smparametermap2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMParameterMap2* Make(SMProject2& project) {
    return new SMParameterMap2(&project, &project);
}

void Fill(SMParameterMap2& map, smtest::Values& values) {
    map.SetName(values.Name("parameter map").c_str());
    map.SetHidden(values.Flag());
    map.SetDefaultValue(values.Text("default value").c_str());
    for (int count = values.Count(2); count > 0; --count) {
        const std::string key = values.Name("key " + std::to_string(count));
        map.AddOrUpdateParameterMapEntry(key.c_str(), values.Text("[ns].[subject].[item]").c_str());
        smtest::FillIdentity(*map.GetParameterMapEntryWithKey(key.c_str()), values);
    }
    if (values.Flag())
        map.SetQueryItemMap(new SM_QUERY_ITEM_MAP{values.Text("key reference").c_str(), values.Text("value reference").c_str()});
    smtest::FillBase(map, values);
}

SMParameterMap2* Read(SMProject2& project, const std::string& element) {
    SMProjectBuilder builder(&project);
    smtest::ParseInside(builder, element);
    return project.GetParameterMaps().back();
}

const smtest::Register<SMParameterMap2> ENTRY{"SMParameterMap2", Make, Fill, Read};

}  // namespace
