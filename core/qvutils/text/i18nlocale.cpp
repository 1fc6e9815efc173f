#include "core/qvutils/text/i18nlocale.h"

#include "core/qvutils/text/asciifold.h"

int I18NLocale::compareIgnoreCase(const I18NString& a, const I18NString& b) {
    return qv::AsciiCompareIgnoreCase(a.utf8(), b.utf8());
}
