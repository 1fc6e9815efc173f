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
 * Takes the losses of objects out whose names are written at another place: such a one is lost in part only, and has to be compared with
 * its counterpart, which is no gain any more. Where all of it is written somewhere, it stays for what drops moved content.
 */
SM_API std::vector<ContentMove> TakeMovedObjects(std::vector<ContentLoss>& losses, std::vector<ContentGain>& gains,
                                                 const ContentModel& model);

/**
 * Drops losses of what readers took to another place. An element that holds others, such as an object outside of its section, is not lost
 * when the same is written somewhere else. A simple one may be like what a save has added there by itself: it is kept only where it fills
 * the object that is further out, be it in the place of another value, which is lost; of several, the last.
 */
SM_API void DropMovedContent(std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model);

}  // namespace qv
