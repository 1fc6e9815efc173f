#include "objects/links/smscope2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {
const SMTable NO_TABLE = {"", "", "", "", ""};
}  // namespace

SM_DEFINE_KEY_COLUMNS(SMMeasureScope2, NO_TABLE)
SM_DEFINE_KEY_COLUMNS(SMScope2, NO_TABLE)

// ---- memory

void SMMeasureScope2::RenameObjects(SMRenameList2& list) {
    if (!m_allocation.empty()) list.PerformRenames(m_allocation);
    if (!m_refobj.empty()) list.PerformRenames(m_refobj);
}

SMScope2::~SMScope2() {
    SMOrphanAll(m_measureScopes);
}

SMMeasureScope2* SMScope2::AddNewMeasureScope(const I18NString& refobj, bool excluded) {
    auto* measureScope = new SMMeasureScope2(this, m_project);
    AddMeasureScope(measureScope);
    measureScope->m_excluded = excluded;
    measureScope->m_refobj = refobj;
    return measureScope;
}

SMMeasureScope2* SMScope2::GetMeasureScopeWithRefobj(const I18NString& refobj) const {
    for (const auto& measureScope : m_measureScopes)
        if (measureScope->m_refobj == refobj) return measureScope;
    return nullptr;
}

void SMScope2::RegenerateIds() {
    for (const auto& measureScope : m_measureScopes) measureScope->RegenerateIds();
    SMObjectBase::RegenerateIds();
}

void SMScope2::RenameObjects(SMRenameList2& list) {
    list.PerformRenames(m_levelRef);
    for (const auto& measureScope : m_measureScopes) measureScope->RenameObjects(list);
}

void SMScope2::SetSMProject(SMProject2* project) {
    for (const auto& measureScope : m_measureScopes) measureScope->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

// ---- document

void SMMeasureScope2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->excluded, SMEnum_bool::bool2string(m_excluded));
    StartElement(handler, m_tags->measureScope, attrs);
    TextElementIfSet(handler, m_tags->rollup, EnumText<SMEnum_aggregationRule>(m_rollup));
    TextElementIfSet(handler, m_tags->allocation, m_allocation);
    TextElement(handler, m_tags->refobj, m_refobj);
    EndElement(handler, m_tags->measureScope);
}

void SMScope2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->scope);
    TextElement(handler, m_tags->levelRef, m_levelRef);
    for (const auto& measureScope : m_measureScopes) measureScope->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->scope);
}

// ---- builders

void SMScopeBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::scope: break;
    case Tag::levelRef: CollectText(); break;
    case Tag::measureScope: {
        auto* measureScope = new SMMeasureScope2(m_scope, m_scope->GetSMProject());
        m_scope->AddMeasureScope(measureScope);
        measureScope->m_excluded = SMEnum_bool::string2bool(attrs.getValue(m_tags->excluded));
        Push(new SMMeasureScopeBuilder(measureScope));
        break;
    }
    default: LogUnknownStart("smscope2", "SMScopeBuilder::smtagStartElement", "smtagStartElement", localName);
    }
}

void SMScopeBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::scope: break;
    case Tag::levelRef: m_scope->m_levelRef = m_text; break;
    default: LogUnknownStart("smscope2", "SMScopeBuilder::smtagEndElement", "smtagEndElement", localName);
    }
}

void SMMeasureScopeBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes&) {
    switch (TagOf(localName)) {
    case Tag::measureScope: break;
    case Tag::refobj:
    case Tag::rollup:
    case Tag::allocation: CollectText(); break;
    // the two modules differ in case: as the format has it
    default: LogUnknownStart("smMeasureScope2", "SMMeasureScopeBuilder::smtagStartElement", "smtagStartElement", localName);
    }
}

void SMMeasureScopeBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::measureScope: break;
    case Tag::refobj: m_measureScope->m_refobj = m_text; break;
    case Tag::allocation: m_measureScope->m_allocation = m_text; break;
    case Tag::rollup:
        if (!m_text.empty()) m_measureScope->m_rollup = TextAsEnum<SMEnum_aggregationRule>();
        break;
    default: LogUnknownStart("smmeasurescope2", "SMMeasureScopeBuilder::smtagEndElement", "smtagEndElement", localName);
    }
}

}  // namespace schema_002_000
