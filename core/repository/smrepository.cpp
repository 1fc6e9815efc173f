#include "core/repository/smrepository.h"

#include <algorithm>

#include "core/repository/celldate.h"
#include "core/repository/history/projecthistory.h"
#include "core/repository/history/rowaudit.h"
#include "core/repository/naming.h"
#include "core/repository/postgres/postgresbackend.h"
#include "core/repository/sqlite/sqlitebackend.h"
#include "core/repository/storeformat.h"
#include "core/repository/storesession.h"

namespace {

std::shared_ptr<qv::StoreBackend> BackendFor(const std::string& location) {
    const std::size_t colon = location.find(':');
    const std::string scheme = colon == std::string::npos ? "" : location.substr(0, colon);
    if (scheme == "sqlite") return qv::MakeSqliteBackend(location.substr(colon + 1));
    if (scheme == "postgresql" || scheme == "postgres") return qv::MakePostgresBackend(location);
    if (location.compare(std::min(colon, location.size()), 3, "://") == 0)
        throw TklRuntimeError("Repositories of the kind '" + scheme +
                              "' are not supported by this build; it knows files, sqlite:FILE and postgresql://...");
    return qv::MakeSqliteBackend(location);
}

}  // namespace

SMRepository::SMRepository(const std::string& location, Mode mode) : SMRepository(BackendFor(location), mode) {}

SMRepository::SMRepository(std::shared_ptr<qv::StoreBackend> backend, Mode mode)
    : m_backend(std::move(backend)), m_name(m_backend->Name()) {
    qv::Naming(m_name, [&] { qv::SettleStore(*m_backend, mode == createIfAbsent); });
}

SMRepository::~SMRepository() = default;

std::vector<SMRepositoryProject> SMRepository::Projects() {
    return qv::Naming(m_name, [&] {
        qv::StoreSession session(*m_backend);
        std::vector<SMRepositoryProject> projects;
        for (const qv::ProjectEntry& entry : session.Projects()) {
            const std::optional<qv::RevisionEntry> head = session.Revision(entry.number, entry.head);
            projects.push_back({entry.number, QvULString(std::string_view(entry.id)), I18NString(std::string_view(entry.name)), entry.head,
                                head ? qv::DateOf(head->savedAt.number) : QvDate(false)});
        }
        std::sort(projects.begin(), projects.end(),
                  [](const SMRepositoryProject& a, const SMRepositoryProject& b) { return a.number < b.number; });
        return projects;
    });
}

template <class Ask>
auto SMRepository::AskHistory(long project, Ask&& ask) {
    return qv::Naming(m_name, [&] {
        qv::StoreSession session(*m_backend);
        qv::ProjectHistory history(session, project);
        return ask(history);
    });
}

std::vector<SMRepositoryRevision> SMRepository::Revisions(long project) {
    return AskHistory(project, [](qv::ProjectHistory& history) { return history.Revisions(); });
}

std::vector<SMRepositoryChange> SMRepository::Changes(long project, long from, long to) {
    return AskHistory(project, [&](qv::ProjectHistory& history) { return history.Changes(from, to); });
}

SMRepositoryChangeCounts SMRepository::CountChanges(long project, long from, long to) {
    return AskHistory(project, [&](qv::ProjectHistory& history) { return history.CountChanges(from, to); });
}

std::vector<long> SMRepository::LastRevisionsOf(long project, const std::vector<std::string>& names) {
    return AskHistory(project, [&](qv::ProjectHistory& history) { return history.LastRevisionsOf(names); });
}

std::vector<std::string> SMRepository::Faults(long project, long revision) {
    return qv::Naming(m_name, [&] {
        qv::StoreSession session(*m_backend);
        return qv::RowAudit(session, project, revision).Faults();
    });
}

std::vector<SMRepositoryRevision> SMRepository::RevisionsOf(long project, const QvULString& id) {
    return AskHistory(project, [&](qv::ProjectHistory& history) { return history.RevisionsOf(id.utf8()); });
}

std::vector<SMRepositoryBlame> SMRepository::Blame(long project, const QvULString& id) {
    return AskHistory(project, [&](qv::ProjectHistory& history) { return history.Blame(id.utf8()); });
}

SMRepositoryPruned SMRepository::Prune(long project, long keep, const std::function<void(bool committing)>& watch) {
    return AskHistory(project, [&](qv::ProjectHistory& history) { return history.Prune(keep, watch); });
}

std::unique_ptr<SMRepositoryHelper> SMRepository::NewProject() {
    return qv::Naming(m_name, [&] { return std::unique_ptr<SMRepositoryHelper>(new SMRepositoryHelper(m_backend, 0, 0)); });
}

std::unique_ptr<SMRepositoryHelper> SMRepository::OpenProject(long number) {
    for (const SMRepositoryProject& project : Projects())
        if (project.number == number)
            return qv::Naming(m_name, [&] {
                return std::unique_ptr<SMRepositoryHelper>(new SMRepositoryHelper(m_backend, project.number, project.revision));
            });
    throw TklRuntimeError("Repository '" + m_name + "': There is no project number " + std::to_string(number) + ".");
}

std::unique_ptr<SMRepositoryHelper> SMRepository::OpenProject(const QvULString& idOrName) {
    std::vector<long> byId, byName;
    for (const SMRepositoryProject& project : Projects()) {
        if (project.id == idOrName) byId.push_back(project.number);
        if (project.name == I18NString(idOrName)) byName.push_back(project.number);
    }
    const std::vector<long>& found = byId.empty() ? byName : byId;
    const std::string quoted = "'" + std::string(idOrName.utf8()) + "'";
    if (found.empty()) throw TklRuntimeError("Repository '" + m_name + "': There is no project " + quoted + ".");
    if (found.size() > 1)
        throw TklRuntimeError("Repository '" + m_name + "': Several projects are called " + quoted + "; name one by its id.");
    return OpenProject(found.front());
}
