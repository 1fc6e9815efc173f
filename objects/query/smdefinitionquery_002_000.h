#pragma once

#include <list>
#include <map>

#include "objects/query/smdefinition2_002_000.h"

namespace schema_002_000 {

/** A filter of a query: an expression or a reference, and when it applies. Stored inside the definition's remaining info. */
class SM_API SMDefinition2::FilterDefinition : public SMObjectBase {
  public:
    FilterDefinition(SMObjectBase* query, SMProject2* project) : SMObjectBase(query, project) {}
    FilterDefinition(SMObjectBase* query, SMProject2* project, const QvXMLAttributes& attrs);

    bool read(IOHelper&) override { return true; }
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper&) override { return true; }
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::filterDefinition; }
    using SMObjectBase::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    void RenameObjects(SMRenameList2& list);

    SMEnum_apply::Enum apply = SMEnum_apply::Enum(-1);
    I18NString refobj;
    I18NString displayName;
    QvSmartPtr<SMXMLObject2> expression;
};

/** What the two kinds of query share. They have no rows of their own: the definition carries their columns. */
class SM_API SMDefinition2::DefinitionQueryBase : public SMObjectBase {
  public:
    DefinitionQueryBase(SMObjectBase* definition, SMProject2* project) : SMObjectBase(definition, project) {}
    ~DefinitionQueryBase() override;

    bool read(IOHelper&) override { return true; }
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper&) override { return true; }
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::RegenerateIds;
    /** The filters; the SQL is left alone. */
    void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    virtual void RenameObjects(SMRenameList2& list);
    void SetSMProject(SMProject2* project);

    /** Adds or changes the filter of that name; stamps the definition when something changed. */
    void AddOrUpdateFilterDefinition(SMEnum_apply::Enum apply, const I18NString& displayName, const I18NString& expressionText);
    /** Erases the first filter of that name, if there is one, and stamps the definition then. */
    void RemoveFilterDefinition(const I18NString& displayName);
    /** Makes the whole "sql" element anew. The text is not escaped: the caller gives well-formed XML content. Nothing is stamped. */
    void SetSqlFromString(const I18NString& text, SMEnum_sqlType::Enum type);

    SMEnum_generateSQL::Enum generateSQL = SMEnum_generateSQL::Enum(-1);
    /** The whole "sql" element. */
    QvSmartPtr<SMXMLObject2> sql;
    QvSmartVector<FilterDefinition> filterDefinitions;

  protected:
    void WriteQuery(QvContentHandler* handler, QvXMLFormatTarget& target) const;
    void StampDefinition();
};

/** A query against databases. */
class SM_API SMDefinition2::DBQuery : public SMDefinition2::DefinitionQueryBase {
  public:
    DBQuery(SMObjectBase* definition, SMProject2* project) : DefinitionQueryBase(definition, project) {}
    /** `multiDb` becomes true when the attribute is there, whatever its value: as the format has it. */
    DBQuery(SMObjectBase* definition, SMProject2* project, const QvXMLAttributes& attrs);

    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    using DefinitionQueryBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::dbQuery; }
    void RenameObjects(SMRenameList2& list) override;
    /** Appends the id of a data source and stamps the definition, unless it is there already. */
    void AddOrUpdateDataSourceRef(const I18NString& id);

    /** Read from a document, never written to one; has a column. */
    bool multiDb = false;
    std::list<I18NString> dataSourceRefs;
    SMEnum_tableType::Enum tableType = SMEnum_tableType::Enum(-1);
};

/** A query against other subjects of the model. */
class SM_API SMDefinition2::ModelQuery : public SMDefinition2::DefinitionQueryBase {
  public:
    ModelQuery(SMObjectBase* definition, SMProject2* project) : DefinitionQueryBase(definition, project) {}

    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    using DefinitionQueryBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::modelQuery; }
};

/** Reads what both kinds of query share; known tags without a meaning here pass in silence. */
class SM_API SMDefinitionBuilder::ModelQueryBuilder : public SMObjectBuilder {
  public:
    /** The query is borrowed. */
    explicit ModelQueryBuilder(SMDefinition2::DefinitionQueryBase* query) : m_query(query) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_query; }
    virtual const char* ClassWord() const { return "SMDefinitionBuilder::ModelQueryBuilder"; }
    void StartShared(SMEnum_xmltag::Enum tag, const I18NString& localName, const QvXMLAttributes& attrs);
    void EndShared(SMEnum_xmltag::Enum tag, const I18NString& localName);

  private:
    SMDefinition2::DefinitionQueryBase* m_query;
};

class SM_API SMDefinitionBuilder::DBQueryBuilder : public SMDefinitionBuilder::ModelQueryBuilder {
  public:
    explicit DBQueryBuilder(SMDefinition2::DBQuery* query) : ModelQueryBuilder(query), m_dbQuery(query) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const char* ClassWord() const override { return "SMDefinitionBuilder::DBQueryBuilder"; }

  private:
    SMDefinition2::DBQuery* m_dbQuery;
};

class SM_API SMDefinitionBuilder::FilterDefinitionBuilder : public SMObjectBuilder {
  public:
    /** The filter is borrowed. */
    explicit FilterDefinitionBuilder(SMDefinition2::FilterDefinition* filter) : m_filter(filter) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_filter; }

  private:
    void LogIfUnknown(SMEnum_xmltag::Enum tag, const char* method, const I18NString& localName) const;

    SMDefinition2::FilterDefinition* m_filter;
};

}  // namespace schema_002_000
