#include "tools/smodel/putting.h"

#include <cstdio>
#include <set>

#include <pwd.h>
#include <unistd.h>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

using namespace schema_002_000;

namespace {

/** A revision that stands is told, whatever keeps us from telling what it changed. */
void PrintWhatCame(SMRepository& repository, const SMRepositoryHelper& context, long base) {
    if (context.Revision() == base) return Print("nothing changed; the newest revision is " + std::to_string(base) + "\n");
    const std::string revision = "revision " + std::to_string(context.Revision());
    if (Interrupted()) return Print(revision + ": saved; the interruption came too late\n");
    SMRepositoryChangeCounts counts;
    bool onlyDocument = false;
    try {
        const long project = context.ProjectNumber();
        counts = repository.CountChanges(project, base, context.Revision());
        onlyDocument = counts.added + counts.changed + counts.removed == 0 && base != 0 &&
                       DocumentsDiffer(RevisionAt(repository, project, std::to_string(base)),
                                       RevisionAt(repository, project, std::to_string(context.Revision())));
    } catch (const TklRuntimeError& error) {
        return Print(revision + ": saved; what it changed cannot be told: " + Printable(error.what()) + "\n");
    }
    Print(revision + ": " + Counted(counts.added, "object") + " added, " + Grouped(counts.changed) + " changed, " +
          Grouped(counts.removed) + " removed" + (onlyDocument ? "; the document changed in what no row holds\n" : "\n"));
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

constexpr const char* COMMITTING =
    "smodel: interrupted in the midst of the commit: 'smodel repo log' tells whether the revision was saved\n";

SMPutResult Send(const SMRepository& repository, SMRepositoryHelper& context, SMProject2& project, const std::function<void()>& settle) {
    ProgressLine line("saving to " + repository.Name());
    TellWhenInterrupted(NOTHING_WRITTEN);
    std::size_t objects = 0;
    SMForEachObject(project, [&](const SMObjectBase&, int) { ++objects; });
    line.SetObjects(objects);
    context.WatchSending([&](std::size_t done, std::size_t total) {
        if (Interrupted()) throw SMCancelled();
        line.Show("rows", done, total);
        TellWhenInterrupted(done == total ? COMMITTING : NOTHING_WRITTEN);
    });
    context.WatchSaved([](long revision) {
        static char told[80];
        std::snprintf(told, sizeof told, "smodel: revision %ld was saved before the interruption\n", revision);
        TellWhenInterrupted(told, Outcome::done);
    });
    SMPutResult put = SMPutModel(project, context, line.Control(), settle);
    if (!put.IsDone()) TellWhenInterrupted(nullptr);
    context.WatchSending(nullptr);
    context.WatchSaved(nullptr);
    return put;
}

/** Whether another put of the project came first, be it the one that made it. */
bool CameSecond(SMRepository& repository, const SMRepositoryHelper& context, const SMProject2& project, const SMPutResult& put) {
    if (context.MovedOn()) return true;
    return put.status == SMStatus::failed && context.ProjectNumber() == 0 && !project.GetId().empty() &&
           ContextFor(repository, project)->ProjectNumber() != 0;
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
    const SMPutResult put = Send(repository, context, project, settle);
    PrintDiagnostics(stderr, put.diagnostics, true);
    if (CameSecond(repository, context, project, put)) {
        const long number = context.ProjectNumber() != 0 ? context.ProjectNumber() : ContextFor(repository, project)->ProjectNumber();
        if (number != 0) PrintConflicts(repository, number, base, project);
        Complain("nothing was written; get the newest revision, bring the change into it, and put it again");
        return STATUS_MOVED_ON;
    }
    if (put.IsDone()) PrintWhatCame(repository, context, base);
    if (!FlushOutput() && put.IsDone() && context.Revision() != base)
        Complain("revision " + std::to_string(context.Revision()) + " was saved, though this cannot be told on standard output");
    LeaveToTheSystem(project);
    return StatusOfWriting(put);
}
