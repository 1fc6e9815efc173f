#pragma once

#include <algorithm>

#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/text/qvulstring.h"

namespace schema_002_000 {

/** The first item whose GetName() equals the name, or null. */
template <class T>
T* GetFromVectorByName(const QvSmartVector<T>& items, const QvULString& name) {
    for (const auto& item : items)
        if (item && item->GetName() == name) return item;
    return nullptr;
}

/** Erases the first item with the id, if there is one. A display list that names the item is not touched. */
template <class T>
void DeleteFromVectorById(QvSmartVector<T>& items, const QvULString& id) {
    const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) { return item && item->GetId() == id; });
    if (found != items.end()) items.erase(found);
}

}  // namespace schema_002_000
