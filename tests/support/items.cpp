#include "tests/support/items.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace smtest {

SMQuerySubject2* SubjectOf(SMProject2& project) {
    SMNamespace2* root = RootOf(project);
    if (root->GetQuerySubjects().empty()) {
        SMQuerySubject2* subject = root->AddOrUpdateDBQuerySubject("subject", "");
        subject->SetId("subject");
        subject->SetVersionNo(2);
    }
    return root->GetQuerySubjects()[0];
}

I18NString Escaped(const std::string& text) {
    return Printed([&](QvContentHandler* handler) { handler->characters(I18NString(text)); }).c_str();
}

namespace {

void FillPrompt(SMQueryItemType2& item, Values& values) {
    auto* prompt = new SMPromptInfo2(&item, item.GetSMProject());
    item.SetPromptInfo(prompt);
    prompt->SetPromptType(EnumText<SMEnum_promptType>(SMEnum_promptType::Enum(values.Choice(6, 9))));
    prompt->SetPromptUseItemRef(values.Text("[ns].[subject].[used]").c_str());
    FillIdentity(*prompt, values);
}

}  // namespace

void FillRole(SMQueryItemType2& item, Values& values) {
    auto* role = new SMRole2(&item, item.GetSMProject());
    item.AddRole(role);
    FillNames(*role, values);
    FillIdentity(*role, values);
}

void FillItem(SMQueryItemType2& item, Values& values) {
    FillTexts(item, values);
    item.ChangeExpression(Escaped(values.Text("[ns].[subject].[item] > 0")));
    item.SetExternalName(values.Text("external name").c_str());
    item.SetHidden(values.Flag());
    item.SetUsage(SMEnum_usage::Enum(values.Choice(2, 4)));
    item.SetFormat(values.Text("format").c_str());
    item.SetCurrency(values.Text("currency").c_str());
    item.SetDatatype(SMEnum_datatype::Enum(values.Choice(5, 10)));
    item.SetPrecision(values.Number(18));
    item.SetScale(values.Number(2));
    item.SetSize(values.Number(20));
    item.SetNullable(values.Flag());
    item.SetAggregationRule(SMEnum_aggregationRule::Enum(values.Choice(2, 10)));
    item.SetDisplayType(SMEnum_displayType::Enum(values.Choice(1, 3)));
    item.SetMimeType(values.Text("mime type").c_str());
    item.SetRegularAggregate(SMEnum_aggregationRule::Enum(values.Choice(3, 10)));
    item.SetSemiAggregate(SMEnum_aggregationRule::Enum(values.Choice(4, 10)));
    item.SetSortOnRef(values.Text("[ns].[subject].[sorted by]").c_str());
    item.SetUnSortable(values.Flag());
    item.SetSort(SMEnum_sort::Enum(values.Choice(1, 3)));
    item.SetRolesId(values.Text("id of the roles").c_str());
    item.SetCollationSequenceName(values.Text("collation").c_str());
    item.SetCollationSequenceLevel(values.Number(1));
    item.SetOriginalCollationSequenceName(values.Text("original collation").c_str());
    item.SetOriginalEncodingName(values.Text("original encoding").c_str());
    if (values.Flag()) FillPrompt(item, values);
    for (int count = values.Count(2); count > 0; --count) FillRole(item, values);
    item.displayOrder = values.Number(4);
}

}  // namespace smtest
