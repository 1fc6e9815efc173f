#include "tools/smodel/repositories.h"

#include "core/qvutils/diag/tklerrors.h"

std::unique_ptr<SMRepositoryHelper> ContextFor(SMRepository& repository, const schema_002_000::SMProject2& project) {
    for (const SMRepositoryProject& stored : repository.Projects())
        if (project.GetId().empty() ? stored.name == project.GetName() : stored.id == project.GetId())
            return repository.OpenProject(stored.number);
    return repository.NewProject();
}

std::unique_ptr<SMRepositoryHelper> ContextOf(SMRepository& repository, const std::string& idOrName) {
    if (!idOrName.empty()) return repository.OpenProject(QvULString(idOrName.c_str()));
    const std::vector<SMRepositoryProject> projects = repository.Projects();
    if (projects.size() == 1) return repository.OpenProject(projects.front().number);
    if (projects.empty()) throw TklRuntimeError(repository.Name() + " holds no project");
    std::string names;
    for (const SMRepositoryProject& project : projects)
        names.append(names.empty() ? "" : ", ").append(project.name.utf8()).append(" (").append(project.id.utf8()).append(")");
    throw TklRuntimeError(repository.Name() + " holds more than one project, name one of them by --project: " + names);
}
