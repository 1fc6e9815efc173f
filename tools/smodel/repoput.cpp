#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/putting.h"
#include "tools/smodel/repo.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/terminal.h"

namespace {

struct Arguments : RepositoryArguments, LossArguments {
    std::string model, message, base;
    /** Whoever asks the system for the login name looks into its files: not before it is needed. */
    std::optional<std::string> author;
};

/** Takes a repository's file away again, if it was not there before and nobody has put anything into it. */
class NewFile {
  public:
    explicit NewFile(const std::string& location)
        : m_path(location.starts_with(PREFIX) ? location.substr(PREFIX.size()) : location),
          m_wasThere(location.starts_with("postgresql:") || location.starts_with("postgres:") || IsThere()) {}
    ~NewFile() {
        if (m_wasThere || !IsThere()) return;
        try {
            // others may have found it, and put their models there
            if (!SMRepository(std::string(PREFIX) + m_path, SMRepository::createIfAbsent).Projects().empty()) return;
        } catch (const std::exception&) {
            return;  // what cannot be looked at is left as it is
        }
        std::error_code ignored;
        // on a full disk what stands in the log cannot be brought into the file, so that closing it leaves both
        for (const char* const end : {"", "-wal", "-shm"}) std::filesystem::remove(m_path + end, ignored);
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

  private:
    static constexpr std::string_view PREFIX = "sqlite:";
    bool IsThere() const { return std::filesystem::exists(std::filesystem::symlink_status(m_path)); }

    std::string m_path;
    bool m_wasThere;
};

int Put(const Arguments& arguments) {
    int readStatus = STATUS_CLEAN;
    const schema_002_000::SMAccountedResult loaded = ReadModelToWrite(arguments.model, arguments, readStatus);
    if (!loaded.project) return readStatus;
    const NewFile file(arguments.repository);
    SMRepository repository(arguments.repository, SMRepository::createIfAbsent);
    const std::unique_ptr<SMRepositoryHelper> context =
        arguments.project.empty() ? ContextFor(repository, *loaded.project) : ContextOf(repository, arguments.project);
    if (!arguments.base.empty()) context->ReadAt(RevisionAt(repository, context->ProjectNumber(), arguments.base).number);
    const int status =
        PutModel(repository, *context, *loaded.project, arguments.author ? *arguments.author : LoginName(), arguments.message);
    return Worse(readStatus, status);
}

}  // namespace

void AddRepoPut(const Command& repo) {
    const auto [put, arguments] = repo.Add<Arguments>("put", "Save a model as a new revision, in a new repository if there is none", Put);
    AddRepositoryOptions(put, arguments);
    put.Argument("MODEL", arguments.model, "The document; - is standard input");
    put.Text("-m,--message", "MESSAGE", arguments.message, "Why; stands with the revision");
    put.Text("--author", "NAME", arguments.author, "Who; by default the login name");
    put.Option("--base", "REV", arguments.base, "The revision that the model was made from; by default the newest");
    AddLossOption(put, arguments);
    AddLimits(put);
    put.Footer(
        "Prints the revision and how many objects it changes. Whatever the repository has now is replaced by the model: what others put "
        "since\n"
        "you got it is undone, unless --base names the revision that you got (get --at REV, edit, put --base REV).\n"
        "When the repository has moved on since the base, nothing is written, the\n"
        "objects that were changed by both are listed, and the exit status is 4.");
}
