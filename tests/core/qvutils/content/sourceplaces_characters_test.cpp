#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/qvutils/content/sourcebytes.h"
#include "core/qvutils/content/sourceplaces.h"
#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/qvutils/xml/qvsax2parser.h"

/** The scanner has its own idea of what takes a column. Whatever it is, what stands behind on the line is found. */
namespace {

using What = qv::PlaceQuestion::What;

/** Asks for each element <w>, for its attribute "b" and for the text in it, at the place that the parser tells. */
class Asking final : public QvNeutralHandler {
  public:
    void startElement(const I18NString&, const I18NString& name, const I18NString&, const QvXMLAttributes&) override {
        if (name.utf8() != "w") return;
        const SMSourceContext at = SMSourceFrame::Innermost()->Describe();
        for (const What what : {What::element, What::attribute, What::text}) questions.push_back({what, at.line, at.column, "b"});
    }
    std::vector<qv::PlaceQuestion> questions;
};

std::u16string Units(char32_t character) {
    if (character < 0x10000) return {static_cast<char16_t>(character)};
    return {static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)), static_cast<char16_t>(0xDC00 + (character & 0x3FF))};
}

/** What a document of XML 1.0 may hold and is no markup: all of the scripts with odd characters, and some of the others. */
std::vector<char32_t> Characters() {
    constexpr char32_t PLAIN = 0x3100, STEP = 97;
    std::vector<char32_t> all{U'\t', U'\n', U'\r', U'\uFEFF', U'\uFFFD'};
    for (char32_t c = 0x20; c < 0xFFFE; c += c < PLAIN ? 1 : STEP)
        if ((c < 0xD800 || c > 0xDFFF) && c != U'<' && c != U'&' && c != U'"') all.push_back(c);
    for (const char32_t c : {0x10000, 0x1F600, 0x20028, 0x10FFFD}) all.push_back(c);
    return all;
}

/** Those that the scanner does not count are put into some documents only, since no place is to be doubted in others. */
bool IsUncounted(char32_t character) {
    return character == U'\u0085' || character == U'\u2028';
}

struct Markup {
    const char* name;
    std::u16string before, after;
};

const std::vector<Markup> MARKUPS = {
    {"text", u"", u""},
    {"comment", u"<!-- ", u" -->"},
    {"processing instruction", u"<?p ", u" ?>"},
    {"section", u"<![CDATA[ ", u" ]]>"},
    {"attribute", u"<x a=\"", u"\"/>"},
    {"attribute of an element with text", u"<x a=\"", u"\">y</x>"},
    {"empty element behind text", u"y<x a=\"", u"\"></x>"},
};
const std::u16string WITNESS = u"<w a='' b='c'>t</w>";

/** Documents that have each character, and the places of the witnesses behind it as an editor counts them. */
struct Written {
    std::u16string text;
    std::vector<std::pair<long, long>> places;

    explicit Written(const std::u16string& prolog) { Add(prolog); }
    void Add(const std::u16string& piece) {
        for (const char16_t unit : piece) {
            const bool isEnd = unit == u'\r' || (unit == u'\n' && (text.empty() || text.back() != u'\r'));
            text += unit;
            if (isEnd) ++m_line, m_column = 1;
            if (!isEnd && unit != u'\n') ++m_column;
        }
    }
    void AddWitness() {
        places.emplace_back(m_line, m_column);
        Add(WITNESS);
    }

  private:
    long m_line = 1, m_column = 1;
};

std::string Utf8(const std::u16string& text) {
    const std::u16string marked = u"\uFEFF" + text;
    return qv::Utf8OfDocument({reinterpret_cast<const char*>(marked.data()), marked.size() * 2}).substr(3);
}

/** `bytes` are parsed; the places are found in their UTF-8. */
void ExpectExactPlaces(const Written& written, const std::string& bytes, const char* what) {
    Asking asking;
    QvSAX2Parser parser;
    parser.setContentHandler(&asking);
    parser.parse(bytes.data(), bytes.size());
    std::vector<qv::PlaceQuestion>& questions = asking.questions;
    ASSERT_EQ(questions.size(), written.places.size() * 3) << what;
    qv::AnswerPlaces(Utf8(written.text), questions);
    int faults = 0;
    for (std::size_t i = 0; i < questions.size() && faults < 5; ++i) {
        const auto [line, column] = written.places[i / 3];
        const long offsets[] = {0, 8, 14};
        const std::size_t sizes[] = {19, 5, 1};
        const bool isRight =
            questions[i].startLine == line && questions[i].startColumn == column + offsets[i % 3] && questions[i].bytes == sizes[i % 3];
        faults += !isRight;
        EXPECT_TRUE(isRight) << what << ", question " << i % 3 << " at " << line << ":" << column << ", found at " << questions[i].startLine
                             << ":" << questions[i].startColumn << " (" << questions[i].bytes << ")";
    }
}

