#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "core/repository/idadoption.h"
#include "core/repository/savestate.h"

namespace qv {

/**
 * The display order numbers for the rows of a document's objects. A document has its children numbered from 0, so that one that goes,
 * comes or moves changes the numbers of all behind it, whose rows nobody has touched: only the order tells something, so that the rows
 * keep their numbers where these tell the same.
 */
class SiblingNumbers {
  public:
    SiblingNumbers(SaveState& state, IdAdoption& adoption) : m_state(state), m_adoption(adoption) {}

    /** A save begins; the numbers of memory are written as they are unless they are `relative`. */
    void Start(bool relative);
    /** The number for the row of an object under way; none when it is that of memory. `entry` is the object's. */
    std::optional<Cell> For(const IOObject& object, const RowTable& table, const IdEntry* entry);

  private:
    void Settle(const IOObject& current);
    bool HasRow(std::string_view id) const;

    SaveState& m_state;
    IdAdoption& m_adoption;
    bool m_relative = false;
    std::unordered_set<const IOObject*> m_settled;
    /** Of those whose number is not that of memory. */
    std::unordered_map<const IOObject*, std::int64_t> m_numbers;
};

}  // namespace qv
