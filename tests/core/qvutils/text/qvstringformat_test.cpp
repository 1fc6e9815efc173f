#include "core/qvutils/text/qvstringformat.h"

#include "core/qvutils/base/qvdate.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

const QvStringFormat& Format() {
    return *QvStringFormat::GetInstance();
}

std::string Number(double value) {
    I18NString text("old");
    Format()._num2string(value, text);
    return std::string(text.utf8());
}

std::string Print(const QvDate& date, const char* pattern) {
    I18NString text("old");
    Format()._datetime2stringwithpattern(date, pattern, text, nullptr);
    return std::string(text.utf8());
}

QvDate Read(const char* text, const char* pattern) {
    QvDate date(true);
    Format()._string2datetimewithpattern(text, pattern, date, nullptr);
    return date;
}

QvDate Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    QvDate date;
    EXPECT_TRUE(date.SetFields(year, month, day, hour, minute, second));
    return date;
}

constexpr const char* ISO = "yyyy-MM-dd'T'HH:mm:ss";

}  // namespace

TEST(QvStringFormat, IsOneObject) {
    std::vector<QvStringFormat*> seen(4);
    std::vector<std::thread> threads;
    for (QvStringFormat*& place : seen) threads.emplace_back([&place] { place = QvStringFormat::GetInstance(); });
    for (std::thread& thread : threads) thread.join();
    for (const QvStringFormat* place : seen) EXPECT_EQ(place, QvStringFormat::GetInstance());
}

TEST(QvStringFormat, TakesOneToEighteenDigitsForNumeric) {
    for (const char* const text : {"0", "7", "0042", "999999999999999999"}) {
        EXPECT_TRUE(Format()._isNumeric(I18NString(text))) << text;
        EXPECT_TRUE(Format()._isNumeric(QvULString(text))) << text;
    }
    for (const char* const text : {"", "-1", "+1", "1.0", " 1", "1 ", "1e3", "0x1", "1000000000000000000", "\xD9\xA1", "a"}) {
        EXPECT_FALSE(Format()._isNumeric(I18NString(text))) << text;
        EXPECT_FALSE(Format()._isNumeric(QvULString(text))) << text;
    }
}

TEST(QvStringFormat, ReadsAWholeLong) {
    EXPECT_EQ(Format()._string2long(I18NString("42")), 42);
    EXPECT_EQ(Format()._string2long(QvULString("-42")), -42);
    EXPECT_EQ(Format()._string2long(I18NString("+42")), 42);
    EXPECT_EQ(Format()._string2long(I18NString("9223372036854775807")), LONG_MAX);
    EXPECT_EQ(Format()._string2long(I18NString("-9223372036854775808")), LONG_MIN);
}

TEST(QvStringFormat, GivesZeroForAnythingElse) {
    for (const char* const text : {"", "-", "+", "--1", "+-1", "-+1", "1a", "a1", " 1", "1 ", "1.5", "1,000"}) {
        EXPECT_EQ(Format()._string2long(I18NString(text)), 0) << text;
        EXPECT_EQ(Format()._string2long(QvULString(text)), 0) << text;
    }
}

TEST(QvStringFormat, CutsLongsToTheirRange) {
    EXPECT_EQ(Format()._string2long(I18NString("9223372036854775808")), LONG_MAX);
    EXPECT_EQ(Format()._string2long(I18NString("+99999999999999999999999999")), LONG_MAX);
    EXPECT_EQ(Format()._string2long(I18NString("-99999999999999999999999999")), LONG_MIN);
}

