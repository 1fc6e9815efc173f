#include "core/qvutils/xml/documentsource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/qvutils/content/sourcebytes.h"
#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"

namespace qv {
namespace {

constexpr std::size_t BLOCK_SIZE = std::size_t{64} << 10;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/** Whether the root, or what cannot be a prolog, comes without a DOCTYPE before it. */
bool HasNoDoctype(std::string_view head) {
    while (!head.empty()) {
        if (IsBlank(head[0])) {
            head.remove_prefix(1);
            continue;
        }
        const bool comment = StartsWith(head, "<!--");
        if (!comment && !StartsWith(head, "<?")) return head.size() > 1 && head[1] != '!';
        const std::string_view close = comment ? "-->" : "?>";
        const std::size_t end = head.find(close, comment ? 4 : 2);
        if (end == std::string_view::npos) return false;
        head.remove_prefix(end + close.size());
    }
    return false;
}

/** Whether no document can begin so, in whatever encoding; one that says little is worth waiting for the rest of it. */
bool IsHopeless(std::string_view head) {
    if (StartsWith(head, "\xEF\xBB\xBF")) head.remove_prefix(3);
    while (!head.empty() && IsBlank(head[0])) head.remove_prefix(1);
    constexpr std::string_view MARKUP_OR_MARK("<\0\xEF\xFE\xFF\x4C", 6);  // the last one is the "<" of EBCDIC
    return !head.empty() && MARKUP_OR_MARK.find(head[0]) == std::string_view::npos;
}

}  // namespace

void MemorySource::LookBack(std::size_t size, const std::function<void(std::string_view)>& look) const {
    const std::string_view bytes = m_bytes.substr(0, size);
    if (LookAtProlog(m_bytes).isUtf8) return look(bytes);
    const std::string converted = Utf8OfDocument(bytes);
    if (!converted.empty()) look(converted);
}

FileSource::FileSource(std::string path) : m_path(std::move(path)) {
    if (m_path.find('\0') != std::string::npos) Fail("cannot open", EINVAL);
    // A copy of the descriptor goes on where the process stands in it; a socket could not be opened by this name at all.
    const bool isInherited = m_path == "/dev/stdin";
    do m_file = isInherited ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0) : ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    while (m_file < 0 && errno == EINTR);
    Begin();
}

FileSource::FileSource(int descriptor, std::string path) : m_path(std::move(path)), m_file(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0)) {
    Begin();
}

void FileSource::Begin() {
    if (m_file < 0) Fail("cannot open", errno);
    try {
        FillHead();
    } catch (...) {
        ::close(m_file);
        throw;
    }
}

FileSource::~FileSource() {
    ::close(m_file);
}

void FileSource::FillHead() {
    struct stat status {};
    if (::fstat(m_file, &status) != 0) Fail("cannot read", errno);
    if (S_ISDIR(status.st_mode)) Fail("cannot read", EISDIR);
    m_room = BLOCK_SIZE;
    if (S_ISREG(status.st_mode) && status.st_size > 0) m_room = std::min(m_room, static_cast<std::size_t>(status.st_size));
    m_block.reset(new char[m_room]);
    while (m_headSize < m_room && !IsHopeless(Head())) {
        const std::size_t count = ReadFile(m_block.get() + m_headSize, m_room - m_headSize);
        if (count == 0) break;
        m_headSize += count;
    }
}

std::size_t FileSource::ReadFile(char* to, std::size_t room) {
    while (true) {
        const ssize_t count = ::read(m_file, to, room);
        if (count >= 0) {
            m_bytesRead += static_cast<std::size_t>(count);
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) Fail("cannot read", errno);
    }
}

std::string_view FileSource::NextBlock() {
    if (std::exchange(m_headTaken, true)) return {m_block.get(), ReadFile(m_block.get(), m_room)};
    return Head();
}

void FileSource::LookBack(std::size_t size, const std::function<void(std::string_view)>& look) const {
    const off_t at = ::lseek(m_file, 0, SEEK_CUR);
    if (at < 0) return;
    const SourceBytes bytes(m_file, static_cast<std::size_t>(at) - m_bytesRead, size);
    if (!bytes.Utf8().empty()) look(bytes.Utf8());
}

void FileSource::Fail(const char* what, int error) const {
    throw TklRuntimeError(std::string(what) + ": " + std::strerror(error), m_path, 0, 0, CodeOfSystemError(error));
}

std::string DeclaredEncoding(std::string_view head) {
    if (!StartsWith(head, "<?xml")) return {};
    const std::string_view declaration = head.substr(0, head.find("?>"));
    const std::size_t open = declaration.find_first_of("\"'", std::min(declaration.find("encoding"), declaration.size()));
    if (open == std::string_view::npos) return {};
    const std::size_t close = declaration.find(declaration[open], open + 1);
    std::string name(declaration.substr(open + 1, close == std::string_view::npos ? close : close - open - 1));
    std::transform(name.begin(), name.end(), name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return name;
}

Prolog LookAtProlog(std::string_view head) {
    const bool mark = StartsWith(head, "\xEF\xBB\xBF");
    if (mark) head.remove_prefix(3);
    if (head.empty()) return {mark, false};
    // UTF-16, UTF-32 and EBCDIC show in the first two bytes: marks, zero bytes, no '<' of ASCII.
    const bool asciiKin = head.size() > 1 && head[0] > 0 && head[1] != '\0' && head[0] != '\x4C';
    const std::string encoding = DeclaredEncoding(head);
    Prolog prolog;
    prolog.isUtf8 = mark || (asciiKin && (encoding.empty() || encoding == "utf-8" || encoding == "utf8"));
    const bool isKnown = prolog.isUtf8 || encoding == "us-ascii" || encoding == "iso-8859-1" || encoding == "windows-1252";
    prolog.isPlain = asciiKin && isKnown && HasNoDoctype(head);
    return prolog;
}

}  // namespace qv
