#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/qvutils/text/i18nstring.h"

namespace qv {

/** An element name as the handler gets it. */
struct ElementName {
    I18NString qName, localName;
};

/**
 * The element names of documents, converted once. The scanner describes all elements of one name by one object as long as a document
 * lasts, so its address finds the name; a later document may use the address for another name.
 */
class ElementNames {
  public:
    void StartDocument() noexcept { ++m_document; }
    /** The name stays where it is as long as this lives. */
    const ElementName& Find(const void* address, const char16_t* qName) {
        const Slot& slot = m_slots[SlotOf(address)];
        if (slot.address == address && slot.document == m_document) return *slot.name;
        return Enter(address, qName);
    }
    std::size_t size() const noexcept { return m_names.size(); }

  private:
    struct Slot {
        const void* address = nullptr;
        std::size_t document = 0;
        const ElementName* name = nullptr;
    };
    static constexpr std::size_t SLOTS = 1024;

    static std::size_t SlotOf(const void* address) noexcept {
        return (reinterpret_cast<std::size_t>(address) >> 4) * 0x9E3779B97F4A7C15u >> 54;
    }
    const ElementName& Enter(const void* address, const char16_t* qName);

    std::size_t m_document = 0;
    std::vector<Slot> m_slots = std::vector<Slot>(SLOTS);
    std::unordered_map<std::u16string, ElementName> m_names;
};

}  // namespace qv
