#pragma once

#include "core/qvutils/text/qvulstring.h"

/** Comparing locale names. */
class SM_API I18NLocale {
  public:
    /**
     * Three-way compare without regard to the case of ASCII letters: -1, 0 or 1. Punctuation counts, so "en-us" and "en_us"
     * differ here, though the locale maps of the model hold them equal.
     */
    static int compareIgnoreCase(const I18NString& a, const I18NString& b);
};
