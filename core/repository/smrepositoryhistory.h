#pragma once

#include <cstddef>
#include <vector>

#include "core/qvutils/base/qvdate.h"
#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"
#include "core/qvutils/text/qvulstring.h"

/** A revision of a project: one save that changed something. */
struct SM_API SMRepositoryRevision {
    long number = 0;
    /** UTC. */
    QvDate savedAt{false};
    I18NString author, message;
    /** The document of what was saved stands beside the rows. */
    bool hasDocument = false;
    /** The same for equal documents, and for no others; empty without a document. */
    I18NString documentDigest;
    std::size_t documentBytes = 0;
};

/** One value of an object, before and after. A value that is not there is null, which is not the empty text. */
struct SM_API SMRepositoryValue {
    /** A column; a column and a locale, "NAME[fr]"; or a record of remaining info, "record NAME". */
    I18NString name;
    bool isThereBefore = false, isThereAfter = false;
    I18NString before, after;
};

/** An object that two states tell differently. */
struct SM_API SMRepositoryChange {
    enum What { added, changed, removed };

    What what = changed;
    /** "queryItem", "namespace" ...: the kind as documents name it. */
    QvULString kind;
    QvULString id, parentId;
    I18NString name;
    /** The names from the project's down to the object's own. */
    std::vector<I18NString> path;
    /** What differs, in the order of the columns; of an object that was added or removed all that it has. */
    std::vector<SMRepositoryValue> values;
    /** The order of those of its children that both states have differs. */
    bool order = false;
};

/** How many objects differ. */
struct SM_API SMRepositoryChangeCounts {
    std::size_t added = 0, changed = 0, removed = 0;
};

/** Who set a value of an object as it stands: the revision from which on it has not changed. */
struct SM_API SMRepositoryBlame {
    I18NString name, value;
    SMRepositoryRevision revision;
};

/** What pruning took away. */
struct SM_API SMRepositoryPruned {
    long revisions = 0;
    /** The oldest revision that is left. */
    long oldest = 0;
    long rows = 0;
    long pieces = 0;
};
