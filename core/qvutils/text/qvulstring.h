#pragma once

#include <functional>
#include <string_view>

#include "core/qvutils/text/i18nstring.h"
#include "core/qvutils/text/sharedtext.h"

/**
 * Compact text for ids, names and keys: 8 bytes, null when empty, UTF-8 inside. Copies, also to and from `I18NString`, share.
 * A string made from a null pointer, or by default, is empty. `length()` counts bytes. The order is that of unsigned bytes,
 * which is the order of code points.
 */
class SM_API QvULString {
  public:
    QvULString() noexcept = default;
    QvULString(const char* text) : m_text(text ? std::string_view(text) : std::string_view()) {}
    QvULString(const I18NString& text) noexcept : m_text(text.shared()) {}
    explicit QvULString(std::string_view utf8) : m_text(utf8) {}
    static QvULString Immortal(std::string_view utf8) { return QvULString(I18NString::Immortal(utf8)); }

    QvULString& operator=(const char* text) { return *this = QvULString(text); }
    QvULString& operator=(const I18NString& text) noexcept {
        m_text = text.shared();
        return *this;
    }
    /** Takes `length` bytes; -1: up to the NUL. Null empties the string. */
    void assign(const char* text, int length);

    const char* c_str() const noexcept { return m_text.c_str(); }
    bool empty() const noexcept { return m_text.empty(); }
    int length() const noexcept { return static_cast<int>(m_text.view().size()); }
    operator I18NString() const noexcept { return I18NString(m_text); }

    std::string_view utf8() const noexcept { return m_text.view(); }
    const qv::SharedText& shared() const noexcept { return m_text; }

  private:
    qv::SharedText m_text;
};

inline bool operator==(const QvULString& a, const QvULString& b) noexcept {
    return a.shared().same(b.shared()) || a.utf8() == b.utf8();
}
inline bool operator==(const QvULString& a, const char* b) noexcept {
    return a.utf8() == (b ? std::string_view(b) : std::string_view());
}
inline bool operator==(const QvULString& a, const I18NString& b) noexcept {
    return a.shared().same(b.shared()) || a.utf8() == b.utf8();
}
inline bool operator<(const QvULString& a, const QvULString& b) noexcept {
    return a.utf8() < b.utf8();
}
inline bool operator>(const QvULString& a, const QvULString& b) noexcept {
    return b < a;
}
inline bool operator<=(const QvULString& a, const QvULString& b) noexcept {
    return !(b < a);
}
inline bool operator>=(const QvULString& a, const QvULString& b) noexcept {
    return !(a < b);
}
// Either class converts to the other, so a mixed comparison needs a winner of its own.
inline bool operator<(const QvULString& a, const I18NString& b) noexcept {
    return a.utf8() < b.utf8();
}
inline bool operator<(const I18NString& a, const QvULString& b) noexcept {
    return a.utf8() < b.utf8();
}
inline bool operator>(const QvULString& a, const I18NString& b) noexcept {
    return b < a;
}
inline bool operator>(const I18NString& a, const QvULString& b) noexcept {
    return b < a;
}
inline bool operator<=(const QvULString& a, const I18NString& b) noexcept {
    return !(b < a);
}
inline bool operator<=(const I18NString& a, const QvULString& b) noexcept {
    return !(b < a);
}
inline bool operator>=(const QvULString& a, const I18NString& b) noexcept {
    return !(a < b);
}
inline bool operator>=(const I18NString& a, const QvULString& b) noexcept {
    return !(a < b);
}

/** Equal texts of either class have equal hashes. */
template <>
struct std::hash<QvULString> {
    std::size_t operator()(const QvULString& text) const noexcept { return std::hash<std::string_view>()(text.utf8()); }
};
template <>
struct std::hash<I18NString> {
    std::size_t operator()(const I18NString& text) const noexcept { return std::hash<std::string_view>()(text.utf8()); }
};
