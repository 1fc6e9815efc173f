#pragma once

#include "objects/base/smchildren_002_000.h"
#include "objects/query/smquerysubjecttype2_002_000.h"

namespace schema_002_000 {

class SMHierarchy2;
class SMMeasure2;
class SMMeasureFolder2;
class SMQueryItem2;
class SMQueryItemFolder2;

/** A subject with structure: hierarchies of levels, and measures, measure folders, query items and item folders of its own. */
class SM_API SMDimension2 : public SMQuerySubjectType2 {
  public:
    SMDimension2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns);
    ~SMDimension2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_next(IOHelper& helper) override;
    using SMQuerySubjectType2::WriteXMLElement;
    /** Unlike the other subjects it writes its filters and kept fragments. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    const I18NString& GetTagName() const override { return m_tags->dimension; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::dimension; }
    using SMQuerySubjectType2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list) override;

    /** -1: unset. */
    SMEnum_dimensionType::Enum GetType() const { return m_dimensionType; }
    void SetType(SMEnum_dimensionType::Enum type) { m_dimensionType = type; }
    bool GetMembersRollup() const { return m_membersRollup; }
    void SetMembersRollup(bool rollup) { m_membersRollup = rollup; }
    /** A name; never resolved to a hierarchy. */
    const I18NString& GetDefaultHierarchy() const { return m_defaultHierarchy; }
    void SetDefaultHierarchy(const I18NString& name) { m_defaultHierarchy = name; }

    /** Share the child and put it at the end of the display list. */
    void AddHierarchy(SMHierarchy2* hierarchy);
    void AddMeasure(SMMeasure2* measure);
    void AddMeasureFolder(SMMeasureFolder2* folder);
    void AddQueryItem(SMQueryItem2* item);
    void AddQueryItemFolder(SMQueryItemFolder2* folder);
    const QvSmartVector<SMHierarchy2>& GetHierarchies() const { return m_hierarchies.Items(); }
    const QvSmartVector<SMMeasure2>& GetMeasures() const { return m_measures.Items(); }
    const QvSmartVector<SMMeasureFolder2>& GetMeasureFolders() const { return m_measureFolders.Items(); }
    const QvSmartVector<SMQueryItem2>& GetDirectQueryItems() const { return m_queryItems.Items(); }
    const QvSmartVector<SMQueryItemFolder2>& GetQueryItemFolders() const { return m_queryItemFolders.Items(); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }

    SMHierarchy2* AddOrUpdateHierarchy(const I18NString& name, const I18NString& rootMUN, const I18NString& description);
    SMMeasureFolder2* AddOrUpdateMeasureFolder(const I18NString& name, const I18NString& description);
    SMMeasure2* AddOrReturnExistingMeasure(const I18NString& name);
    /** The first direct measure of that warehouse reference; null for an empty one. */
    SMMeasure2* GetMeasureByWHOID(const I18NString& whoid) const;
    /** Leave the display list alone: what is deleted so is still written. */
    void DeleteMeasureById(const I18NString& id);
    void DeleteMeasureFolderById(const I18NString& id);
    void SortDisplayOrder() { m_displayOrder.Sort(); }
    int TakeDisplayOrder() { return m_nextDisplayOrder++; }
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

  private:
    template <class T, class Children>
    void Add(T* child, Children& children);

    SMDisplayList m_displayOrder;
    int m_nextDisplayOrder = 0;
    SMEnum_dimensionType::Enum m_dimensionType = SMEnum_dimensionType::Enum(-1);
    bool m_membersRollup = true;
    SMChildren<SMMeasure2, SMByName, SMByQvRef> m_measures;
    SMChildren<SMMeasureFolder2> m_measureFolders;
    SMChildren<SMQueryItem2> m_queryItems;
    SMChildren<SMQueryItemFolder2> m_queryItemFolders;
    I18NString m_defaultHierarchy;
    SMChildren<SMHierarchy2> m_hierarchies;
};

class SM_API SMDimensionBuilder : public SMQuerySubjectTypeBuilder {
  public:
    /** The dimension is borrowed. */
    explicit SMDimensionBuilder(SMDimension2* dimension) : SMQuerySubjectTypeBuilder(dimension), m_dimension(dimension) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    template <class T, class Builder>
    void StartChild(void (SMDimension2::*add)(T*));

    SMDimension2* m_dimension;
};

}  // namespace schema_002_000
