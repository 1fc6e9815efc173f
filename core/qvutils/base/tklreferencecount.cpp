#include "core/qvutils/base/tklreferencecount.h"

#include <new>
#include <vector>

namespace {

/** From here on deletes that stand inside each other wait for their turn, so that no chain of objects overflows the stack. */
constexpr int DEEPEST = 200;

thread_local int t_nesting = 0;
/** Borrowed from the delete at the deepest place. */
thread_local std::vector<TklReferenceCount*>* t_waiting = nullptr;

bool Wait(TklReferenceCount* object) noexcept {
    try {
        t_waiting->push_back(object);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

void TklReferenceCount::cleanup() {
    if (t_nesting < DEEPEST) {
        ++t_nesting;
        delete this;
        --t_nesting;
        return;
    }
    if (t_waiting) {
        if (!Wait(this)) delete this;
        return;
    }
    std::vector<TklReferenceCount*> waiting;
    t_waiting = &waiting;
    delete this;
    while (!waiting.empty()) {
        TklReferenceCount* const next = waiting.back();
        waiting.pop_back();
        delete next;
    }
    t_waiting = nullptr;
}
