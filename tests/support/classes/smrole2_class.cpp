#include "objects/containers/smnamespace2_002_000.h"
#include "objects/publication/smrole2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMRole2* Make(SMProject2& project) {
    return new SMRole2(smtest::RootOf(project), &project);
}

void Fill(SMRole2& role, smtest::Values& values) {
    smtest::FillNames(role, values);
    role.SetIntrinsic(values.Flag());
    smtest::FillBase(role, values);
}

SMRole2* Read(SMProject2& project, const std::string& element) {
    SMRole2* role = Make(project);
    SMRoleBuilder builder(role);
    smtest::ParseInto(builder, element);
    return role;
}

const smtest::Register<SMRole2> ENTRY{"SMRole2", Make, Fill, Read, false};

}  // namespace
