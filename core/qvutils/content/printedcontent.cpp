#include "core/qvutils/content/printedcontent.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "core/qvutils/text/utf8.h"

namespace qv {
namespace {

constexpr std::size_t WINDOW = std::size_t{64} << 10;
/** What a character can end: these lines are run through for each byte of a document, and most of what they look for is near. */
enum Ends : std::uint8_t { BLANK = 1, NAME = 2, PIECE_OF_TAG = 4 };
constexpr auto ENDS = [] {
    std::array<std::uint8_t, 256> ends{};
    for (const char blank : {' ', '\t', '\r', '\n'}) ends[static_cast<unsigned char>(blank)] = BLANK | NAME;
    ends['='] = NAME;
    ends['"'] = ends['\''] = ends['>'] = PIECE_OF_TAG;
    return ends;
}();

/** Where the first character is that is one of `ends`, or the end. */
std::size_t FirstOf(std::string_view text, Ends ends, std::size_t at) {
    while (at < text.size() && !(ENDS[static_cast<unsigned char>(text[at])] & ends)) ++at;
    return at;
}

std::size_t BehindBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && ENDS[static_cast<unsigned char>(text[at])] & BLANK) ++at;
    return at;
}

/** Up to and with `close`, or nothing. */
std::string_view Through(std::string_view rest, std::string_view close, std::size_t from) {
    const std::size_t at = rest.find(close, from);
    return at == std::string_view::npos ? std::string_view() : rest.substr(0, at + close.size());
}

/** A start tag may have a ">" in a value. */
std::string_view TagOf(std::string_view rest) {
    for (std::size_t at = 1; (at = FirstOf(rest, PIECE_OF_TAG, at)) < rest.size(); ++at) {
        if (rest[at] == '>') return rest.substr(0, at + 1);
        at = rest.find(rest[at], at + 1);
        if (at == std::string_view::npos) break;
    }
    return {};
}

void AppendCharacter(std::string& out, char32_t character) {
    char bytes[4];
    out.append(bytes, EncodeUtf8(character, bytes));
}

/** Appends what the reference stands for; one that it does not know stays as it is. */
void AppendReference(std::string& out, std::string_view name) {
    static constexpr struct {
        std::string_view name;
        char character;
    } KNOWN[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& known : KNOWN)
        if (name == known.name) {
            out += known.character;
            return;
        }
    const bool isHex = name.starts_with("#x");
    std::uint32_t code = 0;
    if (name.starts_with('#') &&
        std::from_chars(name.data() + (isHex ? 2 : 1), name.data() + name.size(), code, isHex ? 16 : 10).ec == std::errc())
        AppendCharacter(out, code);
    else
        out.append("&").append(name).append(";");
}

}  // namespace

PrintedContent::PrintedContent(ContentSink& sink) : m_sink(sink), m_buffer(WINDOW) {
    m_at = m_buffer.data();
    m_end = m_at + m_buffer.size();
}

void PrintedContent::overflow(const char* bytes, std::size_t length) {
    Consume();
    const auto held = static_cast<std::size_t>(m_at - m_buffer.data());
    if (m_buffer.size() - held < length) {
        m_buffer.resize(std::max(2 * m_buffer.size(), held + length));
        m_at = m_buffer.data() + held;
        m_end = m_buffer.data() + m_buffer.size();
    }
    std::memcpy(m_at, bytes, length);
    m_at += length;
}

void PrintedContent::Consume() {
    std::string_view rest(m_buffer.data(), static_cast<std::size_t>(m_at - m_buffer.data()));
    while (!rest.empty()) {
        if (rest.front() == '<') {
            const std::string_view markup = MarkupOf(rest);
            if (markup.empty()) break;
            Tell(markup);
            rest.remove_prefix(markup.size());
            continue;
        }
        const std::size_t end = rest.find('<');
        if (end == std::string_view::npos) break;
        m_sink.Text(Plain(rest.substr(0, end)));
        rest.remove_prefix(end);
    }
    std::memmove(m_buffer.data(), rest.data(), rest.size());
    m_at = m_buffer.data() + rest.size();
}

void PrintedContent::Finish() {
    Consume();
    const std::string_view rest(m_buffer.data(), static_cast<std::size_t>(m_at - m_buffer.data()));
    if (rest.empty() || rest.front() == '<') return;
    m_sink.Text(Plain(rest));
    m_at = m_buffer.data();
}

std::string_view PrintedContent::MarkupOf(std::string_view rest) const {
    if (rest.size() < 2) return {};
    if (rest[1] == '/') return Through(rest, ">", 2);
    if (rest[1] == '?') return Through(rest, "?>", 2);
    if (rest[1] != '!') return TagOf(rest);
    if (rest.size() < 9) return {};
    return rest.starts_with("<!--") ? Through(rest, "-->", 4) : Through(rest, "]]>", 9);
}

void PrintedContent::Tell(std::string_view markup) {
    if (markup[1] == '/') return m_sink.End();
    if (markup[1] == '?' || markup.starts_with("<!--")) return;
    if (markup[1] == '!') return m_sink.Text(markup.substr(9, markup.size() - 12));
    TellStart(markup);
}

void PrintedContent::TellStart(std::string_view tag) {
    const bool isEmpty = tag[tag.size() - 2] == '/';
    tag = tag.substr(1, tag.size() - (isEmpty ? 3 : 2));
    std::size_t at = FirstOf(tag, BLANK, 0);
    m_sink.Start(LocalName(tag.substr(0, at)));
    while ((at = BehindBlanks(tag, at)) < tag.size()) {
        const std::string_view name = tag.substr(at, FirstOf(tag, NAME, at) - at);
        const std::size_t open = FirstOf(tag, PIECE_OF_TAG, at + name.size());
        const std::size_t close = tag.find(tag[open], open + 1);
        m_sink.Attribute(name, Plain(tag.substr(open + 1, close - open - 1)));
        at = close + 1;
    }
    if (isEmpty) m_sink.End();
}

std::string_view PrintedContent::Plain(std::string_view escaped) {
    std::size_t at = escaped.find('&');
    if (at == std::string_view::npos) return escaped;
    m_plain.assign(escaped.substr(0, at));
    while (at < escaped.size()) {
        const std::size_t end = escaped[at] == '&' ? escaped.find(';', at) : std::string_view::npos;
        if (end != std::string_view::npos) {
            AppendReference(m_plain, escaped.substr(at + 1, end - at - 1));
            at = end + 1;
            continue;
        }
        const std::size_t next = std::min(escaped.find('&', at + 1), escaped.size());
        m_plain.append(escaped.substr(at, next - at));
        at = next;
    }
    return m_plain;
}

}  // namespace qv
