#include "objects/base/smenum_002_000.h"

#include "core/qvutils/diag/qvlogevent.h"
#include "core/qvutils/diag/valuewitness.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace schema_002_000 {

namespace {

constexpr std::uint32_t FACTOR = 31;
constexpr std::uint32_t MODULUS = 32767;

/** FACTOR to the power of the index, reduced: the weight of the character at that index. */
constexpr auto WEIGHTS = [] {
    std::array<std::uint32_t, 64> weights{};
    std::uint32_t weight = 1;
    for (std::uint32_t& place : weights) {
        place = weight;
        weight = weight * FACTOR % MODULUS;
    }
    return weights;
}();

int HashByCharacter(const I18NString& text) {
    std::int32_t hash = 0;
    std::int32_t length = 0;
    I18NStringIterator at = text.end();
    for (const I18NStringIterator begin = text.begin(); at != begin; ++length) {
        --at;
        hash = (hash * static_cast<std::int32_t>(FACTOR) + static_cast<wchar_t>(*at)) % static_cast<std::int32_t>(MODULUS);
    }
    return hash + length;
}

/** `known` is the text that the number found stands for; null when there is none. */
void TellIfMisread(std::string_view className, const I18NString& text, const I18NString* known) {
    if (known && *known == text) return;
    const bool isName = className == "SMEnum_xmltag";
    if (isName && !known) return;  // nobody takes it for anything
    const auto what = isName ? qv::ValueWitness::What::name : qv::ValueWitness::What::enumerator;
    qv::TellMisread(what, text.utf8(), known ? known->utf8() : std::string_view());
}

}  // namespace

int SMEnum::HashSMXMLString(const I18NString& text) {
    const std::string_view bytes = text.utf8();
    if (bytes.size() > WEIGHTS.size()) return HashByCharacter(text);
    // Reducing once gives the same as reducing at each step, and no product waits for the one before.
    std::uint32_t sum = 0;
    std::uint32_t seen = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        sum += byte * WEIGHTS[i];
        seen |= byte;
    }
    if (seen >= 0x80) return HashByCharacter(text);
    return static_cast<int>(sum % MODULUS + bytes.size());
}

const I18NString SMEnum_bool::s_true = I18NString::Immortal("true");
const I18NString SMEnum_bool::s_false = I18NString::Immortal("false");

bool SMEnum_bool::string2bool(const I18NString& text) {
    if (text.utf8() == "true") return true;
    if (text.utf8() != "false") qv::TellMisread(qv::ValueWitness::What::truth, text.utf8());
    return false;
}

const I18NString& SMEnum_bool::bool2string(bool value) {
    return value ? s_true : s_false;
}

const I18NString& SMVocabulary::InsertText(int number, const I18NString& text) {
    const auto index = static_cast<std::size_t>(number);
    if (index >= m_texts.size()) m_texts.resize(index + 1);
    if (m_texts[index].empty()) m_texts[index] = text;
    return m_texts[index];
}

void SMVocabulary::InsertOrError(const I18NString& text, int number) {
    if (2 * (m_count + 1) > m_slots.size()) Grow();
    const int hash = SMEnum::HashSMXMLString(text);
    Slot& slot = m_slots[SlotOf(hash)];
    if (slot.hash == hash) {
        const I18NString message = "The string '" + text +
                                   "' hashes to the same value as another string in this enum.  Please check for duplicated enum values, "
                                   "and if none are found, modify the hash function to avoid this error.";
        const QvLogEvent event(4, "code", "QvOne", "smenumsmacro", m_className, "_insertOrError", 0, message, "");
        event.Log();
        throw event;
    }
    slot = {hash, number};
    ++m_count;
}

int SMVocabulary::NumberOf(const I18NString& text) const {
    const int number = m_slots.empty() ? UNKNOWN : m_slots[SlotOf(SMEnum::HashSMXMLString(text))].number;
    if (qv::ValueWitness::Innermost()) TellIfMisread(m_className, text, TextOf(number));
    return number;
}

const I18NString* SMVocabulary::TextOf(int number) const {
    const auto index = static_cast<std::size_t>(number);  // a negative number becomes one too big
    return index < m_texts.size() && !m_texts[index].empty() ? &m_texts[index] : nullptr;
}

/** The slot that holds the hash, or the unused one where it would go. */
std::size_t SMVocabulary::SlotOf(int hash) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = static_cast<std::size_t>(hash) & mask;
    while (m_slots[at].hash != hash && m_slots[at].hash != UNKNOWN) at = (at + 1) & mask;
    return at;
}

void SMVocabulary::Grow() {
    std::vector<Slot> old(m_slots.empty() ? 8 : 2 * m_slots.size());
    old.swap(m_slots);
    for (const Slot& slot : old) {
        if (slot.hash != UNKNOWN) m_slots[SlotOf(slot.hash)] = slot;
    }
}

}  // namespace schema_002_000
