#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <vector>

#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/text/qvulstring.h"

/** Extractor of the key of a `QvULCollection`: the item's id. */
template <class T>
struct QvULIdExtract {
    QvULString operator()(const T* item) const { return item->GetId(); }
};

/**
 * A vector of counted objects with a lazily built index from key to place. The index is out of date whenever it is empty and the
 * vector is not; a look-up or a delete then builds it anew. So a doubled key raises only while the index lives, as callers
 * have come to expect; a key that changes behind the index is not noticed.
 */
template <class T, class Extract>
class QvULCollection {
  public:
    void push_back(T* pItem) {
        const QvULString key = pItem ? m_g(pItem) : QvULString();
        if (!pItem || key.empty()) {
            m_namemap.clear();
        } else if (m_vector.empty() || !m_namemap.empty()) {
            TKL_ASSERT(m_namemap.find(m_g(pItem)) == m_namemap.end());
            m_namemap.emplace(key, m_vector.size());
        }
        m_vector.emplace_back(pItem);
    }

    /** The item with the key, or null. */
    T* Find(const QvULString& key) const {
        const auto found = Index().find(key);
        return found == m_namemap.end() ? nullptr : m_vector[found->second].get();
    }

    /** Removes the item with the key, if there is one; later items move down. */
    void Delete(const QvULString& key) {
        const auto found = Index().find(key);
        if (found == m_namemap.end()) return;
        const auto place = static_cast<std::ptrdiff_t>(found->second);
        m_namemap.clear();
        m_vector.erase(m_vector.begin() + place);
    }

    /** Removes this very item, whatever its key; false when it is not here. */
    bool DeleteItem(const T* pItem) {
        const auto found = std::find_if(m_vector.begin(), m_vector.end(), [&](const QvSmartPtr<T>& each) { return each.get() == pItem; });
        if (found == m_vector.end()) return false;
        m_namemap.clear();
        m_vector.erase(found);
        return true;
    }
    /** For a caller that has changed keys. */
    void ForgetIndex() { m_namemap.clear(); }
    void clear() {
        m_namemap.clear();
        m_vector.clear();
    }

    std::size_t size() const noexcept { return m_vector.size(); }
    bool empty() const noexcept { return m_vector.empty(); }
    const QvSmartPtr<T>& operator[](std::size_t place) const { return m_vector[place]; }
    auto begin() const noexcept { return m_vector.begin(); }
    auto end() const noexcept { return m_vector.end(); }

  private:
    /** Null items and empty keys are left out; of equal keys the first wins. */
    const std::map<QvULString, std::size_t>& Index() const {
        if (m_namemap.empty())
            for (std::size_t place = 0; place < m_vector.size(); ++place)
                if (const QvULString key = m_vector[place] ? m_g(m_vector[place].get()) : QvULString(); !key.empty())
                    m_namemap.emplace(key, place);
        return m_namemap;
    }

    std::vector<QvSmartPtr<T>> m_vector;
    mutable std::map<QvULString, std::size_t> m_namemap;
    Extract m_g;
};
