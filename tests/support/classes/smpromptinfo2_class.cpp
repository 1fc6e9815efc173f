#include "objects/query/smpromptinfo2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

/** The item that the prompt stands in. */
SMQueryItem2* ItemOf(SMProject2& project) {
    SMQueryItem2* item = smtest::SubjectOf(project)->AddOrReturnExistingQueryItem("item");
    item->SetId("item");
    return item;
}

SMPromptInfo2* Make(SMProject2& project) {
    return new SMPromptInfo2(ItemOf(project), &project);
}

void Fill(SMPromptInfo2& prompt, smtest::Values& values) {
    prompt.SetPromptType(EnumText<SMEnum_promptType>(SMEnum_promptType::Enum(values.Choice(6, 9))));
    prompt.SetPromptCascadeOnRef(values.Text("[ns].[subject].[cascading]").c_str());
    prompt.SetPromptDisplayItemRef(values.Text("[ns].[subject].[displayed]").c_str());
    prompt.SetPromptFilterItemRef(values.Text("[ns].[subject].[filtering]").c_str());
    prompt.SetPromptUseItemRef(values.Text("[ns].[subject].[used]").c_str());
    smtest::FillIdentity(prompt, values);
}

SMPromptInfo2* Read(SMProject2& project, const std::string& element) {
    SMQueryItemBuilder builder(ItemOf(project));
    smtest::ParseInside(builder, element);
    return ItemOf(project)->GetPromptInfo();
}

// its id and its version are written, but not read
const smtest::Register<SMPromptInfo2> ENTRY{"SMPromptInfo2", Make, Fill, Read, false};

}  // namespace
