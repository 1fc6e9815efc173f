#pragma once

#include <exception>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"

/** The library uses 1: an operation failed and data is lost; 3: a notice to an operator; 4: internal misuse, unknown content. */
using LOG_LEVEL = int;
/** 0 in every call of the library. */
using LOG_ACTION = int;

/** One event for the log, built on the spot and sent with `Log()`. It can be thrown by value. */
class SM_API QvLogEvent : public std::exception {
  public:
    QvLogEvent(LOG_LEVEL level, const I18NString& category, const I18NString& product, const I18NString& module,
               const I18NString& className, const I18NString& method, LOG_ACTION action, const I18NString& message,
               const I18NString& detail);
    /** Sends the event to the sink in force: the innermost of the calling thread (see diagnostics.h), else the default of the process. */
    void Log() const;

    const char* what() const noexcept override { return message.c_str(); }

    LOG_LEVEL level;
    I18NString category, product, module, className, method;
    LOG_ACTION action;
    I18NString message, detail;
    /** One of the codes of codes.h, or empty; it outlives the event. */
    const char* code = "";
};
