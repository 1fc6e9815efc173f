#include "core/qvutils/content/contenthasher.h"

#include <algorithm>
#include <cstddef>

#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/content/plainvalue.h"

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

/** Whether a save writes this value of an object that has none. */
bool IsUnset(bool isId, std::string_view plain) {
    return plain == (isId ? std::string_view() : std::string_view("0"));
}

/** Of names with a prefix, those that say where a schema is: the root has them. */
bool IsGivenAttribute(std::string_view name, std::string_view plain) {
    if (name == "id" || name == "version") return IsUnset(name == "id", plain);
    return name.starts_with('x') && (name == "xmlns" || name.starts_with("xmlns:") || name.starts_with("xsi:"));
}

}  // namespace

void ContentHasher::Start(std::string_view name) {
    m_open.push_back({HashOf(name), 0, 0, m_pending.size(), name == "property"});
}

void ContentHasher::Attribute(std::string_view name, std::string_view value) {
    Level& level = m_open.back();
    const std::string_view plain = PlainValue(value, m_space);
    const std::uint64_t hash = HashOf(plain, HashOf(name));
    level.whole += hash;
    if (IsGivenAttribute(name, plain))
        m_pending.push_back(hash);
    else
        level.bare += hash;
    if (!level.isProperty || name != "name") return;
    level.isId = value == "id";
    level.isGiven = level.isId || value == "version";
}

void ContentHasher::Forget(std::string_view name, std::string_view value) {
    Level& level = m_open.back();
    const std::string_view plain = PlainValue(value, m_space);
    const std::uint64_t hash = HashOf(plain, HashOf(name));
    level.whole -= hash;
    if (IsGivenAttribute(name, plain))
        m_pending.erase(std::find(m_pending.begin() + static_cast<std::ptrdiff_t>(level.pending), m_pending.end(), hash));
    else
        level.bare -= hash;
}

void ContentHasher::Text(std::string_view text) {
    if (m_open.empty() || IsLayout(text)) return;
    Level& level = m_open.back();
    const std::string_view plain = PlainValue(text, m_space);
    const std::uint64_t hash = HashOf(plain, TEXT);
    level.bare += hash;
    level.whole += hash;
    level.isGiven = level.isGiven && IsUnset(level.isId, plain);
}

// Levels are not copied: reading a whole one right behind a change of its members makes the processor wait.
const ContentHasher::Digests* ContentHasher::End() {
    const Level& level = m_open.back();
    const std::uint64_t name = level.name, bare = level.bare, whole = level.whole;
    const std::size_t pending = level.pending;
    const bool isGiven = level.isGiven || whole == 0;
    m_open.pop_back();
    if (!m_parts.empty() && m_open.size() == m_parts.back().depth) {
        m_open.back().name = name;
        m_open.back().bare += bare;
        m_open.back().whole += whole;
        return nullptr;
    }
    m_ended.bare = Mix(name, bare);
    m_ended.whole = whole == bare ? m_ended.bare : Mix(name, whole);
    m_ended.isGiven = isGiven;
    m_given.clear();
    if (m_pending.size() != pending) {
        if (!isGiven) GiveAll(pending, m_ended.bare);
        m_pending.resize(pending);
    }
    if (isGiven) m_pending.push_back(m_ended.whole);
    if (m_open.empty()) return &m_ended;
    m_open.back().whole += m_ended.whole;
    if (!isGiven) m_open.back().bare += m_ended.bare;
    return &m_ended;
}

/** What stands several times in an element is told apart, or two elements alike could have it of each other. */
void ContentHasher::GiveAll(std::size_t first, std::uint64_t bare) {
    std::sort(m_pending.begin() + static_cast<std::ptrdiff_t>(first), m_pending.end());
    std::uint64_t times = 0;
    for (std::size_t i = first; i < m_pending.size(); ++i) {
        times = i > first && m_pending[i] == m_pending[i - 1] ? times + 1 : 0;
        m_given.push_back(Mix(m_pending[i] + times, bare));
    }
}

void ContentHasher::EndPart(bool isWhole) {
    const Part part = m_parts.back();
    m_parts.pop_back();
    m_open.resize(part.depth);
    if (isWhole) return;
    m_open.back() = part.placeholder;
    m_pending.resize(part.pending);
}

void ContentHasher::Become(std::string_view name) {
    m_open.back().name = HashOf(name);
}

}  // namespace qv
