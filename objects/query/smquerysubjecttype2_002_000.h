#pragma once

#include <map>

#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/query/smfilterrecords_002_000.h"

namespace schema_002_000 {

class DBColumn;
class SMDefinition2;
class SMNamespace2;

/** Base of the three kinds of subject: what a report author sees as a table, with one definition that says where its rows come from. */
class SM_API SMQuerySubjectType2 : public SMNameDescObject2 {
  public:
    using SM_PREVIEWFILTER = SMPreviewFilterRecord<I18NString>;
    using SM_SECURITYFILTERDEFINITION = SMSecurityFilterRecord<I18NString>;

    /** The namespace is borrowed, and only kept: ids come from the containing namespace. */
    SMQuerySubjectType2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns);
    ~SMQuerySubjectType2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    /** [namespace].[name] */
    I18NString GetSMID(bool escape) const override;
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    virtual void RenameObjects(SMRenameList2& list);
    /** The column of that id in the target tables, the first table before the second; borrowed. Null in a subject without tables. */
    virtual DBColumn* FindTargetColumn(const QvULString&) const { return nullptr; }

    /** -1: unset. Plain setters leave the date alone. */
    SMEnum_status::Enum GetStatus() const { return status; }
    void SetStatus(SMEnum_status::Enum value) { status = value; }
    SMEnum_externalizeMethod::Enum GetExternalizeMethod() const { return externalizeMethod; }
    void SetExternalizeMethod(SMEnum_externalizeMethod::Enum method) { externalizeMethod = method; }
    bool GetExternalizeAutoSummary() const { return externalizeAutoSummary; }
    void SetExternalizeAutoSummary(bool externalize) { externalizeAutoSummary = externalize; }
    SMDefinition2* GetDefinition() const { return definition.get(); }
    /** Shares the definition. */
    void SetDefinition(SMDefinition2* newDefinition);
    SMFilterRecords<I18NString>& GetFilters() { return filters; }
    const SMFilterRecords<I18NString>& GetFilters() const { return filters; }
    I18NString WritePreviewFiltersToString() const { return filters.PreviewsToString(); }
    I18NString WriteSecurityFiltersToString() const { return filters.SecuritiesToString(); }
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

    /** Fragments that a document may hold; a dimension writes them back, the other subjects keep them for the repository alone. */
    QvSmartPtr<SMXMLObject2> hierarchiesXml, levelsXml;

  protected:
    /** Texts, date, properties, definition and externalization: what the elements of subjects begin with. */
    void WriteXMLElementChildren(QvContentHandler* handler, QvXMLFormatTarget& target) const;

    bool externalizeAutoSummary = false;
    SMEnum_status::Enum status = SMEnum_status::Enum(-1);
    SMEnum_externalizeMethod::Enum externalizeMethod = SMEnum_externalizeMethod::Enum(-1);
    QvSmartPtr<SMDefinition2> definition;
    SMFilterRecords<I18NString> filters;
    /** Borrowed. */
    SMNamespace2* ownerNamespace;
    /** The kind of query that the row named; the definition is read with it. */
    QvULString objectType;

  private:
    bool ReadDefinition(IOHelper& helper);

    /** Versions of the records of the filters, which are written and never read back: as the format has it. */
    long previewFiltersSeq = 0;
    long securityFiltersSeq = 0;
};

class SM_API SMQuerySubjectTypeBuilder : public SMNameDescObjectBuilder {
  public:
    /** The subject is borrowed. */
    explicit SMQuerySubjectTypeBuilder(SMQuerySubjectType2* subject)
        : SMNameDescObjectBuilder(subject), m_subject(subject), m_filters(subject->GetFilters()) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void StartDefinition(const QvXMLAttributes& attrs);
    bool StartFilter(SMEnum_xmltag::Enum tag, const QvXMLAttributes& attrs);

    SMQuerySubjectType2* m_subject;
    SMFilterReader<I18NString> m_filters;
};

}  // namespace schema_002_000
