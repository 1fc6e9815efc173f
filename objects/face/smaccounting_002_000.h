#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "objects/face/smmodeldocument_002_000.h"

namespace schema_002_000 {

/** Content of a document that a save of the model would not keep. */
struct SM_API SMLoss {
    enum Kind { element, attribute, text };
    Kind kind = element;
    /** The first character of it; and all its bytes. */
    std::string file;
    long line = 0, column = 0;
    std::size_t bytes = 0;
    /** The object that it stands in; shortened beyond 1,000 bytes. */
    std::string objectPath;
    /** The element that is lost, or whose attribute or text is. */
    std::string elementName;
    std::string attributeName;
    /** The value that is lost, and what is written in its place, if anything is. */
    std::string value, instead;
    /** The code of why it is lost, where more is known than that there is no place for it; and what else there is to tell of that. */
    std::string reason, why;
};

struct SM_API SMAccountedResult : SMLoadResult {
    /** In the order of the document. */
    std::vector<SMLoss> losses;
};

/**
 * Reads a model document, and accounts for all its content: what a document that is written from the model would lack is listed,
 * with its exact place, and nothing else is. Comments, processing instructions, white space between elements, the order of siblings,
 * the spelling of whole numbers, and the midnight of a day without a time are no content. A document of which all is kept costs one read
 * and one write into nowhere, in memory that does not grow with it, but for eight bytes for each id and version that is not set, up to
 * 64 MB. Any other one is read a second time, in memory that grows with what is lost and with the longest list of siblings. More losses
 * than the limit `findings` are an error. What can be read only once, such as a pipe, is put into a temporary file.
 */
SM_API SMAccountedResult SMLoadModelAccounted(const std::string& path, const SMLoadOptions& options = {});
SM_API SMAccountedResult SMLoadModelBytesAccounted(std::string_view document, const SMLoadOptions& options = {});

/** The loss as a finding, in the form that is printed. */
SM_API SMDiagnostic SMDiagnosticOf(const SMLoss& loss);

}  // namespace schema_002_000
