#include "objects/base/smpartfiles_002_000.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include <sys/stat.h>

#include "core/qvutils/content/contenttee.h"
#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/io/openbeneath.h"
#include "core/qvutils/io/tklsmdir.h"
#include "core/qvutils/xml/elementerror.h"
#include "core/qvutils/xml/forwardinghandler.h"
#include "objects/base/smenum_xmltag_002_000.h"
#include "objects/base/smenums_002_000.h"

namespace schema_002_000 {

namespace {

/** Files that stand for several objects are read each time, so a few of them could unfold without end. */
constexpr std::size_t MOST_READ_AGAIN = 10'000;
/** Each of these parses stands on the stack inside the one before. */
constexpr std::size_t MOST_OPEN = 100;

void LogFailure(const SMLogWords& words, const char* message, const I18NString& detail, const char* code) {
    // as the log has it: these two words, in this order
    QvLogEvent event(SM_FAILURE, "QvOne", "qve", words.module, words.className, "ReadFromXMLFile", 0, message, detail);
    event.code = code;
    event.Log();
}

bool IsOfLimit(const TklRuntimeError& error) {
    return std::string_view(error.code()).starts_with("SM21");
}

/** Looks at the root of a file, and tells the watcher of each element. */
class PartHandler final : public qv::ForwardingHandler {
  public:
    PartHandler(const SMPartFiles::Part& part, QvContentHandler& handler, const std::function<void()>& watch)
        : ForwardingHandler(handler), m_part(part), m_watch(watch) {}

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        if (m_watch) Watch();
        if (m_atRoot) LookAtRoot(localName, qName, attrs);
        ForwardingHandler::startElement(uri, localName, qName, attrs);
    }

  private:
    void Watch() {
        try {
            m_watch();
        } catch (const SMReadEnded&) {
            throw;
        } catch (...) {
            throw SMReadEnded{std::current_exception()};
        }
    }

    void LookAtRoot(const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) {
        m_atRoot = false;
        if (localName != m_part.rootTag) {
            const std::string wanted(m_part.rootTag.utf8());
            qv::FailAtToldElement("the root element is <" + std::string(qName.utf8()) + ">, not <" + wanted + ">", qv::code::WRONG_ROOT);
        }
        // as the format has it: the placeholder says nothing of it, and the file is not asked
        const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
        if (m_part.rootTag == tags->package && SMEnum_bool::string2bool(attrs.getValue(tags->isRoleBased)))
            SMLog(SM_NOTICE, m_part.words, "ReadFromXMLFile", "That a package is based on roles is not read from a file of its own.");
    }

    const SMPartFiles::Part& m_part;
    const std::function<void()>& m_watch;
    bool m_atRoot = true;
};

/**
 * For a limit: where the placeholder begins that names a file; the file itself where the failure does not end the read, since the document
 * with the placeholder is read on then.
 */
qv::DocumentPlace PlaceholderOf(const std::string& path, bool endsRead) {
    qv::DocumentPlace place = endsRead ? qv::PlaceOfToldElement() : qv::DocumentPlace();
    if (place.file.empty()) place.file = path;
    return place;
}

[[noreturn]] void Fail(const qv::DocumentPlace& at, const std::string& message, const char* code) {
    throw TklRuntimeError(message, at.file, at.line, at.column, code);
}

bool IsAbsolute(const I18NString& path) {
    return !path.empty() && path.utf8().front() == '/';
}

}  // namespace

bool SMPartFiles::Read(const Part& part, QvContentHandler& handler) {
    if (!m_source) return ReadContent(part, handler);
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    m_source->StartPart({tags->filename, tags->filepath}, {tags->id, tags->name});
    const bool isWhole = ReadContent(part, handler);
    m_source->EndPart(isWhole);
    return isWhole;
}

void SMPartFiles::StandsFor(const I18NString& rootTag) {
    if (m_source) m_source->Become(rootTag);
}

