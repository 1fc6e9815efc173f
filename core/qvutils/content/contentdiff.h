#pragma once

#include <functional>
#include <string_view>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/contenttree.h"

namespace qv {

/** Content that one document has and the other has not. */
struct ContentLoss {
    enum class Kind { element, attribute, text };
    Kind kind;
    /** The element, or the one that has the attribute or the text. Borrowed. */
    const ContentNode* element;
    /** What is around it; null for the root. Borrowed. */
    const ContentNode* outer;
    const ContentAttribute* attribute = nullptr;
    const ContentText* text = nullptr;
    /** What the other document has in the place of the value; null when it has nothing. */
    const std::string* instead = nullptr;
};

/**
 * Finds what of a document is not in the one that was written for it. The written one may order siblings and attributes in its own way,
 * spell numbers and truth values in another one, hold as an attribute what was an element, or the other way round, and hold the value of
 * an element in one of another name; but an element that is not `isKnown` is lost even so.
 */
SM_API void FindContentLosses(const ContentNode& document, const ContentNode& written, const std::function<bool(std::string_view)>& isKnown,
                              const std::function<void(const ContentLoss&)>& tell);

}  // namespace qv
