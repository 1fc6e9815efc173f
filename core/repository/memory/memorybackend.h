#pragma once

#include "core/repository/backend.h"

namespace qv {

/** A store that lives as long as the backend and its connections. `name` is for messages. */
SM_API std::shared_ptr<StoreBackend> MakeMemoryBackend(const std::string& name);

}  // namespace qv
