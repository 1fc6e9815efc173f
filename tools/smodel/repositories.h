#pragma once

#include <memory>
#include <string>

#include "core/repository/smrepository.h"
#include "objects/face/smmodelstore_002_000.h"

/** A context for the project of a model: the stored one of its id, or of its name when it has no id, or else a new one. */
std::unique_ptr<SMRepositoryHelper> ContextFor(SMRepository& repository, const schema_002_000::SMProject2& project);

/** The project of that id or name; when none is given, the only one. Raises TklRuntimeError that names what there is. */
std::unique_ptr<SMRepositoryHelper> ContextOf(SMRepository& repository, const std::string& idOrName);
