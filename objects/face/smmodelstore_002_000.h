#pragma once

#include <cstddef>
#include <functional>

#include "core/qvutils/persist/iohelper.h"
#include "objects/face/smoperation_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

struct SMPutResult : SMResult {
    /** Objects looked at. What was written of them is known to the persistence context. */
    std::size_t objects = 0;
};

struct SMGetResult : SMResult {
    /** Null unless the status is done. */
    QvSmartPtr<SMProject2> project;
    std::size_t objects = 0;
};

/**
 * Saves a whole model through a persistence context. Objects without an id get one. A context that keeps documents gets the canonical
 * document first, as the model was before ids and versions were given. `settle`, if there is one, is called then: what it changes is in the
 * rows and not in the document, so that objects can be given ids that the document does not tell.
 */
SM_API SMPutResult SMPutModel(SMProject2& project, IOHelper& context, const SMControl& control = {},
                              const std::function<void()>& settle = {});
/**
 * Loads the whole model of a persistence context. What the context is known not to hold is no finding (docs/losses.md); a query of a
 * definition that should be in a record and is not there is one.
 */
SM_API SMGetResult SMGetModel(IOHelper& context, const SMControl& control = {});

}  // namespace schema_002_000
