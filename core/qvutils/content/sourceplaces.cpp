#include "core/qvutils/content/sourceplaces.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/markupwatcher.h"

namespace qv {
namespace {

constexpr std::string_view BLANKS = " \t\r\n";

struct Spot {
    std::size_t offset = 0;
    long line = 1, column = 1;
};

using Questions = std::vector<PlaceQuestion*>;

/** The spot at `offset`, which is not before `spot`. */
Spot SpotAfter(std::string_view document, Spot spot, std::size_t offset) {
    for (; spot.offset < offset; ++spot.offset) {
        const auto byte = static_cast<unsigned char>(document[spot.offset]);
        const bool isReturn = byte == '\r';
        if (byte == '\n' || (isReturn && document.substr(spot.offset + 1, 1) != "\n")) {
            ++spot.line;
            spot.column = 1;
        } else if (!isReturn && (byte & 0xC0) != 0x80) {
            spot.column += byte >= 0xF0 ? 2 : 1;
        }
    }
    return spot;
}

/** Where the first line begins. */
Spot StartOf(std::string_view document) {
    Spot spot;
    if (document.starts_with("\xEF\xBB\xBF")) spot.offset = 3;
    return spot;
}

/** Whether the reference stands for a character that needs no entity. */
bool IsCharacter(std::string_view document, std::size_t at) {
    const std::string_view rest = document.substr(at, 6);
    if (rest.starts_with("&#")) return true;
    for (const std::string_view known : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"})
        if (rest.starts_with(known)) return true;
    return false;
}

/** The attributes of a start tag one after the other; the tag may break off. */
class TagAttributes {
  public:
    explicit TagAttributes(std::string_view tag) : m_tag(tag), m_end(std::min(tag.find_first_of(BLANKS), tag.size())) {}

    /** Goes to the next one; false when there is none. */
    bool Next() {
        m_start = m_tag.find_first_not_of(BLANKS, m_end);
        const std::size_t open = m_start == std::string_view::npos ? m_start : m_tag.find_first_of("\"'", m_start);
        if (open == std::string_view::npos) return false;
        const std::size_t close = m_tag.find(m_tag[open], open + 1);
        m_end = close == std::string_view::npos ? m_tag.size() : close + 1;
        return true;
    }
    std::size_t Start() const { return m_start; }
    std::size_t End() const { return m_end; }
    std::string_view Name() const { return m_tag.substr(m_start, m_tag.find_first_of(" \t\r\n=", m_start) - m_start); }

  private:
    std::string_view m_tag;
    std::size_t m_start = 0, m_end;
};

/** Walks the markup of a document from mark to mark: start tags, end tags and references to entities; there are questions behind them. */
class Walk {
  public:
    explicit Walk(std::string_view document) : m_document(document), m_at(StartOf(document)) {}
    Walk(std::string_view document, std::vector<PlaceQuestion>& questions) : Walk(document) {
        for (PlaceQuestion& question : questions) {
            question.startLine = question.line;
            question.startColumn = question.column;
            m_questions[KeyOf(question.line, question.column)].push_back(&question);
        }
    }

    /** Goes on until it is behind the next mark; false at the end of the document. */
    bool ToMark() {
        while (!IsAtEnd()) {
            m_item = m_at;
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

    /** Where a piece begins that the document ends with, or in; it has not been walked yet. `document` may go on behind that. */
    Spot BeginningOf(SourcePiece piece, std::string_view document, std::size_t attribute) {
        const bool isAtMark = ToEnd();
        switch (piece) {
        case SourcePiece::element: return isAtMark ? StartOfElement() : Spot{0, 0, 0};
        case SourcePiece::attribute:
            return m_mark.kind == Mark::Kind::start ? StartOfAttribute(document.substr(m_mark.start.offset), attribute) : m_mark.start;
        case SourcePiece::markup: return IsText() ? StartOfText() : m_item;
        case SourcePiece::text: return StartOfText();
        case SourcePiece::declaration: return SpotAfter(m_item, m_declaration);
        case SourcePiece::reference: break;
        }
        return {0, 0, 0};
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
    Spot SpotAfter(const Spot& spot, std::size_t offset) const { return qv::SpotAfter(m_document, spot, offset); }

    bool IsAtEnd() const { return m_at.offset >= m_document.size(); }

    /** Whether it is the end of a mark, which is not left then. */
    bool ToEnd() {
        while (ToMark()) {
            if (IsAtEnd()) return true;
            Answer();
        }
        return false;
    }

    bool IsText() const {
        const std::string_view item = m_document.substr(m_item.offset);
        return !item.starts_with('<') || item.starts_with("<![CDATA[");
    }

    const Spot& StartOfText() const { return m_hasText ? m_textStart : m_item; }

    const Spot& StartOfElement() const { return m_mark.kind == Mark::Kind::end ? m_open.back().start : m_mark.start; }

    /** `tag` goes on to the end of the document. */
    Spot StartOfAttribute(std::string_view tag, std::size_t number) const {
        TagAttributes attributes(tag.substr(0, TagSize(tag)));
        for (std::size_t i = 0; attributes.Next(); ++i)
            if (i == number) return qv::SpotAfter(tag, {0, m_mark.start.line, m_mark.start.column}, attributes.Start());
        return m_mark.start;
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
                if (c == '<') m_declaration = at;
                if (++depth == 2) AnswerInDoctype(at);
            } else if (c == '>' || c == ']') {
                if (--depth == 0) break;
            }
        }
        AnswerInDoctype(at);
        m_at = SpotAt(std::min(at + 1, m_document.size()));
    }

    /** An event that the DOCTYPE is the reason of is told before what is in it, or before its end. */
    void AnswerInDoctype(std::size_t offset) {
        if (m_questions.empty()) return;
        const Spot spot = SpotAt(std::min(offset, m_document.size()));
        const auto found = m_questions.find(KeyOf(spot.line, spot.column));
        if (found == m_questions.end()) return;
        for (PlaceQuestion* const question : found->second) Answer(*question, m_at, 0, 0);
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
        for (TagAttributes attributes(tag); !m_attributeQuestions.empty() && attributes.Next();) {
            const auto [first, last] = m_attributeQuestions.equal_range(attributes.Name());
            if (first != last) spot = SpotAfter(spot, start.offset + attributes.Start());
            for (auto asked = first; asked != last; ++asked) Answer(*asked->second, spot, attributes.Start(), attributes.End());
            m_attributeQuestions.erase(first, last);
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
        const std::string_view text = m_document.substr(0, end);
        std::size_t at = m_hasEntities ? text.find('&', m_at.offset) : end;
        while (at < end && IsCharacter(text, at)) at = text.find('&', at + 1);
        Text(std::min(at, end));
        if (at >= end) return false;
        const std::size_t close = std::min(text.find(';', at), end - 1) + 1;
        const Spot start = m_at;
        Text(close);
        m_mark = {Mark::Kind::reference, start, m_document.substr(at, close - at), false};
        return true;
    }

    void Text(std::size_t end) {
        const std::string_view text = m_document.substr(m_at.offset, end - m_at.offset);
        const std::size_t first = text.find_first_not_of(BLANKS);
        if (first != std::string_view::npos) {
            const std::size_t from = m_at.offset + first;
            m_at = SpotAt(from);
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
    /** Where the walk is, and where what it went through last begins: a tag, a comment, characters up to the next markup. */
    Spot m_at, m_item;
    /** Where the last declaration of the DOCTYPE begins. */
    std::size_t m_declaration = 0;
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

void AnswerPlaces(std::string_view document, std::vector<PlaceQuestion>& questions, const SMXMLLimits& limits) {
    if (questions.empty()) return;
    Walk walk(document, questions);
    if (HasUncounted(document)) {
        WatchedWalk watched(walk);
        try {
            return WatchMarkup(document, watched, limits);
        } catch (const TklRuntimeError&) {
            return;  // no question goes further than this
        }
    }
    while (walk.ToMark()) walk.Answer();
}

SourcePlace BeginningOf(SourcePiece piece, std::string_view document, std::size_t offset, std::size_t attribute) {
    const std::string_view before = document.substr(0, offset);
    Spot spot;
    if (piece == SourcePiece::reference) {
        // the parser is behind the reference, or behind the tag that has it
        std::size_t at = before.ends_with(';') ? before.find_last_of("&%") : before.rfind('&');
        while (at != std::string_view::npos && IsCharacter(before, at)) at = before.substr(0, at).rfind('&');
        if (at == std::string_view::npos) return {};
        spot = SpotAfter(before, StartOf(before), at);
    } else {
        spot = Walk(before).BeginningOf(piece, document, attribute);
    }
    return {spot.line, spot.column};
}

std::size_t OffsetOfRest(std::string_view document, std::string_view rest) {
    while (!rest.empty() && !document.empty()) {
        const char last = document.back();
        if ((last == '\r' ? '\n' : last) != rest.back()) break;
        document.remove_suffix(last == '\n' && document.ends_with("\r\n") ? 2 : 1);
        rest.remove_suffix(1);
    }
    return rest.empty() ? document.size() : std::string_view::npos;
}

long ColumnAt(std::string_view document, std::size_t offset) {
    const std::string_view before = document.substr(0, offset);
    const std::size_t start = before.find_last_of("\r\n") + 1;  // 0 in the first line
    return SpotAfter(before, start == 0 ? StartOf(before) : Spot{start}, offset).column;
}

}  // namespace qv
