#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/qvutils/content/sourceplaces.h"
#include "core/qvutils/xml/documentscanner.h"
#include "core/qvutils/xml/elementnames.h"
#include "core/qvutils/xml/parsedattributes.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/utf8decoder.h"

#include <xercesc/framework/XMLDocumentHandler.hpp>
#include <xercesc/framework/XMLEntityHandler.hpp>
#include <xercesc/framework/XMLErrorReporter.hpp>
#include <xercesc/validators/DTD/DocTypeHandler.hpp>

namespace qv {

class DocumentSource;
class MarkupWatcher;

/**
 * A Xerces-C scanner and what turns its callbacks into the events of `QvContentHandler`. It reads one document after the other;
 * after an exception it is good for nothing but its destructor.
 */
class DocumentReader final : private xercesc::XMLDocumentHandler,
                             private xercesc::XMLErrorReporter,
                             private xercesc::XMLEntityHandler,
                             private xercesc::DocTypeHandler {
  public:
    explicit DocumentReader(ScannerKind kind);
    ~DocumentReader() override;

    /**
     * `handler` (may be null), `source` and `totals` are borrowed. `name` stands in errors. UTF-8 is decoded here, faster than by the
     * library and with the exact place of a fault; every other encoding is left to it.
     */
    void Read(DocumentSource& source, bool isUtf8, const std::string& name, QvContentHandler* handler, const SMXMLLimits& limits,
              SMXMLTotals& totals);

    /** For the documents from now on. Borrowed; null at the start, and to end that. */
    void SetWatcher(MarkupWatcher* watcher) noexcept { m_watcher = watcher; }

    /** Whether a document has left so much memory with this reader that another one had better be made. */
    bool IsBloated() const noexcept;

    /** Where the scanner stands, behind what it has told last; 0 when it does not stand anywhere. */
    long Line() const;
    long Column() const;
    /** The innermost open element, or the one whose tag is being told; empty outside the root. */
    std::string_view Element() const noexcept;
    /**
     * Where the piece begins that the scanner is behind; what Line and Column tell where the document cannot be looked at once more. For an
     * error: the document cannot be read on.
     */
    SourcePlace PlaceOf(SourcePiece piece, std::size_t attribute = 0);

    /** For the byte stream: fills in what comes next, counts it, and stops a text or a tag that never ends. */
    std::size_t Feed(char* to, std::size_t room);

  private:
    /** False while the first bytes are fed: until then the scanner cannot even be asked where it stands. */
    bool HasReader() const;
    bool IsAtEnd() const;
    /** Raises an error where the scanner stands. */
    [[noreturn]] void Fail(const char* code, const std::string& message);
    [[noreturn]] void FailAt(SourcePiece piece, const char* code, const std::string& message);
    /** Raises what stands for a document that passes a bound with this piece. */
    [[noreturn]] void FailAt(SourcePiece piece, std::size_t SMXMLLimits::*bound, const std::string& message, std::size_t attribute = 0);
    /** Raises the fault for which the decoder has ended the input, if the scanner has come to that end. */
    void FailAtFault();
    /** Reads on, for an error that has been met already: whether the document ends before the tag does. */
    bool EndsWithinTag();
    /** The next character, for an error that has been met already; 0 at the end. */
    char16_t TakeOfRest();
    void TakeRest();
    /** Shows what has been fed, with the offset where the scanner stands. Nothing is fed from then on. */
    void LookBack(const std::function<void(std::string_view document, std::size_t offset)>& look);
    /** Raises an error at a place of the scanner, in which the column may lack characters. */
    [[noreturn]] void FailHere(long line, long column, const char* code, const std::string& message);
    /** Stops a text or a tag that never ends. */
    void CheckStretch();
    void FlushText();
    void TellMark() const;
    void EndElement(const ElementName& name);
    void CheckElement(const ParsedAttributes::List& attributes, std::size_t count);
    void CheckAttributes(const ParsedAttributes::List& list, std::size_t count);
    void ChargeReferences(std::size_t count, std::size_t characters);
    /** Those that the DOCTYPE gives an element count as what entities expand to. */
    void ChargeDefaults(const ParsedAttributes::List& attributes, std::size_t count);
    std::size_t ReferencesLeft() const;
    std::size_t CharactersLeft() const;

    // XMLDocumentHandler
    void docCharacters(const XMLCh* chars, XMLSize_t length, bool cdata) override;
    void docComment(const XMLCh* comment) override;
    void docPI(const XMLCh* target, const XMLCh* data) override;
    void endDocument() override;
    void endElement(const xercesc::XMLElementDecl& element, unsigned int uri, bool isRoot, const XMLCh* prefix) override;
    void endEntityReference(const xercesc::XMLEntityDecl&) override {}
    void ignorableWhitespace(const XMLCh* chars, XMLSize_t length, bool cdata) override;
    void resetDocument() override;
    void startDocument() override;
    void startElement(const xercesc::XMLElementDecl& element, unsigned int uri, const XMLCh* prefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count, bool isEmpty, bool isRoot) override;
    void startEntityReference(const xercesc::XMLEntityDecl& entity) override;
    void XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone, const XMLCh* autoEncoding) override;

