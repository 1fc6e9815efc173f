#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "objects/face/smmodelrename_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

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
    if (!split) throw CLI::ValidationError("OLD=NEW", "'" + argument + "' has no equals sign");
    if (rename.oldName.empty() || rename.newName.empty()) throw CLI::ValidationError("OLD=NEW", "'" + argument + "' lacks a name");
    return rename;
}

int Rename(const Arguments& arguments, const std::vector<std::string>& words) {
    std::vector<SMNamespaceRename> renames;
    for (const std::string& argument : arguments.renames) {
        // a word in brackets has been taken apart as if it were a list; its new name would end with a bracket
        if (std::find(words.begin(), words.end(), argument) == words.end())
            throw CLI::ValidationError("OLD=NEW", "a name cannot begin with a bracket when the other one ends with one");
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

void AddRename(CLI::App& app, int& status, const std::vector<std::string>& words) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand("rename", "Rename namespaces, and carry their new names into the references that follow");
    command->add_option("IN", arguments->in, "The document; - is standard input")->required();
    command->add_option("OLD=NEW", arguments->renames, "Old and new name of a namespace; \\= stands for an equals sign in a name")
        ->required();
    command->add_option("-o,--output", arguments->out, "Where to write; - is standard output")->type_name("OUT")->required();
    AddLossOption(*command, *arguments);
    AddLimits(*command);
    command->footer("The texts that still use an old name afterwards are listed: references of two parts are not renamed.");
    command->callback([arguments, &status, &words] { status = Rename(*arguments, words); });
}
