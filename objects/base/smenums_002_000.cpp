#include "objects/base/smenums_002_000.h"

namespace schema_002_000 {

#define SM_ENUM_BEGIN(CLASS)      \
    SM_DEFINE_ENUM_MEMBERS(CLASS) \
    CLASS::CLASS() {
#define SM_ENUM_VALUE(NUMBER, IDENTIFIER, TEXT) _insertOrError(m_vocabulary.InsertText(NUMBER, I18NString::Immortal(TEXT)), IDENTIFIER);
#define SM_ENUM_END(CLASS) }
#include "objects/base/smenums_list.inc"

}  // namespace schema_002_000
