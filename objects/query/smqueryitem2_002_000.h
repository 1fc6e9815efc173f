#pragma once

#include "objects/catalogue/edbtype_002_000.h"
#include "objects/query/smqueryitemtype2_002_000.h"

namespace schema_002_000 {

/** One column that a report author can pick. Lives in a query subject, an item folder or a level. */
class SM_API SMQueryItem2 : public SMQueryItemType2 {
  public:
    SMQueryItem2(SMObjectBase* owner, SMProject2* project) : SMQueryItemType2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    /** The parent columns are named after folders, whatever the parent is. */
    SM_DECLARE_KEY_COLUMNS
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    bool write_next(IOHelper& helper) override;
    /** The names "qvdbref" and "physicalName" set the links to the physical column, whatever the type. */
    void SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) override;
    void WriteProperties(QvContentHandler* handler, bool writeHidden) const override;
    using SMQueryItemType2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    const I18NString& GetTagName() const override { return m_tags->queryItem; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::queryItem; }
    const I18NString& GetQueryItemTypeName() const override { return m_tags->queryItem; }
    /** The id of the containing subject or level and the name. Logs, and gives the empty id, for an item inside neither. */
    I18NString GetSMID(bool escape) const override;

    /** The id of the physical column. */
    const QvULString& GetPhysicalObjectId() const { return physicalObjectId; }
    void SetPhysicalObjectId(const QvULString& columnId) { physicalObjectId = columnId; }
    /** The type of the physical column in the target tables of the containing subject; 0 when any link to it is missing. */
    EDB_TYPE GetColDBType() const;
    const QvULString& GetPhysicalName() const { return physicalName; }
    void SetPhysicalName(const QvULString& text) { physicalName = text; }

  private:
    QvULString physicalObjectId;
    QvULString physicalName;
};

class SM_API SMQueryItemBuilder : public SMQueryItemTypeBuilder {
  public:
    /** The item is borrowed. */
    explicit SMQueryItemBuilder(SMQueryItem2* item) : SMQueryItemTypeBuilder(item) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;
};

}  // namespace schema_002_000
