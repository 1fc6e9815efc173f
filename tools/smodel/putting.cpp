#include "tools/smodel/putting.h"

#include <set>

#include <pwd.h>
#include <unistd.h>

#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

using namespace schema_002_000;

namespace {

void PrintWhatCame(SMRepository& repository, const SMRepositoryHelper& context, long base) {
    if (context.Revision() == base) return Print("nothing changed; the newest revision is " + std::to_string(base) + "\n");
    const SMRepositoryChangeCounts counts = repository.CountChanges(context.ProjectNumber(), base, context.Revision());
    Print("revision " + std::to_string(context.Revision()) + ": " + Counted(counts.added, "object") + " added, " + Grouped(counts.changed) +
          " changed, " + Grouped(counts.removed) + " removed\n");
}

/** What a put would have changed of what others changed since its base. */
void PrintConflicts(SMRepository& repository, long number, long base, SMProject2& project) {
    const auto context = repository.OpenProject(number);
    const long newest = context->Revision();
    context->ReadAt(base);
    std::set<std::string> mine;
    for (const SMRepositoryChange& change : context->Compare(project)) mine.insert(TextOf(change.id));
    const std::vector<SMRepositoryChange> theirs = repository.Changes(number, base, newest);
    std::string both;
    std::size_t count = 0;
    for (const SMRepositoryChange& change : theirs) {
        if (mine.count(TextOf(change.id)) == 0) continue;
        ++count;
        both += "  " + Printable(TextOf(change.kind) + " " + PathText(change)) + "\n";
    }
    const std::string since = "since revision " + std::to_string(base);
    Print(count == 0 ? "No object was changed by both " + since + ".\n"
                     : Counted(count, "object") + " changed by both " + since + ":\n" + both);
    Print("The other side, now at revision " + std::to_string(newest) + ", changed " + Counted(theirs.size() - count, "further object") +
          ".\n");
}

}  // namespace

std::string LoginName() {
    const passwd* const user = ::getpwuid(::geteuid());
    return user && user->pw_name ? user->pw_name : "";
}

int PutModel(SMRepository& repository, SMRepositoryHelper& context, SMProject2& project, const std::string& author,
             const std::string& message, const std::function<void()>& settle) {
    const long base = context.Revision();
    context.Describe(I18NString(std::string_view(author)), I18NString(std::string_view(message)));
    SMPutResult put;
    {
        ProgressLine line("saving to " + repository.Name());
        put = SMPutModel(project, context, line.Control(), settle);
    }
    PrintDiagnostics(stderr, put.diagnostics, true);
    if (context.MovedOn()) {
        const long number = context.ProjectNumber() != 0 ? context.ProjectNumber() : ContextFor(repository, project)->ProjectNumber();
        if (number != 0) PrintConflicts(repository, number, base, project);
        Complain("nothing was written; get the newest revision, bring the change into it, and put it again");
        return STATUS_MOVED_ON;
    }
    if (put.IsDone()) PrintWhatCame(repository, context, base);
    return StatusOf(put);
}
