#include "tests/support/sections.h"

#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"

using namespace schema_002_000;

namespace smtest {

void FillSection(SMSectionType2& section, Values& values) {
    FillTexts(section, values);
    for (int count = values.Count(1); count > 0; --count) {
        SMNamespace2* ns = section.AddOrUpdateNamespace(values.Name("inner namespace").c_str(), values.Text("of a namespace").c_str());
        ns->AddName("fr", values.Text("espace").c_str());
        FillBase(*ns, values);
        SMFolder2* folder = section.AddOrUpdateFolder(values.Name("inner folder").c_str());
        folder->AddDescription("en", values.Text("of a folder").c_str());
        FillBase(*folder, values);
        folder->AddOrUpdateFolder(values.Name("innermost folder").c_str());
        FillBase(*folder->GetFolders().back(), values);
    }
    section.displayOrder = values.Number(7);
    FillBase(section, values);
}

}  // namespace smtest
