#include <memory>
#include <string>

#include "objects/face/smmodelfiles_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

namespace {

struct Arguments : LossArguments {
    std::string main;
    std::string out = "-";
    bool indent = false;
};

int Join(const Arguments& arguments) {
    int status = STATUS_CLEAN;
    const schema_002_000::SMAccountedResult loaded = ReadModelToWrite(arguments.main, arguments, status);
    if (!loaded.project) return status;
    schema_002_000::SMSaveResult joined;
    {
        ProgressLine line("joining " + arguments.main);
        schema_002_000::SMSaveOptions saving;
        saving.control = line.Control();
        saving.indent = arguments.indent;
        joined = schema_002_000::SMJoinModel(*loaded.project, OutputPath(arguments.out), saving);
    }
    for (SMDiagnostic& diagnostic : joined.diagnostics)
        if (diagnostic.file == OutputPath(arguments.out)) diagnostic.file = NameOfOutput(arguments.out);
    PrintDiagnostics(stderr, joined.diagnostics, true);
    return Worse(status, StatusOfWriting(joined));
}

}  // namespace

void AddJoin(const Command& app) {
    const auto [command, arguments] = app.Add<Arguments>("join", "Write a model of several files as one canonical document", Join);
    command.Argument("MAIN", arguments.main, "The main document; - is standard input, with its files in the working directory");
    command.Option("-o,--output", "OUT", arguments.out, "Where to write; - is standard output");
    command.Flag("--indent", arguments.indent, "Lay the document out for people");
    AddLossOption(command, arguments);
    AddLimits(command);
    command.Footer(
        "Nothing is written when one of the files cannot be read. Files outside the directory of MAIN are never opened. Notes tell\n"
        "what the files did not bring back.");
}
