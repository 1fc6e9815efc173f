#pragma once

#include "core/qvutils/text/qvulstring.h"

namespace schema_002_000 {

/**
 * Names of tables and columns of the repository, for those who share it. They are built when the library is loaded and live to
 * the end of the process; an object of another file that is made at load must not read them. The list can be expanded elsewhere.
 */
#define SM_SQLTAB(CONSTANT, TEXT) extern SM_API const I18NString CONSTANT;
#define SM_SQLCOL(CONSTANT, TEXT) extern SM_API const QvULString CONSTANT;
#include "objects/catalogue/repositorynames_list.inc"

}  // namespace schema_002_000
