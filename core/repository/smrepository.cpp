#include "core/repository/smrepository.h"

#include <algorithm>

#include "core/repository/celldate.h"
#include "core/repository/postgres/postgresbackend.h"
#include "core/repository/sqlite/sqlitebackend.h"
#include "core/repository/storesession.h"

namespace {

/** Version 1 is that of the first release that promises to upgrade; until then a store of another format is refused. */
constexpr std::string_view FORMAT = "0.1";

std::shared_ptr<qv::StoreBackend> BackendFor(const std::string& location) {
    const std::size_t colon = location.find(':');
    const std::string scheme = colon == std::string::npos ? "" : location.substr(0, colon);
    if (scheme == "sqlite") return qv::MakeSqliteBackend(location.substr(colon + 1));
    if (scheme == "postgresql" || scheme == "postgres") return qv::MakePostgresBackend(location);
    if (location.compare(std::min(colon, location.size()), 3, "://") == 0)
        throw TklRuntimeError("Repositories of the kind '" + scheme + "' are not supported by this build.");
    return qv::MakeSqliteBackend(location);
}

void FillNewStore(qv::StoreConnection& connection) {
    const auto insert = connection.PrepareInsert(qv::Schema::Get().store());
    const qv::Cell row[] = {qv::Cell::Text(qv::STORE_FORMAT), qv::Cell::Text(FORMAT)};
    insert->Add(row);
    insert->Finish();
}

std::string FormatOf(qv::StoreBackend& backend) {
    using namespace qv::storetable;
    const auto connection = backend.Connect();
    const auto source = connection->Prepare(qv::Query{&qv::Schema::Get().store(), {value}, {{name, qv::Condition::equal}}});
    const qv::Cell parameters[] = {qv::Cell::Text(qv::STORE_FORMAT)};
    qv::Cell row[1];
    source->Start(parameters);
    return source->Next(row) ? std::string(row[0].view) : std::string();
}

/** Opens what is there, makes what may be made, and refuses all else. */
void Settle(qv::StoreBackend& backend, SMRepository::Mode mode) {
    using State = qv::StoreBackend::State;
    const State state = backend.Inspect();
    if (state == State::foreign) throw qv::StoreError("It is no repository of models.");
    if (state == State::absent || state == State::empty) {
        if (mode != SMRepository::createIfAbsent)
            throw qv::StoreError(state == State::absent ? "There is no such repository." : "It is empty.");
        backend.Create(qv::Schema::Get().AllShapes(), FillNewStore);
    }
    if (const std::string format = FormatOf(backend); format != FORMAT)
        throw qv::StoreError("It has the format " + format + "; this build reads and writes " + std::string(FORMAT) + " alone.");
}

/** Runs the work with the store's name in what it raises. */
template <class Work>
auto Naming(const std::string& name, Work&& work) {
    try {
        return work();
    } catch (const qv::StoreError& error) {
        throw TklRuntimeError("Repository '" + name + "': " + error.message());
    }
}

}  // namespace

SMRepository::SMRepository(const std::string& location, Mode mode) : SMRepository(BackendFor(location), mode) {}

SMRepository::SMRepository(std::shared_ptr<qv::StoreBackend> backend, Mode mode)
    : m_backend(std::move(backend)), m_name(m_backend->Name()) {
    Naming(m_name, [&] { Settle(*m_backend, mode); });
}

SMRepository::~SMRepository() = default;

std::vector<SMRepositoryProject> SMRepository::Projects() {
    return Naming(m_name, [&] {
        qv::StoreSession session(*m_backend);
        std::vector<SMRepositoryProject> projects;
        for (const qv::ProjectEntry& entry : session.Projects()) {
            const qv::Cell savedAt = session.SavedAt(entry.number, entry.head);
            projects.push_back({entry.number, QvULString(std::string_view(entry.id)), I18NString(std::string_view(entry.name)), entry.head,
                                savedAt.kind == qv::Cell::null ? QvDate(false) : qv::DateOf(savedAt.number)});
        }
        std::sort(projects.begin(), projects.end(),
                  [](const SMRepositoryProject& a, const SMRepositoryProject& b) { return a.number < b.number; });
        return projects;
    });
}

std::unique_ptr<SMRepositoryHelper> SMRepository::NewProject() {
    return Naming(m_name, [&] { return std::unique_ptr<SMRepositoryHelper>(new SMRepositoryHelper(m_backend, 0, 0)); });
}

std::unique_ptr<SMRepositoryHelper> SMRepository::OpenProject(long number) {
    for (const SMRepositoryProject& project : Projects())
        if (project.number == number)
            return Naming(m_name, [&] {
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
