#include <memory>
#include <string>

#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments {
    std::string in;
    std::string out = "-";
    bool indent = false;
};

int Fmt(const Arguments& arguments) {
    const schema_002_000::SMLoadResult loaded = ReadModel(arguments.in);
    if (!loaded.IsDone()) return StatusOf(loaded);
    return Worse(StatusOf(loaded), StatusOf(SaveModel(*loaded.project, arguments.out, arguments.indent)));
}

}  // namespace

void AddFmt(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand("fmt", "Write a model as canonical document");
    command->add_option("IN", arguments->in, "The document; - is standard input")->required();
    command->add_option("-o,--output", arguments->out, "Where to write; - is standard output")->type_name("OUT")->capture_default_str();
    command->add_flag("--indent", arguments->indent, "Lay the document out for people");
    AddLimits(*command);
    command->callback([arguments, &status] { status = Fmt(*arguments); });
}
