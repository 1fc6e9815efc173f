#include <memory>
#include <optional>
#include <string>

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

int Put(const Arguments& arguments) {
    int readStatus = STATUS_CLEAN;
    const schema_002_000::SMAccountedResult loaded = ReadModelToWrite(arguments.model, arguments, readStatus);
    if (!loaded.project) return readStatus;
    // What fails behind the opening leaves a new repository, empty: whether others are putting into it already cannot be known. So none is
    // made where it is clear before that it must be there.
    const bool isKnown = !arguments.project.empty() || !arguments.base.empty();
    SMRepository repository(arguments.repository, isKnown ? SMRepository::existing : SMRepository::createIfAbsent);
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
