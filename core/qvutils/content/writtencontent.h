#pragma once

#include "core/qvutils/content/printedcontent.h"
#include "core/qvutils/xml/qvneutralhandler.h"

namespace qv {

/** In the place of a printer, it tells a sink the content of the document that would be printed. */
class SM_API WrittenContent : public QvNeutralHandler {
  public:
    /** `sink` is borrowed. */
    explicit WrittenContent(ContentSink& sink) : m_sink(sink), m_kept(sink) {}

    /** Takes the kept XML that is written behind the printer's back. */
    QvXMLFormatTarget& Target() { return m_kept; }

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override;
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;
    void characters(const I18NString& text) override;
    void ignorableWhitespace(const I18NString& text) override { characters(text); }

  private:
    ContentSink& m_sink;
    PrintedContent m_kept;
};

}  // namespace qv
