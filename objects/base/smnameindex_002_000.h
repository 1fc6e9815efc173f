#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"

namespace schema_002_000 {

/** Counts, for a project, the changes that can make an index of names wrong. */
struct SMNameEpoch {
    /** A text that stood in an index became another, or an object left the project: indexes are built anew. */
    std::uint64_t renamed = 0;
    /** An object that had no name got one: unnamed places are looked at again. */
    std::uint64_t named = 0;
};

/**
 * Answers "the first place in a vector whose key equals this", as a search from the front would, in constant time. It is filled
 * lazily from the vector's tail, looks again at places that had no key, and starts anew after a rename.
 */
class SM_API SMNameIndex {
  public:
    /** -1 when no place has the key. `keyAt(place)` gives the key at a place as a view; an empty key is answered by search. */
    template <class KeyAt>
    long Find(std::string_view key, std::size_t count, const SMNameEpoch& epoch, KeyAt keyAt);
    /** For a vector that has lost an element. */
    void Forget() noexcept;

  private:
    struct Slot {
        std::uint32_t hash;
        /** Place + 1; 0: free. */
        std::uint32_t place;
    };
    static std::uint32_t Hash(std::string_view key) noexcept;
    void Reserve(std::size_t count);
    template <class KeyAt>
    void Insert(std::uint32_t place, KeyAt keyAt);
    template <class KeyAt>
    Slot& Lookup(std::string_view key, std::uint32_t hash, KeyAt keyAt);

    std::vector<Slot> m_slots;
    std::vector<std::uint32_t> m_unnamed;
    std::size_t m_covered = 0;
    std::size_t m_used = 0;
    SMNameEpoch m_epoch;
};

template <class KeyAt>
long SMNameIndex::Find(std::string_view key, std::size_t count, const SMNameEpoch& epoch, KeyAt keyAt) {
    if (key.empty()) {
        for (std::size_t place = 0; place < count; ++place)
            if (keyAt(place).empty()) return static_cast<long>(place);
        return -1;
    }
    if (epoch.renamed != m_epoch.renamed || count < m_covered) Forget();
    if (epoch.named != m_epoch.named && !m_unnamed.empty()) {
        std::vector<std::uint32_t> still;
        for (const std::uint32_t place : m_unnamed) {
            if (keyAt(place).empty())
                still.push_back(place);
            else
                Insert(place, keyAt);
        }
        m_unnamed = std::move(still);
    }
    m_epoch = epoch;
    Reserve(count);
    for (; m_covered < count; ++m_covered) {
        const auto place = static_cast<std::uint32_t>(m_covered);
        if (keyAt(place).empty())
            m_unnamed.push_back(place);
        else
            Insert(place, keyAt);
    }
    if (m_slots.empty()) return -1;
    return static_cast<long>(Lookup(key, Hash(key), keyAt).place) - 1;
}

template <class KeyAt>
SMNameIndex::Slot& SMNameIndex::Lookup(std::string_view key, std::uint32_t hash, KeyAt keyAt) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = hash & mask;
    while (m_slots[at].place != 0 && (m_slots[at].hash != hash || keyAt(m_slots[at].place - 1) != key)) at = (at + 1) & mask;
    return m_slots[at];
}

template <class KeyAt>
void SMNameIndex::Insert(std::uint32_t place, KeyAt keyAt) {
    const std::string_view key = keyAt(place);
    const std::uint32_t hash = Hash(key);
    Slot& slot = Lookup(key, hash, keyAt);
    if (slot.place == 0) {
        slot = {hash, place + 1};
        ++m_used;
    } else if (place + 1 < slot.place) {
        slot.place = place + 1;  // of equal keys the first place wins
    }
}

}  // namespace schema_002_000
