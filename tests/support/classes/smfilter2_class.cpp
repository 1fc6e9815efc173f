#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "objects/query/smfilter2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMFilter2* Make(SMProject2& project) {
    return new SMFilter2(smtest::RootOf(project), &project);
}

void Fill(SMFilter2& filter, smtest::Values& values) {
    smtest::FillTexts(filter, values);
    filter.SetStatus(SMEnum_status::Enum(values.Choice(2, 3)));
    if (values.Flag()) filter.ChangeExpression(smtest::Escaped(values.Text("[ns].[subject].[item] > 0")));
    filter.displayOrder = values.Number(4);
    smtest::FillBase(filter, values);
}

SMFilter2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetFilters().back();
}

const smtest::Register<SMFilter2> ENTRY{"SMFilter2", Make, Fill, Read};

}  // namespace
