#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/xml/limits.h"

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
 * Answers questions about a document in one pass. It is UTF-8 and was parsed before, under these limits, as far as the questions go. What
 * an internal entity holds stands where the reference to it stands.
 */
SM_API void AnswerPlaces(std::string_view document, std::vector<PlaceQuestion>& questions, const SMXMLLimits& limits = {});

/** What a parser has come to when it stops. */
enum class SourcePiece {
    /** The element whose start tag or end tag it is behind. */
    element,
    /** An attribute of the start tag that it is behind or in. */
    attribute,
    /** The text that it is behind or in. */
    text,
    /** The text, tag, comment, instruction or DOCTYPE that it is in. */
    markup,
    /** The declaration of the DOCTYPE that it is behind or in. */
    declaration,
    /** The last reference to an entity. */
    reference,
};

struct SourcePlace {
    /** From 1; 0 when not known. */
    long line = 0, column = 0;
};

/**
 * Where the piece begins, in one pass. The parser stands at `offset` of the document, which is UTF-8 and in order up to there. `attribute`
 * counts from 0; one that the tag lacks, since the DOCTYPE gives it, has the place of the element.
 */
SM_API SourcePlace BeginningOf(SourcePiece piece, std::string_view document, std::size_t offset, std::size_t attribute = 0);

/** Where the rest of a document begins of which each line end became a line feed; npos when the document does not end so. */
SM_API std::size_t OffsetOfRest(std::string_view document, std::string_view rest);

/** The column of the character at `offset`, which may be the end. */
SM_API long ColumnAt(std::string_view document, std::size_t offset);

}  // namespace qv
