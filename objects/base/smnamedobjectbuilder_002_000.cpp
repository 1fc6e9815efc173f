#include "objects/base/smnamedobjectbuilder_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

void SMNamedObjectBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                            const QvXMLAttributes& attrs) {
    smtagStartElement(SMObjectBase::EMPTY_QVSTRING, SMObjectBase::EMPTY_QVSTRING, TagOf(localName), attrs);
}

void SMNamedObjectBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    smtagEndElement(SMObjectBase::EMPTY_QVSTRING, SMObjectBase::EMPTY_QVSTRING, TagOf(localName));
}

void SMNamedObjectBuilder::CollectLocaleText(const QvXMLAttributes& attrs) {
    CollectText();
    m_locale = attrs.getValue(m_tags->locale);
}

void SMNamedObjectBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::lastChanged: CollectText(); break;
    case Tag::name: CollectLocaleText(attrs); break;
    default: LogUnknownEnd(module, className, "realStartElement", m_tags->_enum2string(tag));
    }
}

void SMNamedObjectBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::lastChanged: m_named->SetSMLastChangedDate(m_text); break;
    case Tag::name: m_named->AddName(m_locale, m_text); break;
    default: LogUnknownEnd(module, className, "realEndElement", m_tags->_enum2string(tag));
    }
}

void SMNameDescObjectBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                                const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::description:
    case Tag::screenTip: CollectLocaleText(attrs); break;
    default: SMNamedObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMNameDescObjectBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::description: m_nameDesc->AddDescription(m_locale, m_text); break;
    case Tag::screenTip: m_nameDesc->AddScreenTip(m_locale, m_text); break;
    default: SMNamedObjectBuilder::smtagEndElement(module, className, tag);
    }
}

void SMNestedObjectBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                              const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMNestedObjectBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::object: break;
    case Tag::property: EndProperty(*m_nameDesc); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
