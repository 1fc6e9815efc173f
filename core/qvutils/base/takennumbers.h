#pragma once

#include <algorithm>
#include <iterator>
#include <map>

namespace qv {

/** Finds numbers that are free, and remembers which are taken: as runs, so that no two searches look at the same number. */
class TakenNumbers {
  public:
    /** The first number from `start` on that is free. What `isTaken` has told of a number must stay true as long as this lives. */
    template <class IsTaken>
    long FirstFree(long start, IsTaken isTaken) {
        long free = FirstUnknown(start);
        while (isTaken(free)) free = FirstUnknown(free + 1);
        Add(start, free);
        return free;
    }

  private:
    long FirstUnknown(long number) const {
        const auto behind = m_runs.upper_bound(number);
        return behind == m_runs.begin() ? number : std::max(number, std::prev(behind)->second);
    }
    void Add(long start, long end) {
        auto run = m_runs.upper_bound(start);
        if (run != m_runs.begin() && std::prev(run)->second >= start) start = (--run)->first;
        while (run != m_runs.end() && run->first <= end) {
            end = std::max(end, run->second);
            run = m_runs.erase(run);
        }
        if (start < end) m_runs.emplace(start, end);
    }

    /** From the first number of each run to the one behind its last. */
    std::map<long, long> m_runs;
};

}  // namespace qv
