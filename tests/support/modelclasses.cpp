#include "tests/support/modelclasses.h"

#include <algorithm>

#include "objects/containers/smnamespace2_002_000.h"

using namespace schema_002_000;

namespace smtest {

namespace {

std::vector<ModelClass>& List() {
    static std::vector<ModelClass> list;
    return list;
}

}  // namespace

void AddModelClass(ModelClass entry) {
    List().push_back(std::move(entry));
}

const std::vector<ModelClass>& ModelClasses() {
    std::sort(List().begin(), List().end(), [](const ModelClass& a, const ModelClass& b) { return a.name < b.name; });
    return List();
}

SMNamespace2* RootOf(SMProject2& project) {
    if (!project.GetRootNamespace()) {
        auto* root = new SMNamespace2(&project, &project);
        root->SetId("root");
        root->SetVersionNo(1);
        root->SetNameDontTouchNamespaceMap("Root");
        project.SetRootNamespace(root);
    }
    return project.GetRootNamespace();
}

}  // namespace smtest
