#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

// Each adds its subcommand, which sets the exit status when it has run. `status` is borrowed for as long as the command line lives.
void AddCheck(CLI::App& app, int& status);
void AddFmt(CLI::App& app, int& status);
void AddLs(CLI::App& app, int& status);
void AddShow(CLI::App& app, int& status);
/** `words`, borrowed as well: the command line as it was given. */
void AddRename(CLI::App& app, int& status, const std::vector<std::string>& words);
void AddSplit(CLI::App& app, int& status);
void AddJoin(CLI::App& app, int& status);
void AddRepo(CLI::App& app, int& status);
void AddExplain(CLI::App& app, int& status);
void AddDemo(CLI::App& app, int& status);
