#include "core/qvutils/content/contenthasher.h"

#include "core/qvutils/content/contentsink.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace qv {
namespace {

constexpr std::uint64_t TEXT = 0x7465'7874;

std::uint64_t HashOf(std::string_view text, std::uint64_t seed = 0) {
    return XXH3_64bits_withSeed(text.data(), text.size(), seed);
}

/** Sums alone would let parts of two elements change places unseen. */
std::uint64_t Mix(std::uint64_t name, std::uint64_t sum) {
    std::uint64_t hash = name * 0x9E37'79B1'85EB'CA87u + sum;
    hash = (hash ^ hash >> 29) * 0xBF58'476D'1CE4'E5B9u;
    return (hash ^ hash >> 32) * 0x94D0'49BB'1331'11EBu;
}

}  // namespace

void ContentHasher::Start(std::string_view name) {
    m_open.push_back({HashOf(name)});
}

void ContentHasher::Attribute(std::string_view name, std::string_view value) {
    m_open.back().sum += HashOf(value, HashOf(name));
}

void ContentHasher::Forget(std::string_view name, std::string_view value) {
    m_open.back().sum -= HashOf(value, HashOf(name));
}

void ContentHasher::Text(std::string_view text) {
    if (!m_open.empty() && !IsLayout(text)) m_open.back().sum += HashOf(text, TEXT);
}

std::optional<std::uint64_t> ContentHasher::End() {
    const Level level = m_open.back();
    m_open.pop_back();
    if (!m_parts.empty() && m_open.size() == m_parts.back().depth) {
        m_open.back().name = level.name;
        m_open.back().sum += level.sum;
        return std::nullopt;
    }
    const std::uint64_t hash = Mix(level.name, level.sum);
    if (!m_open.empty()) m_open.back().sum += hash;
    return hash;
}

void ContentHasher::EndPart(bool isWhole) {
    const Part part = m_parts.back();
    m_parts.pop_back();
    m_open.resize(part.depth);
    if (!isWhole) m_open.back() = part.placeholder;
}

}  // namespace qv
