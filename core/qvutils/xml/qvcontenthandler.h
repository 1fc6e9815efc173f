#pragma once

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/xml/qvxmlattributes.h"

/** The SAX interface: what a parser sends and a printer takes. The order of the operations is part of the contract. */
class SM_API QvContentHandler {
  public:
    virtual ~QvContentHandler() = default;
    virtual void characters(const I18NString& text) = 0;
    virtual void endDocument() = 0;
    virtual void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) = 0;
    virtual void ignorableWhitespace(const I18NString& text) = 0;
    virtual void processingInstruction(const I18NString& target, const I18NString& data) = 0;
    virtual void startDocument() = 0;
    virtual void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                              const QvXMLAttributes& attrs) = 0;
    virtual void startPrefixMapping(const I18NString& prefix, const I18NString& uri) = 0;
    virtual void endPrefixMapping(const I18NString& prefix) = 0;
    virtual void skippedEntity(const I18NString& name) = 0;
};
