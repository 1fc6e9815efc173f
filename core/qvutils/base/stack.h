#pragma once

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * Raises a TklRuntimeError when little is left of the stack of this thread. What calls itself for each level of a model asks at each, so
 * that a model that is too deep ends in an error.
 */
SM_API void RequireStack();

}  // namespace qv
