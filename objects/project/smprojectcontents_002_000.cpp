// The kinds that a project owns beside its root namespace, and the walks over the whole project.
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {

// what new objects grant: everyone may administrate a package and use a view
#define EVERYONE                                                                                               \
    "<decisionRole><securityObject type=\"group\"><displayPath>Everyone [Directory &gt; Lumora]</displayPath>" \
    "<cmSearchPath>DIRID(&quot;::Everyone&quot;)</cmSearchPath></securityObject></decisionRole>"
const I18NString EVERYONE_ADMIN_ACCESS = I18NString::Immortal("<adminAccess>" EVERYONE "</adminAccess>");
const I18NString EVERYONE_ACCESS = I18NString::Immortal("<access>" EVERYONE "</access>");
#undef EVERYONE

}  // namespace

// ---- data sources

void SMProject2::AppendDataSource(SMDatasource2* dataSource) {
    m_dataSources.Append(dataSource);
}

SMDatasource2* SMProject2::AddDataSourceOrReturnExisting(const I18NString& cmDataSource, const I18NString& catalog, const I18NString& cube,
                                                         SMEnum_queryProcessing::Enum queryProcessing) {
    for (const auto& each : m_dataSources)
        if (each->GetCmDataSource() == cmDataSource && each->GetCatalog() == catalog && each->GetCube() == cube &&
            each->GetQueryProcessing() == queryProcessing)
            return each;
    auto* dataSource = new SMDatasource2(this, this);
    m_dataSources.Append(dataSource);
    dataSource->ChangeDefaultName(cmDataSource);
    dataSource->SetCmDataSource(cmDataSource);
    dataSource->SetCatalog(catalog);
    dataSource->SetCube(cube);
    dataSource->SetQueryProcessing(queryProcessing);
    return dataSource;
}

void SMProject2::CreateDatasourcesNameMap(QvSmartMap<QvULString, SMDatasource2>& map) const {
    for (const auto& dataSource : m_dataSources) map.emplace(dataSource->GetName(), dataSource);
}

void SMProject2::ClearDSSchema() {
    for (const auto& dataSource : m_dataSources) {
        if (dataSource->GetName() == m_name) continue;
        dataSource->SetCmDataSource(EMPTY_QVSTRING);
        dataSource->SetSchema(EMPTY_QVSTRING);
    }
}

// ---- packages

void SMProject2::AppendPackage(SMPackage2* package) {
    m_packages.ForgetIndex();  // while it lives, the collection refuses an id that it has already
    m_packages.push_back(package);
}

SMPackage2* SMProject2::GetPackageWithName(const I18NString& name) const {
    for (const auto& package : m_packages)
        if (package->GetName() == name) return package;
    return nullptr;
}

SMPackage2* SMProject2::AddPackageOrReturnExisting(const I18NString& name, const I18NString& description, SMSecurityView2* securityView) {
    if (SMPackage2* existing = GetPackageWithName(name)) return existing;
    const QvSmartPtr<SMPackage2> package = new SMPackage2(this, this);
    package->ChangeDefaultName(name);
    package->AddLocale(m_defaultLocale);
    m_packages.push_back(package);
    if (!description.empty()) package->SetDescription(description);
    if (!package->GetAdminAccess()) package->SetAdminAccess(new SMXMLObject2(m_tags->adminAccess, EVERYONE_ADMIN_ACCESS, false));
    package->AddViewref(securityView->GetSMID(false));
    return package;
}

void SMProject2::DeletePackageWithId(const QvULString& packageId) {
    m_packages.Delete(packageId);
}

void SMProject2::DeleteAndAppendPackage(SMPackage2* package) {
    const QvSmartPtr<SMPackage2> held = package;
    // a package without an id is not found by it
    if (!m_packages.DeleteItem(package)) m_packages.Delete(package->GetId());
    m_packages.push_back(package);
}

// ---- security views

void SMProject2::AppendSecurityView(SMSecurityView2* view) {
    m_securityViews.Append(view);
}

SMSecurityView2* SMProject2::GetSecurityViewByName(const I18NString& name) const {
    return m_securityViews.Find(name.utf8(), *this);
}

SMSecurityView2* SMProject2::GetSecurityViewBySMID(const I18NString& smid) const {
    I18NString first, second, third;
    DeconstructSMObjectID(smid, first, second, third);
    return third.empty() ? nullptr : GetSecurityViewByName(third);
}

SMSecurityView2* SMProject2::AddSecurityViewOrReturnExisting(const I18NString& name) {
    if (SMSecurityView2* existing = GetSecurityViewByName(name)) return existing;
    const QvSmartPtr<SMSecurityView2> view = new SMSecurityView2(this, this);
    view->ChangeDefaultName(name);
    m_securityViews.Append(view);
    view->SetAccess(new SMXMLObject2(m_tags->access, EVERYONE_ACCESS, false));
    return view;
}

void SMProject2::DeleteAndAppendSecurityView(SMSecurityView2* view) {
    const QvSmartPtr<SMSecurityView2> held = view;
    m_securityViews.Take(GetSecurityViewByName(view->GetName()));
    m_securityViews.Append(view);
}

void SMProject2::DeleteSecurityViewWithSMID(const I18NString& smid) {
    for (const auto& view : m_securityViews) {
        if (view->GetSMID(false) != smid) continue;
        m_securityViews.Take(view);
        return;
    }
}

// ---- parameter maps

void SMProject2::AppendParameterMap(SMParameterMap2* map) {
    m_parameterMaps.Append(map);
}

SMParameterMap2* SMProject2::GetParameterMapWithName(const I18NString& name) const {
    return m_parameterMaps.Find(name.utf8(), *this);
}

SMParameterMap2* SMProject2::AddParameterMapOrReturnExisting(const I18NString& name, bool hidden) {
    SMParameterMap2* map = GetParameterMapWithName(name);
    if (!map) {
        map = new SMParameterMap2(this, this);
        m_parameterMaps.Append(map);
        map->SetName(name);
    }
    map->SetHidden(hidden);
    return map;
}

// ---- walks

void SMProject2::RenameObjects(SMRenameList2& list) {
    if (m_rootNamespace) m_rootNamespace->RenameObjects(list);
    for (const auto& map : m_parameterMaps) map->RenameObjects(list);
}

void SMProject2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (m_rootNamespace) m_rootNamespace->RegenerateIds(idMap);
    for (const auto& package : m_packages) package->RegenerateIds(idMap);
    m_packages.ForgetIndex();
    for (const auto& dataSource : m_dataSources) dataSource->RegenerateIds(idMap);
    for (const auto& map : m_parameterMaps) map->RegenerateIds(idMap);
    for (const auto& view : m_securityViews) view->RegenerateIds(idMap);
    SMObjectBase::RegenerateIds();
}

void SMProject2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& dataSource : m_dataSources) children.push_back(dataSource);
    for (const auto& map : m_parameterMaps) children.push_back(map);
    for (const auto& view : m_securityViews) children.push_back(view);
    if (m_rootNamespace) children.push_back(m_rootNamespace);
}

}  // namespace schema_002_000
