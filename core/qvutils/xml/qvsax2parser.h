#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "core/qvutils/text/tklbytebuffer.h"
#include "core/qvutils/xml/limits.h"
#include "core/qvutils/xml/qvcontenthandler.h"

namespace qv {
class DocumentSource;
}

/**
 * A SAX parse that delivers events to a handler.
 *
 * Names are delivered as the same `I18NString` for the whole document; adjacent character data, CDATA and entity text included,
 * comes in one `characters` event; local names are cut from qualified ones and no namespace is processed: attributes, xmlns ones
 * too, come in document order. Comments are not delivered. No external DTD or entity is ever opened. Arguments of events are
 * good for the time of the call.
 *
 * Making a parser is cheap: the heavy reader beneath is lent by a pool of the thread for the time of a parse, so a parse may
 * start inside another one. A file or text that cannot be read or parsed raises TklRuntimeError with file, line, column and a code (see
 * codes.h); exceptions of the handler pass unchanged. Elements that were started stay started: no end events are made up.
 */
class SM_API QvSAX2Parser {
  public:
    QvSAX2Parser();
    ~QvSAX2Parser();
    QvSAX2Parser(const QvSAX2Parser&) = delete;
    QvSAX2Parser& operator=(const QvSAX2Parser&) = delete;

    /** Borrowed; null takes it away. */
    void setContentHandler(QvContentHandler* handler) { m_handler = handler; }
    void setLimits(const SMXMLLimits& limits) { m_limits = limits; }
    /** What is counted here counts for all parsers that are given the same totals. Borrowed; null: each document counts alone. */
    void setTotals(SMXMLTotals* totals) { m_totals = totals; }
    /** The name that diagnostics show for a parse of a buffer; "" at the start. */
    void setSourceName(const I18NString& name) { m_sourceName = name; }
    /** Parses a local file. */
    void parse(const I18NString& path);
    /** Parses what an open file holds from where it stands. The descriptor stays the caller's; `path` is for diagnostics. */
    void parseOpenFile(int descriptor, const I18NString& path);
    /** Parses the bytes in place, without a copy. */
    void parse(const TklByteBuffer& document);
    void parse(const char* bytes, std::size_t length);

  private:
    void Parse(qv::DocumentSource& source, const std::string& name);

    QvContentHandler* m_handler = nullptr;
    SMXMLLimits m_limits;
    SMXMLTotals* m_totals = nullptr;
    I18NString m_sourceName;
};
