#include "objects/dimensional/smmeasure2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "core/qvutils/text/qvstringformat.h"
#include "objects/base/smreadguard_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMLogWords WORDS = {"smmeasure2", "SMMeasure2"};
const SMLogWords ID_WORDS = {"smeasure2", "SMMeasure2"};  // so spelled in the log
// column and key are misspelled in the stored schema
const QvULString COL_ISHIERARCHIAL = SMColumn("ISHIERARCHIAL");
const QvULString KEY_ISHIERARCHIAL = QvULString::Immortal("isHierarchial");

}  // namespace

SMMeasure2::~SMMeasure2() {
    SMOrphanAll(m_measures);
}

// ---- memory

I18NString SMMeasure2::GetSMID(bool escape) const {
    const SMObjectBase* dimension = GetContainingObjectOfType(Tag::dimension, Tag(-1));
    if (!dimension) {
        SMLog(SM_FAILURE, ID_WORDS, "GetSMID", "Attempting to build an SM ID for a measure that is not inside a dimension.");
        return I18NString();
    }
    I18NString smid = dimension->GetSMID(escape);
    AppendToSMObjectID(escape, smid, GetName());
    return smid;
}

void SMMeasure2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& measure : m_measures) measure->RegenerateIds(idMap);
    if (m_aggregateRules) m_aggregateRules->RegenerateIds(idMap);
    SMQueryItem2::RegenerateIds(idMap);
}

void SMMeasure2::RenameObjects(SMRenameList2& list) {
    SMQueryItem2::RenameObjects(list);
    if (m_aggregateRules) m_aggregateRules->RenameObjects(list);
}

void SMMeasure2::SetSMProject(SMProject2* project) {
    for (const auto& measure : m_measures) measure->SetSMProject(project);
    SMQueryItem2::SetSMProject(project);
}

void SMMeasure2::AddToSetPIDIDAndMiniObject() {
    SMQueryItem2::AddToSetPIDIDAndMiniObject();
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_aggregateRules);
    for (const auto& measure : m_measures) {
        m_project->AddToSetPIDIDAndMiniObject(measure);
        measure->AddToSetPIDIDAndMiniObject();
    }
}

void SMMeasure2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    SMQueryItem2::getChildObjects(children);
    for (const auto& measure : m_measures) children.push_back(measure);
}

// ---- document

void SMMeasure2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    I18NString version;
    QvStringFormat::GetInstance()->_num2string(GetVersionNo(), version);
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->version, version);
    StartElement(handler, m_tags->measure, attrs);
    WriteXMLElementChildren(handler, target);
    WriteKept(m_aggregateRules, target);
    FlagElementIfTrue(handler, m_tags->isHierarchical, m_isHierarchical);
    for (const auto& measure : m_measures) measure->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->measure);
}

// ---- repository

bool SMMeasure2::IsMeasureRow(const IOParameter& row) {
    const auto type = IfPresent(row, IOParamTag::OBJECT_TYPE);
    return type && type->GetQvStringValue() == SMEnum_xmltag::GetInstance()->measure;
}

void SMMeasure2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMQueryItem2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_ISHIERARCHIAL, SMEnum_bool::bool2string(m_isHierarchical));
}

void SMMeasure2::constructFromIOParameter(const IOParameter& row) {
    SMQueryItem2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        if (const auto value = IfPresent(row, KEY_ISHIERARCHIAL)) m_isHierarchical = SMEnum_bool::string2bool(value->GetQvStringValue());
    });
}

bool SMMeasure2::read(IOHelper& helper) {
    if (!SMQueryItem2::read(helper) || !ReadKeptInfo(helper, m_aggregateRules, m_tags->aggregateRules)) return false;
    return ReadGuarded(WORDS, "read", [&] {
        return ReadChildrenIf<SMMeasure2>(helper, m_tags->measure, IsMeasureRow, [&](SMMeasure2* measure) { AppendMeasure(measure); });
    });
}

bool SMMeasure2::write_next(IOHelper& helper) {
    if (!SMQueryItem2::write_next(helper) || !WriteKeptInfo(helper, m_aggregateRules)) return false;
    for (const auto& measure : m_measures) {
        if (measure->write(helper)) continue;
        SMLog(SM_FAILURE, WORDS, "write_next", "Failed to write a measure child of a measure", measure->GetId());
        return false;
    }
    return true;
}

// ---- builder

void SMMeasureBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::aggregateRules: m_measure->m_aggregateRules = KeepXml(m_tags->aggregateRules, attrs); break;
    case Tag::measure: {
        auto* nested = new SMMeasure2(m_measure, m_measure->GetSMProject());
        m_measure->AppendMeasure(nested);
        Push(new SMMeasureBuilder(nested));
        break;
    }
    case Tag::isHierarchical: CollectText(); break;
    default: SMQueryItemTypeBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMMeasureBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::measure: break;
    case Tag::isHierarchical: m_measure->SetIsHierarchical(TextAsBool()); break;
    default: SMQueryItemTypeBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
