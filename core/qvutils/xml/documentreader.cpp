#include "core/qvutils/xml/documentreader.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/qvlogevent.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/documentscanner.h"
#include "core/qvutils/xml/documentsource.h"
#include "core/qvutils/xml/errorcode.h"
#include "core/qvutils/xml/markupwatcher.h"
#include "core/qvutils/xml/utf16.h"

#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace qv {
namespace {

/** The scanner reads ahead in blocks; what it has not looked at yet is no reason to complain. */
constexpr std::size_t READ_AHEAD = std::size_t{128} << 10;
/** Of what has been fed when more is wanted, the last bytes may not have been scanned; they are fewer than these. */
constexpr std::size_t NOT_SCANNED = 512;
constexpr std::size_t MOST_MEMORY_KEPT = std::size_t{1} << 20;
constexpr std::size_t MOST_ENTRIES_KEPT = 4096;

class ByteStream final : public xercesc::BinInputStream {
  public:
    explicit ByteStream(DocumentReader& reader) : m_reader(reader) {}
    XMLFilePos curPos() const override { return m_position; }
    XMLSize_t readBytes(XMLByte* to, XMLSize_t room) override {
        const std::size_t count = m_reader.Feed(reinterpret_cast<char*>(to), room);
        m_position += count;
        return count;
    }
    const XMLCh* getContentType() const override { return nullptr; }

  private:
    DocumentReader& m_reader;
    XMLFilePos m_position = 0;
};

class StreamSource final : public xercesc::InputSource {
  public:
    StreamSource(DocumentReader& reader, ReaderMemory& memory, bool isDecoded)
        : InputSource(xercesc::XMLUni::fgZeroLenString, &memory), m_reader(reader) {
        if (isDecoded) setEncoding(xercesc::XMLUni::fgXMLChEncodingString);
    }
    xercesc::BinInputStream* makeStream() const override { return new (getMemoryManager()) ByteStream(m_reader); }

  private:
    DocumentReader& m_reader;
};

std::size_t Utf8Size(const char16_t* text) {
    std::size_t size = 0;
    for (; *text; ++text) size += *text < 0x80 ? 1 : *text < 0x800 || (*text >= 0xD800 && *text <= 0xDFFF) ? 2 : 3;
    return size;
}

/** Of the values. */
std::size_t CharactersOf(const ParsedAttributes::List& attributes, std::size_t count) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < count; ++i) characters += xercesc::XMLString::stringLen(attributes.elementAt(i)->getValue());
    return characters;
}

std::string AttributesText(const SMXMLLimits& limits) {
    return "a start tag has more than " + std::to_string(limits.attributes) + " attributes";
}

std::string ReferencesText(const SMXMLLimits& limits) {
    return "there are more than " + std::to_string(limits.entityReferences) + " references to internal entities";
}

std::string ExpansionText(const SMXMLLimits& limits) {
    return "internal entities expand to more than " + std::to_string(limits.entityCharacters) + " characters";
}

/** However a document ends, its elements are open no more. */
class DepthKeeper {
  public:
    explicit DepthKeeper(SMXMLTotals& totals) : m_totals(totals), m_depth(totals.depth) {}
    ~DepthKeeper() { m_totals.depth = m_depth; }
    DepthKeeper(const DepthKeeper&) = delete;
    DepthKeeper& operator=(const DepthKeeper&) = delete;

  private:
    SMXMLTotals& m_totals;
    std::size_t m_depth;
};

}  // namespace

DocumentReader::DocumentReader(ScannerKind kind) : m_scanner(MakeScanner(kind, m_memory)) {
    xercesc::XMLScanner& scanner = m_scanner->Xerces();
    scanner.setValidationScheme(xercesc::XMLScanner::Val_Never);
    scanner.setDoNamespaces(false);
    scanner.setDoSchema(false);
    scanner.setLoadSchema(false);
    scanner.setLoadExternalDTD(false);
    scanner.setSkipDTDValidation(true);
    scanner.setDisableDefaultEntityResolution(true);
    scanner.setExitOnFirstFatal(true);
    scanner.setDocHandler(this);
    scanner.setErrorReporter(this);
    scanner.setEntityHandler(this);
    scanner.setDocTypeHandler(this);
}

