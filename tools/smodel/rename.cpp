#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "objects/face/smmodelrename_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

namespace {

using schema_002_000::SMNamespaceRename;

struct Arguments : LossArguments {
    std::string in, out;
    std::vector<std::string> renames;
};

/** Splits at the first equals sign that no backslash stands before. */
SMNamespaceRename Parse(const std::string& argument) {
    SMNamespaceRename rename;
    bool split = false;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        std::string& name = split ? rename.newName : rename.oldName;
        if (argument[i] == '\\' && i + 1 < argument.size() && argument[i + 1] == '=')
            name += argument[++i];
        else if (argument[i] == '=' && !split)
            split = true;
        else
            name += argument[i];
    }
    if (!split) throw UsageError{"OLD=NEW", "'" + argument + "' has no equals sign"};
    if (rename.oldName.empty() || rename.newName.empty()) throw UsageError{"OLD=NEW", "'" + argument + "' lacks a name"};
    return rename;
}

int Rename(const Arguments& arguments, const std::vector<std::string>& words) {
    std::vector<SMNamespaceRename> renames;
    for (const std::string& argument : arguments.renames) {
        // a word in brackets has been taken apart as if it were a list; its new name would end with a bracket
        if (std::find(words.begin(), words.end(), argument) == words.end())
            throw UsageError{"OLD=NEW", "a name cannot begin with a bracket when the other one ends with one"};
        renames.push_back(Parse(argument));
    }
    int status = STATUS_CLEAN;
    const schema_002_000::SMAccountedResult loaded = ReadModelToWrite(arguments.in, arguments, status);
    if (!loaded.project) return status;
    schema_002_000::SMResult renamed;
    {
        ProgressLine line("renaming");
        renamed = schema_002_000::SMRenameNamespaces(*loaded.project, renames, NameOfOutput(arguments.out), line.Control());
    }
    if (!renamed.IsDone()) {
        PrintDiagnostics(stderr, renamed.diagnostics, false);
        return StatusOf(renamed);
    }
    const schema_002_000::SMSaveResult saved = SaveModel(*loaded.project, arguments.out);
    if (saved.IsDone()) PrintDiagnostics(stderr, renamed.diagnostics, false);
    return Worse(Worse(status, StatusOf(renamed)), StatusOf(saved));
}

}  // namespace

void AddRename(const Command& app, const std::vector<std::string>& words) {
    const auto [command, arguments] =
        app.Add<Arguments>("rename", "Rename namespaces, and carry their new names into the references that follow",
                           [&words](const Arguments& typed) { return Rename(typed, words); });
    command.Argument("IN", arguments.in, "The document; - is standard input");
    command.Arguments("OLD=NEW", arguments.renames, "Old and new name of a namespace; \\= stands for an equals sign in a name");
    command.Option("-o,--output", "OUT", arguments.out, "Where to write; - is standard output", Command::Use::required);
    AddLossOption(command, arguments);
    AddLimits(command);
    command.Footer("The texts that still use an old name afterwards are listed: references of two parts are not renamed.");
}
