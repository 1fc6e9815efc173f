#pragma once

#include <map>
#include <set>

#include "objects/base/smchildren_002_000.h"
#include "objects/catalogue/dbtable_002_000.h"
#include "objects/query/smquerysubjecttype2_002_000.h"

namespace schema_002_000 {

class SMDatasource2;
class SMDeterminant2;
class SMQueryItem2;
class SMQueryItemFolder2;

/** The unit that a report author sees as a table: query items, arranged in item folders, determinants, and a definition. */
class SM_API SMQuerySubject2 : public SMQuerySubjectType2 {
  public:
    using ItemCollection = QvULCollection<SMQueryItem2, QvULIdExtract<SMQueryItem2>>;

    SMQuerySubject2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns);
    ~SMQuerySubject2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    int GetModelType() override { return 24; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_next(IOHelper& helper) override;
    /** "qvdbref" and "qvqs_type" set fields of their own, whatever the type. */
    void SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) override;
    using SMQuerySubjectType2::WriteXMLElement;
    /** Items and folders come from the display list: what is not in it does not reach the document. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    const I18NString& GetTagName() const override { return m_tags->querySubject; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::querySubject; }
    void WriteProperties(QvContentHandler* handler, bool writeHidden) const override;
    using SMQuerySubjectType2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    const QvSmartVector<SMQueryItem2>& GetQueryItems() const override;
    void RenameObjects(SMRenameList2& list) override;
    DBColumn* FindTargetColumn(const QvULString& columnId) const override;

    /** Share the child; items and folders go to the end of the display list, determinants have no place in it. */
    void AddQueryItem(SMQueryItem2* item);
    void AddQueryItemFolder(SMQueryItemFolder2* folder);
    void AddDeterminant(SMDeterminant2* determinant);
    void DeleteQueryItemById(const I18NString& id);
    const QvSmartVector<SMQueryItemFolder2>& GetQueryItemFolders() const;
    const QvSmartVector<SMDeterminant2>& GetDeterminants() const;
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }

    /** The first direct item of that warehouse reference; null for an empty one. */
    SMQueryItem2* GetQueryItemByWHOID(const I18NString& whoid) const;
    /** The first direct item of that name. */
    SMQueryItem2* GetQueryItemByName(const I18NString& name) const;
    /** The first direct item of that name, else that of the first folder that has one. */
    SMQueryItem2* GetQueryItemWithName(const I18NString& name) const;
    /** The first direct item whose physical column is of that type, else what the first folder finds: later folders are not searched. */
    SMQueryItem2* GetQueryItemByDBType(EDB_TYPE type) const;

    const QvULString& GetTargetQSIdentifier() const { return targetQSIdentifier; }
    void SetTargetQSIdentifier(const QvULString& identifier) { targetQSIdentifier = identifier; }
    const QvULString& GetPhysicalObjectId() const { return physicalObjectId; }
    /** Share the table and keep its id as a property. Null does nothing: it does not clear. */
    void SetDBTargetTable(DBTable* table);
    void Set2ndDBTargetTable(DBTable* table);
    const QvULString& GetDBTargetTableID() const;
    const QvULString& Get2ndDBTargetTableID() const;
    DBTable* GetDBTargetTable() const { return dbTargetTable.get(); }
    DBTable* Get2ndDBTargetTable() const { return dbTargetTable2.get(); }

    /** Sets the SQL of the definition's query, if there is one. */
    void SetSQL(const I18NString& text);
    /** Refers the definition's database query to a data source; logged when it has none. */
    void AddOrUpdateDataSourceRef(SMDatasource2* dataSource);
    /** Makes an empty definition if there is none; then the query, if there is one, takes the filter. */
    void AddOrUpdateFilterDefinition(SMEnum_apply::Enum apply, const I18NString& displayName, const I18NString& expressionText);
    void RemoveFilterDefinition(const I18NString& displayName);
    /** References are appended at every call; the ones before stay. */
    SMDeterminant2* AddOrUpdateDeterminant(const I18NString& name, const ItemCollection& keys, const ItemCollection& attributes,
                                           bool canGroup, bool identifiesRow);
    /** A new item takes no display order number. Found or new, it is recorded. */
    SMQueryItem2* AddOrReturnExistingQueryItem(const I18NString& name);
    /** `screenTip` is the item's external name too. An empty expression leaves the one that is there. */
    SMQueryItem2* AddOrReturnExistingQueryItem(const I18NString& name, const I18NString& screenTip, const I18NString& expressionText,
                                               SMEnum_usage::Enum usage, SMEnum_datatype::Enum datatype, int precision, int scale, int size,
                                               bool nullable, SMEnum_aggregationRule::Enum regularAggregate,
                                               SMEnum_aggregationRule::Enum semiAggregate, const I18NString& description);
    void AddFromAssociation(const I18NString& association);
    const std::set<I18NString>& GetAssociations() const { return associations; }
    void SortDisplayOrder() { m_displayOrder.Sort(); }
    int TakeDisplayOrder() { return nextDisplayOrder++; }
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

  private:
    void SetTargetTable(QvSmartPtr<DBTable>& field, const QvULString& property, DBTable* table);
    const QvULString& PropertyValue(const QvULString& name) const;

    SMDisplayList m_displayOrder;
    int nextDisplayOrder = 0;
    SMChildren<SMQueryItem2, SMByName, SMByQvRef> queryItems;
    SMChildren<SMQueryItemFolder2> queryItemFolders;
    SMChildren<SMDeterminant2> determinants;
    QvULString physicalObjectId;
    QvULString targetQSIdentifier;
    QvSmartPtr<DBTable> dbTargetTable, dbTargetTable2;
    std::set<I18NString> associations;
};

class SM_API SMQuerySubjectBuilder : public SMQuerySubjectTypeBuilder {
  public:
    /** The subject is borrowed. */
    explicit SMQuerySubjectBuilder(SMQuerySubject2* subject) : SMQuerySubjectTypeBuilder(subject), m_querySubject(subject) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void StartDeterminant(const QvXMLAttributes& attrs);

    SMQuerySubject2* m_querySubject;
};

}  // namespace schema_002_000
