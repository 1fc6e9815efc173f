#include "objects/links/smrelationshipbase2_002_000.h"

#include "core/qvutils/text/qvstringformat.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMLogWords WORDS = {"smrelationshipbase2", "SMRelationshipBase2"};
const char* const BUILDER_MODULE = "smrelationshipbasebuilder";
const QvULString COL_NAME = SMColumn("NAME");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const QvULString COL_WAREHOUSE_OBJECT_ID = SMColumn("WAREHOUSE_OBJECT_ID");
const QvULString COL_LEFT_MAXCARD = SMColumn("LEFT_MAXCARD");
const QvULString COL_LEFT_MINCARD = SMColumn("LEFT_MINCARD");
const QvULString COL_LEFT_REFOBJ = SMColumn("LEFT_REFOBJ");
const QvULString COL_RIGHT_MAXCARD = SMColumn("RIGHT_MAXCARD");
const QvULString COL_RIGHT_MINCARD = SMColumn("RIGHT_MINCARD");
const QvULString COL_RIGHT_REFOBJ = SMColumn("RIGHT_REFOBJ");
const QvULString PROPERTY_QVREF = QvULString::Immortal("qvref");

const I18NString& TextOf(SMEnum_cardinality::Enum cardinality) {
    return EnumText<SMEnum_cardinality>(cardinality);
}

}  // namespace

// ---- memory

void SMRelationshipBase2::SetName(const QvULString& newName) {
    NoteNameChange(name.utf8(), newName.utf8());
    name = newName;
}

I18NString SMRelationshipBase2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, GetContainingNamespaceName(), name, EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMRelationshipBase2::SetReference(Reference& reference, const I18NString& path, SMEnum_cardinality::Enum minCard,
                                       SMEnum_cardinality::Enum maxCard, bool* changed) {
    const bool different =
        reference.refobj != path || reference.cachedObject || reference.minCard != minCard || reference.maxCard != maxCard;
    reference.refobj = path;
    reference.cachedObject = nullptr;
    reference.minCard = minCard;
    reference.maxCard = maxCard;
    if (changed) *changed = different;
}

void SMRelationshipBase2::SetLeftReference(const I18NString& path, SMEnum_cardinality::Enum minCard, SMEnum_cardinality::Enum maxCard,
                                           bool stamp) {
    bool changed = false;
    SetReference(left, path, minCard, maxCard, &changed);
    if (stamp && changed) SetLastChangedDateToNow();
}

void SMRelationshipBase2::SetRightReference(const I18NString& path, SMEnum_cardinality::Enum minCard, SMEnum_cardinality::Enum maxCard,
                                            bool stamp) {
    bool changed = false;
    SetReference(right, path, minCard, maxCard, &changed);
    if (stamp && changed) SetLastChangedDateToNow();
}

SMObjectBase* SMRelationshipBase2::GetRefObj(Reference& reference) {
    if (!m_project) {
        reference.cachedObject = nullptr;  // nobody can tell whether it still lives
        // the text names the left end whichever end is asked for: as the format has it
        SMLog(SM_MISUSE, WORDS, "GetRefObj", "Unable to complete GetLeftRefObj - SM project pointer is NULL.");
        return nullptr;
    }
    if (reference.cachedObject && m_project->IsWatchedAlive(reference.cachedObject, reference.lifeToken)) return reference.cachedObject;
    reference.cachedObject = m_project->GetRefObjectBySMID(reference.refobj);
    if (reference.cachedObject) reference.lifeToken = m_project->WatchLife(reference.cachedObject);
    return reference.cachedObject;
}

SMQuerySubject2* SMRelationshipBase2::GetRefQuerySubject(Reference& reference) {
    SMObjectBase* object = GetRefObj(reference);
    return object && object->GetSMType() == Tag::querySubject ? static_cast<SMQuerySubject2*>(object) : nullptr;
}

SMShortcut2* SMRelationshipBase2::GetRightShortcut() {
    SMObjectBase* object = GetRightRefObj();
    return object && object->GetSMType() == Tag::shortcut ? static_cast<SMShortcut2*>(object) : nullptr;
}

void SMRelationshipBase2::ForceRefetchRefs() {
    left.cachedObject = nullptr;
    right.cachedObject = nullptr;
}

void SMRelationshipBase2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (!qvRefId.empty())
        if (const auto mapped = idMap.find(qvRefId); mapped != idMap.end()) qvRefId = mapped->second;
    SMObjectBase::RegenerateIds();
}

void SMRelationshipBase2::RenameObjects(SMRenameList2& list) {
    ForceRefetchRefs();
    list.PerformRenames(left.refobj);  // follows only with three parts or more: as the format has it
    list.PerformRenames(right.refobj);
}

void SMRelationshipBase2::AppendDiffable(I18NString& text, const Reference& reference, const char* bar) {
    for (const I18NString& part : {reference.refobj, TextOf(reference.minCard), TextOf(reference.maxCard)}) {
        text += bar;
        text += part;
    }
}

