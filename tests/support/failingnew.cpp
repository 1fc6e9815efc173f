#include "tests/support/failingnew.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <link.h>

#include "tests/support/sanitized.h"

namespace {

thread_local bool t_counting = false;
thread_local long t_left = 0;

}  // namespace

// Texts and arenas take their memory from malloc itself. A sanitizer has a malloc of its own, which cannot be replaced.
#if !SMODEL_SANITIZED

namespace {

struct Range {
    std::uintptr_t start = 0, end = 0;
};
/** Where the code of the libraries lies; two of them. */
Range g_libraries[2];

int EnterLibrary(dl_phdr_info* info, std::size_t, void* count) {
    int& entered = *static_cast<int*>(count);
    if (!std::strstr(info->dlpi_name, "/libsmodel") || entered == 2) return 0;
    Range& range = g_libraries[entered++];
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& segment = info->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || !(segment.p_flags & PF_X)) continue;
        range.start = info->dlpi_addr + segment.p_vaddr;
        range.end = range.start + segment.p_memsz;
    }
    return 0;
}

const int g_entered = [] {
    int count = 0;
    ::dl_iterate_phdr(EnterLibrary, &count);
    return count;
}();

/** Whether the call from `caller` is to fail: what others do without memory is not our concern. */
bool FailsFor(const void* caller) {
    if (!t_counting) return false;
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    for (const Range& range : g_libraries)
        if (address >= range.start && address < range.end) return --t_left == 0;
    return false;
}

}  // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

__attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept {
    if (!FailsFor(__builtin_return_address(0))) return __libc_malloc(size);
    errno = ENOMEM;
    return nullptr;
}

__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size) noexcept {
    if (!FailsFor(__builtin_return_address(0))) return __libc_realloc(block, size);
    errno = ENOMEM;
    return nullptr;
}
}

bool FailingNew::CountsMalloc() {
    return g_entered == 2;
}

#else

bool FailingNew::CountsMalloc() {
    return false;
}

#endif

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
