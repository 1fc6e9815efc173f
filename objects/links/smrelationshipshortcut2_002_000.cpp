#include "objects/links/smrelationshipshortcut2_002_000.h"

#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_RELATIONSHIP_SHORTCUT", "REL_SHORTCUT_ID", "REL_SHORTCUT_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smrelationshipshortcut2", "SMRelationshipShortcut2"};
const QvULString COL_RELATIONSHIPREF = SMColumn("RELATIONSHIPREF");
const QvULString COL_LEFT_REFOBJ = SMColumn("LEFT_REFOBJ");
const QvULString COL_RIGHT_REFOBJ = SMColumn("RIGHT_REFOBJ");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const QvULString KEY_LEFT_REFOBJ = QvULString::Immortal("left/refobj");
const QvULString KEY_RIGHT_REFOBJ = QvULString::Immortal("right/refobj");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMRelationshipShortcut2, TABLE)

I18NString SMRelationshipShortcut2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, GetContainingNamespaceName(), GetName(), EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMRelationshipShortcut2::RenameObjects(SMRenameList2& list) {
    list.PerformRenames(leftRefObj);
    list.PerformRenames(rightRefObj);
    list.PerformRenames(relationshipRef);
}

// ---- document

void SMRelationshipShortcut2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    const auto writeEnd = [&](const I18NString& tag, const I18NString& reference) {
        StartElement(handler, tag);
        TextElement(handler, m_tags->refobj, reference);
        EndElement(handler, tag);
    };
    StartElement(handler, m_tags->relationshipShortcut);
    WriteLocaleMap(handler, m_tags->name, names);
    WriteProperties(handler, true);
    writeEnd(m_tags->left, leftRefObj);
    writeEnd(m_tags->right, rightRefObj);
    TextElement(handler, m_tags->relationshipRef, relationshipRef);
    EndElement(handler, m_tags->relationshipShortcut);
}

// ---- repository

void SMRelationshipShortcut2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_RELATIONSHIPREF, relationshipRef);
    row.Text(COL_LEFT_REFOBJ, leftRefObj);
    row.Text(COL_RIGHT_REFOBJ, rightRefObj);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMRelationshipShortcut2::constructFromIOParameter(const IOParameter& row) {
    SMNamedObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        relationshipRef = TextOf(row, m_tags->relationshipRef);
        leftRefObj = TextOf(row, KEY_LEFT_REFOBJ);
        rightRefObj = TextOf(row, KEY_RIGHT_REFOBJ);
    });
}

bool SMRelationshipShortcut2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

// ---- builder

void SMRelationshipShortcutBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                                      const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::relationshipShortcut: break;
    case Tag::left: m_openEnd = &m_shortcut->leftRefObj; break;
    case Tag::right: m_openEnd = &m_shortcut->rightRefObj; break;
    case Tag::refobj:
    case Tag::relationshipRef: CollectText(); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNamedObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMRelationshipShortcutBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::left:
    case Tag::right:
    case Tag::relationshipShortcut: break;
    case Tag::refobj:
        if (m_openEnd) *m_openEnd = m_text;  // also behind the end: as the format has it
        break;
    case Tag::relationshipRef: m_shortcut->relationshipRef = m_text; break;
    case Tag::property: EndProperty(*m_shortcut); break;
    default: SMNamedObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
