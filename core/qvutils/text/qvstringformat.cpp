#include "core/qvutils/text/qvstringformat.h"

#include "core/qvutils/base/qvdate.h"
#include "core/qvutils/diag/valuewitness.h"
#include "core/qvutils/text/asciifold.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cmath>
#include <optional>

namespace {

constexpr std::string_view ISO_PATTERN = "yyyy-MM-dd'T'HH:mm:ss";

bool IsNumeric(std::string_view text) {
    constexpr std::size_t MOST_DIGITS = 18;  // more could exceed a long
    return !text.empty() && text.size() <= MOST_DIGITS && std::all_of(text.begin(), text.end(), qv::IsAsciiDigit);
}

long ToLong(std::string_view text) {
    const bool negative = !text.empty() && text.front() == '-';
    const std::string_view digits = negative || (!text.empty() && text.front() == '+') ? text.substr(1) : text;
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), qv::IsAsciiDigit)) return 0;
    long value = 0;
    const std::string_view number = negative ? text : digits;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) return negative ? LONG_MIN : LONG_MAX;
    return value;
}

enum DateField { YEAR, MONTH, DAY, HOUR, MINUTE, SECOND, FIELDS };

struct PatternToken {
    std::string_view letters;
    DateField field;
};

constexpr PatternToken TOKENS[] = {{"yyyy", YEAR}, {"MM", MONTH}, {"dd", DAY}, {"HH", HOUR}, {"mm", MINUTE}, {"ss", SECOND}};

/** One step of a pattern: a field of so many digits, or one byte of literal text. */
struct PatternStep {
    std::optional<DateField> field;
    std::size_t digits = 0;
    char literal = 0;
};

/** Walks a date pattern. Two apostrophes stand for one, inside a quoted text and outside. */
class PatternWalk {
  public:
    explicit PatternWalk(std::string_view pattern) : m_rest(pattern) {}

    std::optional<PatternStep> Next() {
        while (!m_rest.empty() && m_rest.front() == '\'') {
            m_rest.remove_prefix(1);
            if (!m_rest.empty() && m_rest.front() == '\'') return Literal();
            m_quoted = !m_quoted;
        }
        if (m_rest.empty()) return std::nullopt;
        if (!m_quoted)
            for (const PatternToken& token : TOKENS)
                if (m_rest.substr(0, token.letters.size()) == token.letters) {
                    m_rest.remove_prefix(token.letters.size());
                    return PatternStep{token.field, token.letters.size(), 0};
                }
        return Literal();
    }

  private:
    PatternStep Literal() {
        const char literal = m_rest.front();
        m_rest.remove_prefix(1);
        return PatternStep{std::nullopt, 0, literal};
    }

    std::string_view m_rest;
    bool m_quoted = false;
};

