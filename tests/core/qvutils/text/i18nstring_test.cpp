#include "core/qvutils/text/i18nstring.h"

#include "core/qvutils/diag/tklerrors.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

// Two, three and four bytes: e acute, euro sign, musical clef.
constexpr const char* MIXED = "a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9Ez";

std::vector<wchar_t> Characters(const I18NString& text) {
    std::vector<wchar_t> characters;
    for (I18NStringIterator at = text.begin(); at != text.end(); ++at) characters.push_back(*at);
    return characters;
}

}  // namespace

TEST(I18NString, IsEmptyFromNothing) {
    EXPECT_TRUE(I18NString().empty());
    EXPECT_TRUE(I18NString(nullptr).empty());
    EXPECT_TRUE(I18NString("").empty());
    EXPECT_TRUE(I18NString(nullptr, nullptr, 5).empty());
    EXPECT_EQ(I18NString().length(), 0);
    EXPECT_STREQ(I18NString().c_str(), "");
}

TEST(I18NString, CountsCharacters) {
    EXPECT_EQ(I18NString("plain").length(), 5);
    EXPECT_EQ(I18NString(MIXED).length(), 5);
    EXPECT_EQ(I18NString(MIXED).size(), 5);
    EXPECT_EQ(I18NString(MIXED).utf8().size(), 11U);
}

TEST(I18NString, TakesSoManyBytes) {
    EXPECT_EQ(I18NString("abcdef", nullptr, 3).utf8(), "abc");
    EXPECT_EQ(I18NString("abcdef", "UTF-8", -1).utf8(), "abcdef");
    EXPECT_EQ(I18NString("abcdef", "utf-8", 0).utf8(), "");
}

TEST(I18NString, ReadsNamedEncodings) {
    EXPECT_EQ(I18NString("caf\xE9", "ISO-8859-1").utf8(), "caf\xC3\xA9");
    EXPECT_EQ(I18NString("\x80", "windows-1252").utf8(), "\xE2\x82\xAC");
    EXPECT_EQ(I18NString("A\0\xAC\x20", "UTF-16LE", 4).utf8(), "A\xE2\x82\xAC");
    EXPECT_EQ(I18NString("", "ISO-8859-1").utf8(), "");
}

TEST(I18NString, GivesNamedEncodings) {
    int length = -1;
    EXPECT_STREQ(I18NString("caf\xC3\xA9").c_str("ISO-8859-1", &length), "caf\xE9");
    EXPECT_EQ(length, 4);
    const char* const wide = I18NString("A\xE2\x82\xAC").c_str("UTF-16LE", &length);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(std::memcmp(wide, "A\0\xAC\x20\0\0", 6), 0);
    EXPECT_STREQ(I18NString().c_str("ISO-8859-1", &length), "");
    EXPECT_EQ(length, 0);
}

TEST(I18NString, GivesItsOwnBytesInUtf8) {
    const I18NString text(MIXED);
    for (const char* const encoding : {static_cast<const char*>(nullptr), "UTF-8", "utf-8", "UTF8"}) {
        int length = 0;
        EXPECT_EQ(text.c_str(encoding, &length), text.utf8().data());
        EXPECT_EQ(length, 11);
    }
}

TEST(I18NString, KeepsConvertedTextsForSevenMoreCalls) {
    const I18NString first("first");
    const char* const kept = first.c_str("ISO-8859-1");
    for (int i = 0; i < 7; ++i) I18NString(std::string_view(std::to_string(i))).c_str("ISO-8859-1");
    EXPECT_STREQ(kept, "first");
}

TEST(I18NString, ConvertsALongTextWhole) {
    const std::string latin(100000, '\xE9');
    const I18NString text(latin.c_str(), "ISO-8859-1");
    EXPECT_EQ(text.length(), 100000);
    EXPECT_EQ(text.c_str("ISO-8859-1"), latin);
}

TEST(I18NString, RaisesForAnUnknownEncoding) {
    EXPECT_THROW(I18NString("text", "no-such-encoding"), TklRuntimeError);
    EXPECT_THROW(I18NString("text").c_str("no-such-encoding"), TklRuntimeError);
}