DocumentReader::~DocumentReader() = default;

void DocumentReader::Read(DocumentSource& source, bool isUtf8, const std::string& name, QvContentHandler* handler,
                          const SMXMLLimits& limits, SMXMLTotals& totals) {
    m_source = &source;
    m_block = source.NextBlock();
    m_isUtf8 = isUtf8;
    m_decoder.Reset();
    m_markSize = isUtf8 && m_block.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
    m_block.remove_prefix(m_markSize);
    m_name = name;
    m_handler = handler;
    m_limits = limits;
    m_totals = &totals;
    m_depthAround = totals.depth;
    const DepthKeeper keeper(totals);
    m_names.StartDocument();
    m_namesAtStart = m_names.size();
    m_slotsAtStart = m_scanner->AttributeSlots();
    m_fed = m_fedAtEvent = m_longestStretch = 0;
    m_lastByte = 0;
    m_hasEntities = m_hasDefaults = m_hasTokens = false;
    m_longestEntity = 0;
    try {
        m_scanner->Xerces().scanDocument(StreamSource(*this, m_memory, isUtf8));
    } catch (const xercesc::OutOfMemoryException&) {
        throw std::bad_alloc();
    } catch (const xercesc::XMLException& exception) {
        throw TklRuntimeError(Utf8Of(exception.getMessage()), m_name, 0, 0, CodeOfException(exception.getCode()));
    }
}

bool DocumentReader::IsBloated() const noexcept {
    return m_charsRoom > MOST_MEMORY_KEPT || m_longestStretch > MOST_MEMORY_KEPT || m_names.size() > MOST_ENTRIES_KEPT ||
           m_scanner->AttributeSlots() > MOST_ENTRIES_KEPT || m_open.capacity() > 4 * MOST_ENTRIES_KEPT;
}

bool DocumentReader::HasReader() const {
    return m_scanner->Xerces().getReaderMgr()->getCurrentReader() != nullptr;
}

bool DocumentReader::IsAtEnd() const {
    return HasReader() && m_scanner->Xerces().getReaderMgr()->atEOF();
}

long DocumentReader::Line() const {
    return HasReader() ? static_cast<long>(m_scanner->Xerces().getLocator()->getLineNumber()) : 0;
}

long DocumentReader::Column() const {
    return HasReader() ? static_cast<long>(m_scanner->Xerces().getLocator()->getColumnNumber()) : 0;
}

std::string_view DocumentReader::Element() const noexcept {
    return m_open.empty() ? std::string_view() : m_open.back()->qName.utf8();
}

void DocumentReader::Fail(const char* code, const std::string& message) {
    FailHere(Line(), Column(), code, message);
}

void DocumentReader::FailAt(SourcePiece piece, const char* code, const std::string& message) {
    const SourcePlace place = PlaceOf(piece);
    throw TklRuntimeError(message, m_name, place.line, place.column, code);
}

void DocumentReader::FailAt(SourcePiece piece, std::size_t SMXMLLimits::*bound, const std::string& message, std::size_t attribute) {
    const SourcePlace place = PlaceOf(piece, attribute);
    throw LimitError(m_limits, bound, message, m_name, place.line, place.column);
}

char16_t DocumentReader::TakeOfRest() {
    const char16_t character = m_scanner->TakeCharacter();
    if (character) m_rest += character;
    return character;
}

void DocumentReader::TakeRest() {
    try {
        while (HasReader() && TakeOfRest()) continue;
    } catch (const xercesc::XMLException&) {
        return;  // the rest is not what the document ends with, then
    }
}

