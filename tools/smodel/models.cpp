#include "tools/smodel/models.h"

#include <algorithm>

#include "tools/smodel/interrupt.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/terminal.h"

using namespace schema_002_000;

std::string InputPath(const std::string& given) {
    return given == "-" ? "/dev/stdin" : given;
}

std::string OutputPath(const std::string& given) {
    return given == "-" ? "/dev/stdout" : given;
}

std::string NameOfOutput(const std::string& given) {
    return given == "-" ? "<stdout>" : given;
}

SMLoadOptions LoadOptionsFor(const std::string& given) {
    SMLoadOptions options;
    options.limits = LimitsInForce();
    if (given == "-") {
        options.name = "<stdin>";
        options.baseDirectory = ".";
    }
    return options;
}

SMLoadResult ReadModel(const std::string& given, bool quiet) {
    SMLoadResult result;
    {
        const LeaveAtOnce nothingToTidyUp;
        ProgressLine line("reading " + given);
        SMLoadOptions options = LoadOptionsFor(given);
        options.control = line.Control();
        result = SMLoadModel(InputPath(given), options);
    }
    if (!quiet || !result.IsDone()) PrintDiagnostics(stderr, result.diagnostics, true);
    return result;
}

namespace {

SMSaveResult Save(const std::string& given, const std::function<SMSaveResult(const SMSaveOptions&)>& save) {
    SMSaveResult result;
    {
        const LeaveAtOnce nothingToTidyUp(given == "-");
        ProgressLine line("writing " + given);
        SMSaveOptions options;
        options.control = line.Control();
        result = save(options);
    }
    for (SMDiagnostic& diagnostic : result.diagnostics)
        if (diagnostic.file == OutputPath(given)) diagnostic.file = NameOfOutput(given);
    PrintDiagnostics(stderr, result.diagnostics, true);
    return result;
}

}  // namespace

SMSaveResult SaveModel(const SMProject2& project, const std::string& given, bool indent) {
    return Save(given, [&](SMSaveOptions options) {
        options.indent = indent;
        return SMSaveModel(project, OutputPath(given), options);
    });
}

SMSaveResult SaveDocument(const std::function<void(QvXMLFormatTarget&)>& write, const std::string& given) {
    return Save(given, [&](const SMSaveOptions& options) { return SMSaveDocument(OutputPath(given), write, options); });
}

int StatusOf(const SMResult& result) {
    switch (result.status) {
    case SMStatus::done: return result.HasFindings() ? STATUS_FINDINGS : STATUS_CLEAN;
    case SMStatus::cancelled: return InterruptedStatus();
    case SMStatus::failed: break;
    }
    return STATUS_UNUSABLE;
}

int Worse(int a, int b) {
    return std::max(a, b);
}
