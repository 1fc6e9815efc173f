#include "objects/links/smshortcut2_002_000.h"

#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_SHORTCUT", "SHORTCUT_ID", "SHORTCUT_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smshortcut2", "SMShortcut2"};
const QvULString COL_REFOBJ = SMColumn("REFOBJ");
const QvULString COL_TARGETTYPE = SMColumn("TARGETTYPE");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const QvULString COL_WAREHOUSE_OBJECT_ID = SMColumn("WAREHOUSE_OBJECT_ID");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMShortcut2, TABLE)

I18NString SMShortcut2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, GetContainingNamespaceName(), GetName(), EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMShortcut2::RenameObjects(SMRenameList2& list) {
    list.PerformRenames(refObj);
}

// ---- document

void SMShortcut2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    StartElement(handler, m_tags->shortcut);
    WriteLocaleMap(handler, m_tags->name, names);
    WriteLocaleMap(handler, m_tags->description, descriptions);
    WriteLocaleMap(handler, m_tags->screenTip, screenTips);
    WriteProperties(handler, true);
    WriteSMDate(handler, m_tags->lastChanged, NoAttributes(), GetLastChangedDate());  // behind the properties: as the format has it
    TextElement(handler, m_tags->refobj, refObj);
    TextElement(handler, m_tags->targetType, targetType);
    EndElement(handler, m_tags->shortcut);
}

// ---- repository

void SMShortcut2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);  // past the nearer base on purpose: a shortcut has no description columns
    SMRowWriter row(attrs);
    row.Text(COL_REFOBJ, refObj);
    row.Text(COL_TARGETTYPE, targetType);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
    row.Text(COL_WAREHOUSE_OBJECT_ID, qvref);
}

void SMShortcut2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        refObj = TextOf(row, m_tags->refobj);
        targetType = TextOf(row, m_tags->targetType);
    });
}

bool SMShortcut2::read(IOHelper& helper) {
    SMShortcutBuilder builder(this);
    return read_custom_property_locale(helper, this, &builder);
}

bool SMShortcut2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && helper.EndObject();
}

// ---- builder

void SMShortcutBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::shortcut: break;
    case Tag::refobj:
    case Tag::targetType: CollectText(); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMShortcutBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::shortcut: break;
    case Tag::refobj: m_shortcut->SetRefObj(m_text); break;
    case Tag::targetType: m_shortcut->SetTargetType(m_text); break;
    case Tag::property: EndProperty(*m_shortcut); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