void DocumentReader::LookBack(const std::function<void(std::string_view document, std::size_t offset)>& look) {
    m_isStopped = true;
    if (!m_isFeeding) TakeRest();
    if (!m_isFeeding && !IsAtEnd()) return;
    m_source->LookBack(m_markSize + m_fed - m_decoder.held(), [&](std::string_view document) {
        const std::size_t offset =
            m_isFeeding ? document.size() - std::min(NOT_SCANNED, document.size()) : OffsetOfRest(document, Utf8Of(m_rest.c_str()));
        if (offset != std::string_view::npos) look(document, offset);
    });
}

SourcePlace DocumentReader::PlaceOf(SourcePiece piece, std::size_t attribute) {
    SourcePlace place{Line(), Column()};
    LookBack([&](std::string_view document, std::size_t offset) {
        const SourcePlace found = BeginningOf(piece, document, offset, attribute);
        if (found.line > 0) place = found;
    });
    return place;
}

void DocumentReader::FailHere(long line, long column, const char* code, const std::string& message) {
    LookBack([&](std::string_view document, std::size_t offset) { column = ColumnAt(document, offset); });
    throw TklRuntimeError(message, m_name, line, column, code);
}

void DocumentReader::CheckStretch() {
    const std::size_t stretch = m_fed - m_fedAtEvent;
    m_longestStretch = std::max(m_longestStretch, stretch);
    if (stretch <= READ_AHEAD) return;
    if (stretch - READ_AHEAD > m_limits.textBytes)
        FailAt(SourcePiece::markup, &SMXMLLimits::textBytes,
               "a text, tag or comment is longer than " + std::to_string(m_limits.textBytes) + " bytes");
    if (m_scanner->AttributeSlots() > std::max(m_limits.attributes, m_slotsAtStart))
        FailAt(SourcePiece::attribute, &SMXMLLimits::attributes, AttributesText(m_limits), m_limits.attributes);
}

std::size_t DocumentReader::Feed(char* to, std::size_t room) {
    if (m_isStopped) return 0;
    m_isFeeding = true;
    CheckStretch();
    char* out = to;
    while (out == to && m_decoder.fault() == Utf8Decoder::Fault::none) {
        if (m_block.empty()) m_block = m_source->NextBlock();
        if (m_block.empty()) {
            m_decoder.Finish();
            break;
        }
        const std::size_t before = m_block.size();
        if (m_isUtf8) {
            out = m_decoder.Decode(m_block, out, to + room);
        } else {
            const std::size_t count = std::min(before, room);
            std::memcpy(out, m_block.data(), count);
            m_block.remove_prefix(count);
            m_lastByte = static_cast<unsigned char>(out[count - 1]);
            out += count;
        }
        m_fed += before - m_block.size();
        m_totals->bytes += before - m_block.size();
    }
    if (m_totals->bytes > m_limits.documentBytes)
        throw LimitError(m_limits, &SMXMLLimits::documentBytes,
                         "the document is larger than " + std::to_string(m_limits.documentBytes) + " bytes", m_name);
    m_isFeeding = false;
    return static_cast<std::size_t>(out - to);
}

void DocumentReader::FailAtFault() {
    if (m_decoder.fault() == Utf8Decoder::Fault::none || !IsAtEnd()) return;
    m_rest.clear();  // it stands behind what was taken
    const bool nul = m_decoder.fault() == Utf8Decoder::Fault::nul;
    if (nul) Fail(code::NUL_CHARACTER, "a NUL character is not allowed");
    Fail(code::NOT_IN_ENCODING, "the bytes here are not UTF-8");
}

void DocumentReader::FlushText() {
    if (m_charsSize == 0) return;
    m_text.assign({m_chars.get(), m_charsSize});
    m_charsSize = 0;
    if (m_handler) m_handler->characters(m_text);
}

void DocumentReader::TellMark() const {
    if (m_watcher) m_watcher->Mark(Line(), Column());
}

