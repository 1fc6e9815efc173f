#include "core/qvutils/content/writtencontent.h"

namespace qv {

void WrittenContent::startElement(const I18NString&, const I18NString&, const I18NString& qName, const QvXMLAttributes& attrs) {
    m_kept.flush();
    m_sink.Start(LocalName(qName.utf8()));
    const int count = attrs.getLength();
    for (int i = 0; i < count; ++i) {
        const I18NString name = attrs.getQName(i), value = attrs.getValue(i);
        m_sink.Attribute(name.utf8(), value.utf8());
    }
}

void WrittenContent::endElement(const I18NString&, const I18NString&, const I18NString&) {
    m_kept.flush();
    m_sink.End();
}

void WrittenContent::characters(const I18NString& text) {
    m_kept.flush();
    if (!text.empty()) m_sink.Text(text.utf8());
}

}  // namespace qv
