#include "objects/query/smpromptinfo2_002_000.h"

#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_PROMPTINFO", "PROMPTINFO_ID", "PROMPTINFO_VERSION_NO", "QS_ITEM_ID", "QS_ITEM_VERSION_NO"};
const SMLogWords ROW_WORDS = {"smpromtinfo2", "SMPromptInfo2"};  // as the log has it
const QvULString COL_PROMPTTYPE = SMColumn("PROMPTTYPE");
const QvULString COL_PROMPTCASCADEONREF = SMColumn("PROMPTCASCADEONREF");
const QvULString COL_PROMPTDISPLAYITEMREF = SMColumn("PROMPTDISPLAYITEMREF");
const QvULString COL_PROMPTFILTERITEMREF = SMColumn("PROMPTFILTERITEMREF");
/** No element has this name, and so no tag. */
const QvULString KEY_PROMPTCASCADEONREF = QvULString::Immortal("promptCascadeOnRef");
const I18NString BUILDER_MODULE = I18NString::Immortal("SMPromptInfo2");  // as the log has it
const I18NString BUILDER_CLASS = I18NString::Immortal("SMPromptInfoBuilder");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMPromptInfo2, TABLE)

// ---- memory

bool SMPromptInfo2::Change(I18NString& field, const I18NString& text) {
    if (field == text) return false;
    field = text;
    return true;
}

void SMPromptInfo2::RenameObjects(SMRenameList2& list) {
    for (I18NString* reference : {&promptDisplayItemRef, &promptFilterItemRef, &promptUseItemRef, &promptCascadeOnRef})
        list.PerformRenames(*reference);
}

// ---- document

void SMPromptInfo2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    QvXMLAttributesImpl attrs;
    AddIdIfSetAndVersion(attrs);
    StartElement(handler, m_tags->promptInfo, attrs);
    TextElement(handler, m_tags->promptType, promptType);
    TextElementIfSet(handler, m_tags->promptDisplayItemRef, promptDisplayItemRef);
    TextElementIfSet(handler, m_tags->promptFilterItemRef, promptFilterItemRef);
    TextElementIfSet(handler, m_tags->promptUseItemRef, promptUseItemRef);
    EndElement(handler, m_tags->promptInfo);
}

// ---- repository

void SMPromptInfo2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_PROMPTTYPE, promptType);
    row.Text(COL_PROMPTCASCADEONREF, promptCascadeOnRef);
    row.Text(COL_PROMPTDISPLAYITEMREF, promptDisplayItemRef);
    row.Text(COL_PROMPTFILTERITEMREF, promptFilterItemRef);
}

void SMPromptInfo2::constructFromIOParameter(const IOParameter& row) {
    SMObjectBase::constructFromIOParameter(row);
    FillGuarded(row, ROW_WORDS, [&] {
        promptType = TextOf(row, m_tags->promptType);
        promptDisplayItemRef = TextOf(row, m_tags->promptDisplayItemRef);
        promptFilterItemRef = TextOf(row, m_tags->promptFilterItemRef);
        ReadIfPresent(row, KEY_PROMPTCASCADEONREF, promptCascadeOnRef);
    });
}

bool SMPromptInfo2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

// ---- builder

void SMPromptInfoBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes&) {
    switch (TagOf(localName)) {
    case Tag::promptInfo: break;
    case Tag::promptType:
    case Tag::promptDisplayItemRef:
    case Tag::promptFilterItemRef:
    case Tag::promptUseItemRef: CollectText(); break;
    default: LogUnknownEnd(BUILDER_MODULE, BUILDER_CLASS, "realStartElement", localName);
    }
}

void SMPromptInfoBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::promptInfo: break;
    case Tag::promptType: m_prompt->SetPromptType(m_text); break;
    case Tag::promptDisplayItemRef: m_prompt->SetPromptDisplayItemRef(m_text); break;
    case Tag::promptFilterItemRef: m_prompt->SetPromptFilterItemRef(m_text); break;
    case Tag::promptUseItemRef: m_prompt->SetPromptUseItemRef(m_text); break;
    default: LogUnknownEnd(BUILDER_MODULE, BUILDER_CLASS, "realEndElement", localName);
    }
}

}  // namespace schema_002_000