    // XMLErrorReporter
    void error(unsigned int number, const XMLCh* domain, ErrTypes type, const XMLCh* text, const XMLCh* systemId, const XMLCh* publicId,
               XMLFileLoc line, XMLFileLoc column) override;
    void resetErrors() override {}

    // XMLEntityHandler
    void endInputSource(const xercesc::InputSource&) override {}
    bool expandSystemId(const XMLCh* systemId, xercesc::XMLBuffer& toFill) override;
    void resetEntities() override {}
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* id) override;
    void startInputSource(const xercesc::InputSource&) override {}

    // DocTypeHandler
    void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute, bool isIgnored) override;
    void doctypeComment(const XMLCh*) override {}
    void doctypeDecl(const xercesc::DTDElementDecl& element, const XMLCh* publicId, const XMLCh* systemId, bool hasInternal,
                     bool hasExternal) override;
    void doctypePI(const XMLCh*, const XMLCh*) override {}
    void doctypeWhitespace(const XMLCh*, XMLSize_t) override {}
    void elementDecl(const xercesc::DTDElementDecl&, bool) override {}
    void endAttList(const xercesc::DTDElementDecl&) override {}
    void endIntSubset() override;
    void endExtSubset() override {}
    void entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter, bool isIgnored) override;
    void resetDocType() override {}
    void notationDecl(const xercesc::XMLNotationDecl&, bool) override {}
    void startAttList(const xercesc::DTDElementDecl& element) override;
    void startIntSubset() override {}
    void startExtSubset() override {}
    void TextDecl(const XMLCh*, const XMLCh*) override {}

    ReaderMemory m_memory;
    std::unique_ptr<DocumentScanner> m_scanner;
    DocumentSource* m_source = nullptr;
    /** What is left of the last block of the source. */
    std::string_view m_block;
    bool m_isUtf8 = false;
    Utf8Decoder m_decoder;
    QvContentHandler* m_handler = nullptr;
    MarkupWatcher* m_watcher = nullptr;
    SMXMLLimits m_limits;
    SMXMLTotals* m_totals = nullptr;
    /** Elements open around this document. */
    std::size_t m_depthAround = 0;
    std::string m_name;

    ElementNames m_names;
    std::vector<const ElementName*> m_open;
    ParsedAttributes m_attributes;

    /** Character data since the last event, in UTF-8, and the string in which it goes to the handler. */
    std::unique_ptr<char[]> m_chars;
    std::size_t m_charsSize = 0, m_charsRoom = 0;
    I18NString m_text;

    /** Bytes before the first that was fed: those of a mark. */
    std::size_t m_markSize = 0;
    /** Bytes fed so far, at the last callback, and the most between two callbacks. */
    std::size_t m_fed = 0, m_fedAtEvent = 0, m_longestStretch = 0;
    unsigned char m_lastByte = 0;
    bool m_isFeeding = false, m_isStopped = false;
    /** What was taken of the document after an error. */
    std::u16string m_rest;
    /** What earlier documents have left. */
    std::size_t m_namesAtStart = 0, m_slotsAtStart = 0;

    bool m_hasEntities = false, m_hasDefaults = false, m_hasTokens = false;
    std::size_t m_longestEntity = 0;
};

}  // namespace qv
