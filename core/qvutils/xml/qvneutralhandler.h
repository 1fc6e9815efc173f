#pragma once

#include "core/qvutils/xml/qvcontenthandler.h"

/** A handler that takes nothing: whoever wants a few of the events derives from it and overrides those. */
class QvNeutralHandler : public QvContentHandler {
  public:
    void characters(const I18NString&) override {}
    void endDocument() override {}
    void endElement(const I18NString&, const I18NString&, const I18NString&) override {}
    void ignorableWhitespace(const I18NString&) override {}
    void processingInstruction(const I18NString&, const I18NString&) override {}
    void startDocument() override {}
    void startElement(const I18NString&, const I18NString&, const I18NString&, const QvXMLAttributes&) override {}
    void startPrefixMapping(const I18NString&, const I18NString&) override {}
    void endPrefixMapping(const I18NString&) override {}
    void skippedEntity(const I18NString&) override {}
};
