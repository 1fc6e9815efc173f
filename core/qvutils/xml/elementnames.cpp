#include "core/qvutils/xml/elementnames.h"

#include "core/qvutils/xml/utf16.h"

namespace qv {

const ElementName& ElementNames::Enter(const void* address, const char16_t* qName) {
    const auto [found, isNew] = m_names.try_emplace(qName);
    ElementName& name = found->second;
    if (isNew) {
        const std::string utf8 = Utf8Of(qName);
        name.qName.assign(utf8);
        const std::size_t colon = utf8.find(':');
        name.localName = colon == std::string::npos ? name.qName : I18NString(std::string_view(utf8).substr(colon + 1));
    }
    m_slots[SlotOf(address)] = {address, m_document, &name};
    return name;
}

}  // namespace qv
