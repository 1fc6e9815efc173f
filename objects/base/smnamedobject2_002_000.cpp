#include "objects/base/smnamedobject2_002_000.h"

#include "core/qvutils/text/qvstringformat.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords ROW_WORDS = {"smnamedobject", "SMNamedObject2"};
const QvULString COL_NAME = SMColumn("NAME");
const QvULString PROPERTY_QVREF = QvULString::Immortal("qvref");
const QvULString PROPERTY_ERP_DATASOURCE = QvULString::Immortal("erpDatasourceRef");
const QvULString NO_PROJECT = QvULString::Immortal("No project");

}  // namespace

// ---- texts by locale

bool SMNamedObject2::IsDefaultLocale(const QvULString& locale) const {
    return m_project && LocaleCompare::compare(locale, m_project->GetDefaultLocale()) == 0;
}

bool SMNamedObject2::IsDefaultLocaleColumn(const QvULString& locale) const {
    const QvULString& defaultLocale = m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING;
    return QvStringFormat::GetInstance()->compareIgnoreCase(locale, defaultLocale) == 0;
}

void SMNamedObject2::SetLocaleText(SMLocaleMap& map, const QvULString& locale, const QvULString& text) {
    // the few spellings of locales are shared by the many maps
    const QvULString kept = text;  // it may be one of the map's own
    map[m_project ? m_project->ShareLocale(locale) : locale] = kept;
}

void SMNamedObject2::SetDefaultName(const QvULString& text) {
    NoteNameChange(defaultName.utf8(), text.utf8());
    defaultName = text;
}

void SMNamedObject2::AddName(const QvULString& locale, const QvULString& text) {
    if (IsDefaultLocale(locale)) SetDefaultName(text);
    SetLocaleText(names, locale, text);
}

void SMNamedObject2::ChangeDefaultName(const QvULString& text) {
    if (text == defaultName) return;
    AddName(m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING, text);
    SetLastChangedDateToNow();
}

const QvULString& SMNamedObject2::GetLocaleMapEntry(const SMLocaleMap& map, const QvULString& locale) const {
    if (!m_project) return NO_PROJECT;
    const auto found = map.find(locale.empty() ? m_project->GetDefaultLocale() : locale);
    return found == map.end() ? EMPTY_QVULSTRING : found->second;
}

// ---- properties and ids

void SMNamedObject2::SetQvRef(const QvULString& reference) {
    NoteLinkChange(qvref.utf8(), reference.utf8());
    qvref = reference;
}

void SMNamedObject2::SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) {
    if (name == PROPERTY_QVREF)
        SetQvRef(value);
    else
        SMObjectBase::SetProperty(name, type, value);
}

void SMNamedObject2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (!qvref.empty())
        if (const auto mapped = idMap.find(qvref); mapped != idMap.end()) SetQvRef(mapped->second);
    if (const SMProperty2* property = GetProperty(PROPERTY_ERP_DATASOURCE))
        if (const auto mapped = idMap.find(property->value); mapped != idMap.end())
            AddOrUpdateProperty(PROPERTY_ERP_DATASOURCE, m_tags->hidden, mapped->second);
    SMObjectBase::RegenerateIds();
}

// ---- XML

void SMNamedObject2::WriteLocaleTexts(QvContentHandler* handler, const I18NString& tag, const SMLocaleMap& map, bool withDefault) const {
    for (const auto& entry : map) {
        if (entry.second.empty() || (!withDefault && IsDefaultLocaleColumn(entry.first))) continue;
        QvXMLAttributesImpl attrs;
        attrs.push_back(m_tags->locale, entry.first);
        WriteString(handler, tag, attrs, entry.second);
    }
}

void SMNamedObject2::WriteLocaleMap(QvContentHandler* handler, const I18NString& tag, const SMLocaleMap& map) const {
    WriteLocaleTexts(handler, tag, map, true);
}

void SMNamedObject2::WriteQvRef(QvContentHandler* handler) const {
    WriteHiddenPropertyIfSet(handler, PROPERTY_QVREF, qvref);
}

void SMNamedObject2::WriteProperties(QvContentHandler* handler, bool writeHidden) const {
    WriteQvRef(handler);
    SMObjectBase::WriteProperties(handler, writeHidden);
}

// ---- rows

void SMNamedObject2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_NAME, defaultName);
}

void SMNamedObject2::constructFromIOParameter(const IOParameter& row) {
    FillGuarded(row, ROW_WORDS, [&] {
        if (const QvULString text = TextOf(row, m_tags->name); !text.empty()) {
            SetDefaultName(text);
            SetLocaleText(names, m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING, text);
        }
        if (const auto reference = IfPresent(row, PROPERTY_QVREF)) SetQvRef(reference->GetQvULStringValue());
    });
    SMObjectBase::constructFromIOParameter(row);
}

bool SMNamedObject2::write_lang_element(IOHelper& helper, const SMLocaleMap& map, const I18NString& tag) {
    for (const auto& entry : map) {
        if (IsDefaultLocaleColumn(entry.first)) continue;
        SMLocal<IOHashParam> params;
        SMRowWriter row(*AddHash(params, IOParamTag::ATTRIBUTES));
        row.Text(IOParamTag::XML_ELEMENT_ID, GetId());
        row.Number(IOParamTag::XML_ELEMENT_VERSION, GetVersionNo());
        row.Text(IOParamTag::XML_ELEMENT_LOCALE, entry.first);
        row.Text(IOParamTag::XML_ELEMENT_NAME, tag);
        row.Text(IOParamTag::XML_ELEMENT_VALUE, entry.second);
        if (!helper.DoWriteAction(IOAction::AT_WriteLangText, params)) return false;
    }
    return true;
}

void SMNamedObject2::VisitLangElement(IOTextVisitor& visitor, const SMLocaleMap& map, const I18NString& tag) const {
    for (const auto& [locale, text] : map)
        if (!IsDefaultLocaleColumn(locale)) visitor.Visit(tag, locale, text);
}

void SMNamedObject2::VisitLangElements(IOTextVisitor& visitor) const {
    VisitLangElement(visitor, names, m_tags->name);
}

bool SMNamedObject2::write_lang_elements(IOHelper& helper) {
    return write_lang_element(helper, names, m_tags->name);
}

}  // namespace schema_002_000
