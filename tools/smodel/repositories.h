#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/repository/smrepository.h"
#include "objects/face/smmodelstore_002_000.h"

/**
 * A context for the project of a model: the stored one of its id, or of its name when it has no id, or else a new one. Raises
 * TklRuntimeError that names them when there are several.
 */
std::unique_ptr<SMRepositoryHelper> ContextFor(SMRepository& repository, const schema_002_000::SMProject2& project);

/** The project of that id, name or number; when none is given, the only one. Raises TklRuntimeError that names what there is. */
std::unique_ptr<SMRepositoryHelper> ContextOf(SMRepository& repository, const std::string& given);

/**
 * The revision of a number; or the newest one saved at or before a moment, "2026-11-21T18:00:00" in UTC, or a day. Empty: the newest.
 * Raises TklRuntimeError that names what there is.
 */
SMRepositoryRevision RevisionAt(SMRepository& repository, long project, const std::string& at);

/** False when one of the two has none. */
bool DocumentsDiffer(const SMRepositoryRevision& first, const SMRepositoryRevision& second);

/** The document of a context's revision; what was saved without one is written from its rows. Null, with the reason told, when neither is
 * there. */
std::unique_ptr<std::string> DocumentAt(SMRepositoryHelper& context, const SMRepositoryRevision& revision);

/**
 * Takes ids and versions from the objects whose document has them and yet keeps none when it is read, which would refuse it: roles and
 * prompts. A put finds their rows again by their place.
 */
void DropIdsThatNoDocumentKeeps(schema_002_000::SMProject2& project);

/** The model that the rows of a context tell, read while progress is shown. Prints what the reading found. */
schema_002_000::SMGetResult LoadRows(SMRepository& repository, SMRepositoryHelper& context);

/**
 * The row's id of an object that is given by its address or as "id:ID": in the newest revision, or else in the newest that had it. Raises
 * TklRuntimeError that names objects alike.
 */
QvULString FindObject(SMRepository& repository, const SMRepositoryHelper& context, const std::string& given);

/** Names of the path, " / " between them, for people. */
std::string PathText(const SMRepositoryChange& change);
std::string TextOf(const I18NString& text);
