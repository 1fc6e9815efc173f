// Finding objects by object id over the whole model, and the rebuilding of the database layer.
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"

namespace schema_002_000 {

namespace {

const QvULString TARGET = QvULString::Immortal("Target");
const QvULString DATABASE_LAYER = QvULString::Immortal("Database Layer");
const QvULString MATERIALIZED_VIEWS = QvULString::Immortal("Materialized Views");

}  // namespace

SMNamespace2* SMProject2::NamespaceOf(const I18NString& smid, I18NString& name) const {
    I18NString ns, third;
    DeconstructSMObjectID(smid, ns, name, third);
    return ns.empty() || name.empty() ? nullptr : FindNamespaceByName(ns);
}

SMQuerySubject2* SMProject2::GetQuerySubjectBySMID(const I18NString& smid) const {
    I18NString name;
    const SMNamespace2* ns = NamespaceOf(smid, name);
    return ns ? ns->GetQuerySubjectByName(name) : nullptr;
}

SMNamedObject2* SMProject2::GetRefObjectBySMID(const I18NString& smid) const {
    I18NString name;
    const SMNamespace2* ns = NamespaceOf(smid, name);
    return ns ? ns->GetRefObjectByName(name) : nullptr;
}

SMShortcut2* SMProject2::GetShortcutBySMID(const I18NString& smid) const {
    I18NString name;
    const SMNamespace2* ns = NamespaceOf(smid, name);
    return ns ? ns->GetShortcutByName(name) : nullptr;
}

SMQueryItem2* SMProject2::GetQueryItemBySMID(const I18NString& ns, const I18NString& subject, const I18NString& item) const {
    const SMNamespace2* found = FindNamespaceByName(ns);
    const SMQuerySubject2* querySubject = found ? found->GetQuerySubjectByName(subject) : nullptr;
    return querySubject ? querySubject->GetQueryItemByName(item) : nullptr;
}

SMCalculation2* SMProject2::GetCalculationBySMID(const I18NString& ns, const I18NString& name, const I18NString&) const {
    if (ns.empty() || name.empty()) return nullptr;
    const SMNamespace2* found = FindNamespaceByName(ns);
    return found ? found->GetCalculationBySMID(name) : nullptr;
}

void SMProject2::DropDatabaseLayerContentExceptMViews() {
    if (!m_rootNamespace) return;
    QvULString keptId;
    int keptSequence = 0;
    QvDate keptDate(true);
    QvSmartPtr<SMNamespace2> views;
    if (const QvSmartPtr<SMNamespace2> layer = FindNamespaceByName(DATABASE_LAYER)) {
        keptId = layer->GetId();
        keptSequence = layer->hostSequence;
        keptDate = layer->GetLastChangedDate();
        views = layer->GetChildNamespaceByName(MATERIALIZED_VIEWS);
        DeleteNamespaceWithName(DATABASE_LAYER);
    }
    SMNamespace2* target = FindNamespaceByName(TARGET);
    if (!target) target = m_rootNamespace->AddOrUpdateNamespace(TARGET, TARGET);
    SMNamespace2* layer = target->AddOrUpdateNamespace(DATABASE_LAYER, DATABASE_LAYER);
    if (!keptId.empty()) layer->SetId(keptId);
    if (keptSequence > 0) layer->hostSequence = keptSequence;
    if (views) {
        views->parent = layer;
        layer->AddNamespace(views);
        AddDescendentNamespacesToMap(*views);  // they left the map with the old layer
    } else {
        views = layer->AddOrUpdateNamespace(MATERIALIZED_VIEWS, MATERIALIZED_VIEWS);
    }
    layer->SetLastChangedDate(keptDate);
    views->SetSMProject(this);
    views->CorrectChildrenParentPtrs();
}

}  // namespace schema_002_000
