#pragma once

#include "objects/base/smnestedobject2_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

/**
 * Base of the builders of named objects. It turns the element's name into a tag number and calls smtagStartElement and
 * smtagEndElement; each level takes its own tags and hands the rest to the level above. What nobody takes is logged here, in the
 * module and class words that came along.
 */
class SM_API SMNamedObjectBuilder : public SMObjectBuilder {
  public:
    /** The object is borrowed. */
    explicit SMNamedObjectBuilder(SMNamedObject2* object) : m_named(object) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;
    virtual void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                                   const QvXMLAttributes& attrs);
    virtual void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag);

  protected:
    const IOObject* OwnObject() const override { return m_named; }
    /** Starts gathering a text that has a locale. */
    void CollectLocaleText(const QvXMLAttributes& attrs);

    SMNamedObject2* m_named;
    I18NString m_locale;
};

/** Adds descriptions and screen tips. */
class SM_API SMNameDescObjectBuilder : public SMNamedObjectBuilder {
  public:
    explicit SMNameDescObjectBuilder(SMNameDescObject2* object) : SMNamedObjectBuilder(object), m_nameDesc(object) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  protected:
    SMNameDescObject2* m_nameDesc;
};

/** Adds custom properties. The start of an "object" element is logged as unknown, as callers of the log know it; its end is not. */
class SM_API SMNestedObjectBuilder : public SMNameDescObjectBuilder {
  public:
    explicit SMNestedObjectBuilder(SMNestedObject2* object) : SMNameDescObjectBuilder(object) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;
};

}  // namespace schema_002_000
