#pragma once

#include <cstdint>

#include "core/qvutils/base/qvdate.h"
#include "core/repository/backend.h"

namespace qv {

/** The number yyyyMMddhhmmss of a moment; the null cell of an unset date. */
inline Cell CellOf(const QvDate& date) {
    if (!date.IsSet()) return {};
    std::int64_t number = date.Year();
    for (const int field : {date.Month(), date.Day(), date.Hour(), date.Minute(), date.Second()}) number = number * 100 + field;
    return Cell::Number(number);
}

/** Unset when the number is no moment. */
inline QvDate DateOf(std::int64_t moment) {
    const auto take = [&moment] {
        const auto field = static_cast<int>(moment % 100);
        moment /= 100;
        return field;
    };
    const int second = take(), minute = take(), hour = take(), day = take(), month = take();
    QvDate date(false);
    if (moment > 0 && moment <= 9999) date.SetFields(static_cast<int>(moment), month, day, hour, minute, second);
    return date;
}

}  // namespace qv
