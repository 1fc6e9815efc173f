#include "objects/catalogue/repositorynames_002_000.h"

namespace schema_002_000 {

#define SM_SQLTAB(CONSTANT, TEXT) const I18NString CONSTANT = I18NString::Immortal(TEXT);
#define SM_SQLCOL(CONSTANT, TEXT) const QvULString CONSTANT = QvULString::Immortal(TEXT);
#include "objects/catalogue/repositorynames_list.inc"

}  // namespace schema_002_000
