#include "core/qvutils/content/sourceplaces.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "core/qvutils/xml/markupwatcher.h"

namespace qv {
namespace {

constexpr std::string_view BLANKS = " \t\r\n";

struct Spot {
    std::size_t offset = 0;
    long line = 1, column = 1;
};

using Questions = std::vector<PlaceQuestion*>;

/** Walks the markup of a document from mark to mark: start tags, end tags and references to entities; there are questions behind them. */
class Walk {
  public:
    Walk(std::string_view document, std::vector<PlaceQuestion>& questions) : m_document(document) {
        for (PlaceQuestion& question : questions) {
            question.startLine = question.line;
            question.startColumn = question.column;
            m_questions[KeyOf(question.line, question.column)].push_back(&question);
        }
        if (m_document.starts_with("\xEF\xBB\xBF")) m_at.offset = 3;
    }

    /** Goes on until it is behind the next mark; false at the end of the document. */
    bool ToMark() {
        while (m_at.offset < m_document.size()) {
            const bool isMark = m_document[m_at.offset] == '<' ? Markup() : Characters();
            if (isMark) return true;
        }
        return false;
    }

    /** Answers what is asked behind the mark; the scanner may have another place for that than the walk. */
    void Answer() { Answer(m_at.line, m_at.column); }
    void Answer(long line, long column) {
        const auto found = m_questions.find(KeyOf(line, column));
        if (found != m_questions.end()) {
            const bool hasMarkup = m_mark.kind == Mark::Kind::reference;  // of the entity, or nothing would begin behind it
            if (hasMarkup) EndOfText();
            for (PlaceQuestion* const question : found->second) Answer(*question);
        }
        if (!m_attributeQuestions.empty()) AnswerAttributes();
        if (m_mark.kind == Mark::Kind::end || m_mark.isEmpty) EndElement();
    }

  private:
    struct Element {
        Spot start, text;
        Questions waiting;
        bool hasText = false, hasChildren = false;
    };

    struct Mark {
        enum class Kind { start, end, reference };
        Kind kind = Kind::start;
        Spot start;
        std::string_view text;
        bool isEmpty = false;
    };

    static std::uint64_t KeyOf(long line, long column) {
        return static_cast<std::uint64_t>(line) << 32 ^ static_cast<std::uint64_t>(column);
    }

    /** The spot at `offset`, which is not before the one where the walk is. */
    Spot SpotAt(std::size_t offset) const { return SpotAfter(m_at, offset); }

    Spot SpotAfter(Spot spot, std::size_t offset) const {
        for (; spot.offset < offset; ++spot.offset) {
            const auto byte = static_cast<unsigned char>(m_document[spot.offset]);
            const bool isReturn = byte == '\r';
            if (byte == '\n' || (isReturn && m_document.substr(spot.offset + 1, 1) != "\n")) {
                ++spot.line;
                spot.column = 1;
            } else if (!isReturn && (byte & 0xC0) != 0x80) {
                spot.column += byte >= 0xF0 ? 2 : 1;
            }
        }
        return spot;
    }

    bool Markup() {
        const std::string_view rest = m_document.substr(m_at.offset);
        if (rest.starts_with("</")) return EndTag(rest);
        if (rest.starts_with("<!--"))
            Skip("-->", 4);
        else if (rest.starts_with("<?"))
            Skip("?>", 2);
        else if (rest.starts_with("<![CDATA["))
            Section();
        else if (rest.starts_with("<!"))
            Doctype();
        else
            return StartTag(rest.substr(0, TagSize(rest)));
        return false;
    }

    void Skip(std::string_view close, std::size_t from) {
        const std::size_t end = m_document.find(close, m_at.offset + from);
        m_at = SpotAt(end == std::string_view::npos ? m_document.size() : end + close.size());
    }

    static std::size_t TagSize(std::string_view rest) {
        for (std::size_t at = 1; (at = rest.find_first_of("\"'>", at)) != std::string_view::npos; ++at) {
            if (rest[at] == '>') return at + 1;
            at = rest.find(rest[at], at + 1);
            if (at == std::string_view::npos) break;
        }
        return rest.size();
    }

