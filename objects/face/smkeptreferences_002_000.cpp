#include "objects/face/smkeptreferences_002_000.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

namespace {

constexpr auto npos = std::string_view::npos;

bool IsReference(std::string_view tag) {
    return tag == "refobj" || tag == "viewref" || tag == "dataSourceRef";
}

bool IsTable(std::string_view tag) {
    return tag == "table" || tag == "column";
}

bool NamesObject(std::string_view tag, SMKeptNames names) {
    return IsReference(tag) || (names == SMKeptNames::tablesToo && IsTable(tag));
}

/** A table without brackets is an alias of the statement, or known to the database alone. */
bool IsObjectId(std::string_view tag, std::string_view text) {
    return IsReference(tag) ? !text.empty() : text.starts_with('[');
}

/** Undoes the escapes of the canonical form; false for any other. */
bool Unescape(std::string_view escaped, std::string& text) {
    static constexpr std::array<std::pair<std::string_view, char>, 4> ESCAPES{
        {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}}};
    for (std::size_t at = 0; at < escaped.size();) {
        const std::size_t mark = std::min(escaped.find('&', at), escaped.size());
        text.append(escaped.substr(at, mark - at));
        at = mark;
        if (at == escaped.size()) break;
        const auto escape =
            std::find_if(ESCAPES.begin(), ESCAPES.end(), [&](const auto& known) { return escaped.substr(at).starts_with(known.first); });
        if (escape == ESCAPES.end()) return false;
        text += escape->second;
        at += escape->first.size();
    }
    return true;
}

/** False, with nothing of use in `texts`, when the fragment has another than the canonical form. */
bool ScanCanonical(std::string_view xml, SMKeptNames names, std::vector<std::string>& texts) {
    for (std::size_t open = xml.find('<'); open != npos; open = xml.find('<', open + 1)) {
        const char first = open + 1 < xml.size() ? xml[open + 1] : '!';
        if (first == '/') continue;
        if (first == '!' || first == '?') return false;
        const std::size_t end = xml.find_first_of(" \t\r\n/>:", open + 1);
        if (end == npos || xml[end] == ':') return false;
        const std::string_view tag = xml.substr(open + 1, end - open - 1);
        if (!NamesObject(tag, names)) continue;
        const std::size_t close = xml.find("</", end);
        if (xml[end] != '>' || close == npos || xml.substr(close + 2, tag.size()) != tag) return false;
        const std::string_view escaped = xml.substr(end + 1, close - end - 1);
        std::string text;
        if (escaped.find_first_of("<\r") != npos || !Unescape(escaped, text)) return false;
        if (IsObjectId(tag, text)) texts.push_back(std::move(text));
    }
    return true;
}

/** Gathers the same from a fragment in any form. */
class KeptReader : public QvXmlBuildBase {
  public:
    KeptReader(SMKeptNames names, std::vector<std::string>& texts) : m_names(names), m_texts(texts) {}
    void realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes&) override {
        m_collecting = NamesObject(localName.utf8(), m_names);
        m_text.clear();
    }
    void realCharacters(const I18NString& text) override {
        if (m_collecting) m_text += text.utf8();
    }
    void realEndElement(const I18NString&, const I18NString& localName, const I18NString&) override {
        if (m_collecting && IsObjectId(localName.utf8(), m_text)) m_texts.push_back(m_text);
        m_collecting = false;
    }

  private:
    SMKeptNames m_names;
    std::vector<std::string>& m_texts;
    bool m_collecting = false;
    std::string m_text;
};

}  // namespace

void SMForEachKeptReference(std::string_view xml, SMKeptNames names, const std::function<void(std::string_view text)>& visit) {
    std::vector<std::string> texts;
    if (!ScanCanonical(xml, names, texts)) {
        texts.clear();
        KeptReader reader(names, texts);
        QvSAX2Parser parser;
        parser.setContentHandler(&reader);
        parser.parse(xml.data(), xml.size());
    }
    for (const std::string& text : texts) visit(text);
}

}  // namespace schema_002_000
