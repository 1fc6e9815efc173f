#pragma once

#include <span>
#include <string_view>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/diag/diagnostics.h"

/** What a code of a diagnostic stands for. Codes are stable: one that is in use never changes its meaning, nor is it given anew. */
struct SM_API SMCodeInfo {
    /** "SM" and four digits: 0 the library itself, 1 content that is not kept, 2 documents that cannot be read, 3 consistency. */
    const char* code;
    SMSeverity severity;
    const char* title;
    /** What it means, why it is told, and what to do. */
    const char* explanation;
    /** A line as it is printed. */
    const char* example;
};

/** All codes, in their order. */
SM_API std::span<const SMCodeInfo> SMCodes();
/** Null when there is no such code. */
SM_API const SMCodeInfo* SMFindCode(std::string_view code);

namespace qv::code {

inline constexpr const char* INTERNAL_ERROR = "SM0001";

inline constexpr const char* ELEMENT_NOT_KEPT = "SM1001";
inline constexpr const char* ATTRIBUTE_NOT_KEPT = "SM1002";
inline constexpr const char* TEXT_NOT_KEPT = "SM1003";

}  // namespace qv::code
