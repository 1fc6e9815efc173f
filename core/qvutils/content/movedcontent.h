#pragma once

#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/contentdiff.h"

namespace qv {

/** An element that only the written document has. */
struct ContentGain {
    /** Borrowed. */
    const ContentNode* element;
    /** The innermost element of the document that has a counterpart around it. Borrowed. */
    const ContentNode* around;
};

/** An element that a reader took to another place, though not with all that is in it. */
struct ContentMove {
    /** That of the whole element. */
    ContentLoss loss;
    /** Its counterpart. Borrowed. */
    const ContentNode* written;
};

/**
 * Takes out the losses of elements with others in them that readers took to another place, and their counterparts out of the gains. Those
 * that are not the same there are given, to be compared. An object may be anywhere, told by all that is in it, by its id, or by its name;
 * all else is not far from where it stood, and fills the same object.
 */
SM_API std::vector<ContentMove> TakeMovedObjects(std::vector<ContentLoss>& losses, std::vector<ContentGain>& gains,
                                                 const ContentModel& model);

/**
 * Drops the losses of simple elements that readers took to another place. Such a one may be like what a save has added there by itself: it
 * is kept only where it fills the object that is further out, be it in the place of another value, which is lost; of several, the last.
 * Attributes that it has not there are losses of their own.
 */
SM_API void DropMovedContent(std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model);

}  // namespace qv
