#pragma once

#include "objects/face/smaccounting_002_000.h"

namespace schema_002_000 {

/** From now on the loss gives this as its reason. */
void SMGiveReason(SMLoss& loss, const SMDiagnostic& why);

/**
 * Takes those events out of the diagnostics that a loss tells: an element that nobody knows is a loss, or stands in one, and an event
 * that is the reason of a loss is given to it. The losses are sorted by place.
 */
void SMDropToldEvents(SMAccountedResult& result);

}  // namespace schema_002_000
