#include "core/qvutils/xml/qvxmlattributes.h"

#include <algorithm>

namespace {

template <class Matches>
int IndexOf(const std::vector<QvXMLAttribute>& attributes, Matches matches) {
    const auto found = std::find_if(attributes.begin(), attributes.end(), matches);
    return found == attributes.end() ? -1 : static_cast<int>(found - attributes.begin());
}

const QvXMLAttribute& AttributeAt(const std::vector<QvXMLAttribute>& attributes, int index) {
    static const QvXMLAttribute NONE;
    return index < 0 || static_cast<std::size_t>(index) >= attributes.size() ? NONE : attributes[static_cast<std::size_t>(index)];
}

}  // namespace

int QvXMLAttributesImpl::getLength() const {
    return static_cast<int>(m_attributes.size());
}

I18NString QvXMLAttributesImpl::getURI(int index) const {
    return AttributeAt(m_attributes, index).uri;
}

I18NString QvXMLAttributesImpl::getLocalName(int index) const {
    return AttributeAt(m_attributes, index).localName;
}

I18NString QvXMLAttributesImpl::getQName(int index) const {
    return AttributeAt(m_attributes, index).qName;
}

I18NString QvXMLAttributesImpl::getType(int index) const {
    return AttributeAt(m_attributes, index).type;
}

I18NString QvXMLAttributesImpl::getValue(int index) const {
    return AttributeAt(m_attributes, index).value;
}

int QvXMLAttributesImpl::getIndex(const I18NString& uri, const I18NString& localName) const {
    return IndexOf(m_attributes, [&](const QvXMLAttribute& a) { return a.localName == localName && a.uri == uri; });
}

int QvXMLAttributesImpl::getIndex(const I18NString& qName) const {
    return IndexOf(m_attributes, [&](const QvXMLAttribute& a) { return a.qName == qName; });
}

I18NString QvXMLAttributesImpl::getType(const I18NString& uri, const I18NString& localName) const {
    return getType(getIndex(uri, localName));
}

I18NString QvXMLAttributesImpl::getType(const I18NString& qName) const {
    return getType(getIndex(qName));
}

I18NString QvXMLAttributesImpl::getValue(const I18NString& uri, const I18NString& localName) const {
    return getValue(getIndex(uri, localName));
}

I18NString QvXMLAttributesImpl::getValue(const I18NString& qName) const {
    return getValue(getIndex(qName));
}
