#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "objects/project/smproject2_002_000.h"

struct KindCount {
    std::string kind;
    std::size_t count = 0;
};

/** The objects of a model by kind, in the order in which the kinds first come. */
std::vector<KindCount> CountKinds(const schema_002_000::SMProject2& project);
