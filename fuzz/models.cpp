#include "fuzz/models.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "fuzz/targets.h"

namespace fuzz {

using namespace schema_002_000;

namespace {

SMLoadResult Load(std::string_view document) {
    SMLoadOptions options;
    options.name = "input";
    options.baseDirectory = "/dev/null";
    return SMLoadModelBytes(document, options);
}

std::string ReadAndWrite(std::string_view written) {
    const SMLoadResult result = Load(written);
    Require(result.IsDone(), "a document that was written can be read");
    return CanonicalText(*result.project);
}

std::string ReadEveryKind() {
    std::ifstream file(SMODEL_FUZZ_EVERY_KIND, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    Require(!text.empty(), "the document " SMODEL_FUZZ_EVERY_KIND " can be read");
    return text;
}

std::string WithoutMoments(std::string_view text) {
    constexpr std::string_view OPEN = "<lastChanged>";
    std::string rest;
    for (std::size_t at = text.find(OPEN); at != text.npos; at = text.find(OPEN)) {
        rest.append(text.substr(0, at));
        text.remove_prefix(text.find('<', at + 1));
    }
    return rest.append(text);
}

}  // namespace

std::string CanonicalText(const SMProject2& project) {
    I18NString text;
    QvStringWriter writer(text);
    const SMSaveResult result = SMWriteModel(project, writer);
    Require(result.IsDone(), "a model that was read can be written");
    return std::string(text.utf8());
}

void RequireSame(std::string_view expected, std::string_view actual, const std::string& statement) {
    if (expected == actual) return;
    constexpr std::size_t BEFORE = 60, SHOWN = 160;
    const auto [first, second] = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    const auto at = static_cast<std::size_t>(first - expected.begin());
    const std::size_t from = at - std::min(at, BEFORE);
    throw Broken(statement + "\n  expected: " + std::string(expected.substr(from, SHOWN)) +
                 "\n  actual:   " + std::string(actual.substr(from, SHOWN)));
}

void RequireSameReading(std::string_view expected, std::string_view actual, const std::string& statement) {
    if (expected != actual) RequireSame(WithoutMoments(expected), WithoutMoments(actual), statement);
}

void RequireReason(const SMResult& result) {
    if (result.IsDone()) return;
    const bool told = std::any_of(result.diagnostics.begin(), result.diagnostics.end(), [](const SMDiagnostic& diagnostic) {
        return diagnostic.severity == SMSeverity::error && !diagnostic.message.empty();
    });
    Require(told, "what is refused is refused with an error");
}

bool SettlesLater(std::string_view written) {
    // lists of a calculation that its reader does not know, and a day of publication that was no date
    static constexpr std::string_view FORMS[] = {"<hierarchies><hierarchies>", "<dimensions><dimensions>",
                                                 "<lastPublished></lastPublished>"};
    return std::any_of(std::begin(FORMS), std::end(FORMS), [&](std::string_view form) { return written.find(form) != written.npos; });
}

Model LoadModel(std::string_view document) {
    const SMLoadResult result = Load(document);
    RequireReason(result);
    if (!result.IsDone()) return {};
    Model model{result.project, CanonicalText(*result.project)};
    const std::string again = ReadAndWrite(model.text);
    if (!SettlesLater(model.text)) RequireSame(model.text, again, "a document that was written is written the same again");
    if (again != model.text) RequireSame(again, ReadAndWrite(again), "a document that has settled is written the same again");
    return model;
}

std::string_view EveryKind() {
    static const std::string& text = *new std::string(ReadEveryKind());
    return text;
}

std::string_view TakePart(std::string_view& input) {
    const std::size_t end = std::min(input.find('\0'), input.size());
    const std::string_view part = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
    return part;
}

}  // namespace fuzz
