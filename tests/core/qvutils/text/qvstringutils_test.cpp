#include "core/qvutils/text/qvstringutils.h"

#include <gtest/gtest.h>

TEST(QvStringUtils, EscapesWhatAnObjectIdIsMadeOf) {
    EXPECT_EQ(QvStringUtils::EscapeString("[a].[b]").utf8(), "&#91;a&#93;&#46;&#91;b&#93;");
}

TEST(QvStringUtils, EscapesWhatXmlIsMadeOf) {
    EXPECT_EQ(QvStringUtils::EscapeString("<a & \"b\" 'c'>").utf8(), "&lt;a &amp; &quot;b&quot; &apos;c&apos;&gt;");
    EXPECT_EQ(QvStringUtils::EscapeString("&amp;").utf8(), "&amp;amp;");
}

TEST(QvStringUtils, LeavesAllElseAlone) {
    const I18NString plain("Sales (\xE2\x82\xAC) / 2024_\t");
    EXPECT_EQ(QvStringUtils::EscapeString(plain).c_str(), plain.c_str());
    EXPECT_TRUE(QvStringUtils::EscapeString("").empty());
}
