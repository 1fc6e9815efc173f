#pragma once

#include <functional>
#include <string>

#include "tools/smodel/repositories.h"

/** Who runs the command; empty when the system does not know. */
std::string LoginName();

/**
 * Saves a model based on the context's revision, and prints what came of it: the new revision with the number of objects that it changes;
 * or, when the repository has moved on, the objects that were changed by both. `settle` is that of SMPutModel. Gives the exit status.
 */
int PutModel(SMRepository& repository, SMRepositoryHelper& context, schema_002_000::SMProject2& project, const std::string& author,
             const std::string& message, const std::function<void()>& settle = {});
