#include <memory>
#include <string>
#include <vector>

#include "objects/face/smguard_002_000.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/json.h"
#include "tools/smodel/models.h"
#include "tools/smodel/repo.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/telling.h"
#include "tools/smodel/terminal.h"

namespace {

using nlohmann::ordered_json;

struct Arguments : RepositoryArguments {
    std::string object, first, second;
    long keep = 0;
    bool json = false;
};

/** A repository that is only read, and the project that was asked for. */
struct Source {
    explicit Source(const RepositoryArguments& arguments)
        : repository(arguments.repository), context(ContextOf(repository, arguments.project)) {}
    long Project() const { return context->ProjectNumber(); }

    LeaveAtOnce nothingToTidyUp;
    SMRepository repository;
    std::unique_ptr<SMRepositoryHelper> context;
};

std::string When(const SMRepositoryRevision& revision) {
    return TextOf(revision.savedAt.ToString());
}

ordered_json Json(const SMRepositoryRevision& revision) {
    return {{"revision", revision.number},
            {"savedAt", When(revision)},
            {"author", TextOf(revision.author)},
            {"message", TextOf(revision.message)},
            {"document", revision.hasDocument}};
}

int ListProjects(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    SMRepository repository(arguments.repository);
    ordered_json array = ordered_json::array();
    std::string lines;
    for (const SMRepositoryProject& project : repository.Projects()) {
        const std::vector<SMRepositoryRevision> revisions = repository.Revisions(project.number);
        const std::string author = revisions.empty() ? std::string() : TextOf(revisions.back().author);
        const std::string when = TextOf(project.savedAt.ToString());
        array.push_back({{"number", project.number},
                         {"name", TextOf(project.name)},
                         {"id", TextOf(project.id)},
                         {"revision", project.revision},
                         {"savedAt", when},
                         {"author", author}});
        lines += std::to_string(project.number) + "\t" + Field(TextOf(project.name)) + "\t" + Field(TextOf(project.id)) + "\t" +
                 std::to_string(project.revision) + "\t" + when + "\t" + Field(author) + "\n";
    }
    Print(arguments.json ? JsonText(array) + "\n" : lines);
    return STATUS_CLEAN;
}

int Log(const Arguments& arguments) {
    Source source(arguments);
    const std::vector<SMRepositoryRevision> revisions =
        arguments.object.empty()
            ? source.repository.Revisions(source.Project())
            : source.repository.RevisionsOf(source.Project(), FindObject(source.repository, *source.context, arguments.object));
    ordered_json array = ordered_json::array();
    std::string lines;
    for (auto revision = revisions.rbegin(); revision != revisions.rend(); ++revision) {
        array.push_back(Json(*revision));
        lines += std::to_string(revision->number) + "\t" + When(*revision) + "\t" + Field(TextOf(revision->author)) + "\t" +
                 Field(TextOf(revision->message)) + "\n";
    }
    Print(arguments.json ? JsonText(array) + "\n" : lines);
    return STATUS_CLEAN;
}

/** The differing lines of the documents of two revisions. */
std::string DocumentDifference(Source& source, const SMRepositoryRevision& first, const SMRepositoryRevision& second) {
    const auto document = [&](const SMRepositoryRevision& revision) {
        source.context->ReadAt(revision.number);
        return *DocumentAt(*source.context, revision);
    };
    return DocumentDiff(document(first), document(second), "  ");
}

int Diff(const Arguments& arguments) {
    Source source(arguments);
    const SMRepositoryRevision first = RevisionAt(source.repository, source.Project(), arguments.first),
                               second = RevisionAt(source.repository, source.Project(), arguments.second);
    const std::vector<SMRepositoryChange> changes = source.repository.Changes(source.Project(), first.number, second.number);
    const bool documentDiffers = DocumentsDiffer(first, second);
    if (arguments.json) {
        Print(JsonText({{"from", first.number}, {"to", second.number}, {"changes", Json(changes)}, {"documentDiffers", documentDiffers}}) +
              "\n");
    } else {
        for (const SMRepositoryChange& change : changes) Print(Told(change));
        if (documentDiffers && changes.empty())
            Print("The rows are the same; the documents differ in what only they carry:\n" + DocumentDifference(source, first, second));
        else if (documentDiffers)
            Print("The documents differ.\n");
    }
    return changes.empty() && !documentDiffers ? STATUS_CLEAN : STATUS_FINDINGS;
}

int Blame(const Arguments& arguments) {
    Source source(arguments);
    const QvULString id = FindObject(source.repository, *source.context, arguments.object);
    const std::vector<SMRepositoryBlame> blame = source.repository.Blame(source.Project(), id);
    if (blame.empty()) {
        const std::vector<SMRepositoryRevision> revisions = source.repository.RevisionsOf(source.Project(), id);
        Complain("'" + arguments.object + "' went in revision " + std::to_string(revisions.back().number) +
                 "; only what stands has values to blame for");
        return STATUS_UNUSABLE;
    }
    ordered_json array = ordered_json::array();
    std::string lines;
    for (const SMRepositoryBlame& line : blame) {
        array.push_back({{"name", TextOf(line.name)}, {"value", TextOf(line.value)}, {"setIn", Json(line.revision)}});
        lines += std::to_string(line.revision.number) + "\t" + When(line.revision) + "\t" + Field(TextOf(line.revision.author)) + "\t" +
                 Field(TextOf(line.name)) + "\t" + Field(TextOf(line.value)) + "\n";
    }
    Print(arguments.json ? JsonText(array) + "\n" : lines);
    return STATUS_CLEAN;
}

constexpr const char* PRUNING =
    "smodel: interrupted in the midst of the commit: 'smodel repo log' tells whether the old revisions were removed\n";

int Prune(const Arguments& arguments) {
    SMRepository repository(arguments.repository);
    const long project = ContextOf(repository, arguments.project)->ProjectNumber();
    TellWhenInterrupted(NOTHING_WRITTEN);
    const SMRepositoryPruned pruned = repository.Prune(project, arguments.keep, [](bool committing) {
        if (Interrupted()) throw schema_002_000::SMCancelled();
        if (committing) TellWhenInterrupted(PRUNING);
    });
    TellWhenInterrupted("smodel: the old revisions were removed before the interruption\n", Outcome::done);
    if (pruned.revisions == 0)
        Print("nothing to remove\n");
    else
        Print("removed " + Counted(static_cast<std::size_t>(pruned.revisions), "revision") + ", " +
              Counted(static_cast<std::size_t>(pruned.rows), "row") + " and " + Counted(static_cast<std::size_t>(pruned.pieces), "piece") +
              " of documents; the oldest revision is now " + std::to_string(pruned.oldest) + "\n");
    if (!FlushOutput() && pruned.revisions != 0)
        Complain("the old revisions were removed, though this cannot be told on standard output; the oldest is now " +
                 std::to_string(pruned.oldest));
    return STATUS_CLEAN;
}

using Added = AddedCommand<Arguments>;

/** A command on one project. */
Added Add(const Command& repo, const char* name, const char* about, int (*run)(const Arguments&)) {
    const Added added = repo.Add<Arguments>(name, about, run);
    AddRepositoryOptions(added.command, added.arguments);
    return added;
}

void AddJson(const Added& added) {
    added.command.Flag("--json", added.arguments.json, "Print JSON");
}

constexpr const char* OBJECT_HELP =
    "Its object id, as '[namespace].[subject].[item]', or 'id:ID'; one that went is found where it last stood";

}  // namespace

