#include "objects/query/smdefinitionquery_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include <algorithm>

#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable NO_TABLE = {"", "", "", "", ""};
const QvULString COL_MULTIDB = SMColumn("MULTIDB");
const QvULString COL_GENERATE_SQL = SMColumn("GENERATE_SQL");
const QvULString COL_SQL = SMColumn("SQL");
const QvULString COL_TABLE_TYPE = SMColumn("TABLE_TYPE");
const char* const MODULE = "smdefinition2";
const char* const METHOD_START = "realStartElement";
const char* const METHOD_END = "realEndlement";  // so spelled in the log

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMDefinition2::FilterDefinition, NO_TABLE)
SM_DEFINE_KEY_COLUMNS(SMDefinition2::DefinitionQueryBase, NO_TABLE)

// ---- filters of a query

SMDefinition2::FilterDefinition::FilterDefinition(SMObjectBase* query, SMProject2* project, const QvXMLAttributes& attrs)
    : FilterDefinition(query, project) {
    if (const int index = attrs.getIndex(m_tags->apply); index >= 0) apply = EnumOf<SMEnum_apply>(attrs.getValue(index));
}

void SMDefinition2::FilterDefinition::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->apply, EnumText<SMEnum_apply>(apply));
    StartElement(handler, m_tags->filterDefinition, attrs);
    TextElementIfSet(handler, m_tags->refobj, refobj);
    TextElementIfSet(handler, m_tags->displayName, displayName);
    WriteKept(expression, target);
    EndElement(handler, m_tags->filterDefinition);
}

void SMDefinition2::FilterDefinition::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (expression) expression->RegenerateIds(idMap);
}

void SMDefinition2::FilterDefinition::RenameObjects(SMRenameList2& list) {
    list.PerformRenames(refobj);
    if (expression) expression->RenameObjects(list);
}

// ---- what both kinds of query share

SMDefinition2::DefinitionQueryBase::~DefinitionQueryBase() {
    SMOrphanAll(filterDefinitions);
}

void SMDefinition2::DefinitionQueryBase::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& filter : filterDefinitions) children.push_back(filter);
}

void SMDefinition2::DefinitionQueryBase::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& filter : filterDefinitions) filter->RegenerateIds(idMap);
}

void SMDefinition2::DefinitionQueryBase::RenameObjects(SMRenameList2& list) {
    for (const auto& filter : filterDefinitions) filter->RenameObjects(list);
}

void SMDefinition2::DefinitionQueryBase::SetSMProject(SMProject2* project) {
    for (const auto& filter : filterDefinitions) filter->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMDefinition2::DefinitionQueryBase::StampDefinition() {
    if (SMObjectBase* definition = GetParentSMObj()) definition->SetLastChangedDateToNow();
}

void SMDefinition2::DefinitionQueryBase::AddOrUpdateFilterDefinition(SMEnum_apply::Enum apply, const I18NString& displayName,
                                                                     const I18NString& expressionText) {
    const auto found = std::find_if(filterDefinitions.begin(), filterDefinitions.end(),
                                    [&](const auto& filter) { return filter->displayName == displayName; });
    bool changed = found == filterDefinitions.end();
    if (changed) filterDefinitions.emplace_back(new FilterDefinition(this, m_project));
    FilterDefinition& filter = changed ? *filterDefinitions.back() : **found;
    filter.displayName = displayName;
    if (filter.apply != apply) {
        filter.apply = apply;
        changed = true;
    }
    if (!filter.expression) {
        filter.expression = new SMXMLObject2(m_tags->expression, expressionText, true);
        changed = true;
    } else if (filter.expression->ChangeInnerXML(expressionText.c_str())) {
        changed = true;
    }
    if (changed) StampDefinition();
}

void SMDefinition2::DefinitionQueryBase::RemoveFilterDefinition(const I18NString& displayName) {
    const auto found = std::find_if(filterDefinitions.begin(), filterDefinitions.end(),
                                    [&](const auto& filter) { return filter->displayName == displayName; });
    if (found == filterDefinitions.end()) return;
    const QvSmartPtr<FilterDefinition> removed = *found;
    filterDefinitions.erase(found);
    SMOrphan(removed);
    StampDefinition();
}

void SMDefinition2::DefinitionQueryBase::SetSqlFromString(const I18NString& text, SMEnum_sqlType::Enum type) {
    if (!sql) sql = new SMXMLObject2(m_tags->sql);
    TklByteBuffer& buffer = sql->buffer;
    buffer.reset();
    buffer << '<' << m_tags->sql.c_str() << " type=\"" << EnumText<SMEnum_sqlType>(type).c_str() << "\">" << text.c_str() << "</"
           << m_tags->sql.c_str() << '>';
}

/** From "generateSQL" to the filters: the part in which both kinds agree. */
void SMDefinition2::DefinitionQueryBase::WriteQuery(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    TextElementIfSet(handler, m_tags->generateSQL, EnumText<SMEnum_generateSQL>(generateSQL));
    WriteKept(sql, target);
    if (filterDefinitions.empty()) return;
    StartElement(handler, m_tags->filters);
    for (const auto& filter : filterDefinitions) filter->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->filters);
}

