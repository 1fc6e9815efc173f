#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace qv {

/**
 * An ordered map for a handful of entries: they stand sorted in one block, and the map itself is one pointer, null when empty.
 * It behaves as std::map but for two things: any insertion or removal moves entries, so that iterators and references
 * end with it; and the key of an entry can be reached as non-const, and must not be changed.
 */
template <class K, class V, class Less = std::less<K>>
class SmallSortedMap {
  public:
    using key_type = K;
    using mapped_type = V;
    using value_type = std::pair<K, V>;
    using size_type = std::size_t;
    using iterator = value_type*;
    using const_iterator = const value_type*;

    SmallSortedMap() noexcept = default;
    SmallSortedMap(std::initializer_list<value_type> entries) {
        for (const value_type& entry : entries) insert(entry);
    }
    SmallSortedMap(const SmallSortedMap& other) {
        if (other.empty()) return;
        SmallSortedMap copy;
        copy.m_block = Allocate(static_cast<std::uint32_t>(other.size()));
        for (const value_type& entry : other) {
            ::new (static_cast<void*>(copy.end())) value_type(entry);
            ++copy.m_block->count;
        }
        swap(copy);
    }
    SmallSortedMap(SmallSortedMap&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    SmallSortedMap& operator=(const SmallSortedMap& other) {
        if (this != &other) SmallSortedMap(other).swap(*this);
        return *this;
    }
    SmallSortedMap& operator=(SmallSortedMap&& other) noexcept {
        SmallSortedMap(std::move(other)).swap(*this);
        return *this;
    }
    ~SmallSortedMap() { clear(); }

    bool empty() const noexcept { return m_block == nullptr; }
    size_type size() const noexcept { return m_block ? m_block->count : 0; }
    iterator begin() noexcept { return m_block ? m_block->Entries() : nullptr; }
    iterator end() noexcept { return m_block ? m_block->Entries() + m_block->count : nullptr; }
    const_iterator begin() const noexcept { return m_block ? m_block->Entries() : nullptr; }
    const_iterator end() const noexcept { return m_block ? m_block->Entries() + m_block->count : nullptr; }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }

    iterator lower_bound(const K& key) { return LowerBound(begin(), end(), key); }
    const_iterator lower_bound(const K& key) const { return LowerBound(begin(), end(), key); }
    iterator find(const K& key) {
        const iterator at = lower_bound(key);
        return at != end() && !Less()(key, at->first) ? at : end();
    }
    const_iterator find(const K& key) const {
        const const_iterator at = lower_bound(key);
        return at != end() && !Less()(key, at->first) ? at : end();
    }
    bool contains(const K& key) const { return find(key) != end(); }
    size_type count(const K& key) const { return contains(key) ? 1 : 0; }

    /** Adds an entry unless the key is there; an existing entry stays as it is, and the value is not made. */
    template <class Key, class... Args>
    std::pair<iterator, bool> emplace(Key&& key, Args&&... args) {
        const iterator at = PlaceFor(key);
        if (at != end() && !Less()(key, at->first)) return {at, false};
        return {Insert(at, std::forward<Key>(key), std::forward<Args>(args)...), true};
    }
    std::pair<iterator, bool> insert(const value_type& entry) { return emplace(entry.first, entry.second); }
    std::pair<iterator, bool> insert(value_type&& entry) { return emplace(std::move(entry.first), std::move(entry.second)); }
    template <class Value>
    std::pair<iterator, bool> insert_or_assign(const K& key, Value&& value) {
        const iterator at = PlaceFor(key);
        if (at == end() || Less()(key, at->first)) return {Insert(at, key, std::forward<Value>(value)), true};
        at->second = std::forward<Value>(value);
        return {at, false};
    }
    V& operator[](const K& key) { return emplace(key).first->second; }

    size_type erase(const K& key) {
        const iterator at = find(key);
        if (at == end()) return 0;
        erase(at);
        return 1;
    }
    /** Gives the entry behind the removed one, or end(). */
    iterator erase(const_iterator where) {
        const iterator at = begin() + (where - begin());
        if (size() == 1) {
            clear();
            return end();
        }
        std::move(at + 1, end(), at);
        std::destroy_at(end() - 1);
        --m_block->count;
        return at;
    }
    void clear() noexcept {
        if (!m_block) return;
        std::destroy(begin(), end());
        std::free(std::exchange(m_block, nullptr));
    }
    void swap(SmallSortedMap& other) noexcept { std::swap(m_block, other.m_block); }

    friend bool operator==(const SmallSortedMap& a, const SmallSortedMap& b) { return std::equal(a.begin(), a.end(), b.begin(), b.end()); }

  private:
    /** Stands before the entries. */
    struct alignas(std::max(alignof(value_type), alignof(std::uint64_t))) Block {
        std::uint32_t count;
        std::uint32_t capacity;
        value_type* Entries() noexcept { return reinterpret_cast<value_type*>(this + 1); }
    };
    static_assert(alignof(Block) <= alignof(std::max_align_t));
    static_assert(std::is_nothrow_move_constructible_v<K> && std::is_nothrow_move_constructible_v<V>);

    static Block* Allocate(std::uint32_t capacity) {
        void* const block = std::malloc(sizeof(Block) + capacity * sizeof(value_type));
        if (!block) throw std::bad_alloc();
        return ::new (block) Block{0, capacity};
    }

    template <class Iterator>
    static Iterator LowerBound(Iterator first, Iterator last, const K& key) {
        return std::lower_bound(first, last, key, [](const value_type& entry, const K& wanted) { return Less()(entry.first, wanted); });
    }
    /** As lower_bound, but looks at the last entry first: entries mostly come in order. */
    iterator PlaceFor(const K& key) {
        if (m_block && Less()(end()[-1].first, key)) return end();
        return lower_bound(key);
    }

    /** The entry is made before anything moves: its arguments may lie in this map, and making it may throw. */
    template <class Key, class... Args>
    iterator Insert(iterator where, Key&& key, Args&&... args) {
        value_type entry(std::piecewise_construct, std::forward_as_tuple(std::forward<Key>(key)),
                         std::forward_as_tuple(std::forward<Args>(args)...));
        const std::ptrdiff_t place = where - begin();
        if (!m_block || m_block->count == m_block->capacity) Grow();
        const iterator at = begin() + place;
        for (iterator to = end(); to != at; --to) {
            ::new (static_cast<void*>(to)) value_type(std::move(to[-1]));
            std::destroy_at(to - 1);
        }
        ::new (static_cast<void*>(at)) value_type(std::move(entry));
        ++m_block->count;
        return at;
    }

    void Grow() {
        if (size() > std::numeric_limits<std::uint32_t>::max() / 2) throw std::length_error("too many entries in a map");
        const auto old = static_cast<std::uint32_t>(size());
        Block* const block = Allocate(old == 0 ? 1 : old * 2);
        std::uninitialized_move(begin(), end(), block->Entries());
        block->count = old;
        clear();
        m_block = block;
    }

    Block* m_block = nullptr;
};

}  // namespace qv
