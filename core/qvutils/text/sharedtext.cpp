#include "core/qvutils/text/sharedtext.h"

#include "core/qvutils/text/asciifold.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <mutex>
#include <new>
#include <stdexcept>
#include <unordered_map>

namespace qv {

namespace {

/** How much bigger than its text a block may be when it is used again for an assigned text: twice, and a little more. */
constexpr std::size_t SLACK = 32;

std::size_t CheckedSize(std::size_t a, std::size_t b) {
    if (a > SharedText::MAX_SIZE || b > SharedText::MAX_SIZE - a) throw std::length_error("a text may not exceed 1 GiB");
    return a + b;
}

}  // namespace

SharedText::Rep* SharedText::Allocate(std::size_t capacity) {
    void* const block = std::malloc(sizeof(Rep) + capacity + 1);
    if (!block) throw std::bad_alloc();
    Rep* const rep = ::new (block) Rep;
    rep->refs.store(1, std::memory_order_relaxed);
    rep->meta.store(0, std::memory_order_relaxed);
    rep->Bytes()[0] = '\0';
    return rep;
}

std::size_t SharedText::Capacity(Rep* rep) noexcept {
    return malloc_usable_size(rep) - sizeof(Rep) - 1;
}

void SharedText::Free(Rep* rep) noexcept {
    std::free(rep);
}

bool SharedText::Holds(const char* bytes) const noexcept {
    const std::string_view own = view();
    return std::greater_equal<>()(bytes, own.data()) && std::less_equal<>()(bytes, own.data() + own.size());
}

void SharedText::SetSize(std::size_t size, std::uint32_t known) noexcept {
    m_rep->Bytes()[size] = '\0';
    m_rep->meta.store(static_cast<std::uint32_t>(size) | known, std::memory_order_relaxed);
}

void SharedText::Adopt(Rep* rep, std::size_t size, std::uint32_t known) noexcept {
    Drop(m_rep);
    m_rep = rep;
    SetSize(size, known);
}

/** What is known of the whole once `more` is added. Only a text known as ASCII has its tail looked at: a loop of appends stays linear. */
std::uint32_t SharedText::KnownAfter(std::string_view more) const noexcept {
    const std::uint32_t known = m_rep ? m_rep->meta.load(std::memory_order_relaxed) & ~SIZE_BITS : 0U;
    return known == ASCII && !IsAscii(more) ? NOT_ASCII : known;
}

SharedText::SharedText(std::string_view utf8) {
    if (utf8.empty()) return;
    m_rep = Allocate(CheckedSize(utf8.size(), 0));
    std::memcpy(m_rep->Bytes(), utf8.data(), utf8.size());
    SetSize(utf8.size(), 0);
}

SharedText SharedText::Immortal(std::string_view utf8) {
    // Never destroyed: the texts stay reachable for whoever runs after the destructors of other objects.
    static std::mutex& mutex = *new std::mutex;
    static auto& texts = *new std::unordered_map<std::string_view, Rep*>;
    SharedText text;
    if (utf8.empty()) return text;
    const std::lock_guard lock(mutex);
    const auto found = texts.find(utf8);
    if (found != texts.end()) {
        text.m_rep = found->second;
        return text;
    }
    text = SharedText(utf8);
    text.ascii();
    texts.emplace(text.view(), text.m_rep);
    text.m_rep->refs.store(IMMORTAL, std::memory_order_relaxed);
    return text;
}

bool SharedText::ascii() const noexcept {
    if (!m_rep) return true;
    const std::uint32_t meta = m_rep->meta.load(std::memory_order_relaxed);
    if (meta & (ASCII | NOT_ASCII)) return (meta & ASCII) != 0;
    const bool ascii = IsAscii(view());
    m_rep->meta.store(meta | (ascii ? ASCII : NOT_ASCII), std::memory_order_relaxed);
    return ascii;
}

void SharedText::assign(std::string_view utf8) {
    if (utf8.empty()) return clear();
    const std::size_t size = CheckedSize(utf8.size(), 0);
    if (Unshared()) {
        const std::size_t capacity = Capacity(m_rep);
        if (size <= capacity && capacity <= 2 * size + SLACK) {
            std::memmove(m_rep->Bytes(), utf8.data(), size);
            SetSize(size, 0);
            return;
        }
    }
    Rep* const rep = Allocate(size);
    std::memcpy(rep->Bytes(), utf8.data(), size);
    Adopt(rep, size, 0);
}

void SharedText::append(std::string_view utf8) {
    if (utf8.empty()) return;
    const std::string_view old = view();
    const std::size_t size = CheckedSize(old.size(), utf8.size());
    const std::uint32_t known = KnownAfter(utf8);
    std::size_t wanted = size;
    if (Unshared()) {
        const std::size_t capacity = Capacity(m_rep);
        if (size <= capacity) {
            std::memmove(m_rep->Bytes() + old.size(), utf8.data(), utf8.size());
            SetSize(size, known);
            return;
        }
        wanted = std::min(std::max(size, capacity + capacity / 2), MAX_SIZE);
        if (!Holds(utf8.data())) {
            void* const block = std::realloc(m_rep, sizeof(Rep) + wanted + 1);
            if (!block) throw std::bad_alloc();
            m_rep = static_cast<Rep*>(block);
            std::memcpy(m_rep->Bytes() + old.size(), utf8.data(), utf8.size());
            SetSize(size, known);
            return;
        }
    }
    Rep* const rep = Allocate(wanted);
    std::memcpy(rep->Bytes(), old.data(), old.size());
    std::memcpy(rep->Bytes() + old.size(), utf8.data(), utf8.size());
    Adopt(rep, size, known);
}

void SharedText::replace(std::size_t at, std::size_t count, std::string_view with) {
    if (with.empty()) with = "";  // a null view may not be copied from
    const std::string_view old = view();
    const std::string_view tail = old.substr(at + count);
    const std::size_t size = CheckedSize(at + tail.size(), with.size());
    if (size == 0) return clear();
    if (Unshared() && size <= Capacity(m_rep) && !Holds(with.data())) {
        char* const gap = m_rep->Bytes() + at;
        std::memmove(gap + with.size(), tail.data(), tail.size());
        std::memcpy(gap, with.data(), with.size());
        SetSize(size, 0);
        return;
    }
    Rep* const rep = Allocate(size);
    std::memcpy(rep->Bytes(), old.data(), at);
    std::memcpy(rep->Bytes() + at, with.data(), with.size());
    std::memcpy(rep->Bytes() + at + with.size(), tail.data(), tail.size());
    Adopt(rep, size, 0);
}

void SharedText::clear() noexcept {
    if (Unshared()) {
        SetSize(0, 0);
    } else {
        Drop(m_rep);
        m_rep = nullptr;
    }
}

}  // namespace qv
