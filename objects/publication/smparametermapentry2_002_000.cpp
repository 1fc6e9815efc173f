#include "objects/publication/smparametermapentry2_002_000.h"

#include <string>

#include "objects/project/smproject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_PARAMETER_MAP_ENTRY", "PARAMETER_MAP_ENTRY_ID", "PARAMETER_MAP_ENTRY_VER_NO", "PARAMETER_MAP_ID",
                       "PARAMETER_MAP_VERSION_NO"};
const SMLogWords WORDS = {"smparametermapentry2", "SMParameterMapEntry2"};
const QvULString COL_KEY = SMColumn("KEY");
const QvULString COL_VALUE = SMColumn("VALUE");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMParameterMapEntry2, TABLE)

// ---- memory

void SMParameterMapEntry2::SetKey(const I18NString& key) {
    NoteNameChange(m_key.utf8(), key.utf8());
    m_key = key;
}

void SMParameterMapEntry2::RenameObjects(SMRenameList2& list) {
    list.PerformRenames(m_value);
}

// ---- document

void SMParameterMapEntry2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    QvXMLAttributesImpl attrs;
    if (!GetId().empty()) attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->version, I18NString(std::to_string(GetVersionNo()).c_str()));
    StartElement(handler, m_tags->parameterMapEntry, attrs);
    WriteString(handler, m_tags->key, NoAttributes(), m_key);
    WriteString(handler, m_tags->value, NoAttributes(), m_value);
    EndElement(handler, m_tags->parameterMapEntry);
}

// ---- repository

void SMParameterMapEntry2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_KEY, m_key);
    row.Text(COL_VALUE, m_value);
}

void SMParameterMapEntry2::constructFromIOParameter(const IOParameter& row) {
    SMObjectBase::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        SetKey(TextOf(row, m_tags->key));
        m_value = TextOf(row, m_tags->value);
    });
}

// no EndObject, as the format of the persistence context has it for entries
bool SMParameterMapEntry2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper);
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMParameterMapEntryBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                                  const QvXMLAttributes&) {
    switch (TagOf(localName)) {
    case Tag::parameterMapEntry: break;
    case Tag::key:
    case Tag::value: CollectText(); break;
    default: LogUnknownStart("smparametermapentry2", "SMParameterMapEntryBuilder::smtagStartElement", "smtagStartElement", localName);
    }
}

void SMParameterMapEntryBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::parameterMapEntry: break;
    case Tag::key: m_entry->SetKey(m_text); break;
    case Tag::value: m_entry->SetValue(m_text); break;
    default: LogUnknownStart("smparametermapentry2", "SMParameterMapEntryBuilder::smtagEndElement", "smtagEndElement", localName);
    }
}

}  // namespace schema_002_000
