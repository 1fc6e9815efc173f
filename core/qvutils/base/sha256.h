#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/** The SHA-256 digest of the bytes. */
SM_API std::array<std::uint8_t, 32> Sha256(std::string_view bytes);

/** Bytes as hexadecimal digits in lower case. */
SM_API std::string ToHex(const std::uint8_t* bytes, std::size_t count);

}  // namespace qv
