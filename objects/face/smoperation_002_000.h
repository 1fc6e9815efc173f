#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <vector>

#include "core/qvutils/diag/diagnostics.h"

namespace schema_002_000 {

/** How far an operation has come. */
struct SMProgress {
    enum Unit { elements, bytes, objects };

    Unit unit = elements;
    std::size_t done = 0;
    /** While elements are counted: bytes of documents that were read for them. */
    std::size_t bytesRead = 0;
};

/** What a caller gives along who wants to watch an operation, or to stop it. */
struct SMControl {
    /** Called now and then, on the thread of the operation. */
    std::function<void(const SMProgress&)> progress;
    /** Borrowed; null: the operation cannot be stopped. Once it is true, the operation ends cleanly as soon as it can. */
    const std::atomic<bool>* cancelled = nullptr;
};

enum class SMStatus { done, failed, cancelled };

/**
 * How an operation ended, and what it found on the way, in the order of its coming. An operation that failed tells why in a
 * diagnostic of severity error. Operations raise nothing but std::bad_alloc.
 */
struct SM_API SMResult {
    SMStatus status = SMStatus::failed;
    std::vector<SMDiagnostic> diagnostics;

    bool IsDone() const { return status == SMStatus::done; }
    /** True when there is an error or a warning; notes do not count. */
    bool HasFindings() const;
};

}  // namespace schema_002_000
