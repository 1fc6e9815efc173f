#pragma once

#include <string_view>

#include "core/qvutils/text/sharedtext.h"

class QvULString;
class I18NStringIterator;

/**
 * Text of the model, held as UTF-8. Lengths, positions and counts of its operations are in characters (code points); an
 * all-ASCII text is indexed in constant time. Positions outside the text are cut to it; `find` gives -1 for "not found".
 */
class SM_API I18NString {
  public:
    /** Converters are the caller's own; null (always, inside this library) means the conversion by encoding name. */
    using Converter = void*;

    I18NString() noexcept = default;
    /** Text of `length` bytes (-1: up to the NUL) in the named encoding (null: UTF-8). Null text gives the empty string. */
    I18NString(const char* text, const char* encoding = nullptr, int length = -1, Converter converter = nullptr, void* context = nullptr);
    explicit I18NString(std::string_view utf8) : m_text(utf8) {}
    explicit I18NString(const qv::SharedText& text) noexcept : m_text(text) {}
    static I18NString Immortal(std::string_view utf8) { return I18NString(qv::SharedText::Immortal(utf8)); }

    I18NString& operator=(const char* text);
    I18NString& operator+=(const char* text);
    I18NString& operator+=(const I18NString& text);
    I18NString& operator+=(wchar_t character);

    /** Removes `count` characters from `start` on (-1: all the rest). Without arguments the text becomes empty. */
    I18NString& erase(int start = 0, int count = -1);
    I18NString& replace(int start, int count, const I18NString& text);
    int find(const I18NString& text, int from = 0) const;
    I18NString substr(int start, int count = -1) const;
    /** The characters from `start` up to but not including `end`. */
    I18NString substring(int start, int end) const;
    int size() const;
    int length() const { return size(); }
    bool empty() const noexcept { return m_text.empty(); }

    I18NStringIterator begin() const;
    I18NStringIterator end() const;

    /**
     * The bytes of the text in the named encoding (null: UTF-8), NUL-terminated; their number goes to `lengthOut`.
     * UTF-8 points into the string; another encoding points into a buffer of the calling thread that the eighth further call
     * with a foreign encoding uses again. An unknown encoding raises TklRuntimeError.
     */
    const char* c_str(const char* encoding = nullptr, int* lengthOut = nullptr, Converter converter = nullptr,
                      void* context = nullptr) const;

    std::string_view utf8() const noexcept { return m_text.view(); }
    const qv::SharedText& shared() const noexcept { return m_text; }
    I18NString& assign(std::string_view utf8) {
        m_text.assign(utf8);
        return *this;
    }
    I18NString& append(std::string_view utf8) {
        m_text.append(utf8);
        return *this;
    }

  private:
    qv::SharedText m_text;
};

inline I18NString operator+(const I18NString& a, const I18NString& b) {
    return I18NString(a) += b;
}
inline I18NString operator+(const I18NString& a, const char* b) {
    return I18NString(a) += b;
}
inline I18NString operator+(const char* a, const I18NString& b) {
    return I18NString(a) += b;
}

inline bool operator==(const I18NString& a, const I18NString& b) noexcept {
    return a.shared().same(b.shared()) || a.utf8() == b.utf8();
}
inline bool operator==(const I18NString& a, const char* b) noexcept {
    return a.utf8() == (b ? std::string_view(b) : std::string_view());
}
/** Order by code point. */
inline bool operator<(const I18NString& a, const I18NString& b) noexcept {
    return a.utf8() < b.utf8();
}
inline bool operator>(const I18NString& a, const I18NString& b) noexcept {
    return b < a;
}
inline bool operator<=(const I18NString& a, const I18NString& b) noexcept {
    return !(b < a);
}
inline bool operator>=(const I18NString& a, const I18NString& b) noexcept {
    return !(a < b);
}

/** What a dereferenced iterator gives: one character. */
class SM_API I18NStringIteratorValue {
  public:
    explicit I18NStringIteratorValue(wchar_t character) noexcept : m_character(character) {}
    operator wchar_t() const noexcept { return m_character; }

  private:
    wchar_t m_character;
};

/** Walks the characters of a text, backwards from `end()` too. It borrows the text, which must not change meanwhile. */
class SM_API I18NStringIterator {
  public:
    I18NStringIterator(const char* begin, const char* at) noexcept : m_begin(begin), m_at(at) {}
    I18NStringIteratorValue operator*() const noexcept;
    I18NStringIterator& operator++() noexcept;
    I18NStringIterator& operator--() noexcept;
    bool operator==(const I18NStringIterator& other) const noexcept { return m_at == other.m_at; }
    bool operator!=(const I18NStringIterator& other) const noexcept { return m_at != other.m_at; }

  private:
    const char* m_begin;
    const char* m_at;
};
