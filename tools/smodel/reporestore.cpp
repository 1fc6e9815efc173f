#include <memory>
#include <optional>
#include <string>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodelrestore_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/putting.h"
#include "tools/smodel/repo.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/terminal.h"

namespace {

using namespace schema_002_000;

constexpr std::size_t OBJECTS_PER_TICK = 1'024;

struct Arguments : RepositoryArguments {
    std::string what, message, base;
    /** Whoever asks the system for the login name looks into its files: not before it is needed. */
    std::optional<std::string> author;
};

/** The model of a revision, its objects with the ids of their rows. */
class Recorded {
  public:
    Recorded(SMRepository& repository, long project, const SMRepositoryRevision& revision, ProgressLine& line)
        : m_context(repository.OpenProject(project)), m_document(Read(revision)), m_outline(*m_document, line.Control(), LimitsInForce()) {
        m_context->SetVisitor([&, compared = std::size_t{0}](const IOObject&) mutable {
            if (++compared % OBJECTS_PER_TICK == 0) line.Show("objects", compared, 0);
        });
        Compare(revision.number);
        m_context->SetVisitor(nullptr);
        m_outline.IndexIds();
    }
    const SMModelOutline& Outline() const { return m_outline; }

  private:
    std::unique_ptr<std::string> Read(const SMRepositoryRevision& revision) {
        m_context->ReadAt(revision.number);
        std::unique_ptr<std::string> document = DocumentAt(*m_context, revision);
        if (!document) throw TklRuntimeError("revision " + std::to_string(revision.number) + " cannot be read, as told above");
        return document;
    }

    void Compare(long revision) {
        SMDiagnosticCollector told;
        try {
            const SMLogScope scope(told);
            m_context->Compare(m_outline.Project());
        } catch (const TklRuntimeError&) {
            PrintDiagnostics(stderr, told.Finish(), true);
            throw TklRuntimeError("revision " + std::to_string(revision) + " cannot be compared with its rows, as told above");
        }
    }

    SMQuietSink m_quiet;  // what reading the model logs was told when it was put
    SMLogScope m_scope{m_quiet};
    std::unique_ptr<SMRepositoryHelper> m_context;
    std::unique_ptr<std::string> m_document;
    SMModelOutline m_outline;
};

/** The object as the revision calls it, or else as any other one does. */
QvULString ObjectThen(SMRepository& repository, const SMRepositoryHelper& context, const SMModelOutline& then, const std::string& object,
                      long revision) {
    if (const SMObjectBase* const found = SMReferenceIndex(then.Project()).Find(object); found && !found->GetId().empty())
        return found->GetId();
    const QvULString id = FindObject(repository, context, object);
    if (then.Find(id.utf8()) == SMModelOutline::NONE)
        throw TklRuntimeError("'" + object + "' does not stand in revision " + std::to_string(revision) + "; 'smodel repo log " +
                              repository.Name() + " " + object + "' tells where it does");
    return id;
}

/** The model with the object back in it. Until it is put there is nothing to tidy up. */
SMRestoreResult Prepare(SMRepository& repository, const SMRepositoryHelper& context, const std::string& object,
                        const SMRepositoryRevision& base, const SMRepositoryRevision& revision) {
    const LeaveAtOnce nothingToTidyUp(true, NOTHING_WRITTEN);
    ProgressLine line("restoring " + object);
    const long project = context.ProjectNumber();
    const Recorded now(repository, project, base, line), then(repository, project, revision, line);
    const QvULString id = ObjectThen(repository, context, then.Outline(), object, revision.number);
    return SMRestoreObject(then.Outline(), now.Outline(), id, line.Control());
}

int Restore(const Arguments& arguments) {
    const std::size_t at = arguments.what.rfind('@');
    if (at == std::string::npos || at == 0 || at + 1 == arguments.what.size())
        throw TklRuntimeError("'" + arguments.what + "' names no revision: give the object and the revision, as '[Sales].[Orders]@3'");
    SMRepository repository(arguments.repository);
    const std::unique_ptr<SMRepositoryHelper> context = ContextOf(repository, arguments.project);
    const long project = context->ProjectNumber();
    const SMRepositoryRevision base = RevisionAt(repository, project, arguments.base),
                               revision = RevisionAt(repository, project, arguments.what.substr(at + 1));
    context->ReadAt(base.number);

    const SMRestoreResult restored = Prepare(repository, *context, arguments.what.substr(0, at), base, revision);
    PrintDiagnostics(stderr, restored.diagnostics, false);
    if (!restored.IsDone()) return StatusOf(restored);
    const std::string message = arguments.message.empty() ? "restore " + arguments.what : arguments.message;
    return PutModel(repository, *context, *restored.project, arguments.author ? *arguments.author : LoginName(), message, [&] {
        for (const auto& [settled, known] : restored.ids) settled->SetId(known);
    });
}

}  // namespace

void AddRepoRestore(const Command& repo) {
    const auto [restore, arguments] =
        repo.Add<Arguments>("restore", "Put one object, with all below it, back to what it was in a revision, as a new revision", Restore);
    AddRepositoryOptions(restore, arguments);
    restore.Argument("OBJECT@REV", arguments.what,
                     "Its object id, as '[namespace].[subject].[item]', or 'id:ID'; and a revision, a moment or a day");
    restore.Text("-m,--message", "MESSAGE", arguments.message, "Why; by default what is restored");
    restore.Text("--author", "NAME", arguments.author, "Who; by default the login name");
    restore.Option("--base", "REV", arguments.base, "The revision that the new one is based on; by default the newest");
    AddLimits(restore);
    restore.Footer(
        "All else stays as it is. What stood below the object then and stands elsewhere now comes back to it. When the repository has "
        "moved\n"
        "on since the base, nothing is written, and the exit status is 4.");
}
