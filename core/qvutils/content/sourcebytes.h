#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/** A regular file in UTF-8, mapped where it is that already. */
class SM_API SourceBytes {
  public:
    /** From `start` on, at most `size` bytes of it. `descriptor` stays the caller's. What cannot be mapped or converted is empty. */
    explicit SourceBytes(int descriptor, std::size_t start = 0, std::size_t size = std::string_view::npos);
    ~SourceBytes();
    SourceBytes(const SourceBytes&) = delete;
    SourceBytes& operator=(const SourceBytes&) = delete;
    std::string_view Utf8() const noexcept { return m_utf8; }

  private:
    void* m_mapped = nullptr;
    std::size_t m_size = 0;
    std::string m_converted;
    std::string_view m_utf8;
};

/** The text of a document in another encoding, as its start names it; empty when that cannot be done. */
SM_API std::string Utf8OfDocument(std::string_view document);

}  // namespace qv
