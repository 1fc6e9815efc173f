#include "core/qvutils/content/contentsource.h"

namespace qv {

void ContentSource::Start(const I18NString& localName, const QvXMLAttributes& attributes) {
    m_sink.Start(localName.utf8());
    m_attributes = &attributes;
    const int count = attributes.getLength();
    for (int i = 0; i < count; ++i) {
        const I18NString name = attributes.getQName(i), value = attributes.getValue(i);
        m_sink.Attribute(name.utf8(), value.utf8());
    }
}

void ContentSource::StartPart(const std::vector<I18NString>& leading) {
    for (const I18NString& name : leading)
        if (m_attributes && m_attributes->getIndex(name) >= 0) {
            const I18NString value = m_attributes->getValue(name);
            m_sink.Forget(name.utf8(), value.utf8());
        }
    m_sink.StartPart();
}

}  // namespace qv
