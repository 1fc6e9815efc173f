#include <algorithm>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "core/qvutils/diag/tklerrors.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/status.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

namespace {

int Run(int argc, char** argv) {
    int status = STATUS_CLEAN;
    const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    CLI::App app("Works on business metadata models: documents, and repositories that hold them.", "smodel");
    app.set_version_flag("--version", std::string("smodel ") + SMODEL_VERSION);
    app.require_subcommand(1);
    app.footer(
        "Exit status: 0 clean; 1 findings or differences; 2 wrong usage, or something that cannot be read or written; 3 content would\n"
        "be lost; 4 the repository has moved on; 130 interrupted.");
    AddCheck(app, status);
    AddFmt(app, status);
    AddLs(app, status);
    AddShow(app, status);
    AddRename(app, status, words);
    AddSplit(app, status);
    AddJoin(app, status);
    AddRepo(app, status);
    AddExplain(app, status);
    AddDemo(app, status);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? STATUS_CLEAN : STATUS_UNUSABLE;
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    int status = STATUS_UNUSABLE;
    try {
        WatchInterrupts();
        status = Run(argc, argv);
    } catch (const TklRuntimeError& error) {
        Complain(error.what());
    } catch (const std::bad_alloc&) {
        Complain("out of memory");
    } catch (const std::exception& error) {
        Complain(error.what());
    }
    return FinishOutput() ? status : STATUS_UNUSABLE;
}
