#include "objects/publication/smsecurityview2_002_000.h"

#include <algorithm>

#include "objects/base/smprint_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_SECURITY_VIEW", "SVIEW_ID", "SVIEW_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO"};
const SMLogWords WORDS = {"smsecurityview2", "SMSecurityView2"};
const SMLogWords BUILDER_WORDS = {"smsecurityview2", "SMSecurityViewBuilder"};
const QvULString COL_ISROLEBASED = SMColumn("ISROLEBASED");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMSecurityView2, TABLE)

// ---- memory

I18NString SMSecurityView2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, EMPTY_QVSTRING, m_tags->securityViews, GetName(), EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMSecurityView2::InsertRefID(SMEnum_includeRule::Enum rule, const I18NString& reference, SMSecurityDefinitionSet2::ERefTag tag) {
    const auto set = std::find_if(m_definition.begin(), m_definition.end(), [&](const auto& each) { return each.includeRule == rule; });
    if (set == m_definition.end()) {
        m_definition.push_back({tag, rule, {reference}});
        return;
    }
    if (set->refTag != tag) {
        SMLog(SM_MISUSE, WORDS, "InsertRefID", "can't insert securityView difinition item " + reference);  // as the log has it
        return;
    }
    const auto [known, isFirst] = m_insertedUnder.try_emplace(rule);
    if (isFirst) known->second.insert(set->refs.begin(), set->refs.end());
    if (known->second.insert(reference).second) set->refs.push_back(reference);
}

SMSecurityDefinitionSet2::ERefTag SMSecurityView2::GetRefIDs(SMEnum_includeRule::Enum rule, std::vector<QvULString>& ids) const {
    auto tag = SMSecurityDefinitionSet2::ERefTag(-1);
    for (const SMSecurityDefinitionSet2& set : m_definition) {
        if (set.includeRule != rule) continue;
        ids.insert(ids.end(), set.refs.begin(), set.refs.end());
        tag = set.refTag;
    }
    return tag;
}

void SMSecurityView2::RemoveRefID(SMEnum_includeRule::Enum rule, const I18NString& reference) {
    for (SMSecurityDefinitionSet2& set : m_definition)
        if (set.includeRule == rule) set.refs.remove(reference);
    if (const auto known = m_insertedUnder.find(rule); known != m_insertedUnder.end()) known->second.erase(reference);
}

void SMSecurityView2::AddToSetPIDIDAndMiniObject() {
    const auto add = [&](const I18NString& tag, long version, const I18NString& text) {
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), tag, static_cast<int>(version), text);
    };
    if (!m_qosOverrides.empty()) add(m_tags->qosOverrides, m_qosOverridesInfoId, WriteQosOverridesToString());
    if (!m_definition.empty()) add(m_tags->definition, m_definitionInfoId, WriteDefinitionToString());
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_access);
    if (!m_functionSets.empty()) add(m_tags->functionSets, m_functionSetsInfoId, WriteFunctionSetsToString());
}

// ---- document

void SMSecurityView2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfTrue(attrs, m_tags->isRoleBased, m_isRoleBased);
    StartElement(handler, m_tags->securityView, attrs);
    WriteLocaleMap(handler, m_tags->name, names);
    WriteProperties(handler, true);
    if (!m_definition.empty()) WriteDefinition(handler);
    if (!m_functionSets.empty()) WriteFunctionSets(handler);
    if (!m_qosOverrides.empty()) WriteQosOverrides(handler);
    WriteKept(m_access, target);
    EndElement(handler, m_tags->securityView);
}

void SMSecurityView2::WriteDefinition(QvContentHandler* handler) const {
    StartElement(handler, m_tags->definition);
    for (const SMSecurityDefinitionSet2& set : m_definition) {
        QvXMLAttributesImpl attrs;
        attrs.push_back(m_tags->includeRule, EnumText<SMEnum_includeRule>(set.includeRule));
        const bool views = set.refTag == SMSecurityDefinitionSet2::viewref;
        WriteList(handler, m_tags->set, views ? m_tags->viewref : m_tags->refobj, set.refs, NoAttributes(), attrs);
    }
    EndElement(handler, m_tags->definition);
}

void SMSecurityView2::WriteFunctionSets(QvContentHandler* handler) const {
    StartElement(handler, m_tags->functionSets);
    WriteList(handler, m_tags->functionSet, m_tags->functionSetId, m_functionSets);
    EndElement(handler, m_tags->functionSets);
}

