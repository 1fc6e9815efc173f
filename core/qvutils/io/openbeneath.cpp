#include "core/qvutils/io/openbeneath.h"

#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"

namespace qv {

namespace {

constexpr int MOST_LINKS = 40;

class Walk {
  public:
    Walk(const std::string& root, const std::string& shown) : m_shown(shown) {
        Enter(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }

    Descriptor Open(const std::string& path) {
        Queue(path);
        while (!m_steps.empty()) {
            const std::string step = std::move(m_steps.back());
            m_steps.pop_back();
            if (step == "..")
                Leave();
            else if (Descriptor file = Take(step))
                return file;
        }
        FailBy(EISDIR);
    }

  private:
    /** Puts the steps of a path before those that are left. */
    void Queue(std::string_view path) {
        if (path.empty()) FailBy(ENOENT);
        if (path.front() == '/') Fail("it leads to an absolute path, out of the directory of the model", code::OUTSIDE_ROOT);
        if (path.back() == '/') FailBy(EISDIR);
        while (!path.empty()) {
            const std::size_t slash = path.rfind('/');
            const std::string_view step = path.substr(slash == std::string_view::npos ? 0 : slash + 1);
            if (!step.empty() && step != ".") m_steps.emplace_back(step);
            path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
        }
    }

    void Enter(int directory) {
        if (directory < 0) FailBy(errno);
        m_directories.emplace_back(directory);
    }

    void Leave() {
        if (m_directories.size() == 1) Fail("it leads out of the directory of the model", code::OUTSIDE_ROOT);
        m_directories.pop_back();
    }

    /** Follows a link, enters a directory, or opens the file, which must be the last step. */
    Descriptor Take(const std::string& step) {
        const int here = m_directories.back().Get();
        const Descriptor seen(::openat(here, step.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        if (!seen || ::fstat(seen.Get(), &status) != 0) FailBy(errno);
        if (S_ISLNK(status.st_mode)) {
            Queue(TargetOf(seen.Get()));
            return Descriptor();
        }
        if (S_ISDIR(status.st_mode)) {
            Enter(::openat(here, step.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            return Descriptor();
        }
        if (!m_steps.empty()) FailBy(ENOTDIR);
        if (!S_ISREG(status.st_mode)) Fail("it is no regular file", code::UNREADABLE_FILE);
        return OpenFile(here, step, status);
    }

    Descriptor OpenFile(int here, const std::string& name, const struct stat& seen) {
        // should a pipe have taken the place of the file by now, opening must not wait for its other end
        Descriptor file(::openat(here, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
        struct stat opened {};
        if (!file || ::fstat(file.Get(), &opened) != 0) FailBy(errno);
        if (opened.st_dev != seen.st_dev || opened.st_ino != seen.st_ino)
            Fail("it was replaced while it was opened", code::UNREADABLE_FILE);
        return file;
    }

    std::string TargetOf(int link) {
        if (++m_links > MOST_LINKS) FailBy(ELOOP);
        char target[4096];
        const ssize_t length = ::readlinkat(link, "", target, sizeof target);
        if (length < 0) FailBy(errno);
        if (static_cast<std::size_t>(length) == sizeof target) FailBy(ENAMETOOLONG);
        return std::string(target, static_cast<std::size_t>(length));
    }

    [[noreturn]] void Fail(const char* why, const char* code) const {
        throw TklRuntimeError(std::string("cannot open: ") + why, m_shown, 0, 0, code);
    }
    [[noreturn]] void FailBy(int error) const { Fail(std::strerror(error), CodeOfSystemError(error)); }

    const std::string& m_shown;
    /** From the root to where the walk stands. */
    std::vector<Descriptor> m_directories;
    /** What is left of the path, the next step last. */
    std::vector<std::string> m_steps;
    int m_links = 0;
};

}  // namespace

Descriptor OpenBeneath(const std::string& root, const std::string& path, const std::string& shown) {
    if (path.find('\0') != std::string::npos)
        throw TklRuntimeError(std::string("cannot open: ") + std::strerror(EINVAL), shown, 0, 0, CodeOfSystemError(EINVAL));
    return Walk(root, shown).Open(path);
}

}  // namespace qv
