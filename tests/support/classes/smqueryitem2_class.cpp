#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMQueryItem2* Make(SMProject2& project) {
    return new SMQueryItem2(smtest::SubjectOf(project), &project);
}

void Fill(SMQueryItem2& item, smtest::Values& values) {
    smtest::FillItem(item, values);
    item.SetPhysicalObjectId(values.Text("physical column").c_str());
    item.SetPhysicalName(values.Text("physical name").c_str());
    smtest::FillBase(item, values);
}

SMQueryItem2* Read(SMProject2& project, const std::string& element) {
    SMQuerySubjectBuilder builder(smtest::SubjectOf(project));
    smtest::ParseInside(builder, element);
    return smtest::SubjectOf(project)->GetQueryItems().back();
}

// the ids of its roles and its prompt are written, but not read
const smtest::Register<SMQueryItem2> ENTRY{"SMQueryItem2", Make, Fill, Read, false};

}  // namespace