I18NString SMRelationshipBase2::DisplayOrderText() const {
    I18NString text;
    QvStringFormat::GetInstance()->_num2string(displayOrder, text);
    return text;
}

// ---- document

void SMRelationshipBase2::SetProperty(const QvULString& propertyName, const QvULString& type, const QvULString& value) {
    if (propertyName == PROPERTY_QVREF)
        SetQvRefID(value);
    else
        SMObjectBase::SetProperty(propertyName, type, value);
}

void SMRelationshipBase2::WriteProperties(QvContentHandler* handler, bool writeHidden) const {
    SMObjectBase::WriteProperties(handler, writeHidden);  // before the link, unlike in named objects: as the format has it
    WriteHiddenPropertyIfSet(handler, PROPERTY_QVREF, qvRefId);
}

void SMRelationshipBase2::WriteReferenceXMLElement(QvContentHandler* handler, const Reference& reference, const I18NString& tag) const {
    StartElement(handler, tag);
    TextElement(handler, m_tags->refobj, reference.refobj);
    TextElement(handler, m_tags->mincard, TextOf(reference.minCard));
    TextElement(handler, m_tags->maxcard, TextOf(reference.maxCard));
    EndElement(handler, tag);
}

// ---- repository

void SMRelationshipBase2::getReferenceAttributes(IOParameter& attrs, const Reference& reference, const QvULString& maxColumn,
                                                 const QvULString& minColumn, const QvULString& refColumn) {
    SMRowWriter row(attrs);
    row.TextIfSet(maxColumn, TextOf(reference.maxCard));
    row.TextIfSet(minColumn, TextOf(reference.minCard));
    row.TextIfSet(refColumn, reference.refobj);
}

void SMRelationshipBase2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_NAME, name);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
    row.Text(COL_WAREHOUSE_OBJECT_ID, qvRefId);
    getReferenceAttributes(attrs, left, COL_LEFT_MAXCARD, COL_LEFT_MINCARD, COL_LEFT_REFOBJ);
    getReferenceAttributes(attrs, right, COL_RIGHT_MAXCARD, COL_RIGHT_MINCARD, COL_RIGHT_REFOBJ);
}

void SMRelationshipBase2::constructReference(const IOParameter& row, Reference& reference, const I18NString& prefix) const {
    const auto textUnder = [&](const I18NString& tag) {
        const auto value = IfPresent(row, prefix + "/" + tag);
        return value ? value->GetQvStringValue() : EMPTY_QVSTRING;
    };
    reference.refobj = textUnder(m_tags->refobj);
    reference.maxCard = EnumOf<SMEnum_cardinality>(textUnder(m_tags->maxcard));
    reference.minCard = EnumOf<SMEnum_cardinality>(textUnder(m_tags->mincard));
}

void SMRelationshipBase2::constructFromIOParameter(const IOParameter& row) {
    SMObjectBase::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        SetName(schema_002_000::TextOf(row, m_tags->name));
        SetQvRefID(schema_002_000::TextOf(row, PROPERTY_QVREF));
        constructReference(row, left, m_tags->left);
        constructReference(row, right, m_tags->right);
    });
}

// ---- builder

void SMRelationshipBaseBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                                 const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::relationship: break;
    case Tag::name:
    case Tag::lastChanged:
    case Tag::refobj:
    case Tag::mincard:
    case Tag::maxcard: CollectText(); break;
    case Tag::left:
    case Tag::right:
        m_currentMinCard = m_currentMaxCard = SMEnum_cardinality::Enum(-1);
        m_refobj.erase();
        break;
    case Tag::property: StartProperty(attrs); break;
    default: LogUnknownEnd(BUILDER_MODULE, "SMRelationshipBaseBuilder", "realStartElement", localName);
    }
}

void SMRelationshipBaseBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::relationship: break;
    case Tag::name: m_base->SetName(m_text); break;
    case Tag::lastChanged: m_base->SetSMLastChangedDate(m_text); break;
    case Tag::refobj: m_refobj = m_text; break;
    case Tag::mincard: m_currentMinCard = TextAsEnum<SMEnum_cardinality>(); break;
    case Tag::maxcard: m_currentMaxCard = TextAsEnum<SMEnum_cardinality>(); break;
    case Tag::left: m_base->SetLeftReference(m_refobj, m_currentMinCard, m_currentMaxCard, false); break;
    case Tag::right: m_base->SetRightReference(m_refobj, m_currentMinCard, m_currentMaxCard, false); break;
    case Tag::property: EndProperty(*m_base); break;
    // another method than this one: as the format has it
    default: LogUnknownEnd(BUILDER_MODULE, "SMRelationshipBaseBuilder", "smtagEndElement", localName);
    }
}

}  // namespace schema_002_000
