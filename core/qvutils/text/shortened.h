#pragma once

#include <string>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * A text for a message: one that is very long keeps its beginning and its end, of whole characters, with "..." between them. `most` is
 * how many bytes it may have as it is.
 */
SM_API std::string Shortened(std::string_view text, std::size_t most = 500);

}  // namespace qv
