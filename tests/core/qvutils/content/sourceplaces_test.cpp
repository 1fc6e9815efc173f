#include "core/qvutils/content/sourceplaces.h"

#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using What = qv::PlaceQuestion::What;

namespace {

struct Answer {
    long line, column;
    std::size_t bytes;
    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << answer.line << ":" << answer.column << " (" << answer.bytes << ")";
}

Answer Ask(const std::string& document, What what, long line, long column, const std::string& name = {}) {
    std::vector<qv::PlaceQuestion> questions{{what, line, column, name}};
    qv::AnswerPlaces(document, questions);
    return {questions[0].startLine, questions[0].startColumn, questions[0].bytes};
}

}  // namespace

TEST(SourcePlaces, FindTheFirstCharacterOfAnElement) {
    EXPECT_EQ(Ask("<a>\n  <b c='>'\n d=\"'\">x</b></a>", What::element, 3, 8), (Answer{2, 3, 21}));
    EXPECT_EQ(Ask("<a><b/></a>", What::element, 1, 8), (Answer{1, 4, 4}));
    EXPECT_EQ(Ask("<?xml version='1.0'?><!-- <a> --><a></a>", What::element, 1, 37), (Answer{1, 34, 7}));
}

TEST(SourcePlaces, FindAnAttributeByItsName) {
    EXPECT_EQ(Ask("<a bc='1' b = \"2>\"/>", What::attribute, 1, 21, "b"), (Answer{1, 11, 8}));
    EXPECT_EQ(Ask("<a\n\tb='1'\n\tcd='2'>", What::attribute, 3, 9, "cd"), (Answer{3, 2, 6}));
}

/** All in one look at the tag: one look for each of them would take minutes. */
TEST(SourcePlaces, FindEachOfVeryManyAttributesOfOneElement) {
    constexpr long MANY = 100'000;
    std::string document = "<a";
    for (long i = 0; i < MANY; ++i) document += "\na" + std::to_string(i) + "=\"1\"";
    document += "/>";
    std::vector<qv::PlaceQuestion> questions;
    for (long i = MANY - 1; i >= 0; --i) questions.push_back({What::attribute, MANY + 1, 13, "a" + std::to_string(i)});
    const std::clock_t start = std::clock();
    qv::AnswerPlaces(document, questions);
    EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
    for (long i = 0; i < MANY; ++i) {
        const qv::PlaceQuestion& answered = questions[static_cast<std::size_t>(MANY - 1 - i)];
        ASSERT_EQ((Answer{answered.startLine, answered.startColumn, answered.bytes}), (Answer{i + 2, 1, 5 + std::to_string(i).size()}));
    }
}

TEST(SourcePlaces, AnswerTwoQuestionsAboutOneAttribute) {
    std::vector<qv::PlaceQuestion> questions(2, {What::attribute, 1, 10, "b"});
    qv::AnswerPlaces("<a b='1'>", questions);
    for (const qv::PlaceQuestion& answered : questions) EXPECT_EQ(answered.startColumn, 4);
}

TEST(SourcePlaces, FindTheFirstCharacterOfAText) {
    EXPECT_EQ(Ask("<a>\n  x y \n</a>", What::text, 1, 4), (Answer{2, 3, 3}));
    EXPECT_EQ(Ask("<a><b/><!-- - --> z</a>", What::text, 1, 8), (Answer{1, 19, 1}));
    EXPECT_EQ(Ask("<a><![CDATA[ <b> ]]></a>", What::text, 1, 4), (Answer{1, 14, 3}));
    EXPECT_EQ(Ask("<a>  </a>", What::text, 1, 4), (Answer{1, 4, 0}));
}

TEST(SourcePlaces, TakeTheTextOfASimpleElementForAnEventAtItsEnd) {
    EXPECT_EQ(Ask("<a><b> x</b></a>", What::event, 1, 13), (Answer{1, 8, 9}));
    EXPECT_EQ(Ask("<a><b> x</b></a>", What::event, 1, 17), (Answer{1, 1, 16}));
    EXPECT_EQ(Ask("<a><b> x</b></a>", What::event, 1, 7), (Answer{1, 4, 9}));
}

TEST(SourcePlaces, CountUnitsOfUtf16AndEveryKindOfLineEnd) {
    EXPECT_EQ(Ask("<a>\xF0\x9F\x98\x80\xC3\xA9<b/></a>", What::element, 1, 11), (Answer{1, 7, 4}));
    EXPECT_EQ(Ask("<a>\r\n\r<b/></a>", What::element, 3, 5), (Answer{3, 1, 4}));
    EXPECT_EQ(Ask("\xEF\xBB\xBF<a/>", What::element, 1, 5), (Answer{1, 1, 4}));
}

