#include "objects/containers/smnamespace2_002_000.h"
#include "objects/query/smdeterminant2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

SMQuerySubject2* Make(SMProject2& project) {
    SMNamespace2* root = smtest::RootOf(project);
    auto* subject = new SMQuerySubject2(root, &project, root);
    auto* definition = new SMDefinition2(subject, &project);  // a subject without one is logged whenever it is written
    definition->SetDBQuery(new SMDefinition2::DBQuery(definition, &project));
    subject->SetDefinition(definition);
    return subject;
}

void Fill(SMQuerySubject2& subject, smtest::Values& values) {
    for (int count = values.Count(1); count > 0; --count) {
        auto* determinant = new SMDeterminant2(&subject, subject.GetSMProject());
        determinant->SetName(values.Name("determinant").c_str());
        determinant->SetCanGroup(values.Flag());
        determinant->SetIdentifiesRow(!values.Flag());
        determinant->AddKeyRefObj(values.Text("[ns].[s].[key]").c_str());
        determinant->AddAttrRefObj(values.Text("[ns].[s].[attribute]").c_str());
        smtest::FillIdentity(*determinant, values);
        subject.AddDeterminant(determinant);
    }
    smtest::FillItems(subject, values);
    subject.SetProperty("qvdbref", "", values.Text("physical object").c_str());
    subject.SetTargetQSIdentifier(values.Text("kind of subject").c_str());
    smtest::FillSubject(subject, values);
}

SMQuerySubject2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetQuerySubjects().back();
}

const smtest::Register<SMQuerySubject2> ENTRY{"SMQuerySubject2", Make, Fill, Read};

}  // namespace
