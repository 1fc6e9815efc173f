#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"

namespace qv {

/** What a parser tells is behind it already; this asks where it began. */
struct PlaceQuestion {
    enum class What {
        /** The element whose start tag ends at the place. */
        element,
        /** Its attribute `name`. */
        attribute,
        /** The text that follows the tag that ends at the place. */
        text,
        /** Of an event: the element whose start tag ends here; for the end of a simple element its text. */
        event,
    };
    What what;
    /** From 1; columns count units of UTF-16. */
    long line = 0, column = 0;
    std::string name;
    /** Out: the first character, left as it is when nothing is found there, and the size in bytes. */
    long startLine = line, startColumn = column;
    std::size_t bytes = 0;
    /** Out: the tag lacks the attribute, which the DOCTYPE gives it. The place is that of the element then, and `bytes` stays as it is. */
    bool isDefault = false;
};

/**
 * Answers questions about a document in one pass. It is UTF-8 and was parsed without an error before. What an internal entity holds
 * stands where the reference to it stands.
 */
SM_API void AnswerPlaces(std::string_view document, std::vector<PlaceQuestion>& questions);

}  // namespace qv
