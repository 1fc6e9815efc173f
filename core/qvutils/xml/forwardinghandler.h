#pragma once

#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/xml/qvcontenthandler.h"

namespace qv {

/** Hands all on to another handler: whoever wants to see a few of the events on their way derives from it and overrides those. */
class SM_API ForwardingHandler : public QvContentHandler, public SMObjectLocator {
  public:
    /** `next` is borrowed; what it builds is found through this one. */
    explicit ForwardingHandler(QvContentHandler& next) : m_next(next), m_locator(dynamic_cast<const SMObjectLocator*>(&next)) {}

    void characters(const I18NString& text) override { m_next.characters(text); }
    void endDocument() override { m_next.endDocument(); }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        m_next.endElement(uri, localName, qName);
    }
    void ignorableWhitespace(const I18NString& text) override { m_next.ignorableWhitespace(text); }
    void processingInstruction(const I18NString& target, const I18NString& data) override { m_next.processingInstruction(target, data); }
    void startDocument() override { m_next.startDocument(); }
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        m_next.startElement(uri, localName, qName, attrs);
    }
    void startPrefixMapping(const I18NString& prefix, const I18NString& uri) override { m_next.startPrefixMapping(prefix, uri); }
    void endPrefixMapping(const I18NString& prefix) override { m_next.endPrefixMapping(prefix); }
    void skippedEntity(const I18NString& name) override { m_next.skippedEntity(name); }

    const IOObject* InnermostObject() const override { return m_locator ? m_locator->InnermostObject() : nullptr; }

  private:
    QvContentHandler& m_next;
    const SMObjectLocator* m_locator;
};

}  // namespace qv
