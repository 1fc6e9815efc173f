#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::piececodec {

/** The SHA-256 of the bytes, as 64 lower-case hexadecimal digits. */
std::string Digest(std::string_view bytes);
inline constexpr std::size_t DIGEST_SIZE = 64;

/** Compressed with Zstandard, as one frame that tells its size. */
std::string Pack(std::string_view bytes);
/** Nothing when the bytes are no such frame, or would grow beyond `limit` bytes. */
std::optional<std::string> Unpack(std::string_view packed, std::size_t limit);

}  // namespace qv::piececodec
