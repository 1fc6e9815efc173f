#pragma once

#include <functional>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace schema_002_000 {

/** Which elements of kept XML name objects: those that always do, or also the tables and columns of SQL over the model. */
enum class SMKeptNames { references, tablesToo };

/**
 * Hands on the object ids that stand in kept XML, in their order. The form in which elements are kept is read in one pass over its
 * bytes, and not proved to be well-formed; any other goes through the parser, and raises TklRuntimeError when it is no XML.
 */
SM_API void SMForEachKeptReference(std::string_view xml, SMKeptNames names, const std::function<void(std::string_view text)>& visit);

}  // namespace schema_002_000
