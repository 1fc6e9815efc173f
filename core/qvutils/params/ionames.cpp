#include "core/qvutils/params/ionames.h"

namespace {

QvULString Name(const char* text) {
    return QvULString::Immortal(text);
}

}  // namespace

const QvULString IOParamTag::ATTRIBUTES = Name("attributes");
const QvULString IOParamTag::HISTORY_ATTRIBUTES = Name("history_attributes");
const QvULString IOParamTag::CLAUSES = Name("clauses");
const QvULString IOParamTag::TABLE_NAME = Name("table_name");
const QvULString IOParamTag::OBJECT = Name("object");
const QvULString IOParamTag::OBJECT_TYPE = Name("object_type");
const QvULString IOParamTag::SMATTRIBUTE = Name("smattribute");
const QvULString IOParamTag::SMSIMPLEELEMENT = Name("smsimpleelement");
const QvULString IOParamTag::SMMIXEDELEMENT = Name("smmixedelement");
const QvULString IOParamTag::SMLANGELEMENT = Name("smlangelement");
const QvULString IOParamTag::SMPROPERTYELEMENT = Name("smpropertyelement");
const QvULString IOParamTag::REF_DB_OBJ_ID = Name("refDbObjId");
const QvULString IOParamTag::REF_DB_OBJ_2ND_ID = Name("refDbObj2ndId");
const QvULString IOParamTag::XML_ELEMENT_ID = Name("xml_element_id");
const QvULString IOParamTag::XML_ELEMENT_NAME = Name("name");
const QvULString IOParamTag::XML_ELEMENT_TYPE = Name("xml_element_type");
const QvULString IOParamTag::XML_ELEMENT_VALUE = Name("value");
const QvULString IOParamTag::XML_ELEMENT_ORDER = Name("display_order");
const QvULString IOParamTag::XML_ELEMENT_LOCALE = Name("xml_element_locale");
const QvULString IOParamTag::XML_ELEMENT_VERSION = Name("xml_element_version");
const QvULString IOParamTag::XML_ELEMENT_PARENT_ID = Name("xml_element_parent_id");
const QvULString IOParamTag::XML_ELEMENT_PARENT_VERSION = Name("xml_element_parent_version");

const QvULString IOAction::AT_InsertObject = Name("AT_InsertObject");
const QvULString IOAction::AT_ReadSMObject = Name("AT_ReadSMObject");
const QvULString IOAction::AT_ReadSMProject = Name("AT_ReadSMProject");
const QvULString IOAction::AT_WriteLangText = Name("AT_WriteLangText");
const QvULString IOAction::AT_ReadRemainingInfo = Name("AT_ReadRemainingInfo");
const QvULString IOAction::AT_WriteRemainingInfo = Name("AT_WriteRemainingInfo");
