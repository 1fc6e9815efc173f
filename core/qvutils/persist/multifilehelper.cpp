#include "core/qvutils/persist/multifilehelper.h"

#include <string>

#include "core/qvutils/base/sha256.h"
#include "core/qvutils/io/tklsmdir.h"
#include "core/qvutils/text/asciifold.h"

namespace {

/** With the extension and the suffix of a file being written it stays under the 255 bytes that file systems allow. */
constexpr std::size_t MAX_FILE_NAME = 200;

bool IsUpper(char character) {
    return character >= 'A' && character <= 'Z';
}

bool IsPlain(char character) {
    return qv::IsAsciiLetter(character) || qv::IsAsciiDigit(character) || character == ' ' || character == '_' || character == '-' ||
           character == '.';
}

/** True for names of devices, which some systems see also behind a blank or before an extension: "CON", "com1.x". */
bool IsDeviceName(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    while (!stem.empty() && stem.back() == ' ') stem.pop_back();
    for (char& character : stem) character = qv::AsciiUpper(character);
    if (stem == "CON" || stem == "PRN" || stem == "AUX" || stem == "NUL") return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) && qv::IsAsciiDigit(stem[3]);
}

void AppendEscaped(std::string& out, char character) {
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    out += '%';
    out += DIGITS[byte >> 4];
    out += DIGITS[byte & 15];
}

std::string EscapeName(std::string_view name) {
    if (name.empty()) return "%";
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

/**
 * Tells names apart that differ in case alone. A name whose words begin upper case and go on lower case has no mark; else each
 * letter is a bit, set where it departs from that, written as hexadecimal digits behind a tilde.
 */
std::string CaseMark(std::string_view name) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string digits;
    unsigned bits = 0;
    int letters = 0;
    bool wordBegins = true;
    for (const char character : name) {
        if (qv::IsAsciiLetter(character)) {
            bits = bits << 1 | (IsUpper(character) != wordBegins ? 1u : 0u);
            if (++letters % 4 == 0) {
                digits += DIGITS[bits];
                bits = 0;
            }
        }
        wordBegins = !qv::IsAsciiLetter(character);
    }
    if (letters % 4 != 0) digits += DIGITS[bits << (4 - letters % 4)];
    digits.erase(digits.find_last_not_of('0') + 1);
    return digits.empty() ? digits : "~" + digits;
}

std::string FileName(std::string_view name) {
    const std::string mark = CaseMark(name);
    std::string out = EscapeName(name);
    if (out.size() + mark.size() <= MAX_FILE_NAME) return out + mark;
    const auto digest = qv::Sha256(name);
    const std::string tail = "~~" + qv::ToHex(digest.data(), 16);
    out.resize(MAX_FILE_NAME - tail.size());
    if (const std::size_t escape = out.find_last_of('%'); escape != std::string::npos && escape + 3 > out.size()) out.resize(escape);
    return out + tail;
}

}  // namespace

MultiFileHelper::MultiFileHelper(std::set<QvULString> separateTags) : m_separateTags(std::move(separateTags)) {}

bool MultiFileHelper::IsSeparateFile(const I18NString& tagName) const {
    return m_separateTags.count(QvULString(tagName)) != 0;
}

void MultiFileHelper::MakeFilePath(const I18NString& name, const I18NString& extension, I18NString& path) {
    I18NString file(std::string_view(FileName(name.utf8())));
    if (!extension.empty()) {
        file.append(".");
        file += extension;
    }
    TklSmDir::joinPath(path, file);
}
