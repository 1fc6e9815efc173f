#include "objects/publication/smdatasource2_002_000.h"

#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_DATASOURCE", "DATASOURCE_ID", "DATASOURCE_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO"};
const SMLogWords WORDS = {"smdatasource2", "SMDatasource2"};
const SMLogWords BUILDER_WORDS = {"smdatasource2", "SMDatasourceBuilder"};
const QvULString COL_QUERYPROCESSING = SMColumn("QUERYPROCESSING");
const QvULString COL_ROLLUPPROCESSING = SMColumn("ROLLUPPROCESSING");
const QvULString COL_CMDATASOURCE = SMColumn("CMDATASOURCE");
const QvULString COL_CATALOG = SMColumn("CATALOG");
const QvULString COL_CUBE = SMColumn("CUBE");
const QvULString COL_SCHEMA = SMColumn("SCHEMA");
const QvULString COL_CONNECTIONSTRING = SMColumn("CONNECTIONSTRING");
const QvULString COL_ALIASTABLEMAPREF = SMColumn("ALIASTABLEMAPREF");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMDatasource2, TABLE)

// ---- memory

bool SMDatasource2::IsSameAs(const SMDatasourceContents& contents) const {
    if (m_cmDataSource != contents.cmDataSource || m_catalog != contents.catalog || m_cube != contents.cube) return false;
    if (m_schema != contents.schema || m_connectionString != contents.connectionString) return false;
    if (m_aliasTableMapRef != contents.aliasTableMapRef) return false;
    if (m_queryProcessing != contents.queryProcessing || m_rollupProcessing != contents.rollupProcessing) return false;
    if (GetName() != contents.name) return false;
    return m_type ? !m_type->IsXMLDifferentFrom(contents.type.c_str()) : contents.type.empty();
}

void SMDatasource2::CopyContents(SMDatasourceContents& contents) const {
    contents.queryProcessing = m_queryProcessing;
    contents.rollupProcessing = m_rollupProcessing;
    contents.cmDataSource = m_cmDataSource;
    contents.catalog = m_catalog;
    contents.cube = m_cube;
    contents.schema = m_schema;
    contents.connectionString = m_connectionString;
    contents.aliasTableMapRef = m_aliasTableMapRef;
    contents.name = GetName();
    contents.type = m_type ? I18NString(m_type->buffer.view()) : EMPTY_QVSTRING;
}

void SMDatasource2::AddToSetPIDIDAndMiniObject() {
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_type);
}

// ---- document

void SMDatasource2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->dataSource);
    WriteLocaleMap(handler, m_tags->name, names);
    WriteSMDate(handler, m_tags->lastChanged, NoAttributes(), GetLastChangedDate());
    WriteProperties(handler, true);
    if (m_project && m_project->m_targetDataSourceName && *m_project->m_targetDataSourceName == GetName()) {
        QvXMLAttributesImpl attrs;
        attrs.push_back(m_tags->name, m_tags->isTarget);
        attrs.push_back(m_tags->type, m_tags->hidden);
        WriteBool(handler, m_tags->property, attrs, true);
    }
    TextElementIfSet(handler, m_tags->queryProcessing, EnumText<SMEnum_queryProcessing>(m_queryProcessing));
    TextElementIfSet(handler, m_tags->rollupProcessing, EnumText<SMEnum_rollupProcessing>(m_rollupProcessing));
    TextElementIfSet(handler, m_tags->catalog, m_catalog);
    TextElementIfSet(handler, m_tags->cube, m_cube);
    WriteKept(m_type, target);
    TextElementIfSet(handler, m_tags->connectionString, m_connectionString);
    TextElementIfSet(handler, m_tags->aliasTableMapRef, m_aliasTableMapRef);
    if (!m_project || m_project->m_writeDataSourceSchema) {
        TextElementIfSet(handler, m_tags->cmDataSource, m_cmDataSource);
        TextElementIfSet(handler, m_tags->schema, m_schema);
    }
    EndElement(handler, m_tags->dataSource);
}

// ---- repository

