#include "core/qvutils/diag/codes.h"

#include <algorithm>

namespace {

using enum SMSeverity;

constexpr SMCodeInfo CODES[] = {
    {qv::code::INTERNAL_ERROR, error, "internal error",
     "Something failed that never should: a fault of this library, or of a program that watches it. Nothing was written. Please report "
     "it together with the document.",
     "error[SM0001] the operation failed, and nothing told why"},

    {qv::code::ELEMENT_NOT_KEPT, error, "an element is not kept",
     "The model has no place for this element, or takes only one where there are several, so a document written from the model would "
     "lack it with all that is in it. Take it out, or correct its name; commands that write take --accept-loss to go on without it.",
     "model.xml:12:5: error[SM1001] <colour> in [sales].[products].[name] is not kept (23 bytes)"},
    {qv::code::ATTRIBUTE_NOT_KEPT, error, "an attribute is not kept",
     "The model has no place for this attribute, or for its value, so a document written from the model would lack it. Take it out, or "
     "correct it; commands that write take --accept-loss to go on without it.",
     "model.xml:12:16: error[SM1002] the attribute colour of <queryItem> in [sales].[products].[name] is not kept (12 bytes)"},
    {qv::code::TEXT_NOT_KEPT, error, "a text is not kept",
     "The model has no place for text here, or cannot hold this value, so a document written from the model would lack it or hold "
     "another one. Take it out, or correct it; commands that write take --accept-loss to go on without it.",
     "model.xml:14:11: error[SM1003] the text of <size> in [sales].[products].[name] is not kept (3 bytes)"},
};

}  // namespace

std::span<const SMCodeInfo> SMCodes() {
    return CODES;
}

const SMCodeInfo* SMFindCode(std::string_view code) {
    const auto* const found = std::find_if(std::begin(CODES), std::end(CODES), [&](const SMCodeInfo& info) { return info.code == code; });
    return found == std::end(CODES) ? nullptr : found;
}
