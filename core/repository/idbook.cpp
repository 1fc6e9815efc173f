#include "core/repository/idbook.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace qv {

namespace {

constexpr std::size_t FIRST_SLOTS = 64;
constexpr std::size_t TEXT_BLOCK = 64 * 1024;
/** How many entries are looked at before an id is searched for. */
constexpr std::size_t NEAR = 3;

std::uint64_t HashOf(std::string_view id) {
    return std::hash<std::string_view>()(id);
}

}  // namespace

std::size_t IdBook::SlotOf(std::string_view id, std::uint64_t hash) const {
    std::size_t slot = hash & (m_slots.size() - 1);
    while (m_slots[slot].entry && !(m_slots[slot].hash == hash && m_slots[slot].entry->id == id)) slot = (slot + 1) & (m_slots.size() - 1);
    return slot;
}

IdEntry* IdBook::Find(std::string_view id) const {
    const std::size_t end = std::min(m_last + NEAR, m_entries.size());
    for (std::size_t place = m_last; place < end; ++place) {
        const IdEntry& entry = m_entries[place];
        if (entry.behind || entry.id != id) continue;
        m_last = place;
        return const_cast<IdEntry*>(&entry);
    }
    IdEntry* const found = m_slots.empty() ? nullptr : m_slots[SlotOf(id, HashOf(id))].entry;
    if (found) m_last = found->place;
    return found;
}

IdEntry* IdBook::Find(std::string_view id, const RowTable& table) const {
    IdEntry* entry = Find(id);
    while (entry && entry->table != &table) entry = entry->sameId;
    return entry;
}

IdEntry& IdBook::Add(std::string_view id, const RowTable& table) {
    if (2 * (m_used + 1) > m_slots.size()) Grow();
    const std::uint64_t hash = HashOf(id);
    Slot& slot = m_slots[SlotOf(id, hash)];
    IdEntry& entry = m_entries.emplace_back();
    entry.id = id;
    entry.table = &table;
    entry.place = static_cast<std::uint32_t>(m_entries.size() - 1);
    entry.sameId = slot.entry;
    if (slot.entry)
        slot.entry->behind = true;
    else
        ++m_used;
    slot = {hash, &entry};
    return entry;
}

void IdBook::AddRow(const RowTable& table, const char* row, std::string_view id, std::uint32_t at) {
    IdEntry* const known = Find(id, table);
    IdEntry& entry = known ? *known : Add(id, table);
    entry.row = row;
    entry.at = at;
}

void IdBook::DropRow(IdEntry& entry) {
    entry.id = Copy(entry.id);
    entry.row = nullptr;
}

IdEntry& IdBook::Entry(std::string_view id, const RowTable& table) {
    IdEntry* const known = Find(id, table);
    return known ? *known : Add(Copy(id), table);
}

void IdBook::Grow() {
    std::vector<Slot> old(std::max(FIRST_SLOTS, 2 * m_slots.size()));
    old.swap(m_slots);
    for (const Slot& slot : old)
        if (slot.entry) m_slots[SlotOf(slot.entry->id, slot.hash)] = slot;
}

std::string_view IdBook::Copy(std::string_view id) {
    if (id.empty()) return {};
    if (m_room < id.size()) {
        m_room = std::max(TEXT_BLOCK, id.size());
        m_texts.push_back(std::make_unique<char[]>(m_room));
        std::memcpy(m_texts.back().get(), id.data(), id.size());
        m_room -= id.size();
        // an id of more than a block has its block to itself
        return {m_texts.back().get(), id.size()};
    }
    char* const at = m_texts.back().get() + (TEXT_BLOCK - m_room);
    std::memcpy(at, id.data(), id.size());
    m_room -= id.size();
    return {at, id.size()};
}

void IdBook::Clear() {
    m_entries.clear();
    m_last = 0;
    m_slots.clear();
    m_used = 0;
    m_texts.clear();
    m_room = 0;
}

}  // namespace qv