TEST(SourcePlaces, PutWhatAnEntityHoldsWhereTheReferenceStands) {
    const std::string document = "<!DOCTYPE a [<!ENTITY e '<b>]></b>'><!-- ' -->]>\n<a>x &e;</a>";
    EXPECT_EQ(Ask(document, What::element, 2, 9), (Answer{2, 6, 3}));
}

TEST(SourcePlaces, EndATextWithTheReferenceInWhichAnElementEndsIt) {
    const std::string document = "<!DOCTYPE a [<!ENTITY e 'x<b>y</b>z'>]>\n<a>u&e;&e;v<c/></a>";
    std::vector<qv::PlaceQuestion> questions{
        {What::text, 2, 4, {}}, {What::element, 2, 8, {}}, {What::text, 2, 8, {}}, {What::element, 2, 11, {}}, {What::text, 2, 11, {}}};
    qv::AnswerPlaces(document, questions);
    const std::vector<Answer> wanted{{2, 4, 4}, {2, 5, 3}, {2, 5, 3}, {2, 8, 3}, {2, 8, 3}};
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_EQ((Answer{questions[i].startLine, questions[i].startColumn, questions[i].bytes}), wanted[i]) << i;
}

TEST(SourcePlaces, LeaveAPlaceAsItIsWhereNothingBegan) {
    EXPECT_EQ(Ask("<a><b/></a>", What::element, 7, 7), (Answer{7, 7, 0}));
    EXPECT_EQ(Ask("<a", What::element, 1, 1), (Answer{1, 1, 0}));
    EXPECT_EQ(Ask("", What::text, 1, 1), (Answer{1, 1, 0}));
}

TEST(SourcePlaces, PutAnEventOfTheDoctypeAtItsFirstCharacter) {
    EXPECT_EQ(Ask("<!-- c -->\n <!DOCTYPE a SYSTEM 'b'><a/>", What::event, 2, 24), (Answer{2, 2, 0}));
    EXPECT_EQ(Ask("<!DOCTYPE a SYSTEM 'b' [<!ENTITY e '>'>]><a/>", What::event, 1, 24), (Answer{1, 1, 0}));
}

TEST(SourcePlaces, CostEachTextBehindADoctypeItsLengthAlone) {
    constexpr std::size_t MANY = 300'000;
    std::string document = "<!DOCTYPE a><a>";
    for (std::size_t i = 0; i < MANY; ++i) document += "<b>text</b>\n";
    document += "</a>";
    const std::clock_t start = std::clock();
    EXPECT_EQ(Ask(document, What::element, MANY, 4), (Answer{MANY, 1, 11}));
    EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC);
}

TEST(SourcePlaces, AreAnsweredBeforeTheFaultOfABrokenDocument) {
    for (const std::string before : {"", "<!--\xC2\x85-->"})
        for (const std::string after : {"</b>", "<c x='", "<![CDATA[", "<!--", "<", "&", "</", "<!DOCTYPE a [<!ENTITY"})
            EXPECT_EQ(Ask(before + "<a>\n  <b/>" + after, What::element, 2, 7), (Answer{2, 3, 4})) << before << after;
}

TEST(SourcePlaces, TellWhereTheRestOfADocumentBegins) {
    EXPECT_EQ(qv::OffsetOfRest("a\r\nb\rc\nd", "\nb\nc\nd"), 1u);
    EXPECT_EQ(qv::OffsetOfRest("a\r\nb", "b"), 3u);
    EXPECT_EQ(qv::OffsetOfRest("ab", "ab"), 0u);
    EXPECT_EQ(qv::OffsetOfRest("ab", ""), 2u);
    EXPECT_EQ(qv::OffsetOfRest("ab", "cb"), std::string_view::npos);
    EXPECT_EQ(qv::OffsetOfRest("ab", "aab"), std::string_view::npos);
}

TEST(SourcePlaces, CountTheColumnOfACharacter) {
    EXPECT_EQ(qv::ColumnAt("\xEF\xBB\xBF"
                           "abc",
                           5),
              3);
    EXPECT_EQ(qv::ColumnAt("a\rb\xC2\x85\xF0\x9F\x98\x80"
                           "c",
                           9),
              5);
    EXPECT_EQ(qv::ColumnAt("a\r\n", 3), 1);
    EXPECT_EQ(qv::ColumnAt("", 0), 1);
}
