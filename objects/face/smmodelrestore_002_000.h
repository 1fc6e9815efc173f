#pragma once

#include <utility>
#include <vector>

#include "objects/face/smmodeloutline_002_000.h"

namespace schema_002_000 {

struct SMRestoreResult : SMResult {
    /** The model of now with one object as it was then; null unless the status is done. */
    QvSmartPtr<SMProject2> project;
    /** The ids by which objects of this model were known in the two others, where its document has none. */
    std::vector<std::pair<QvSmartPtr<SMObjectBase>, QvULString>> ids;
};

/**
 * Puts the object with an id, and all that hangs below it, into the model of now as it was then. Objects of the two models are told to be
 * the same by their ids and tables. The object takes its present place; if it is gone, or stands below something else now, the place behind
 * the nearest elder sibling that is still there. What stood below it then and stands elsewhere now comes back too, and a note tells so;
 * notes also name the references that lead nowhere because of it. Fails, and says what to do first, when what the object hung below is
 * gone, and when something else has its name by now, or the id of it or of something below it.
 */
SM_API SMRestoreResult SMRestoreObject(const SMModelOutline& then, const SMModelOutline& now, const QvULString& id,
                                       const SMControl& control = {});

}  // namespace schema_002_000
