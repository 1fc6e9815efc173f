#pragma once

#include <string>
#include <string_view>

#include "core/qvutils/base/qvsmartptr.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace fuzz {

/**
 * Null for a document that is refused, which then has an error. Separate files are not found. A model comes with the text that it
 * is written as, which must read and write as itself.
 */
struct Model {
    QvSmartPtr<schema_002_000::SMProject2> project;
    std::string text;
};
Model LoadModel(std::string_view document);
/** True when something that was written is not read again, as the format has it: the second writing is without it. */
bool SettlesLater(std::string_view written);

std::string CanonicalText(const schema_002_000::SMProject2& project);
/** Shows where two texts begin to differ. */
void RequireSame(std::string_view expected, std::string_view actual, const std::string& statement);
/** The same for two readings of one document: what each of them renames, it stamps with its own second. */
void RequireSameReading(std::string_view expected, std::string_view actual, const std::string& statement);
/** An operation that did not end well says why. */
void RequireReason(const schema_002_000::SMResult& result);
/** A small document with an object of each kind. */
std::string_view EveryKind();

/** The input up to the first NUL, which goes with it; the whole of it when there is none. */
std::string_view TakePart(std::string_view& input);

}  // namespace fuzz
