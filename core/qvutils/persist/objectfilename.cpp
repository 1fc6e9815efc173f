#include "core/qvutils/persist/objectfilename.h"

#include <algorithm>

#include "core/qvutils/base/sha256.h"
#include "core/qvutils/text/asciifold.h"

namespace qv {

namespace {

constexpr std::string_view EMPTY_NAME = "%";
constexpr std::size_t DIGEST_BYTES = 16;

bool IsUpper(char character) {
    return character >= 'A' && character <= 'Z';
}

bool IsPlain(char character) {
    return IsAsciiLetter(character) || IsAsciiDigit(character) || character == ' ' || character == '_' || character == '-' ||
           character == '.';
}

/** True for names of devices, which some systems see also behind a blank or before an extension: "CON", "com1.x". */
bool IsDeviceName(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    while (!stem.empty() && stem.back() == ' ') stem.pop_back();
    for (char& character : stem) character = AsciiUpper(character);
    if (stem == "CON" || stem == "PRN" || stem == "AUX" || stem == "NUL") return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) && IsAsciiDigit(stem[3]);
}

void AppendEscaped(std::string& out, char character) {
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    out += '%';
    out += DIGITS[byte >> 4];
    out += DIGITS[byte & 15];
}

/** The value of a hexadecimal digit of either case; -1 for what is none. */
int HexValue(char character) {
    if (IsAsciiDigit(character)) return character - '0';
    const char lower = AsciiLower(character);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string Stem(std::string_view name) {
    std::string out;
    const bool device = IsDeviceName(name);
    for (std::size_t at = 0; at < name.size(); ++at) {
        const bool edge = at == 0 || at + 1 == name.size();
        const bool plain = IsPlain(name[at]) && !(edge && (name[at] == '.' || name[at] == ' ')) && !(device && at == 0);
        if (plain)
            out += name[at];
        else
            AppendEscaped(out, name[at]);
    }
    return out;
}

/** The bytes that a stem stands for, their case as it stands there. */
std::optional<std::string> UndoStem(std::string_view stem) {
    std::string name;
    for (std::size_t at = 0; at < stem.size(); ++at) {
        if (stem[at] != '%') {
            name += stem[at];
            continue;
        }
        const int high = at + 2 < stem.size() ? HexValue(stem[at + 1]) : -1, low = high < 0 ? -1 : HexValue(stem[at + 2]);
        if (low < 0) return std::nullopt;
        name += static_cast<char>(high << 4 | low);
        at += 2;
    }
    return name;
}

/** Calls `visit(letter, at the beginning of a word)` for each letter. */
template <class Text, class Visit>
void ForEachLetter(Text& text, Visit visit) {
    bool wordBegins = true;
    for (auto& character : text) {
        const bool letter = IsAsciiLetter(character);
        if (letter) visit(character, wordBegins);
        wordBegins = !letter;
    }
}

std::string CaseDigits(std::string_view name) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string digits;
    unsigned bits = 0;
    int letters = 0;
    ForEachLetter(name, [&](char letter, bool wordBegins) {
        bits = bits << 1 | (IsUpper(letter) != wordBegins ? 1u : 0u);
        if (++letters % 4 != 0) return;
        digits += DIGITS[bits];
        bits = 0;
    });
    if (letters % 4 != 0) digits += DIGITS[bits << (4 - letters % 4)];
    digits.erase(digits.find_last_not_of('0') + 1);
    return digits;
}

void RestoreCase(std::string& name, std::string_view digits) {
    std::size_t letters = 0;
    ForEachLetter(name, [&](char& letter, bool wordBegins) {
        const std::size_t at = letters / 4;
        const int bits = at < digits.size() ? HexValue(digits[at]) : 0;
        const bool departs = (bits >> (3 - letters++ % 4) & 1) != 0;
        letter = wordBegins != departs ? AsciiUpper(letter) : AsciiLower(letter);
    });
}

std::string CutName(std::string_view name, std::string stem) {
    const auto digest = Sha256(name);
    const std::string tail = "~~" + ToHex(digest.data(), DIGEST_BYTES);
    stem.resize(ObjectFileName::LONGEST - tail.size());
    if (const std::size_t escape = stem.find_last_of('%'); escape != std::string::npos && escape + 3 > stem.size()) stem.resize(escape);
    return stem + tail;
}

bool IsNumber(std::string_view text) {
    return !text.empty() && text.size() < 2 * DIGEST_BYTES && std::all_of(text.begin(), text.end(), IsAsciiDigit);
}

}  // namespace

std::string ObjectFileName::Of(std::string_view objectName) {
    if (objectName.empty()) return std::string(EMPTY_NAME);
    std::string out = Stem(objectName);
    const std::string digits = CaseDigits(objectName);
    const std::size_t mark = digits.empty() ? 0 : digits.size() + 1;
    if (out.size() + mark > LONGEST) return CutName(objectName, std::move(out));
    return digits.empty() ? out : out + "~" + digits;
}

std::string ObjectFileName::Of(std::string_view objectName, std::size_t number) {
    return number < 2 ? Of(objectName) : Of(objectName) + "~~" + std::to_string(number);
}

std::optional<std::string> ObjectFileName::ObjectNameOf(std::string_view fileName) {
    std::string_view first = fileName;
    if (const std::size_t tail = fileName.rfind("~~"); tail != std::string_view::npos && IsNumber(fileName.substr(tail + 2)))
        first = fileName.substr(0, tail);
    if (first == EMPTY_NAME) return std::string();
    const std::size_t mark = std::min(first.find('~'), first.size());
    std::optional<std::string> name = UndoStem(first.substr(0, mark));
    if (!name) return std::nullopt;
    RestoreCase(*name, mark < first.size() ? first.substr(mark + 1) : std::string_view());
    // what is not made from the name that it seems to stand for stands for none
    if (!AsciiEqualsIgnoreCase(Of(*name), first)) return std::nullopt;
    return name;
}

}  // namespace qv
