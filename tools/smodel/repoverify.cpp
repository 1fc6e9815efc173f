#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/repo.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/telling.h"
#include "tools/smodel/terminal.h"

namespace {

using namespace schema_002_000;

struct Arguments : RepositoryArguments {
    std::string model, at;
    bool all = false;
};

/** Looks through one revision; what is wrong with it is printed below a line that names it. */
class Verification {
  public:
    Verification(SMRepository& repository, long project, const SMRepositoryRevision& revision)
        : m_repository(repository), m_project(project), m_revision(revision) {}

    /** Takes all steps. False when a prune took the revision away meanwhile: then what was found, and what failed, is no more than that. */
    bool Look(SMProject2* model) {
        try {
            Document();
            Rows();
            Store();
            if (model) Model(*model);
        } catch (const TklRuntimeError&) {
            if (IsThere()) throw;
            return false;
        }
        return m_findings.empty() || IsThere();
    }

    int Status() const {
        Print("revision " + std::to_string(m_revision.number) + (m_findings.empty() ? ": clean\n" : ":\n" + m_findings));
        return m_findings.empty() ? STATUS_CLEAN : STATUS_FINDINGS;
    }

  private:
    void Document() {
        if (!m_revision.hasDocument) return;
        try {
            m_document = *DocumentAt(*Context(), m_revision);
        } catch (const TklRuntimeError& error) {
            return Find(std::string("the document cannot be read: ") + error.what());
        }
        m_hasDocument = true;
        SMLoadOptions options;
        options.limits = LimitsInForce();
        SMLoadResult loaded = SMLoadModelBytes(m_document, options);
        if (!loaded.IsDone()) return Find("the document is no model", loaded);
        if (const std::string difference = DocumentDiff(m_document, Formatted(*loaded.project), "    "); !difference.empty())
            Find("the document is not canonical:\n" + difference);
        Compare("the rows tell something else than the document:\n", *loaded.project);
    }

    void Rows() {
        SMGetResult got = LoadRows(m_repository, *Context());
        if (!got.IsDone()) Find("the rows cannot be loaded", got);
    }

    void Store() {
        for (const std::string& fault : m_repository.Faults(m_project, m_revision.number)) Find(Printable(fault));
    }

    /** What the repository tells otherwise than the model. */
    void Model(SMProject2& model) {
        if (m_hasDocument)
            if (const std::string difference = DocumentDiff(m_document, Formatted(model), "    "); !difference.empty())
                Find("the model is another than the document:\n" + difference);
        Compare("the model is another than the rows:\n", model);
    }

    bool IsThere() const {
        for (const SMRepositoryRevision& revision : m_repository.Revisions(m_project))
            if (revision.number == m_revision.number) return true;
        return false;
    }
    std::unique_ptr<SMRepositoryHelper> Context() const {
        std::unique_ptr<SMRepositoryHelper> context = m_repository.OpenProject(m_project);
        context->ReadAt(m_revision.number);
        return context;
    }
    static std::string Formatted(const SMProject2& project) {
        I18NString text;
        QvStringWriter writer(text);
        SMWriteModel(project, writer);
        return TextOf(text);
    }
    void Find(const std::string& what) { m_findings += "  " + what + (what.ends_with('\n') ? "" : "\n"); }
    void Find(const std::string& what, const SMResult& result) {
        Find(what);
        for (const SMDiagnostic& diagnostic : result.diagnostics)
            if (diagnostic.severity == SMSeverity::error) Find("  " + Printable(FormatDiagnostic(diagnostic)));
    }
    /** An object without a date of change is saved with that of the save. */
    void Compare(const std::string& heading, SMProject2& project) {
        std::vector<const SMObjectBase*> undated;
        SMForEachObject(project, [&](const SMObjectBase& object, int) {
            if (!object.GetLastChangedDate().IsSet()) undated.push_back(&object);
        });
        std::vector<SMRepositoryChange> changes;
        try {
            changes = Context()->Compare(project);
        } catch (const TklRuntimeError& error) {
            return Find(std::string("the rows cannot be compared: ") + error.what());
        }
        std::set<std::string> ids;
        for (const SMObjectBase* object : undated) ids.insert(TextOf(object->GetId()));
        std::string told;
        for (SMRepositoryChange& change : changes) {
            if (change.what == SMRepositoryChange::changed && ids.count(TextOf(change.id)) != 0)
                std::erase_if(change.values, [](const SMRepositoryValue& value) { return value.name == "LASTCHANGED"; });
            if (change.what != SMRepositoryChange::changed || !change.values.empty() || change.order) told += Told(change);
        }
        if (!told.empty()) Find(heading + told);
    }

    SMRepository& m_repository;
    long m_project;
    SMRepositoryRevision m_revision;
    std::string m_document, m_findings;
    bool m_hasDocument = false;
};

int VerifyOne(SMRepository& repository, long project, const SMRepositoryRevision& revision, SMProject2* model, bool oneOfAll) {
    Verification verification(repository, project, revision);
    if (verification.Look(model)) return verification.Status();
    const std::string told = "revision " + std::to_string(revision.number) + ": removed by a prune meanwhile";
    if (!oneOfAll) throw TklRuntimeError(told + "; look at one that is there");
    Print(told + "\n");
    return STATUS_CLEAN;
}

int Verify(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    if (arguments.all && !(arguments.model.empty() && arguments.at.empty()))
        throw TklRuntimeError(
            "--all holds each revision against itself, and goes with no MODEL and no --at: leave it out to look at one revision or to "
            "compare a "
            "model with it, or give it alone");
    SMLoadResult loaded;
    if (!arguments.model.empty() && !(loaded = ReadModel(arguments.model)).IsDone()) return StatusOf(loaded);
    SMRepository repository(arguments.repository);
    const long project = ContextOf(repository, arguments.project)->ProjectNumber();
    if (!arguments.all) return VerifyOne(repository, project, RevisionAt(repository, project, arguments.at), loaded.project.get(), false);
    int status = STATUS_CLEAN;
    for (const SMRepositoryRevision& revision : repository.Revisions(project))
        status = Worse(status, VerifyOne(repository, project, revision, nullptr, true));
    return status;
}

}  // namespace

void AddRepoVerify(const Command& repo) {
    const auto [verify, arguments] =
        repo.Add<Arguments>("verify", "Hold the document of a revision against its rows, and a model against both", Verify);
    AddRepositoryOptions(verify, arguments);
    verify.Argument("MODEL", arguments.model, "A document to compare with; - is standard input", Command::Use::optional);
    verify.Option("--at", "REV|TIME", arguments.at, "A revision, a moment or a day; by default the newest revision");
    verify.Flag("--all", arguments.all, "Each revision; goes with neither MODEL nor --at");
    AddLimits(verify);
    verify.Footer("The exit status is 0 when all is the same, 1 when there are differences.");
}