/** The value of the first `count` bytes, or -1 when they are not all digits. */
int Digits(std::string_view text, std::size_t count) {
    if (text.size() < count) return -1;
    int value = 0;
    for (const char c : text.substr(0, count)) {
        if (!qv::IsAsciiDigit(c)) return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

/** A zone behind its sign: hh:mm or hhmm. */
bool IsZoneOffset(std::string_view text) {
    const int hours = Digits(text, 2);
    text.remove_prefix(std::min<std::size_t>(2, text.size()));
    if (!text.empty() && text.front() == ':') text.remove_prefix(1);
    const int minutes = Digits(text, 2);
    return text.size() == 2 && hours >= 0 && hours <= 23 && minutes >= 0 && minutes <= 59;
}

/** What may follow a date and is dropped: nothing, a fraction of a second, a zone, or both. */
bool IsDroppedTail(std::string_view tail, bool afterSeconds) {
    if (afterSeconds && tail.size() > 1 && tail.front() == '.' && qv::IsAsciiDigit(tail[1])) {
        tail.remove_prefix(1);
        while (!tail.empty() && qv::IsAsciiDigit(tail.front())) tail.remove_prefix(1);
    }
    if (tail.empty()) return true;
    if (tail.size() == 1) return qv::IsAsciiLetter(tail.front());
    return (tail.front() == '+' || tail.front() == '-') && IsZoneOffset(tail.substr(1));
}

/** Gives what follows the date and is dropped. */
std::string_view ReadDate(const I18NString& text, const I18NString& pattern, QvDate& date) {
    int values[FIELDS] = {-1, -1, -1, -1, -1, -1};
    std::string_view rest = text.utf8();
    // nearly all dates of a document are whole and in the one pattern
    if (pattern.utf8() == ISO_PATTERN && rest.size() >= QvDate::ISO_SIZE && IsDroppedTail(rest.substr(QvDate::ISO_SIZE), true) &&
        date.ReadIso(rest.data()))
        return rest.substr(QvDate::ISO_SIZE);
    date = QvDate(false);
    PatternWalk walk(pattern.utf8());
    while (const auto step = walk.Next()) {
        if (!step->field) {
            if (rest.empty() || rest.front() != step->literal) return {};
            rest.remove_prefix(1);
            continue;
        }
        values[*step->field] = Digits(rest, step->digits);
        if (values[*step->field] < 0) return {};
        rest.remove_prefix(step->digits);
        const bool dated = values[YEAR] >= 0 && values[MONTH] >= 0 && values[DAY] >= 0;
        const bool timed = values[HOUR] >= 0 || values[MINUTE] >= 0 || values[SECOND] >= 0;
        if (rest.empty() && dated && !timed) break;
    }
    if (!IsDroppedTail(rest, values[SECOND] >= 0)) return {};
    date.SetFields(values[YEAR], values[MONTH], values[DAY], std::max(values[HOUR], 0), std::max(values[MINUTE], 0),
                   std::max(values[SECOND], 0));
    return rest;
}

}  // namespace

QvStringFormat* QvStringFormat::GetInstance() {
    static QvStringFormat instance;
    return &instance;
}

bool QvStringFormat::_isNumeric(const I18NString& text) const {
    return IsNumeric(text.utf8());
}
bool QvStringFormat::_isNumeric(const QvULString& text) const {
    return IsNumeric(text.utf8());
}

long QvStringFormat::_string2long(const I18NString& text) const {
    return ToLong(text.utf8());
}
long QvStringFormat::_string2long(const QvULString& text) const {
    return ToLong(text.utf8());
}

void QvStringFormat::_num2string(double value, I18NString& out) const {
    std::array<char, 1100> text;  // the smallest double has 1,074 places
    std::to_chars_result end{};
    constexpr double LONG_LIMIT = 9223372036854775808.0;
    if (value == std::trunc(value) && std::fabs(value) < LONG_LIMIT)
        end = std::to_chars(text.data(), text.data() + text.size(), static_cast<long>(value));
    else if (value == LONG_LIMIT)  // what the greatest long becomes on its way through a double
        end = std::to_chars(text.data(), text.data() + text.size(), LONG_MAX);
    else
        end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    out.assign({text.data(), static_cast<std::size_t>(end.ptr - text.data())});
}

bool QvStringFormat::_caseInsensitiveEquals(const I18NString& a, const I18NString& b) const {
    return qv::AsciiEqualsIgnoreCase(a.utf8(), b.utf8());
}

int QvStringFormat::compareIgnoreCase(const I18NString& a, const I18NString& b) const {
    return qv::AsciiCompareIgnoreCase(a.utf8(), b.utf8());
}

void QvStringFormat::_datetime2stringwithpattern(const QvDate& date, const I18NString& pattern, I18NString& out, const void*) const {
    if (!date.IsSet()) {
        out.assign({});
        return;
    }
    if (pattern.utf8() == ISO_PATTERN) {
        char text[QvDate::ISO_SIZE];
        date.PrintIso(text);
        out.assign({text, sizeof text});
        return;
    }
    const int values[FIELDS] = {date.Year(), date.Month(), date.Day(), date.Hour(), date.Minute(), date.Second()};
    std::string text;
    PatternWalk walk(pattern.utf8());
    while (const auto step = walk.Next()) {
        if (!step->field) {
            text += step->literal;
            continue;
        }
        const std::string digits = std::to_string(values[*step->field]);
        text.append(step->digits - digits.size(), '0').append(digits);
    }
    out.assign(text);
}

void QvStringFormat::_string2datetimewithpattern(const I18NString& text, const I18NString& pattern, QvDate& date, const void*) const {
    const std::size_t dropped = ReadDate(text, pattern, date).size();
    const std::string_view whole = text.utf8();
    if (!date.IsSet())
        qv::TellMisread(qv::ValueWitness::What::date, whole);
    else if (dropped > 0)
        qv::TellMisread(qv::ValueWitness::What::date, whole, whole.substr(0, whole.size() - dropped));
}
