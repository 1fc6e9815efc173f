#include "tools/smodel/models.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

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

namespace {

/** Of a regular file; 0 for anything else. */
std::size_t SizeOf(const std::string& path) {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown)) return 0;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    return unknown ? 0 : static_cast<std::size_t>(size);
}

/** `told` is what a signal says meanwhile; null for nothing. */
template <class Load>
auto Read(const std::string& given, Load load, const char* told = nullptr) {
    const LeaveAtOnce nothingToTidyUp(true, told);
    ProgressLine line("reading " + given);
    line.SetBytes(SizeOf(InputPath(given)));
    SMLoadOptions options = LoadOptionsFor(given);
    options.control = line.Control();
    return load(InputPath(given), options);
}

}  // namespace

SMLoadResult ReadModel(const std::string& given, bool quiet) {
    SMLoadResult result = Read(given, SMLoadModel);
    if (!quiet || !result.IsDone()) PrintDiagnostics(stderr, result.diagnostics, true);
    return result;
}

void AddLossOption(const Command& command, LossArguments& arguments) {
    command.Flag("--accept-loss", arguments.acceptLoss, "Write even if content of the document is lost; it is listed all the same");
}

std::vector<SMDiagnostic> DiagnosticsOf(const std::vector<SMLoss>& losses) {
    std::vector<SMDiagnostic> told;
    told.reserve(losses.size());
    for (const SMLoss& loss : losses) told.push_back(SMDiagnosticOf(loss));
    return told;
}

SMCheckResult CheckModel(const std::string& given) {
    return Read(given, SMCheckModel);
}

SMAccountedResult ReadModelToWrite(const std::string& given, const LossArguments& arguments, int& status) {
    SMAccountedResult result = Read(given, SMLoadModelAccounted, NOTHING_WRITTEN);
    status = StatusOf(result);
    PrintDiagnostics(stderr, result.diagnostics, true);
    if (!result.IsDone()) return result;
    PrintDiagnostics(stderr, DiagnosticsOf(result.losses), false);
    if (const std::size_t unread = result.project->m_partFiles.UnreadCount(); unread > 0) {
        Complain("the model is not complete, so nothing was written: " + Counted(unread, "file") +
                 " of it could not be read; mend what is told above, or take the placeholder out of the document");
        result.project = nullptr;
        status = STATUS_UNUSABLE;
        return result;
    }
    if (result.losses.empty()) return result;
    status = Worse(status, STATUS_FINDINGS);
    if (arguments.acceptLoss) return result;
    Complain("nothing was written, since " + Counted(result.losses.size(), "piece") +
             " of content would be lost; mend what is told above, or give --accept-loss");
    result.project = nullptr;
    status = STATUS_LOSS;
    return result;
}

namespace {

SMSaveResult Save(const std::string& given, std::size_t bytes, const std::function<SMSaveResult(const SMSaveOptions&)>& save) {
    SMSaveResult result;
    {
        const LeaveAtOnce nothingToTidyUp(given == "-");
        ProgressLine line("writing " + given);
        line.SetBytes(bytes);
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
    return Save(given, 0, [&](SMSaveOptions options) {
        options.indent = indent;
        return SMSaveModel(project, OutputPath(given), options);
    });
}

SMSaveResult SaveDocument(const std::function<void(QvXMLFormatTarget&)>& write, const std::string& given, std::size_t bytes) {
    return Save(given, bytes, [&](const SMSaveOptions& options) { return SMSaveDocument(OutputPath(given), write, options); });
}

void LeaveToTheSystem([[maybe_unused]] SMProject2& project) {
#ifndef __SANITIZE_ADDRESS__
    project.addReference();
#endif
}

int StatusOf(const SMResult& result) {
    switch (result.status) {
    case SMStatus::done: return result.HasFindings() ? STATUS_FINDINGS : STATUS_CLEAN;
    case SMStatus::cancelled: return InterruptedStatus();
    case SMStatus::failed: break;
    }
    return STATUS_UNUSABLE;
}

int StatusOfWriting(const SMResult& result) {
    const auto isError = [](const SMDiagnostic& diagnostic) { return diagnostic.severity == SMSeverity::error; };
    const bool isWhole = std::none_of(result.diagnostics.begin(), result.diagnostics.end(), isError);
    return result.IsDone() && isWhole ? STATUS_CLEAN : StatusOf(result);
}

int Worse(int a, int b) {
    return std::max(a, b);
}
