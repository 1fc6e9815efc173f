#include "objects/face/smoperation_002_000.h"

#include <algorithm>
#include <exception>
#include <new>
#include <string>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smguard_002_000.h"

namespace schema_002_000 {

namespace {

SMDiagnostic InternalError(const std::string& what) {
    SMDiagnostic diagnostic;
    diagnostic.code = qv::code::INTERNAL_ERROR;
    diagnostic.message = what;
    return diagnostic;
}

SMStatus Run(SMDiagnosticCollector& collector, const std::function<bool()>& body) {
    const SMLogScope scope(collector);
    try {
        return body() ? SMStatus::done : SMStatus::failed;
    } catch (const SMCancelled&) {
        return SMStatus::cancelled;
    } catch (const TklRuntimeError& error) {
        collector.Add(error);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        collector.Add(InternalError(error.what()));
    } catch (...) {
        collector.Add(InternalError("an exception of an unknown kind"));
    }
    return SMStatus::failed;
}

}  // namespace

bool SMResult::HasFindings() const {
    return std::any_of(diagnostics.begin(), diagnostics.end(),
                       [](const SMDiagnostic& found) { return found.severity != SMSeverity::note; });
}

void SMRunGuarded(SMResult& result, std::size_t most, const std::function<bool()>& body) {
    SMDiagnosticCollector collector(most);
    result.status = Run(collector, body);
    result.diagnostics = collector.Finish();
    const auto isError = [](const SMDiagnostic& found) { return found.severity == SMSeverity::error; };
    if (result.status == SMStatus::failed && std::none_of(result.diagnostics.begin(), result.diagnostics.end(), isError))
        result.diagnostics.push_back(InternalError("the operation failed, and nothing told why"));
}

}  // namespace schema_002_000
