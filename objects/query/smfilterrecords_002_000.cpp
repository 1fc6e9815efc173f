#include "objects/query/smfilterrecords_002_000.h"

#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smprint_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

/** One element inside another: opens at the start of its scope and closes at the end. */
class Element {
  public:
    Element(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs = QvXMLAttributesImpl())
        : m_handler(handler), m_tag(tag) {
        m_handler->startElement(SMObjectBase::ms_strUri, m_tag, m_tag, attrs);
    }
    ~Element() { m_handler->endElement(SMObjectBase::ms_strUri, m_tag, m_tag); }
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

  private:
    QvContentHandler* m_handler;
    const I18NString& m_tag;
};

void WriteText(QvContentHandler* handler, const I18NString& tag, const I18NString& text) {
    SMObjectBase::WriteString(handler, tag, QvXMLAttributesImpl(), text);
}

/** What both kinds of filter end with. */
template <class Record>
void WriteReference(const Record& filter, QvContentHandler* handler, QvXMLFormatTarget& target) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    if (!filter.refobj.empty()) WriteText(handler, tags->refobj, filter.refobj);
    if (!filter.displayName.empty()) WriteText(handler, tags->displayName, filter.displayName);
    if (filter.expression) filter.expression->WriteBytes(target);
}

}  // namespace

// ---- writing

template <class Text>
void SMFilterRecords<Text>::WritePreviews(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    if (Previews().empty()) return;
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    const Element list(handler, tags->previewFilters);
    for (const Preview& filter : Previews()) {
        const Element one(handler, tags->previewFilter);
        WriteReference(filter, handler, target);
    }
}

template <class Text>
void SMFilterRecords<Text>::WriteSecurities(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    if (Securities().empty()) return;
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    const Element list(handler, tags->securityFilters);
    for (const Security& filter : Securities()) {
        const Element one(handler, tags->securityFilterDefinition);
        {
            QvXMLAttributesImpl attrs;
            attrs.push_back(tags->type, EnumText<SMEnum_securityObjectType>(filter.type));
            const Element object(handler, tags->securityObject, attrs);
            WriteText(handler, tags->displayPath, filter.displayPath);
            WriteText(handler, tags->cmSearchPath, filter.cmSearchPath);
        }
        if (!filter.basedOnCmSearchPath.empty()) {
            const Element basedOn(handler, tags->basedOn);
            WriteText(handler, tags->cmSearchPath, filter.basedOnCmSearchPath);
        }
        WriteReference(filter, handler, target);
    }
}

template <class Text>
I18NString SMFilterRecords<Text>::PreviewsToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget& target) { WritePreviews(handler, target); });
}

template <class Text>
I18NString SMFilterRecords<Text>::SecuritiesToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget& target) { WriteSecurities(handler, target); });
}

// ---- walks

template <class Text>
void SMFilterRecords<Text>::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (!m_block) return;
    for (Preview& filter : m_block->previews)
        if (filter.expression) filter.expression->RegenerateIds(idMap);
    for (Security& filter : m_block->securities)
        if (filter.expression) filter.expression->RegenerateIds(idMap);
}

template <class Text>
void SMFilterRecords<Text>::RenameObjects(SMRenameList2& list) {
    if (!m_block) return;
    const auto rename = [&](auto& filter) {
        list.PerformRenames(filter.refobj);
        if (filter.expression) filter.expression->RenameObjects(list);
    };
    for (Preview& filter : m_block->previews) rename(filter);
    for (Security& filter : m_block->securities) rename(filter);
}

// ---- reading

template <class Text>
typename SMFilterRecords<Text>::Preview* SMFilterReader<Text>::CurrentPreview() {
    return m_records.Previews().empty() ? nullptr : &m_records.EditPreviews().back();
}

template <class Text>
typename SMFilterRecords<Text>::Security* SMFilterReader<Text>::CurrentSecurity() {
    return m_records.Securities().empty() ? nullptr : &m_records.EditSecurities().back();
}

template <class Text>
SMFilterStep SMFilterReader<Text>::Start(Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::previewFilters: m_state = State::previews; return SMFilterStep::done;
    case Tag::securityFilters: m_state = State::securities; return SMFilterStep::done;
    case Tag::previewFilter: m_records.EditPreviews().emplace_back(); return SMFilterStep::done;
    case Tag::securityFilterDefinition: m_records.EditSecurities().emplace_back(); return SMFilterStep::done;
    case Tag::securityObject:
        m_state = State::securityObject;
        if (auto* filter = CurrentSecurity())
            filter->type = EnumOf<SMEnum_securityObjectType>(attrs.getValue(SMEnum_xmltag::GetInstance()->type));
        return SMFilterStep::done;
    case Tag::expression:
        if ((m_state == State::previews && CurrentPreview()) || (m_state == State::securities && CurrentSecurity()))
            return SMFilterStep::keep;
        return m_state == State::previews || m_state == State::securities ? SMFilterStep::done : SMFilterStep::notMine;
    case Tag::basedOn:
    case Tag::cmSearchPath:
    case Tag::displayName:
    case Tag::displayPath:
    case Tag::refobj: return SMFilterStep::collect;
    default: return SMFilterStep::notMine;
    }
}

template <class Text>
void SMFilterReader<Text>::SetExpression(const QvSmartPtr<SMXMLObject2>& expression) {
    if (m_state == State::previews)
        CurrentPreview()->expression = expression;
    else
        CurrentSecurity()->expression = expression;
}

template <class Text>
bool SMFilterReader<Text>::SetText(Text SMPreviewFilterRecord<Text>::*inPreview, Text SMSecurityFilterRecord<Text>::*inSecurity,
                                   const I18NString& text) {
    if (m_state == State::previews) {
        if (auto* filter = CurrentPreview()) filter->*inPreview = text;
    } else if (m_state == State::securities) {
        if (auto* filter = CurrentSecurity()) filter->*inSecurity = text;
    }
    return m_state == State::previews || m_state == State::securities;
}

template <class Text>
bool SMFilterReader<Text>::End(Tag tag, const I18NString& text) {
    switch (tag) {
    case Tag::previewFilters:
    case Tag::securityFilters: m_state = State::outside; return true;
    case Tag::securityObject: m_state = State::securities; return true;
    case Tag::previewFilter:
    case Tag::securityFilterDefinition:
    case Tag::basedOn: return true;
    case Tag::cmSearchPath:
        if (auto* filter = CurrentSecurity()) {
            if (m_state == State::securityObject) filter->cmSearchPath = text;
            if (m_state == State::securities) filter->basedOnCmSearchPath = text;
        }
        return true;
    case Tag::displayPath:
        // whatever the state, as the format has it: the last record takes it
        if (auto* filter = CurrentSecurity()) filter->displayPath = text;
        return true;
    case Tag::displayName:
        SetText(&SMPreviewFilterRecord<Text>::displayName, &SMSecurityFilterRecord<Text>::displayName, text);
        return true;
    case Tag::refobj: return SetText(&SMPreviewFilterRecord<Text>::refobj, &SMSecurityFilterRecord<Text>::refobj, text);
    default: return false;
    }
}

template class SMFilterRecords<I18NString>;
template class SMFilterRecords<QvULString>;
template class SMFilterReader<I18NString>;
template class SMFilterReader<QvULString>;

}  // namespace schema_002_000
