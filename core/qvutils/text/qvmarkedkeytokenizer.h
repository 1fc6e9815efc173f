#pragma once

#include <cstddef>

#include "core/qvutils/text/i18nstring.h"

/**
 * Yields each text between an open and the next close mark, in order; after a close mark the next open mark is looked for.
 * An empty mark marks nothing.
 */
class SM_API QvMarkedKeyTokenizer {
  public:
    QvMarkedKeyTokenizer(const I18NString& text, const I18NString& openMark, const I18NString& closeMark);
    bool hasMoreTokens() const noexcept { return m_more; }
    /**
     * The next token; its start and end in the text, in bytes, go to the two arguments unless they are null. Behind the last
     * token: the empty text, and -1 for both.
     */
    I18NString nextToken(int* start, int* end);

  private:
    void Advance(std::size_t from);

    I18NString m_text;
    I18NString m_open;
    I18NString m_close;
    std::size_t m_start = 0, m_end = 0;
    bool m_more = false;
};
