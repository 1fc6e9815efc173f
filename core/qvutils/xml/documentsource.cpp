#include "core/qvutils/xml/documentsource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/qvutils/diag/tklerrors.h"

namespace qv {
namespace {

constexpr std::size_t HEAD_SIZE = std::size_t{64} << 10;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/** Whether the XML declaration names no encoding, or one in which each byte below 0x80 is that character of ASCII. */
bool DeclaresAsciiKin(std::string_view declaration) {
    const std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) return true;
    const std::size_t open = declaration.find_first_of("\"'", at);
    if (open == std::string_view::npos) return false;
    const std::size_t close = declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos) return false;
    std::string name(declaration.substr(open + 1, close - open - 1));
    std::transform(name.begin(), name.end(), name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    for (const char* known : {"utf-8", "utf8", "us-ascii", "ascii", "iso-8859-1", "latin1", "windows-1252"})
        if (name == known) return true;
    return false;
}

}  // namespace

std::size_t MemorySource::Read(char* to, std::size_t room) {
    const std::size_t count = std::min(room, m_rest.size());
    if (count) std::memcpy(to, m_rest.data(), count);
    m_rest.remove_prefix(count);
    return count;
}

FileSource::FileSource(std::string path) : m_path(std::move(path)) {
    if (m_path.find('\0') != std::string::npos) Fail("cannot open", EINVAL);
    do m_file = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    while (m_file < 0 && errno == EINTR);
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
    const std::size_t room =
        S_ISREG(status.st_mode) ? std::clamp<std::size_t>(static_cast<std::size_t>(status.st_size), 1, HEAD_SIZE) : HEAD_SIZE;
    m_head.reset(new char[room]);
    while (m_headSize < room) {
        const std::size_t count = ReadFile(m_head.get() + m_headSize, room - m_headSize);
        if (count == 0) break;
        m_headSize += count;
    }
}

std::size_t FileSource::ReadFile(char* to, std::size_t room) {
    while (true) {
        const ssize_t count = ::read(m_file, to, room);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) Fail("cannot read", errno);
    }
}

std::size_t FileSource::Read(char* to, std::size_t room) {
    if (m_headRead == m_headSize) return ReadFile(to, room);
    const std::size_t count = std::min(room, m_headSize - m_headRead);
    std::memcpy(to, m_head.get() + m_headRead, count);
    m_headRead += count;
    return count;
}

void FileSource::Fail(const char* what, int error) const {
    throw TklRuntimeError(std::string(what) + ": " + std::strerror(error), m_path);
}

bool HasPlainProlog(std::string_view head) {
    if (StartsWith(head, "\xEF\xBB\xBF")) head.remove_prefix(3);
    if (head.size() < 2 || head[1] == '\0' || (head[0] != '<' && !IsBlank(head[0]))) return false;
    if (StartsWith(head, "<?xml") && !DeclaresAsciiKin(head.substr(0, head.find("?>")))) return false;
    while (!head.empty()) {
        if (IsBlank(head[0])) {
            head.remove_prefix(1);
            continue;
        }
        const bool comment = StartsWith(head, "<!--");
        if (!comment && !StartsWith(head, "<?")) return head.size() > 1 && head[0] == '<' && head[1] != '!';
        const std::string_view close = comment ? "-->" : "?>";
        const std::size_t end = head.find(close, comment ? 4 : 2);
        if (end == std::string_view::npos) return false;
        head.remove_prefix(end + close.size());
    }
    return false;
}

}  // namespace qv