void AddRepoHistory(const Command& repo) {
    const Added ls =
        repo.Add<Arguments>("ls", "List the projects: number, name, id, newest revision, when (UTC), and by whom", ListProjects);
    AddRepositoryOption(ls.command, ls.arguments);
    AddJson(ls);

    const Added log = Add(repo, "log", "List the revisions, or those of an object, the newest first", Log);
    log.command.Argument("OBJECT", log.arguments.object, OBJECT_HELP, Command::Use::optional);
    AddJson(log);

    const Added diff = Add(repo, "diff", "Tell what is different between two revisions, object by object", Diff);
    diff.command.Argument("REV1", diff.arguments.first, "A revision, a moment or a day");
    diff.command.Argument("REV2", diff.arguments.second, "The same; by default the newest revision", Command::Use::optional);
    AddJson(diff);
    diff.command.Footer("The exit status is 1 when there are differences.");

    const Added blame = Add(repo, "blame", "Tell which revision set each value of an object", Blame);
    blame.command.Argument("OBJECT", blame.arguments.object, OBJECT_HELP);
    AddJson(blame);

    const Added prune = Add(repo, "prune", "Remove what only old revisions hold; nothing else ever removes", Prune);
    prune.command.Number("--keep", "N", prune.arguments.keep, "How many of the newest revisions stay",
                         "number of revisions to keep; give one from 1 on, for the newest always stays");
}
