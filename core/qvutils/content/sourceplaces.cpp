#include "core/qvutils/content/sourceplaces.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace qv {
namespace {

constexpr std::string_view BLANKS = " \t\r\n";

struct Spot {
    std::size_t offset = 0;
    long line = 1, column = 1;
};

using Questions = std::vector<PlaceQuestion*>;

/** Walks the markup of a document, with a question at hand at each tag. */
class Walk {
  public:
    Walk(std::string_view document, std::vector<PlaceQuestion>& questions) : m_document(document) {
        for (PlaceQuestion& question : questions) {
            question.startLine = question.line;
            question.startColumn = question.column;
            m_questions[KeyOf(question.line, question.column)].push_back(&question);
        }
    }

    void Run() {
        if (m_document.starts_with("\xEF\xBB\xBF")) m_at.offset = 3;
        while (m_at.offset < m_document.size()) {
            if (m_document[m_at.offset] == '<')
                Markup();
            else
                Characters(std::min(m_document.find('<', m_at.offset), m_document.size()));
        }
    }

  private:
    struct Element {
        Spot start, text;
        Questions waiting;
        bool hasText = false, hasChildren = false;
    };

    static std::uint64_t KeyOf(long line, long column) {
        return static_cast<std::uint64_t>(line) << 32 ^ static_cast<std::uint64_t>(column);
    }

    const Questions& AskedHere() const {
        static const Questions NONE;
        const auto found = m_questions.find(KeyOf(m_at.line, m_at.column));
        return found == m_questions.end() ? NONE : found->second;
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

    void Markup() {
        const std::string_view rest = m_document.substr(m_at.offset);
        if (rest.starts_with("<!--")) return Skip("-->", 4);
        if (rest.starts_with("<?")) return Skip("?>", 2);
        if (rest.starts_with("<![CDATA[")) return Section();
        if (rest.starts_with("<!")) return Doctype();
        if (rest.starts_with("</")) return EndTag();
        StartTag(TagSize(rest));
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

    void StartTag(std::size_t size) {
        EndOfText();
        if (!m_open.empty()) m_open.back().hasChildren = true;
        const Spot start = m_at;
        const std::string_view tag = m_document.substr(start.offset, size);
        m_at = SpotAt(start.offset + size);
        const Questions& asked = AskedHere();
        Element element;
        element.start = start;
        for (PlaceQuestion* const question : asked) {
            if (question->what == PlaceQuestion::What::attribute)
                m_attributeQuestions.emplace(question->name, question);
            else if (question->what == PlaceQuestion::What::text)
                m_textQuestions.push_back(question);
            else
                Answer(*question, start, start.offset, 0), element.waiting.push_back(question);
        }
        if (!m_attributeQuestions.empty()) AnswerAttributes(start, tag);
        m_open.push_back(std::move(element));
        if (tag[tag.size() - 2] == '/') EndElement();
    }

    void EndTag() {
        EndOfText();
        Skip(">", 2);
        if (m_open.empty()) return;
        const Element element = m_open.back();
        EndElement();
        for (PlaceQuestion* const question : AskedHere()) {
            if (question->what == PlaceQuestion::What::text)
                m_textQuestions.push_back(question);
            else if (question->what == PlaceQuestion::What::event)
                Answer(*question, element.hasText && !element.hasChildren ? element.text : element.start, element.start.offset,
                       m_at.offset);
        }
    }

    void EndElement() {
        for (PlaceQuestion* const question : m_open.back().waiting) question->bytes = m_at.offset - m_open.back().start.offset;
        m_open.pop_back();
    }

    static void Answer(PlaceQuestion& question, const Spot& start, std::size_t from, std::size_t to) {
        question.startLine = start.line;
        question.startColumn = start.column;
        question.bytes = to > from ? to - from : 0;
    }

    /** All of one tag together, since it may have many attributes. */
    void AnswerAttributes(const Spot& start, std::string_view tag) {
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
        m_attributeQuestions.clear();
    }

    void Section() {
        const std::size_t inside = m_at.offset + 9;
        m_at = SpotAt(inside);
        Text(std::min(m_document.find("]]>", inside), m_document.size()));
        m_at = SpotAt(std::min(m_at.offset + 3, m_document.size()));
    }

    void Characters(std::size_t end) {
        if (!m_hasEntities) return Text(end);
        while (m_at.offset < end) {
            const std::size_t reference = std::min(m_document.find('&', m_at.offset), end);
            Text(reference);
            if (reference == end) return;
            const Spot start = m_at;
            Text(std::min(m_document.find(';', reference), end - 1) + 1);
            for (PlaceQuestion* const question : AskedHere()) Answer(*question, start, start.offset, m_at.offset);
        }
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
    std::vector<Element> m_open;
    /** Those of the tag that is looked at, by the names of attributes. */
    std::unordered_multimap<std::string_view, PlaceQuestion*> m_attributeQuestions;
    Questions m_textQuestions;
    bool m_hasText = false, m_hasEntities = false;
    Spot m_textStart;
    std::size_t m_textEnd = 0;
};

}  // namespace

void AnswerPlaces(std::string_view document, std::vector<PlaceQuestion>& questions) {
    if (!questions.empty()) Walk(document, questions).Run();
}

}  // namespace qv
