#pragma once

#include <string>
#include <vector>

#include "objects/base/smobjectbase_002_000.h"

namespace smtest {

/** The row of an object as it would be written, one column a line: `NAME S "n"`. */
std::vector<std::string> ColumnsOf(schema_002_000::SMObjectBase& object);

}  // namespace smtest