Written EachCharacter(const Markup& markup, const std::u16string& prolog, bool withUncounted) {
    Written written(prolog);
    written.Add(u"<r>\n");
    for (const char32_t character : Characters()) {
        if (!withUncounted && IsUncounted(character)) continue;
        written.Add(markup.before + Units(character) + markup.after);
        written.AddWitness();
        written.Add(u"\n");
    }
    written.Add(u"</r>");
    return written;
}

}  // namespace

TEST(SourcePlacesBehindCharacters, AreExactForEachCharacterInEachKindOfMarkup) {
    for (const Markup& markup : MARKUPS)
        for (const auto* prolog : {u"", u"<!DOCTYPE r [<!ENTITY none ''>]>"})
            for (const bool withUncounted : {false, true}) {
                const Written written = EachCharacter(markup, prolog, withUncounted);
                ExpectExactPlaces(written, Utf8(written.text), markup.name);
            }
}

TEST(SourcePlacesBehindCharacters, DoNotDependOnTheEncoding) {
    for (const Markup& markup : MARKUPS) {
        const Written written = EachCharacter(markup, u"", true);
        const std::u16string marked = u"\uFEFF" + written.text;
        ExpectExactPlaces(written, {reinterpret_cast<const char*>(marked.data()), marked.size() * 2}, markup.name);
        Written latin(u"<?xml version='1.0' encoding='ISO-8859-1'?>");
        latin.Add(u"<r>" + markup.before + u"\u0085" + markup.after);
        latin.AddWitness();
        latin.Add(u"</r>");
        ExpectExactPlaces(latin, std::string(latin.text.begin(), latin.text.end()), markup.name);
    }
}

TEST(SourcePlacesBehindCharacters, AreExactBehindEntitiesThatHoldThem) {
    for (const char32_t character : {U'\u0085', U'\u2028', U'\u2029', U'\n', U'\U0001F600'})
        for (const std::u16string& held : std::vector<std::u16string>{u"", u"<x/>", u"<x>&amp;</x>", u"&inner;"}) {
            Written written(u"<!DOCTYPE r [<?p don't?><!ENTITY inner '<x/>" + Units(character) + u"'><!ENTITY e '" + Units(character) +
                            held + u"'><!-- " + Units(character) + u" -->]><r>");
            for (const std::u16string& before : std::vector<std::u16string>{u"&e;", u"&amp;&#x85;&e;&e;", u"<x a='&amp;'/>&e;<x>&e;</x>"}) {
                written.Add(before + Units(character));
                written.AddWitness();
            }
            written.Add(u"<x a='" + Units(character) + u"'/>");
            written.AddWitness();
            written.Add(u"</r>");
            ExpectExactPlaces(written, Utf8(written.text), Utf8(held).c_str());
        }
}

TEST(SourcePlacesBehindCharacters, AreThoseOfTheReferenceForWhatAnEntityHolds) {
    const std::string nel = "\xC2\x85";
    const std::string document = "<!DOCTYPE r [<!ENTITY e '" + nel + "<w b=\"1\">t</w>'>]><r><!--" + nel + "-->&e;<w b='2'>u</w></r>";
    Asking asking;
    QvSAX2Parser parser;
    parser.setContentHandler(&asking);
    parser.parse(document.data(), document.size());
    qv::AnswerPlaces(document, asking.questions);
    ASSERT_EQ(asking.questions.size(), 6u);
    const auto column = static_cast<long>(document.find("&e;")) - 2 + 1;  // two characters of two bytes before
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(asking.questions[static_cast<std::size_t>(i)].startColumn, column);
        EXPECT_EQ(asking.questions[static_cast<std::size_t>(i)].bytes, 3u);
    }
    EXPECT_EQ(asking.questions[3].startColumn, column + 3);
    EXPECT_EQ(asking.questions[4].startColumn, column + 6);
    EXPECT_EQ(asking.questions[5].startColumn, column + 12);
}
