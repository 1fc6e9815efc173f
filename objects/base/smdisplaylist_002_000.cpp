#include "objects/base/smdisplaylist_002_000.h"

#include <algorithm>

#include "objects/base/smorphan_002_000.h"

namespace schema_002_000 {

SMDisplayList::~SMDisplayList() {
    if (!m_block) return;
    SMOrphanAll(m_block->detached);
}

const SMDisplayList::Objects& SMDisplayList::Items() const noexcept {
    static const Objects none;
    return m_block ? m_block->items : none;
}

void SMDisplayList::Sort() {
    if (!m_block) return;
    Objects& items = m_block->items;
    auto end = items.end();
    // nulls are set aside: with them among the items the comparison would be no order
    if (std::find(items.begin(), end, nullptr) != end)
        end = std::stable_partition(items.begin(), end, [](const SMObjectBase* item) { return item != nullptr; });
    if (!std::is_sorted(items.begin(), end, DisplayOrderSort)) std::stable_sort(items.begin(), end, DisplayOrderSort);
}

bool SMDisplayList::RemoveById(const QvULString& id) {
    if (!m_block) return false;
    const std::size_t before = m_block->items.size();
    RemoveDisplayOrderItemById(m_block->items, id);
    ReleaseUnlisted();
    return m_block->items.size() != before;
}

bool SMDisplayList::RemovePointer(const SMObjectBase* object) {
    if (!m_block) return false;
    Objects& items = m_block->items;
    const auto found = std::find(items.begin(), items.end(), object);
    if (found == items.end()) return false;
    items.erase(found);
    ReleaseUnlisted();
    return true;
}

void SMDisplayList::Detach(QvSmartPtr<SMObjectBase> object) {
    const Objects& items = Items();
    if (std::find(items.begin(), items.end(), object.get()) == items.end())
        SMOrphan(object);
    else
        m_block->detached.push_back(std::move(object));
}

void SMDisplayList::ReleaseUnlisted() {
    const Objects& items = m_block->items;
    std::erase_if(m_block->detached, [&](const auto& held) {
        const bool isListed = std::find(items.begin(), items.end(), held.get()) != items.end();
        if (!isListed) SMOrphan(held);
        return !isListed;
    });
}

}  // namespace schema_002_000
