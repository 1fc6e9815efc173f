#include "core/qvutils/content/contentsums.h"

#include <algorithm>
#include <bit>

namespace qv {

bool ContentSums::AreCovered() {
    const auto isZero = [](std::uint64_t sum) { return sum == 0; };
    const auto given = m_sums.begin() + ELEMENTS;
    if (!std::all_of(m_sums.begin(), given, isZero)) return false;
    if (std::all_of(given, m_sums.end(), isZero)) return true;
    if (m_isCut) return false;
    std::sort(m_standing.begin(), m_standing.end());
    std::sort(m_written.begin(), m_written.end());
    return std::includes(m_written.begin(), m_written.end(), m_standing.begin(), m_standing.end());
}

void ContentSums::LookAtStanding() {
    constexpr std::size_t BITS = 8;
    m_mayStand.resize(std::bit_ceil(BITS * (m_standing.size() + 1)));
    for (const std::uint64_t digest : m_standing) m_mayStand[digest & (m_mayStand.size() - 1)] = true;
}

}  // namespace qv
