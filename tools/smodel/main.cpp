#include <algorithm>
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smguard_002_000.h"
#include "tools/smodel/command.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/status.h"
#include "tools/smodel/terminal.h"

namespace {

int RunToItsEnd(CommandLine& line, int argc, char** argv) {
    try {
        return line.Run(argc, argv);
    } catch (const schema_002_000::SMCancelled&) {
        return InterruptedStatus();
    }
}

int Run(int argc, char** argv) {
    const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    CommandLine line(
        "Works on business metadata models: documents, and repositories that hold them.", "smodel", "smodel " SMODEL_VERSION,
        "Exit status: 0 clean; 1 findings or differences; 2 wrong usage, or something that cannot be read or written; 3 content "
        "would\nbe lost; 4 the repository has moved on; 130 interrupted.");
    const Command root = line.Root();
    AddCheck(root);
    AddFmt(root);
    AddLs(root);
    AddShow(root);
    AddRename(root, words);
    AddSplit(root);
    AddJoin(root);
    AddRepo(root);
    AddExplain(root);
    AddDemo(root);
    const int status = RunToItsEnd(line, argc, argv);
    // a demonstration leaves the files of the models that it came to
    if (Interrupted() && status == InterruptedStatus())
        Complain(!words.empty() && words.front() == "demo" ? "interrupted" : "interrupted; nothing was written");
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    int status = STATUS_UNUSABLE;
    try {
        WatchInterrupts();
        std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the largest size of files fails, and tells so
        status = Run(argc, argv);
    } catch (const TklRuntimeError& error) {
        Complain(error.what());
    } catch (const std::bad_alloc&) {
        Complain("out of memory");
    } catch (const std::exception& error) {
        Complain(error.what());
    } catch (...) {
        Complain("the command ended by an exception of an unknown kind");
    }
    return FinishOutput() ? status : STATUS_UNUSABLE;
}
