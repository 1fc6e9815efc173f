#include <memory>
#include <string>

#include "core/qvutils/diag/codes.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/status.h"
#include "tools/smodel/terminal.h"

namespace {

struct Arguments {
    std::string code;
    bool all = false;
};

std::string InUpperCase(std::string code) {
    for (char& c : code)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return code;
}

void PrintWhole(const SMCodeInfo& info) {
    const std::string heading = std::string("### ") + info.code + " — " + info.title;
    Print(Paint(stdout, Colour::bold, heading) + "\n\n" + info.explanation + "\n\n    " + info.example + "\n");
}

int Explain(const Arguments& arguments) {
    if (!arguments.code.empty()) {
        const SMCodeInfo* const info = SMFindCode(InUpperCase(arguments.code));
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

void AddExplain(const Command& app) {
    const auto [command, arguments] =
        app.Add<Arguments>("explain", "Tell what a code of a finding means, and what to do; without a code, list them", Explain);
    command.Argument("CODE", arguments.code, "As it stands in brackets behind the severity, like SM1001", Command::Use::optional);
    command.Flag("--all", arguments.all, "Explain all of them");
}
