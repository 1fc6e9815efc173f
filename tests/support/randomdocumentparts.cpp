// Dimensions, links, and what stands in the sections of a project.
#include "tests/support/randomdocument.h"

using namespace schema_002_000;

namespace smtest {

// ---- dimensions

std::string RandomDocument::Dimension() {
    Parts parts;
    AddSubjectParts(parts);
    parts.push_back(MaybeEnum<SMEnum_dimensionType>("type"));
    parts.push_back(MaybeFlag("membersRollup"));
    parts.push_back(MaybeText("defaultHierarchy"));
    AddItems(parts);
    AddSome(parts, &RandomDocument::Hierarchy);
    AddSome(parts, &RandomDocument::Measure);
    AddSome(parts, &RandomDocument::MeasureFolder);
    return Object("dimension", m_xml.Shuffled(parts), Status());
}

std::string RandomDocument::Hierarchy() {
    Parts parts;
    AddTexts(parts, "hierarchy");
    for (const char* tag : {"multiRoot", "balanced", "ragged", "parentChild", "isWideFan"}) parts.push_back(MaybeFlag(tag));
    for (const char* tag : {"externalName", "rootMember", "rootMUN"}) parts.push_back(MaybeText(tag));
    for (const char* tag : {"cardinality", "externalNumberOfLevels"}) parts.push_back(MaybeNumber(tag));
    parts.push_back(MaybeEnum<SMEnum_sortedHierarchy>("sortedHierarchy"));
    if (m_xml.Chance(2)) parts.push_back(LocaleTexts("rootCaption", m_xml.Odd()));
    AddSome(parts, &RandomDocument::Level);
    if (m_forms.unstored && m_xml.Chance(2)) parts.push_back(QueryItem());
    if (m_forms.unstored && m_xml.Chance(2)) parts.push_back(QueryItemFolder());
    return Object("hierarchy", m_xml.Shuffled(parts));
}

std::string RandomDocument::Level() {
    Parts parts;
    AddTexts(parts, "level");
    for (const char* tag : {"hidden", "isUnique", "isManual"}) parts.push_back(MaybeFlag(tag));
    parts.push_back(MaybeText("externalName"));
    parts.push_back(MaybeNumber("externalOrdinal"));
    if (m_xml.Chance(3)) parts.push_back(Kept("memberSort"));
    AddItems(parts);
    return Object("level", m_xml.Shuffled(parts));
}

std::string RandomDocument::Measure() {
    Parts parts;
    AddItemParts(parts);
    parts.push_back(MaybeFlag("isHierarchical"));
    if (m_xml.Chance(3)) parts.push_back(Kept("aggregateRules"));
    if (m_xml.Chance(3)) AddSome(parts, &RandomDocument::Measure);
    return Object("measure", m_xml.Shuffled(parts));
}

std::string RandomDocument::MeasureFolder() {
    Parts parts;
    AddTexts(parts, "measure folder");
    parts.push_back(MaybeFlag("hidden"));
    AddSome(parts, &RandomDocument::Measure);
    if (m_xml.Chance(2)) AddSome(parts, &RandomDocument::MeasureFolder);
    return Object("measureFolder", m_xml.Shuffled(parts));
}

// ---- links

void RandomDocument::AddEnds(Parts& parts, bool withCardinalities) {
    for (const char* tag : {"left", "right"}) {
        Parts end = {MaybeReference("refobj")};
        if (withCardinalities)
            for (const char* cardinality : {"mincard", "maxcard"}) end.push_back(MaybeEnum<SMEnum_cardinality>(cardinality));
        parts.push_back(m_xml.Element(tag, m_xml.Shuffled(end)));
    }
}

std::string RandomDocument::Relationship() {
    Parts parts = {m_xml.TextElement("name", m_xml.OddName("relationship " + std::to_string(++m_names)))};
    AddBase(parts);
    AddEnds(parts, true);
    if (m_xml.Chance(2)) parts.push_back(Expression());
    if (m_xml.Chance(2)) parts.push_back(Kept("sql", m_xml.Attribute("type", EnumText<SMEnum_sqlType>())));
    return Object("relationship", m_xml.Shuffled(parts));
}

std::string RandomDocument::ScopeRelationship() {
    Parts parts = {m_xml.TextElement("name", m_xml.OddName("scope relationship " + std::to_string(++m_names)))};
    AddBase(parts);
    AddEnds(parts, true);
    for (int count = m_xml.Below(3); count > 0; --count) parts.push_back(Scope());
    return Object("scopeRelationship", m_xml.Shuffled(parts));
}

std::string RandomDocument::Scope() {
    Parts parts = {MaybeReference("levelRef")};
    for (int count = m_xml.Below(3); count > 0; --count)
        parts.push_back(
            Object("measureScope",
                   m_xml.Shuffled({MaybeReference("refobj"), MaybeEnum<SMEnum_aggregationRule>("rollup"), MaybeText("allocation")}),
                   m_xml.Attribute("excluded", Flag())));
    return Object("scope", m_xml.Shuffled(parts));
}

std::string RandomDocument::RelationshipShortcut() {
    Parts parts;
    AddNames(parts, "relationship shortcut");
    AddEnds(parts, false);
    parts.push_back(MaybeReference("relationshipRef"));
    return Object("relationshipShortcut", m_xml.Shuffled(parts));
}

std::string RandomDocument::Shortcut() {
    static const std::vector<std::string> TYPES = {"querySubject", "dimension", "namespace", "folder", "calculation", "filter"};
    Parts parts;
    AddTexts(parts, "shortcut");
    parts.push_back(MaybeReference("refobj"));
    parts.push_back(Maybe("targetType", m_xml.OneOf(TYPES)));
    return Object("shortcut", m_xml.Shuffled(parts));
}

// ---- what stands in the sections

std::string RandomDocument::DataSource() {
    Parts parts;
    AddNames(parts, "source");
    for (const char* tag : {"cmDataSource", "catalog", "cube", "schema", "connectionString"}) parts.push_back(MaybeText(tag));
    parts.push_back(Maybe("aliasTableMapRef", "[].[parameterMaps].[" + m_xml.OddName("map ") + "]"));
    parts.push_back(MaybeEnum<SMEnum_queryProcessing>("queryProcessing"));
    parts.push_back(MaybeEnum<SMEnum_rollupProcessing>("rollupProcessing"));
    if (m_xml.Chance(2)) parts.push_back(Kept("type"));
    return Object("dataSource", m_xml.Shuffled(parts));
}

std::string RandomDocument::ParameterMap() {
    Parts parts = {m_xml.TextElement("name", m_xml.OddName("map " + std::to_string(++m_names) + " ")), Property("id", "hidden", Id()),
                   MaybeText("defaultValue")};
    AddSome(parts, &RandomDocument::ParameterMapEntry);
    if (m_xml.Chance(2))
        parts.push_back(m_xml.Element("queryItemMap", m_xml.Shuffled({MaybeReference("keyRef"), MaybeReference("valueRef")})));
    return Object("parameterMap", m_xml.Shuffled(parts), m_xml.Attribute("hidden", Flag()));
}

std::string RandomDocument::ParameterMapEntry() {
    return Object("parameterMapEntry", m_xml.Shuffled({MaybeText("key"), MaybeText("value")}),
                  m_xml.Attribute("id", Id()) + m_xml.Attribute("version", Number()));
}

std::string RandomDocument::SecurityView() {
    Parts parts = {LocaleTexts("name", m_xml.OddName("view " + std::to_string(++m_names) + " ")), Property("id", "hidden", Id()),
                   m_xml.Chance(2) ? Kept("access") : ""};
    Parts sets, functionSets, overrides;
    for (int count = m_xml.Below(3); count > 0; --count) {
        Parts references;
        for (int reference = m_xml.Below(3); reference > 0; --reference)
            references.push_back(m_xml.TextElement(m_xml.Chance(4) ? "viewref" : "refobj", Reference()));
        sets.push_back(m_xml.Element("set", m_xml.Joined(references), m_xml.Attribute("includeRule", EnumText<SMEnum_includeRule>())));
        functionSets.push_back(m_xml.TextElement("functionSetId", m_xml.Odd()));
        overrides.push_back(m_xml.Element(
            "qosOverride", m_xml.Shuffled({MaybeText("functionId"), MaybeText("qosLevel"), LocaleTexts("description", m_xml.Odd())})));
    }
    parts.push_back(m_xml.Element("definition", m_xml.Joined(sets)));
    parts.push_back(m_xml.Element("functionSets", m_xml.Element("functionSet", m_xml.Joined(functionSets))));
    parts.push_back(m_xml.Element("qosOverrides", m_xml.Joined(overrides)));
    return Object("securityView", m_xml.Shuffled(parts), m_xml.Chance(2) ? m_xml.Attribute("isRoleBased", Flag()) : "");
}

std::string RandomDocument::Package() {
    Parts parts, locales, views;
    AddTexts(parts, "package");
    if (const std::string date = Date(); !date.empty()) parts.push_back(Maybe("lastPublished", date));
    parts.push_back(MaybeNumber("maxVersions"));
    for (int count = m_xml.Below(3); count > 0; --count) {
        locales.push_back(m_xml.TextElement("locale", m_xml.Odd()));
        views.push_back(m_xml.TextElement("viewref", Reference()));
    }
    parts.push_back(m_xml.Element("locales", m_xml.Joined(locales)));
    parts.push_back(m_xml.Element("definition", m_xml.Joined(views)));
    parts.push_back(Kept("adminAccess"));
    return Object("package", m_xml.Shuffled(parts), m_xml.Chance(2) ? m_xml.Attribute("isRoleBased", Flag()) : "");
}

std::string RandomDocument::Function() {
    Parts parts, parameters, result;
    AddTexts(parts, "function");
    if (m_xml.Chance(2)) parts.push_back(LocaleTexts("syntaxTip", m_xml.Odd()));
    parts.push_back(MaybeText("canonicalName"));
    parts.push_back(MaybeReference("dataSourceRef"));
    for (int count = m_xml.Below(3); count > 0; --count) parameters.push_back(ProcParameter());
    if (!parameters.empty()) parts.push_back(m_xml.Element("procParameters", m_xml.Joined(parameters)));
    AddColumnProperties(result);
    if (m_xml.Chance(2)) parts.push_back(m_xml.Element("result", m_xml.Shuffled(result)));
    return Object("function", m_xml.Shuffled(parts));
}

std::string RandomDocument::ProcParameter() {
    Parts parts = {MaybeText("parameterName"), Maybe("mode", m_xml.Chance(2) ? "in" : "out")};
    AddColumnProperties(parts);
    return m_xml.Element("procParameter", m_xml.Shuffled(parts));
}

void RandomDocument::AddColumnProperties(Parts& parts) {
    parts.push_back(MaybeEnum<SMEnum_datatype>("datatype"));
    for (const char* tag : {"precision", "scale", "size"}) parts.push_back(MaybeNumber(tag));
    parts.push_back(MaybeFlag("nullable"));
    parts.push_back(MaybeEnum<SMEnum_aggregationRule>("aggregationRule"));
}

}  // namespace smtest