void DocumentReader::docCharacters(const XMLCh* chars, XMLSize_t length, bool) {
    m_fedAtEvent = m_fed;
    if (m_open.empty()) return;
    const std::size_t most = m_charsSize + length * UTF8_PER_UTF16;
    if (most > m_charsRoom) {
        const std::size_t room = std::max(most, 2 * m_charsRoom);
        std::unique_ptr<char[]> larger(new char[room]);
        if (m_charsSize) std::memcpy(larger.get(), m_chars.get(), m_charsSize);
        m_chars = std::move(larger);
        m_charsRoom = room;
    }
    m_charsSize = static_cast<std::size_t>(Utf16ToUtf8(chars, length, m_chars.get() + m_charsSize) - m_chars.get());
    if (m_charsSize > m_limits.textBytes)
        FailAt(SourcePiece::text, &SMXMLLimits::textBytes, "a text is longer than " + std::to_string(m_limits.textBytes) + " bytes");
}

void DocumentReader::ignorableWhitespace(const XMLCh* chars, XMLSize_t length, bool cdata) {
    docCharacters(chars, length, cdata);
}

void DocumentReader::docComment(const XMLCh*) {
    m_fedAtEvent = m_fed;
}

void DocumentReader::docPI(const XMLCh* target, const XMLCh* data) {
    m_fedAtEvent = m_fed;
    FlushText();
    if (m_handler)
        m_handler->processingInstruction(I18NString(std::string_view(Utf8Of(target))), I18NString(std::string_view(Utf8Of(data))));
}

void DocumentReader::resetDocument() {
    m_open.clear();
    m_charsSize = 0;
}

void DocumentReader::startDocument() {
    m_scanner->AllowReferences(ReferencesLeft());
    if (m_handler) m_handler->startDocument();
}

void DocumentReader::endDocument() {
    FailAtFault();
    // The scanner ends at a NUL, and drops a last character that is cut off; what may follow the root ends in ASCII.
    if (!IsAtEnd()) Fail(code::NUL_CHARACTER, "a NUL character is not allowed");
    if (m_lastByte >= 0x80) Fail(code::NOT_IN_ENCODING, "the document ends within a character");
    if (m_handler) m_handler->endDocument();
}

void DocumentReader::CheckAttributes(const ParsedAttributes::List& list, std::size_t count) {
    if (count > m_limits.attributes)
        FailAt(SourcePiece::attribute, &SMXMLLimits::attributes, AttributesText(m_limits), m_limits.attributes);
    // A value longer than a read block shows as a long stretch; only a small bound needs a look at each value.
    const std::size_t most = std::min(m_limits.attributeBytes, m_limits.textBytes);
    if (m_fed - m_fedAtEvent <= most && most > READ_AHEAD) return;
    for (std::size_t i = 0; i < count; ++i) {
        if (Utf8Size(list.elementAt(i)->getValue()) <= most) continue;
        const std::string longer = " is longer than " + std::to_string(most) + " bytes";
        if (most == m_limits.attributeBytes) FailAt(SourcePiece::attribute, &SMXMLLimits::attributeBytes, "an attribute value" + longer, i);
        FailAt(SourcePiece::element, &SMXMLLimits::textBytes, "a tag" + longer);
    }
}

void DocumentReader::CheckElement(const ParsedAttributes::List& attributes, std::size_t count) {
    m_totals->depth = m_depthAround + m_open.size();
    if (m_totals->depth > m_limits.depth)
        FailAt(SourcePiece::element, &SMXMLLimits::depth, "elements are nested deeper than " + std::to_string(m_limits.depth));
    if (++m_totals->elements > m_limits.elements)
        FailAt(SourcePiece::element, &SMXMLLimits::elements, "there are more than " + std::to_string(m_limits.elements) + " elements");
    if (m_names.size() - m_namesAtStart > m_limits.names)
        FailAt(SourcePiece::element, &SMXMLLimits::names, "elements have more than " + std::to_string(m_limits.names) + " different names");
    if (count) CheckAttributes(attributes, count);
    if (m_hasDefaults) ChargeDefaults(attributes, count);
    if (m_hasEntities) {
        // References in attribute values are told by their number alone, so each counts as one to the longest entity, but all of them
        // as no more than the values, unless a declared type lets blanks vanish from these.
        const std::size_t references = m_scanner->TakeReferences();
        const std::size_t most = references * m_longestEntity;
        ChargeReferences(references, m_hasTokens || references == 0 ? most : std::min(most, CharactersOf(attributes, count)));
    }
}

