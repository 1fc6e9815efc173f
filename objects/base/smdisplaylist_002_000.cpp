#include "objects/base/smdisplaylist_002_000.h"

#include <algorithm>

namespace schema_002_000 {

SMDisplayList::~SMDisplayList() {
    if (!m_detached) return;
    for (const auto& held : *m_detached)
        if (held->getReferenceCount() > 1) held->parent = nullptr;
}

void SMDisplayList::Sort() {
    auto end = m_items.end();
    // nulls are set aside: with them among the items the comparison would be no order
    if (std::find(m_items.begin(), end, nullptr) != end)
        end = std::stable_partition(m_items.begin(), end, [](const SMObjectBase* item) { return item != nullptr; });
    if (!std::is_sorted(m_items.begin(), end, DisplayOrderSort)) std::stable_sort(m_items.begin(), end, DisplayOrderSort);
}

bool SMDisplayList::RemoveById(const QvULString& id) {
    const std::size_t before = m_items.size();
    RemoveDisplayOrderItemById(m_items, id);
    ReleaseUnlisted();
    return m_items.size() != before;
}

bool SMDisplayList::RemovePointer(const SMObjectBase* object) {
    const auto found = std::find(m_items.begin(), m_items.end(), object);
    if (found == m_items.end()) return false;
    m_items.erase(found);
    ReleaseUnlisted();
    return true;
}

void SMDisplayList::Detach(QvSmartPtr<SMObjectBase> object) {
    if (std::find(m_items.begin(), m_items.end(), object.get()) == m_items.end()) return;
    if (!m_detached) m_detached = std::make_unique<QvSmartVector<SMObjectBase>>();
    m_detached->push_back(std::move(object));
}

void SMDisplayList::ReleaseUnlisted() {
    if (!m_detached) return;
    std::erase_if(*m_detached, [&](const auto& held) { return std::find(m_items.begin(), m_items.end(), held.get()) == m_items.end(); });
}

}  // namespace schema_002_000
