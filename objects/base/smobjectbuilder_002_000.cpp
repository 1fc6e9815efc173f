#include "objects/base/smobjectbuilder_002_000.h"

#include "core/qvutils/text/qvstringformat.h"
#include "objects/base/smlog_002_000.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

const I18NString SMObjectBuilder::ms_strUri;

void QvXmlBuildBase::startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                  const QvXMLAttributes& attrs) {
    if (m_child) {
        ++m_depth;
        m_child->startElement(uri, localName, qName, attrs);
    } else {
        m_startedName = &qName;
        realStartElement(uri, localName, qName, attrs);
        m_startedName = nullptr;
    }
}

void QvXmlBuildBase::characters(const I18NString& text) {
    if (m_child)
        m_child->characters(text);
    else
        realCharacters(text);
}

void QvXmlBuildBase::endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
    if (!m_child) return realEndElement(uri, localName, qName);
    --m_depth;
    const QvSmartPtr<QvXmlBuildBase> child = m_child;  // it may take its own leave while it handles its last tag
    child->endElement(uri, localName, qName);
    if (m_depth == 0) m_child = nullptr;
}

void QvXmlBuildBase::Push(QvXmlBuildBase* child) {
    m_child = child;
    m_depth = 1;
}

void QvXmlBuildBase::PushWithStart(QvXmlBuildBase* child, const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                   const QvXMLAttributes& attrs) {
    Push(child);
    child->startElement(uri, localName, qName, attrs);
}

const IOObject* QvXmlBuildBase::InnermostObject() const {
    const IOObject* object = OwnObject();
    for (const QvXmlBuildBase* builder = m_child; builder; builder = builder->m_child)
        if (const IOObject* inner = builder->OwnObject()) object = inner;
    return object;
}

void SMPropertyText::Start(const QvXMLAttributes& attrs) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    name = attrs.getValue(tags->name);
    type = attrs.getValue(tags->type);
}

void SMObjectBuilder::realCharacters(const I18NString& text) {
    if (m_collecting) m_text += text;
}

void SMObjectBuilder::CollectText() {
    m_collecting = true;
    m_text.erase();
}

long SMObjectBuilder::TextAsLong() const {
    return QvStringFormat::GetInstance()->_string2long(m_text);
}

void SMObjectBuilder::StartProperty(const QvXMLAttributes& attrs) {
    CollectText();
    m_property.Start(attrs);
}

void SMObjectBuilder::EndProperty(SMObjectBase& object) const {
    object.SetProperty(m_property.name, m_property.type, m_text);
}

QvSmartPtr<SMXMLObject2> SMObjectBuilder::KeepXml(const I18NString& tag, const QvXMLAttributes& attrs) {
    const QvSmartPtr<SMXMLObject2> kept = new SMXMLObject2(tag);
    // the end tag comes under the name that the document has
    PushWithStart(new SMXMLObjectBuilder(kept), ms_strUri, tag, StartedName(), attrs);
    return kept;
}

void SMObjectBuilder::LogUnknownStart(const I18NString& module, const I18NString& className, const char* method,
                                      const I18NString& name) const {
    SMLog(SM_MISUSE, {module.c_str(), className.c_str()}, method, "Unknown tag:" + name);
}

void SMObjectBuilder::LogUnknownEnd(const I18NString& module, const I18NString& className, const char* method,
                                    const I18NString& name) const {
    SMLog(SM_MISUSE, {module.c_str(), className.c_str()}, method, "Unknown tag '" + name + "'");
}

void XmlFragReader::realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                     const QvXMLAttributes& attrs) {
    if (m_nesting > 0) m_target->startElement(uri, localName, qName, attrs);
    ++m_nesting;
}

void XmlFragReader::realCharacters(const I18NString& text) {
    if (m_nesting > 0) m_target->characters(text);
}

void XmlFragReader::realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
    --m_nesting;
    if (m_nesting >= 1) m_target->endElement(uri, localName, qName);
}

}  // namespace schema_002_000