void DocumentReader::startElement(const xercesc::XMLElementDecl& element, unsigned int, const XMLCh*,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count, bool isEmpty, bool) {
    FlushText();
    TellMark();
    const ElementName& name = m_names.Find(&element, element.getFullName());
    m_open.push_back(&name);
    CheckElement(attributes, count);
    m_fedAtEvent = m_fed;
    if (m_handler) {
        m_attributes.Reset(&attributes, count);
        m_handler->startElement(I18NString(), name.localName, name.qName, m_attributes);
    }
    if (isEmpty) EndElement(name);
}

void DocumentReader::endElement(const xercesc::XMLElementDecl&, unsigned int, bool, const XMLCh*) {
    m_fedAtEvent = m_fed;
    FlushText();
    TellMark();
    EndElement(*m_open.back());
}

void DocumentReader::EndElement(const ElementName& name) {
    if (m_handler) m_handler->endElement(I18NString(), name.localName, name.qName);
    m_open.pop_back();
    m_totals->depth = m_depthAround + m_open.size();
}

void DocumentReader::XMLDecl(const XMLCh* version, const XMLCh*, const XMLCh*, const XMLCh*) {
    // Version 1.1 has control characters that could not be written back.
    if (!SameText(version, "1.0")) Fail(code::XML_VERSION, "XML version " + Utf8Of(version) + " is not supported");
}

void DocumentReader::error(unsigned int number, const XMLCh* domain, ErrTypes type, const XMLCh* text, const XMLCh*, const XMLCh*,
                           XMLFileLoc line, XMLFileLoc column) {
    if (type == ErrType_Warning) return;
    FailAtFault();
    const bool isOfScanner = xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain);
    const bool isExpansion = isOfScanner && number == xercesc::XMLErrs::EntityExpansionLimitExceeded;
    if (isExpansion && ReferencesLeft() <= CharactersLeft() / std::max<std::size_t>(m_longestEntity, 1))
        FailAt(SourcePiece::reference, &SMXMLLimits::entityReferences, ReferencesText(m_limits));
    if (isExpansion) FailAt(SourcePiece::reference, &SMXMLLimits::entityCharacters, ExpansionText(m_limits));
    // What the reader beneath raises leaves it where nothing can be taken of it.
    if (!isOfScanner)
        throw TklRuntimeError(Utf8Of(text), m_name, static_cast<long>(line), static_cast<long>(column), CodeOfException(number));
    const bool atEnd = IsAtEnd() || (number == xercesc::XMLErrs::ExpectedEndOfTagX && !m_hasEntities && EndsWithinTag());
    FailAtFault();  // which may stand in an end tag
    const std::string_view known = CodeOfError(number, atEnd);
    if (known == code::UNKNOWN_ENTITY || known == code::EXTERNAL_ENTITY || known == code::RECURSIVE_ENTITY)
        FailAt(SourcePiece::reference, known.data(), Utf8Of(text));
    const bool isBeforeRoot = number == xercesc::XMLErrs::InvalidDocumentStructure;
    const std::string advice = isBeforeRoot ? ": something stands before the root element that is no markup" : "";
    FailHere(static_cast<long>(line), static_cast<long>(column), known.data(), Utf8Of(text) + advice);
}

bool DocumentReader::EndsWithinTag() {
    constexpr int LONGEST = 1'000;
    for (int i = 0; i < LONGEST && !IsAtEnd(); ++i)
        if (TakeOfRest() == u'>') return false;
    return IsAtEnd();
}

