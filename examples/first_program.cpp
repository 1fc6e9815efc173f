#include <iostream>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

using namespace schema_002_000;

int main(int argc, char** argv) try {
    const QvSmartPtr<SMProject2> project(new SMProject2);
    SMProjectBuilder builder(project);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    parser.parse(argc > 1 ? argv[1] : "examples/models/tpcds.xml");

    std::cout << project->GetName().utf8() << " has " << project->GetParameterMaps().size() << " parameter maps and these namespaces:\n";
    for (const auto& [name, section] : project->GetNamespaceMap())
        std::cout << "  " << name.utf8() << ", with " << section->GetFolders().size() << " folders\n";
} catch (const TklRuntimeError& error) {
    std::cerr << error.what() << '\n';
    return 2;
}
