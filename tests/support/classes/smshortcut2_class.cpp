#include "objects/links/smshortcut2_002_000.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMShortcut2* Make(SMProject2& project) {
    return new SMShortcut2(smtest::RootOf(project), &project);
}

void Fill(SMShortcut2& shortcut, smtest::Values& values) {
    smtest::FillTexts(shortcut, values);
    shortcut.SetRefObj(values.Text("[ns].[subject]").c_str());
    shortcut.SetTargetType(values.Text("querySubject").c_str());
    shortcut.displayOrder = values.Number(4);
    smtest::FillBase(shortcut, values);
}

SMShortcut2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetShortcuts().back();
}

const smtest::Register<SMShortcut2> ENTRY{"SMShortcut2", Make, Fill, Read};

}  // namespace
