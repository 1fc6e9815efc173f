#pragma once

#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

/** The model namespace URI, and the schema location of model documents. */
SM_API const I18NString& GetModelNamespaceUri();
SM_API const I18NString& GetModelSchemaLocation();

/** Reads a model document into a project: the handler to give to a QvSAX2Parser. */
class SM_API SMProjectBuilder : public SMObjectBuilder {
  public:
    /** The project is borrowed. */
    explicit SMProjectBuilder(SMProject2* project) : m_object(project) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_object; }

  private:
    void StartNamespace();
    void StartNamespaceFile(const QvXMLAttributes& attrs);
    void StartDataSource();
    void StartParameterMap(const QvXMLAttributes& attrs);
    void StartSecurityView(const QvXMLAttributes& attrs);
    void StartPackage(const QvXMLAttributes& attrs);
    void StartPackageFile(const QvXMLAttributes& attrs);
    static void StartSection(const QvXMLAttributes& attrs, const SMEnum_xmltag& tags, I18NString& id, int& version);

    SMProject2* m_object;
};

}  // namespace schema_002_000
