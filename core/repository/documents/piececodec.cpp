#include "core/repository/documents/piececodec.h"

#include "core/qvutils/base/sha256.h"
#include "core/repository/backend.h"

#include <memory>

#include <zstd.h>

namespace qv::piececodec {

namespace {

constexpr int COMPRESSION_LEVEL = 1;

struct FreeCompressor {
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
};

}  // namespace

std::string Digest(std::string_view bytes) {
    const std::array<std::uint8_t, 32> digest = Sha256(bytes);
    return ToHex(digest.data(), digest.size());
}

std::string Pack(std::string_view bytes) {
    static thread_local const std::unique_ptr<ZSTD_CCtx, FreeCompressor> context(ZSTD_createCCtx());
    std::string packed(ZSTD_compressBound(bytes.size()), '\0');
    const std::size_t size = ZSTD_compressCCtx(context.get(), packed.data(), packed.size(), bytes.data(), bytes.size(), COMPRESSION_LEVEL);
    if (ZSTD_isError(size)) throw StoreError(std::string("A piece of the document cannot be compressed: ") + ZSTD_getErrorName(size));
    packed.resize(size);
    packed.shrink_to_fit();
    return packed;
}

std::optional<std::string> Unpack(std::string_view packed, std::size_t limit) {
    const unsigned long long size = ZSTD_getFrameContentSize(packed.data(), packed.size());
    if (size == ZSTD_CONTENTSIZE_ERROR || size == ZSTD_CONTENTSIZE_UNKNOWN || size > limit) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const std::size_t read = ZSTD_decompress(bytes.data(), bytes.size(), packed.data(), packed.size());
    if (ZSTD_isError(read) || read != bytes.size()) return std::nullopt;
    return bytes;
}

}  // namespace qv::piececodec
