#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"

namespace schema_002_000 {

/** Notes the changes that can make an index of names wrong. */
class SMNameEpoch {
  public:
    /** A text that stood in an index became another, or an object went away: indexes are built anew. */
    void NoteRenamed() noexcept { ++m_renamed; }
    /** Gives each project a range of its own: another one at the same address must not be taken for it. */
    void StartAt(std::uint64_t count) noexcept { m_renamed = count; }
    /** An object that had no name got one: indexes look at its place again. */
    void NoteNamed(const void* object) {
        if (m_recent.empty()) m_recent.resize(REMEMBERED);
        m_recent[m_named++ % REMEMBERED] = object;
    }

  private:
    friend class SMNameIndex;
    static constexpr std::size_t REMEMBERED = 1024;

    std::uint64_t m_renamed = 0;
    std::uint64_t m_named = 0;
    /** The objects that got their first name last, in a ring; only ever compared, since they may be gone. */
    std::vector<const void*> m_recent;
};

/** The names of a project's objects, and their links to the warehouse, by which they are found too. */
struct SMNameEpochs {
    SMNameEpoch names;
    SMNameEpoch links;
};

/**
 * Answers "the first place in a vector whose key equals this", as a search from the front would, in constant time. It is filled
 * lazily from the vector's tail, looks again at places that had no key when their objects are named, and starts anew after a rename.
 */
class SM_API SMNameIndex {
  public:
    /**
     * -1 when no place has the key. `keyAt(place)` gives the key at a place as a view, and `objectAt(place)` the object as
     * SMNameEpoch knows it; an empty key is answered by search.
     */
    template <class KeyAt, class ObjectAt>
    long Find(std::string_view key, std::size_t count, const SMNameEpoch& epoch, KeyAt keyAt, ObjectAt objectAt);
    /** For a vector that has lost an element. */
    void Forget() noexcept;

  private:
    struct Slot {
        std::uint32_t hash;
        /** Place + 1; 0: free. */
        std::uint32_t place;
    };
    static std::uint32_t Hash(std::string_view key) noexcept;
    static std::size_t Hash(const void* object) noexcept;
    void Reserve(std::size_t count);
    template <class KeyAt>
    void Insert(std::uint32_t place, KeyAt keyAt);
    template <class KeyAt>
    Slot& Lookup(std::string_view key, std::uint32_t hash, KeyAt keyAt);
    template <class KeyAt, class ObjectAt>
    void LookAgain(const SMNameEpoch& epoch, KeyAt keyAt, ObjectAt objectAt);
    template <class ObjectAt>
    void AddUnnamed(std::uint32_t place, ObjectAt objectAt);

    std::vector<Slot> m_slots;
    /** Places without a key, by their objects: place + 1; 0: free. A place that has got a key since stays, and is passed over. */
    std::vector<std::uint32_t> m_unnamed;
    std::size_t m_unnamedCount = 0;
    std::size_t m_covered = 0;
    /** Borrowed for comparing: that of another project says nothing here. */
    const SMNameEpoch* m_epoch = nullptr;
    std::uint64_t m_renamed = 0;
    std::uint64_t m_named = 0;
};

template <class KeyAt, class ObjectAt>
long SMNameIndex::Find(std::string_view key, std::size_t count, const SMNameEpoch& epoch, KeyAt keyAt, ObjectAt objectAt) {
    if (key.empty()) {
        for (std::size_t place = 0; place < count; ++place)
            if (keyAt(place).empty()) return static_cast<long>(place);
        return -1;
    }
    if (&epoch != m_epoch || epoch.m_renamed != m_renamed || count < m_covered) Forget();
    Reserve(count);
    if (epoch.m_named != m_named && m_unnamedCount > 0) LookAgain(epoch, keyAt, objectAt);
    m_epoch = &epoch;
    m_renamed = epoch.m_renamed;
    m_named = epoch.m_named;
    for (; m_covered < count; ++m_covered) {
        const auto place = static_cast<std::uint32_t>(m_covered);
        if (keyAt(place).empty())
            AddUnnamed(place, objectAt);
        else
            Insert(place, keyAt);
    }
    if (m_slots.empty()) return -1;
    return static_cast<long>(Lookup(key, Hash(key), keyAt).place) - 1;
}

template <class KeyAt, class ObjectAt>
void SMNameIndex::LookAgain(const SMNameEpoch& epoch, KeyAt keyAt, ObjectAt objectAt) {
    const std::uint64_t named = epoch.m_named - m_named;
    if (named > SMNameEpoch::REMEMBERED || named > m_unnamedCount) {
        std::vector<std::uint32_t> before;
        before.swap(m_unnamed);
        m_unnamedCount = 0;
        for (const std::uint32_t entry : before) {
            if (entry == 0) continue;
            if (keyAt(entry - 1).empty())
                AddUnnamed(entry - 1, objectAt);
            else
                Insert(entry - 1, keyAt);
        }
        return;
    }
    const std::size_t mask = m_unnamed.size() - 1;
    for (std::uint64_t at = m_named; at != epoch.m_named; ++at) {
        const void* object = epoch.m_recent[at % SMNameEpoch::REMEMBERED];
        // an object may stand in the vector more than once
        for (std::size_t slot = Hash(object) & mask; m_unnamed[slot] != 0; slot = (slot + 1) & mask) {
            const std::uint32_t place = m_unnamed[slot] - 1;
            if (objectAt(place) == object && !keyAt(place).empty()) Insert(place, keyAt);
        }
    }
}

template <class ObjectAt>
void SMNameIndex::AddUnnamed(std::uint32_t place, ObjectAt objectAt) {
    if (m_unnamed.size() < (m_unnamedCount + 1) * 2) {
        std::vector<std::uint32_t> before(m_unnamed.empty() ? 16 : m_unnamed.size() * 2, 0);
        before.swap(m_unnamed);
        m_unnamedCount = 0;
        for (const std::uint32_t entry : before)
            if (entry != 0) AddUnnamed(entry - 1, objectAt);
    }
    const std::size_t mask = m_unnamed.size() - 1;
    std::size_t slot = Hash(objectAt(place)) & mask;
    while (m_unnamed[slot] != 0) slot = (slot + 1) & mask;
    m_unnamed[slot] = place + 1;
    ++m_unnamedCount;
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
    } else if (place + 1 < slot.place) {
        slot.place = place + 1;  // of equal keys the first place wins
    }
}

}  // namespace schema_002_000
