#pragma once

#include <vector>

#include "core/qvutils/base/smapi.h"

namespace schema_002_000 {

class SMObjectBase;

/**
 * The registry of the live objects of one project. It borrows what it lists; each object remembers its slot, so nothing is ever
 * searched. Slots that become empty stay as holes until there are more than 5000 of them.
 */
class SM_API AllSMObjects {
  public:
    AllSMObjects() = default;
    AllSMObjects(const AllSMObjects&) = delete;
    AllSMObjects& operator=(const AllSMObjects&) = delete;

    /** An object that still remembers a slot of this registry goes back there; others are appended. */
    void Add(SMObjectBase* object);
    /** Does nothing for an object that remembers no slot. */
    void Remove(SMObjectBase* object);
    /** Closes the holes; objects keep their order and learn their new slots. */
    void Compact();
    /** Forgets all objects without touching them; true also empties the list. */
    void RemoveAll(bool clearList);

    /** Slots in use, holes included. */
    int GetCount() const noexcept { return m_count; }
    int GetHoles() const noexcept { return m_holes; }
    /** The slots; a hole is null. */
    const std::vector<SMObjectBase*>& GetObjects() const noexcept { return m_objects; }

  private:
    int m_count = 0;
    int m_holes = 0;
    std::vector<SMObjectBase*> m_objects;
};

}  // namespace schema_002_000
