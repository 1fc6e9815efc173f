#pragma once

#include "core/qvutils/content/contentsource.h"
#include "core/qvutils/xml/forwardinghandler.h"

namespace qv {

/** Tells of the content of a document on its way to a handler. */
class ContentTee final : public ForwardingHandler {
  public:
    /** Both are borrowed. */
    ContentTee(ContentSource& source, QvContentHandler& next) : ForwardingHandler(next), m_source(source) {}

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        m_source.Start(localName, attrs);
        ForwardingHandler::startElement(uri, localName, qName, attrs);
    }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        m_source.End();
        ForwardingHandler::endElement(uri, localName, qName);
    }
    void characters(const I18NString& text) override {
        m_source.Text(text);
        ForwardingHandler::characters(text);
    }

  private:
    ContentSource& m_source;
};

}  // namespace qv
