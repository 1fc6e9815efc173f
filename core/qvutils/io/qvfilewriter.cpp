#include <cerrno>
#include <cstdlib>
#include <exception>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/qvutils/diag/qvlogevent.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/io/qvxmlformattarget.h"

namespace {

constexpr std::size_t WINDOW = std::size_t{64} << 10;

[[noreturn]] void Fail(const char* what, const std::string& path, int error) {
    throw TklRuntimeError(std::string(what) + ": " + std::strerror(error), path);
}

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

/** N for the path /proc/self/fd/N, to which /dev/stdout and its like lead; else -1. */
int DescriptorOf(const std::string& path) {
    for (const char* prefix : {"/proc/self/fd/", "/dev/fd/"}) {
        const std::size_t length = std::strlen(prefix);
        if (path.compare(0, length, prefix) == 0 && path.size() > length && path.size() < length + 8 &&
            path.find_first_not_of("0123456789", length) == std::string::npos)
            return std::atoi(path.c_str() + length);
    }
    return -1;
}

/** Follows symbolic links until a path that is none, or that names an open descriptor. */
std::string FollowLinks(std::string path) {
    for (int steps = 0; steps < 40; ++steps) {
        char link[4096];
        const ssize_t length = DescriptorOf(path) >= 0 ? -1 : ::readlink(path.c_str(), link, sizeof link);
        if (length < 0) return path;
        if (static_cast<std::size_t>(length) == sizeof link) Fail("cannot write", path, ENAMETOOLONG);
        const std::string target(link, static_cast<std::size_t>(length));
        path = target[0] == '/' ? target : DirectoryOf(path) + target;
    }
    Fail("cannot write", path, ELOOP);
}

}  // namespace

struct QvFileWriter::File {
    /** As the caller gave it; stands in errors. */
    std::string path;
    /** Where the bytes belong in the end, and the file beside it that takes them; the latter is empty for a direct write. */
    std::string target, temporary;
    int descriptor = -1;
    bool failed = false;
    int exceptions = std::uncaught_exceptions();
    std::unique_ptr<char[]> window{new char[WINDOW]};

    explicit File(const char* name) : path(name ? name : "") {}
    ~File() { Discard(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void Open();
    void OpenDirectly(int inherited);
    void OpenBeside(const struct stat* old);
    void Write(const char* bytes, std::size_t length);
    void Finish();
    void Discard() noexcept;
};

void QvFileWriter::File::Open() {
    target = FollowLinks(path);
    if (target.empty()) Fail("cannot write", path, ENOENT);
    if (target.back() == '/') Fail("cannot write", path, EISDIR);
    const int inherited = DescriptorOf(target);
    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) Fail("cannot write", path, errno);
    if (exists && S_ISDIR(old.st_mode)) Fail("cannot write", path, EISDIR);
    if (inherited >= 0 || (exists && !S_ISREG(old.st_mode)))
        OpenDirectly(inherited);
    else
        OpenBeside(exists ? &old : nullptr);
}

void QvFileWriter::File::OpenDirectly(int inherited) {
    // A copy of the descriptor goes on where the process stands in it, and appends where it was opened to append.
    descriptor = inherited >= 0 ? ::fcntl(inherited, F_DUPFD_CLOEXEC, 0) : ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) Fail("cannot write", path, errno);
}

void QvFileWriter::File::OpenBeside(const struct stat* old) {
    // Renaming needs no right to write the old file; whoever took that right away meant it.
    if (old && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Fail("cannot write", path, errno);
    std::random_device random;
    for (int tries = 0; tries < 100 && descriptor < 0; ++tries) {
        char name[32];
        std::snprintf(name, sizeof name, ".smodel-%08x%08x.tmp", random(), random());
        temporary = DirectoryOf(target) + name;
        descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST && errno != EINTR) break;
    }
    if (descriptor < 0) {
        const int error = errno;
        temporary.clear();
        Fail("cannot write", path, error);
    }
    if (!old) return;
    // The owner can be kept by a privileged process only, the permissions by everybody; a foreign owner must not get set-id bits.
    const bool sameOwner = ::fchown(descriptor, old->st_uid, old->st_gid) == 0;
    if (::fchmod(descriptor, old->st_mode & (sameOwner ? 07777u : 0777u)) != 0) Fail("cannot write", path, errno);
}

void QvFileWriter::File::Write(const char* bytes, std::size_t length) {
    while (length != 0) {
        const ssize_t count = ::write(descriptor, bytes, length);
        if (count < 0) {
            if (errno == EINTR) continue;
            failed = true;
            Fail("cannot write", path, errno);
        }
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
}

void QvFileWriter::File::Finish() {
    if (!temporary.empty() && ::fsync(descriptor) != 0) Fail("cannot write", path, errno);
    const int closed = ::close(descriptor);
    descriptor = -1;
    if (closed != 0 && errno != EINTR) Fail("cannot write", path, errno);
    if (temporary.empty()) return;
    if (::rename(temporary.c_str(), target.c_str()) != 0) Fail("cannot write", path, errno);
    temporary.clear();
    // The new name outlives a power failure only when the directory is on the disk; not every file system can do that.
    const std::string directory = DirectoryOf(target);
    const int folder = ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

void QvFileWriter::File::Discard() noexcept {
    if (descriptor >= 0) ::close(descriptor);
    descriptor = -1;
    if (!temporary.empty()) ::unlink(temporary.c_str());
    temporary.clear();
}

QvFileWriter::QvFileWriter(const char* path) : m_file(std::make_unique<File>(path)) {
    m_file->Open();
    m_at = m_file->window.get();
    m_end = m_at + WINDOW;
}

QvFileWriter::~QvFileWriter() {
    if (!m_file || m_file->failed || std::uncaught_exceptions() > m_file->exceptions) return;
    const std::string path = m_file->path;
    try {
        close();
    } catch (const std::exception& failure) {
        try {
            QvLogEvent(1, "code", "QvOne", "qvfilewriter", "QvFileWriter", "~QvFileWriter", 0, "The file was not written.", failure.what())
                .Log();
        } catch (...) {
            // A destructor has no other way to tell.
        }
    }
}

void QvFileWriter::flush() {
    if (!m_file) return;
    const char* start = m_file->window.get();
    const std::size_t length = static_cast<std::size_t>(m_at - start);
    m_at = m_file->window.get();
    m_file->Write(start, length);
}

void QvFileWriter::overflow(const char* bytes, std::size_t length) {
    if (!m_file) throw TklRuntimeError("the file is closed already");
    flush();
    if (length < WINDOW) {
        std::memcpy(m_at, bytes, length);
        m_at += length;
    } else {
        m_file->Write(bytes, length);
    }
}

void QvFileWriter::close() {
    if (!m_file) return;
    // From here on the file is done with, whether it ends well or not.
    const std::unique_ptr<File> file = std::move(m_file);
    const char* start = file->window.get();
    const std::size_t length = static_cast<std::size_t>(m_at - start);
    m_at = m_end = nullptr;
    if (file->failed) throw TklRuntimeError("cannot write: an earlier write failed", file->path);
    file->Write(start, length);
    file->Finish();
}