void SMDatasource2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_QUERYPROCESSING, EnumText<SMEnum_queryProcessing>(m_queryProcessing));
    row.Text(COL_ROLLUPPROCESSING, EnumText<SMEnum_rollupProcessing>(m_rollupProcessing));
    row.Text(COL_CMDATASOURCE, m_cmDataSource);
    row.Text(COL_CATALOG, m_catalog);
    row.Text(COL_CUBE, m_cube);
    row.Text(COL_SCHEMA, m_schema);
    row.Text(COL_CONNECTIONSTRING, m_connectionString);
    row.Text(COL_ALIASTABLEMAPREF, m_aliasTableMapRef);
}

void SMDatasource2::constructFromIOParameter(const IOParameter& row) {
    SMNamedObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        if (const I18NString text = TextOf(row, m_tags->queryProcessing); !text.empty())
            m_queryProcessing = EnumOf<SMEnum_queryProcessing>(text);
        if (const I18NString text = TextOf(row, m_tags->rollupProcessing); !text.empty())
            m_rollupProcessing = EnumOf<SMEnum_rollupProcessing>(text);
        m_cmDataSource = TextOf(row, m_tags->cmDataSource);
        m_catalog = TextOf(row, m_tags->catalog);
        m_cube = TextOf(row, m_tags->cube);
        m_schema = TextOf(row, m_tags->schema);
        m_connectionString = TextOf(row, m_tags->connectionString);
        m_aliasTableMapRef = TextOf(row, m_tags->aliasTableMapRef);
    });
}

bool SMDatasource2::read(IOHelper& helper) {
    return ReadKeptInfo(helper, m_type, m_tags->type);
}

bool SMDatasource2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMDatasource2::write_next(IOHelper& helper) {
    return WriteKeptInfo(helper, m_type);
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMDatasourceBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                           const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::dataSource: break;
    case Tag::name:
        CollectText();
        m_locale = attrs.getValue(m_tags->locale);
        break;
    case Tag::lastChanged:
    case Tag::cmDataSource:
    case Tag::catalog:
    case Tag::aliasTableMapRef:
    case Tag::connectionString:
    case Tag::cube:
    case Tag::queryProcessing:
    case Tag::rollupProcessing:
    case Tag::schema: CollectText(); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::type: m_dataSource->SetType(KeepXml(m_tags->type, attrs)); break;
    default: LogUnknownStart(BUILDER_WORDS.module, BUILDER_WORDS.className, "realStartElement", localName);
    }
}

void SMDatasourceBuilder::AddName() {
    const SMProject2* project = m_dataSource->GetSMProject();
    const bool given = !m_locale.empty() || !project;
    m_dataSource->AddName(given ? QvULString(m_locale) : project->GetDefaultLocale(), m_text);
}

void SMDatasourceBuilder::EndPropertyOrTarget() {
    const bool isNamed = m_property.name == m_tags->isTarget;
    // as the format has it: any property decides, the last one wins; but no other one has to be a truth value
    m_dataSource->SetTarget(isNamed ? TextAsBool() : m_text == SMEnum_bool::bool2string(true));
    if (!isNamed) EndProperty(*m_dataSource);
}

void SMDatasourceBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::dataSource: break;
    case Tag::name: AddName(); break;
    case Tag::lastChanged: m_dataSource->SetSMLastChangedDate(m_text); break;
    case Tag::cmDataSource: m_dataSource->SetCmDataSource(m_text); break;
    case Tag::catalog: m_dataSource->SetCatalog(m_text); break;
    case Tag::aliasTableMapRef: m_dataSource->SetAliasTableMapRef(m_text); break;
    case Tag::connectionString: m_dataSource->SetConnectionString(m_text); break;
    case Tag::cube: m_dataSource->SetCube(m_text); break;
    case Tag::queryProcessing: m_dataSource->SetQueryProcessing(TextAsEnum<SMEnum_queryProcessing>()); break;
    case Tag::rollupProcessing: m_dataSource->SetRollupProcessing(TextAsEnum<SMEnum_rollupProcessing>()); break;
    case Tag::schema: m_dataSource->SetSchema(m_text); break;
    case Tag::property: EndPropertyOrTarget(); break;
    default: LogUnknownStart(BUILDER_WORDS.module, BUILDER_WORDS.className, "realEndElement", localName);
    }
}

}  // namespace schema_002_000
