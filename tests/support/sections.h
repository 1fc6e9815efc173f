#pragma once

#include "objects/containers/smsectiontype2_002_000.h"
#include "tests/support/values.h"

namespace smtest {

/** What namespaces and folders have in common: texts, properties, and a folder and a namespace inside. */
void FillSection(schema_002_000::SMSectionType2& section, Values& values);

}  // namespace smtest
