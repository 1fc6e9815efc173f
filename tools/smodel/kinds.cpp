#include "tools/smodel/kinds.h"

#include <map>

#include "objects/face/smmodelwalk_002_000.h"

std::vector<KindCount> CountKinds(const schema_002_000::SMProject2& project) {
    std::vector<KindCount> counts;
    std::map<int, std::size_t> places;
    schema_002_000::SMForEachObject(project, [&](const schema_002_000::SMObjectBase& object, int) {
        const auto [entry, isNew] = places.emplace(object.GetSMType(), counts.size());
        if (isNew) counts.push_back({schema_002_000::SMKindOf(object), 0});
        ++counts[entry->second].count;
    });
    return counts;
}
