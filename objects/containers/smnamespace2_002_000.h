#pragma once

#include "objects/containers/smsectiontypebuilder_002_000.h"

namespace schema_002_000 {

/** The unit of name scope: its name is unique in the project and the first part of the object ids of what lies in it. */
class SM_API SMNamespace2 : public SMSectionType2 {
  public:
    SMNamespace2(SMObjectBase* owner, SMProject2* project) : SMSectionType2(owner, project) {}
    ~SMNamespace2() override;

    int GetModelType() override { return 21; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::namespace_; }
    const I18NString& GetTagName() const override { return m_tags->namespace_; }
    SMNamespace2* GetThisOrContainingNamespace() override { return this; }
    I18NString GetSMID(bool escape) const override;
    bool write_next(IOHelper& helper) override;
    const I18NString& GetFileExtension() override;
    const I18NString& GetPlaceholderTag() const override { return m_tags->smnamespacefile; }
    int WriteWhat() const override;
    void WriteXMLEmptyPlaceholder(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target) const override;

    /**
     * Renames, and enters the new name into the project's map, where the old one stays until the map is rebuilt. Not the operation
     * of the base, which takes the compact text and leaves the map alone.
     */
    void ChangeDefaultName(const I18NString& name);
    void SetNameDontTouchNamespaceMap(const QvULString& name) { SMNamedObject2::ChangeDefaultName(name); }
    std::vector<SMObjectBase*>& GetChildrenInOrder() { return m_displayOrder.Items(); }
    /** For a caller that has moved children in bulk. */
    void CorrectChildrenParentPtrs();
    /** Reads a file of this namespace, below the project's base directory. A bad file is logged, and gives false. */
    bool ReadFromXMLFile(const I18NString& filepath, const I18NString& filename);

  private:
    friend class SMProject2;
    /** How many entries of the project's name map lead here. */
    int m_mapEntries = 0;
};

class SM_API SMNamespaceBuilder : public SMSectionTypeBuilder {
  public:
    /**
     * Shares the namespace, which may stand in no collection yet. `isFileRoot`: for the root element of a namespace's own file;
     * whoever reads the file has the namespace then, and the builder borrows it.
     */
    SMNamespaceBuilder(SMNamespace2* ns, bool isFileRoot);
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void JoinParent();

    SMNamespace2* m_namespace;
    QvSmartPtr<SMNamespace2> m_held;
    bool m_isFileRoot;
    bool m_atFirstElement = true;
};

}  // namespace schema_002_000
