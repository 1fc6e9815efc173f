#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "objects/face/smmodeldocument_002_000.h"

namespace schema_002_000 {

struct SMSplitOptions {
    SMControl control;
    /** Whether each namespace, and each package, goes to a file of its own. */
    bool namespaces = true, packages = true;
    /** The name of the main document. */
    std::string mainName = "main.xml";
};

struct SMSplitResult : SMResult {
    std::size_t bytes = 0;
    /** Names of the files that are new or have changed, the main document last. */
    std::vector<std::string> changed;
};

/**
 * Writes the model as a main document with separate files into a directory, which is made when it is not there. All files take
 * their places together, the main document last: a split that does not end well leaves the directory as it was. Files that hold
 * the same already are not touched, and those that the model has no more are left alone. Data sources are written with their
 * connections, also those of a model that was never stored. What the files do not bring back is told in notes. A model of
 * which a separate file could not be read is refused. The project is as before at the end.
 */
SM_API SMSplitResult SMSplitModel(SMProject2& project, const std::string& directory, const SMSplitOptions& options = {});

/**
 * Writes a model that was read from a main document and its separate files as one document. It fails, and writes nothing, when one of the
 * files cannot be read. What the files did not bring back is told in notes.
 */
SM_API SMSaveResult SMJoinModel(const SMProject2& project, const std::string& path, const SMSaveOptions& saving = {});
/** The same for a model that is read for it. */
SM_API SMSaveResult SMJoinModel(const std::string& mainDocument, const std::string& path, const SMLoadOptions& loading = {},
                                const SMSaveOptions& saving = {});

}  // namespace schema_002_000
