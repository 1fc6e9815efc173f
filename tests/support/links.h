#pragma once

#include "objects/links/smrelationshipbase2_002_000.h"
#include "tests/support/values.h"

namespace smtest {

/** What relationships and scope relationships have in common: name, warehouse link and both ends. */
void FillRelationship(schema_002_000::SMRelationshipBase2& relationship, Values& values);

}  // namespace smtest
