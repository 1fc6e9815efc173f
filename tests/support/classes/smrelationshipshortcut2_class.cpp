#include "objects/links/smrelationshipshortcut2_002_000.h"

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMRelationshipShortcut2* Make(SMProject2& project) {
    return new SMRelationshipShortcut2(smtest::RootOf(project), &project);
}

void Fill(SMRelationshipShortcut2& shortcut, smtest::Values& values) {
    smtest::FillNames(shortcut, values);
    shortcut.leftRefObj = values.Text("[ns].[left subject]").c_str();
    shortcut.rightRefObj = values.Text("[ns].[right shortcut]").c_str();
    shortcut.relationshipRef = values.Text("[ns].[relationship]").c_str();
    shortcut.displayOrder = values.Number(4);
    smtest::FillBase(shortcut, values);
}

SMRelationshipShortcut2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetRelationshipShortcuts().back();
}

const smtest::Register<SMRelationshipShortcut2> ENTRY{"SMRelationshipShortcut2", Make, Fill, Read};

}  // namespace
