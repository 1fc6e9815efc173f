#include <memory>
#include <string>

#include "core/qvutils/diag/codes.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/status.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments {
    std::string code;
    bool all = false;
};

void PrintWhole(const SMCodeInfo& info) {
    const std::string heading = std::string("### ") + info.code + " — " + info.title;
    Print(Paint(stdout, Colour::bold, heading) + "\n\n" + info.explanation + "\n\n    " + info.example + "\n");
}

int Explain(const Arguments& arguments) {
    if (!arguments.code.empty()) {
        const SMCodeInfo* const info = SMFindCode(arguments.code);
        if (info) {
            PrintWhole(*info);
            return STATUS_CLEAN;
        }
        Complain("there is no code \"" + arguments.code + "\"; smodel explain lists them all");
        return STATUS_UNUSABLE;
    }
    for (const SMCodeInfo& info : SMCodes()) {
        if (!arguments.all) {
            Print(std::string(info.code) + "  " + info.title + "\n");
            continue;
        }
        PrintWhole(info);
        Print("\n");
    }
    return STATUS_CLEAN;
}

}  // namespace

void AddExplain(CLI::App& app, int& status) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command =
        app.add_subcommand("explain", "Tell what a code of a finding means, and what to do; without a code, list them");
    command->add_option("CODE", arguments->code, "As it stands in brackets behind the severity, like SM1001");
    command->add_flag("--all", arguments->all, "Explain all of them");
    command->callback([arguments, &status] { status = Explain(*arguments); });
}
