#include "objects/containers/smnamespace2_002_000.h"
#include "objects/query/smupdatesubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMUpdateSubject2* Make(SMProject2& project) {
    SMNamespace2* root = smtest::RootOf(project);
    auto* subject = new SMUpdateSubject2(root, &project, root);
    auto* definition = new SMDefinition2(subject, &project);  // a subject without one is logged whenever it is written
    definition->SetDBQuery(new SMDefinition2::DBQuery(definition, &project));
    subject->SetDefinition(definition);
    return subject;
}

void Fill(SMUpdateSubject2& subject, smtest::Values& values) {
    smtest::FillSubject(subject, values);
}

SMUpdateSubject2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetUpdateSubjects().back();
}

const smtest::Register<SMUpdateSubject2> ENTRY{"SMUpdateSubject2", Make, Fill, Read};

}  // namespace
