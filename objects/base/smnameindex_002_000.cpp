#include "objects/base/smnameindex_002_000.h"

#include <functional>

namespace schema_002_000 {

std::uint32_t SMNameIndex::Hash(std::string_view key) noexcept {
    const std::size_t wide = std::hash<std::string_view>()(key);
    return static_cast<std::uint32_t>(wide ^ (wide >> 32));
}

std::size_t SMNameIndex::Hash(const void* object) noexcept {
    const auto number = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(object));
    return static_cast<std::size_t>((number >> 4) * 0x9E3779B97F4A7C15u >> 32);  // addresses are even, and close together
}

void SMNameIndex::Forget() noexcept {
    m_slots.clear();
    m_unnamed.clear();
    m_unnamedCount = 0;
    m_covered = 0;
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
