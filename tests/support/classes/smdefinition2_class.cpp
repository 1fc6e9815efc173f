#include "objects/query/smdefinition2_002_000.h"

#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/subjects.h"

using namespace schema_002_000;

namespace {

/** Knows the kind of its query, which a subject tells when it reads its definition. */
template <class Query>
class Definition : public SMDefinition2 {
  public:
    Definition(SMObjectBase* owner, SMProject2* project) : SMDefinition2(owner, project) {}
    void constructFromIOParameter(const IOParameter& row) override {
        SMDefinition2::constructFromIOParameter(row, SMEnum_xmltag::GetInstance()->_enum2string(Query(this, nullptr).GetSMType()));
    }
};

SMDefinition2* MakeDB(SMProject2& project) {
    auto* definition = new Definition<SMDefinition2::DBQuery>(smtest::SubjectOf(project), &project);
    definition->SetDBQuery(new SMDefinition2::DBQuery(definition, &project));  // one without a query is logged when it is written
    return definition;
}

SMDefinition2* MakeModel(SMProject2& project) {
    auto* definition = new Definition<SMDefinition2::ModelQuery>(smtest::SubjectOf(project), &project);
    definition->SetModelQuery(new SMDefinition2::ModelQuery(definition, &project));
    return definition;
}

void Fill(SMDefinition2& definition, smtest::Values& values) {
    smtest::FillTexts(definition, values);
    if (definition.GetDBQuery())
        smtest::FillDBQuery(*definition.GetDBQuery(), values);
    else
        smtest::FillQuery(*definition.GetModelQuery(), values);
    smtest::FillBase(definition, values);
}

SMDefinition2* Read(SMProject2& project, const std::string& element) {
    SMQuerySubjectBuilder builder(smtest::SubjectOf(project));
    smtest::ParseInside(builder, element);
    return smtest::SubjectOf(project)->GetDefinition();
}

const smtest::Register<SMDefinition2> OF_DATABASES{"SMDefinition2", MakeDB, Fill, Read};
const smtest::Register<SMDefinition2> OF_MODEL{"SMDefinition2OfModel", MakeModel, Fill, Read};

}  // namespace
