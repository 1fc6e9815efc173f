#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "objects/base/smobjectbase_002_000.h"

namespace smtest {

/**
 * What is known of an object and all below it, from all its faces: "kind.field" and a value, with the number of times that it
 * stands there. A text in another than the default locale is "kind.name(other)", a custom property "kind.property".
 */
using Facts = std::map<std::pair<std::string, std::string>, int>;

Facts FactsOf(schema_002_000::SMObjectBase& object);

/** The fields in which two objects differ. */
std::set<std::string> DifferingFields(const Facts& a, const Facts& b);

}  // namespace smtest
