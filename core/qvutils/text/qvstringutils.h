#pragma once

#include "core/qvutils/text/i18nstring.h"

/** Escaping for the parts of object ids. */
class SM_API QvStringUtils {
  public:
    /**
     * `&`, `<`, `>`, `"` and `'` become named entities; `[`, `]` and `.` become `&#91;`, `&#93;` and `&#46;`. An escaped part
     * so holds no mark of an object id, and an XML parser gives the plain part back.
     */
    static I18NString EscapeString(const I18NString& text);
};
