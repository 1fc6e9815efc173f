#pragma once

#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/containers/smsectiontype2_002_000.h"

namespace schema_002_000 {

/** Reads the content of a section: each child is made at its start tag and filled by a builder of its own. */
class SM_API SMSectionTypeBuilder : public SMNameDescObjectBuilder {
  public:
    /** The section is borrowed. */
    explicit SMSectionTypeBuilder(SMSectionType2* section) : SMNameDescObjectBuilder(section), m_section(section) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void StartNamespaceFile(const QvXMLAttributes& attrs);
    /** Gives the child the next display order number and lets its builder take over. */
    template <class Builder, class T>
    void Fill(T* child);
    template <class T>
    T* WithStatus(T* child, const QvXMLAttributes& attrs) const;

    SMSectionType2* m_section;
};

}  // namespace schema_002_000
