#include "core/qvutils/text/shortened.h"

#include <gtest/gtest.h>

TEST(Shortened, LeavesATextAsItIsThatIsShortEnough) {
    EXPECT_EQ(qv::Shortened("", 4), "");
    EXPECT_EQ(qv::Shortened("abcd", 4), "abcd");
    EXPECT_EQ(qv::Shortened(std::string(500, 'x')), std::string(500, 'x'));
}

TEST(Shortened, KeepsBeginningAndEnd) {
    EXPECT_EQ(qv::Shortened("abcdefgh", 4), "ab...gh");
    EXPECT_EQ(qv::Shortened("abcdefgh", 5), "ab...fgh");
}

TEST(Shortened, CutsNoCharacterInTwo) {
    EXPECT_EQ(qv::Shortened("a\xC3\xA9"
                            "bcd\xC3\xA9"
                            "f",
                            4),
              "a...f");
    EXPECT_EQ(qv::Shortened("\xA9\xA9\xA9\xA9\xA9\xA9", 2), "...");
}
