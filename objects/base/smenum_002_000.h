#pragma once

#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"

namespace schema_002_000 {

/** The hash by which every enumeration finds its strings. */
class SM_API SMEnum {
  public:
    SMEnum() = delete;
    /**
     * From the last character to the first, h = (h * 31 + character) % 32767; then plus the number of characters.
     * The empty text gives 0; the result is never negative.
     */
    static int HashSMXMLString(const I18NString& text);
};

/** The texts of a truth value. */
class SM_API SMEnum_bool {
  public:
    SMEnum_bool() = delete;
    /** True exactly for "true": neither "TRUE" nor "1" is. */
    static bool string2bool(const I18NString& text);
    static const I18NString& bool2string(bool value);

    static const I18NString s_true;
    static const I18NString s_false;
};

/**
 * Numbers and texts of one closed vocabulary; each enumeration class owns one. Numbers are small and not negative.
 *
 * A text is found by its hash alone and never compared: a foreign text with the hash of a known one is taken for it. That is
 * the price of one table look-up per element name, and whoever changes a vocabulary learns of a collision from Insert.
 */
class SM_API SMVocabulary {
  public:
    /** Number of a text that is not in the vocabulary. */
    static constexpr int UNKNOWN = -1;

    /** `className` names the enumeration in the event of a collision; borrowed for good. */
    explicit SMVocabulary(const char* className) : m_className(className) {}

    /** Keeps the text for the number and returns the text kept: the first one, when the number already has one. */
    const I18NString& InsertText(int number, const I18NString& text);
    /** Makes the text known as the number. If its hash is taken, the event that tells so is logged, and a copy of it thrown. */
    void InsertOrError(const I18NString& text, int number);

    int NumberOf(const I18NString& text) const;
    /** Null when the number has no text; the vocabulary owns the text. */
    const I18NString* TextOf(int number) const;

  private:
    struct Slot {
        int hash = UNKNOWN;
        int number = UNKNOWN;
    };

    std::size_t SlotOf(int hash) const;
    void Grow();

    const char* m_className;
    std::size_t m_count = 0;
    std::vector<Slot> m_slots;        // a power of two of them, at most half in use
    std::vector<I18NString> m_texts;  // by number; a number without a text has the empty one
};

}  // namespace schema_002_000

/**
 * What every enumeration class offers; `CLASS` already has its `Enum`, numbered as in documents and stores.
 *
 * `GetInstance` makes the only instance at its first call. It takes no lock: a host with several threads calls it once before
 * they start. The instance is never deleted, and any thread may read it. If making it fails, the next call tries again.
 * `_string2enum` gives -1 for a text outside the vocabulary, `_enum2string` the empty text for a number outside of it.
 */
#define SM_ENUM_MEMBERS(CLASS)                                \
  public:                                                     \
    static CLASS* GetInstance();                              \
    const I18NString& _enum2string(Enum number) const;        \
    Enum _string2enum(const I18NString& text) const;          \
    CLASS(const CLASS&) = delete;                             \
    CLASS& operator=(const CLASS&) = delete;                  \
                                                              \
    static const I18NString SMENUM_STRING_EMPTY;              \
                                                              \
  private:                                                    \
    CLASS();                                                  \
    void _insertOrError(const I18NString& text, Enum number); \
                                                              \
    static CLASS* ms_pInstance;                               \
    SMVocabulary m_vocabulary{#CLASS};

namespace schema_002_000 {

/** The text of an enumerator, empty for -1; E is the enumeration class. */
template <class E>
const I18NString& EnumText(typename E::Enum number) {
    return E::GetInstance()->_enum2string(number);
}

/** The enumerator of a text; -1 for a text outside the vocabulary, the empty one included. */
template <class E>
typename E::Enum EnumOf(const I18NString& text) {
    return E::GetInstance()->_string2enum(text);
}

}  // namespace schema_002_000

/** The bodies of SM_ENUM_MEMBERS, all but the constructor. */
#define SM_DEFINE_ENUM_MEMBERS(CLASS)                                 \
    const I18NString CLASS::SMENUM_STRING_EMPTY;                      \
    CLASS* CLASS::ms_pInstance = nullptr;                             \
                                                                      \
    CLASS* CLASS::GetInstance() {                                     \
        if (!ms_pInstance) ms_pInstance = new CLASS();                \
        return ms_pInstance;                                          \
    }                                                                 \
    const I18NString& CLASS::_enum2string(Enum number) const {        \
        const I18NString* text = m_vocabulary.TextOf(number);         \
        return text ? *text : SMENUM_STRING_EMPTY;                    \
    }                                                                 \
    CLASS::Enum CLASS::_string2enum(const I18NString& text) const {   \
        return static_cast<Enum>(m_vocabulary.NumberOf(text));        \
    }                                                                 \
    void CLASS::_insertOrError(const I18NString& text, Enum number) { \
        m_vocabulary.InsertOrError(text, number);                     \
    }
