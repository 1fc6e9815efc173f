#pragma once

#include "core/qvutils/diag/qvlogevent.h"

namespace schema_002_000 {

/** The words by which the events of one class are known: its source file without extension and version, and its name. */
struct SMLogWords {
    const char* module;
    const char* className;
};

/** Builds one event in the words of this library (category "code", product "QvOne", action 0) and sends it. */
void SMLog(LOG_LEVEL level, const SMLogWords& words, const char* method, const I18NString& message,
           const I18NString& detail = I18NString());

/** The levels in use. */
inline constexpr LOG_LEVEL SM_FAILURE = 1;
inline constexpr LOG_LEVEL SM_NOTICE = 3;
inline constexpr LOG_LEVEL SM_MISUSE = 4;

}  // namespace schema_002_000
