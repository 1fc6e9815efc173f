#pragma once

#include "core/qvutils/base/smapi.h"

/**
 * Base of counted objects. A new object starts at zero, and the first `QvSmartPtr` raises it to one; the removal that brings it
 * to zero calls `cleanup()`, which deletes it. An object on the stack must be given a reference of its own first. The count is
 * plain: objects of one project are used from one thread at a time.
 */
class SM_API TklReferenceCount {
  public:
    TklReferenceCount() noexcept = default;
    /** A copy is a new object and starts at zero. */
    TklReferenceCount(const TklReferenceCount&) noexcept {}
    TklReferenceCount& operator=(const TklReferenceCount&) noexcept { return *this; }
    virtual ~TklReferenceCount() = default;

    virtual void addReference() { ++m_references; }
    virtual void removeReference() {
        if (--m_references == 0) cleanup();
    }
    virtual int getReferenceCount() const { return m_references; }
    /** Deletes it: at once, or, where deletes stand inside each other in great number, when the outer ones are done with their own. */
    virtual void cleanup();

  private:
    int m_references = 0;
};
