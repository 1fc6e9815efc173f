// How model objects write themselves as XML.
#include "core/qvutils/base/stack.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/text/qvstringformat.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smprint_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

#include <string>

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smobjectbase", "SMObjectBase"};

}  // namespace

const QvXMLAttributes& SMObjectBase::NoAttributes() {
    static const QvXMLAttributesImpl none;
    return none;
}

void SMObjectBase::StartElement(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs) {
    handler->startElement(ms_strUri, tag, tag, attrs);
}

void SMObjectBase::StartElement(QvContentHandler* handler, const I18NString& tag) {
    StartElement(handler, tag, NoAttributes());
}

void SMObjectBase::EndElement(QvContentHandler* handler, const I18NString& tag) {
    handler->endElement(ms_strUri, tag, tag);
}

void SMObjectBase::WriteString(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, const I18NString& value) {
    handler->startElement(ms_strUri, tag, tag, attrs);
    handler->characters(value);
    handler->endElement(ms_strUri, tag, tag);
}

void SMObjectBase::WriteBool(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, bool value) {
    WriteString(handler, tag, attrs, SMEnum_bool::bool2string(value));
}

void SMObjectBase::WriteLong(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, long value) {
    I18NString text;
    QvStringFormat::GetInstance()->_num2string(static_cast<double>(value), text);
    WriteString(handler, tag, attrs, text);
}

void SMObjectBase::WriteSMDate(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, const QvDate& date) {
    I18NString text;
    QvStringFormat::GetInstance()->_datetime2stringwithpattern(date, GetSMDateFormat(), text, nullptr);
    WriteString(handler, tag, attrs, text);
}

void SMObjectBase::TextElement(QvContentHandler* handler, const I18NString& tag, const I18NString& value) {
    WriteString(handler, tag, NoAttributes(), value);
}

void SMObjectBase::TextElementIfSet(QvContentHandler* handler, const I18NString& tag, const I18NString& value) {
    if (!value.empty()) TextElement(handler, tag, value);
}

void SMObjectBase::FlagElement(QvContentHandler* handler, const I18NString& tag, bool value) {
    WriteBool(handler, tag, NoAttributes(), value);
}

void SMObjectBase::FlagElementIfTrue(QvContentHandler* handler, const I18NString& tag, bool value) {
    if (value) FlagElement(handler, tag, true);
}

void SMObjectBase::NumberElement(QvContentHandler* handler, const I18NString& tag, long value) {
    WriteLong(handler, tag, NoAttributes(), value);
}

void SMObjectBase::NumberElementIfSet(QvContentHandler* handler, const I18NString& tag, long value) {
    if (value >= 0) NumberElement(handler, tag, value);
}

void SMObjectBase::AddAttributeIfSet(QvXMLAttributesImpl& attrs, const I18NString& name, const I18NString& value) {
    if (!value.empty()) attrs.push_back(name, value);
}

void SMObjectBase::AddAttributeIfTrue(QvXMLAttributesImpl& attrs, const I18NString& name, bool value) {
    if (value) attrs.push_back(name, SMEnum_bool::s_true);
}

void SMObjectBase::WriteKept(const SMXMLObject2* kept, QvXMLFormatTarget& target) {
    if (kept) kept->WriteBytes(target);
}

void SMObjectBase::WriteList(QvContentHandler* handler, const I18NString& listTag, const I18NString& itemTag,
                             const std::list<I18NString>& items) {
    WriteList(handler, listTag, itemTag, items, NoAttributes(), NoAttributes());
}

void SMObjectBase::WriteList(QvContentHandler* handler, const I18NString& listTag, const I18NString& itemTag,
                             const std::list<I18NString>& items, const QvXMLAttributes& itemAttrs, const QvXMLAttributes& listAttrs) {
    StartElement(handler, listTag, listAttrs);
    for (const I18NString& item : items) WriteString(handler, itemTag, itemAttrs, item);
    EndElement(handler, listTag);
}

I18NString SMObjectBase::WriteStringToString(const I18NString& tag, const QvXMLAttributes& attrs, const I18NString& value) const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteString(handler, tag, attrs, value); });
}

I18NString SMObjectBase::WriteListToString(const I18NString& listTag, const I18NString& itemTag, const std::list<I18NString>& items) const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteList(handler, listTag, itemTag, items); });
}

void SMObjectBase::WriteProperties(QvContentHandler* handler, bool writeHidden) const {
    qv::RequireStack();  // each object that holds others comes by here, inside those that hold it
    if (writeHidden) {
        QvXMLAttributesImpl attrs;
        attrs.push_back(m_tags->name, m_tags->id);
        attrs.push_back(m_tags->type, m_tags->hidden);
        WriteString(handler, m_tags->property, attrs, GetId());
        attrs.clear();
        attrs.push_back(m_tags->name, m_tags->version);
        attrs.push_back(m_tags->type, m_tags->hidden);
        WriteLong(handler, m_tags->property, attrs, GetVersionNo());
    }
    WriteCustomProperties(handler);
}

void SMObjectBase::WriteHiddenPropertyIfSet(QvContentHandler* handler, const I18NString& name, const I18NString& value) const {
    if (value.empty()) return;
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->name, name);
    attrs.push_back(m_tags->type, m_tags->hidden);
    WriteString(handler, m_tags->property, attrs, value);
}

void SMObjectBase::AddIdAndVersion(QvXMLAttributesImpl& attrs) const {
    attrs.push_back(m_tags->id, GetId());
    AddVersion(attrs);
}

void SMObjectBase::AddIdIfSetAndVersion(QvXMLAttributesImpl& attrs) const {
    AddAttributeIfSet(attrs, m_tags->id, GetId());
    AddVersion(attrs);
}

void SMObjectBase::AddVersion(QvXMLAttributesImpl& attrs) const {
    attrs.push_back(m_tags->version, I18NString(std::to_string(GetVersionNo()).c_str()));
}

void SMObjectBase::WriteCustomProperties(QvContentHandler* handler) const {
    for (const auto& entry : m_properties) {
        QvXMLAttributesImpl attrs;
        attrs.push_back(m_tags->name, entry.first);
        if (!entry.second.type.empty()) attrs.push_back(m_tags->type, entry.second.type);
        WriteString(handler, m_tags->property, attrs, entry.second.value);
    }
}

I18NString SMObjectBase::WritePropertiesToString() {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteProperties(handler, false); });
}

void SMObjectBase::WriteXMLElement(QvContentHandler*, QvXMLFormatTarget&) const {
    SMLog(SM_MISUSE, WORDS, "WriteXMLElement", "Either this method or the version with 2 arguments must be overridden in the subclass.");
}

void SMObjectBase::WriteXMLElement(IOHelper*, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    WriteXMLElement(handler, target);
}

void SMObjectBase::BreakAndWriteXMLDocument(MultiFileHelper*, QvContentHandler* handler, QvXMLFormatTarget& target) {
    SMLog(SM_MISUSE, WORDS, "BreakAndWriteXMLDocument", "This method should not be called for an object that is not a SMNamedObject.");
    WriteXMLElement(handler, target);  // as the format has it: the object is written all the same
}

}  // namespace schema_002_000
