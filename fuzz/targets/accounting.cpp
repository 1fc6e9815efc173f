#include "objects/face/smaccounting_002_000.h"

#include <algorithm>

#include "fuzz/models.h"
#include "fuzz/targets.h"

using namespace schema_002_000;

namespace {

constexpr std::string_view NAME = "stray-element", STRANGER = "<stray-element>x</stray-element>";

SMAccountedResult LoadAccounted(std::string_view document) {
    SMLoadOptions options;
    options.name = "input";
    options.baseDirectory = "/dev/null";
    return SMLoadModelBytesAccounted(document, options);
}

std::string Told(const SMAccountedResult& result) {
    std::string text;
    for (const SMLoss& loss : result.losses)
        text += "\n  " + std::to_string(loss.line) + ":" + std::to_string(loss.column) + " " + SMDiagnosticOf(loss).message;
    return text;
}

/** Where a start or end tag begins in a written document behind that of its root; which one is up to `choice`. */
std::size_t TagIn(std::string_view document, std::size_t choice) {
    const std::size_t root = document.find("<project");
    const auto tags = static_cast<std::size_t>(std::count(document.begin() + static_cast<std::ptrdiff_t>(root), document.end(), '<')) - 1;
    std::size_t at = root;
    for (std::size_t i = 0; i <= choice % tags; ++i) at = document.find('<', at + 1);
    return at;
}

bool IsStranger(const SMLoss& loss, long line) {
    return loss.kind == SMLoss::element && loss.elementName == NAME && loss.line == line && loss.bytes == STRANGER.size();
}

/**
 * A stranger among content that is kept is lost alone and told at its place, unless it is kept, or whoever reads what it stands in takes
 * that otherwise because of it.
 */
void RequireStrangerTold(const std::string& written, std::size_t choice) {
    if (written.find(NAME) != std::string::npos) return;  // it is no stranger there
    const std::size_t at = TagIn(written, choice);
    const std::string document = written.substr(0, at) + std::string(STRANGER) + written.substr(at);
    const SMAccountedResult result = LoadAccounted(document);
    fuzz::Require(result.IsDone(), "a document with a stranger is read");
    const std::string around = ": " + document.substr(at - std::min<std::size_t>(at, 80), 200) + Told(result);
    const std::string kept = fuzz::CanonicalText(*result.project);
    if (kept.find(NAME) != std::string::npos) {
        fuzz::Require(result.losses.empty(), "a stranger that is kept is no loss" + around);
    } else if (kept == written) {
        const auto line = 1 + std::count(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(at), '\n');
        fuzz::Require(result.losses.size() == 1 && IsStranger(result.losses.front(), line), "a stranger is the one loss" + around);
    } else {
        fuzz::Require(!result.losses.empty(), "a stranger that changes the model is told" + around);
    }
}

}  // namespace

void fuzz::Accounting(std::string_view input) {
    const SMAccountedResult result = LoadAccounted(input);
    const Model model = LoadModel(input);
    RequireReason(result);
    Require(result.IsDone() == (model.project != nullptr), "a document is read alike, accounted for or not");
    if (!result.IsDone()) return;
    RequireSameReading(model.text, CanonicalText(*result.project), "accounting leaves the model as it is");
    for (const SMLoss& loss : result.losses) {
        // an attribute that a DOCTYPE gives takes no bytes of the element
        const bool mayTakeNone = loss.kind == SMLoss::attribute && input.find("<!DOCTYPE") != input.npos;
        Require(loss.line > 0 && loss.column > 0 && (loss.bytes > 0 || mayTakeNone), "a loss has a place and a size" + Told(result));
        Require(!SMDiagnosticOf(loss).message.empty(), "a loss is told");
    }
    if (SettlesLater(model.text)) return;
    const SMAccountedResult again = LoadAccounted(model.text);
    Require(again.IsDone() && again.losses.empty(), "what was written is kept" + Told(again));
    RequireStrangerTold(model.text, input.size() + static_cast<unsigned char>(input.back()));
}
