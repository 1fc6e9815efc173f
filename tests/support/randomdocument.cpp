#include "tests/support/randomdocument.h"

#include "tests/support/documents.h"

using namespace schema_002_000;

namespace smtest {

namespace {

const std::vector<std::string> LOCALES = {"en", "fr", "de-AT", "zh-hans"};
constexpr int DEEPEST = 3;

}  // namespace

RandomDocument::RandomDocument(unsigned seed, Forms forms) : m_forms(forms), m_xml(seed, forms.unstored) {
    m_xml.looseBrackets = forms.unrenamable;
    m_text = m_xml.Prolog() + Project();
}

// ---- simple content

std::string RandomDocument::Maybe(const std::string& tag, const std::string& text) {
    return m_xml.Chance(2) ? m_xml.TextElement(tag, text) : "";
}

std::string RandomDocument::Status() {
    return m_xml.Chance(2) ? m_xml.Attribute("status", EnumText<SMEnum_status>()) : "";
}

std::string RandomDocument::Date() {
    std::string date = Str(m_xml.GetValues().Date().ToString());
    if (!date.empty() && m_xml.Chance(6)) date += m_xml.Chance(2) ? "Z" : ".125";
    return date;
}

std::string RandomDocument::Reference() {
    const std::string ns = m_namespaces.empty() || m_xml.Chance(4) ? "elsewhere" : m_xml.OneOf(m_namespaces);
    const std::string object = "[" + ns + "].[object " + Number() + "]";
    return m_forms.unrenamable && m_xml.Chance(3) ? object : object + ".[" + m_xml.OddName("item ") + "]";
}

std::string RandomDocument::Kept(const std::string& tag, const std::string& attributes, int depth) {
    static const std::vector<std::string> inner = {"refobj", "column", "set", "not-of-the-model",
                                                   "gr\xC3\xB6\xC3\x9F"
                                                   "e"};
    std::string content;
    for (int parts = m_xml.Below(4); parts > 0; --parts) {
        switch (m_xml.Below(depth < 3 ? 4 : 2)) {
        case 0: content += m_xml.Encoded(m_xml.Odd()); break;
        case 1: content += m_xml.Encoded(Reference()); break;
        default: content += Kept(m_xml.OneOf(inner), m_xml.Chance(2) ? m_xml.Attribute("a", m_xml.Odd()) : "", depth + 1);
        }
    }
    return m_xml.Element(tag, content, attributes);
}

std::string RandomDocument::Expression() {
    return Kept("expression", m_forms.unstored && m_xml.Chance(4) ? m_xml.Attribute("kind", m_xml.Odd()) : "");
}

std::string RandomDocument::LocaleTexts(const std::string& tag, const std::string& inDefault) {
    Parts texts = {m_xml.TextElement(tag, inDefault, m_xml.Attribute("locale", LOCALES[0]))};
    for (std::size_t other = 1; other < LOCALES.size(); ++other)
        if (m_xml.Chance(3)) texts.push_back(m_xml.TextElement(tag, m_xml.Odd(), m_xml.Attribute("locale", LOCALES[other])));
    return m_xml.Shuffled(texts);
}

std::string RandomDocument::Property(const std::string& name, const std::string& type, const std::string& text) {
    const std::string nameAttribute = m_xml.Attribute("name", name);
    const std::string typeAttribute = type.empty() ? "" : m_xml.Attribute("type", type);
    return m_xml.TextElement("property", text, m_xml.Chance(2) ? nameAttribute + typeAttribute : typeAttribute + nameAttribute);
}

std::string RandomDocument::Id() {
    return m_xml.Chance(6) ? "" : m_xml.GetValues().Id();
}

void RandomDocument::AddBase(Parts& parts) {
    parts.push_back(Maybe("lastChanged", Date()));
    parts.push_back(Property("id", "hidden", Id()));
    if (m_xml.Chance(2)) parts.push_back(Property("version", "hidden", Number()));
    for (int custom = m_xml.Below(3); custom > 0; --custom)
        parts.push_back(Property("custom " + std::to_string(custom) + m_xml.Odd(), m_xml.Odd(), m_xml.Odd()));
}

void RandomDocument::AddNames(Parts& parts, const std::string& what) {
    parts.push_back(LocaleTexts("name", m_xml.OddName(what + " " + std::to_string(++m_names) + " ")));
    if (m_xml.Chance(3)) parts.push_back(Property("qvref", "hidden", m_xml.GetValues().Id()));
    AddBase(parts);
}

void RandomDocument::AddTexts(Parts& parts, const std::string& what) {
    AddNames(parts, what);
    if (m_xml.Chance(2)) parts.push_back(LocaleTexts("description", m_xml.Odd()));
    if (m_xml.Chance(2)) parts.push_back(LocaleTexts("screenTip", m_xml.Odd()));
}

std::string RandomDocument::Object(const std::string& kind, const std::string& content, const std::string& attributes) {
    ++m_kinds[kind];
    return m_xml.Element(kind, content, attributes);
}

void RandomDocument::AddSome(Parts& parts, Maker make) {
    for (int count = m_xml.Below(3); count > 0 && HasRoom(); --count) {
        ++m_objects;
        parts.push_back((this->*make)());
    }
}

// ---- the project and its containers

std::string RandomDocument::Project() {
    ++m_kinds["project"];
    Parts locales, dataSources, maps, views, packages;
    for (const std::string& locale : LOCALES) locales.push_back(m_xml.TextElement("locale", locale));
    // names need the default locale before them, which is how documents have it
    const std::string head = m_xml.Joined(
        {m_xml.TextElement("name", m_xml.Odd()), m_xml.Element("locales", m_xml.Joined(locales)), m_xml.Element("defaultLocale", "en")});
    const std::string root = m_xml.Chance(20) ? "" : Namespace(0);
    m_objects = 0;  // the sections have room of their own
    AddSome(dataSources, &RandomDocument::DataSource);
    AddSome(maps, &RandomDocument::ParameterMap);
    AddSome(views, &RandomDocument::SecurityView);
    AddSome(packages, &RandomDocument::Package);
    const std::string content =
        head + root +
        m_xml.Shuffled({m_xml.Element("dataSources", m_xml.Joined(dataSources),
                                      m_forms.unstored ? m_xml.Attribute("version", Number()) + m_xml.Attribute("id", Id()) : ""),
                        m_xml.Element("parameterMaps", m_xml.Joined(maps)), m_xml.Element("securityViews", m_xml.Joined(views)),
                        m_xml.Element("packages", m_xml.Joined(packages))});
    return m_xml.Element("project", content,
                         m_xml.Attribute("id", "project") + m_xml.Attribute("xmlns", Str(GetModelNamespaceUri())) +
                             m_xml.Attribute("xmlns:m", Str(GetModelNamespaceUri())));
}

std::string RandomDocument::Namespace(int depth) {
    const std::string name = m_xml.OddName("namespace " + std::to_string(++m_names) + " ");
    m_namespaces.push_back(name);
    Parts parts = {m_xml.TextElement("name", name, m_xml.Attribute("locale", LOCALES[0])),
                   m_xml.Chance(2) ? LocaleTexts("description", m_xml.Odd()) : ""};
    AddBase(parts);
    AddContents(parts, depth + 1);
    return Object("namespace", m_xml.Shuffled(parts));
}

std::string RandomDocument::Folder(int depth) {
    Parts parts;
    AddTexts(parts, "folder");
    AddContents(parts, depth + 1);
    return Object("folder", m_xml.Shuffled(parts));
}

void RandomDocument::AddContents(Parts& parts, int depth) {
    for (int count = depth < DEEPEST ? m_xml.Below(3) : 0; count > 0 && HasRoom(); --count)
        parts.push_back(m_xml.Chance(2) ? Namespace(depth) : Folder(depth));
    static constexpr Maker MAKERS[] = {&RandomDocument::QuerySubject,      &RandomDocument::UpdateSubject,
                                       &RandomDocument::Calculation,       &RandomDocument::Filter,
                                       &RandomDocument::Dimension,         &RandomDocument::Function,
                                       &RandomDocument::Shortcut,          &RandomDocument::Relationship,
                                       &RandomDocument::ScopeRelationship, &RandomDocument::RelationshipShortcut};
    constexpr int KINDS = static_cast<int>(std::size(MAKERS));
    // from any kind on, for those that come first use up the room
    for (int first = m_xml.Below(KINDS), kind = first; kind < first + KINDS; ++kind) AddSome(parts, MAKERS[kind % KINDS]);
}

// ---- the query layer

std::string RandomDocument::QuerySubject() {
    Parts parts, determinants;
    AddSubjectParts(parts);
    AddSome(determinants, &RandomDocument::Determinant);
    if (!determinants.empty()) parts.push_back(m_xml.Element("determinants", m_xml.Joined(determinants)));
    if (m_xml.Chance(3)) parts.push_back(Property("qvdbref", "hidden", m_xml.GetValues().Id()));
    if (m_xml.Chance(3)) parts.push_back(Property("qvqs_type", "hidden", m_xml.Odd()));
    AddItems(parts);
    return Object("querySubject", m_xml.Shuffled(parts), Status());
}

std::string RandomDocument::UpdateSubject() {
    Parts parts;
    AddSubjectParts(parts);
    return Object("updateSubject", m_xml.Shuffled(parts), Status());
}

void RandomDocument::AddSubjectParts(Parts& parts) {
    AddTexts(parts, "subject");
    parts.push_back(Definition());
    parts.push_back(MaybeEnum<SMEnum_externalizeMethod>("externalizeMethod"));
    parts.push_back(MaybeFlag("externalizeAutoSummary"));
    if (m_xml.Chance(6)) parts.push_back(Kept("hierarchies"));
    if (m_xml.Chance(6)) parts.push_back(Kept("levels"));
    if (m_xml.Chance(4)) parts.push_back(PreviewFilters());
    if (m_xml.Chance(4)) parts.push_back(SecurityFilters());
}

std::string RandomDocument::Definition() {
    std::string query;
    switch (m_xml.Below(5)) {
    case 0: query = Query("dbQuery"); break;
    case 1: query = Query("modelQuery"); break;
    case 2: query = Kept("mdQuery"); break;
    case 3: query = Kept("storedProcedure"); break;
    default: query = Kept("queryOperation");
    }
    return Object("definition", query, m_xml.Chance(4) ? "" : m_xml.Attribute("id", Id()));
}

std::string RandomDocument::Query(const char* tag) {
    Parts parts, filters;
    for (int count = m_xml.Below(3); count > 0; --count) filters.push_back(FilterDefinition());
    if (!filters.empty()) parts.push_back(m_xml.Element("filters", m_xml.Joined(filters)));
    parts.push_back(MaybeEnum<SMEnum_generateSQL>("generateSQL"));
    if (m_xml.Chance(2)) parts.push_back(Kept("sql", m_xml.Attribute("type", EnumText<SMEnum_sqlType>())));
    if (tag == std::string("dbQuery")) {
        Parts sources;
        for (int count = m_xml.Below(3); count > 0; --count) sources.push_back(m_xml.TextElement("dataSourceRef", Reference()));
        parts.push_back(m_xml.Element("sources", m_xml.Joined(sources)));
        parts.push_back(MaybeEnum<SMEnum_tableType>("tableType"));
    }
    return Object(tag, m_xml.Shuffled(parts));
}

std::string RandomDocument::FilterDefinition() {
    return Object("filterDefinition",
                  m_xml.Shuffled({MaybeReference("refobj"), MaybeText("displayName"), m_xml.Chance(2) ? Expression() : ""}),
                  m_xml.Chance(2) ? m_xml.Attribute("apply", EnumText<SMEnum_apply>()) : "");
}

std::string RandomDocument::PreviewFilters() {
    Parts filters;
    for (int count = m_xml.Below(3); count > 0; --count)
        filters.push_back(m_xml.Element(
            "previewFilter", m_xml.Shuffled({MaybeReference("refobj"), MaybeText("displayName"), m_xml.Chance(2) ? Expression() : ""})));
    return m_xml.Element("previewFilters", m_xml.Joined(filters));
}

std::string RandomDocument::SecurityFilters() {
    Parts filters;
    for (int count = m_xml.Below(3); count > 0; --count) {
        const std::string object = m_xml.Element("securityObject", m_xml.Shuffled({MaybeText("displayPath"), MaybeText("cmSearchPath")}),
                                                 m_xml.Attribute("type", EnumText<SMEnum_securityObjectType>()));
        const std::string basedOn = m_xml.Element("basedOn", MaybeText("cmSearchPath"));
        // what is behind the object is read as the filter's
        filters.push_back(m_xml.Element(
            "securityFilterDefinition",
            object + m_xml.Shuffled({basedOn, MaybeReference("refobj"), MaybeText("displayName"), m_xml.Chance(2) ? Expression() : ""})));
    }
    return m_xml.Element("securityFilters", m_xml.Joined(filters));
}

std::string RandomDocument::Determinant() {
    const auto references = [&](const char* tag) {
        Parts list;
        for (int count = m_xml.Below(3); count > 0; --count) list.push_back(m_xml.TextElement("refobj", Reference()));
        return m_xml.Element(tag, m_xml.Joined(list));
    };
    return Object(
        "determinant",
        m_xml.Shuffled({MaybeText("name"), references("key"), references("attributes"), MaybeFlag("canGroup"), MaybeFlag("identifiesRow")}),
        m_xml.Attribute("id", Id()) + (m_xml.Chance(2) ? m_xml.Attribute("version", Number()) : ""));
}

void RandomDocument::AddItems(Parts& parts) {
    AddSome(parts, &RandomDocument::QueryItem);
    if (m_xml.Chance(2)) AddSome(parts, &RandomDocument::QueryItemFolder);
}

std::string RandomDocument::QueryItem() {
    Parts parts;
    AddItemParts(parts);
    return Object("queryItem", m_xml.Shuffled(parts));
}

std::string RandomDocument::QueryItemFolder() {
    Parts parts;
    AddTexts(parts, "item folder");
    parts.push_back(MaybeFlag("hidden"));
    AddItems(parts);
    return Object("queryItemFolder", m_xml.Shuffled(parts));
}

void RandomDocument::AddItemParts(Parts& parts) {
    AddTexts(parts, "item");
    for (const char* tag : {"externalName", "format", "currency", "mimeType", "collationSequenceName", "originalCollationSequenceName",
                            "originalEncodingName"})
        parts.push_back(MaybeText(tag));
    for (const char* tag : {"hidden", "nullable", "unSortable"}) parts.push_back(MaybeFlag(tag));
    for (const char* tag : {"precision", "scale", "size", "collationSequenceLevel"}) parts.push_back(MaybeNumber(tag));
    for (const char* tag : {"aggregationRule", "regularAggregate", "semiAggregate"})
        parts.push_back(MaybeEnum<SMEnum_aggregationRule>(tag));
    parts.push_back(MaybeReference("sortOnRef"));
    parts.push_back(MaybeEnum<SMEnum_usage>("usage"));
    parts.push_back(MaybeEnum<SMEnum_datatype>("datatype"));
    parts.push_back(MaybeEnum<SMEnum_displayType>("displayType"));
    parts.push_back(MaybeEnum<SMEnum_sort>("sort"));
    if (m_xml.Chance(3)) parts.push_back(Property("qvdbref", "hidden", m_xml.GetValues().Id()));
    if (m_xml.Chance(3)) parts.push_back(Property("physicalName", "hidden", m_xml.Odd()));
    if (m_xml.Chance(2)) parts.push_back(Expression());
    if (m_xml.Chance(3)) parts.push_back(PromptInfo());
    if (m_xml.Chance(3)) parts.push_back(Roles());
}

std::string RandomDocument::PromptInfo() {
    return Object("promptInfo",
                  m_xml.Shuffled({m_xml.TextElement("promptType", EnumText<SMEnum_promptType>()), MaybeReference("promptDisplayItemRef"),
                                  MaybeReference("promptFilterItemRef"), MaybeReference("promptUseItemRef")}));
}

std::string RandomDocument::Roles() {
    Parts roles;
    for (int count = m_xml.Below(3); count > 0; --count) roles.push_back(Object("role", LocaleTexts("name", m_xml.OddName("role "))));
    return m_xml.Element("roles", m_xml.Joined(roles), m_xml.Chance(2) ? m_xml.Attribute("id", m_xml.Odd()) : "");
}

std::string RandomDocument::Calculation() {
    Parts parts, sources;
    AddItemParts(parts);
    parts.push_back(MaybeEnum<SMEnum_calcType>("calcType"));
    if (m_xml.Chance(4)) parts.push_back(PreviewFilters());
    if (m_xml.Chance(4)) parts.push_back(SecurityFilters());
    for (int count = m_xml.Below(3); count > 0; --count) sources.push_back(m_xml.TextElement("dataSourceRef", Reference()));
    parts.push_back(m_xml.Element("dataSources", m_xml.Joined(sources)));
    return Object("calculation", m_xml.Shuffled(parts), Status());
}

std::string RandomDocument::Filter() {
    Parts parts;
    AddTexts(parts, "filter");
    if (m_xml.Chance(2)) parts.push_back(Expression());
    return Object("filter", m_xml.Shuffled(parts), Status());
}

}  // namespace smtest
