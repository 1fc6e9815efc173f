#pragma once

#include <list>
#include <vector>

#include "objects/query/smfilterrecords_002_000.h"
#include "objects/query/smqueryitemtype2_002_000.h"

namespace schema_002_000 {

/**
 * A computed column that stands by itself in a namespace. It has an element and a table of its own. The repository keeps its
 * prompt, but no descriptions, roles, filters, lists or custom properties.
 */
class SM_API SMCalculation2 : public SMQueryItemType2 {
  public:
    using SM_PREVIEWFILTER = SMPreviewFilterRecord<QvULString>;
    using SM_SECURITYFILTERDEFINITION = SMSecurityFilterRecord<QvULString>;

    SMCalculation2(SMObjectBase* owner, SMProject2* project) : SMQueryItemType2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    int GetModelType() override { return 30; }
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    bool write_next(IOHelper& helper) override;
    using SMQueryItemType2::WriteXMLElement;
    /**
     * The items of the lists "hierarchies" and "dimensions" go out under the list's own tag and come in as "refobj": as the format
     * has it, these references do not survive a document.
     */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::calculation; }
    I18NString GetSMID(bool escape) const override;
    using SMQueryItemType2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list) override;

    /** -1: none. */
    SMEnum_status::Enum GetStatus() const { return status; }
    void SetStatus(SMEnum_status::Enum newStatus) { status = newStatus; }
    SMEnum_calcType::Enum GetCalcType() const { return calcType; }
    void SetCalcType(SMEnum_calcType::Enum newCalcType) { calcType = newCalcType; }
    /** In the order of their coming; a reference may stand in a list twice. */
    const std::list<I18NString>& GetDataSourceRefs() const { return dataSourceRefs; }
    void AddDataSourceRef(const I18NString& reference) { dataSourceRefs.push_back(reference); }
    const std::list<I18NString>& GetDimensionRefs() const { return dimensionRefs; }
    void AddDimensionRef(const I18NString& reference) { dimensionRefs.push_back(reference); }
    const std::list<I18NString>& GetHierarchyRefs() const { return hierarchyRefs; }
    void AddHierarchyRef(const I18NString& reference) { hierarchyRefs.push_back(reference); }
    const std::vector<SM_PREVIEWFILTER>& GetPreviewFilters() const { return filters.Previews(); }
    std::vector<SM_PREVIEWFILTER>& GetPreviewFilters() { return filters.EditPreviews(); }
    const std::vector<SM_SECURITYFILTERDEFINITION>& GetSecurityFilters() const { return filters.Securities(); }
    std::vector<SM_SECURITYFILTERDEFINITION>& GetSecurityFilters() { return filters.EditSecurities(); }

  private:
    friend class SMCalculationBuilder;

    SMSmallEnum<SMEnum_status> status;
    SMSmallEnum<SMEnum_calcType> calcType;
    std::list<I18NString> dataSourceRefs;
    std::list<I18NString> dimensionRefs;
    std::list<I18NString> hierarchyRefs;
    SMFilterRecords<QvULString> filters;
};

class SM_API SMCalculationBuilder : public SMQueryItemTypeBuilder {
  public:
    /** The calculation is borrowed. */
    explicit SMCalculationBuilder(SMCalculation2* calculation)
        : SMQueryItemTypeBuilder(calculation), m_calculation(calculation), m_filters(calculation->filters) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    enum class List { none, dimensions, hierarchies };
    bool StartFilter(SMEnum_xmltag::Enum tag, const QvXMLAttributes& attrs);
    void AddRefObj();

    SMCalculation2* m_calculation;
    SMFilterReader<QvULString> m_filters;
    /** The list that was opened last; its end does not close it. */
    List m_list = List::none;
};

}  // namespace schema_002_000
