#pragma once

namespace schema_002_000 {

/** What a database object is. Any int can come from a store; a number that is not named here has no text either. */
enum class EDB_TYPE : int {
    unknown = 0,
#define SM_DB_KIND(NUMBER, NAME, FIXED_ID) NAME = NUMBER,
#include "objects/catalogue/edbtype_list.inc"
};

}  // namespace schema_002_000
