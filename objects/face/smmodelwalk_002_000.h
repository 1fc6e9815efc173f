#pragma once

#include <functional>
#include <string>

#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

/** What a listing shows of an object. */
struct SM_API SMObjectLine {
    /** The name of its element. */
    std::string kind;
    /** Empty for kinds that have none. */
    std::string objectId;
    /** Where its kind has one, the path through namespaces and objects; else the text that names it in messages. */
    std::string path;
    std::string id;
};

/**
 * Visits the project and each object below it, a parent before its children, siblings in the order in which they came into the
 * model. `depth` is 0 for the project. The visitor must not add or remove objects.
 */
SM_API void SMForEachObject(const SMProject2& project, const std::function<void(const SMObjectBase& object, int depth)>& visit);

SM_API SMObjectLine SMDescribeObject(const SMObjectBase& object);
/** The element's name alone. */
SM_API std::string SMKindOf(const SMObjectBase& object);
/** The name that people know the object by; empty for kinds that have none. */
SM_API std::string SMNameOf(const SMObjectBase& object);

}  // namespace schema_002_000
