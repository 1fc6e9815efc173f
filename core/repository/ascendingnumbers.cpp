#include "core/repository/ascendingnumbers.h"

#include <algorithm>
#include <climits>

namespace qv {

namespace {

/** How far apart those are that had to make room. */
constexpr std::int64_t STEP = 16;

/** Numbers for the siblings from `first` to before `last`, evenly between `low` and `low + width`. */
void Spread(std::vector<NumberedSibling>& siblings, std::size_t first, std::size_t last, std::int64_t low, std::int64_t width) {
    const auto parts = static_cast<std::int64_t>(last - first) + 1;
    for (std::size_t at = first; at < last; ++at) siblings[at].number = low + width * static_cast<std::int64_t>(at - first + 1) / parts;
}

}  // namespace

std::vector<bool> LongestAscent(const std::vector<NumberedSibling>& siblings) {
    std::vector<bool> fits(siblings.size());
    // between two that are pinned only numbers between theirs can stay
    std::int64_t low = -1;
    for (std::size_t at = 0; at < siblings.size(); ++at) {
        fits[at] = siblings[at].pinned || (siblings[at].stored && *siblings[at].stored > low);
        if (siblings[at].pinned) low = siblings[at].memory;
    }
    std::int64_t high = INT64_MAX;
    for (std::size_t at = siblings.size(); at-- > 0;) {
        if (siblings[at].pinned)
            high = siblings[at].memory;
        else if (fits[at] && *siblings[at].stored >= high)
            fits[at] = false;
    }
    const auto number = [&](std::size_t at) { return siblings[at].pinned ? siblings[at].memory : *siblings[at].stored; };
    constexpr std::size_t NONE = SIZE_MAX;
    std::vector<std::size_t> ends, before(siblings.size(), NONE);
    for (std::size_t at = 0; at < siblings.size(); ++at) {
        if (!fits[at]) continue;
        const auto place = std::lower_bound(ends.begin(), ends.end(), number(at),
                                            [&](std::size_t end, std::int64_t other) { return number(end) < other; });
        if (place != ends.begin()) before[at] = *(place - 1);
        if (place == ends.end())
            ends.push_back(at);
        else
            *place = at;
    }
    std::vector<bool> kept(siblings.size());
    for (std::size_t at = ends.empty() ? NONE : ends.back(); at != NONE; at = before[at]) kept[at] = true;
    return kept;
}

void NumberSiblings(std::vector<NumberedSibling>& siblings) {
    std::vector<bool> kept = LongestAscent(siblings);
    std::size_t pinned = 0;  // the place behind the last one that is
    for (std::size_t at = 0; at < siblings.size();) {
        if (kept[at]) {
            siblings[at].number = siblings[at].pinned ? siblings[at].memory : *siblings[at].stored;
            if (siblings[at++].pinned) pinned = at;
            continue;
        }
        const std::int64_t low = at == 0 ? -1 : siblings[at - 1].number;
        std::size_t end = at;
        bool pushes = false;
        const auto goOn = [&] {
            while (end < siblings.size() && !kept[end]) ++end;
        };
        goOn();
        const auto count = [&] { return static_cast<std::int64_t>(end - at); };
        const auto room = [&] { return siblings[end].pinned ? siblings[end].memory - low - 1 : *siblings[end].stored - low - 1; };
        while (end < siblings.size() && !siblings[end].pinned && room() < count()) {
            pushes = true;
            kept[end] = false;
            goOn();
        }
        const std::int64_t width = end < siblings.size() ? room() + 1 : (pushes ? STEP : 1) * (count() + 1);
        if (width > count() && low + width * count() / (count() + 1) <= INT_MAX) {
            Spread(siblings, at, end, low, width);
        } else {
            // the numbers of memory fit between those that are pinned
            for (std::size_t back = pinned; back < end; ++back) siblings[back].number = siblings[back].memory;
        }
        at = end;
    }
}

}  // namespace qv
