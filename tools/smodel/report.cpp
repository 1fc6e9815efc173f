#include "tools/smodel/report.h"

#include <functional>

#include "core/qvutils/diag/codes.h"
#include "tools/smodel/kinds.h"
#include "tools/smodel/status.h"

using nlohmann::ordered_json;
using schema_002_000::SMLoss;

namespace {

using Tell = std::function<void(const SMDiagnostic&, const SMLoss*)>;

/** Events first, then losses, then what is not consistent: as they are printed. */
void ForEachFinding(const schema_002_000::SMCheckResult& result, const Tell& tell) {
    for (const SMDiagnostic& found : result.diagnostics) tell(found, nullptr);
    for (const SMLoss& loss : result.losses) tell(schema_002_000::SMDiagnosticOf(loss), &loss);
    for (const SMDiagnostic& found : result.findings) tell(found, nullptr);
}

const char* WordOf(SMSeverity severity) {
    return severity == SMSeverity::error ? "error" : severity == SMSeverity::warning ? "warning" : "note";
}

const char* WordOfStatus(int status) {
    return status == STATUS_CLEAN ? "clean" : status == STATUS_FINDINGS ? "findings" : "unusable";
}

void AddText(ordered_json& json, const char* key, const std::string& text) {
    if (!text.empty()) json[key] = text;
}

void AddNumber(ordered_json& json, const char* key, long number) {
    if (number > 0) json[key] = number;
}

void AddLoss(ordered_json& json, const SMLoss& loss) {
    json["bytes"] = loss.bytes;
    json["element"] = loss.elementName;
    AddText(json, "attribute", loss.attributeName);
    if (loss.kind != SMLoss::element) json["value"] = loss.value;
    AddText(json, "instead", loss.instead);
    AddText(json, "reason", loss.reason);
}

ordered_json FindingJson(const SMDiagnostic& found, const SMLoss* loss) {
    ordered_json json = ordered_json::object();
    AddText(json, "code", found.code);
    json["severity"] = WordOf(found.severity);
    AddText(json, "file", found.file);
    AddNumber(json, "line", found.line);
    AddNumber(json, "column", found.column);
    AddText(json, "object", found.objectPath);
    json["message"] = found.message;
    if (loss) AddLoss(json, *loss);
    return json;
}

/** A path as a reference to a URI; an absolute one as the URI of a file. Standard input is no file that a tool could open. */
std::string UriOf(const std::string& path) {
    if (path == "<stdin>") return "stdin:";
    static const char DIGITS[] = "0123456789ABCDEF";
    static const std::string PLAIN = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
    std::string uri = path.starts_with('/') ? "file://" : "";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (PLAIN.find(c) != std::string::npos)
            uri += c;
        else
            uri.append("%") += {DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
    return uri;
}

ordered_json RuleJson(const SMCodeInfo& info) {
    return {{"id", info.code},
            {"shortDescription", {{"text", info.title}}},
            {"fullDescription", {{"text", info.explanation}}},
            {"defaultConfiguration", {{"level", WordOf(info.severity)}}}};
}

ordered_json LocationJson(const SMDiagnostic& found) {
    ordered_json location = ordered_json::object();
    if (!found.file.empty()) {
        ordered_json& physical = location["physicalLocation"];
        physical["artifactLocation"]["uri"] = UriOf(found.file);
        if (found.line > 0) physical["region"]["startLine"] = found.line;
        if (found.line > 0 && found.column > 0) physical["region"]["startColumn"] = found.column;
    }
    if (!found.objectPath.empty()) location["logicalLocations"] = ordered_json::array({{{"fullyQualifiedName", found.objectPath}}});
    return location;
}

ordered_json ResultJson(const SMDiagnostic& found, const SMLoss* loss) {
    ordered_json result = ordered_json::object();
    AddText(result, "ruleId", found.code);
    result["level"] = WordOf(found.severity);
    result["message"]["text"] = found.message;
    const ordered_json location = LocationJson(found);
    if (!location.empty()) result["locations"] = ordered_json::array({location});
    if (loss) AddLoss(result["properties"], *loss);
    return result;
}

}  // namespace

ordered_json CheckReport::Json() const {
    ordered_json findings = ordered_json::array(), objects = ordered_json::object();
    ForEachFinding(result, [&](const SMDiagnostic& found, const SMLoss* loss) { findings.push_back(FindingJson(found, loss)); });
    if (result.project)
        for (const KindCount& kind : CountKinds(*result.project)) objects[kind.kind] = kind.count;
    return {{"file", file}, {"status", WordOfStatus(status)}, {"findings", findings}, {"objects", objects}};
}

ordered_json CheckReport::Sarif() const {
    ordered_json rules = ordered_json::array(), results = ordered_json::array();
    for (const SMCodeInfo& info : SMCodes()) rules.push_back(RuleJson(info));
    ForEachFinding(result, [&](const SMDiagnostic& found, const SMLoss* loss) { results.push_back(ResultJson(found, loss)); });
    const ordered_json driver = {{"name", "smodel"}, {"version", SMODEL_VERSION}, {"rules", rules}};
    ordered_json invocation = {{"executionSuccessful", result.IsDone()}, {"exitCode", status}};
    if (!directory.empty()) invocation["workingDirectory"]["uri"] = UriOf(directory + (directory.ends_with('/') ? "" : "/"));
    const ordered_json run = {{"tool", {{"driver", driver}}},
                              {"invocations", ordered_json::array({invocation})},
                              {"columnKind", "utf16CodeUnits"},
                              {"results", results}};
    return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"}, {"version", "2.1.0"}, {"runs", ordered_json::array({run})}};
}
