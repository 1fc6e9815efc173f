#pragma once

#include <memory>
#include <vector>

#include "objects/base/smobjectbase_002_000.h"

namespace schema_002_000 {

/**
 * The children of a container in display order, of every kind. The list borrows; the typed collections of the same container
 * share the objects. An operation that takes an object out of its typed collection alone hands it to `Detach`, which keeps it
 * alive for as long as the list can name it: such an object is still written, though no typed look-up finds it any more.
 */
class SM_API SMDisplayList {
  public:
    using Objects = std::vector<SMObjectBase*>;

    SMDisplayList() = default;
    SMDisplayList(const SMDisplayList&) = delete;
    SMDisplayList& operator=(const SMDisplayList&) = delete;
    /** Cuts the parent link of detached objects that outlive their container. */
    ~SMDisplayList();

    void Append(SMObjectBase* object) { Items().push_back(object); }
    Objects& Items() {
        if (!m_block) m_block = std::make_unique<Block>();
        return m_block->items;
    }
    const Objects& Items() const noexcept;
    /** Sorts by display order number; equal numbers keep their order, nulls go to the end. */
    void Sort();
    /** Removes the first entry of an id, of a pointer; false when there is none. */
    bool RemoveById(const QvULString& id);
    bool RemovePointer(const SMObjectBase* object);
    /** Takes over an object that has left its typed collection: kept if the list still names it, else released. */
    void Detach(QvSmartPtr<SMObjectBase> object);

  private:
    struct Block {
        Objects items;
        /** Shares the objects that stand in the list alone. */
        QvSmartVector<SMObjectBase> detached;
    };
    void ReleaseUnlisted();

    /** Null while nothing was listed: models hold empty lists by the million. */
    std::unique_ptr<Block> m_block;
};

}  // namespace schema_002_000
