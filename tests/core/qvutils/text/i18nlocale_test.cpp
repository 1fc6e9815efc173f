#include "core/qvutils/text/i18nlocale.h"

#include <gtest/gtest.h>

TEST(I18NLocale, ComparesWithoutRegardToAsciiCase) {
    EXPECT_EQ(I18NLocale::compareIgnoreCase("en-US", "EN-us"), 0);
    EXPECT_EQ(I18NLocale::compareIgnoreCase("de", "EN"), -1);
    EXPECT_EQ(I18NLocale::compareIgnoreCase("FR", "en"), 1);
    EXPECT_EQ(I18NLocale::compareIgnoreCase("", ""), 0);
    EXPECT_EQ(I18NLocale::compareIgnoreCase("en", "en-us"), -1);
    EXPECT_EQ(I18NLocale::compareIgnoreCase("en-us", "en"), 1);
}

TEST(I18NLocale, TellsPunctuationApart) {
    EXPECT_NE(I18NLocale::compareIgnoreCase("en-us", "en_us"), 0);
}

TEST(I18NLocale, LeavesOtherLettersAsTheyStand) {
    EXPECT_NE(I18NLocale::compareIgnoreCase("\xC3\xA9", "\xC3\x89"), 0);
}
