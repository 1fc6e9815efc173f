#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "objects/face/smmodelfiles_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

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
    return Worse(status, StatusOfWriting(split));
}

}  // namespace

void AddSplit(const Command& app) {
    const auto [command, arguments] = app.Add<Arguments>("split", "Write a model as a main document with files beside it", Split);
    command.Argument("IN", arguments.in, "The document; - is standard input");
    command.Option("-d,--directory", "DIR", arguments.directory, "Where to write; it is made if it is not there", Command::Use::required);
    command.Choice("--by", "KIND,...", arguments.by, {"namespace", "package"}, "What gets files of its own: namespace, package, or both");
    command.Option("--main", "NAME", arguments.options.mainName, "The name of the main document");
    AddLossOption(command, arguments);
    AddLimits(command);
    command.Footer(
        "Prints the files that are new or have changed; those that hold the same already are not touched. Notes tell what the\n"
        "files do not bring back.");
}
