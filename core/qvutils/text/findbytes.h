#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace qv {

/** The place of `wanted` in `text` at or behind `from`, or npos. Linear in the text also for long texts that nearly match. */
inline std::size_t FindBytes(std::string_view text, std::string_view wanted, std::size_t from) noexcept {
    constexpr std::size_t SHORT = 16;  // up to here the plain search is the faster one, and its worst case is bounded
    if (wanted.size() <= SHORT || from > text.size()) return text.find(wanted, from);
    const auto* const found = static_cast<const char*>(memmem(text.data() + from, text.size() - from, wanted.data(), wanted.size()));
    return found ? static_cast<std::size_t>(found - text.data()) : std::string_view::npos;
}

}  // namespace qv
