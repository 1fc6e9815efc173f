#pragma once

#include <string>
#include <string_view>

#include "core/qvutils/io/qvxmlformattarget.h"

namespace qv {

/** Writes character data: `& < >` and the carriage return as references. */
void WriteEscapedText(QvXMLFormatTarget& target, std::string_view utf8);

/** Writes an attribute value for double quotes: as text, and also `"`, tab and line feed as references. */
void WriteEscapedValue(QvXMLFormatTarget& target, std::string_view utf8);

/** True when a document can carry the text: well-formed UTF-8 without the control characters and others that XML does not allow. */
bool IsXmlText(const std::string& utf8) noexcept;

}  // namespace qv
