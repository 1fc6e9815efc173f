#include "objects/links/smscoperelationship2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "objects/base/smprint_002_000.h"
#include "objects/links/smscope2_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_SCOPE_RELATIONSHIP", "SCOPE_RELATIONSHIP_ID", "SCOPE_REL_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMScopeRelationship2, TABLE)

SMScopeRelationship2::SMScopeRelationship2(SMObjectBase* owner, SMProject2* project) : SMRelationshipBase2(owner, project) {}

SMScopeRelationship2::~SMScopeRelationship2() {
    SMOrphanAll(m_scopes);
}

// ---- memory

void SMScopeRelationship2::AddScope(SMScope2* scope) {
    m_scopes.emplace_back(scope);
}

SMScope2* SMScopeRelationship2::AddNewScope() {
    auto* scope = new SMScope2(this, m_project);
    AddScope(scope);
    return scope;
}

void SMScopeRelationship2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    SMRelationshipBase2::RegenerateIds(idMap);
    for (const auto& scope : m_scopes) scope->RegenerateIds();
}

void SMScopeRelationship2::RenameObjects(SMRenameList2& list) {
    SMRelationshipBase2::RenameObjects(list);
    for (const auto& scope : m_scopes) scope->RenameObjects(list);
}

void SMScopeRelationship2::SetSMProject(SMProject2* project) {
    for (const auto& scope : m_scopes) scope->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMScopeRelationship2::AddToSetPIDIDAndMiniObject() {
    if (!m_scopes.empty())
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_tags->scope, static_cast<int>(m_scopesInfoId),
                                             WriteScopesToString());
}

void SMScopeRelationship2::AssignDiffableString(QvULString& out) const {
    I18NString text = I18NString(GetName()) + "|" + DisplayOrderText() + I18NString(qvRefId);
    AppendDiffable(text, left, "");  // nothing between, unlike in relationships: as the format has it
    AppendDiffable(text, right, "");
    out = text;
}

// ---- document

void SMScopeRelationship2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->scopeRelationship);
    TextElement(handler, m_tags->name, GetName());
    WriteProperties(handler, true);
    WriteReferenceXMLElement(handler, left, m_tags->left);
    WriteReferenceXMLElement(handler, right, m_tags->right);
    for (const auto& scope : m_scopes) scope->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->scopeRelationship);
}

I18NString SMScopeRelationship2::WriteScopesToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget& target) {
        for (const auto& scope : m_scopes) scope->WriteXMLElement(handler, target);
    });
}

// ---- repository

bool SMScopeRelationship2::read(IOHelper& helper) {
    std::map<QvULString, long*> wanted{{m_tags->scope, &m_scopesInfoId}};
    SMScopeRelationshipBuilder builder(this);
    return read_remaining_info_into_builder(helper, this, &builder, wanted);
}

bool SMScopeRelationship2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMScopeRelationship2::write_next(IOHelper& helper) {
    // without scopes a record that is stored stays: as the format has it
    return m_scopes.empty() || write_remaining_info(helper, m_tags->scope, WriteScopesToString(), m_scopesInfoId);
}

// ---- builder

void SMScopeRelationshipBuilder::realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                                  const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::scopeRelationship: break;
    case Tag::scope: Push(new SMScopeBuilder(m_relationship->AddNewScope())); break;
    default: SMRelationshipBaseBuilder::realStartElement(uri, localName, qName, attrs);
    }
}

void SMScopeRelationshipBuilder::realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::scope:
    case Tag::scopeRelationship: break;
    default: SMRelationshipBaseBuilder::realEndElement(uri, localName, qName);
    }
}

}  // namespace schema_002_000
