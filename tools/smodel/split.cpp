#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "objects/face/smmodelfiles_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments : LossArguments {
    std::string in, directory;
    std::vector<std::string> by = {"namespace", "package"};
    schema_002_000::SMSplitOptions options;
};

int Split(const Arguments& arguments) {
    int status = STATUS_CLEAN;
    const schema_002_000::SMAccountedResult loaded = ReadModelToWrite(arguments.in, arguments, status);
    if (!loaded.project) return status;
    schema_002_000::SMSplitOptions options = arguments.options;
    const auto has = [&](const char* kind) { return std::find(arguments.by.begin(), arguments.by.end(), kind) != arguments.by.end(); };
    options.namespaces = has("namespace");
    options.packages = has("package");
    schema_002_000::SMSplitResult split;
    {
        ProgressLine line("writing to " + arguments.directory);
        options.control = line.Control();
        split = schema_002_000::SMSplitModel(*loaded.project, arguments.directory, options);
    }
    PrintDiagnostics(stderr, split.diagnostics, true);
    for (const std::string& name : split.changed) Print(Printable(arguments.directory + "/" + name) + "\n");
    return Worse(status, StatusOf(split));
}

}  // namespace

void AddSplit(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand("split", "Write a model as a main document with files beside it");
    command->add_option("IN", arguments->in, "The document; - is standard input")->required();
    command->add_option("-d,--directory", arguments->directory, "Where to write; it is made if it is not there")
        ->type_name("DIR")
        ->required();
    command->add_option("--by", arguments->by, "What gets files of its own: namespace, package, or both")
        ->delimiter(',')
        ->check(CLI::IsMember({"namespace", "package"}))
        ->type_name("KIND,...")
        ->capture_default_str();
    command->add_option("--main", arguments->options.mainName, "The name of the main document")->type_name("NAME")->capture_default_str();
    AddLossOption(*command, *arguments);
    AddLimits(*command);
    command->footer(
        "Prints the files that are new or have changed; those that hold the same already are not touched. Notes tell what the\n"
        "files do not bring back.");
    command->callback([arguments, &status] { status = Split(*arguments); });
}