xercesc::InputSource* DocumentReader::resolveEntity(xercesc::XMLResourceIdentifier* id) {
    FailAt(SourcePiece::reference, code::EXTERNAL_ENTITY, "the external entity \"" + Utf8Of(id->getSystemId()) + "\" is not opened");
}

bool DocumentReader::expandSystemId(const XMLCh*, xercesc::XMLBuffer&) {
    return false;
}

std::size_t DocumentReader::ReferencesLeft() const {
    return m_limits.entityReferences - std::min(m_limits.entityReferences, m_totals->entityReferences);
}

std::size_t DocumentReader::CharactersLeft() const {
    return m_limits.entityCharacters - std::min(m_limits.entityCharacters, m_totals->entityCharacters);
}

void DocumentReader::ChargeReferences(std::size_t count, std::size_t characters) {
    if (characters > CharactersLeft()) FailAt(SourcePiece::reference, &SMXMLLimits::entityCharacters, ExpansionText(m_limits));
    if (count > ReferencesLeft()) FailAt(SourcePiece::reference, &SMXMLLimits::entityReferences, ReferencesText(m_limits));
    m_totals->entityCharacters += characters;
    m_totals->entityReferences += count;
    // One is let through in any case, to be judged by its own length where it stands in content.
    const std::size_t longest = std::max<std::size_t>(m_longestEntity, 1);
    m_scanner->AllowReferences(std::min(ReferencesLeft(), std::max<std::size_t>(CharactersLeft() / longest, 1)));
}

void DocumentReader::ChargeDefaults(const ParsedAttributes::List& attributes, std::size_t count) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
        if (attribute.getSpecified()) continue;
        characters += xercesc::XMLString::stringLen(attribute.getName()) + xercesc::XMLString::stringLen(attribute.getValue());
    }
    if (characters > CharactersLeft())
        FailAt(
            SourcePiece::element, &SMXMLLimits::entityCharacters,
            "attributes that the DOCTYPE gives by default come to more than " + std::to_string(m_limits.entityCharacters) + " characters");
    m_totals->entityCharacters += characters;
}

void DocumentReader::startEntityReference(const xercesc::XMLEntityDecl& entity) {
    ChargeReferences(m_scanner->TakeReferences(), entity.getValueLen());
    TellMark();
}

void DocumentReader::entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter, bool) {
    if (isParameter) FailAt(SourcePiece::declaration, code::PARAMETER_ENTITY, "parameter entities are not supported");
    m_hasEntities = true;
    m_longestEntity = std::max(m_longestEntity, static_cast<std::size_t>(entity.getValueLen()));
    ChargeReferences(0, 0);
}

void DocumentReader::startAttList(const xercesc::DTDElementDecl&) {
    // Entities in default values would be expanded where nothing counts them.
    if (m_hasEntities) FailAt(SourcePiece::declaration, code::PARAMETER_ENTITY, "attribute lists behind entities are not supported");
}

void DocumentReader::doctypeDecl(const xercesc::DTDElementDecl&, const XMLCh*, const XMLCh* systemId, bool, bool) {
    // The external part is never read. A reference to what may stand there must be an error, or its text would vanish unseen.
    m_scanner->Xerces().setHasNoDTD(true);
    if (!systemId || !*systemId || !m_handler) return;
    constexpr LOG_LEVEL NOTICE = 3;
    QvLogEvent event(NOTICE, "code", "QvOne", "documentreader", "DocumentReader", "doctypeDecl", 0,
                     I18NString("the external DTD \"" + Utf8Of(systemId) + "\" is not opened"), I18NString());
    event.code = code::EXTERNAL_DTD;
    event.Log();
}

void DocumentReader::endIntSubset() {
    m_scanner->Xerces().setHasNoDTD(true);
}

void DocumentReader::attDef(const xercesc::DTDElementDecl&, const xercesc::DTDAttDef& attribute, bool) {
    if (attribute.getValue()) m_hasDefaults = true;
    if (attribute.getType() != xercesc::XMLAttDef::CData) m_hasTokens = true;
}

}  // namespace qv
