#pragma once

#include <map>
#include <utility>
#include <new>
#include <vector>

/** Shares a counted object. Null is allowed. */
template <class T>
class QvSmartPtr {
  public:
    QvSmartPtr() noexcept = default;
    QvSmartPtr(T* object) : m_object(object) { ar(m_object); }
    QvSmartPtr(const QvSmartPtr& other) : m_object(other.m_object) { ar(m_object); }
    QvSmartPtr(QvSmartPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~QvSmartPtr() { rr(m_object); }

    QvSmartPtr& operator=(T* object) {
        ar(object);  // before the old one goes: the two may be one object
        rr(std::exchange(m_object, object));
        return *this;
    }
    QvSmartPtr& operator=(const QvSmartPtr& other) { return *this = other.m_object; }
    QvSmartPtr& operator=(QvSmartPtr&& other) noexcept {
        if (this != &other) rr(std::exchange(m_object, std::exchange(other.m_object, nullptr)));
        return *this;
    }

    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    operator T*() const noexcept { return m_object; }
    T* get() const noexcept { return m_object; }

    static void ar(T* object) {
        if (object) object->addReference();
    }
    static void rr(T* object) {
        if (object) object->removeReference();
    }

  private:
    T* m_object = nullptr;
};

template <class T>
using QvSmartVector = std::vector<QvSmartPtr<T>>;

/** A vector that stays empty. It takes no memory and is never destroyed, so it serves at any time, and where T is incomplete. */
template <class T>
const QvSmartVector<T>& QvEmptyVector() noexcept {
    alignas(QvSmartVector<T>) static unsigned char place[sizeof(QvSmartVector<T>)];
    static const QvSmartVector<T>& vector = *new (place) QvSmartVector<T>;
    return vector;
}

/** An ordered map from a key to a counted object. */
template <class K, class V>
using QvSmartMap = std::map<K, QvSmartPtr<V>>;
