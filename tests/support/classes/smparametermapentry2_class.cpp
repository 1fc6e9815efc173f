#include "objects/publication/smparametermap2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

/** The map that the entry stands in. */
SMParameterMap2* MapOf(SMProject2& project) {
    SMParameterMap2* map = project.AddParameterMapOrReturnExisting("map", false);
    map->SetId("map");
    return map;
}

SMParameterMapEntry2* Make(SMProject2& project) {
    return new SMParameterMapEntry2(MapOf(project), &project);
}

void Fill(SMParameterMapEntry2& entry, smtest::Values& values) {
    entry.SetKey(values.Text("the key").c_str());
    entry.SetValue(values.Text("the value").c_str());
    smtest::FillBase(entry, values);
}

SMParameterMapEntry2* Read(SMProject2& project, const std::string& element) {
    SMParameterMapBuilder builder(MapOf(project));
    smtest::ParseInside(builder, element);
    return MapOf(project)->GetEntries().back();
}

const smtest::Register<SMParameterMapEntry2> ENTRY{"SMParameterMapEntry2", Make, Fill, Read};

}  // namespace
