#pragma once

#include <string>
#include <vector>

#include "objects/face/smoperation_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

struct SMNamespaceRename {
    std::string oldName, newName;
};

/**
 * Renames namespaces, all at once, so that two may swap their names, and carries the new names into every reference of three parts
 * or more. Dates of change stay. It fails, and changes nothing, when an old name is empty, not in the model or comes twice, when a new
 * name is empty, has a bracket or a character that XML does not allow, or would be there twice.
 *
 * Texts that did not come out as wanted are findings: those that still name a namespace by its old name, since shorter references
 * are not renamed, and those that lost a bracket. They are found in the document that the model has become; its lines and
 * columns stand in the diagnostics under `documentName`. A model that fails later than at its names is half renamed: drop it.
 */
SM_API SMResult SMRenameNamespaces(SMProject2& project, const std::vector<SMNamespaceRename>& renames, const std::string& documentName,
                                   const SMControl& control = {});

}  // namespace schema_002_000
