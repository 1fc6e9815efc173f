#pragma once

#include <functional>
#include <string>
#include <vector>

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
    /** When `outer` is a list that stands twice: the other one of it, into which readers may have taken the element. Borrowed. */
    const ContentNode* twin = nullptr;
};

/** What a comparison asks about the model. */
struct ContentModel {
    /** Whether an element was read as what its name and its text say; such a one may be written further out, or as an attribute. */
    std::function<bool(const ContentNode&)> isRead;
    /**
     * Whether an element of either document is an entry of a list, which a save never adds by itself: it may be written under the name of
     * another one, or have stood beside its list.
     */
    std::function<bool(const ContentNode&)> isEntry;
    /** Under which name an object is written that has another one in the document; empty for all others. Null: there is no such object. */
    std::function<std::string(const ContentNode&)> newName;
};

/** Of both documents, elements that a comparison has to know with all that is in them; none of which holds another one. */
struct WantedContent {
    std::vector<ContentRange> document, written;

    bool IsNone() const { return document.empty() && written.empty(); }
};

/**
 * Finds what of a document is not in the one that was written for it. The written one may order siblings and attributes in its own way,
 * spell whole numbers in another one and a day as its midnight, hold as an attribute what was an element, and as elements what were
 * the id and name of a placeholder, and hold the value of an entry, or a text beside entries, in an entry of another name. An element
 * counts where it stands: what is the same somewhere else stands for it only if a reader took it there. All is borrowed.
 *
 * Nothing is told when it needs hollow elements, which it gives: with those kept whole it can be asked again, and needs no others.
 */
SM_API WantedContent FindContentLosses(const ContentNode& document, const ContentNode& written, const ContentModel& model,
                                       const std::function<void(const ContentLoss&)>& tell);

}  // namespace qv
