#include "objects/publication/smfunction2_002_000.h"

#include "objects/base/smprint_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_FUNCTION", "", "", "", ""};
const SMLogWords WORDS = {"smfunction2", "SMFunction2"};
const QvULString COL_CANONICALNAME = SMColumn("CANONICALNAME");
const QvULString COL_DATASOURCEREF = SMColumn("DATASOURCEREF");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");

/** The numbers and the characters. */
bool HasPrecision(SMEnum_datatype::Enum type) {
    return (type >= SMEnum_datatype::int16 && type <= SMEnum_datatype::float64) ||
           (type >= SMEnum_datatype::character && type <= SMEnum_datatype::characterLength32);
}

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMFunction2, TABLE)

// ---- document

void SMFunction2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    StartElement(handler, m_tags->function);
    WriteCommonElements(handler);
    WriteLocaleMap(handler, m_tags->syntaxTip, m_syntaxTip);
    TextElement(handler, m_tags->canonicalName, m_canonicalName);
    TextElement(handler, m_tags->dataSourceRef, m_dataSourceRef);
    if (m_result.isPresent) WriteResult(handler);
    if (!m_procParameters.empty()) WriteProcParameters(handler);
    EndElement(handler, m_tags->function);
}

void SMFunction2::WriteResult(QvContentHandler* handler) const {
    StartElement(handler, m_tags->result);
    WriteDataColumnProperties(handler, m_result);
    EndElement(handler, m_tags->result);
}

void SMFunction2::WriteProcParameters(QvContentHandler* handler) const {
    StartElement(handler, m_tags->procParameters);
    for (const SMProcParameter2& parameter : m_procParameters) {
        StartElement(handler, m_tags->procParameter);
        TextElement(handler, m_tags->parameterName, parameter.parameterName);
        TextElement(handler, m_tags->mode, parameter.mode);
        WriteDataColumnProperties(handler, parameter.properties);
        EndElement(handler, m_tags->procParameter);
    }
    EndElement(handler, m_tags->procParameters);
}

void SMFunction2::WriteDataColumnProperties(QvContentHandler* handler, const SMDataColumnProperties2& properties) const {
    TextElementIfSet(handler, m_tags->datatype, EnumText<SMEnum_datatype>(properties.dataType));
    if (HasPrecision(properties.dataType)) {
        NumberElement(handler, m_tags->precision, properties.precision);
        NumberElement(handler, m_tags->scale, properties.scale);
    }
    NumberElement(handler, m_tags->size, properties.size);
    FlagElement(handler, m_tags->nullable, properties.nullable);
    TextElementIfSet(handler, m_tags->aggregationRule, EnumText<SMEnum_aggregationRule>(properties.aggregationRule));
}

I18NString SMFunction2::WriteProcParametersToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteProcParameters(handler); });
}

I18NString SMFunction2::WriteResultToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteResult(handler); });
}

// ---- repository

void SMFunction2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);  // on purpose past the nearer base: a function has no description columns
    SMRowWriter row(attrs);
    row.Text(COL_CANONICALNAME, m_canonicalName);
    row.Text(COL_DATASOURCEREF, m_dataSourceRef);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMFunction2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        m_canonicalName = TextOf(row, m_tags->canonicalName);
        m_dataSourceRef = TextOf(row, m_tags->dataSourceRef);
    });
}

bool SMFunction2::read(IOHelper& helper) {
    long propertyVersion = m_propertyVersion;
    std::map<QvULString, long*> wanted{
        {m_tags->procParameter, &m_procParametersInfoId}, {m_tags->result, &m_resultInfoId}, {m_tags->property, &propertyVersion}};
    SMFunctionBuilder builder(this);
    const bool success = read_remaining_info_into_builder(helper, this, &builder, wanted);
    m_propertyVersion = static_cast<int>(propertyVersion);
    return success;
}

bool SMFunction2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMFunction2::write_next(IOHelper& helper) {
    if (!m_procParameters.empty() &&
        !write_remaining_info(helper, m_tags->procParameters, WriteProcParametersToString(), m_procParametersInfoId))
        return false;
    return !m_result.isPresent || write_remaining_info(helper, m_tags->result, WriteResultToString(), m_resultInfoId);
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMFunctionBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::function:
    case Tag::procParameters: break;
    case Tag::syntaxTip: CollectLocaleText(attrs); break;
    case Tag::canonicalName:
    case Tag::dataSourceRef:
    case Tag::parameterName:
    case Tag::mode:
    case Tag::datatype:
    case Tag::precision:
    case Tag::scale:
    case Tag::size:
    case Tag::nullable:
    case Tag::aggregationRule: CollectText(); break;
    case Tag::procParameter:
        m_parameter = SMProcParameter2();
        m_properties = SMDataColumnProperties2();
        break;
    case Tag::result: m_properties = SMDataColumnProperties2(); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMFunctionBuilder::AddSyntaxTip() {
    const SMProject2* project = m_function->GetSMProject();
    const bool given = !m_locale.empty() || !project;
    m_function->AddSyntaxTip(given ? QvULString(m_locale) : project->GetDefaultLocale(), m_text);
}

void SMFunctionBuilder::EndParameter() {
    m_parameter.properties = m_properties;
    m_function->AppendProcParameter(m_parameter);
}

void SMFunctionBuilder::EndResult() {
    m_properties.isPresent = true;
    m_function->SetResult(m_properties);
}

void SMFunctionBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::function:
    case Tag::procParameters: break;
    case Tag::syntaxTip: AddSyntaxTip(); break;
    case Tag::canonicalName: m_function->SetCanonicalName(m_text); break;
    case Tag::dataSourceRef: m_function->SetDataSourceRef(m_text); break;
    case Tag::parameterName: m_parameter.parameterName = m_text; break;
    case Tag::mode: m_parameter.mode = m_text; break;
    case Tag::datatype: m_properties.dataType = TextAsEnum<SMEnum_datatype>(); break;
    case Tag::precision: m_properties.precision = TextAsInt(); break;
    case Tag::scale: m_properties.scale = TextAsInt(); break;
    case Tag::size: m_properties.size = TextAsInt(); break;
    case Tag::nullable: m_properties.nullable = TextAsBool(); break;
    case Tag::aggregationRule: m_properties.aggregationRule = TextAsEnum<SMEnum_aggregationRule>(); break;
    case Tag::procParameter: EndParameter(); break;
    case Tag::result: EndResult(); break;
    case Tag::property: EndProperty(*m_function); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
