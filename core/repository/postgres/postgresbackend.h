#pragma once

#include "core/repository/backend.h"

namespace qv {

/**
 * A store in a schema of a PostgreSQL database: the first one of the search path. `location` is "postgresql://..." as the client
 * library of the server reads it. A put is durable when `Commit` has returned, on the standby too where the server replicates
 * synchronously. Raises StoreError when the location is no such address.
 */
SM_API std::shared_ptr<StoreBackend> MakePostgresBackend(const std::string& location);

}  // namespace qv
