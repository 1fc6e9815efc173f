#include "core/qvutils/io/stagedfiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string_view>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "core/qvutils/diag/tklerrors.h"

namespace qv {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view PREFIX = ".smodel-", SUFFIX = ".staging";
constexpr std::size_t BLOCK = std::size_t{64} << 10;

[[noreturn]] void Fail(const std::string& path, int error) {
    throw TklRuntimeError(std::string("cannot write: ") + std::strerror(error), path);
}

Descriptor OpenDirectory(const std::string& path) {
    return Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/** A name outlives a power failure only when its directory is on the disk; not every file system can do that. */
void SyncDirectory(const std::string& path) {
    const Descriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory) ::fsync(directory.Get());
}

std::size_t ReadBlock(int file, char* to) {
    std::size_t size = 0;
    while (size < BLOCK) {
        const ssize_t count = ::read(file, to + size, BLOCK - size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        size += static_cast<std::size_t>(count);
    }
    return size;
}

/** False also for what cannot be read: it is another file then. */
bool HaveSameContent(const std::string& a, const std::string& b, const struct stat& statusOfB) {
    struct stat statusOfA {};
    if (::stat(a.c_str(), &statusOfA) != 0 || statusOfA.st_size != statusOfB.st_size) return false;
    const Descriptor first(::open(a.c_str(), O_RDONLY | O_CLOEXEC)), second(::open(b.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!first || !second) return false;
    const std::unique_ptr<char[]> left(new char[BLOCK]), right(new char[BLOCK]);
    for (off_t rest = statusOfB.st_size; rest > 0;) {
        const std::size_t size = ReadBlock(first.Get(), left.get());
        if (size == 0 || ReadBlock(second.Get(), right.get()) != size || std::memcmp(left.get(), right.get(), size) != 0) return false;
        rest -= static_cast<off_t>(size);
    }
    return true;
}

/** Takes away the staging directories whose makers live no more. */
void TidyUp(const std::string& directory) {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(PREFIX) || !name.ends_with(SUFFIX)) continue;
        const Descriptor stale = OpenDirectory(entry.path().string());
        if (stale && ::flock(stale.Get(), LOCK_EX | LOCK_NB) == 0) fs::remove_all(entry.path(), ignored);
    }
}

}  // namespace

/** One file on its way. */
struct StagedFiles::Move {
    std::string name, staged, target;
    /** What stood in its place: exchanged with it, or given up where the file system cannot exchange. */
    bool hadOld = false, exchanged = false;
};

StagedFiles::StagedFiles(std::string directory) : m_directory(std::move(directory)) {
    if (m_directory.empty()) m_directory = ".";
    MakeDirectory();
    try {
        TidyUp(m_directory);
        MakeStaging();
    } catch (...) {
        if (m_madeDirectory) ::rmdir(m_directory.c_str());
        throw;
    }
}

StagedFiles::~StagedFiles() {
    // asks for no memory: it may have ended
    if (DIR* const directory = ::opendir(m_staging.c_str())) {
        while (const dirent* const entry = ::readdir(directory)) ::unlinkat(::dirfd(directory), entry->d_name, 0);
        ::closedir(directory);
        ::rmdir(m_staging.c_str());
    }
    if (m_madeDirectory && !m_published) ::rmdir(m_directory.c_str());
}

void StagedFiles::MakeDirectory() {
    m_madeDirectory = ::mkdir(m_directory.c_str(), 0777) == 0;
    struct stat status {};
    if (m_madeDirectory) return;
    if (errno != EEXIST) Fail(m_directory, errno);
    if (::stat(m_directory.c_str(), &status) != 0) Fail(m_directory, errno);
    if (!S_ISDIR(status.st_mode)) Fail(m_directory, ENOTDIR);
}

