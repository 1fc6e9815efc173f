#include "objects/face/smlossreasons_002_000.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "core/qvutils/diag/codes.h"

namespace schema_002_000 {

namespace {

/** How the codes of documents that cannot be read begin, and those of files that cannot even be opened. */
constexpr std::string_view UNREADABLE = "SM2", UNOPENED = "SM202";

template <class T>
auto PlaceKey(const T& told) {
    return std::tie(told.file, told.line, told.column);
}

/** What the log tells of a namespace that gets another name. */
constexpr std::string_view CLASH = "A namespace with name '";
std::string ClashOf(const SMLoss& loss) {
    return std::string(CLASH) + loss.value + "' already exists - renaming this namespace to '" + loss.instead + "'.";
}

bool IsOfPlaceholder(const SMDiagnostic& event) {
    return event.code.starts_with(UNREADABLE) || event.code == qv::code::PART_BROKEN || event.code == qv::code::EMPTY_PLACEHOLDER;
}

/** An event about a separate file stands behind the code of what is wrong with that file. */
SMDiagnostic ReasonOf(const SMDiagnostic& event) {
    SMDiagnostic why;
    why.code = event.code;
    why.severity = event.severity;
    why.message = event.message;
    if (!event.code.starts_with(UNREADABLE)) return why;
    SMDiagnostic outer;
    const bool isMissing = event.code.starts_with(UNOPENED) && event.code != qv::code::READ_INSIDE_ITSELF;
    outer.code = isMissing ? qv::code::PART_MISSING : qv::code::PART_BROKEN;
    outer.severity = SMFindCode(outer.code)->severity;
    outer.message = std::string(SMFindCode(outer.code)->title) + ": " + FormatDiagnostic(why);
    return outer;
}

/** Finds the loss that an event is the reason of. */
class Reasons {
  public:
    explicit Reasons(std::vector<SMLoss>& losses) : m_losses(losses) {
        for (SMLoss& loss : losses)
            if (loss.kind == SMLoss::text && !loss.instead.empty() && loss.elementName == "name") m_clashes.emplace(ClashOf(loss), &loss);
    }

    SMLoss* Find(const SMDiagnostic& event) const {
        if (event.code == qv::code::NAME_CLASH) {
            const auto found = m_clashes.find(event.message);
            return found == m_clashes.end() ? nullptr : found->second;
        }
        return IsOfPlaceholder(event) ? FindPlaceholder(event) : nullptr;
    }
    /** The loss in which the place of an event is that is not one itself; null when there is none. Losses do not stand in each other. */
    const SMLoss* Around(const SMDiagnostic& event) const {
        const auto next = FirstFrom(event);
        return next == m_losses.begin() || std::prev(next)->file != event.file ? nullptr : &*std::prev(next);
    }

  private:
    std::vector<SMLoss>::iterator FirstFrom(const SMDiagnostic& event) const {
        const auto isBefore = [](const SMLoss& loss, const SMDiagnostic& at) { return PlaceKey(loss) < PlaceKey(at); };
        return std::lower_bound(m_losses.begin(), m_losses.end(), event, isBefore);
    }
    SMLoss* FindPlaceholder(const SMDiagnostic& event) const {
        auto found = FirstFrom(event);
        for (; found != m_losses.end() && PlaceKey(*found) == PlaceKey(event); ++found)
            if (found->kind == SMLoss::element && found->why.empty()) return &*found;
        return nullptr;
    }

    std::vector<SMLoss>& m_losses;
    std::unordered_map<std::string, SMLoss*> m_clashes;
};

/**
 * A placeholder that goes with another one, whose file could not be read, has a fault of its own and no loss. What it would fill has no
 * name then.
 */
void Complete(SMDiagnostic& event, const SMLoss* around) {
    const SMDiagnostic reason = ReasonOf(event);
    event.code = reason.code;
    event.severity = reason.severity;
    event.message = reason.message;
    if (around) event.objectPath = around->objectPath;
}

}  // namespace

void SMGiveReason(SMLoss& loss, const SMDiagnostic& why) {
    loss.reason = why.code;
    loss.why = FormatDiagnostic(why);
}

void SMDropToldEvents(SMAccountedResult& result) {
    if (result.losses.empty()) return;
    const Reasons reasons(result.losses);
    std::erase_if(result.diagnostics, [&](const SMDiagnostic& event) {
        if (event.message.starts_with("Unknown tag")) return true;
        SMLoss* const loss = reasons.Find(event);
        if (loss) SMGiveReason(*loss, ReasonOf(event));
        return loss != nullptr;
    });
    for (SMDiagnostic& event : result.diagnostics)
        if (IsOfPlaceholder(event)) Complete(event, reasons.Around(event));
}

}  // namespace schema_002_000
