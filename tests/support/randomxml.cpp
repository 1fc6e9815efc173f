#include "tests/support/randomxml.h"

#include <algorithm>

namespace smtest {

namespace {

/** The text of the entity. */
const std::string HOUSE = "house & home";

std::size_t LengthOfCharacter(unsigned char first) {
    return first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

unsigned long CodePoint(const std::string& character) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(character[at]); };
    if (character.size() == 1) return byte(0);
    unsigned long code = byte(0) & (0x7Fu >> character.size());
    for (std::size_t at = 1; at < character.size(); ++at) code = code << 6 | (byte(at) & 0x3Fu);
    return code;
}

std::string Reference(const std::string& character, bool hexadecimal) {
    char text[16];
    std::snprintf(text, sizeof text, hexadecimal ? "&#x%lX;" : "&#%lu;", CodePoint(character));
    return text;
}

}  // namespace

RandomXml::RandomXml(unsigned seed, bool mayHavePrefix)
    : m_values(seed), m_hasEntity(Chance(4)), m_prefix(Chance(6) && mayHavePrefix ? "m:" : "") {}

std::string RandomXml::Odd() {
    std::string text = m_values.Text("") + (Chance(15) ? HOUSE : "");
    if (!looseBrackets) std::erase_if(text, [](char c) { return c == '[' || c == ']'; });
    return text;
}

std::string RandomXml::OddName(const std::string& what) {
    std::string text = what + m_values.Text("");
    std::erase_if(text, [](char c) { return c == '[' || c == ']'; });
    return text;
}

std::string RandomXml::Character(const std::string& character) {
    const bool isMarkup = character == "<" || character == "&";
    switch (Below(isMarkup ? 4 : 16)) {
    case 0: return Reference(character, false);
    case 1: return Reference(character, true);
    case 2:
        if (character != "\r") return "<![CDATA[" + character + "]]>";
        break;
    default: break;
    }
    if (character == "\r") return "&#13;";  // bare it would be read as the end of a line
    if (character == "<") return "&lt;";
    if (character == "&") return "&amp;";
    if (character == ">") return "&gt;";  // bare it may end what looks like a CDATA section
    if (character == "\"" && Chance(2)) return "&quot;";
    if (character == "'" && Chance(2)) return "&apos;";
    return character;
}

std::string RandomXml::Encoded(const std::string& text) {
    std::string encoded;
    for (std::size_t at = 0, length = 0; at < text.size(); at += length) {
        if (m_hasEntity && text.compare(at, HOUSE.size(), HOUSE) == 0) {
            encoded += "&house;";
            length = HOUSE.size();
            continue;
        }
        length = LengthOfCharacter(static_cast<unsigned char>(text[at]));
        if (Chance(20)) encoded += "<!-- between -->";
        encoded += Character(text.substr(at, length));
    }
    return encoded;
}

std::string RandomXml::Attribute(const std::string& name, const std::string& text) {
    const char quote = Chance(2) ? '"' : '\'';
    std::string value;
    for (const char c : text) {
        const bool mustBeReference = c == '<' || c == '&' || c == quote || c == '\r' || c == '\n' || c == '\t';
        value += mustBeReference ? Reference(std::string(1, c), Chance(2)) : std::string(1, c);
    }
    return (Chance(5) ? "\n  " : " ") + name + "=" + quote + value + quote;
}

std::string RandomXml::Element(const std::string& tag, const std::string& content, const std::string& attributes) {
    const std::string name = m_prefix + tag;
    if (content.empty() && Chance(2)) return "<" + name + attributes + "/>";
    return "<" + name + attributes + ">" + content + "</" + name + (Chance(20) ? " >" : ">");
}

std::string RandomXml::TextElement(const std::string& tag, const std::string& text, const std::string& attributes) {
    return Element(tag, Encoded(text), attributes);
}

std::string RandomXml::Between() {
    switch (Below(8)) {
    case 0: return "\n  ";
    case 1: return "\r\n\t";
    case 2: return Chance(3) ? "<!-- between elements -->" : " ";
    case 3: return Chance(3) ? "<?work in=\"progress\"?>" : "";
    default: return "";
    }
}

std::string RandomXml::Joined(const Parts& parts) {
    std::string joined = parts.empty() ? "" : Between();
    for (const std::string& part : parts)
        if (!part.empty()) joined += part + Between();
    return joined;
}

std::string RandomXml::Shuffled(Parts parts) {
    for (std::size_t left = parts.size(); left > 1; --left)
        std::swap(parts[left - 1], parts[static_cast<std::size_t>(Below(static_cast<int>(left)))]);
    return Joined(parts);
}

std::string RandomXml::Prolog() {
    std::string prolog = Chance(2) ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" : "";
    if (m_hasEntity) prolog += "<!DOCTYPE " + m_prefix + "project [<!ENTITY house \"house &#38;#38; home\">]>\n";
    return prolog + (Chance(4) ? "<!-- a model -->" : "");
}

}  // namespace smtest
