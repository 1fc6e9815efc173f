#include "core/qvutils/text/qvulstring.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>
#include <unordered_set>

TEST(QvULString, IsOnePointer) {
    EXPECT_EQ(sizeof(QvULString), sizeof(void*));
}

TEST(QvULString, IsEmptyByDefaultAndFromNull) {
    EXPECT_TRUE(QvULString().empty());
    EXPECT_TRUE(QvULString(static_cast<const char*>(nullptr)).empty());
    EXPECT_TRUE(QvULString("").empty());
    EXPECT_STREQ(QvULString().c_str(), "");
    EXPECT_EQ(QvULString(), QvULString(static_cast<const char*>(nullptr)));
}

TEST(QvULString, ConvertsBothWaysWithoutACopy) {
    const QvULString id("id-1");
    const I18NString text = id;
    const QvULString back = text;
    EXPECT_EQ(text.c_str(), id.c_str());
    EXPECT_EQ(back.c_str(), id.c_str());
    QvULString assigned("old");
    assigned = text;
    EXPECT_EQ(assigned.c_str(), id.c_str());
    I18NString other("old");
    other = id;
    EXPECT_EQ(other.c_str(), id.c_str());
    static_assert(!std::is_constructible_v<I18NString, int>);
}

TEST(QvULString, CountsBytes) {
    EXPECT_EQ(QvULString("\xC3\xA9").length(), 2);
}

TEST(QvULString, AssignsSoManyBytes) {
    QvULString text;
    text.assign("abcdef", 3);
    EXPECT_EQ(text.utf8(), "abc");
    text.assign("abcdef", -1);
    EXPECT_EQ(text.utf8(), "abcdef");
    text.assign("abcdef", 0);
    EXPECT_TRUE(text.empty());
    text.assign(nullptr, 3);
    EXPECT_TRUE(text.empty());
    text = "next";
    EXPECT_EQ(text.utf8(), "next");
    text.assign(text.c_str() + 1, 2);
    EXPECT_EQ(text.utf8(), "ex");
}

TEST(QvULString, IsOrderedByUnsignedBytes) {
    EXPECT_LT(QvULString("B"), QvULString("a"));
    EXPECT_LT(QvULString("z"), QvULString("\xC3\xA9"));
    EXPECT_LT(QvULString("a"), QvULString("ab"));
    EXPECT_FALSE(QvULString("a") < QvULString("a"));
    std::map<QvULString, int> map;
    map["b"] = 2;
    map["a"] = 1;
    EXPECT_EQ(map.begin()->second, 1);
}

template <class A, class B>
void ExpectEqualAndOrdered(const A& small, const B& alike, const B& big) {
    EXPECT_TRUE(small == alike);
    EXPECT_TRUE(alike == small);
    EXPECT_FALSE(small != alike);
    EXPECT_TRUE(small != big);
    EXPECT_TRUE(big != small);
    EXPECT_TRUE(small < big);
    EXPECT_TRUE(big > small);
    EXPECT_TRUE(small <= alike);
    EXPECT_TRUE(small >= alike);
    EXPECT_FALSE(big <= small);
    EXPECT_FALSE(small >= big);
}

TEST(QvULString, ComparesWithEveryKindOfText) {
    const QvULString compact("a"), compactBig("b");
    const I18NString text("a"), textBig("b");
    ExpectEqualAndOrdered(compact, compact, compactBig);
    ExpectEqualAndOrdered(compact, text, textBig);
    ExpectEqualAndOrdered(text, compact, compactBig);
    ExpectEqualAndOrdered(text, text, textBig);
    EXPECT_TRUE(compact == "a");
    EXPECT_TRUE("a" == compact);
    EXPECT_TRUE(compact != "b");
    EXPECT_TRUE("b" != compact);
    EXPECT_TRUE(QvULString() == static_cast<const char*>(nullptr));
}

TEST(QvULString, JoinsIntoText) {
    const QvULString id("id");
    const I18NString text = "[" + I18NString(id) + "].[" + id + "]";
    EXPECT_EQ(text.utf8(), "[id].[id]");
    I18NString sum(id);
    sum += id;
    EXPECT_EQ(sum.utf8(), "idid");
    EXPECT_EQ((id + "!").utf8(), "id!");
}

TEST(QvULString, HashesAsItsTextDoes) {
    std::unordered_set<QvULString> set{QvULString("a"), QvULString("b"), QvULString("a")};
    EXPECT_EQ(set.size(), 2U);
    EXPECT_EQ(std::hash<QvULString>()(QvULString("a")), std::hash<I18NString>()(I18NString("a")));
}

TEST(QvULString, ImmortalNamesAreShared) {
    EXPECT_EQ(QvULString::Immortal("name").c_str(), I18NString::Immortal("name").c_str());
}
