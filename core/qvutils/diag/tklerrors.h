#pragma once

#include <exception>
#include <string>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"

/** A place in a source file. */
struct SM_API TklFileLocation {
    const char* file;
    int line;
};

/** A failed assertion: misuse of the library by its caller. */
class SM_API TklAssertError : public std::exception {
  public:
    /** `text` is the failed statement; it is copied. */
    TklAssertError(long code, const char* text);
    /** Raises this error. `file` is the module that asserts, `macro` the word that names the way of raising ("TKL_THROW"). */
    [[noreturn]] void hurl(const TklFileLocation& location, const char* file, const char* macro);
    const char* what() const noexcept override { return m_what.c_str(); }
    long code() const noexcept { return m_code; }
    const std::string& text() const noexcept { return m_text; }
    const TklFileLocation& location() const noexcept { return m_location; }

  private:
    long m_code;
    std::string m_text;
    std::string m_what;
    TklFileLocation m_location{"", 0};
};

/** Raises TklAssertError with the whole statement as its text when the condition does not hold. */
#define TKL_ASSERT(condition)                                                                                                 \
    do {                                                                                                                      \
        if (!(condition)) TklAssertError(0, "TKL_ASSERT(" #condition ");").hurl({__FILE__, __LINE__}, __FILE__, "TKL_THROW"); \
    } while (false)

/** A failure at run time: a file that cannot be read, parsed or written. */
class SM_API TklRuntimeError : public std::exception {
  public:
    /** `code`: one of the codes of codes.h, or empty; it must outlive the error. */
    explicit TklRuntimeError(std::string message, std::string file = {}, long line = 0, long column = 0, const char* code = "");
    /** "file:line:column: message", as far as these are known. */
    const char* what() const noexcept override { return m_what.c_str(); }
    const std::string& message() const noexcept { return m_message; }
    const std::string& file() const noexcept { return m_file; }
    /** From 1; 0 when not known. */
    long line() const noexcept { return m_line; }
    long column() const noexcept { return m_column; }
    const char* code() const noexcept { return m_code; }

  private:
    std::string m_message, m_file, m_what;
    long m_line, m_column;
    const char* m_code;
};
