#pragma once

#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobject2_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

/** A data source as plain values, for comparing it with one that is to be imported. */
struct SMDatasourceContents {
    I18NString cmDataSource;
    I18NString catalog;
    I18NString cube;
    I18NString schema;
    I18NString connectionString;
    I18NString aliasTableMapRef;
    I18NString name;
    /** The element "type", whole; empty when there is none. */
    I18NString type;
    SMEnum_queryProcessing::Enum queryProcessing = SMEnum_queryProcessing::Enum(-1);
    SMEnum_rollupProcessing::Enum rollupProcessing = SMEnum_rollupProcessing::Enum(-1);
};

/** One database or cube connection of the model. */
class SM_API SMDatasource2 : public SMNamedObject2 {
  public:
    SMDatasource2(SMObjectBase* owner, SMProject2* project) : SMNamedObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNamedObject2::WriteXMLElement;
    /** Marks the data source that the project names as its target, whatever IsTarget says. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::dataSource; }

    SMEnum_queryProcessing::Enum GetQueryProcessing() const { return m_queryProcessing; }
    void SetQueryProcessing(SMEnum_queryProcessing::Enum processing) { m_queryProcessing = processing; }
    SMEnum_rollupProcessing::Enum GetRollupProcessing() const { return m_rollupProcessing; }
    void SetRollupProcessing(SMEnum_rollupProcessing::Enum processing) { m_rollupProcessing = processing; }
    /** The name of the connection in the content store. */
    const I18NString& GetCmDataSource() const { return m_cmDataSource; }
    void SetCmDataSource(const I18NString& name) { m_cmDataSource = name; }
    const I18NString& GetCatalog() const { return m_catalog; }
    void SetCatalog(const I18NString& catalog) { m_catalog = catalog; }
    const I18NString& GetCube() const { return m_cube; }
    void SetCube(const I18NString& cube) { m_cube = cube; }
    const I18NString& GetSchema() const { return m_schema; }
    void SetSchema(const I18NString& schema) { m_schema = schema; }
    const I18NString& GetConnectionString() const { return m_connectionString; }
    void SetConnectionString(const I18NString& text) { m_connectionString = text; }
    const I18NString& GetAliasTableMapRef() const { return m_aliasTableMapRef; }
    void SetAliasTableMapRef(const I18NString& reference) { m_aliasTableMapRef = reference; }
    /** Set by a document in which the data source was the target; not stored. */
    bool IsTarget() const { return m_isTarget; }
    void SetTarget(bool target) { m_isTarget = target; }
    /** The element "type"; null when there is none. */
    SMXMLObject2* GetType() const { return m_type; }
    /** Shares the object; null takes it away. */
    void SetType(SMXMLObject2* type) { m_type = type; }

    bool IsSameAs(const SMDatasourceContents& contents) const;
    void CopyContents(SMDatasourceContents& contents) const;
    void AddToSetPIDIDAndMiniObject();

  private:
    SMEnum_queryProcessing::Enum m_queryProcessing = SMEnum_queryProcessing::Enum(-1);
    SMEnum_rollupProcessing::Enum m_rollupProcessing = SMEnum_rollupProcessing::Enum(-1);
    I18NString m_cmDataSource;
    I18NString m_catalog;
    I18NString m_cube;
    I18NString m_schema;
    I18NString m_connectionString;
    I18NString m_aliasTableMapRef;
    bool m_isTarget = false;
    QvSmartPtr<SMXMLObject2> m_type;
};

class SM_API SMDatasourceBuilder : public SMObjectBuilder {
  public:
    /** The data source is borrowed. */
    explicit SMDatasourceBuilder(SMDatasource2* dataSource) : m_dataSource(dataSource) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_dataSource; }

  private:
    void EndPropertyOrTarget();
    void AddName();

    SMDatasource2* m_dataSource;
    I18NString m_locale;
};

}  // namespace schema_002_000
