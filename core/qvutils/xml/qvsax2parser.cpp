#include "core/qvutils/xml/qvsax2parser.h"

#include <mutex>
#include <string>
#include <vector>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/documentreader.h"
#include "core/qvutils/xml/documentsource.h"
#include "core/qvutils/xml/elementerror.h"
#include "core/qvutils/xml/markupwatcher.h"
#include "core/qvutils/xml/utf16.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

namespace {

using qv::DocumentReader;
using qv::ScannerKind;

/** Starts the XML library. It is never ended, since readers live as long as their threads. */
void StartXerces() {
    static std::once_flag s_started;
    std::call_once(s_started, [] {
        try {
            xercesc::XMLPlatformUtils::Initialize();
        } catch (const xercesc::XMLException& exception) {
            throw TklRuntimeError("the XML library does not start: " + qv::Utf8Of(exception.getMessage()));
        }
    });
}

/** Readers of one kind that no parse of this thread uses now. */
using IdleReaders = std::vector<std::unique_ptr<DocumentReader>>;

IdleReaders& IdleReadersOf(ScannerKind kind) {
    thread_local IdleReaders t_idle[2];
    return t_idle[kind == ScannerKind::fast ? 0 : 1];
}

std::unique_ptr<DocumentReader> BorrowReader(ScannerKind kind) {
    IdleReaders& idle = IdleReadersOf(kind);
    if (idle.empty()) return std::make_unique<DocumentReader>(kind);
    std::unique_ptr<DocumentReader> reader = std::move(idle.back());
    idle.pop_back();
    return reader;
}

void ReturnReader(ScannerKind kind, std::unique_ptr<DocumentReader> reader) {
    constexpr std::size_t MOST_IDLE = 4;
    IdleReaders& idle = IdleReadersOf(kind);
    if (idle.size() < MOST_IDLE && !reader->IsBloated()) idle.push_back(std::move(reader));
}

/** Where the parse stands, for whoever asks. */
class ParseFrame final : public SMSourceFrame {
  public:
    ParseFrame(DocumentReader& reader, const std::string& file, const QvContentHandler* handler)
        : m_reader(reader), m_file(file), m_locator(dynamic_cast<const SMObjectLocator*>(handler)) {}

    SMSourceContext Describe() const override {
        return {m_file, m_reader.Line(), m_reader.Column(), m_reader.Element(), m_locator ? m_locator->InnermostObject() : nullptr};
    }
    qv::DocumentPlace PlaceOfElement() const {
        const qv::SourcePlace place = m_reader.PlaceOf(qv::SourcePiece::element);
        return {m_file, place.line, place.column};
    }

  private:
    DocumentReader& m_reader;
    const std::string& m_file;
    /** Null for a handler that knows of no objects. */
    const SMObjectLocator* m_locator;
};

/** And is in no encoding whose first character has such a byte. */
bool StartsWithNul(std::string_view head) {
    using namespace std::string_view_literals;
    const bool isWide = head.starts_with("\0<\0"sv) || head.starts_with("\0\0\0<"sv) || head.starts_with("\0\0\xFE\xFF"sv);
    return head.starts_with('\0') && !isWide;
}

/** The program that has packed it; null when none has. */
const char* PackerOf(std::string_view head) {
    using namespace std::string_view_literals;
    if (head.starts_with("\x1F\x8B"sv)) return "gzip";
    if (head.starts_with("PK\x03\x04"sv)) return "zip";
    if (head.starts_with("\xFD"
                         "7zXZ"sv))
        return "xz";
    if (head.starts_with("BZh"sv)) return "bzip2";
    return head.starts_with("\x28\xB5\x2F\xFD"sv) ? "zstd" : nullptr;
}

}  // namespace

void qv::ParseSource(DocumentSource& source, const std::string& name, QvContentHandler* handler, const SMXMLLimits& limits,
                     SMXMLTotals* totals) {
    const std::string_view head = source.Head();
    if (head.empty()) throw TklRuntimeError("the document is empty", name, 1, 1, code::EMPTY_DOCUMENT);
    if (StartsWithNul(head)) throw TklRuntimeError("a NUL character is not allowed", name, 1, 1, code::NUL_CHARACTER);
    if (const char* const packer = PackerOf(head))
        throw TklRuntimeError(std::string("the document is packed by ") + packer + "; unpack it first", name, 1, 1, code::NOT_WELL_FORMED);
    StartXerces();
    const Prolog prolog = LookAtProlog(head);
    const ScannerKind kind = prolog.isPlain ? ScannerKind::fast : ScannerKind::general;
    std::unique_ptr<DocumentReader> reader = BorrowReader(kind);
    {
        SMXMLTotals own;
        const ParseFrame frame(*reader, name, handler);
        reader->Read(source, prolog.isUtf8, name, handler, limits, totals ? *totals : own);
    }
    ReturnReader(kind, std::move(reader));
}

void qv::WatchMarkup(std::string_view document, MarkupWatcher& watcher, const SMXMLLimits& limits) {
    StartXerces();
    DocumentReader reader(LookAtProlog(document).isPlain ? ScannerKind::fast : ScannerKind::general);
    reader.SetWatcher(&watcher);
    MemorySource source(document);
    SMXMLTotals totals;
    reader.Read(source, true, {}, nullptr, limits, totals);
}

qv::DocumentPlace qv::PlaceOfToldElement() {
    const auto* const frame = dynamic_cast<const ParseFrame*>(SMSourceFrame::Innermost());
    return frame ? frame->PlaceOfElement() : DocumentPlace();
}

void qv::FailAtToldElement(const std::string& message, const char* code) {
    const DocumentPlace place = PlaceOfToldElement();
    throw TklRuntimeError(message, place.file, place.line, place.column, code);
}

QvSAX2Parser::QvSAX2Parser() = default;

QvSAX2Parser::~QvSAX2Parser() = default;

void QvSAX2Parser::Parse(qv::DocumentSource& source, const std::string& name) {
    qv::ParseSource(source, name, m_handler, m_limits, m_totals);
}

void QvSAX2Parser::parse(const I18NString& path) {
    const std::string name(path.utf8());
    qv::FileSource source(name);
    Parse(source, name);
}

void QvSAX2Parser::parseOpenFile(int descriptor, const I18NString& path) {
    const std::string name(path.utf8());
    qv::FileSource source(descriptor, name);
    Parse(source, name);
}

void QvSAX2Parser::parse(const TklByteBuffer& document) {
    parse(document.str(), document.pcount());
}

void QvSAX2Parser::parse(const char* bytes, std::size_t length) {
    qv::MemorySource source({bytes, length});
    Parse(source, std::string(m_sourceName.utf8()));
}
