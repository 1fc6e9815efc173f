#pragma once

#include <string>

#include "core/repository/backend.h"

namespace qv {

/** Runs the work with the store's name in what it raises. */
template <class Work>
auto Naming(const std::string& name, Work&& work) {
    try {
        return work();
    } catch (const StoreError& error) {
        throw TklRuntimeError("Repository '" + name + "': " + error.message());
    }
}

}  // namespace qv
