#pragma once

#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/contentdiff.h"

namespace qv {

/**
 * A reader may take an element for one of an object further out, in which it then stands in the place of another value. The other value is
 * lost, but the element is not: of several, the last.
 */
SM_API void DropMovedContent(std::vector<ContentLoss>& losses);

}  // namespace qv
