#pragma once

#include "objects/containers/smsectiontypebuilder_002_000.h"

namespace schema_002_000 {

/** A visual grouping of the objects of a namespace; leaves no trace in their ids and paths. */
class SM_API SMFolder2 : public SMSectionType2 {
  public:
    SMFolder2(SMObjectBase* owner, SMProject2* project) : SMSectionType2(owner, project) {}

    int GetModelType() override { return 22; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::folder; }
    const I18NString& GetTagName() const override { return m_tags->folder; }
    bool IsFolder() const override { return true; }
    /** The children only: custom properties and texts of other locales are not kept by the repository, as it has always been. */
    bool write_next(IOHelper& helper) override;
};

class SM_API SMFolderBuilder : public SMSectionTypeBuilder {
  public:
    explicit SMFolderBuilder(SMFolder2* folder) : SMSectionTypeBuilder(folder), m_folder(folder) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMFolder2* m_folder;
};

}  // namespace schema_002_000
