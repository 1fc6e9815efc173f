#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace qv {

/** A child in the order of its siblings. */
struct NumberedSibling {
    /** Its number in memory; siblings come in the order of these, without equal ones. */
    std::int64_t memory = 0;
    /** The number of its row; none for a new one. */
    std::optional<std::int64_t> stored;
    /** It was written with its number of memory, so that it has to stay with that. */
    bool pinned = false;
    /** The number that its row is to have. */
    std::int64_t number = 0;
};

/** Whether each of the siblings is of the longest series whose stored numbers ascend, which goes through all that are pinned. */
std::vector<bool> LongestAscent(const std::vector<NumberedSibling>& siblings);

/**
 * Gives the siblings numbers of the same order, as many as can be of those that they have in the store. One that comes between two
 * others takes a number between theirs; where there is none left, those behind it get new ones, wide enough apart for others to
 * come.
 */
void NumberSiblings(std::vector<NumberedSibling>& siblings);

}  // namespace qv
