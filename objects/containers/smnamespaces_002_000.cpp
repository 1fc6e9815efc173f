// The part of sections that deals with namespaces, whose names are unique in the whole project.
#include "core/qvutils/diag/codes.h"
#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontype2_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smsectiontype2", "SMSectionType2"};

}  // namespace

void SMSectionType2::MakeNameUnique(SMNamespace2* ns) {
    const I18NString name = ns->GetName();
    if (!m_project->FindNamespaceByName(name)) return;
    const I18NString unique = m_project->GenerateUniqueNamespaceName(name);
    ns->SetNameDontTouchNamespaceMap(unique);
    const I18NString message = "A namespace with name '" + name + "' already exists - renaming this namespace to '" + unique + "'.";
    QvLogEvent event(SM_FAILURE, "code", "zeb", WORDS.module, WORDS.className, "AddNamespace", 0, message, I18NString());
    event.code = qv::code::NAME_CLASH;
    event.Log();
}

void SMSectionType2::AddNamespace(SMNamespace2* ns) {
    if (m_project) MakeNameUnique(ns);
    namespaces.Append(ns);
    m_displayOrder.Append(ns);
    if (m_project) m_project->AddNamespaceToMap(ns);
}

SMNamespace2* SMSectionType2::AddOrUpdateNamespace(const QvULString& name, const QvULString& description) {
    SMNamespace2* found = m_project ? m_project->FindNamespaceByName(name) : nullptr;
    if (!found) {
        auto* ns = new SMNamespace2(this, m_project);
        ns->displayOrder = TakeDisplayOrder();
        ns->SetNameDontTouchNamespaceMap(name);
        ns->SetDescription(description);
        AddNamespace(ns);
        Record(ns);
        return ns;
    }
    if (found->parent != this && MayMoveHere(found, "AddOrUpdateNamespace")) {
        const QvSmartPtr<SMNamespace2> held = found;
        m_project->ForgetRecordedName(found->GetName());
        m_project->DeleteNamespaceWithName(name);
        found->parent = this;
        AddNamespace(found);
        m_project->AddDescendentNamespacesToMap(*found);
        found->SetLastChangedDateToNow();
        Record(found);
    }
    found->SetDescription(description);
    return found;
}

bool SMSectionType2::IsInside(const SMNamespace2* ns) const {
    for (const IOObject* at = this; at; at = at->parent)
        if (at == ns) return true;
    return false;
}

bool SMSectionType2::MayMoveHere(const SMNamespace2* ns, const char* method) const {
    const bool isRoot = m_project && ns == m_project->GetRootNamespace();
    if (!isRoot && !IsInside(ns)) return true;
    SMLog(SM_FAILURE, WORDS, method,
          "A namespace cannot be moved below itself: namespace '" + I18NString(ns->GetName()) + "' stays where it is.");
    return false;
}

SMNamespace2* SMSectionType2::GetChildNamespaceByName(const I18NString& name) const {
    SMNamespace2* ns = m_project ? m_project->FindNamespaceByName(name) : nullptr;
    return ns && ns->parent == this ? ns : nullptr;
}

void SMSectionType2::DeleteNamespaceById(const I18NString& namespaceId) {
    SMDeleteById(namespaces, m_displayOrder, namespaceId);
}

void SMSectionType2::DeleteNamespace(SMNamespace2* ns) {
    const QvSmartPtr<SMNamespace2> held = namespaces.Take(ns);
    m_displayOrder.RemovePointer(ns);
    SMOrphan(held);
}

void SMSectionType2::ImportNamespace(SMNamespace2* ns) {
    if (!MayMoveHere(ns, "ImportNamespace")) return;
    const QvSmartPtr<SMNamespace2> held = ns;
    if (SMProject2* from = ns->GetSMProject()) from->DeleteNamespace(ns);
    ns->parent = this;
    ns->SetSMProject(m_project);
    AddNamespace(ns);
    ns->AdoptDescendents(m_project);
}

void SMSectionType2::AdoptDescendents(SMProject2* project) {
    for (const auto& folder : folders) folder->AdoptDescendents(project);
    for (const auto& child : namespaces) {
        child->parent = this;
        child->SetSMProject(project);
        if (project) {
            MakeNameUnique(child);
            project->AddNamespaceToMap(child);
        }
        child->AdoptDescendents(project);
    }
}

void SMSectionType2::AddDescendentNamespacesToMap(std::map<QvULString, SMNamespace2*>& map) const {
    for (const auto& folder : folders) folder->AddDescendentNamespacesToMap(map);
    for (const auto& ns : namespaces) {
        map.emplace(ns->GetName(), ns);
        ns->AddDescendentNamespacesToMap(map);
    }
}

void SMSectionType2::RemoveDescendentNamespacesFromMap() {
    for (const auto& folder : folders) folder->RemoveDescendentNamespacesFromMap();
    for (const auto& ns : namespaces)
        if (SMProject2* project = ns->GetSMProject()) project->RemoveNamespaceAndDescendentsFromMap(ns);
}

}  // namespace schema_002_000
