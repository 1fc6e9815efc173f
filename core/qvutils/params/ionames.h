#pragma once

#include "core/qvutils/text/qvulstring.h"

/** Keys of parameters. The two REF_DB_OBJ names also stand in documents, as names of properties, and never change. */
struct SM_API IOParamTag {
    static const QvULString ATTRIBUTES, HISTORY_ATTRIBUTES, CLAUSES, TABLE_NAME, OBJECT, OBJECT_TYPE, SMATTRIBUTE, SMSIMPLEELEMENT,
        SMMIXEDELEMENT, SMLANGELEMENT, SMPROPERTYELEMENT, REF_DB_OBJ_ID, REF_DB_OBJ_2ND_ID, XML_ELEMENT_ID, XML_ELEMENT_NAME,
        XML_ELEMENT_TYPE, XML_ELEMENT_VALUE, XML_ELEMENT_ORDER, XML_ELEMENT_LOCALE, XML_ELEMENT_VERSION, XML_ELEMENT_PARENT_ID,
        XML_ELEMENT_PARENT_VERSION;
};

/** Names of the actions of a persistence context. */
struct SM_API IOAction {
    static const QvULString AT_InsertObject, AT_ReadSMObject, AT_ReadSMProject, AT_WriteLangText, AT_ReadRemainingInfo,
        AT_WriteRemainingInfo;
};
