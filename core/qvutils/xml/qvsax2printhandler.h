#pragma once

#include <vector>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/qvcontenthandler.h"

/**
 * Prints what it receives as XML text. It holds nothing back, since kept XML goes to the target behind its back: a start tag is
 * closed at once and an empty element is `<a></a>`. No indentation unless asked for.
 *
 * Text is escaped as `&amp; &lt; &gt; &#xD;`, attributes (in double quotes) also `&quot; &#x9; &#xA;`; the apostrophe stays raw, since
 * ids inside kept XML stand in apostrophes. Only qualified names and values of attributes are printed, in their order.
 */
class SM_API QvSAX2PrintHandler : public QvContentHandler, private QvOpaqueElementListener {
  public:
    /**
     * `encoding` is "UTF-8"; `reserved` is false. `fragment` false prints the XML declaration and a line feed at once, in the
     * constructor; true prints none. The target is borrowed.
     */
    QvSAX2PrintHandler(const char* encoding, bool reserved, QvXMLFormatTarget& target, bool fragment);
    ~QvSAX2PrintHandler() override;

    /**
     * Two blanks a level between elements that hold elements only, for people; text and kept XML stay as they stand. To be set before
     * the first element.
     */
    void SetIndent(bool indent);

    void characters(const I18NString& text) override;
    void endDocument() override;
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;
    void ignorableWhitespace(const I18NString& text) override;
    void processingInstruction(const I18NString& target, const I18NString& data) override;
    void startDocument() override;
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override;
    void startPrefixMapping(const I18NString& prefix, const I18NString& uri) override;
    void endPrefixMapping(const I18NString& prefix) override;
    void skippedEntity(const I18NString& name) override;

  private:
    struct Level {
        bool hasText = false, hasChildren = false;
    };

    void BeforeOpaqueElement() override;
    void BeginChild();
    void NewLine();

    QvXMLFormatTarget& m_target;
    bool m_indent = false;
    /** The open elements; kept for the indentation only. */
    std::vector<Level> m_levels;
};
