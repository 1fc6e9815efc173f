#include <memory>
#include <string>

#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/kinds.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments {
    std::string model;
    bool all = false;
};

/** Looks up every reference; prints those that dangle, and gives the status that this leads to. */
int CheckReferences(const Arguments& arguments, const schema_002_000::SMProject2& project) {
    schema_002_000::SMReferenceCheck check;
    {
        ProgressLine line("looking up references");
        check = schema_002_000::SMCheckReferences(project, line.Control());
    }
    PrintDiagnostics(stdout, check.diagnostics, !arguments.all);
    std::vector<SMDiagnostic> dangling;
    for (const schema_002_000::SMDanglingReference& reference : check.dangling) {
        const schema_002_000::SMObjectBase& holder = *reference.place.holder;
        const std::string address = schema_002_000::SMAddressOf(holder);
        SMDiagnostic diagnostic;
        diagnostic.code = "dangling-reference";
        diagnostic.severity = SMSeverity::warning;
        diagnostic.file = arguments.model == "-" ? "<stdin>" : arguments.model;
        diagnostic.objectPath = address.empty() ? schema_002_000::SMDescribeObject(holder).path : address;
        diagnostic.message = "the reference " + reference.text + " in '" + reference.place.field + "' names no object of the model";
        dangling.push_back(std::move(diagnostic));
    }
    PrintDiagnostics(stdout, dangling, false);
    return Worse(StatusOf(check), dangling.empty() ? STATUS_CLEAN : STATUS_FINDINGS);
}

int Check(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    const schema_002_000::SMAccountedResult loaded = ReadModelAccounted(arguments.model);
    if (!loaded.IsDone()) return StatusOf(loaded);
    PrintDiagnostics(stdout, loaded.diagnostics, !arguments.all);
    std::vector<SMDiagnostic> losses;
    for (const schema_002_000::SMLoss& loss : loaded.losses) losses.push_back(schema_002_000::SMDiagnosticOf(loss));
    PrintDiagnostics(stdout, losses, false);
    for (const KindCount& kind : CountKinds(*loaded.project)) {
        std::string number = Grouped(kind.count);
        number.insert(0, number.size() < 12 ? 12 - number.size() : 0, ' ');
        Print(number + "  " + kind.kind + "\n");
    }
    return Worse(losses.empty() ? StatusOf(loaded) : STATUS_FINDINGS, CheckReferences(arguments, *loaded.project));
}

}  // namespace

void AddCheck(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command =
        app.add_subcommand("check", "Read a model; print what is wrong with it, its objects by kind, and its references that lead nowhere");
    command->add_option("MODEL", arguments->model, "The document; - is standard input")->required();
    command->add_flag("--all", arguments->all, "Print each event, instead of those of one kind once with their number");
    AddLimits(*command);
    command->callback([arguments, &status] { status = Check(*arguments); });
}