TEST(QvStringFormat, PrintsWholeNumbersWithoutPointOrExponent) {
    EXPECT_EQ(Number(0), "0");
    EXPECT_EQ(Number(-0.0), "0");
    EXPECT_EQ(Number(7), "7");
    EXPECT_EQ(Number(-7), "-7");
    EXPECT_EQ(Number(1000000), "1000000");
    EXPECT_EQ(Number(9007199254740992), "9007199254740992");
    EXPECT_EQ(Number(1e18), "1000000000000000000");
    EXPECT_EQ(Number(static_cast<double>(LONG_MIN)), "-9223372036854775808");
    EXPECT_EQ(Number(static_cast<double>(LONG_MAX)), "9223372036854775807");
    EXPECT_EQ(Number(1e30).find_first_of(".e"), std::string::npos);
}

TEST(QvStringFormat, PrintsFractionsPlainly) {
    EXPECT_EQ(Number(0.5), "0.5");
    EXPECT_EQ(Number(-12.25), "-12.25");
    EXPECT_EQ(Number(1e-7), "0.0000001");
    EXPECT_EQ(std::stod(Number(0.1)), 0.1);
    EXPECT_EQ(Number(std::numeric_limits<double>::denorm_min()).find('e'), std::string::npos);
    EXPECT_EQ(Number(-std::numeric_limits<double>::max()).size(), 310U);
}

TEST(QvStringFormat, EqualsWithoutRegardToCase) {
    EXPECT_TRUE(Format()._caseInsensitiveEquals("True", "tRUE"));
    EXPECT_FALSE(Format()._caseInsensitiveEquals("true", "true "));
    EXPECT_FALSE(Format()._caseInsensitiveEquals("\xC3\xA9", "\xC3\x89"));
    EXPECT_EQ(Format().compareIgnoreCase("en-US", "EN-us"), 0);
    EXPECT_NE(Format().compareIgnoreCase("en-us", "en_us"), 0);
}

TEST(QvStringFormat, PrintsDatesByPattern) {
    const QvDate date = Moment(987, 6, 5, 4, 3, 2);
    EXPECT_EQ(Print(date, ISO), "0987-06-05T04:03:02");
    EXPECT_EQ(Print(date, "dd.MM.yyyy"), "05.06.0987");
    EXPECT_EQ(Print(date, "yyyyMMddHHmmss"), "09870605040302");
    EXPECT_EQ(Print(date, "HH 'o''clock' ''mm'' 'MM"), "04 o'clock '03' MM");
    EXPECT_EQ(Print(date, ""), "");
}

TEST(QvStringFormat, PrintsAnUnsetDateAsEmpty) {
    EXPECT_EQ(Print(QvDate(false), ISO), "");
    EXPECT_EQ(Print(QvDate(false), "dd.MM.yyyy"), "");
}

TEST(QvStringFormat, ReadsDatesByPattern) {
    EXPECT_EQ(Read("2024-02-29T23:59:58", ISO), Moment(2024, 2, 29, 23, 59, 58));
    EXPECT_EQ(Read("29.02.2024", "dd.MM.yyyy"), Moment(2024, 2, 29));
    EXPECT_EQ(Read("20240229235958", "yyyyMMddHHmmss"), Moment(2024, 2, 29, 23, 59, 58));
    EXPECT_EQ(Read("29.02.2024 at 7'", "dd.MM.yyyy 'at 7'''"), Moment(2024, 2, 29));
    EXPECT_EQ(Read("29.02.2024", "dd.MM.yyyy HH:mm"), Moment(2024, 2, 29));
    EXPECT_FALSE(Read("29/02/2024", "dd.MM.yyyy").IsSet());
    EXPECT_FALSE(Read("10:00", "HH:mm").IsSet());
    EXPECT_FALSE(Read("", "").IsSet());
}

TEST(QvStringFormat, ReadsWhatItPrinted) {
    const QvDate date = Moment(9999, 12, 31, 23, 59, 59);
    for (const char* const pattern : {ISO, "dd.MM.yyyy HH:mm:ss", "ss'yyyy'mm-HH/dd MM yyyy"})
        EXPECT_EQ(Read(Print(date, pattern).c_str(), pattern), date) << pattern;
}
