#pragma once

#include <cstddef>
#include <cstdint>

#include "core/qvutils/text/i18nstring.h"

/**
 * A moment as civil fields to the second, or unset. No zone is kept or applied: what is read from a text is what is written
 * again. "Now" is UTC.
 */
class SM_API QvDate {
  public:
    /** true: the present moment in UTC, cut to whole seconds; false: an unset date. */
    explicit QvDate(bool now = false);
    /** Reads the text as SetFromString does. */
    explicit QvDate(const I18NString& text);
    explicit QvDate(const char* text);  // a literal would otherwise become a bool

    /** Reads "yyyy-MM-dd'T'HH:mm:ss", also date only, with a fraction or a zone, which are dropped; other texts unset the date. */
    void SetFromString(const I18NString& text);
    /** Unsets the date and returns false when the fields are no date of the calendar. */
    bool SetFields(int year, int month, int day, int hour, int minute, int second);
    bool IsSet() const noexcept { return m_set != 0; }
    int Year() const noexcept { return m_year; }
    int Month() const noexcept { return m_month; }
    int Day() const noexcept { return m_day; }
    int Hour() const noexcept { return m_hour; }
    int Minute() const noexcept { return m_minute; }
    int Second() const noexcept { return m_second; }
    /** "yyyy-MM-dd'T'HH:mm:ss", or the empty text when unset. */
    I18NString ToString() const;

    /** The bytes of "yyyy-MM-ddTHH:mm:ss". */
    static constexpr std::size_t ISO_SIZE = 19;
    /** The text of a set date, without a NUL. */
    void PrintIso(char (&out)[ISO_SIZE]) const noexcept;
    /** Reads exactly ISO_SIZE bytes. Unsets the date and returns false when they are no such date. */
    bool ReadIso(const char* text);

    bool operator==(const QvDate& other) const noexcept = default;

  private:
    std::int16_t m_year = 0;
    std::uint8_t m_month = 0, m_day = 0, m_hour = 0, m_minute = 0, m_second = 0;
    std::uint8_t m_set = 0;
};
