#include "core/qvutils/content/contentsource.h"

#include <utility>

namespace qv {

void ContentSource::Start(const I18NString& localName, const QvXMLAttributes& attributes) {
    m_sink.Start(localName.utf8());
    m_attributes = &attributes;
    if (!m_parts.empty()) StartInPart(m_parts.back(), localName, attributes);
    const int count = attributes.getLength();
    for (int i = 0; i < count; ++i) {
        const I18NString name = attributes.getQName(i), value = attributes.getValue(i);
        m_sink.Attribute(name.utf8(), value.utf8());
    }
}

void ContentSource::StartInPart(Part& part, const I18NString& localName, const QvXMLAttributes& attributes) {
    constexpr std::size_t IN_ROOT = 2;
    if (++part.depth != IN_ROOT || part.repeated.empty()) return;
    const bool isProperty = localName.utf8() == "property";
    const I18NString name = isProperty ? attributes.getValue(I18NString("name")) : localName;
    part.name = name.utf8();
    part.text.clear();
}

void ContentSource::Text(const I18NString& text) {
    if (!m_parts.empty() && !m_parts.back().name.empty()) m_parts.back().text += text.utf8();
    m_sink.Text(text.utf8());
}

void ContentSource::End() {
    if (!m_parts.empty()) {
        Part& part = m_parts.back();
        if (--part.depth == 1) {
            std::erase_if(part.repeated, [&](const Attribute& one) { return one.name == part.name && one.value == part.text; });
            part.name.clear();
        }
    }
    m_sink.End();
}

void ContentSource::Forget(const I18NString& name) {
    if (!m_attributes || m_attributes->getIndex(name) < 0) return;
    const I18NString value = m_attributes->getValue(name);
    m_sink.Forget(name.utf8(), value.utf8());
}

void ContentSource::StartPart(const std::vector<I18NString>& leading, const std::vector<I18NString>& repeated) {
    for (const I18NString& name : leading) Forget(name);
    Part part;
    for (const I18NString& name : repeated) {
        Forget(name);
        if (m_attributes && m_attributes->getIndex(name) >= 0)
            part.repeated.push_back({std::string(name.utf8()), std::string(m_attributes->getValue(name).utf8())});
    }
    m_parts.push_back(std::move(part));
    m_sink.StartPart();
}

void ContentSource::EndPart(bool isWhole) {
    m_sink.EndPart(isWhole);
    const Part part = std::move(m_parts.back());
    m_parts.pop_back();
    if (!isWhole) return;
    for (const Attribute& one : part.repeated) m_sink.Attribute(one.name, one.value);
}

}  // namespace qv
