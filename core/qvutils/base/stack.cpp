#include "core/qvutils/base/stack.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <pthread.h>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"

namespace qv {
namespace {

/** For the way out, and for what does not ask. */
constexpr std::size_t RESERVE = std::size_t{256} << 10;

/** The lowest address that may be used; stacks grow downwards. */
std::uintptr_t Bottom() {
    pthread_attr_t attributes;
    if (::pthread_getattr_np(::pthread_self(), &attributes) != 0) return 0;
    void* lowest = nullptr;
    std::size_t size = 0, guard = 0;
    ::pthread_attr_getstack(&attributes, &lowest, &size);
    ::pthread_attr_getguardsize(&attributes, &guard);
    ::pthread_attr_destroy(&attributes);
    return reinterpret_cast<std::uintptr_t>(lowest) + guard + std::min(RESERVE, size / 4);
}

}  // namespace

void RequireStack() {
    thread_local const std::uintptr_t bottom = Bottom();
    if (reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) > bottom) return;
    throw TklRuntimeError("the model is too deep for the stack of this thread; give it a larger one, as by ulimit -s", {}, 0, 0,
                          code::STACK_TOO_SMALL);
}

}  // namespace qv
