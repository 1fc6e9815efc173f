#include <memory>
#include <string>

#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments : LossArguments {
    std::string in;
    std::string out = "-";
    bool indent = false;
};

int Fmt(const Arguments& arguments) {
    int status = STATUS_CLEAN;
    const schema_002_000::SMAccountedResult loaded = ReadModelToWrite(arguments.in, arguments, status);
    if (!loaded.project) return status;
    return Worse(status, StatusOf(SaveModel(*loaded.project, arguments.out, arguments.indent)));
}

}  // namespace

void AddFmt(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand("fmt", "Write a model as canonical document");
    command->add_option("IN", arguments->in, "The document; - is standard input")->required();
    command->add_option("-o,--output", arguments->out, "Where to write; - is standard output")->type_name("OUT")->capture_default_str();
    AddLossOption(*command, *arguments);
    command->add_flag("--indent", arguments->indent, "Lay the document out for people");
    AddLimits(*command);
    command->callback([arguments, &status] { status = Fmt(*arguments); });
}
