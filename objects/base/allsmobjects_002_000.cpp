#include "objects/base/allsmobjects_002_000.h"

#include "objects/base/smobjectbase_002_000.h"

namespace schema_002_000 {

namespace {
constexpr std::size_t FIRST_RESERVE = 5000;
constexpr int MAX_HOLES = 5000;
}  // namespace

void AllSMObjects::Add(SMObjectBase* object) {
    if (object->m_registryIndex != -1 && object->m_registryIndex < m_count) {
        m_objects[static_cast<std::size_t>(object->m_registryIndex)] = object;
        return;
    }
    if (m_objects.empty() && m_objects.capacity() < FIRST_RESERVE) m_objects.reserve(FIRST_RESERVE);
    // grows by a quarter: doubling would leave a model of millions with megabytes of empty slots
    if (m_objects.size() == m_objects.capacity()) m_objects.reserve(m_objects.capacity() + m_objects.capacity() / 4 + 1);
    m_objects.push_back(object);
    object->m_registryIndex = m_count++;
}

void AllSMObjects::Remove(SMObjectBase* object) {
    const int slot = object->m_registryIndex;
    if (slot < 0 || slot >= m_count) return;
    m_objects[static_cast<std::size_t>(slot)] = nullptr;
    if (slot == m_count - 1) {
        m_objects.pop_back();
        --m_count;
    } else if (++m_holes > MAX_HOLES) {
        Compact();
    }
    object->m_registryIndex = -1;
}

void AllSMObjects::Compact() {
    std::size_t kept = 0;
    for (SMObjectBase* object : m_objects) {
        if (!object) continue;
        object->m_registryIndex = static_cast<int>(kept);
        m_objects[kept++] = object;
    }
    m_objects.resize(kept);
    m_holes = 0;
    m_count = static_cast<int>(kept);
}

void AllSMObjects::RemoveAll(bool clearList) {
    if (clearList) m_objects.clear();
    m_count = 0;
    m_holes = 0;
}

}  // namespace schema_002_000
