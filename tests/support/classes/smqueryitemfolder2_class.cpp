#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMQueryItemFolder2* Make(SMProject2& project) {
    return new SMQueryItemFolder2(smtest::SubjectOf(project), &project);
}

void AddItem(SMQueryItemFolder2& folder, smtest::Values& values) {
    auto* item = new SMQueryItem2(&folder, folder.GetSMProject());
    item->displayOrder = folder.TakeDisplayOrder();
    folder.AddQueryItem(item);
    smtest::FillTexts(*item, values);
    item->ChangeExpression(smtest::Escaped(values.Text("an item")));
    smtest::FillBase(*item, values);
}

void AddFolder(SMQueryItemFolder2& folder, smtest::Values& values) {
    auto* inner = new SMQueryItemFolder2(&folder, folder.GetSMProject());
    inner->displayOrder = folder.TakeDisplayOrder();
    folder.AddQueryItemFolder(inner);
    inner->SetHiddenFlag(values.Flag());
    smtest::FillTexts(*inner, values);
    AddItem(*inner, values);
    smtest::FillBase(*inner, values);
}

void Fill(SMQueryItemFolder2& folder, smtest::Values& values) {
    smtest::FillTexts(folder, values);
    folder.SetHiddenFlag(values.Flag());
    for (int count = values.Count(1); count > 0; --count) {
        AddItem(folder, values);
        AddFolder(folder, values);
        AddItem(folder, values);
    }
    folder.displayOrder = values.Number(4);
    smtest::FillBase(folder, values);
}

SMQueryItemFolder2* Read(SMProject2& project, const std::string& element) {
    SMQuerySubjectBuilder builder(smtest::SubjectOf(project));
    smtest::ParseInside(builder, element);
    return smtest::SubjectOf(project)->GetQueryItemFolders().back();
}

const smtest::Register<SMQueryItemFolder2> ENTRY{"SMQueryItemFolder2", Make, Fill, Read};

}  // namespace
