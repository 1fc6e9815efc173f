#pragma once

#include <cstddef>
#include <memory>

#include "core/qvutils/text/tklbytebuffer.h"
#include "core/qvutils/xml/qvcontenthandler.h"

/** Bounds on a document; a document beyond one raises TklRuntimeError that names the bound. No honest model meets the defaults. */
struct SM_API SMXMLLimits {
    std::size_t depth = 1'000;
    std::size_t attributes = 10'000;
    /** Different element names. */
    std::size_t names = 100'000;
    /** A text, an attribute value, a comment, or the whole of a DOCTYPE. */
    std::size_t textBytes = std::size_t{256} << 20;
    /**
     * Total size of expanded internal entities, in characters, nested ones included. A reference inside an attribute value counts as
     * one to the longest entity.
     */
    std::size_t entityCharacters = std::size_t{1} << 20;
    /** References to internal entities, nested ones included. */
    std::size_t entityReferences = 100'000;
};

/**
 * A SAX parse that delivers events to a handler.
 *
 * Names are delivered as the same `I18NString` for the whole document; adjacent character data, CDATA and entity text included,
 * comes in one `characters` event; local names are cut from qualified ones and no namespace is processed: attributes, xmlns ones
 * too, come in document order. Comments are not delivered. No external DTD or entity is ever opened. Arguments of events are
 * good for the time of the call.
 *
 * Making a parser is cheap: the heavy reader beneath is lent by a pool of the thread for the time of a parse, so a parse may
 * start inside another one. A file or text that cannot be read or parsed raises TklRuntimeError with file, line and column;
 * exceptions of the handler pass unchanged. Elements that were started stay started: no end events are made up.
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
    QvContentHandler* m_handler = nullptr;
    SMXMLLimits m_limits;
    I18NString m_sourceName;
};
