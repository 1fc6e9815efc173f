#include "objects/links/smscoperelationship2_002_000.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "objects/links/smscope2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/links.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMScopeRelationship2* Make(SMProject2& project) {
    return new SMScopeRelationship2(smtest::RootOf(project), &project);
}

void FillScope(SMScope2& scope, int number, smtest::Values& values) {
    scope.m_levelRef = values.Text("[ns].[dimension].[hierarchy].[level " + std::to_string(number) + "]").c_str();
    for (int count = values.Count(2); count > 0; --count) {
        SMMeasureScope2* measure = scope.AddNewMeasureScope(values.Text("[ns].[measures].[" + std::to_string(count) + "]").c_str(),
                                                            values.Choice(count - 1, 2) == 1);
        if (values.Flag()) measure->m_rollup = SMEnum_aggregationRule::Enum(values.Choice(11 + count, 14));
        measure->m_allocation = values.Text(count == 1 ? "" : "[ns].[measures].[allocation]").c_str();
    }
}

void Fill(SMScopeRelationship2& relationship, smtest::Values& values) {
    for (int count = values.Count(2); count > 0; --count) FillScope(*relationship.AddNewScope(), count, values);
    smtest::FillRelationship(relationship, values);
}

SMScopeRelationship2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetScopeRelationships().back();
}

const smtest::Register<SMScopeRelationship2> ENTRY{"SMScopeRelationship2", Make, Fill, Read};

}  // namespace
