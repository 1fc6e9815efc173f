#pragma once

#include "objects/base/smenum_002_000.h"

namespace schema_002_000 {

/**
 * The names of elements and attributes, with the interface of SM_ENUM_MEMBERS. `SMEnum_xmltag::Enum::filter` is the number of
 * a tag, and the member `filter` of the instance its text, so that a writer searches nothing.
 */
class SM_API SMEnum_xmltag {
    /** Keeps the enumerators out of the scope in which the members of the same names stand. */
    struct Numbers {
        enum Enum : int {
#define SM_TAG(NUMBER, IDENTIFIER, TEXT) IDENTIFIER = NUMBER,
#include "objects/base/smenum_xmltag_list.inc"
        };
    };

  public:
    using Enum = Numbers::Enum;

    // In the order of the numbers; the unused ones are empty.
#define SM_TAG(NUMBER, IDENTIFIER, TEXT) I18NString IDENTIFIER;
#define SM_TAG_UNUSED(IDENTIFIER) I18NString IDENTIFIER;
#include "objects/base/smenum_xmltag_list.inc"

    SM_ENUM_MEMBERS(SMEnum_xmltag)
};

}  // namespace schema_002_000
