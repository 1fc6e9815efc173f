#pragma once

#include "core/qvutils/text/qvulstring.h"
#include "core/qvutils/text/smallmap.h"

namespace schema_002_000 {

/**
 * The order of locale names. Only ASCII letters and digits count, and case does not: "en-us", "en_us" and "EN US" are one locale.
 * The sign is the reverse of the customary one, so that maps run from the highest locale to the lowest ("fr" before "en"); this
 * settles the order of texts in documents.
 */
class SM_API LocaleCompare {
  public:
    static int compare(const QvULString& a, const QvULString& b);
    bool operator()(const QvULString& a, const QvULString& b) const { return compare(a, b) < 0; }
};

/** Texts by locale. Behaves as the ordered map of these types, and is one pointer wide while empty. */
using SMLocaleMap = qv::SmallSortedMap<QvULString, QvULString, LocaleCompare>;

}  // namespace schema_002_000
