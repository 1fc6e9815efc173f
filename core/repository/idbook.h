#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

#include "core/qvutils/persist/ioobject.h"
#include "core/repository/schema.h"

namespace qv {

/** What a save knows of an id in one table: the stored row, the object that was visited, or both. */
struct IdEntry {
    std::string_view id;
    const RowTable* table = nullptr;
    /** The stored row that stands; borrowed. */
    const char* row = nullptr;
    /** The object of memory that has the id, once it was visited; borrowed. */
    const IOObject* object = nullptr;
    enum Fate : unsigned char { open, ends, stays } fate = open;
    /** Another table's entry of the id came later, and is the one found first. */
    bool behind = false;
    /** Where the row stands among those of its table; good as long as there is one. */
    std::uint32_t at = 0;
    /** Place in the book. */
    std::uint32_t place = 0;
    /** Another table's entry of the same id. */
    IdEntry* sameId = nullptr;
};

/** All ids of a project, found by their text. */
class IdBook {
  public:
    /** The first entry of the id, or null. */
    IdEntry* Find(std::string_view id) const;
    /** The entry of the id in the table, or null. */
    IdEntry* Find(std::string_view id, const RowTable& table) const;
    /** Adds a stored row, whose memory holds the id; `at` is its place in the table. */
    void AddRow(const RowTable& table, const char* row, std::string_view id, std::uint32_t at);
    /** The stored row of an entry goes, and the memory of its id with it. */
    void DropRow(IdEntry& entry);
    /** The entry of the id in the table, made when there is none; the id is copied then. */
    IdEntry& Entry(std::string_view id, const RowTable& table);
    std::deque<IdEntry>& entries() { return m_entries; }
    void Clear();

  private:
    struct Slot {
        std::uint64_t hash = 0;
        IdEntry* entry = nullptr;
    };

    std::size_t SlotOf(std::string_view id, std::uint64_t hash) const;
    IdEntry& Add(std::string_view id, const RowTable& table);
    void Grow();
    std::string_view Copy(std::string_view id);

    std::deque<IdEntry> m_entries;
    std::vector<Slot> m_slots;
    std::size_t m_used = 0;
    /** The entry that was found last. Objects are asked for in the order in which they were added, so the next one is near. */
    mutable std::size_t m_last = 0;
    std::vector<std::unique_ptr<char[]>> m_texts;
    std::size_t m_room = 0;
};

}  // namespace qv
