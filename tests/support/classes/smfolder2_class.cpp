#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/sections.h"

using namespace schema_002_000;

namespace {

SMFolder2* Make(SMProject2& project) {
    return new SMFolder2(smtest::RootOf(project), &project);
}

void Fill(SMFolder2& folder, smtest::Values& values) {
    smtest::FillSection(folder, values);
}

SMFolder2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetFolders().back();
}

const smtest::Register<SMFolder2> ENTRY{"SMFolder2", Make, Fill, Read};

}  // namespace
