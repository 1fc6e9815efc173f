#include "objects/publication/smparametermap2_002_000.h"

#include "objects/base/smprint_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_PARAMETER_MAP", "PARAMETER_MAP_ID", "PARAMETER_MAP_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO"};
const SMLogWords WORDS = {"smparametermap2", "SMParameterMap2"};
const QvULString COL_NAME = SMColumn("NAME");
const QvULString COL_DEFAULTVALUE = SMColumn("DEFAULTVALUE");
const QvULString COL_HIDDEN = SMColumn("HIDDEN");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMParameterMap2, TABLE)

SMParameterMap2::~SMParameterMap2() {
    SMOrphanAll(m_entries);
}

// ---- memory

void SMParameterMap2::SetName(const I18NString& name) {
    NoteNameChange(m_name.utf8(), name.utf8());
    m_name = name;
}

void SMParameterMap2::SetQueryItemMap(SM_QUERY_ITEM_MAP* map) {
    if (map != m_queryItemMap.get()) m_queryItemMap.reset(map);
}

void SMParameterMap2::AddOrUpdateParameterMapEntry(const I18NString& key, const I18NString& value) {
    if (SMParameterMapEntry2* entry = GetParameterMapEntryWithKey(key)) {
        entry->SetValue(value);
        return;
    }
    auto* entry = new SMParameterMapEntry2(this, m_project);
    m_entries.Append(entry);
    entry->SetKey(key);
    entry->SetValue(value);
}

bool SMParameterMap2::CopyContents(SMParameterMapContents& out) const {
    out.name = m_name;
    out.text2 = m_text2;
    out.hidden = m_hidden;
    out.defaultValue = m_defaultValue;
    for (const auto& entry : m_entries) out.entries.emplace(entry->GetKey(), entry->GetValue());
    out.hasQueryItemMap = m_queryItemMap != nullptr;
    out.keyRef = m_queryItemMap ? m_queryItemMap->keyRef : EMPTY_QVSTRING;
    out.valueRef = m_queryItemMap ? m_queryItemMap->valueRef : EMPTY_QVSTRING;
    return true;
}

bool SMParameterMap2::IsSameAs(const SMParameterMapContents& contents) const {
    if (contents.entries.size() != m_entries.size()) return false;
    if (m_name != contents.name || m_hidden != contents.hidden || m_defaultValue != contents.defaultValue) return false;
    for (const auto& entry : m_entries) {
        const auto other = contents.entries.find(entry->GetKey());
        if (other == contents.entries.end() || other->second != entry->GetValue()) return false;
    }
    if (!m_queryItemMap || !contents.hasQueryItemMap) return !m_queryItemMap && !contents.hasQueryItemMap;
    return m_queryItemMap->keyRef == contents.keyRef && m_queryItemMap->valueRef == contents.valueRef;
}

void SMParameterMap2::RegenerateIds(std::map<QvULString, QvULString>&) {
    for (const auto& entry : m_entries) entry->RegenerateIds();
    SMObjectBase::RegenerateIds();
}

void SMParameterMap2::RenameObjects(SMRenameList2& list) {
    for (const auto& entry : m_entries) entry->RenameObjects(list);
    if (m_queryItemMap) list.PerformRenames(m_queryItemMap->valueRef);
}

void SMParameterMap2::SetSMProject(SMProject2* project) {
    for (const auto& entry : m_entries) entry->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMParameterMap2::AddToSetPIDIDAndMiniObject() {
    for (const auto& entry : m_entries) m_project->AddToSetPIDIDAndMiniObject(entry);
    if (m_queryItemMap)
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_tags->queryItemMap, static_cast<int>(m_queryItemMapVersion),
                                             WriteQueryItemMapToString());
}

void SMParameterMap2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& entry : m_entries) children.push_back(entry);
}

// ---- document

void SMParameterMap2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->hidden, SMEnum_bool::bool2string(m_hidden));
    StartElement(handler, m_tags->parameterMap, attrs);
    WriteString(handler, m_tags->name, NoAttributes(), m_name);
    WriteProperties(handler, true);
    if (!m_defaultValue.empty()) WriteString(handler, m_tags->defaultValue, NoAttributes(), m_defaultValue);
    for (const auto& entry : m_entries) entry->WriteXMLElement(handler, target);
    WriteQueryItemMap(handler);
    EndElement(handler, m_tags->parameterMap);
}

