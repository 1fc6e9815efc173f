#pragma once

#include "core/qvutils/text/i18nstring.h"

/** Yields each text between an open and the next close mark, in order; after a close mark the next open mark is looked for. */
class SM_API QvMarkedKeyTokenizer {
  public:
    QvMarkedKeyTokenizer(const I18NString& text, const I18NString& openMark, const I18NString& closeMark);
    bool hasMoreTokens() const;
    /** The next token; its start and end in the text, in bytes, go to the two arguments unless they are null. */
    I18NString nextToken(int* start, int* end);

  private:
    bool Find(std::size_t& start, std::size_t& end) const;

    I18NString m_text;
    I18NString m_open;
    I18NString m_close;
    std::size_t m_position = 0;
};
