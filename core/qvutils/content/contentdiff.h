#pragma once

#include <functional>
#include <string>

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

/** What a comparison asks about the model. */
struct ContentModel {
    /** Whether an element was read as what its name and its text say; such a one may be written under another name. */
    std::function<bool(const ContentNode&)> isRead;
    /** Under which name an object is written that has another one in the document; empty for all others. Null: there is no such object. */
    std::function<std::string(const ContentNode&)> newName;
};

/**
 * Finds what of a document is not in the one that was written for it. The written one may order siblings and attributes in its own way,
 * spell whole numbers in another one and a day as its midnight, hold as an attribute what was an element, or the other way round, and
 * hold the value of an element that was read in one of another name. All is borrowed.
 */
SM_API void FindContentLosses(const ContentNode& document, const ContentNode& written, const ContentModel& model,
                              const std::function<void(const ContentLoss&)>& tell);

}  // namespace qv
