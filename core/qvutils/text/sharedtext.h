#pragma once

#include <sys/single_threaded.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * The text beneath `I18NString` and `QvULString`: one pointer to a counted, NUL-terminated UTF-8 text, null when empty.
 *
 * A copy shares the text and allocates nothing, also from the one string class to the other; whoever changes a shared text
 * takes a copy first. Counts are plain while the process has one thread and atomic from then on, so texts may be shared
 * between objects that different threads use. An immortal text (a name of a singleton) is never counted and never freed.
 * A text of more than MAX_SIZE bytes raises std::length_error.
 */
class SM_API SharedText {
  public:
    static constexpr std::size_t MAX_SIZE = (std::size_t{1} << 30) - 1;

    SharedText() noexcept = default;
    explicit SharedText(std::string_view utf8);
    SharedText(const SharedText& other) noexcept : m_rep(other.Share()) {}
    SharedText(SharedText&& other) noexcept : m_rep(other.m_rep) { other.m_rep = nullptr; }
    SharedText& operator=(const SharedText& other) noexcept {
        Rep* const rep = other.Share();  // before the old one goes: the two may be one text
        Drop(m_rep);
        m_rep = rep;
        return *this;
    }
    SharedText& operator=(SharedText&& other) noexcept {
        Rep* const rep = other.m_rep;
        other.m_rep = nullptr;
        Drop(m_rep);
        m_rep = rep;
        return *this;
    }
    ~SharedText() { Drop(m_rep); }

    /** A text that lives to the end of the process and is never counted. Equal texts are one. */
    static SharedText Immortal(std::string_view utf8);

    std::string_view view() const noexcept { return m_rep ? std::string_view(m_rep->Bytes(), m_rep->Size()) : std::string_view("", 0); }
    const char* c_str() const noexcept { return m_rep ? m_rep->Bytes() : ""; }
    bool empty() const noexcept { return !m_rep || m_rep->Size() == 0; }
    /** True when both share one text, or both are null: equal without looking at a byte. False says nothing. */
    bool same(const SharedText& other) const noexcept { return m_rep == other.m_rep; }
    /** True when all bytes are ASCII; found out once and remembered. */
    bool ascii() const noexcept;

    /**
     * Makes the text equal to utf8, which may be a part of this text. A text that nobody shares uses its memory again, unless
     * that is far too big: a copy made afterwards would keep it all.
     */
    void assign(std::string_view utf8);
    /** Adds utf8, which may be a part of this text. A text that nobody shares grows in place, at last geometrically. */
    void append(std::string_view utf8);
    /** Puts `with` in the place of `count` bytes from `at` on; both must lie within the text. */
    void replace(std::size_t at, std::size_t count, std::string_view with);
    /** Empties the text. A text that nobody shares keeps its memory for the next append: it then reads as empty() too. */
    void clear() noexcept;
    void swap(SharedText& other) noexcept {
        Rep* const rep = m_rep;
        m_rep = other.m_rep;
        other.m_rep = rep;
    }

  private:
    static constexpr std::uint32_t IMMORTAL = UINT32_MAX;
    static constexpr std::uint32_t SIZE_BITS = MAX_SIZE;
    static constexpr std::uint32_t ASCII = std::uint32_t{1} << 30;
    static constexpr std::uint32_t NOT_ASCII = std::uint32_t{1} << 31;

    /** Stands before the bytes. Both words are read by all who share the text; the second changes only in what is known of it. */
    struct Rep {
        std::atomic<std::uint32_t> refs;
        std::atomic<std::uint32_t> meta;

        char* Bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
        std::size_t Size() const noexcept { return meta.load(std::memory_order_relaxed) & SIZE_BITS; }
    };

    /** The block for one more user of this text: null for an empty one, so that storing a cleared buffer costs nothing. */
    Rep* Share() const noexcept {
        if (empty()) return nullptr;
        const std::uint32_t refs = m_rep->refs.load(std::memory_order_relaxed);
        if (refs == IMMORTAL) return m_rep;
        if (__libc_single_threaded)
            m_rep->refs.store(refs + 1, std::memory_order_relaxed);
        else
            m_rep->refs.fetch_add(1, std::memory_order_relaxed);
        return m_rep;
    }
    static void Drop(Rep* rep) noexcept {
        if (!rep) return;
        const std::uint32_t refs = rep->refs.load(std::memory_order_acquire);
        if (refs == IMMORTAL) return;
        if (refs == 1)  // nobody else can come by a share any more
            Free(rep);
        else if (__libc_single_threaded)
            rep->refs.store(refs - 1, std::memory_order_relaxed);
        else if (rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            Free(rep);
    }
    bool Unshared() const noexcept { return m_rep && m_rep->refs.load(std::memory_order_acquire) == 1; }

    static Rep* Allocate(std::size_t capacity);
    static std::size_t Capacity(Rep* rep) noexcept;
    static void Free(Rep* rep) noexcept;
    bool Holds(const char* bytes) const noexcept;
    void SetSize(std::size_t size, std::uint32_t known) noexcept;
    void Adopt(Rep* rep, std::size_t size, std::uint32_t known) noexcept;
    std::uint32_t KnownAfter(std::string_view more) const noexcept;

    Rep* m_rep = nullptr;
};

}  // namespace qv
