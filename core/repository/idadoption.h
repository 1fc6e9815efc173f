#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/repository/savestate.h"

namespace qv {

/** The children that an object tells of, also when several of them have one id. */
std::vector<IOObject*> ChildrenOf(const IOObject& object);

/**
 * Finds, for objects of memory without an id of their own, the stored rows that are most likely theirs: that of the same parent, kind
 * and name, else that of the same parent and kind in the same place. A document does not keep the ids of all kinds, and one that was
 * edited by hand may have an id twice; without this each put of one would replace their rows.
 */
class IdAdoption {
  public:
    explicit IdAdoption(SaveState& state) : m_state(state) {}

    /** `outermost` is the object whose write is under way; ids of objects below it are not given to others. */
    void Start(IOObject& outermost);
    /** The object has no id, or that of another object that was visited before. */
    bool Lacks(const IOObject& object) const;
    /** The id for an object that lacks one and is the `place`-th of its table below its parent; empty when it is new. */
    std::string IdFor(IOObject& object, const RowTable& table, std::size_t place);

  private:
    struct Described {
        IOObject* object;
        std::string type, name;
        /** Among the siblings of its type. */
        std::size_t place = 0;
    };

    void Resolve(IOObject& object, const RowTable& table, std::size_t place);
    std::vector<Described> Siblings(IOObject& object, const RowTable& table, std::size_t place);
    void Describe(Described& described, const RowTable& table);
    const std::unordered_set<std::string>& Claimed();

    SaveState& m_state;
    IOObject* m_outermost = nullptr;
    /** Ids that objects of memory have of their own. */
    std::unordered_set<std::string> m_claimed;
    bool m_knowsClaims = false;
    /** What was found for the siblings of objects that were asked for. */
    std::unordered_map<const IOObject*, std::string> m_found;
    /** The ids among them. */
    std::unordered_set<std::string> m_given;
};

}  // namespace qv
