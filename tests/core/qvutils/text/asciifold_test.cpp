#include "core/qvutils/text/asciifold.h"

#include "core/qvutils/text/qvulstring.h"

#include <gtest/gtest.h>

#include <map>

TEST(AsciiFold, FoldsLettersAndNothingElse) {
    for (int i = 0; i < 256; ++i) {
        const char c = static_cast<char>(i);
        const bool upper = i >= 'A' && i <= 'Z', lower = i >= 'a' && i <= 'z';
        EXPECT_EQ(qv::AsciiLower(c), upper ? static_cast<char>(i + 32) : c);
        EXPECT_EQ(qv::AsciiUpper(c), lower ? static_cast<char>(i - 32) : c);
        EXPECT_EQ(qv::IsAsciiLetter(c), upper || lower);
        EXPECT_EQ(qv::IsAsciiDigit(c), i >= '0' && i <= '9');
    }
    EXPECT_EQ(qv::AsciiLowered("Row_ID\xC3\x89"), "row_id\xC3\x89");
}

TEST(AsciiFold, EqualityOrderAndHashAgree) {
    EXPECT_TRUE(qv::AsciiEqualsIgnoreCase("STATUS", "status"));
    EXPECT_FALSE(qv::AsciiEqualsIgnoreCase("STATUS", "statu"));
    EXPECT_FALSE(qv::AsciiEqualsIgnoreCase("[", "{"));
    EXPECT_EQ(qv::AsciiHashIgnoreCase("STATUS"), qv::AsciiHashIgnoreCase("status"));
    EXPECT_NE(qv::AsciiHashIgnoreCase("STATUS"), qv::AsciiHashIgnoreCase("statuS_"));
    EXPECT_EQ(qv::AsciiCompareIgnoreCase("a", "\xC3"), -1);
    EXPECT_EQ(qv::AsciiCompareIgnoreCase("B", "a"), 1);
}

TEST(AsciiFold, OrdersTheKeysOfAMap) {
    std::map<QvULString, int, qv::AsciiLessIgnoreCase> map;
    map["Status"] = 1;
    map["STATUS"] = 2;
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(map.find(QvULString("status"))->second, 2);
}
