#include "core/repository/textdigests.h"

#include <functional>
#include <iterator>

namespace qv {

namespace {

/** Places of the columns of the texts. */
enum : std::size_t { NAME, LOCALE, VALUE };

constexpr std::string_view ELEMENTS[] = {"name", "description", "screenTip"};

std::uint64_t HashOf(std::string_view text) {
    return std::hash<std::string_view>()(text);
}

/** Spreads what differs in few bits over all of them, so that sums do not cancel out. */
std::uint64_t Mixed(std::uint64_t value) {
    value = (value ^ (value >> 31)) * 0x9E3779B97F4A7C15u;
    value = (value ^ (value >> 29)) * 0xBF58476D1CE4E5B9u;
    return value ^ (value >> 32);
}

}  // namespace

void TextDigest::Add(std::string_view element, std::string_view locale, std::string_view text) {
    if (text.empty()) return;
    std::size_t place = 0;
    while (place < std::size(ELEMENTS) && ELEMENTS[place] != element) ++place;
    m_sums[place] += Mixed(Mixed(Mixed(HashOf(text)) + HashOf(locale)) + HashOf(element)) | 1;
}

void TextDigest::Add(const TextDigest& other) {
    for (std::size_t place = 0; place < m_sums.size(); ++place) m_sums[place] += other.m_sums[place];
}

bool TextDigest::FitsWhereItHasAny(const TextDigest& other) const {
    for (std::size_t place = 0; place < m_sums.size(); ++place)
        if (m_sums[place] != 0 && m_sums[place] != other.m_sums[place]) return false;
    return true;
}

TextDigest TextDigest::Of(const IOObject& object) {
    struct Adding : IOTextVisitor {
        TextDigest digest;
        void Visit(const I18NString& element, const QvULString& locale, const QvULString& text) override {
            digest.Add(element.utf8(), locale.utf8(), text.utf8());
        }
    } visitor;
    object.VisitTexts(visitor);
    return visitor.digest;
}

void TextDigests::Start(bool empty) {
    m_stored = empty ? std::make_unique<Digests>() : nullptr;
    m_notes.clear();
}

TextDigest TextDigests::Stored(StoreSession& session, std::int64_t project, std::int64_t revision, std::string_view id) {
    if (!m_stored) {
        auto stored = std::make_unique<Digests>();
        const RowTable& texts = Schema::Get().langText();
        RowArena arena;
        session.FetchRows(texts, project, revision, arena, [&](const char* row) {
            const auto cell = [&](std::size_t at) { return rowcodec::BodyCell(texts, row, at).view; };
            (*stored)[HashOf(rowcodec::Id(row))].Add(cell(NAME), cell(LOCALE), cell(VALUE));
            RowArena::Release(row);
        });
        m_stored = std::move(stored);
    }
    const auto found = m_stored->find(HashOf(id));
    return found == m_stored->end() ? TextDigest() : found->second;
}

void TextDigests::NoteRow(std::string_view id) {
    // what is fetched later in this save is of the revision before, which has the old texts
    if (const std::uint64_t hash = HashOf(id); !m_stored || m_stored->count(hash) != 0) m_notes[hash] = {};
}

void TextDigests::NoteText(std::string_view id, const TextDigest& digest) {
    m_notes[HashOf(id)].Add(digest);
}

void TextDigests::Settle() {
    if (m_stored && m_stored->empty()) std::swap(*m_stored, m_notes);
    if (m_stored)
        for (const auto& [id, digest] : m_notes) (*m_stored)[id] = digest;
    m_notes.clear();
}

}  // namespace qv
