#include "objects/query/smfilter2_002_000.h"

#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_FILTER", "FILTER_ID", "FILTER_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smfilter2", "SMFilter2"};
const QvULString COL_STATUS = SMColumn("STATUS");
const QvULString COL_EXPRESSION = SMColumn("EXPRESSION");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMFilter2, TABLE)

// ---- memory

void SMFilter2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (expression) expression->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMFilter2::RenameObjects(SMRenameList2& list) {
    if (expression) expression->RenameObjects(list);
}

// ---- document

void SMFilter2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->status, EnumText(status));
    StartElement(handler, m_tags->filter, attrs);
    WriteCommonElements(handler);
    WriteKept(expression, target);
    EndElement(handler, m_tags->filter);
}

// ---- repository

void SMFilter2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);  // on purpose past the nearer base: a filter has no description columns
    SMRowWriter row(attrs);
    row.TextIfSet(COL_STATUS, EnumText(status));
    row.InnerXmlIfSet(COL_EXPRESSION, expression);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMFilter2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        ReadIfPresent(row, m_tags->status, status);
        ReadKeptXmlIfPresent(row, m_tags->expression, expression);
    });
}

bool SMFilter2::read(IOHelper& helper) {
    SMFilterBuilder builder(this);
    return read_custom_property_locale(helper, this, &builder);
}

bool SMFilter2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && helper.EndObject();
}

// ---- builder

void SMFilterBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::expression: m_filter->SetExpression(KeepXml(m_tags->expression, attrs)); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::status: CollectText(); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMFilterBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::filter: break;
    case Tag::property: EndProperty(*m_filter); break;
    case Tag::status: m_filter->SetStatus(TextAsEnum<SMEnum_status>()); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
