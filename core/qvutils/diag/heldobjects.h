#pragma once

#include <string>
#include <unordered_set>

#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/base/qvulcollection.h"
#include "core/qvutils/persist/ioobject.h"

namespace qv {

/**
 * Objects that findings are about, held together with their ancestors, which a path is made of: a parse that fails lets go of all it
 * has built before the paths are asked for.
 */
class HeldObjects {
  public:
    /** Null for an object that nobody shares, since its end cannot be put off. */
    QvSmartPtr<IOObject> Hold(const IOObject* object) {
        if (!object || object->getReferenceCount() == 0) return nullptr;
        for (const IOObject* at = object; at && at->getReferenceCount() > 0 && m_known.insert(at).second; at = at->parent)
            m_objects.emplace_back(const_cast<IOObject*>(at));
        return const_cast<IOObject*>(object);
    }

  private:
    std::unordered_set<const IOObject*> m_known;
    QvSmartVector<IOObject> m_objects;
};

/**
 * The path of an object that may be half built; of one with neither name nor id, that of the nearest object around it that has one. It is
 * shortened when it is longer than any model needs, since each finding has its own. What asking for it logs is dropped, and a failure
 * leaves it empty.
 */
SM_API std::string QuietPathOf(const IOObject& object);

}  // namespace qv
