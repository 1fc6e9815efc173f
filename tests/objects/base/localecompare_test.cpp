#include "objects/base/localecompare_002_000.h"

#include <gmock/gmock.h>

using schema_002_000::LocaleCompare;
using schema_002_000::SMLocaleMap;

TEST(LocaleCompare, SeesLettersAndDigitsAlone) {
    EXPECT_EQ(LocaleCompare::compare("en-us", "EN_US"), 0);
    EXPECT_EQ(LocaleCompare::compare("en-us", "EN US"), 0);
    EXPECT_EQ(LocaleCompare::compare("e.n", "en\xC3\xA9"), 0);
    EXPECT_EQ(LocaleCompare::compare("--en--", "en"), 0);
    EXPECT_NE(LocaleCompare::compare("en1", "en2"), 0);
}

TEST(LocaleCompare, HasTheReverseSign) {
    EXPECT_EQ(LocaleCompare::compare("en", "fr"), 1);
    EXPECT_EQ(LocaleCompare::compare("fr", "en"), -1);
    EXPECT_EQ(LocaleCompare::compare("1", "a"), 1);
}

TEST(LocaleCompare, SortsAShorterNameBehindALongerOne) {
    EXPECT_EQ(LocaleCompare::compare("en", "en-gb"), 1);
    EXPECT_EQ(LocaleCompare::compare("en-gb", "en"), -1);
}

TEST(LocaleCompare, SortsTheEmptyNameLast) {
    EXPECT_EQ(LocaleCompare::compare("", ""), 0);
    EXPECT_EQ(LocaleCompare::compare("", "en"), 1);
    EXPECT_EQ(LocaleCompare::compare("en", ""), -1);
    EXPECT_EQ(LocaleCompare::compare("-", ""), 0);
}

TEST(LocaleCompare, IsAnOrderAsACallOperator) {
    EXPECT_TRUE(LocaleCompare()("fr", "en"));
    EXPECT_FALSE(LocaleCompare()("en", "fr"));
    EXPECT_FALSE(LocaleCompare()("en", "EN"));
}

TEST(LocaleMap, RunsFromTheHighestLocaleToTheLowest) {
    SMLocaleMap map;
    for (const char* locale : {"en", "fr", "de", "en-gb", "ja"}) map[locale] = locale;
    std::vector<std::string> locales;
    for (const auto& entry : map) locales.push_back(entry.first.c_str());
    EXPECT_THAT(locales, testing::ElementsAre("ja", "fr", "en-gb", "en", "de"));
}

TEST(LocaleMap, KeepsTheFirstSpellingOfAKey) {
    SMLocaleMap map;
    map["en_US"] = "first";
    map["EN-us"] = "second";
    ASSERT_EQ(map.size(), 1u);
    EXPECT_EQ(map.begin()->first, "en_US");
    EXPECT_EQ(map.begin()->second, "second");
}
