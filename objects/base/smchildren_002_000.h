#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/qvutils/base/qvsmartptr.h"
#include "objects/base/smdisplaylist_002_000.h"
#include "objects/base/smnameindex_002_000.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smorphan_002_000.h"

namespace schema_002_000 {

/** Name epochs of the project of an object; null for an object without one. */
SM_API const SMNameEpochs* NameEpochsOf(const SMObjectBase& object);

/** Keys by which children are found. */
struct SMByName {
    template <class T>
    static std::string_view Key(const T& item) {
        return item.GetName().utf8();
    }
};

struct SMByQvRef {
    template <class T>
    static std::string_view Key(const T& item) {
        return item.GetQvRef().utf8();
    }
};

/**
 * The children of one kind of a container: a vector of counted objects in the order of their coming, with lazy indexes of their
 * names and, for the kinds that are looked up so, of a second key. Look-ups answer as a search from the front would. One pointer
 * wide while empty, since a model holds such collections by the million.
 */
template <class T, class By = SMByName, class SecondBy = By>
class SMChildren {
  public:
    using Vector = QvSmartVector<T>;

    void Append(T* item) {
        const QvSmartPtr<T> held(item);  // if memory ends here, a new item ends with it
        if (!m_block) m_block = std::make_unique<Block>();
        m_block->items.push_back(held);
    }

    /** The first item with the key, or null. `owner` is the container. */
    T* Find(std::string_view key, const SMObjectBase& owner) const { return m_block ? FindIn<By>(m_block->index, key, owner) : nullptr; }
    T* FindBySecond(std::string_view key, const SMObjectBase& owner) const {
        return m_block ? FindIn<SecondBy>(m_block->secondIndex, key, owner) : nullptr;
    }
    T* FindById(const QvULString& id) const {
        for (const auto& item : Items())
            if (item->GetId() == id) return item;
        return nullptr;
    }
    bool Contains(const T* item) const { return Place(item) != Items().size(); }

    /** Takes an item out and hands its share over; null when it is not here. */
    QvSmartPtr<T> Take(const T* item) {
        const std::size_t place = Place(item);
        if (place == Items().size()) return nullptr;
        QvSmartPtr<T> taken = std::move(m_block->items[place]);
        m_block->items.erase(m_block->items.begin() + static_cast<std::ptrdiff_t>(place));
        m_block->index.reset();
        m_block->secondIndex.reset();
        return taken;
    }

    const Vector& Items() const noexcept { return m_block ? m_block->items : QvEmptyVector<T>(); }
    std::size_t size() const noexcept { return m_block ? m_block->items.size() : 0; }
    bool empty() const noexcept { return size() == 0; }
    const QvSmartPtr<T>& operator[](std::size_t place) const { return m_block->items[place]; }
    auto begin() const noexcept { return Items().begin(); }
    auto end() const noexcept { return Items().end(); }
    void clear() noexcept { m_block.reset(); }

  private:
    struct Block {
        Vector items;
        /** Made by the first look-up. */
        std::unique_ptr<SMNameIndex> index, secondIndex;
    };
    template <class Key>
    T* FindIn(std::unique_ptr<SMNameIndex>& index, std::string_view key, const SMObjectBase& owner) const {
        const Vector& items = m_block->items;
        const auto keyAt = [&](std::size_t place) { return Key::Key(*items[place]); };
        if (const SMNameEpochs* epochs = NameEpochsOf(owner)) {
            if (!index) index = std::make_unique<SMNameIndex>();
            const SMNameEpoch& epoch = std::is_same_v<Key, SMByQvRef> ? epochs->links : epochs->names;
            const auto objectAt = [&](std::size_t place) { return static_cast<const SMObjectBase*>(items[place].get()); };
            const long place = index->Find(key, items.size(), epoch, keyAt, objectAt);
            return place < 0 ? nullptr : items[static_cast<std::size_t>(place)].get();
        }
        for (const auto& item : items)
            if (Key::Key(*item) == key) return item;
        return nullptr;
    }
    std::size_t Place(const T* item) const {
        const Vector& items = Items();
        std::size_t place = 0;
        while (place < items.size() && items[place].get() != item) ++place;
        return place;
    }

    std::unique_ptr<Block> m_block;
};

/**
 * The delete of a container's child by id, from its typed collection and from the display list. The typed object found goes and
 * its own entry with it; where no typed object has the id, the first entry of that id leaves the list.
 */
template <class T, class By, class SecondBy>
void SMDeleteById(SMChildren<T, By, SecondBy>& typed, SMDisplayList& list, const QvULString& id) {
    const QvSmartPtr<T> held = typed.FindById(id);  // lives until both have let it go
    if (!held) {
        list.RemoveById(id);
        return;
    }
    list.RemovePointer(held);
    typed.Take(held);
    SMOrphan(held);
}

/** The delete that leaves the display list alone: an object that the list still names lives on with it, and is still written. */
template <class T, class By, class SecondBy>
void SMDeleteTypedById(SMChildren<T, By, SecondBy>& typed, SMDisplayList& list, const QvULString& id) {
    if (const T* found = typed.FindById(id)) list.Detach(typed.Take(found).get());
}

}  // namespace schema_002_000
