#pragma once

#include "core/qvutils/base/qvsmartptr.h"

namespace schema_002_000 {

/**
 * Cuts the parent link of a child that leaves its container, or loses it, and lives on because somebody else shares it too: a link
 * to what is gone would be read by the next question for a path. To be called while the container, or a local of the operation that
 * takes the child out, has the one share of its own. Null does nothing.
 */
template <class T>
void SMOrphan(const QvSmartPtr<T>& child) {
    if (child && child->getReferenceCount() > 1) child->parent = nullptr;
}

/** The same for all of a collection, which shares each of them once. */
template <class Children>
void SMOrphanAll(const Children& children) {
    for (const auto& child : children) SMOrphan(child);
}

/** Puts another child, or none, into a slot that holds one; the child before is orphaned. */
template <class T>
void SMReplaceChild(QvSmartPtr<T>& slot, T* child) {
    const QvSmartPtr<T> before = slot;
    slot = child;
    if (before.get() != child) SMOrphan(before);
}

}  // namespace schema_002_000
