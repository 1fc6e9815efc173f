#include "tools/smodel/repo.h"

#include "tools/smodel/commands.h"

void AddRepositoryOption(const Command& command, RepositoryArguments& arguments) {
    command.Argument("REPO", arguments.repository, "The repository: a file name, sqlite:FILE, or postgresql://...");
}

void AddRepositoryOptions(const Command& command, RepositoryArguments& arguments) {
    AddRepositoryOption(command, arguments);
    command.Option("--project", "NAME|ID|NUMBER", arguments.project,
                   "The id, name or number of the project, as ls tells them, where there are several");
}

void AddRepo(const Command& app) {
    const Command repo = app.AddGroup("repo", "Keep models in a repository, with their history");
    AddRepoPut(repo);
    AddRepoGet(repo);
    AddRepoHistory(repo);
    AddRepoRestore(repo);
    AddRepoVerify(repo);
}
