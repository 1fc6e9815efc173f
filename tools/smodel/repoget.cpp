#include <memory>
#include <string>

#include "core/qvutils/diag/codes.h"
#include "tools/smodel/models.h"
#include "tools/smodel/repo.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/terminal.h"

namespace {

struct Arguments : RepositoryArguments {
    std::string output, at;
    bool rows = false;
};

int GetRows(SMRepository& repository, SMRepositoryHelper& context, const std::string& output) {
    const schema_002_000::SMGetResult got = LoadRows(repository, context);
    if (!got.IsDone()) return StatusOf(got);
    DropIdsThatNoDocumentKeeps(*got.project);
    return Worse(StatusOf(got), StatusOfWriting(SaveModel(*got.project, output)));
}

int Get(const Arguments& arguments) {
    SMRepository repository(arguments.repository);
    const std::unique_ptr<SMRepositoryHelper> context = ContextOf(repository, arguments.project);
    const SMRepositoryRevision revision = RevisionAt(repository, context->ProjectNumber(), arguments.at);
    context->ReadAt(revision.number);
    if (arguments.rows) return GetRows(repository, *context, arguments.output);
    if (revision.hasDocument)
        return StatusOf(
            SaveDocument([&](QvXMLFormatTarget& target) { context->ReadDocument(target); }, arguments.output, revision.documentBytes));
    SMDiagnostic note;
    note.severity = SMSeverity::note;
    note.code = qv::code::NO_DOCUMENT;
    note.message = "revision " + std::to_string(revision.number) + " was saved without its document, so it comes from its rows";
    PrintDiagnostics(stderr, {note}, false);
    return GetRows(repository, *context, arguments.output);
}

}  // namespace

void AddRepoGet(const Command& repo) {
    const auto [get, arguments] = repo.Add<Arguments>("get", "Give back the document of a revision, byte for byte", Get);
    AddRepositoryOptions(get, arguments);
    get.Option("-o,--output", "OUT", arguments.output, "Where to write; - is standard output", Command::Use::required);
    get.Option("--at", "REV|TIME", arguments.at,
               "A revision, or a moment or day (2026-11-21T18:00:00, 2026-11-21, in UTC) for the newest up to it; by default the newest");
    get.Flag("--rows", arguments.rows, "Load the model from its rows, and write it as canonical document");
}
