#pragma once

#include "core/repository/backend.h"

namespace qv {

/**
 * A store in a file of SQLite, with a write-ahead log beside it. A put is durable when `Commit` has returned. `path` is taken as
 * it stands: no form of it means anything but a file.
 */
SM_API std::shared_ptr<StoreBackend> MakeSqliteBackend(const std::string& path);

}  // namespace qv
