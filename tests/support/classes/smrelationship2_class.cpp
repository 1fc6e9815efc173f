#include "objects/links/smrelationship2_002_000.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/links.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMRelationship2* Make(SMProject2& project) {
    return new SMRelationship2(smtest::RootOf(project), &project);
}

void Fill(SMRelationship2& relationship, smtest::Values& values) {
    if (values.Flag()) relationship.SetStatus(SMEnum_status::Enum(values.Choice(2, 3)));
    if (values.Flag()) relationship.SetExpression(smtest::Escaped(values.Text("[ns].[left subject].[a] = [ns].[right subject].[b]")));
    relationship.sql = smtest::KeptXml("sql", "a.b &lt;&gt; c.d", values);
    smtest::FillRelationship(relationship, values);
}

SMRelationship2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetRelationships().back();
}

// the status is written, but not read
const smtest::Register<SMRelationship2> ENTRY{"SMRelationship2", Make, Fill, Read, false};

}  // namespace
