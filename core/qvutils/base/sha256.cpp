#include "core/qvutils/base/sha256.h"

#include "core/qvutils/diag/tklerrors.h"

#include <openssl/evp.h>

namespace qv {

std::array<std::uint8_t, 32> Sha256(std::string_view bytes) {
    std::array<std::uint8_t, 32> digest;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_sha256(), nullptr) != 1)
        throw TklRuntimeError("The cryptographic library cannot make a SHA-256 digest.");
    return digest;
}

std::string ToHex(const std::uint8_t* bytes, std::size_t count) {
    std::string text;
    text.reserve(2 * count);
    for (std::size_t at = 0; at < count; ++at) {
        text += "0123456789abcdef"[bytes[at] >> 4];
        text += "0123456789abcdef"[bytes[at] & 15];
    }
    return text;
}

}  // namespace qv
