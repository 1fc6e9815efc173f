#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

struct LineChange {
    /** '-' for a line of the first text, '+' for one of the second. */
    char sign;
    /** From 1, in the text that has it. */
    std::size_t number;
    /** Borrowed from the text, without its end. */
    std::string_view line;
};

/**
 * The fewest lines to take out of the first text and to put in to get the second. When more than `most` would be needed, the
 * first `most` lines in which the texts differ place by place are given instead.
 */
std::vector<LineChange> DiffLines(std::string_view first, std::string_view second, std::size_t most);
