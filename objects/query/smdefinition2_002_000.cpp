#include "objects/query/smdefinition2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "objects/base/smprint_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_DEFINITION", "DEFINITION_ID", "DEFINITION_VERSION_NO", "QS_ID", "QS_VERSION_NO"};
const SMLogWords WORDS = {"smdefinition2", "SMDefinition2"};

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMDefinition2, TABLE)

SMDefinition2::SMDefinition2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

SMDefinition2::~SMDefinition2() {
    SMOrphan(dbQuery);
    SMOrphan(modelQuery);
}

// ---- memory

SMDefinition2::DefinitionQueryBase* SMDefinition2::GetQuery() const {
    if (dbQuery) return dbQuery;
    return modelQuery;
}

SMDefinition2::DBQuery* SMDefinition2::GetDBQuery() const {
    return dbQuery;
}

SMDefinition2::ModelQuery* SMDefinition2::GetModelQuery() const {
    return modelQuery;
}

void SMDefinition2::SetDBQuery(DBQuery* query) {
    SMReplaceChild(dbQuery, query);
}

void SMDefinition2::SetModelQuery(ModelQuery* query) {
    SMReplaceChild(modelQuery, query);
}

SMXMLObject2* SMDefinition2::KeptForm() const {
    if (mdQuery) return mdQuery;
    if (storedProcedure) return storedProcedure;
    return queryOperation;
}

const I18NString& SMDefinition2::GetQueryTypeName() const {
    if (dbQuery) return m_tags->dbQuery;
    if (modelQuery) return m_tags->modelQuery;
    if (mdQuery) return m_tags->mdQuery;
    if (storedProcedure) return m_tags->storedProcedure;
    if (queryOperation) return m_tags->queryOperation;
    SMLog(SM_MISUSE, WORDS, "GetQueryTypeName", "Definition '" + I18NString(GetName()) + "' has no query.");
    return EMPTY_QVSTRING;
}

void SMDefinition2::SetSql(const I18NString& text, SMEnum_sqlType::Enum type) {
    if (DefinitionQueryBase* query = GetQuery()) query->SetSqlFromString(text, type);
}

void SMDefinition2::getPath(I18NString& out) const {
    out = "definition/";
    if (const SMObjectBase* subject = GetParentSMObj()) out += subject->GetSMID(false);
}

void SMDefinition2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    if (dbQuery) children.push_back(dbQuery);
    if (modelQuery) children.push_back(modelQuery);
}

void SMDefinition2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (DefinitionQueryBase* query = GetQuery()) query->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMDefinition2::RenameObjects(SMRenameList2& list) {
    if (DefinitionQueryBase* query = GetQuery()) query->RenameObjects(list);
}

void SMDefinition2::SetSMProject(SMProject2* project) {
    if (dbQuery) dbQuery->SetSMProject(project);
    if (modelQuery) modelQuery->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMDefinition2::AddToSetPIDIDAndMiniObject() {
    const DefinitionQueryBase* query = GetQuery();
    if (query && !query->filterDefinitions.empty())
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_tags->filterDefinition, static_cast<int>(filterDefinitionSeq),
                                             WriteFilterDefinitionsToString());
    if (dbQuery)
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_tags->sources, static_cast<int>(sourcesSeq),
                                             WriteListToString(m_tags->sources, m_tags->dataSourceRef, dbQuery->dataSourceRefs));
    else
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), KeptForm());
}

// ---- document

void SMDefinition2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    StartElement(handler, m_tags->definition, attrs);
    if (const DefinitionQueryBase* query = GetQuery())
        query->WriteXMLElement(handler, target);
    else if (const SMXMLObject2* kept = KeptForm())
        WriteKept(kept, target);
    else
        SMLog(SM_MISUSE, WORDS, "WriteXMLElement", "Found a definition with no contents.");
    EndElement(handler, m_tags->definition);
}

I18NString SMDefinition2::WriteFilterDefinitionsToString() const {
    const DefinitionQueryBase* query = GetQuery();
    if (!query) return I18NString();
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget& target) {
        for (const auto& filter : query->filterDefinitions) filter->WriteXMLElement(handler, target);
    });
}

