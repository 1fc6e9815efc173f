#include "objects/publication/smrole2_002_000.h"

#include <string>

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_ROLES", "ROLE_ID", "ROLE_VERSION_NO", "QS_ITEM_ID", "QS_ITEM_VERSION_NO"};

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMRole2, TABLE)

// ---- document

void SMRole2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->version, I18NString(std::to_string(GetVersionNo()).c_str()));
    AddAttributeIfTrue(attrs, m_tags->intrinsic, m_intrinsic);
    StartElement(handler, m_tags->role, attrs);
    WriteLocaleMap(handler, m_tags->name, names);
    EndElement(handler, m_tags->role);
}

// ---- repository

void SMRole2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);
}

void SMRole2::constructFromIOParameter(const IOParameter& row) {
    SMNamedObject2::constructFromIOParameter(row);
}

bool SMRole2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMRoleBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::role: break;
    case Tag::intrinsic: CollectText(); break;
    default: SMNamedObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMRoleBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::role: break;
    case Tag::intrinsic: m_role->SetIntrinsic(TextAsBool()); break;
    default: SMNamedObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
