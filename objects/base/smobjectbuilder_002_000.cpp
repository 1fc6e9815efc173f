#include "objects/base/smobjectbuilder_002_000.h"

#include <algorithm>
#include <climits>
#include <string>
#include <utility>

#include "core/qvutils/diag/valuewitness.h"
#include "core/qvutils/text/asciifold.h"
#include "core/qvutils/text/qvstringformat.h"
#include "objects/base/smlog_002_000.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

const I18NString SMObjectBuilder::ms_strUri;

struct QvXmlBuildBase::Storey {
    QvSmartPtr<QvXmlBuildBase> builder;
    std::size_t open = 1;
};

QvXmlBuildBase::QvXmlBuildBase() = default;

QvXmlBuildBase::~QvXmlBuildBase() {
    if (m_ownStack) CutTo(0);
}

bool QvXmlBuildBase::HasChild() const {
    return m_stack && m_stack->size() > m_floor;
}

/** From the top down, so that a high stack goes flat. */
void QvXmlBuildBase::CutTo(std::size_t floor) {
    while (m_stack->size() > floor) {
        const QvSmartPtr<QvXmlBuildBase> top = std::move(m_stack->back().builder);
        m_stack->pop_back();
        if (top->m_stack != m_stack) continue;
        top->m_stack = nullptr;
        top->m_floor = 0;
    }
}

void QvXmlBuildBase::startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                  const QvXMLAttributes& attrs) {
    if (HasChild()) {
        Storey& top = m_stack->back();
        ++top.open;
        QvXmlBuildBase* const builder = top.builder;
        builder->startElement(uri, localName, qName, attrs);
    } else {
        m_startedName = &qName;
        realStartElement(uri, localName, qName, attrs);
        m_startedName = nullptr;
    }
}

void QvXmlBuildBase::characters(const I18NString& text) {
    if (HasChild())
        m_stack->back().builder->characters(text);
    else
        realCharacters(text);
}

void QvXmlBuildBase::endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
    if (!HasChild()) return realEndElement(uri, localName, qName);
    std::size_t place = m_stack->size() - 1;
    --(*m_stack)[place].open;
    const QvSmartPtr<QvXmlBuildBase> child = (*m_stack)[place].builder;  // it may take its own leave while it handles its last tag
    child->endElement(uri, localName, qName);
    // the element that a storey goes with has ended for the storey below, too, which may go with the same one
    while (place < m_stack->size() && (*m_stack)[place].open == 0) {
        CutTo(place);
        if (place-- == m_floor) break;
        --(*m_stack)[place].open;
    }
}

void QvXmlBuildBase::Push(QvXmlBuildBase* child) {
    const QvSmartPtr<QvXmlBuildBase> owned = child;  // the stack may find no memory for it
    if (!m_stack) {
        m_ownStack = std::make_unique<Stack>();
        m_stack = m_ownStack.get();
    }
    CutTo(m_floor);
    m_stack->push_back({child});
    if (child->m_stack) return;  // what was pushed onto it before stays on it
    child->m_stack = m_stack;
    child->m_floor = m_stack->size();
}

void QvXmlBuildBase::PushWithStart(QvXmlBuildBase* child, const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                   const QvXMLAttributes& attrs) {
    Push(child);
    child->startElement(uri, localName, qName, attrs);
}

const IOObject* QvXmlBuildBase::InnermostObject() const {
    if (HasChild())
        for (std::size_t floor = m_stack->size(); floor > m_floor; --floor)
            if (const IOObject* inner = (*m_stack)[floor - 1].builder->OwnObject()) return inner;
    return OwnObject();
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
    const long value = QvStringFormat::GetInstance()->_string2long(m_text);
    const std::string_view text = m_text.utf8();
    const bool isSigned = text.starts_with('-') || text.starts_with('+');
    const std::string_view digits = text.substr(isSigned ? 1 : 0);
    const bool isNumber = !digits.empty() && std::all_of(digits.begin(), digits.end(), qv::IsAsciiDigit);
    const bool isTooBig = (value == LONG_MAX || value == LONG_MIN) && !text.ends_with(std::to_string(value));
    if (!isNumber || isTooBig) qv::TellMisread(qv::ValueWitness::What::number, text);
    return value;
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
