#include "objects/base/smnameindex_002_000.h"

#include <functional>

namespace schema_002_000 {

std::uint32_t SMNameIndex::Hash(std::string_view key) noexcept {
    const std::size_t wide = std::hash<std::string_view>()(key);
    return static_cast<std::uint32_t>(wide ^ (wide >> 32));
}

void SMNameIndex::Forget() noexcept {
    m_slots.clear();
    m_unnamed.clear();
    m_covered = 0;
    m_used = 0;
}

void SMNameIndex::Reserve(std::size_t count) {
    if (m_slots.size() >= count * 2 && !m_slots.empty()) return;
    std::size_t size = 16;
    while (size < count * 2) size *= 2;
    std::vector<Slot> grown(size, Slot{0, 0});
    for (const Slot& slot : m_slots) {
        if (slot.place == 0) continue;
        std::size_t at = slot.hash & (size - 1);
        while (grown[at].place != 0) at = (at + 1) & (size - 1);
        grown[at] = slot;
    }
    m_slots = std::move(grown);
}

}  // namespace schema_002_000
