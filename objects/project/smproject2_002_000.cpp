#include "objects/project/smproject2_002_000.h"

#include "core/qvutils/text/qvstringformat.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

#include <atomic>

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smobjects", "SMProject2"};
constexpr std::size_t MAX_LOCALE_SPELLINGS = 64;

}  // namespace

const SMNameEpochs* NameEpochsOf(const SMObjectBase& object) {
    SMProject2* project = object.GetSMProject();
    return project ? &project->NameEpochs() : nullptr;
}

SMProject2::SMProject2() : SMObjectBase(nullptr, nullptr) {
    m_project = this;
    // each project has a range of its own: a token that an object brings along from another project says nothing here
    static std::atomic<std::uint64_t> projects{0};
    m_lastLifeToken = projects++ << 32;
    m_nameEpochs.names.StartAt(m_lastLifeToken);
    m_nameEpochs.links.StartAt(m_lastLifeToken);
}

SMProject2::~SMProject2() {
    m_beingDestroyed = true;
    // whoever still holds an object of this project must not reach back into it
    for (SMObjectBase* object : m_allObjects.GetObjects()) {
        if (!object) continue;
        object->m_project = nullptr;
        if (object->parent == this) object->parent = nullptr;
    }
    m_allObjects.RemoveAll(true);
    for (const auto& entry : m_namespaceMap) entry.second->m_mapEntries = 0;
    m_namespaceMap.clear();
    m_idMap.clear();
    m_packages.clear();
    m_dataSources.clear();
    m_parameterMaps.clear();
    m_securityViews.clear();
    m_rootNamespace = nullptr;
    m_formerRoots.clear();
    m_project = nullptr;
}

// ---- namespaces

void SMProject2::SetRootNamespace(SMNamespace2* ns) {
    if (m_rootNamespace && m_rootNamespace.get() != ns) m_formerRoots.push_back(m_rootNamespace);
    m_rootNamespace = ns;
    if (!ns) return;
    if (ns->GetSMProject() == this) ns->parent = this;  // it may have stood inside the old one
    AddNamespaceToMap(ns);
}

void SMProject2::EnterNamespace(const QvULString& name, SMNamespace2* ns) {
    if (ns->GetSMProject() != this) return;  // it could not take its entry along when it dies
    if (m_namespaceMap.emplace(name, ns).second) ++ns->m_mapEntries;
}

void SMProject2::EraseNamespaceEntry(const QvULString& name) {
    const auto found = m_namespaceMap.find(name);
    if (found == m_namespaceMap.end()) return;
    --found->second->m_mapEntries;
    m_namespaceMap.erase(found);
    m_takenNames.clear();
}

void SMProject2::AddNamespaceToMap(SMNamespace2* ns) {
    EnterNamespace(ns->GetName(), ns);
}

void SMProject2::AddDescendentNamespacesToMap(const SMNamespace2& section) {
    std::map<QvULString, SMNamespace2*> descendents;
    section.AddDescendentNamespacesToMap(descendents);
    for (const auto& entry : descendents) EnterNamespace(entry.first, entry.second);
}

void SMProject2::RebuildNamespaceMap() {
    if (!m_rootNamespace) {
        SMLog(SM_MISUSE, WORDS, "RebuildNamespaceMap", "Attempting to rebuild namespace map when there is no top-level namespace.");
        return;
    }
    for (const auto& entry : m_namespaceMap) entry.second->m_mapEntries = 0;
    m_namespaceMap.clear();
    m_takenNames.clear();
    AddNamespaceToMap(m_rootNamespace);
    AddDescendentNamespacesToMap(*m_rootNamespace);
}

void SMProject2::RemoveNamespaceAndDescendentsFromMap(SMNamespace2* ns) {
    if (!ns) return;
    EraseNamespaceEntry(ns->GetName());
    ns->RemoveDescendentNamespacesFromMap();
}

void SMProject2::AddOrUpdateNamespaceNameMap(SMNamespace2* ns, const I18NString& oldName) {
    if (!ns->parent) return;
    EraseNamespaceEntry(oldName);
    AddNamespaceToMap(ns);
}

void SMProject2::ForgetNamespace(SMNamespace2* ns) {
    if (const auto named = m_namespaceMap.find(ns->GetName()); named != m_namespaceMap.end() && named->second == ns)
        EraseNamespaceEntry(ns->GetName());
    for (auto entry = m_namespaceMap.begin(); ns->m_mapEntries > 0 && entry != m_namespaceMap.end();) {
        const auto at = entry++;
        if (at->second != ns) continue;
        m_namespaceMap.erase(at);
        m_takenNames.clear();
        --ns->m_mapEntries;
    }
}

