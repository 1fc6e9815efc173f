#include "core/qvutils/xml/parsedattributes.h"

#include <bit>
#include <cstring>
#include <string>

#include "core/qvutils/xml/utf16.h"

namespace qv {
namespace {

/** What SAX calls the type. */
const char* TypeName(xercesc::XMLAttDef::AttTypes type) {
    switch (type) {
    case xercesc::XMLAttDef::ID: return "ID";
    case xercesc::XMLAttDef::IDRef: return "IDREF";
    case xercesc::XMLAttDef::IDRefs: return "IDREFS";
    case xercesc::XMLAttDef::Entity: return "ENTITY";
    case xercesc::XMLAttDef::Entities: return "ENTITIES";
    case xercesc::XMLAttDef::NmToken: return "NMTOKEN";
    case xercesc::XMLAttDef::NmTokens: return "NMTOKENS";
    case xercesc::XMLAttDef::Notation: return "NOTATION";
    default: return "CDATA";
    }
}

}  // namespace

I18NString RecentTexts::Get(const char16_t* text) {
    std::size_t length = 0;
    std::size_t hash = 0;
    while (length < LONGEST && text[length] != 0) hash = std::rotl(hash, 5) ^ text[length++];
    hash *= 0x9E37'79B1'85EB'CA87u;
    if (length == 0) return {};
    if (text[length] != 0) return I18NString(std::string_view(Utf8Of(text)));
    Slot& slot = m_slots[(hash >> 32) % SLOTS];
    if (slot.length != length || std::memcmp(slot.utf16.data(), text, length * sizeof(char16_t)) != 0) {
        std::array<char, LONGEST * UTF8_PER_UTF16> utf8;
        const char* end = Utf16ToUtf8(text, length, utf8.data());
        slot.text = I18NString(std::string_view(utf8.data(), static_cast<std::size_t>(end - utf8.data())));
        std::memcpy(slot.utf16.data(), text, length * sizeof(char16_t));
        slot.length = length;
    }
    return slot.text;
}

std::u16string_view LocalPart(std::u16string_view qName) noexcept {
    return qName.substr(qName.find(u':') + 1);
}

const xercesc::XMLAttr* ParsedAttributes::At(int index) const {
    return index < 0 || index >= m_count ? nullptr : m_list->elementAt(static_cast<XMLSize_t>(index));
}

I18NString ParsedAttributes::getURI(int) const {
    return {};
}

I18NString ParsedAttributes::getLocalName(int index) const {
    const xercesc::XMLAttr* attribute = At(index);
    return attribute ? m_texts.Get(LocalPart(attribute->getName()).data()) : I18NString();
}

I18NString ParsedAttributes::getQName(int index) const {
    const xercesc::XMLAttr* attribute = At(index);
    return attribute ? m_texts.Get(attribute->getName()) : I18NString();
}

I18NString ParsedAttributes::getType(int index) const {
    const xercesc::XMLAttr* attribute = At(index);
    return attribute ? I18NString(TypeName(attribute->getType())) : I18NString();
}

I18NString ParsedAttributes::getValue(int index) const {
    const xercesc::XMLAttr* attribute = At(index);
    return attribute ? m_texts.Get(attribute->getValue()) : I18NString();
}

int ParsedAttributes::getIndex(const I18NString& uri, const I18NString& localName) const {
    if (!uri.empty()) return -1;
    for (int i = 0; i < m_count; ++i)
        if (SameText(LocalPart(At(i)->getName()).data(), localName.utf8())) return i;
    return -1;
}

int ParsedAttributes::getIndex(const I18NString& qName) const {
    const std::string_view name = qName.utf8();
    for (int i = 0; i < m_count; ++i)
        if (SameText(At(i)->getName(), name)) return i;
    return -1;
}

I18NString ParsedAttributes::getType(const I18NString& uri, const I18NString& localName) const {
    return getType(getIndex(uri, localName));
}

I18NString ParsedAttributes::getType(const I18NString& qName) const {
    return getType(getIndex(qName));
}

I18NString ParsedAttributes::getValue(const I18NString& uri, const I18NString& localName) const {
    return getValue(getIndex(uri, localName));
}

I18NString ParsedAttributes::getValue(const I18NString& qName) const {
    return getValue(getIndex(qName));
}

}  // namespace qv