void StagedFiles::MakeStaging() {
    std::random_device random;
    for (int tries = 0; tries < 100; ++tries) {
        char name[32];
        std::snprintf(name, sizeof name, "%08x%08x", random(), random());
        m_staging = Target(std::string(PREFIX) + name + std::string(SUFFIX));
        if (::mkdir(m_staging.c_str(), 0700) != 0) {
            if (errno == EEXIST) continue;
            Fail(m_directory, errno);
        }
        m_lock = OpenDirectory(m_staging);
        if (!m_lock && errno != ENOENT) Fail(m_directory, errno);
        // somebody who tidies up may have it for a moment, and takes it away then; where nothing can be locked nobody tidies up
        const bool taken = !m_lock || (::flock(m_lock.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK);
        if (!taken && fs::exists(m_staging)) return;
        ::rmdir(m_staging.c_str());
    }
    Fail(m_directory, EEXIST);
}

std::vector<StagedFiles::Move> StagedFiles::Plan(const std::string& last) const {
    std::vector<std::string> names;
    // the library's own iterator ends the process when memory ends
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(m_staging.c_str()), ::closedir);
    if (!directory) Fail(m_staging, errno);
    while (const dirent* const entry = ::readdir(directory.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    std::sort(names.begin(), names.end(),
              [&](const std::string& a, const std::string& b) { return (a == last) != (b == last) ? b == last : a < b; });
    std::vector<Move> moves;
    for (const std::string& name : names) {
        const std::string target = Target(name), staged = Staged(name);
        struct stat old {};
        Move move{name, staged, target, ::lstat(target.c_str(), &old) == 0, false};
        if (!move.hadOld && errno != ENOENT) Fail(target, errno);
        if (move.hadOld && S_ISDIR(old.st_mode)) Fail(target, EISDIR);
        if (move.hadOld && !S_ISREG(old.st_mode) && !S_ISLNK(old.st_mode)) Fail(target, EEXIST);
        if (move.hadOld && S_ISREG(old.st_mode)) {
            if (HaveSameContent(staged, target, old)) continue;
            // moving needs no right to write the old file; whoever took that right away meant it
            if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Fail(target, errno);
            // the owner can be kept by a privileged process only, the permissions by everybody
            const bool sameOwner = ::chown(staged.c_str(), old.st_uid, old.st_gid) == 0;
            if (::chmod(staged.c_str(), old.st_mode & (sameOwner ? 07777u : 0777u)) != 0) Fail(target, errno);
        }
        moves.push_back(std::move(move));
    }
    return moves;
}

void StagedFiles::Place(Move& move) const {
    const std::string& staged = move.staged;
    const std::string& target = move.target;
    if (move.hadOld && ::renameat2(AT_FDCWD, staged.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0) {
        move.exchanged = true;
        return;
    }
    if (move.hadOld && errno != EINVAL && errno != ENOSYS) Fail(target, errno);
    if (::rename(staged.c_str(), target.c_str()) != 0) Fail(target, errno);
}

void StagedFiles::TakeBack(const Move& move) const noexcept {
    if (move.exchanged)
        ::renameat2(AT_FDCWD, move.staged.c_str(), AT_FDCWD, move.target.c_str(), RENAME_EXCHANGE);
    else if (!move.hadOld)
        ::unlink(move.target.c_str());
}

std::vector<std::string> StagedFiles::Publish(const std::string& last) {
    std::vector<Move> moves = Plan(last);
    std::vector<std::string> changed;  // made beforehand: from now on nothing asks for memory, so that all can be taken back
    for (const Move& move : moves) changed.push_back(move.name);
    std::size_t done = 0;
    try {
        for (; done < moves.size(); ++done) {
            // the last one tells of the others, so these must be on the disk before
            if (moves[done].name == last) SyncDirectory(m_directory);
            Place(moves[done]);
        }
    } catch (...) {
        while (done > 0) TakeBack(moves[--done]);
        throw;
    }
    SyncDirectory(m_directory);
    m_published = true;
    return changed;
}

}  // namespace qv
