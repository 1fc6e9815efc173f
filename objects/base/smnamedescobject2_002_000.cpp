#include "objects/base/smnamedescobject2_002_000.h"

#include "objects/base/smprint_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords ROW_WORDS = {"smnamedescobject", "SMNameDescObject2"};
const QvULString COL_DESCRIPTION = SMColumn("DESCRIPTION");
const QvULString COL_SCREENTIP = SMColumn("SCREENTIP");
const QvULString COL_WAREHOUSE_OBJECT_ID = SMColumn("WAREHOUSE_OBJECT_ID");
const QvSmartVector<SMQueryItem2>& NO_QUERY_ITEMS = QvEmptyVector<SMQueryItem2>();

}  // namespace

const QvSmartVector<SMQueryItem2>& SMNameDescObject2::GetQueryItems() const {
    return NO_QUERY_ITEMS;
}

void SMNameDescObject2::AddDescription(const QvULString& locale, const QvULString& text) {
    if (IsDefaultLocale(locale) && text != defaultDescription) {
        defaultDescription = text;
        SetLastChangedDateToNow();
    }
    SetLocaleText(descriptions, locale, text);
}

void SMNameDescObject2::SetDescription(const QvULString& text) {
    if (text == defaultDescription) return;
    AddDescription(m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING, text);
    SetLastChangedDateToNow();
}

void SMNameDescObject2::AddScreenTip(const QvULString& locale, const QvULString& text) {
    if (IsDefaultLocale(locale)) defaultScreenTip = text;
    SetLocaleText(screenTips, locale, text);
}

void SMNameDescObject2::ChangeDefaultScreenTip(const QvULString& text) {
    if (text == defaultScreenTip) return;
    AddScreenTip(m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING, text);
    SetLastChangedDateToNow();
}

void SMNameDescObject2::WriteCommonElements(QvContentHandler* handler) const {
    WriteLocaleMap(handler, m_tags->name, names);
    WriteLocaleMap(handler, m_tags->description, descriptions);
    WriteSMDate(handler, m_tags->lastChanged, NoAttributes(), GetLastChangedDate());
    WriteLocaleMap(handler, m_tags->screenTip, screenTips);
    WriteProperties(handler, true);
}

void SMNameDescObject2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);
    const QvULString& locale = m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING;
    SMRowWriter row(attrs);
    row.Text(COL_DESCRIPTION, descriptions[locale]);  // find-or-insert on purpose
    row.Text(COL_SCREENTIP, screenTips[locale]);
    row.Text(COL_WAREHOUSE_OBJECT_ID, qvref);
}

void SMNameDescObject2::constructFromIOParameter(const IOParameter& row) {
    FillGuarded(row, ROW_WORDS, [&] {
        const QvULString& locale = m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING;
        if (const QvULString text = TextOf(row, m_tags->description); !text.empty()) {
            descriptions.emplace(locale, text);  // an entry that is there stays, unlike a name's
            defaultDescription = text;
        }
        if (const QvULString text = TextOf(row, m_tags->screenTip); !text.empty()) {
            screenTips.emplace(locale, text);
            defaultScreenTip = text;
        }
    });
    SMNamedObject2::constructFromIOParameter(row);
}

bool SMNameDescObject2::write_lang_elements(IOHelper& helper) {
    return write_lang_element(helper, descriptions, m_tags->description) && write_lang_element(helper, screenTips, m_tags->screenTip) &&
           SMNamedObject2::write_lang_elements(helper);
}

void SMNameDescObject2::VisitLangElements(IOTextVisitor& visitor) const {
    VisitLangElement(visitor, descriptions, m_tags->description);
    VisitLangElement(visitor, screenTips, m_tags->screenTip);
    SMNamedObject2::VisitLangElements(visitor);
}

bool SMNameDescObject2::write_custom_property_locale(IOHelper& helper) {
    const I18NString text = SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) {
        WriteCustomProperties(handler);
        WriteLocaleTexts(handler, m_tags->name, names, false);
        WriteLocaleTexts(handler, m_tags->description, descriptions, false);
        WriteLocaleTexts(handler, m_tags->screenTip, screenTips, false);
    });
    if (text.empty()) return true;
    long version = m_propertyVersion;
    const bool success = write_remaining_info(helper, m_tags->property, text, version);
    m_propertyVersion = static_cast<int>(version);
    return success;
}

}  // namespace schema_002_000
