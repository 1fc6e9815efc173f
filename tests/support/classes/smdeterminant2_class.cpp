#include "objects/query/smdeterminant2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMDeterminant2* Make(SMProject2& project) {
    return new SMDeterminant2(smtest::SubjectOf(project), &project);
}

void Fill(SMDeterminant2& determinant, smtest::Values& values) {
    determinant.SetName(values.Name("determinant").c_str());
    determinant.SetCanGroup(values.Flag());
    determinant.SetIdentifiesRow(values.Flag());
    for (int count = values.Count(2); count > 0; --count) determinant.AddKeyRefObj(values.Text("[ns].[subject].[key]").c_str());
    for (int count = values.Count(1); count > 0; --count) determinant.AddAttrRefObj(values.Text("[ns].[subject].[attribute]").c_str());
    smtest::FillIdentity(determinant, values);
}

SMDeterminant2* Read(SMProject2& project, const std::string& element) {
    SMQuerySubjectBuilder builder(smtest::SubjectOf(project));
    smtest::ParseInside(builder, element);
    return smtest::SubjectOf(project)->GetDeterminants().back();
}

const smtest::Register<SMDeterminant2> ENTRY{"SMDeterminant2", Make, Fill, Read};

}  // namespace
