#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "core/qvutils/xml/qvxmlattributes.h"

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/util/RefVectorOf.hpp>

namespace qv {

/** Texts met lately, so that short ones that come again and again are converted once and share their memory. */
class RecentTexts {
  public:
    I18NString Get(const char16_t* text);

  private:
    static constexpr std::size_t LONGEST = 31, SLOTS = 512;
    struct Slot {
        std::size_t length = 0;
        std::array<char16_t, LONGEST> utf16{};
        I18NString text;
    };
    std::vector<Slot> m_slots = std::vector<Slot>(SLOTS);
};

/** The attributes of the start tag that the parser is at; a text is converted only when somebody asks for it. */
class ParsedAttributes final : public QvXMLAttributes {
  public:
    using List = xercesc::RefVectorOf<xercesc::XMLAttr>;

    /** Borrows the list until the next Reset. */
    void Reset(const List* list, std::size_t count) noexcept {
        m_list = list;
        m_count = static_cast<int>(count);
    }

    int getLength() const override { return m_count; }
    I18NString getURI(int index) const override;
    I18NString getLocalName(int index) const override;
    I18NString getQName(int index) const override;
    I18NString getType(int index) const override;
    I18NString getValue(int index) const override;
    int getIndex(const I18NString& uri, const I18NString& localName) const override;
    int getIndex(const I18NString& qName) const override;
    I18NString getType(const I18NString& uri, const I18NString& localName) const override;
    I18NString getType(const I18NString& qName) const override;
    I18NString getValue(const I18NString& uri, const I18NString& localName) const override;
    I18NString getValue(const I18NString& qName) const override;

  private:
    const xercesc::XMLAttr* At(int index) const;

    const List* m_list = nullptr;
    int m_count = 0;
    mutable RecentTexts m_texts;
};

/** What follows the first colon of a qualified name, or all of it. */
std::u16string_view LocalPart(std::u16string_view qName) noexcept;

}  // namespace qv
