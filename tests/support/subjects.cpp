#include "tests/support/subjects.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace smtest {

SMDimension2* DimensionOf(SMProject2& project) {
    SMDimension2* dimension = RootOf(project)->AddOrUpdateDimension("dimension", "");
    dimension->SetId("dimension");
    return dimension;
}

SMHierarchy2* HierarchyOf(SMProject2& project) {
    SMHierarchy2* hierarchy = DimensionOf(project)->AddOrUpdateHierarchy("hierarchy", "", "");
    hierarchy->SetId("hierarchy");
    return hierarchy;
}

QvSmartPtr<SMXMLObject2> KeptXml(const char* tag, const char* inner, Values& values) {
    return values.Flag() ? new SMXMLObject2(tag, inner, true) : nullptr;
}

void FillQuery(SMDefinition2::DefinitionQueryBase& query, Values& values) {
    if (values.Flag()) query.generateSQL = SMEnum_generateSQL::Enum(values.Choice(1, 2));
    if (values.Flag()) query.SetSqlFromString("select &lt;1", SMEnum_sqlType::Enum(values.Choice(2, 8)));
    for (int count = values.Count(2); count > 0; --count) {
        query.filterDefinitions.emplace_back(new SMDefinition2::FilterDefinition(&query, query.GetSMProject()));
        SMDefinition2::FilterDefinition& filter = *query.filterDefinitions.back();
        if (values.Flag()) filter.apply = SMEnum_apply::Enum(values.Choice(count - 1, 2));
        filter.refobj = values.Text("[ns].[filter " + std::to_string(count) + "]").c_str();
        filter.displayName = values.Text("filter " + std::to_string(count)).c_str();
        filter.expression = KeptXml("expression", "[ns].[s].[i] &gt; 0", values);
    }
}

void FillDBQuery(SMDefinition2::DBQuery& query, Values& values) {
    FillQuery(query, values);
    query.multiDb = values.Flag();
    if (values.Flag()) query.tableType = SMEnum_tableType::Enum(values.Choice(2, 4));
    for (int count = values.Count(2); count > 0; --count)
        query.dataSourceRefs.push_back(values.Text("[].[dataSources].[" + std::to_string(count) + "]").c_str());
}

namespace {

void FillFilters(SMFilterRecords<I18NString>& filters, Values& values) {
    for (int count = values.Count(2); count > 0; --count) {
        SMQuerySubjectType2::SM_PREVIEWFILTER preview;
        preview.refobj = values.Text("[ns].[preview]").c_str();
        preview.displayName = values.Text("preview filter " + std::to_string(count)).c_str();
        preview.expression = KeptXml("expression", "[ns].[s].[p] = 1", values);
        filters.EditPreviews().push_back(preview);

        SMQuerySubjectType2::SM_SECURITYFILTERDEFINITION security;
        security.type = SMEnum_securityObjectType::Enum(values.Choice(count, 3));
        security.displayPath = values.Text("display path").c_str();
        security.cmSearchPath = values.Text("search path").c_str();
        security.basedOnCmSearchPath = values.Text("search path of the base").c_str();
        security.refobj = values.Text("[ns].[security]").c_str();
        security.displayName = values.Text("security filter " + std::to_string(count)).c_str();
        security.expression = KeptXml("expression", "[ns].[s].[q] = 2", values);
        filters.EditSecurities().push_back(security);
    }
}

}  // namespace

void FillSubject(SMQuerySubjectType2& subject, Values& values) {
    FillTexts(subject, values);
    if (values.Flag()) subject.SetStatus(SMEnum_status::Enum(values.Choice(1, 3)));
    if (values.Flag()) subject.SetExternalizeMethod(SMEnum_externalizeMethod::Enum(values.Choice(2, 5)));
    subject.SetExternalizeAutoSummary(values.Flag());
    subject.hierarchiesXml = KeptXml("hierarchies", "kept hierarchies", values);
    subject.levelsXml = KeptXml("levels", "kept levels", values);
    FillFilters(subject.GetFilters(), values);
    auto* definition = new SMDefinition2(&subject, subject.GetSMProject());
    definition->SetDBQuery(new SMDefinition2::DBQuery(definition, subject.GetSMProject()));
    FillIdentity(*definition, values);
    subject.SetDefinition(definition);
    subject.displayOrder = values.Number(4);
    FillBase(subject, values);
}

}  // namespace smtest
