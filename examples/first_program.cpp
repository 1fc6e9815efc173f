#include <iostream>

#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smmodeldocument_002_000.h"

using namespace schema_002_000;

int main(int argc, char** argv) {
    const SMLoadResult model = SMLoadModel(argc > 1 ? argv[1] : "examples/models/tpcds.xml");
    for (const SMDiagnostic& finding : model.diagnostics) std::cerr << FormatDiagnostic(finding) << '\n';
    if (!model.project) return 2;

    std::cout << model.project->GetName().utf8() << " has these namespaces:\n";
    for (const auto& [name, section] : model.project->GetNamespaceMap())
        std::cout << "  " << name.utf8() << ", with " << section->GetFolders().size() << " folders\n";
}