// ---- the two kinds

SMDefinition2::DBQuery::DBQuery(SMObjectBase* definition, SMProject2* project, const QvXMLAttributes& attrs)
    : DBQuery(definition, project) {
    multiDb = attrs.getIndex(m_tags->multiDb) >= 0;
}

void SMDefinition2::DBQuery::getAttributes(IOParameter& attrs, IOParameter&) {
    SMRowWriter row(attrs);
    row.Flag(COL_MULTIDB, multiDb);
    row.Text(COL_GENERATE_SQL, EnumText<SMEnum_generateSQL>(generateSQL));
    row.WholeXml(COL_SQL, sql);
    row.Text(COL_TABLE_TYPE, EnumText<SMEnum_tableType>(tableType));
}

void SMDefinition2::DBQuery::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->dbQuery);
    WriteList(handler, m_tags->sources, m_tags->dataSourceRef, dataSourceRefs);
    WriteQuery(handler, target);
    TextElementIfSet(handler, m_tags->tableType, EnumText<SMEnum_tableType>(tableType));
    EndElement(handler, m_tags->dbQuery);
}

void SMDefinition2::DBQuery::RenameObjects(SMRenameList2& list) {
    DefinitionQueryBase::RenameObjects(list);
    for (I18NString& reference : dataSourceRefs) list.PerformRenames(reference);
}

void SMDefinition2::DBQuery::AddOrUpdateDataSourceRef(const I18NString& reference) {
    if (std::find(dataSourceRefs.begin(), dataSourceRefs.end(), reference) != dataSourceRefs.end()) return;
    dataSourceRefs.push_back(reference);
    StampDefinition();
}

void SMDefinition2::ModelQuery::getAttributes(IOParameter& attrs, IOParameter&) {
    SMRowWriter row(attrs);
    row.Text(COL_GENERATE_SQL, EnumText<SMEnum_generateSQL>(generateSQL));
    row.WholeXmlIfSet(COL_SQL, sql);
}

void SMDefinition2::ModelQuery::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->modelQuery);
    WriteQuery(handler, target);
    EndElement(handler, m_tags->modelQuery);
}

// ---- builders

void SMDefinitionBuilder::ModelQueryBuilder::StartShared(Tag tag, const I18NString& localName, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::filterDefinition: {
        auto* filter = new SMDefinition2::FilterDefinition(m_query, m_query->GetSMProject(), attrs);
        m_query->filterDefinitions.emplace_back(filter);
        Push(new FilterDefinitionBuilder(filter));
        break;
    }
    case Tag::sql: m_query->sql = KeepXml(m_tags->sql, attrs); break;
    case Tag::generateSQL: CollectText(); break;
    default:
        if (tag == Tag(-1)) LogUnknownStart(MODULE, ClassWord(), METHOD_START, localName);
    }
}

void SMDefinitionBuilder::ModelQueryBuilder::EndShared(Tag tag, const I18NString& localName) {
    if (tag == Tag::generateSQL)
        m_query->generateSQL = TextAsEnum<SMEnum_generateSQL>();
    else if (tag == Tag(-1))
        LogUnknownStart(MODULE, ClassWord(), METHOD_END, localName);
}

void SMDefinitionBuilder::ModelQueryBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                                              const QvXMLAttributes& attrs) {
    StartShared(TagOf(localName), localName, attrs);
}

void SMDefinitionBuilder::ModelQueryBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    EndShared(TagOf(localName), localName);
}

void SMDefinitionBuilder::DBQueryBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                                           const QvXMLAttributes& attrs) {
    const Tag tag = TagOf(localName);
    switch (tag) {
    case Tag::dataSourceRef:
    case Tag::tableType: CollectText(); break;
    default: StartShared(tag, localName, attrs);
    }
}

void SMDefinitionBuilder::DBQueryBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    const Tag tag = TagOf(localName);
    switch (tag) {
    case Tag::dataSourceRef: m_dbQuery->dataSourceRefs.push_back(m_text); break;
    case Tag::tableType: m_dbQuery->tableType = TextAsEnum<SMEnum_tableType>(); break;
    default: EndShared(tag, localName);
    }
}

void SMDefinitionBuilder::FilterDefinitionBuilder::LogIfUnknown(Tag tag, const char* method, const I18NString& localName) const {
    if (tag == Tag(-1)) LogUnknownStart(MODULE, "SMDefinitionBuilder::FilterDefinitionBuilder", method, localName);
}

void SMDefinitionBuilder::FilterDefinitionBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                                                    const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::expression: m_filter->expression = KeepXml(m_tags->expression, attrs); break;
    case Tag::displayName:
    case Tag::refobj:
    case Tag::lastChanged: CollectText(); break;
    default: LogIfUnknown(TagOf(localName), METHOD_START, localName);
    }
}

void SMDefinitionBuilder::FilterDefinitionBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::displayName: m_filter->displayName = m_text; break;
    case Tag::refobj: m_filter->refobj = m_text; break;
    case Tag::lastChanged: m_filter->SetSMLastChangedDate(m_text); break;
    default: LogIfUnknown(TagOf(localName), METHOD_END, localName);
    }
}

}  // namespace schema_002_000