bool SMPartFiles::ReadContent(const Part& part, QvContentHandler& handler) {
    const std::size_t depth = m_open.size();
    try {
        I18NString path = part.baseDirectory;
        TklSmDir::joinPath(path, part.filepath);
        TklSmDir::joinPath(path, part.filename);
        Parse(part, path, handler);
        m_open.resize(depth);
        ++m_read[QvULString(part.rootTag)];
        return true;
    } catch (const SMReadEnded&) {
        m_open.resize(depth);
        throw;
    } catch (const TklRuntimeError& error) {
        if (!m_root.empty() && IsOfLimit(error)) {
            m_open.resize(depth);
            throw SMReadEnded{std::current_exception()};
        }
        LogFailure(part.words, "Error reading SM model from XML", error.what(), *error.code() ? error.code() : qv::code::PART_BROKEN);
    } catch (...) {
        LogFailure(part.words, "Unknown error reading SM model from XML.", I18NString(), qv::code::PART_BROKEN);
    }
    m_open.resize(depth);
    ++m_unread;
    return false;
}

std::size_t SMPartFiles::ReadCount(const I18NString& rootTag) const {
    const auto found = m_read.find(QvULString(rootTag));
    return found == m_read.end() ? 0 : found->second;
}

void SMPartFiles::Parse(const Part& part, const I18NString& path, QvContentHandler& handler) {
    const std::string name(path.utf8());
    if (++m_entered > m_limits.partFiles) {
        const qv::DocumentPlace at = PlaceholderOf(name, !m_root.empty());
        throw qv::LimitError(m_limits, &SMXMLLimits::partFiles,
                             "the model has more than " + std::to_string(m_limits.partFiles) + " separate files", at.file, at.line,
                             at.column);
    }
    if (m_open.size() == MOST_OPEN)
        Fail(PlaceholderOf(name, !m_root.empty()), "more than " + std::to_string(MOST_OPEN) + " files would be read one inside the other",
             qv::code::FILES_TOO_DEEP);
    qv::Descriptor file;
    struct stat status {};
    if (!m_root.empty()) {
        if (IsAbsolute(part.filepath) || IsAbsolute(part.filename)) LeadsOut(name);
        file = qv::OpenBeneath(m_root, BelowRoot(name), name);
    }
    if ((file ? ::fstat(file.Get(), &status) : ::stat(name.c_str(), &status)) == 0) Enter({status.st_dev, status.st_ino}, name);
    QvSAX2Parser parser;
    parser.setLimits(m_limits);
    parser.setTotals(&m_totals);
    if (!file) {
        parser.setContentHandler(&handler);
        parser.parse(path);
        return;
    }
    std::optional<qv::ContentTee> tee;
    if (m_source) tee.emplace(*m_source, handler);
    PartHandler strict(part, tee ? *tee : handler, m_watch);
    parser.setContentHandler(&strict);
    parser.parseOpenFile(file.Get(), path);
}

void SMPartFiles::LeadsOut(const std::string& path) const {
    throw TklRuntimeError("cannot open: it leads out of the directory of the model, " + m_root, path, 0, 0, qv::code::OUTSIDE_ROOT);
}

std::string SMPartFiles::BelowRoot(const std::string& path) const {
    if (m_root == "." && !path.starts_with('/')) return path;
    std::string directory = m_root;
    if (directory.back() != '/') directory += '/';
    if (m_root == "." || !path.starts_with(directory)) LeadsOut(path);
    return path.substr(directory.size());
}

qv::Descriptor SMPartFiles::Open(const std::string& path) const {
    try {
        return qv::OpenBeneath(m_root, BelowRoot(path), path);
    } catch (const TklRuntimeError&) {
        return {};
    }
}

void SMPartFiles::Enter(const Identity& file, const std::string& path) {
    if (std::find(m_open.begin(), m_open.end(), file) != m_open.end())
        throw TklRuntimeError("the file would be read inside itself; take the placeholder that names it out of it", path, 0, 0,
                              qv::code::READ_INSIDE_ITSELF);
    if (!m_known.insert(file).second && ++m_again > MOST_READ_AGAIN)
        Fail(PlaceholderOf(path, !m_root.empty()), "the placeholders of the model name the same files too often", qv::code::TOO_MANY_FILES);
    m_open.push_back(file);
}

}  // namespace schema_002_000
