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

inline constexpr const char* NOT_WELL_FORMED = "SM2001";
inline constexpr const char* EMPTY_DOCUMENT = "SM2002";
inline constexpr const char* WRONG_ROOT = "SM2003";
inline constexpr const char* TRUNCATED = "SM2004";
inline constexpr const char* NOT_IN_ENCODING = "SM2005";
inline constexpr const char* NUL_CHARACTER = "SM2006";
inline constexpr const char* UNKNOWN_ENCODING = "SM2007";
inline constexpr const char* XML_VERSION = "SM2008";
inline constexpr const char* EXTERNAL_ENTITY = "SM2009";
inline constexpr const char* UNKNOWN_ENTITY = "SM2010";
inline constexpr const char* PARAMETER_ENTITY = "SM2011";
inline constexpr const char* RECURSIVE_ENTITY = "SM2012";
inline constexpr const char* NO_SUCH_FILE = "SM2021";
inline constexpr const char* NO_PERMISSION = "SM2022";
inline constexpr const char* IS_DIRECTORY = "SM2023";
inline constexpr const char* UNREADABLE_FILE = "SM2024";
inline constexpr const char* OUTSIDE_ROOT = "SM2025";
inline constexpr const char* READ_INSIDE_ITSELF = "SM2026";

inline constexpr const char* TOO_MANY_BYTES = "SM2101";
inline constexpr const char* TOO_DEEP = "SM2102";
inline constexpr const char* TOO_MANY_ELEMENTS = "SM2103";
inline constexpr const char* TOO_MANY_ATTRIBUTES = "SM2104";
inline constexpr const char* ATTRIBUTE_TOO_LONG = "SM2105";
inline constexpr const char* TEXT_TOO_LONG = "SM2106";
inline constexpr const char* TOO_MANY_NAMES = "SM2107";
inline constexpr const char* TOO_MANY_FILES = "SM2108";
inline constexpr const char* TOO_MANY_REFERENCES = "SM2109";
inline constexpr const char* EXPANDS_TOO_FAR = "SM2110";
inline constexpr const char* FILES_TOO_DEEP = "SM2111";
inline constexpr const char* STACK_TOO_SMALL = "SM2112";
inline constexpr const char* TOO_MANY_FINDINGS = "SM2113";

inline constexpr const char* DANGLING_REFERENCE = "SM3001";
inline constexpr const char* DUPLICATE_ID = "SM3002";
inline constexpr const char* DUPLICATE_OBJECT_ID = "SM3003";
inline constexpr const char* NAME_CLASH = "SM3004";
inline constexpr const char* NO_CARDINALITY = "SM3005";
inline constexpr const char* UNKNOWN_WORD = "SM3006";
inline constexpr const char* NO_DATE = "SM3007";
inline constexpr const char* NO_NUMBER = "SM3008";
inline constexpr const char* LOOK_ALIKE = "SM3009";
inline constexpr const char* PART_MISSING = "SM3010";
inline constexpr const char* PART_BROKEN = "SM3011";
inline constexpr const char* EMPTY_PLACEHOLDER = "SM3012";
inline constexpr const char* PLACE_LOST = "SM3013";
inline constexpr const char* NAME_LOST = "SM3014";
inline constexpr const char* ROLE_BASED_LOST = "SM3015";
inline constexpr const char* PLACE_UNKNOWN = "SM3016";
inline constexpr const char* NO_DOCUMENT = "SM3017";
inline constexpr const char* NO_TRUTH = "SM3018";
inline constexpr const char* EXTERNAL_DTD = "SM3019";

}  // namespace qv::code

namespace qv {

/** The code of a file that cannot be opened or read for this value of errno. */
SM_API const char* CodeOfSystemError(int error);

}  // namespace qv
