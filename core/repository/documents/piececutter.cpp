#include "core/repository/documents/piececutter.h"

#include <algorithm>
#include <array>

namespace qv {

namespace {

/** Fourteen bits that depend on all of the last 64 bytes: one place in 16 K is a cut. */
constexpr std::uint64_t CUT_MASK = std::uint64_t{0x3fff} << 50;

/** One random number for each byte. Stores hold what was cut by them, so they never change. */
constexpr std::array<std::uint64_t, 256> GEAR = [] {
    std::array<std::uint64_t, 256> gear{};
    std::uint64_t state = 0x736d6f64656c2031;
    for (std::uint64_t& number : gear) {
        std::uint64_t mixed = state += 0x9e3779b97f4a7c15;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
        number = mixed ^ (mixed >> 31);
    }
    return gear;
}();

}  // namespace

std::size_t PieceCutter::FindEnd(std::size_t start) {
    const std::size_t available = m_bytes.size() - start;
    const std::size_t limit = std::min(available, MAX_BYTES);
    std::size_t at = std::max(m_seen, MIN_BYTES - 64);  // what lies before can have no cut and leaves no trace in the hash
    for (; at < limit; ++at) {
        m_hash = (m_hash << 1) + GEAR[static_cast<unsigned char>(m_bytes[start + at])];
        if ((m_hash & CUT_MASK) == 0 && at + 1 >= MIN_BYTES) break;
    }
    if (at >= limit && limit < MAX_BYTES) {
        m_seen = at;
        return std::string::npos;
    }
    m_seen = 0;
    m_hash = 0;
    return start + std::min(at + 1, limit);
}

void PieceCutter::Add(std::string_view bytes) {
    m_bytes += bytes;
    std::size_t start = 0;
    for (std::size_t end = FindEnd(start); end != std::string::npos; end = FindEnd(start)) {
        m_take(std::string_view(m_bytes).substr(start, end - start));
        start = end;
    }
    m_bytes.erase(0, start);
}

void PieceCutter::Finish() {
    if (!m_bytes.empty()) m_take(m_bytes);
    m_bytes.clear();
}

}  // namespace qv
