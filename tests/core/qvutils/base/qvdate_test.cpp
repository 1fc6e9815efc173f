#include "core/qvutils/base/qvdate.h"

#include "core/qvutils/text/qvulstring.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>

namespace {

std::string Text(const char* text) {
    return std::string(QvDate(text).ToString().utf8());
}

}  // namespace

TEST(QvDate, IsUnsetOnDemandAndByDefault) {
    EXPECT_FALSE(QvDate().IsSet());
    EXPECT_FALSE(QvDate(false).IsSet());
    EXPECT_TRUE(QvDate(false).ToString().empty());
    EXPECT_EQ(QvDate(), QvDate(false));
}

TEST(QvDate, NowIsThePresentInUtc) {
    const std::time_t before = std::time(nullptr);
    const QvDate now(true);
    const std::time_t after = std::time(nullptr);
    std::tm fields{};
    fields.tm_year = now.Year() - 1900;
    fields.tm_mon = now.Month() - 1;
    fields.tm_mday = now.Day();
    fields.tm_hour = now.Hour();
    fields.tm_min = now.Minute();
    fields.tm_sec = now.Second();
    const std::time_t moment = timegm(&fields);
    EXPECT_GE(moment, before);
    EXPECT_LE(moment, after);
    EXPECT_EQ(QvDate(now.ToString()), now);
}

TEST(QvDate, GivesBackTheTextItRead) {
    for (const char* const text : {"2024-02-29T23:59:59", "0001-01-01T00:00:00", "9999-12-31T12:30:00"}) EXPECT_EQ(Text(text), text);
}

TEST(QvDate, ReadsEveryKindOfText) {
    QvDate date;
    date.SetFromString("2023-10-05T07:08:09");
    EXPECT_EQ(date, QvDate("2023-10-05T07:08:09"));
    EXPECT_EQ(date, QvDate(I18NString("2023-10-05T07:08:09")));
    EXPECT_EQ(date, QvDate(QvULString("2023-10-05T07:08:09")));
    EXPECT_EQ(date.Year(), 2023);
    EXPECT_EQ(date.Month(), 10);
    EXPECT_EQ(date.Day(), 5);
    EXPECT_EQ(date.Hour(), 7);
    EXPECT_EQ(date.Minute(), 8);
    EXPECT_EQ(date.Second(), 9);
}

TEST(QvDate, TakesADateAloneAsMidnight) {
    EXPECT_EQ(Text("2023-10-05"), "2023-10-05T00:00:00");
}

TEST(QvDate, DropsFractionAndZoneAndKeepsTheFields) {
    for (const char* const tail : {".1", ".123456789", "Z", "z", "A", "+01:00", "-05:30", "+0100", ".5Z", ".25+14:00"})
        EXPECT_EQ(Text((std::string("2023-10-05T07:08:09") + tail).c_str()), "2023-10-05T07:08:09") << tail;
}

TEST(QvDate, IsUnsetByAnythingElse) {
    for (const char* const text : {"",
                                   "junk",
                                   "2023",
                                   "2023-10",
                                   "2023-10-",
                                   "2023-10-05T",
                                   "2023-10-05T07",
                                   "2023-10-05T07:08",
                                   "2023-10-05 07:08:09",
                                   "20231005T070809",
                                   "2023-10-05T07:08:09.",
                                   "2023-10-05T07:08:09.Z",
                                   "2023-10-05T07:08:09+",
                                   "2023-10-05T07:08:09+1",
                                   "2023-10-05T07:08:09+01:0",
                                   "2023-10-05T07:08:09+25:00",
                                   "2023-10-05T07:08:09+01:60",
                                   "2023-10-05T07:08:09ZZ",
                                   "2023-10-05T07:08:09 ",
                                   " 2023-10-05T07:08:09",
                                   "2023-10-05T07:08:09+01:000",
                                   "+023-10-05T07:08:09",
                                   "2023-1a-05T07:08:09",
                                   "2023-10-05T07:08:0a",
                                   "-023-10-05"}) {
        QvDate date(true);
        date.SetFromString(text);
        EXPECT_FALSE(date.IsSet()) << text;
        EXPECT_EQ(date, QvDate(false)) << text;
    }
}

TEST(QvDate, KnowsTheCalendar) {
    for (const char* const text : {"2024-02-29", "2000-02-29", "2023-02-28", "2023-01-31", "2023-04-30", "2023-12-31"})
        EXPECT_TRUE(QvDate(text).IsSet()) << text;
    for (const char* const text :
         {"2023-02-29", "1900-02-29", "2024-02-30", "2023-04-31", "2023-06-31", "2023-09-31", "2023-11-31", "2023-01-32", "2023-01-00",
          "2023-00-01", "2023-13-01", "0000-01-01", "2023-01-01T24:00:00", "2023-01-01T00:60:00", "2023-01-01T00:00:60"})
        EXPECT_FALSE(QvDate(text).IsSet()) << text;
}

TEST(QvDate, TakesFieldsThatAreADate) {
    QvDate date(true);
    EXPECT_TRUE(date.SetFields(2024, 2, 29, 23, 59, 59));
    EXPECT_EQ(date.ToString().utf8(), "2024-02-29T23:59:59");
    EXPECT_FALSE(date.SetFields(2023, 2, 29, 0, 0, 0));
    EXPECT_FALSE(date.IsSet());
    for (const int year : {-1, 0, 10000, 70000}) EXPECT_FALSE(date.SetFields(year, 1, 1, 0, 0, 0));
    EXPECT_FALSE(date.SetFields(2023, 1, 1, -1, 0, 0));
}

TEST(QvDate, CopiesAndCompares) {
    const QvDate date("2023-10-05T07:08:09");
    QvDate copy(date);
    EXPECT_EQ(copy, date);
    copy.SetFromString("2023-10-05T07:08:10");
    EXPECT_NE(copy, date);
    copy = date;
    EXPECT_EQ(copy, date);
    EXPECT_NE(copy, QvDate(false));
}
