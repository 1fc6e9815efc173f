#include "objects/base/smenum_xmltag_002_000.h"

namespace schema_002_000 {

SM_DEFINE_ENUM_MEMBERS(SMEnum_xmltag)

SMEnum_xmltag::SMEnum_xmltag() {
#define SM_TAG(NUMBER, IDENTIFIER, TEXT)     \
    IDENTIFIER = I18NString::Immortal(TEXT); \
    _insertOrError(m_vocabulary.InsertText(NUMBER, IDENTIFIER), Enum::IDENTIFIER);
#include "objects/base/smenum_xmltag_list.inc"
}

}  // namespace schema_002_000
