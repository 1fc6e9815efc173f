#include "tools/smodel/repo.h"

#include "tools/smodel/commands.h"

#include <CLI/CLI.hpp>

void AddRepositoryOption(CLI::App& command, RepositoryArguments& arguments) {
    command.add_option("REPO", arguments.repository, "The repository: a file name, sqlite:FILE, or postgresql://...")->required();
}

void AddRepositoryOptions(CLI::App& command, RepositoryArguments& arguments) {
    AddRepositoryOption(command, arguments);
    command.add_option("--project", arguments.project, "The id or name of the project, where there are several")->type_name("NAME|ID");
}

void AddRepo(CLI::App& app, int& status) {
    CLI::App* const repo = app.add_subcommand("repo", "Keep models in a repository, with their history");
    repo->require_subcommand(1);
    AddRepoPut(*repo, status);
    AddRepoGet(*repo, status);
    AddRepoHistory(*repo, status);
    AddRepoRestore(*repo, status);
    AddRepoVerify(*repo, status);
}
