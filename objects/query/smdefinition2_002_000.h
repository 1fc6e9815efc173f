#pragma once

#include <map>

#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

/**
 * Says where the rows of a query subject come from: a database query, a model query, or one of three forms that are kept as they
 * stand. Of several forms the first in the order of the fields counts.
 */
class SM_API SMDefinition2 : public SMNameDescObject2 {
  public:
    class DefinitionQueryBase;
    class DBQuery;
    class ModelQuery;
    class FilterDefinition;

    SMDefinition2(SMObjectBase* owner, SMProject2* project);
    ~SMDefinition2() override;

    using SMNameDescObject2::constructFromIOParameter;
    /** Fills the definition; `queryType` is the tag of its query, which the row of the subject holds. */
    void constructFromIOParameter(const IOParameter& row, const I18NString& queryType);
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    /** "definition/" and the object id of the parent. */
    void getPath(I18NString& out) const override;
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    /** The id and the query; names and the like, which the base could hold, are no part of the element. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::definition; }
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;

    /** The database query if there is one, else the model query, else null. */
    DefinitionQueryBase* GetQuery() const;
    DBQuery* GetDBQuery() const;
    ModelQuery* GetModelQuery() const;
    /** Share the query. */
    void SetDBQuery(DBQuery* query);
    void SetModelQuery(ModelQuery* query);
    /** The tag of the form that counts; empty, and logged, when there is none. */
    const I18NString& GetQueryTypeName() const;
    /** Sets the SQL of the query, if there is one: see DefinitionQueryBase::SetSqlFromString. */
    void SetSql(const I18NString& text, SMEnum_sqlType::Enum type);
    /** The filters as elements side by side, without one around them. */
    I18NString WriteFilterDefinitionsToString() const;
    void RenameObjects(SMRenameList2& list);
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

    QvSmartPtr<SMXMLObject2> mdQuery, storedProcedure, queryOperation;

  private:
    /** The first of the kept forms that is set. */
    SMXMLObject2* KeptForm() const;

    QvSmartPtr<DBQuery> dbQuery;
    QvSmartPtr<ModelQuery> modelQuery;
    /** Versions of the records of the sources and of the filters. */
    long sourcesSeq = 0;
    long filterDefinitionSeq = 0;
};

class SM_API SMDefinitionBuilder : public SMNameDescObjectBuilder {
  public:
    class DBQueryBuilder;
    class ModelQueryBuilder;
    class FilterDefinitionBuilder;

    /** The definition is borrowed. */
    explicit SMDefinitionBuilder(SMDefinition2* definition) : SMNameDescObjectBuilder(definition), m_definition(definition) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMDefinition2* m_definition;
};

}  // namespace schema_002_000
