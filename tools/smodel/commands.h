#pragma once

#include <string>
#include <vector>

#include "tools/smodel/command.h"

// Each adds its subcommand.
void AddCheck(const Command& app);
void AddFmt(const Command& app);
void AddLs(const Command& app);
void AddShow(const Command& app);
/** `words`: the command line as it was given; borrowed as long as that lives. */
void AddRename(const Command& app, const std::vector<std::string>& words);
void AddSplit(const Command& app);
void AddJoin(const Command& app);
void AddRepo(const Command& app);
void AddExplain(const Command& app);
void AddDemo(const Command& app);
