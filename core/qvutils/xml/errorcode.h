#pragma once

namespace qv {

/** The code of codes.h for an error that the scanner reports; `atEnd`: it has come to the end of the document. */
const char* CodeOfError(unsigned int error, bool atEnd);
/** The same for an exception of the XML library. */
const char* CodeOfException(unsigned int exception);

}  // namespace qv
