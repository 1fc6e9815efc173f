#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smreferences_002_000.h"

using namespace schema_002_000;

namespace {

const SMProject2& EveryKindModel() {
    static const fuzz::Model& model = *new fuzz::Model(fuzz::LoadModel(fuzz::EveryKind()));
    return *model.project;
}

}  // namespace

void fuzz::ObjectId(std::string_view input) {
    const SMProject2& project = EveryKindModel();
    static const SMReferenceIndex& index = *new SMReferenceIndex(project);
    const I18NString id(input);
    project.GetQuerySubjectBySMID(id);
    project.GetRefObjectBySMID(id);
    project.GetShortcutBySMID(id);
    project.GetSecurityViewBySMID(id);
    project.FindNamespaceByName(id);
    project.FindNamespaceByNameCaseInsensitive(id);
    project.FindNamespaceById(id);
    Require(!project.GenerateUniqueNamespaceName(id).empty(), "there is always a free name");
    if (const SMObjectBase* found = index.Find(input)) Require(SMAddressOf(*found) == input, "what an address finds has it");
    index.FindAlike(input.substr(0, 256), 3);

    std::string_view rest = input;
    const I18NString ns(TakePart(rest)), subject(TakePart(rest)), item(TakePart(rest));
    project.GetQueryItemBySMID(ns, subject, item);
    project.GetCalculationBySMID(ns, subject, item);
}
