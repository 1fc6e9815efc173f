#pragma once

#include <string>

namespace CLI {
class App;
}

/** What every subcommand of "repo" is given. */
struct RepositoryArguments {
    std::string repository, project;
};

void AddRepositoryOption(CLI::App& command, RepositoryArguments& arguments);
/** The repository, and the project where it holds more than one. */
void AddRepositoryOptions(CLI::App& command, RepositoryArguments& arguments);

// Each adds its subcommands to "repo"; `status` is borrowed as by the other commands.
void AddRepoPut(CLI::App& repo, int& status);
void AddRepoGet(CLI::App& repo, int& status);
void AddRepoHistory(CLI::App& repo, int& status);
void AddRepoRestore(CLI::App& repo, int& status);
void AddRepoVerify(CLI::App& repo, int& status);
