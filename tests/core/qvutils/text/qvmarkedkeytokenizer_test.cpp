#include "core/qvutils/text/qvmarkedkeytokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Tokens(const I18NString& text, const I18NString& open, const I18NString& close) {
    std::vector<std::string> tokens;
    QvMarkedKeyTokenizer tokenizer(text, open, close);
    while (tokenizer.hasMoreTokens()) tokens.emplace_back(tokenizer.nextToken(nullptr, nullptr).utf8());
    return tokens;
}

using Texts = std::vector<std::string>;

}  // namespace

TEST(QvMarkedKeyTokenizer, YieldsTheTextsBetweenTheMarksInOrder) {
    EXPECT_EQ(Tokens("[a].[b].[\xC3\xA9]", "[", "]"), (Texts{"a", "b", "\xC3\xA9"}));
    EXPECT_EQ(Tokens("x<<one>>y<<two>>z", "<<", ">>"), (Texts{"one", "two"}));
}

TEST(QvMarkedKeyTokenizer, LooksForTheNextOpenMarkBehindACloseMark) {
    EXPECT_EQ(Tokens("'a' 'b'", "'", "'"), (Texts{"a", "b"}));
}

TEST(QvMarkedKeyTokenizer, YieldsEmptyTokens) {
    EXPECT_EQ(Tokens("[].[a]", "[", "]"), (Texts{"", "a"}));
}

TEST(QvMarkedKeyTokenizer, TakesAnOpenMarkWithinATokenAsText) {
    EXPECT_EQ(Tokens("[a[b]c]", "[", "]"), (Texts{"a[b"}));
}

TEST(QvMarkedKeyTokenizer, EndsWhereAMarkIsMissing) {
    EXPECT_EQ(Tokens("", "[", "]"), Texts{});
    EXPECT_EQ(Tokens("no marks", "[", "]"), Texts{});
    EXPECT_EQ(Tokens("[a].[b", "[", "]"), Texts{"a"});
    EXPECT_EQ(Tokens("a]", "[", "]"), Texts{});
    EXPECT_EQ(Tokens("[", "[", "]"), Texts{});
}

TEST(QvMarkedKeyTokenizer, TakesAnEmptyMarkForNone) {
    EXPECT_EQ(Tokens("[a]", "", "]"), Texts{});
    EXPECT_EQ(Tokens("[a]", "[", ""), Texts{});
}

TEST(QvMarkedKeyTokenizer, TellsThePlacesOfATokenInBytes) {
    QvMarkedKeyTokenizer tokenizer("\xC3\xA9[ab]", "[", "]");
    int start = 0, end = 0;
    EXPECT_EQ(tokenizer.nextToken(&start, &end).utf8(), "ab");
    EXPECT_EQ(start, 3);
    EXPECT_EQ(end, 5);
    EXPECT_FALSE(tokenizer.hasMoreTokens());
    EXPECT_TRUE(tokenizer.nextToken(&start, &end).empty());
    EXPECT_EQ(start, -1);
    EXPECT_EQ(end, -1);
}

TEST(QvMarkedKeyTokenizer, IsLinearInTheText) {
    std::string many;
    for (int i = 0; i < 200000; ++i) many += "[a].";
    EXPECT_EQ(Tokens(I18NString(std::string_view(many)), "[", "]").size(), 200000U);
    const std::string opens(1000000, '[');
    EXPECT_EQ(Tokens(I18NString(std::string_view(opens)), "[", "]"), Texts{});
}