    void Doctype() {
        m_hasEntities = true;
        std::size_t at = m_at.offset, depth = 0;
        for (char quote = 0; at < m_document.size(); ++at) {
            const char c = m_document[at];
            if (quote) {
                if (c == quote) quote = 0;
            } else if (m_document.substr(at, 4) == "<!--") {
                at = std::min(m_document.find("-->", at + 4), m_document.size() - 3) + 2;
            } else if (m_document.substr(at, 2) == "<?") {
                at = std::min(m_document.find("?>", at + 2), m_document.size() - 2) + 1;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '<' || c == '[') {
                ++depth;
            } else if (c == '>' || c == ']') {
                if (--depth == 0) break;
            }
        }
        m_at = SpotAt(std::min(at + 1, m_document.size()));
    }

    void ToMark(Mark::Kind kind, std::string_view text) {
        m_mark = {kind, m_at, text, kind == Mark::Kind::start && text.ends_with("/>")};
        m_at = SpotAt(m_at.offset + text.size());
    }

    bool StartTag(std::string_view tag) {
        EndOfText();
        if (!m_open.empty()) m_open.back().hasChildren = true;
        m_open.emplace_back().start = m_at;
        ToMark(Mark::Kind::start, tag);
        return true;
    }

    bool EndTag(std::string_view rest) {
        EndOfText();
        ToMark(Mark::Kind::end, rest.substr(0, std::min(rest.find('>'), rest.size() - 1) + 1));
        return !m_open.empty();
    }

    void EndElement() {
        for (PlaceQuestion* const question : m_open.back().waiting) question->bytes = m_at.offset - m_open.back().start.offset;
        m_open.pop_back();
    }

    void Answer(PlaceQuestion& question) {
        const bool isReference = m_mark.kind == Mark::Kind::reference;
        if (isReference) return Answer(question, m_mark.start, m_mark.start.offset, m_at.offset);
        if (question.what == PlaceQuestion::What::text) return m_textQuestions.push_back(&question);
        if (m_mark.kind == Mark::Kind::end) return AnswerAtEnd(question);
        if (question.what == PlaceQuestion::What::attribute) {
            m_attributeQuestions.emplace(question.name, &question);
            return;
        }
        Answer(question, m_mark.start, m_mark.start.offset, 0);
        m_open.back().waiting.push_back(&question);
    }

    void AnswerAtEnd(PlaceQuestion& question) const {
        if (question.what != PlaceQuestion::What::event) return;
        const Element& element = m_open.back();
        Answer(question, element.hasText && !element.hasChildren ? element.text : element.start, element.start.offset, m_at.offset);
    }

    static void Answer(PlaceQuestion& question, const Spot& start, std::size_t from, std::size_t to) {
        question.startLine = start.line;
        question.startColumn = start.column;
        question.bytes = to > from ? to - from : 0;
    }

    /** All of one tag together, since it may have many attributes. */
    void AnswerAttributes() {
        const Spot& start = m_mark.start;
        const std::string_view tag = m_mark.text;
        Spot spot = start;
        for (std::size_t at = tag.find_first_of(BLANKS); (at = tag.find_first_not_of(BLANKS, at)) != std::string_view::npos;) {
            const std::size_t open = tag.find_first_of("\"'", at);
            if (open == std::string_view::npos || m_attributeQuestions.empty()) break;
            const std::size_t close = tag.find(tag[open], open + 1);
            const auto [first, last] = m_attributeQuestions.equal_range(tag.substr(at, tag.find_first_of(" \t\r\n=", at) - at));
            if (first != last) spot = SpotAfter(spot, start.offset + at);
            for (auto asked = first; asked != last; ++asked) Answer(*asked->second, spot, at, close + 1);
            m_attributeQuestions.erase(first, last);
            at = close + 1;
        }
        for (const auto& [name, question] : m_attributeQuestions) {
            question->isDefault = true;
            Answer(*question, start, 0, question->bytes);
        }
        m_attributeQuestions.clear();
    }

