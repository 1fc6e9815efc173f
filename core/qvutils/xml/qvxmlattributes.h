#pragma once

#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"

/** The attributes of a start tag. Getters give an empty text for an index out of range or a name not found; getIndex then gives -1. */
class SM_API QvXMLAttributes {
  public:
    virtual ~QvXMLAttributes() = default;
    virtual int getLength() const = 0;
    virtual I18NString getURI(int index) const = 0;
    virtual I18NString getLocalName(int index) const = 0;
    virtual I18NString getQName(int index) const = 0;
    virtual I18NString getType(int index) const = 0;
    virtual I18NString getValue(int index) const = 0;
    virtual int getIndex(const I18NString& uri, const I18NString& localName) const = 0;
    virtual int getIndex(const I18NString& qName) const = 0;
    virtual I18NString getType(const I18NString& uri, const I18NString& localName) const = 0;
    virtual I18NString getType(const I18NString& qName) const = 0;
    virtual I18NString getValue(const I18NString& uri, const I18NString& localName) const = 0;
    virtual I18NString getValue(const I18NString& qName) const = 0;
};

/** One attribute. Writers fill the qualified name and the value only. `type` is that of SAX, not of the model. */
struct SM_API QvXMLAttribute {
    I18NString uri, localName, qName, type, value;
};

/** A list of attributes in the order in which they are pushed. */
class SM_API QvXMLAttributesImpl : public QvXMLAttributes {
  public:
    void push_back(const QvXMLAttribute& attribute) { m_attributes.push_back(attribute); }
    /** Pushes an attribute that has a qualified name and a value only. */
    void push_back(const I18NString& qName, const I18NString& value) { m_attributes.push_back({{}, {}, qName, {}, value}); }
    void clear() noexcept { m_attributes.clear(); }

    int getLength() const override;
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

    const std::vector<QvXMLAttribute>& attributes() const noexcept { return m_attributes; }

  private:
    std::vector<QvXMLAttribute> m_attributes;
};
