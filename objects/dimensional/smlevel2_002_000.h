#pragma once

#include "objects/base/smchildren_002_000.h"
#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

class SMQueryItem2;
class SMQueryItemFolder2;

/** A level of a hierarchy: its query items are the attributes of the level's members. */
class SM_API SMLevel2 : public SMNameDescObject2 {
  public:
    /** The kind of level in a calendar; 0: none. Not stored anywhere. */
    enum eCalendarLevelType : int { calendarLevelUnset = 0 };

    SMLevel2(SMObjectBase* owner, SMProject2* project);
    ~SMLevel2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    int GetModelType() override { return 9; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::level; }
    /** The id of the containing hierarchy and the name. */
    I18NString GetSMID(bool escape) const override;
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list);

    bool IsHidden() const { return m_hidden; }
    void SetHidden(bool hidden) { m_hidden = hidden; }
    bool IsUnique() const { return m_isUnique; }
    void SetIsUnique(bool unique) { m_isUnique = unique; }
    bool IsManual() const { return m_isManual; }
    void SetIsManual(bool manual) { m_isManual = manual; }
    const I18NString& GetExternalName() const { return m_externalName; }
    void SetExternalName(const I18NString& name) { m_externalName = name; }
    /** -1: unset. */
    int GetExternalOrdinal() const { return m_externalOrdinal; }
    /** A negative value is ignored: an ordinal once set cannot be cleared. */
    void SetExternalOrdinal(int ordinal);
    eCalendarLevelType GetTMGCalendarLevelType() const { return m_tmgCalendarLevelType; }
    void SetTMGCalendarLevelType(eCalendarLevelType type) { m_tmgCalendarLevelType = type; }

    /** Share the child. */
    void AddQueryItem(SMQueryItem2* item);
    void AddQueryItemFolder(SMQueryItemFolder2* folder);
    const QvSmartVector<SMQueryItem2>& GetLevelItems() const { return m_queryItems.Items(); }
    const QvSmartVector<SMQueryItemFolder2>& GetQueryItemFolders() const { return m_queryItemFolders.Items(); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }
    SMQueryItem2* GetQueryItemByName(const I18NString& name) const;
    /** The first direct item of that warehouse reference; null for an empty one. */
    SMQueryItem2* GetQueryItemByWHOID(const I18NString& whoid) const;
    /** A new item takes a display order number and is recorded. */
    SMQueryItem2* AddOrReturnExistingSMQueryItem(const I18NString& name);
    /** Looks in the folders too. The name is the description and the screen tip as well. */
    SMQueryItem2* AddOrUpdateSMQueryItem(const I18NString& name, const I18NString& expression, SMEnum_usage::Enum usage,
                                         SMEnum_datatype::Enum datatype, int precision, int scale, int size, bool nullable,
                                         SMEnum_aggregationRule::Enum regularAggregate, SMEnum_aggregationRule::Enum semiAggregate);
    /** Leaves the display list alone: what is deleted so is still written. */
    void DeleteQueryItemById(const I18NString& id);
    void SortDisplayOrder() { m_displayOrder.Sort(); }
    int TakeDisplayOrder() { return m_nextDisplayOrder++; }
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

    QvSmartPtr<SMXMLObject2> m_memberSort;

  private:
    SMQueryItem2* FindItem(const I18NString& name) const;

    SMDisplayList m_displayOrder;
    int m_nextDisplayOrder = 0;
    bool m_hidden = false, m_isUnique = false, m_isManual = false;
    I18NString m_externalName;
    int m_externalOrdinal = -1;
    eCalendarLevelType m_tmgCalendarLevelType = calendarLevelUnset;
    SMChildren<SMQueryItem2, SMByName, SMByQvRef> m_queryItems;
    SMChildren<SMQueryItemFolder2> m_queryItemFolders;
};

class SM_API SMLevelBuilder : public SMNameDescObjectBuilder {
  public:
    /** The level is borrowed. */
    explicit SMLevelBuilder(SMLevel2* level) : SMNameDescObjectBuilder(level), m_level(level) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMLevel2* m_level;
};

}  // namespace schema_002_000
