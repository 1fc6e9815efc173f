#include "objects/links/smrelationship2_002_000.h"

#include "objects/project/smproject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_RELATIONSHIP", "RELATIONSHIP_ID", "REL_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smrelationship2", "SMRelationship2"};
const QvULString COL_STATUS = SMColumn("STATUS");
const QvULString COL_EXPRESSION = SMColumn("EXPRESSION");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMRelationship2, TABLE)

// ---- memory

void SMRelationship2::SetExpression(const I18NString& innerXml) {
    ChangeKeptXml(expression, m_tags->expression, innerXml);
}

void SMRelationship2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (expression) expression->RegenerateIds(idMap);
    SMObjectBase::RegenerateIds();  // past the nearer base, so the warehouse link stays, and so does the sql: as the format has it
}

void SMRelationship2::RenameObjects(SMRenameList2& list) {
    SMRelationshipBase2::RenameObjects(list);
    if (expression) expression->RenameObjects(list);  // the sql stays: as the format has it
}

void SMRelationship2::AddToSetPIDIDAndMiniObject() {
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), sql);
}

void SMRelationship2::AssignDiffableString(QvULString& out) const {
    I18NString text = EnumText<SMEnum_status>(status) + "|" + I18NString(GetName()) + "|" + DisplayOrderText() + "|" + I18NString(qvRefId);
    AppendDiffable(text, left, "|");
    AppendDiffable(text, right, "|");
    out = text;
}

// ---- document

void SMRelationship2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->status, EnumText<SMEnum_status>(status));
    StartElement(handler, m_tags->relationship, attrs);
    TextElement(handler, m_tags->name, GetName());
    WriteProperties(handler, true);
    WriteKept(expression, target);
    WriteKept(sql, target);
    WriteReferenceXMLElement(handler, left, m_tags->left);
    WriteReferenceXMLElement(handler, right, m_tags->right);
    EndElement(handler, m_tags->relationship);
}

// ---- repository

void SMRelationship2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMRelationshipBase2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.TextIfSet(COL_STATUS, EnumText<SMEnum_status>(status));
    row.InnerXml(COL_EXPRESSION, expression);
}

void SMRelationship2::constructFromIOParameter(const IOParameter& row) {
    SMRelationshipBase2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        ReadEnumIfPresent<SMEnum_status>(row, m_tags->status, status);
        expression = KeptXmlOf(row, m_tags->expression);
    });
}

bool SMRelationship2::read(IOHelper& helper) {
    return ReadKeptInfo(helper, sql, m_tags->sql);
}

bool SMRelationship2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMRelationship2::write_next(IOHelper& helper) {
    return WriteKeptInfo(helper, sql);
}

// ---- builder

void SMRelationshipBuilder::realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                             const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::expression: m_relationship->SetExpression(KeepXml(m_tags->expression, attrs).get()); break;
    case Tag::sql: m_relationship->sql = KeepXml(m_tags->sql, attrs); break;
    default: SMRelationshipBaseBuilder::realStartElement(uri, localName, qName, attrs);
    }
}

}  // namespace schema_002_000
