#include "tools/smodel/repositories.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/terminal.h"

using namespace schema_002_000;

namespace {

constexpr std::size_t SUGGESTIONS = 5;
constexpr std::string_view ID_PREFIX = "id:";

[[noreturn]] void FailAt(const SMRepository& repository, const std::string& what) {
    throw TklRuntimeError("Repository '" + repository.Name() + "': " + what);
}

std::string Span(const std::vector<SMRepositoryRevision>& revisions) {
    return std::to_string(revisions.front().number) + " to " + std::to_string(revisions.back().number);
}

SMRepositoryRevision RevisionNumbered(const SMRepository& repository, const std::vector<SMRepositoryRevision>& revisions, long number) {
    for (const SMRepositoryRevision& revision : revisions)
        if (revision.number == number) return revision;
    FailAt(repository, "There is no revision " + std::to_string(number) + "; there are " + Span(revisions) + ".");
}

/** A day reaches to its end: texts of moments are compared as far as the given one goes. */
SMRepositoryRevision RevisionBefore(const SMRepository& repository, const std::vector<SMRepositoryRevision>& revisions,
                                    const std::string& moment) {
    const auto isLater = [&](const SMRepositoryRevision& revision) {
        return TextOf(revision.savedAt.ToString()).compare(0, moment.size(), moment) > 0;
    };
    const auto found = std::find_if_not(revisions.rbegin(), revisions.rend(), isLater);
    if (found != revisions.rend()) return *found;
    FailAt(repository, "Nothing had been saved at " + moment + "; the oldest revision, " + std::to_string(revisions.front().number) +
                           ", is of " + TextOf(revisions.front().savedAt.ToString()) + " (UTC).");
}

/** The names of "[a].[b]". */
std::vector<std::string> NamesOf(std::string_view address) {
    constexpr std::string_view BETWEEN = "].[";
    if (!address.starts_with('[') || !address.ends_with(']')) return {};
    address = address.substr(1, address.size() - 2);
    std::vector<std::string> names;
    for (std::size_t end; (end = address.find(BETWEEN)) != std::string_view::npos; address.remove_prefix(end + BETWEEN.size()))
        names.emplace_back(address.substr(0, end));
    names.emplace_back(address);
    return names;
}

/** Finds the object of an address in one revision; empty when it has none. */
QvULString FindIn(SMRepository& repository, long project, long revision, const std::string& address, std::vector<std::string>* alike) {
    const auto context = repository.OpenProject(project);
    context->ReadAt(revision);
    const SMGetResult got = LoadRows(repository, *context);
    if (!got.IsDone()) FailAt(repository, "Revision " + std::to_string(revision) + " cannot be read, as told above.");
    const SMReferenceIndex index(*got.project);
    if (const SMObjectBase* const object = index.Find(address)) return object->GetId();
    if (alike) *alike = index.FindAlike(address, SUGGESTIONS);
    return {};
}

QvULString FindByAddress(SMRepository& repository, long project, const std::string& address) {
    const std::vector<SMRepositoryRevision> revisions = repository.Revisions(project);
    std::vector<std::string> alike;
    if (QvULString id = FindIn(repository, project, revisions.back().number, address, &alike); !id.empty()) return id;
    for (const long last : repository.LastRevisionsOf(project, NamesOf(address))) {
        const auto known = [&](const SMRepositoryRevision& revision) { return revision.number == last; };
        if (std::none_of(revisions.begin(), revisions.end() - 1, known)) continue;
        if (QvULString id = FindIn(repository, project, last, address, nullptr); !id.empty()) return id;
    }
    std::string told = "No revision has an object '" + address + "'; object ids look like [namespace].[subject].[item]";
    for (std::size_t i = 0; i < alike.size(); ++i) told += (i == 0 ? "; did you mean " : ", ") + alike[i];
    FailAt(repository, told + (alike.empty() ? "." : "?"));
}

/** Those of the id, or else of the name, or else of the number; all when nothing is given. */
std::vector<SMRepositoryProject> Named(const std::vector<SMRepositoryProject>& projects, const std::string& given) {
    if (given.empty()) return projects;
    std::vector<SMRepositoryProject> found;
    for (const auto tell : {+[](const SMRepositoryProject& project) { return TextOf(project.id); },
                            +[](const SMRepositoryProject& project) { return TextOf(project.name); },
                            +[](const SMRepositoryProject& project) { return std::to_string(project.number); }}) {
        std::copy_if(projects.begin(), projects.end(), std::back_inserter(found),
                     [&](const SMRepositoryProject& project) { return tell(project) == given; });
        if (!found.empty()) break;
    }
    return found;
}

/** "1: Test (p), 2: Other (q)". */
std::string Listed(const std::vector<SMRepositoryProject>& projects) {
    std::string list;
    for (const SMRepositoryProject& project : projects)
        list += (list.empty() ? "" : ", ") + std::to_string(project.number) + ": " + TextOf(project.name) + " (" + TextOf(project.id) + ")";
    return list;
}

}  // namespace

