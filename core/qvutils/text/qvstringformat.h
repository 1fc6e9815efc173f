#pragma once

#include "core/qvutils/text/qvulstring.h"

class QvDate;

/** Texts of numbers and dates. A singleton without state; any thread may use it. */
class SM_API QvStringFormat {
  public:
    static QvStringFormat* GetInstance();

    /** True for 1 to 18 ASCII digits and nothing else: no sign, point or blank, and no value that overflows a long. */
    bool _isNumeric(const I18NString& text) const;
    bool _isNumeric(const QvULString& text) const;
    /** The value of a text that is as a whole an optional sign and digits, cut to the range of a long; else 0. */
    long _string2long(const I18NString& text) const;
    long _string2long(const QvULString& text) const;
    /** Plain decimal text; a whole number has neither point nor exponent. */
    void _num2string(double value, I18NString& out) const;
    /** Equality without regard to the case of ASCII letters. */
    bool _caseInsensitiveEquals(const I18NString& a, const I18NString& b) const;
    /** See I18NLocale::compareIgnoreCase. */
    int compareIgnoreCase(const I18NString& a, const I18NString& b) const;

    /**
     * Dates by pattern: yyyy, MM, dd, HH, mm, ss, text in apostrophes, all else as it stands. `zone` is always null, the
     * default zone; a date holds civil fields and no zone is applied. An unset date prints as the empty text.
     */
    void _datetime2stringwithpattern(const QvDate& date, const I18NString& pattern, I18NString& out, const void* zone) const;
    /**
     * Reads a date by pattern. The text may stop after the date (the time is then midnight), and may go on with a fraction
     * of a second and a zone (a letter, or a sign and hh:mm), which are dropped. Anything else leaves the date unset.
     */
    void _string2datetimewithpattern(const I18NString& text, const I18NString& pattern, QvDate& date, const void* zone) const;

  private:
    QvStringFormat() = default;
};