SMNamespace2* SMProject2::FindNamespaceByName(const I18NString& name) const {
    const auto found = m_namespaceMap.find(name);
    return found == m_namespaceMap.end() ? nullptr : found->second;
}

SMNamespace2* SMProject2::FindNamespaceByNameCaseInsensitive(const I18NString& name) const {
    for (const auto& entry : m_namespaceMap)
        if (QvStringFormat::GetInstance()->_caseInsensitiveEquals(entry.first, name)) return entry.second;
    return nullptr;
}

SMNamespace2* SMProject2::FindNamespaceById(const I18NString& namespaceId) const {
    for (const auto& entry : m_namespaceMap)
        if (entry.second->GetId() == namespaceId) return entry.second;
    return nullptr;
}

I18NString SMProject2::GenerateUniqueNamespaceName(const I18NString& name) const {
    return SMRenameList2::GenerateUniqueNamespaceName(name, m_namespaceMap, m_takenNames);
}

SMNamespace2* SMProject2::FindOrCreateNamespaceFromPath(std::list<QvULString>& path) {
    if (path.empty()) {
        const QvLogEvent event(SM_FAILURE, "code", "QvOne", WORDS.module, WORDS.className, "FindOrCreateNamespaceFromPath", 0,
                               "Failed to find namespace.", "This method should never be called with an empty path.");
        event.Log();
        throw QvLogEvent(event);
    }
    const QvULString name = path.back();
    if (SMNamespace2* ns = FindNamespaceByName(name)) return ns;
    if (path.size() == 1) {
        auto* root = new SMNamespace2(this, this);
        const QvSmartPtr<SMNamespace2> held = root;
        root->SetNameDontTouchNamespaceMap(name);
        root->SetDescription(name);
        SetRootNamespace(root);
        return root;
    }
    path.pop_back();
    return FindOrCreateNamespaceFromPath(path)->AddOrUpdateNamespace(name, name);
}

void SMProject2::DeleteNamespaceWithName(const I18NString& name) {
    if (SMNamespace2* ns = FindNamespaceByName(name)) DeleteNamespace(ns);
}

void SMProject2::DeleteNamespace(SMNamespace2* ns) {
    RemoveNamespaceAndDescendentsFromMap(ns);
    SMObjectBase* container = ns->GetParentSMObj();
    if (container == this) {
        SMLog(SM_FAILURE, WORDS, "DeleteNamespaceWithName", "Warning: deleting root namespace.");
        return;
    }
    if (container) static_cast<SMSectionType2*>(container)->DeleteNamespace(ns);
}

// ---- recorded objects, shared spellings

void SMProject2::RecordObject(SMObjectBase* object) {
    if (!m_keepIdMap) return;
    const QvULString key = object->GetSMID(false);
    if (m_idMap.emplace(key, object).second) m_recordedKeys.emplace(object, key);
}

void SMProject2::ForgetObject(SMObjectBase* object) {
    if (!m_watched.empty()) m_watched.erase(object);
    if (m_recordedKeys.empty()) return;
    const auto [first, last] = m_recordedKeys.equal_range(object);
    for (auto recorded = first; recorded != last; ++recorded)
        if (const auto entry = m_idMap.find(recorded->second); entry != m_idMap.end() && entry->second == object) m_idMap.erase(entry);
    m_recordedKeys.erase(first, last);
}

std::uint64_t SMProject2::WatchLife(const SMObjectBase* object) {
    const auto entry = m_watched.emplace(object, m_lastLifeToken + 1);
    if (entry.second) ++m_lastLifeToken;
    return entry.first->second;
}

bool SMProject2::IsWatchedAlive(const SMObjectBase* object, std::uint64_t token) const {
    const auto entry = m_watched.find(object);
    return entry != m_watched.end() && entry->second == token;
}

void SMProject2::ForgetRecordedName(const QvULString& key) {
    if (m_keepIdMap) m_idMap.erase(key);
}

const QvULString& SMProject2::ShareLocale(const QvULString& locale) {
    for (const QvULString& spelling : m_localeSpellings)
        if (spelling == locale) return spelling;
    if (m_localeSpellings.size() == MAX_LOCALE_SPELLINGS) return locale;
    m_localeSpellings.push_back(locale);
    return m_localeSpellings.back();
}

}  // namespace schema_002_000
