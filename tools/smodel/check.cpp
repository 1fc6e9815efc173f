#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/json.h"
#include "tools/smodel/kinds.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/report.h"
#include "tools/smodel/terminal.h"

namespace {

struct Arguments {
    std::string model;
    bool all = false, json = false, sarif = false;
};

void PrintForPeople(const Arguments& arguments, const schema_002_000::SMCheckResult& checked) {
    if (!checked.IsDone()) return PrintDiagnostics(stderr, checked.diagnostics, true);
    PrintDiagnostics(stdout, checked.diagnostics, !arguments.all);
    PrintDiagnostics(stdout, DiagnosticsOf(checked.losses), false);
    PrintDiagnostics(stdout, checked.findings, false);
    for (const KindCount& kind : CountKinds(*checked.project)) {
        std::string number = Grouped(kind.count);
        number.insert(0, number.size() < 12 ? 12 - number.size() : 0, ' ');
        Print(number + "  " + kind.kind + "\n");
    }
}

int Check(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    const schema_002_000::SMCheckResult checked = CheckModel(arguments.model);
    const bool isMore = checked.IsDone() && !(checked.losses.empty() && checked.findings.empty());
    const int status = Worse(StatusOf(checked), isMore ? STATUS_FINDINGS : STATUS_CLEAN);
    std::error_code unknown;
    const CheckReport report{checked, arguments.model, status, std::filesystem::current_path(unknown).string()};
    if (arguments.json)
        Print(JsonText(report.Json()) + "\n");
    else if (arguments.sarif)
        Print(JsonText(report.Sarif()) + "\n");
    else
        PrintForPeople(arguments, checked);
    return status;
}

}  // namespace

void AddCheck(const Command& app) {
    const auto [command, arguments] = app.Add<Arguments>(
        "check", "Read a model; print what is wrong with it, what a save would not keep, and its objects by kind", Check);
    command.Argument("MODEL", arguments.model, "The document; - is standard input");
    command.Flag("--all", arguments.all, "Print each event, instead of those of one kind once with their number");
    command.Flag("--json", arguments.json, "Print all as one JSON object");
    command.Flag("--sarif", arguments.sarif, "Print the findings as SARIF 2.1.0, for tools that show them");
    command.Exclude("--sarif", "--json");
    AddLimits(command);
}
