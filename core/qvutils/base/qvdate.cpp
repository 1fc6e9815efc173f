#include "core/qvutils/base/qvdate.h"

#include "core/qvutils/text/asciifold.h"
#include "core/qvutils/text/qvstringformat.h"

#include <ctime>

namespace {

int DaysOf(int year, int month) {
    static constexpr int DAYS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : DAYS[month - 1];
}

void PrintTwo(char* out, int value) {
    out[0] = static_cast<char>('0' + value / 10);
    out[1] = static_cast<char>('0' + value % 10);
}

/** -1 when one of the two is no digit. */
int ReadTwo(const char* text) {
    if (!qv::IsAsciiDigit(text[0]) || !qv::IsAsciiDigit(text[1])) return -1;
    return (text[0] - '0') * 10 + (text[1] - '0');
}

}  // namespace

QvDate::QvDate(bool now) {
    if (!now) return;
    const std::time_t moment = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&moment, &utc);
    SetFields(utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
}

QvDate::QvDate(const I18NString& text) {
    SetFromString(text);
}

QvDate::QvDate(const char* text) {
    SetFromString(I18NString(text));
}

void QvDate::SetFromString(const I18NString& text) {
    static const I18NString& pattern = *new I18NString(I18NString::Immortal("yyyy-MM-dd'T'HH:mm:ss"));
    QvStringFormat::GetInstance()->_string2datetimewithpattern(text, pattern, *this, nullptr);
}

bool QvDate::SetFields(int year, int month, int day, int hour, int minute, int second) {
    *this = QvDate(false);
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysOf(year, month)) return false;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return false;
    m_year = static_cast<std::int16_t>(year);
    m_month = static_cast<std::uint8_t>(month);
    m_day = static_cast<std::uint8_t>(day);
    m_hour = static_cast<std::uint8_t>(hour);
    m_minute = static_cast<std::uint8_t>(minute);
    m_second = static_cast<std::uint8_t>(second);
    m_set = 1;
    return true;
}

void QvDate::PrintIso(char (&out)[ISO_SIZE]) const noexcept {
    PrintTwo(out, m_year / 100);
    PrintTwo(out + 2, m_year % 100);
    out[4] = '-';
    PrintTwo(out + 5, m_month);
    out[7] = '-';
    PrintTwo(out + 8, m_day);
    out[10] = 'T';
    PrintTwo(out + 11, m_hour);
    out[13] = ':';
    PrintTwo(out + 14, m_minute);
    out[16] = ':';
    PrintTwo(out + 17, m_second);
}

bool QvDate::ReadIso(const char* text) {
    const int century = ReadTwo(text);
    const int year = ReadTwo(text + 2);
    const bool marked = text[4] == '-' && text[7] == '-' && text[10] == 'T' && text[13] == ':' && text[16] == ':';
    if (!marked || century < 0 || year < 0) return SetFields(0, 0, 0, 0, 0, 0);
    return SetFields(century * 100 + year, ReadTwo(text + 5), ReadTwo(text + 8), ReadTwo(text + 11), ReadTwo(text + 14),
                     ReadTwo(text + 17));
}

I18NString QvDate::ToString() const {
    if (!IsSet()) return {};
    char text[ISO_SIZE];
    PrintIso(text);
    return I18NString(std::string_view(text, sizeof text));
}
