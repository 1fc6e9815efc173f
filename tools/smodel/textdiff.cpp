#include "tools/smodel/textdiff.h"

#include <algorithm>

namespace {

using Lines = std::vector<std::string_view>;

Lines Split(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

/** The greedy search for the shortest edit: for each number of edits, how far each diagonal of the grid of lines is reached. */
class Search {
  public:
    Search(const Lines& a, const Lines& b) : m_a(a), m_b(b) {}

    /** False when more than `most` edits are needed. */
    bool Run(long most) {
        const long sizeA = static_cast<long>(m_a.size()), sizeB = static_cast<long>(m_b.size());
        std::vector<long> reach(static_cast<std::size_t>(2 * most + 3), 0);
        for (long edits = 0; edits <= most; ++edits) {
            for (long diagonal = -edits; diagonal <= edits; diagonal += 2) {
                long& x = reach[static_cast<std::size_t>(diagonal + most + 1)];
                const long below = reach[static_cast<std::size_t>(diagonal + most)],
                           above = reach[static_cast<std::size_t>(diagonal + most + 2)];
                x = edits == 0 ? 0 : diagonal == -edits || (diagonal != edits && below < above) ? above : below + 1;
                while (x < sizeA && x - diagonal < sizeB && m_a[static_cast<std::size_t>(x)] == m_b[static_cast<std::size_t>(x - diagonal)])
                    ++x;
                if (x < sizeA || x - diagonal < sizeB) continue;
                m_steps.push_back(reach);
                return true;
            }
            m_steps.push_back(reach);
        }
        return false;
    }

    std::vector<LineChange> Changes(long most) const {
        std::vector<LineChange> changes;
        long x = static_cast<long>(m_a.size()), y = static_cast<long>(m_b.size());
        for (long edits = static_cast<long>(m_steps.size()) - 1; edits > 0; --edits) {
            const std::vector<long>& before = m_steps[static_cast<std::size_t>(edits - 1)];
            const auto at = [&](long diagonal) { return before[static_cast<std::size_t>(diagonal + most + 1)]; };
            const long diagonal = x - y;
            const bool insertion = diagonal == -edits || (diagonal != edits && at(diagonal - 1) < at(diagonal + 1));
            const long from = insertion ? diagonal + 1 : diagonal - 1;
            x = at(from);
            y = x - from;
            const auto place = static_cast<std::size_t>(insertion ? y : x);
            changes.push_back({insertion ? '+' : '-', place + 1, insertion ? m_b[place] : m_a[place]});
        }
        std::reverse(changes.begin(), changes.end());
        return changes;
    }

  private:
    const Lines& m_a;
    const Lines& m_b;
    std::vector<std::vector<long>> m_steps;
};

std::vector<LineChange> PlaceByPlace(const Lines& a, const Lines& b, std::size_t most) {
    std::vector<LineChange> changes;
    for (std::size_t i = 0; i < std::max(a.size(), b.size()) && changes.size() < most; ++i) {
        if (i < a.size() && i < b.size() && a[i] == b[i]) continue;
        if (i < a.size()) changes.push_back({'-', i + 1, a[i]});
        if (i < b.size()) changes.push_back({'+', i + 1, b[i]});
    }
    if (changes.size() > most) changes.resize(most);
    return changes;
}

}  // namespace

std::vector<LineChange> DiffLines(std::string_view first, std::string_view second, std::size_t most) {
    const Lines a = Split(first), b = Split(second);
    Search search(a, b);
    if (!search.Run(static_cast<long>(most))) return PlaceByPlace(a, b, most);
    return search.Changes(static_cast<long>(most));
}