std::unique_ptr<SMRepositoryHelper> ContextFor(SMRepository& repository, const SMProject2& project) {
    std::vector<SMRepositoryProject> fitting = repository.Projects();
    std::erase_if(fitting, [&](const SMRepositoryProject& stored) {
        return project.GetId().empty() ? stored.name != project.GetName() : stored.id != project.GetId();
    });
    if (fitting.empty()) return repository.NewProject();
    if (fitting.size() == 1) return repository.OpenProject(fitting.front().number);
    throw TklRuntimeError(repository.Name() + " holds several projects that the model can be a new revision of, for it " +
                          (project.GetId().empty() ? "has no id and they have its name" : "has the id of each") +
                          "; name one of them by --project: " + Listed(fitting));
}

std::unique_ptr<SMRepositoryHelper> ContextOf(SMRepository& repository, const std::string& given) {
    const std::vector<SMRepositoryProject> projects = repository.Projects();
    if (projects.empty()) throw TklRuntimeError(repository.Name() + " holds no project; 'smodel repo put' brings one in");
    const std::vector<SMRepositoryProject> named = Named(projects, given);
    if (named.size() == 1) return repository.OpenProject(named.front().number);
    if (given.empty())
        throw TklRuntimeError(repository.Name() + " holds more than one project, name one of them by --project: " + Listed(named));
    if (named.empty()) throw TklRuntimeError(repository.Name() + " holds no project '" + given + "'; there are: " + Listed(projects));
    throw TklRuntimeError(repository.Name() + " holds several projects '" + given + "', name one by its id or number: " + Listed(named));
}

SMRepositoryRevision RevisionAt(SMRepository& repository, long project, const std::string& at) {
    const std::vector<SMRepositoryRevision> revisions = repository.Revisions(project);
    if (revisions.empty()) FailAt(repository, "There is no revision.");
    if (at.empty()) return revisions.back();
    long number = 0;
    const auto [end, error] = std::from_chars(at.data(), at.data() + at.size(), number);
    if (error == std::errc() && end == at.data() + at.size()) return RevisionNumbered(repository, revisions, number);
    constexpr std::size_t DAY_SIZE = 10;
    const std::string moment = TextOf(QvDate(at.c_str()).ToString());
    if (moment.empty() || (moment != at && moment.substr(0, DAY_SIZE) != at))
        throw TklRuntimeError("'" + at + "' is no revision: give a number, a moment as 2026-11-21T18:00:00 (UTC), or a day as 2026-11-21");
    return RevisionBefore(repository, revisions, at);
}

bool DocumentsDiffer(const SMRepositoryRevision& first, const SMRepositoryRevision& second) {
    return first.hasDocument && second.hasDocument && first.documentDigest != second.documentDigest;
}

std::unique_ptr<std::string> DocumentAt(SMRepositoryHelper& context, const SMRepositoryRevision& revision) {
    TklByteBuffer bytes;
    QvByteBufferWriter writer(bytes);
    if (revision.hasDocument) {
        context.ReadDocument(writer);
        return std::make_unique<std::string>(bytes.view());
    }
    const SMGetResult got = SMGetModel(context);
    if (got.IsDone()) DropIdsThatNoDocumentKeeps(*got.project);
    if (got.IsDone() && SMWriteModel(*got.project, writer).IsDone()) return std::make_unique<std::string>(bytes.view());
    PrintDiagnostics(stderr, got.diagnostics, true);
    return nullptr;
}

void DropIdsThatNoDocumentKeeps(SMProject2& project) {
    using Kind = SMEnum_xmltag::Enum;
    SMForEachObject(project, [](const SMObjectBase& object, int) {
        if (object.GetSMType() != Kind::role && object.GetSMType() != Kind::promptInfo) return;
        auto& unkept = const_cast<SMObjectBase&>(object);  // the project may be changed, though visitors seldom do
        unkept.SetId({});
        unkept.SetVersionNo(0);
    });
}

SMGetResult LoadRows(SMRepository& repository, SMRepositoryHelper& context) {
    SMGetResult got;
    {
        ProgressLine line("loading from " + repository.Name());
        got = SMGetModel(context, line.Control());
    }
    PrintDiagnostics(stderr, got.diagnostics, true);
    return got;
}

QvULString FindObject(SMRepository& repository, const SMRepositoryHelper& context, const std::string& given) {
    if (!given.starts_with(ID_PREFIX)) return FindByAddress(repository, context.ProjectNumber(), given);
    const QvULString id(given.substr(ID_PREFIX.size()).c_str());
    if (repository.RevisionsOf(context.ProjectNumber(), id).empty())
        FailAt(repository, "No revision has an object of the id '" + TextOf(id) + "'; 'smodel repo diff' tells the ids of what changed.");
    return id;
}

std::string PathText(const SMRepositoryChange& change) {
    std::string path;
    for (const I18NString& name : change.path) path += (path.empty() ? "" : " / ") + TextOf(name);
    return path.empty() ? TextOf(change.id) : path;
}

std::string TextOf(const I18NString& text) {
    return std::string(text.utf8());
}
