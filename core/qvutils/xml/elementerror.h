#pragma once

#include <string>

#include "core/qvutils/base/smapi.h"

namespace qv {

/** A place in a document. */
struct DocumentPlace {
    std::string file;
    /** From 1; 0 when not known. */
    long line = 0, column = 0;
};

/**
 * Where the element begins whose start tag or end tag the innermost parse of the thread is telling its handler. For an error that ends this
 * parse: it cannot go on.
 */
SM_API DocumentPlace PlaceOfToldElement();

/** Raises TklRuntimeError at that element. */
[[noreturn]] SM_API void FailAtToldElement(const std::string& message, const char* code);

}  // namespace qv
