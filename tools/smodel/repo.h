#pragma once

#include <string>

#include "tools/smodel/command.h"

/** What every subcommand of "repo" is given. */
struct RepositoryArguments {
    std::string repository, project;
};

void AddRepositoryOption(const Command& command, RepositoryArguments& arguments);
/** The repository, and the project where it holds more than one. */
void AddRepositoryOptions(const Command& command, RepositoryArguments& arguments);

// Each adds its subcommands to "repo".
void AddRepoPut(const Command& repo);
void AddRepoGet(const Command& repo);
void AddRepoHistory(const Command& repo);
void AddRepoRestore(const Command& repo);
void AddRepoVerify(const Command& repo);
