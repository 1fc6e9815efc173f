#include "tests/support/failingnew.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool t_counting = false;
thread_local long t_left = 0;

}  // namespace

void* operator new(std::size_t size) {
    if (t_counting && --t_left == 0) throw std::bad_alloc();
    void* const block = std::malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
    return block;
}

// what the library gives the form that does not throw must be free's to take back, too
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept {
    operator delete(block);
}

FailingNew::FailingNew(long n) {
    t_left = n;
    t_counting = true;
}

FailingNew::~FailingNew() {
    t_counting = false;
}

bool FailingNew::HasFailed() const {
    return t_left <= 0;
}