    void Section() {
        const std::size_t inside = m_at.offset + 9;
        m_at = SpotAt(inside);
        Text(std::min(m_document.find("]]>", inside), m_document.size()));
        m_at = SpotAt(std::min(m_at.offset + 3, m_document.size()));
    }

    /** Up to the next markup, or to the reference to an entity that comes before. */
    bool Characters() {
        const std::size_t end = std::min(m_document.find('<', m_at.offset), m_document.size());
        std::size_t at = m_hasEntities ? m_document.find('&', m_at.offset) : end;
        while (at < end && IsCharacter(at)) at = m_document.find('&', at + 1);
        Text(std::min(at, end));
        if (at >= end) return false;
        const std::size_t close = std::min(m_document.find(';', at), end - 1) + 1;
        const Spot start = m_at;
        Text(close);
        m_mark = {Mark::Kind::reference, start, m_document.substr(at, close - at), false};
        return true;
    }

    /** Whether a reference stands for a character that needs no entity. */
    bool IsCharacter(std::size_t at) const {
        const std::string_view rest = m_document.substr(at, 6);
        if (rest.starts_with("&#")) return true;
        for (const std::string_view known : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"})
            if (rest.starts_with(known)) return true;
        return false;
    }

    void Text(std::size_t end) {
        const std::string_view text = m_document.substr(m_at.offset, end - m_at.offset);
        const std::size_t first = text.find_first_not_of(BLANKS);
        if (first != std::string_view::npos) {
            const std::size_t from = m_at.offset + first;
            const bool isAsked = !m_textQuestions.empty() || (!m_open.empty() && !m_open.back().hasText);
            if (isAsked) m_at = SpotAt(from);
            if (!m_hasText) m_textStart = m_at;
            m_hasText = true;
            m_textEnd = from - first + text.find_last_not_of(BLANKS) + 1;
            if (!m_open.empty() && !m_open.back().hasText) {
                m_open.back().hasText = true;
                m_open.back().text = m_at;
            }
        }
        m_at = SpotAt(end);
    }

    void EndOfText() {
        if (m_hasText)
            for (PlaceQuestion* const question : m_textQuestions) Answer(*question, m_textStart, m_textStart.offset, m_textEnd);
        m_textQuestions.clear();
        m_hasText = false;
    }

    std::string_view m_document;
    std::unordered_map<std::uint64_t, Questions> m_questions;
    Spot m_at;
    Mark m_mark;
    std::vector<Element> m_open;
    /** Those of the tag that is looked at, by the names of attributes. */
    std::unordered_multimap<std::string_view, PlaceQuestion*> m_attributeQuestions;
    Questions m_textQuestions;
    bool m_hasText = false, m_hasEntities = false;
    Spot m_textStart;
    std::size_t m_textEnd = 0;
};

/** Has the scanner pass the marks together with a walk, so that its places need not be right: only the same as they were before. */
class WatchedWalk final : public MarkupWatcher {
  public:
    explicit WatchedWalk(Walk& walk) : m_walk(walk) {}
    void Mark(long line, long column) override {
        const bool isInEntity = line == m_line && column == m_column;
        m_line = line;
        m_column = column;
        if (!isInEntity && m_walk.ToMark()) m_walk.Answer(line, column);
    }

  private:
    Walk& m_walk;
    long m_line = 0, m_column = 0;
};

/** NEL and the line separator, which the scanner takes for line ends at times, and then for nothing: it counts neither line nor column. */
bool HasUncounted(std::string_view document) {
    return document.find("\xC2\x85") != std::string_view::npos || document.find("\xE2\x80\xA8") != std::string_view::npos;
}

}  // namespace

void AnswerPlaces(std::string_view document, std::vector<PlaceQuestion>& questions) {
    if (questions.empty()) return;
    Walk walk(document, questions);
    if (HasUncounted(document)) {
        WatchedWalk watched(walk);
        return WatchMarkup(document, watched);
    }
    while (walk.ToMark()) walk.Answer();
}

}  // namespace qv
