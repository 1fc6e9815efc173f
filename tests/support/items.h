#pragma once

#include "objects/query/smqueryitemtype2_002_000.h"
#include "tests/support/values.h"

namespace schema_002_000 {
class SMQuerySubject2;
}

namespace smtest {

/** A subject of the root namespace, with the id "subject"; made if there is none. */
schema_002_000::SMQuerySubject2* SubjectOf(schema_002_000::SMProject2& project);
/** The content of an element, as XML that is printed in the way of the library. */
I18NString Escaped(const std::string& text);
/** One more role, with names in all locales. */
void FillRole(schema_002_000::SMQueryItemType2& item, Values& values);
/** What query items, measures and calculations have in common. */
void FillItem(schema_002_000::SMQueryItemType2& item, Values& values);

}  // namespace smtest