void SMParameterMap2::WriteQueryItemMap(QvContentHandler* handler) const {
    if (!m_queryItemMap) return;
    StartElement(handler, m_tags->queryItemMap);
    WriteString(handler, m_tags->keyRef, NoAttributes(), m_queryItemMap->keyRef);
    WriteString(handler, m_tags->valueRef, NoAttributes(), m_queryItemMap->valueRef);
    EndElement(handler, m_tags->queryItemMap);
}

I18NString SMParameterMap2::WriteQueryItemMapToString() const {
    if (!m_queryItemMap) return I18NString();
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteQueryItemMap(handler); });
}

// ---- repository

void SMParameterMap2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_NAME, m_name);
    row.Text(COL_DEFAULTVALUE, m_defaultValue);
    row.Text(COL_HIDDEN, SMEnum_bool::bool2string(m_hidden));
}

void SMParameterMap2::constructFromIOParameter(const IOParameter& row) {
    SMObjectBase::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        SetName(TextOf(row, m_tags->name));
        m_defaultValue = TextOf(row, m_tags->defaultValue);
        m_hidden = SMEnum_bool::string2bool(TextOf(row, m_tags->hidden));
    });
}

bool SMParameterMap2::read(IOHelper& helper) {
    QvSmartPtr<IOArrayParam> rows;
    if (!SelectRows(helper, m_tags->parameterMapEntry, rows)) return false;
    for (int i = 0; i < rows->Size(); ++i) {
        auto* entry = new SMParameterMapEntry2(this, m_project);
        m_entries.Append(entry);
        AdoptRow(helper, *entry, *rows->At(i));
    }
    std::map<QvULString, long*> wanted{{m_tags->queryItemMap, &m_queryItemMapVersion}};
    SMParameterMapBuilder builder(this);
    return read_remaining_info_into_builder(helper, this, &builder, wanted);
}

bool SMParameterMap2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMParameterMap2::write_next(IOHelper& helper) {
    bool success = true;
    for (const auto& entry : m_entries) {
        success = success && entry->write(helper);
        // as the log has it: once for the entry that fails and once for each that is left
        if (!success) SMLog(SM_FAILURE, WORDS, "write_next", "Failed to write a parameter map entry.");
    }
    if (!success || !m_queryItemMap) return success;
    return write_remaining_info(helper, m_tags->queryItemMap, WriteQueryItemMapToString(), m_queryItemMapVersion);
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMParameterMapBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                             const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::parameterMap: break;
    case Tag::name:
    case Tag::defaultValue:
    case Tag::keyRef:
    case Tag::valueRef: CollectText(); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::queryItemMap:
        m_keyRef.erase();
        m_valueRef.erase();
        break;
    case Tag::parameterMapEntry: StartEntry(attrs); break;
    default: LogUnknownStart("smparametermap2", "SMParameterMapBuilder::smtagStartElement", "smtagStartElement", localName);
    }
}

void SMParameterMapBuilder::StartEntry(const QvXMLAttributes& attrs) {
    auto* entry = new SMParameterMapEntry2(m_map, m_map->GetSMProject());
    m_map->AppendEntry(entry);
    entry->SetProperty(m_tags->id, m_tags->hidden, attrs.getValue(m_tags->id));
    entry->SetProperty(m_tags->version, m_tags->hidden, attrs.getValue(m_tags->version));
    Push(new SMParameterMapEntryBuilder(entry));
}

void SMParameterMapBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::parameterMap:
    case Tag::parameterMapEntry: break;
    case Tag::name: m_map->SetName(m_text); break;
    case Tag::defaultValue: m_map->SetDefaultValue(m_text); break;
    case Tag::property: EndProperty(*m_map); break;
    case Tag::keyRef: m_keyRef = m_text; break;
    case Tag::valueRef: m_valueRef = m_text; break;
    case Tag::queryItemMap: m_map->SetQueryItemMap(new SM_QUERY_ITEM_MAP{m_keyRef, m_valueRef}); break;
    default: LogUnknownStart("smparametermap2", "SMParameterMapBuilder::smtagEndElement", "smtagEndElement", localName);
    }
}

}  // namespace schema_002_000
