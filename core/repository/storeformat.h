#pragma once

#include "core/repository/backend.h"

namespace qv {

/**
 * Makes an absent or empty store when it may, brings one of an older format up to this build's in one transaction, and raises
 * StoreError for what is no repository and for a format that is newer.
 */
void SettleStore(StoreBackend& backend, bool mayCreate);

}  // namespace qv