TEST(I18NString, CopiesShare) {
    const I18NString text("a text");
    const I18NString copy = text;
    EXPECT_EQ(copy.c_str(), text.c_str());
    EXPECT_EQ(text.substr(0).c_str(), text.c_str());
    I18NString sum;
    sum += text;
    EXPECT_EQ(sum.c_str(), text.c_str());
}

TEST(I18NString, AssignsFromBytesAndNull) {
    I18NString text("old");
    text = "new";
    EXPECT_EQ(text.utf8(), "new");
    text = static_cast<const char*>(nullptr);
    EXPECT_TRUE(text.empty());
}

TEST(I18NString, Appends) {
    I18NString text("a");
    text += "b";
    text += I18NString("\xC3\xA9");
    text += L'\x20AC';
    text += static_cast<const char*>(nullptr);
    EXPECT_EQ(text.utf8(), "ab\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ((text + "x").utf8(), "ab\xC3\xA9\xE2\x82\xACx");
    EXPECT_EQ(("x" + text + text).length(), 9);
    text = "t";
    text += text;
    EXPECT_EQ(text.utf8(), "tt");
}

TEST(I18NString, AppendsCharactersOfAllSizesAndReplacesWhatIsNone) {
    I18NString text;
    for (const wchar_t c : {L'a', L'\xE9', L'\x20AC', static_cast<wchar_t>(0x1D11E), L'z'}) text += c;
    EXPECT_EQ(text.utf8(), MIXED);
    I18NString bad;
    for (const int c : {0xD800, 0xDFFF, 0x110000, -1}) bad += static_cast<wchar_t>(c);
    EXPECT_EQ(bad.utf8(), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(I18NString, ErasesCharacters) {
    EXPECT_EQ(I18NString(MIXED).erase(1, 2).utf8(), "a\xF0\x9D\x84\x9Ez");
    EXPECT_EQ(I18NString(MIXED).erase(3).utf8(), "a\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(I18NString("plain").erase(1, 3).utf8(), "pn");
    EXPECT_EQ(I18NString("plain").erase(2, 0).utf8(), "plain");
    EXPECT_EQ(I18NString("plain").erase(9, 3).utf8(), "plain");
    EXPECT_EQ(I18NString("plain").erase(3, 99).utf8(), "pla");
    EXPECT_TRUE(I18NString("plain").erase().empty());
    EXPECT_TRUE(I18NString().erase().empty());
}

TEST(I18NString, ReplacesCharacters) {
    EXPECT_EQ(I18NString(MIXED).replace(1, 3, "-").utf8(), "a-z");
    EXPECT_EQ(I18NString(MIXED).replace(2, 1, MIXED).length(), 9);
    EXPECT_EQ(I18NString("ab").replace(1, 0, "\xC3\xA9").utf8(),
              "a\xC3\xA9"
              "b");
    EXPECT_EQ(I18NString("ab").replace(7, 2, "c").utf8(), "abc");
    EXPECT_EQ(I18NString("ab").replace(0, -1, "").utf8(), "");
    EXPECT_EQ(I18NString("ab").replace(-3, 1, "x").utf8(), "xb");
    I18NString self("ab");
    EXPECT_EQ(self.replace(1, 1, self).utf8(), "aab");
}

TEST(I18NString, FindsByCharacter) {
    const I18NString text("\xC3\xA9[b]\xE2\x82\xAC[b]");
    EXPECT_EQ(text.find("["), 1);
    EXPECT_EQ(text.find("[b]", 2), 5);
    EXPECT_EQ(text.find("\xE2\x82\xAC"), 4);
    EXPECT_EQ(text.find("missing"), -1);
    EXPECT_EQ(text.find("[", 6), -1);
    EXPECT_EQ(text.find("[", 100), -1);
    EXPECT_EQ(text.find("\xC3\xA9", -5), 0);
    EXPECT_EQ(text.find("", 3), 3);
    EXPECT_EQ(I18NString().find("a"), -1);
    EXPECT_EQ(I18NString("plain").find("in"), 3);
}

TEST(I18NString, FindsALongTextThatNearlyMatchesEverywhere) {
    const std::string many(200000, 'a');
    const I18NString text(std::string_view(many + "b"));
    const I18NString wanted(std::string_view(many.substr(0, 100000) + "b"));
    EXPECT_EQ(text.find(wanted), 100000);
    EXPECT_EQ(text.find(wanted, 100001), -1);
}

TEST(I18NString, CutsPartsToTheText) {
    const I18NString text(MIXED);
    EXPECT_EQ(text.substr(1, 2).utf8(), "\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(text.substr(4).utf8(), "z");
    EXPECT_EQ(text.substr(3, INT_MAX).length(), 2);
    EXPECT_EQ(text.substr(-4, 1).utf8(), "a");
    EXPECT_TRUE(text.substr(5).empty());
    EXPECT_TRUE(text.substr(INT_MAX, INT_MAX).empty());
    EXPECT_TRUE(text.substr(2, 0).empty());
    EXPECT_EQ(text.substring(1, 3).utf8(), "\xC3\xA9\xE2\x82\xAC");
    EXPECT_TRUE(text.substring(3, 3).empty());
    EXPECT_TRUE(text.substring(3, 1).empty());
    EXPECT_EQ(text.substring(-2, 1).utf8(), "a");
    EXPECT_EQ(I18NString("plain").substring(1, 99).utf8(), "lain");
}

TEST(I18NString, WalksItsCharactersBothWays) {
    const I18NString text(MIXED);
    const std::vector<wchar_t> expected{L'a', L'\xE9', L'\x20AC', static_cast<wchar_t>(0x1D11E), L'z'};
    EXPECT_EQ(Characters(text), expected);
    std::vector<wchar_t> backwards;
    for (I18NStringIterator at = text.end(); at != text.begin();) backwards.push_back(*--at);
    EXPECT_EQ(backwards, std::vector<wchar_t>(expected.rbegin(), expected.rend()));
    EXPECT_TRUE(Characters(I18NString()).empty());
}

TEST(I18NString, CountsAndWalksIllFormedTextAlike) {
    const std::vector<std::string> texts = {"\x80",
                                            "\x80\x80"
                                            "a",
                                            "a\xC3",
                                            "\xE2\x82",
                                            "\xFF\xFE",
                                            "\xC0\x80",
                                            "\xED\xA0\x80",
                                            "\xF0\x9D"
                                            "a\xF8\x88\x80\x80"};
    for (const std::string& bytes : texts) {
        const I18NString text{std::string_view(bytes)};
        const std::vector<wchar_t> characters = Characters(text);
        EXPECT_EQ(static_cast<std::size_t>(text.length()), characters.size());
        std::size_t back = 0;
        for (I18NStringIterator at = text.end(); at != text.begin(); --at) ++back;
        EXPECT_EQ(back, characters.size());
        EXPECT_EQ(text.substr(0, text.length()).utf8(), bytes);
        for (const wchar_t c : characters) EXPECT_TRUE(c == L'a' || c == L'\xFFFD');
    }
}

TEST(I18NString, IsOrderedByCodePoint) {
    EXPECT_LT(I18NString("Z"), I18NString("a"));
    EXPECT_LT(I18NString("z"), I18NString("\xC3\xA9"));
    EXPECT_LT(I18NString("\xEF\xBF\xBD"), I18NString("\xF0\x9D\x84\x9E"));  // not so in UTF-16
    EXPECT_LT(I18NString(), I18NString("a"));
    EXPECT_GT(I18NString("ab"), I18NString("a"));
    EXPECT_LE(I18NString("a"), I18NString("a"));
    EXPECT_GE(I18NString("a"), I18NString("a"));
}

TEST(I18NString, ComparesWithBytes) {
    EXPECT_TRUE(I18NString("a") == "a");
    EXPECT_TRUE("a" == I18NString("a"));
    EXPECT_TRUE(I18NString("a") != "b");
    EXPECT_TRUE(I18NString() == static_cast<const char*>(nullptr));
    I18NString cleared("a");
    cleared.erase();
    EXPECT_TRUE(cleared == I18NString());
}

TEST(I18NString, BuildsALongTextFromCharactersInLinearTime) {
    I18NString text;
    for (int i = 0; i < 200000; ++i) {
        text += L'x';
        ASSERT_EQ(text.length(), i + 1);  // would be quadratic if each look counted anew
    }
}
