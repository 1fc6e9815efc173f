#include "objects/face/smmodelrename_002_000.h"

#include <set>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "core/qvutils/xml/xmlescape.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smrenameaudit_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {

I18NString Wide(const std::string& text) {
    return I18NString(std::string_view(text));
}

[[noreturn]] void Refuse(const std::string& why) {
    throw TklRuntimeError("nothing was renamed: " + why);
}

/** The namespaces to rename, in the order of the renames. */
std::vector<QvSmartPtr<SMNamespace2>> FindNamespaces(const SMProject2& project, const std::vector<SMNamespaceRename>& renames) {
    std::vector<QvSmartPtr<SMNamespace2>> found;
    std::set<std::string> leaving, coming;
    for (const SMNamespaceRename& rename : renames) {
        // references to data sources, packages and the like begin with an empty name
        if (rename.oldName.empty()) Refuse("a namespace without a name cannot be told from what is in none");
        found.emplace_back(project.FindNamespaceByName(Wide(rename.oldName)));
        if (!found.back()) Refuse("the model has no namespace '" + rename.oldName + "'");
        if (!leaving.insert(rename.oldName).second) Refuse("'" + rename.oldName + "' is to be renamed twice");
    }
    for (const SMNamespaceRename& rename : renames) {
        if (rename.newName.empty()) Refuse("a namespace must have a name");
        if (rename.newName.find_first_of("[]") != std::string::npos)
            Refuse("'" + rename.newName + "' has a bracket, and no reference could name it");
        if (!qv::IsXmlText(rename.newName)) Refuse("a new name has characters that no document can carry");
        const bool taken = project.FindNamespaceByName(Wide(rename.newName)) && !leaving.count(rename.newName);
        if (taken || !coming.insert(rename.newName).second) Refuse("the name '" + rename.newName + "' is taken");
    }
    return found;
}

I18NString Print(const SMProject2& project) {
    I18NString document;
    QvStringWriter writer(document);
    QvSAX2PrintHandler printer("UTF-8", false, writer, false);
    project.WriteXMLDocument(nullptr, &printer, writer);
    return document;
}

void Rename(SMProject2& project, const std::vector<SMNamespaceRename>& renames) {
    const std::vector<QvSmartPtr<SMNamespace2>> namespaces = FindNamespaces(project, renames);
    SMRenameList2 list;
    for (const SMNamespaceRename& rename : renames) list.AddRenameNamespace(Wide(rename.oldName), Wide(rename.newName));
    project.RenameObjects(list);
    for (std::size_t i = 0; i < renames.size(); ++i) {
        const QvDate changed = namespaces[i]->GetLastChangedDate();
        namespaces[i]->SetNameDontTouchNamespaceMap(Wide(renames[i].newName));
        namespaces[i]->SetLastChangedDate(changed);
    }
    project.RebuildNamespaceMap();
}

}  // namespace

SMResult SMRenameNamespaces(SMProject2& project, const std::vector<SMNamespaceRename>& renames, const std::string& documentName,
                            const SMControl& control) {
    SMResult result;
    SMRunGuarded(result, [&] {
        FindNamespaces(project, renames);
        SMRenameAudit audit(renames);
        audit.ReadBefore(Print(project));
        Rename(project, renames);
        audit.CompareAfter(Print(project), documentName, control);
        return true;
    });
    return result;
}

}  // namespace schema_002_000
