#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "objects/face/smaccounting_002_000.h"
#include "objects/face/smreferences_002_000.h"

namespace schema_002_000 {

struct SM_API SMCheckResult : SMAccountedResult {
    /** What is not consistent, in the order of the document. What a loss or a diagnostic tells already is not told here again. */
    std::vector<SMDiagnostic> findings;
    /** The references among them. */
    std::vector<SMDanglingReference> dangling;
};

/**
 * Reads a model document, accounts for its content as SMLoadModelAccounted does, and looks whether the model is consistent: whether
 * references lead somewhere, ids are unique, relationships have cardinalities, and values can be read as what they stand for. A
 * document in which all is well is read once; one with findings or losses is read twice, for their exact places.
 */
SM_API SMCheckResult SMCheckModel(const std::string& path, const SMLoadOptions& options = {});
SM_API SMCheckResult SMCheckModelBytes(std::string_view document, const SMLoadOptions& options = {});

}  // namespace schema_002_000