// ---- repository

void SMDefinition2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    if (DefinitionQueryBase* query = GetQuery()) query->getAttributes(attrs, historyAttrs);
}

void SMDefinition2::constructFromIOParameter(const IOParameter& row, const I18NString& queryType) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        if (queryType == m_tags->dbQuery) {
            dbQuery = new DBQuery(this, m_project);
            ReadIfPresent(row, m_tags->multiDb, dbQuery->multiDb);
        } else if (queryType == m_tags->modelQuery) {
            modelQuery = new ModelQuery(this, m_project);
        } else {
            SMLog(SM_MISUSE, WORDS, "constructFromIOParameter",
                  "Constructing a definition with query type '" + queryType + "', which we don't know what to do with.");
            return;
        }
        DefinitionQueryBase& query = *GetQuery();
        ReadEnumIfPresent<SMEnum_generateSQL>(row, m_tags->generateSQL, query.generateSQL);
        if (IfPresent(row, m_tags->sql)) query.sql = WholeXmlOf(row, m_tags->sql);
        if (dbQuery) ReadEnumIfPresent<SMEnum_tableType>(row, m_tags->tableType, dbQuery->tableType);
    });
}

bool SMDefinition2::read(IOHelper& helper) {
    if (!ReadKeptInfo(helper, mdQuery, m_tags->mdQuery) || !ReadKeptInfo(helper, storedProcedure, m_tags->storedProcedure) ||
        !ReadKeptInfo(helper, queryOperation, m_tags->queryOperation))
        return false;
    std::map<QvULString, long*> wanted{{m_tags->filterDefinition, &filterDefinitionSeq}, {m_tags->sources, &sourcesSeq}};
    if (dbQuery) {
        SMDefinitionBuilder::DBQueryBuilder builder(dbQuery);
        return read_remaining_info_into_builder(helper, this, &builder, wanted);
    }
    if (!modelQuery) return true;
    SMDefinitionBuilder::ModelQueryBuilder builder(modelQuery);
    return read_remaining_info_into_builder(helper, this, &builder, wanted);
}

bool SMDefinition2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMDefinition2::write_next(IOHelper& helper) {
    const DefinitionQueryBase* query = GetQuery();
    if (!query) {
        if (SMXMLObject2* kept = KeptForm()) return write_remaining_info(helper, kept);
        SMLog(SM_MISUSE, WORDS, "write_next", "Definition '" + I18NString(GetName()) + "', has no query.");
        return true;
    }
    if (!query->filterDefinitions.empty() &&
        !write_remaining_info(helper, m_tags->filterDefinition, WriteFilterDefinitionsToString(), filterDefinitionSeq))
        return false;
    return !dbQuery || write_remaining_info(helper, m_tags->sources,
                                            WriteListToString(m_tags->sources, m_tags->dataSourceRef, dbQuery->dataSourceRefs), sourcesSeq);
}

// ---- builder

void SMDefinitionBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    SMProject2* project = m_definition->GetSMProject();
    switch (tag) {
    case Tag::definition: break;
    case Tag::dbQuery: {
        auto* query = new SMDefinition2::DBQuery(m_definition, project, attrs);
        m_definition->SetDBQuery(query);
        Push(new DBQueryBuilder(query));
        break;
    }
    case Tag::modelQuery: {
        auto* query = new SMDefinition2::ModelQuery(m_definition, project);
        m_definition->SetModelQuery(query);
        Push(new ModelQueryBuilder(query));
        break;
    }
    case Tag::mdQuery: m_definition->mdQuery = KeepXml(m_tags->mdQuery, attrs); break;
    case Tag::storedProcedure: m_definition->storedProcedure = KeepXml(m_tags->storedProcedure, attrs); break;
    case Tag::queryOperation: m_definition->queryOperation = KeepXml(m_tags->queryOperation, attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMDefinitionBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    if (tag != Tag::definition) SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
}

}  // namespace schema_002_000
