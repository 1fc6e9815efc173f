#include "objects/face/smfindingplaces_002_000.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/text/shortened.h"

namespace schema_002_000 {

namespace {

/** Whether elements and attributes of this name refer to objects; others may have the same text for another reason. */
bool MayRefer(std::string_view name) {
    static const std::unordered_set<std::string_view> NAMES = {"refobj", "definition", "viewref",     "table",
                                                               "column", "allocation", "hierarchies", "dimensions"};
    return name.ends_with("Ref") || NAMES.count(name) != 0;
}

std::tuple<std::size_t, long, long> KeyOf(const qv::ContentPlace& place) {
    return {place.file, place.line, place.column};
}

std::string Quoted(const std::string& text) {
    constexpr std::size_t MOST = 80;
    return "\"" + qv::Shortened(text, MOST) + "\"";
}

}  // namespace

SMDiagnostic SMToldFinding(const char* code, std::string message) {
    SMDiagnostic told;
    told.code = code;
    told.severity = SMFindCode(code)->severity;
    told.message = std::move(message);
    return told;
}

SMDiagnostic SMToldMisread(const SMFindingPlaces::Misread& misread) {
    const std::string text = Quoted(misread.text), taken = " taken for \"" + misread.taken + "\"";
    switch (misread.what) {
    case qv::ValueWitness::What::name: return SMToldFinding(qv::code::LOOK_ALIKE, text + " is no known name, and" + taken);
    case qv::ValueWitness::What::enumerator:
        return SMToldFinding(qv::code::UNKNOWN_WORD,
                             text + " is none of the words that may stand here" + (misread.taken.empty() ? "" : ", and" + taken));
    case qv::ValueWitness::What::date:
        return SMToldFinding(qv::code::NO_DATE,
                             text + (misread.taken.empty() ? " is no date" : " says more than a date and a time of day, and is" + taken));
    case qv::ValueWitness::What::truth: return SMToldFinding(qv::code::NO_TRUTH, text + " is neither true nor false");
    case qv::ValueWitness::What::number: break;
    }
    return SMToldFinding(qv::code::NO_NUMBER, text + " is no whole number");
}

void SMFindingPlaces::Start(std::string_view name) {
    if (!m_open.empty()) m_open.back().hasChildren = true;
    Level& level = m_open.emplace_back();
    level.name = name;
    level.place = level.inside = m_witness.Place();
    // the file of an object is read into the object, which is there before its element
    if (!m_atRootOfPart) level.around = SMReadWitness::Object();
    m_atRootOfPart = m_isEnding = false;
}

void SMFindingPlaces::Attribute(std::string_view name, std::string_view value) {
    std::string text(value);
    if (m_texts.count(text) == 0 || !MayRefer(name)) return;
    m_references.push_back({m_witness.Hold(SMReadWitness::Object()), std::move(text), std::string(name), m_open.back().place});
}

void SMFindingPlaces::Text(std::string_view text) {
    if (m_open.empty() || m_open.back().hasChildren) return;
    m_open.back().text += text;
    m_open.back().hasText = m_open.back().hasText || !qv::IsLayout(text);
}

void SMFindingPlaces::End() {
    const IOObject* const object = SMReadWitness::Object();
    m_ended = std::move(m_open.back());
    m_open.pop_back();
    m_isEnding = true;
    NoteObject(m_ended, object);
    NoteEnd(m_ended, object);
    if (!m_ended.hasChildren && m_texts.count(m_ended.text) != 0 && MayRefer(m_ended.name))
        m_references.push_back({m_witness.Hold(object), m_ended.text, {}, m_ended.inside});
}

void SMFindingPlaces::NoteObject(const Level& level, const IOObject* object) {
    if (!object || level.isPlaceholder || object == level.around) return;
    m_objects[object] = level.place;  // another object may have stood there before
}

void SMFindingPlaces::NoteEnd(const Level& level, const IOObject* object) {
    if (level.name == "left" || level.name == "right") {
        m_ends.push_back({object, level.name == "left", level.hasLeast, level.hasMost, level.place});
    } else if (!m_open.empty() && level.hasText) {
        if (level.name == "mincard") m_open.back().hasLeast = true;
        if (level.name == "maxcard") m_open.back().hasMost = true;
    }
}

void SMFindingPlaces::StartPart() {
    m_parts.push_back(m_open.size());
    m_atRootOfPart = true;
}

void SMFindingPlaces::EndPart(bool isWhole) {
    m_open.resize(m_parts.back());
    m_open.back().isPlaceholder = isWhole;
    m_parts.pop_back();
    m_atRootOfPart = m_isEnding = false;
}

void SMFindingPlaces::Tell(What what, std::string_view text, std::string_view taken) {
    if (m_open.empty() && !m_isEnding) return;
    const Level& level = m_isEnding ? m_ended : m_open.back();
    if (what == What::name && m_isEnding) return;  // the start tag was told
    std::vector<std::size_t>& here = m_misreadsAt[KeyOf(level.place)];
    const auto isKnown = [&](std::size_t i) { return m_misreads[i].what == what && m_misreads[i].text == text; };
    if (std::any_of(here.begin(), here.end(), isKnown)) return;
    here.push_back(m_misreads.size());
    m_misreads.push_back(
        {what, std::string(text), std::string(taken), m_witness.Hold(SMReadWitness::Object()), level.place, level.inside, m_isEnding});
}

const qv::ContentPlace* SMFindingPlaces::PlaceOf(const IOObject* object) const {
    const auto found = m_objects.find(object);
    return found == m_objects.end() ? nullptr : &found->second;
}

const std::vector<std::size_t>& SMFindingPlaces::MisreadsAt(const qv::ContentNode& element) const {
    static const std::vector<std::size_t> NONE;
    const auto here = m_misreadsAt.find(KeyOf(element.place));
    return here == m_misreadsAt.end() ? NONE : here->second;
}

void SMFindingPlaces::LoseAll(const qv::ContentNode& element) {
    if (m_misreads.empty()) return;
    std::vector<const qv::ContentNode*> left{&element};
    while (!left.empty()) {
        const qv::ContentNode& lost = *left.back();
        left.pop_back();
        for (const std::size_t i : MisreadsAt(lost)) m_misreads[i].isLost = true;
        for (const qv::ContentNode& child : lost.children) left.push_back(&child);
    }
}

const SMFindingPlaces::Misread* SMFindingPlaces::ReasonOf(const qv::ContentLoss& loss) {
    const Misread* reason = nullptr;
    const bool isAttribute = loss.kind == qv::ContentLoss::Kind::attribute;
    for (const std::size_t i : MisreadsAt(*loss.element)) {
        Misread& misread = m_misreads[i];
        const bool isName = misread.what == What::name;
        if (isAttribute ? isName || loss.attribute->value != misread.text : !isName && !misread.isText) continue;
        misread.isLost = true;
        if (!reason) reason = &misread;
    }
    if (loss.kind == qv::ContentLoss::Kind::element) LoseAll(*loss.element);
    return reason;
}

}  // namespace schema_002_000
