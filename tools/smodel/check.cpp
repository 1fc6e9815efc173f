#include <memory>
#include <string>

#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/kinds.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments {
    std::string model;
    bool all = false;
};

int Check(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    const schema_002_000::SMLoadResult loaded = ReadModel(arguments.model, true);
    if (!loaded.IsDone()) return StatusOf(loaded);
    PrintDiagnostics(stdout, loaded.diagnostics, !arguments.all);
    for (const KindCount& kind : CountKinds(*loaded.project)) {
        std::string number = Grouped(kind.count);
        number.insert(0, number.size() < 12 ? 12 - number.size() : 0, ' ');
        Print(number + "  " + kind.kind + "\n");
    }
    return StatusOf(loaded);
}

}  // namespace

void AddCheck(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand("check", "Read a model; print what is wrong with it, and its objects by kind");
    command->add_option("MODEL", arguments->model, "The document; - is standard input")->required();
    command->add_flag("--all", arguments->all, "Print each event, instead of those of one kind once with their number");
    command->callback([arguments, &status] { status = Check(*arguments); });
}
