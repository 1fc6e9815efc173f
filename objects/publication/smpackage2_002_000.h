#pragma once

#include <list>
#include <memory>
#include <unordered_set>

#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

/**
 * The published view of a model: security views by reference, locales, the access of administrators, and how many versions are
 * kept. Can stand in a file of its own.
 */
class SM_API SMPackage2 : public SMNameDescObject2 {
  public:
    SMPackage2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    int GetModelType() override { return 20; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::package; }
    const I18NString& GetFileExtension() override;
    const I18NString& GetPlaceholderTag() const override { return m_tags->packagefile; }
    int WriteWhat() const override;
    void WriteXMLEmptyPlaceholder(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target) const override;

    bool IsRoleBased() const { return m_isRoleBased; }
    void SetRoleBased(bool roleBased) { m_isRoleBased = roleBased; }
    /** Null for a package that was never published. */
    const QvDate* GetLastPublished() const { return m_lastPublished.get(); }
    void SetLastPublished(const QvDate& date);
    int GetMaxVersions() const { return m_maxVersions; }
    void SetMaxVersions(int versions) { m_maxVersions = versions; }
    const std::list<I18NString>& GetLocales() const { return m_locales; }
    /** Takes doubles. */
    void AddLocale(const I18NString& locale) { m_locales.push_back(locale); }
    const std::list<I18NString>& GetViewrefs() const { return m_viewrefs; }
    /** Does nothing when the reference is there. Takes constant time. */
    void AddViewref(const I18NString& reference);
    /** The element "adminAccess"; null when there is none. */
    SMXMLObject2* GetAdminAccess() const { return m_adminAccess; }
    /** Shares the object; null takes it away. */
    void SetAdminAccess(SMXMLObject2* access) { m_adminAccess = access; }

    void AddToSetPIDIDAndMiniObject();
    /** Reads a file of this package, below the project's base directory. A bad file is logged, and gives false. */
    bool ReadFromXMLFile(const I18NString& filepath, const I18NString& filename);
    /** One element a text, empty texts too, in map order and without an element around them. */
    I18NString WriteMapToString(const I18NString& tag, const SMLocaleMap& map) const;

  private:
    bool m_isRoleBased = false;
    std::unique_ptr<QvDate> m_lastPublished;
    int m_maxVersions = 0;
    std::list<I18NString> m_locales;
    std::list<I18NString> m_viewrefs;
    /** The same, for finding. */
    std::unordered_set<I18NString> m_knownViewrefs;
    QvSmartPtr<SMXMLObject2> m_adminAccess;
    /** Versions of the records that keep the texts and the lists. */
    long m_descriptionInfoId = 0, m_screenTipInfoId = 0, m_viewrefsInfoId = 0, m_localesInfoId = 0;
};

/** Also the handler of a package's own file, whose root element gives no attributes to the package. */
class SM_API SMPackageBuilder : public SMNameDescObjectBuilder {
  public:
    /** The package is borrowed. */
    explicit SMPackageBuilder(SMPackage2* package) : SMNameDescObjectBuilder(package), m_package(package) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMPackage2* m_package;
};

}  // namespace schema_002_000
