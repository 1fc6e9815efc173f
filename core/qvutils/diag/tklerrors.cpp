#include "core/qvutils/diag/tklerrors.h"

#include "core/qvutils/diag/place.h"

#include <utility>

namespace {

std::string Located(const std::string& file, long line, long column, const std::string& message) {
    const std::string place = qv::PlaceText(file, line, column);
    return place.empty() ? message : place + ": " + message;
}

}  // namespace

TklAssertError::TklAssertError(long code, const char* text) : m_code(code), m_text(text ? text : ""), m_what(m_text) {}

void TklAssertError::hurl(const TklFileLocation& location, const char* file, const char* macro) {
    m_location = location;
    const char* const place = location.file && *location.file ? location.file : file;
    m_what = Located(place ? place : "", location.line, 0, macro && *macro ? std::string(macro) + ": " + m_text : m_text);
    throw *this;
}

TklRuntimeError::TklRuntimeError(std::string message, std::string file, long line, long column, const char* code)
    : m_message(std::move(message)),
      m_file(std::move(file)),
      m_what(Located(m_file, line, column, m_message)),
      m_line(line),
      m_column(column),
      m_code(code) {}
