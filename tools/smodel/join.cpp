#include <memory>
#include <string>

#include "objects/face/smmodelfiles_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

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
    return Worse(status, StatusOf(joined));
}

}  // namespace

void AddJoin(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand("join", "Write a model of several files as one canonical document");
    command->add_option("MAIN", arguments->main, "The main document; - is standard input, with its files in the working directory")
        ->required();
    command->add_option("-o,--output", arguments->out, "Where to write; - is standard output")->type_name("OUT")->capture_default_str();
    command->add_flag("--indent", arguments->indent, "Lay the document out for people");
    AddLossOption(*command, *arguments);
    AddLimits(*command);
    command->footer(
        "Nothing is written when one of the files cannot be read. Files outside the directory of MAIN are never opened. Notes tell\n"
        "what the files did not bring back.");
    command->callback([arguments, &status] { status = Join(*arguments); });
}
