#include "core/qvutils/content/differingcontent.h"

#include <algorithm>

namespace qv {

void DifferingContent::Settle() {
    std::sort(m_written.begin(), m_written.end());
    std::size_t kept = 0;
    for (std::size_t at = 0; at < m_written.size(); ++kept) {
        const std::size_t start = at;
        while (at < m_written.size() && m_written[at] == m_written[start]) ++at;
        m_written[kept] = m_written[start];
        m_left.push_back(static_cast<std::uint32_t>(at - start));
    }
    m_written.resize(kept);
}

bool DifferingContent::IsWritten(std::uint64_t given) {
    if (m_sums.IsBalanced(ContentSums::Kind::given, given)) return true;
    const auto found = std::lower_bound(m_written.begin(), m_written.end(), given);
    if (found == m_written.end() || *found != given) return false;
    std::uint32_t& left = m_left[static_cast<std::size_t>(found - m_written.begin())];
    return left > 0 && left-- > 0;
}

bool DifferingContent::IsOfDocument(const ContentHasher::Digests& element, const Given& given, bool holds) {
    bool differs = holds;
    for (const std::uint64_t one : given) differs = !IsWritten(one) || differs;
    if (!m_sums.IsBalanced(ContentSums::Kind::element, element.bare)) return true;
    if (differs) m_chosen.insert(element.bare);
    return differs;
}

}  // namespace qv
