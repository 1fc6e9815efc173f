#include <memory>
#include <string>

#include "tools/smodel/commands.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"

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
    return Worse(status, StatusOfWriting(SaveModel(*loaded.project, arguments.out, arguments.indent)));
}

}  // namespace

void AddFmt(const Command& app) {
    const auto [command, arguments] = app.Add<Arguments>("fmt", "Write a model as canonical document", Fmt);
    command.Argument("IN", arguments.in, "The document; - is standard input");
    command.Option("-o,--output", "OUT", arguments.out, "Where to write; - is standard output");
    AddLossOption(command, arguments);
    command.Flag("--indent", arguments.indent, "Lay the document out for people");
    AddLimits(command);
}
