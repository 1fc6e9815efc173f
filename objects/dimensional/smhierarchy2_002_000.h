#pragma once

#include "objects/base/smchildren_002_000.h"
#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smnestedobject2_002_000.h"

namespace schema_002_000 {

class SMLevel2;
class SMQueryItem2;
class SMQueryItemFolder2;

/** A hierarchy of a dimension: its levels in order, and at most one query item and one item folder of its own. */
class SM_API SMHierarchy2 : public SMNestedObject2 {
  public:
    /** The kind of hierarchy in a calendar; 0: none. Not stored anywhere. */
    enum eCalendarHierType : int { calendarHierUnset = 0 };

    SMHierarchy2(SMObjectBase* owner, SMProject2* project);
    ~SMHierarchy2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    /** The levels. The hierarchy's own item and folder are stored and not read back: as the format has it. */
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    int GetModelType() override { return 31; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    bool write_next(IOHelper& helper) override;
    using SMNestedObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::hierarchy; }
    /** The id of the containing dimension and the name. */
    I18NString GetSMID(bool escape) const override;
    using SMNestedObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list);

    /** Share the child. A second item or folder leaves the first one in the display list alone. */
    void AddLevel(SMLevel2* level);
    void SetQueryItem(SMQueryItem2* item);
    void SetQueryItemFolder(SMQueryItemFolder2* folder);
    const QvSmartVector<SMLevel2>& GetLevels() const { return m_levels.Items(); }
    SMQueryItem2* GetQueryItem() const { return m_queryItem.get(); }
    SMQueryItemFolder2* GetQueryItemFolder() const { return m_queryItemFolder.get(); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }
    SMLevel2* AddOrUpdateLevel(const I18NString& name, bool isManual);
    /** The first level of that warehouse reference; null for an empty one. */
    SMLevel2* GetLevelByQvRefId(const I18NString& reference) const;
    void DeleteLevelByQvRefId(const I18NString& reference);
    SMLevel2* GetLevelByTMGCalendarLevelType(int type) const;

    const I18NString& GetRootMUN() const { return m_rootMUN; }
    void SetRootMUN(const I18NString& rootMUN) { m_rootMUN = rootMUN; }
    /** In the project's default locale. */
    void SetRootCaption(const I18NString& caption);
    void AddRootCaption(const QvULString& locale, const QvULString& caption) { SetLocaleText(m_rootCaption, locale, caption); }
    const SMLocaleMap& GetRootCaptions() const { return m_rootCaption; }
    eCalendarHierType GetTMGCalendarHierType() const { return m_tmgCalendarHierType; }
    void SetTMGCalendarHierType(eCalendarHierType type) { m_tmgCalendarHierType = type; }
    void SortDisplayOrder() { m_displayOrder.Sort(); }
    int TakeDisplayOrder() { return m_nextDisplayOrder++; }
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

    I18NString m_externalName;
    bool m_multiRoot = false;
    bool m_balanced = true;
    bool m_ragged = false;
    bool m_parentChild = false;
    bool m_isWideFan = false;
    I18NString m_rootMember;
    SMEnum_sortedHierarchy::Enum m_sortedHierarchy = SMEnum_sortedHierarchy::Enum(-1);
    /** Numbers, -1 when unset. */
    int m_cardinality = -1;
    int m_externalNumberOfLevels = -1;

  private:
    QvULString DefaultRootCaption() const;

    SMDisplayList m_displayOrder;
    int m_nextDisplayOrder = 0;
    SMChildren<SMLevel2, SMByName, SMByQvRef> m_levels;
    QvSmartPtr<SMQueryItem2> m_queryItem;
    QvSmartPtr<SMQueryItemFolder2> m_queryItemFolder;
    I18NString m_rootMUN;
    SMLocaleMap m_rootCaption;
    eCalendarHierType m_tmgCalendarHierType = calendarHierUnset;
};

class SM_API SMHierarchyBuilder : public SMNestedObjectBuilder {
  public:
    /** The hierarchy is borrowed. */
    explicit SMHierarchyBuilder(SMHierarchy2* hierarchy) : SMNestedObjectBuilder(hierarchy), m_hierarchy(hierarchy) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMHierarchy2* m_hierarchy;
};

}  // namespace schema_002_000