void SMSecurityView2::WriteQosOverrides(QvContentHandler* handler) const {
    StartElement(handler, m_tags->qosOverrides);
    for (const SMQosOverride2& entry : m_qosOverrides) {
        StartElement(handler, m_tags->qosOverride);
        TextElement(handler, m_tags->functionId, entry.functionId);
        TextElementIfSet(handler, m_tags->qosLevel, entry.qosLevel);
        WriteLocaleMap(handler, m_tags->description, entry.description);
        EndElement(handler, m_tags->qosOverride);
    }
    EndElement(handler, m_tags->qosOverrides);
}

I18NString SMSecurityView2::WriteDefinitionToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteDefinition(handler); });
}

I18NString SMSecurityView2::WriteFunctionSetsToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteFunctionSets(handler); });
}

I18NString SMSecurityView2::WriteQosOverridesToString() const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteQosOverrides(handler); });
}

// ---- repository

void SMSecurityView2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Flag(COL_ISROLEBASED, m_isRoleBased);
}

void SMSecurityView2::constructFromIOParameter(const IOParameter& row) {
    SMNamedObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] { m_isRoleBased = FlagOf(row, m_tags->isRoleBased); });
}

bool SMSecurityView2::read(IOHelper& helper) {
    if (!ReadKeptInfo(helper, m_access, m_tags->access)) return false;
    std::map<QvULString, long*> wanted{{m_tags->definition, &m_definitionInfoId},
                                       {m_tags->qosOverrides, &m_qosOverridesInfoId},
                                       {m_tags->functionSets, &m_functionSetsInfoId}};
    SMSecurityViewBuilder builder(this);
    return read_remaining_info_into_builder(helper, this, &builder, wanted);
}

bool SMSecurityView2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMSecurityView2::write_next(IOHelper& helper) {
    if (!m_functionSets.empty() && !write_remaining_info(helper, m_tags->functionSets, WriteFunctionSetsToString(), m_functionSetsInfoId))
        return false;
    if (!WriteKeptInfo(helper, m_access)) return false;
    if (!m_definition.empty() && !write_remaining_info(helper, m_tags->definition, WriteDefinitionToString(), m_definitionInfoId))
        return false;
    return m_qosOverrides.empty() || write_remaining_info(helper, m_tags->qosOverrides, WriteQosOverridesToString(), m_qosOverridesInfoId);
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMSecurityViewBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                             const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::securityView: m_view->SetRoleBased(SMEnum_bool::string2bool(attrs.getValue(m_tags->isRoleBased))); break;
    case Tag::name:
    case Tag::description:
        CollectText();
        m_locale = attrs.getValue(m_tags->locale);
        break;
    case Tag::set:
        m_set = SMSecurityDefinitionSet2();
        m_set.includeRule = EnumOf<SMEnum_includeRule>(attrs.getValue(m_tags->includeRule));
        break;
    case Tag::refobj:
    case Tag::viewref:
    case Tag::functionId:
    case Tag::functionSetId:
    case Tag::qosLevel: CollectText(); break;
    case Tag::access: m_view->SetAccess(KeepXml(m_tags->access, attrs)); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::definition:
    case Tag::functionSet:
    case Tag::functionSets:
    case Tag::qosOverrides:
    case Tag::qosOverride: break;
    default: LogUnknownStart(BUILDER_WORDS.module, BUILDER_WORDS.className, "realStartElement", localName);
    }
}

void SMSecurityViewBuilder::AddRef(SMSecurityDefinitionSet2::ERefTag tag) {
    m_set.refTag = tag;  // in a mixed set the last one decides for all
    m_set.refs.push_back(m_text);
}

void SMSecurityViewBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::securityView:
    case Tag::definition:
    case Tag::functionSet:
    case Tag::functionSets:
    case Tag::qosOverrides: break;
    case Tag::name: m_view->AddName(m_locale, m_text); break;
    case Tag::description: m_override.description[m_locale] = m_text; break;
    case Tag::set: m_view->AppendDefinitionSet(m_set); break;
    case Tag::refobj: AddRef(SMSecurityDefinitionSet2::refobj); break;
    case Tag::viewref: AddRef(SMSecurityDefinitionSet2::viewref); break;
    case Tag::functionId: m_override.functionId = m_text; break;
    case Tag::functionSetId: m_view->AppendFunctionSet(m_text); break;
    case Tag::qosLevel: m_override.qosLevel = m_text; break;
    case Tag::qosOverride:
        m_view->AppendQosOverride(m_override);
        m_override = SMQosOverride2();  // the next one must not inherit what its element leaves out
        break;
    case Tag::property: EndProperty(*m_view); break;
    default: LogUnknownStart(BUILDER_WORDS.module, BUILDER_WORDS.className, "realEndElement", localName);
    }
}

}  // namespace schema_002_000
