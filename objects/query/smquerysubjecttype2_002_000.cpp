#include "objects/query/smquerysubjecttype2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smdefinition2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_QUERY_SUBJECT", "QS_ID", "QS_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smquerysubjecttype2", "SMQuerySubjectType2"};
const QvULString COL_EXTERNALIZEAUTOSUMMARY = SMColumn("EXTERNALIZEAUTOSUMMARY");
const QvULString COL_STATUS = SMColumn("STATUS");
const QvULString COL_EXTERNALIZEMETHOD = SMColumn("EXTERNALIZEMETHOD");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
/** The kind under which definitions are asked for: the tag and "2". */
const I18NString KIND_DEFINITION = I18NString::Immortal("definition2");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMQuerySubjectType2, TABLE)

SMQuerySubjectType2::SMQuerySubjectType2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns)
    : SMNameDescObject2(owner, project), ownerNamespace(ns) {}

SMQuerySubjectType2::~SMQuerySubjectType2() {
    SMOrphan(definition);
}

// ---- memory

void SMQuerySubjectType2::SetDefinition(SMDefinition2* newDefinition) {
    SMReplaceChild(definition, newDefinition);
}

I18NString SMQuerySubjectType2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, GetContainingNamespaceName(), GetName(), EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMQuerySubjectType2::SetSMProject(SMProject2* project) {
    if (definition) definition->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMQuerySubjectType2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    if (definition) children.push_back(definition);
}

void SMQuerySubjectType2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    filters.RegenerateIds(idMap);
    if (definition) definition->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMQuerySubjectType2::RenameObjects(SMRenameList2& list) {
    filters.RenameObjects(list);
    if (definition) definition->RenameObjects(list);
}

void SMQuerySubjectType2::AddToSetPIDIDAndMiniObject() {
    if (definition) {
        m_project->AddToSetPIDIDAndMiniObject(definition);
        definition->AddToSetPIDIDAndMiniObject();
    }
    // the fragment "levels" is left out, as it has always been
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), hierarchiesXml);
    const auto add = [&](const I18NString& tag, long version, const I18NString& text) {
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), tag, static_cast<int>(version), text);
    };
    if (!filters.Previews().empty()) add(m_tags->previewFilters, previewFiltersSeq, WritePreviewFiltersToString());
    if (!filters.Securities().empty()) add(m_tags->securityFilters, securityFiltersSeq, WriteSecurityFiltersToString());
    add(m_tags->property, m_propertyVersion, WritePropertiesToString());
}

// ---- document

void SMQuerySubjectType2::WriteXMLElementChildren(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    WriteCommonElements(handler);
    if (definition)
        definition->WriteXMLElement(handler, target);
    else
        SMLog(SM_MISUSE, WORDS, "WriteXMLElementChildren", "SMQuerySubject with missing definition.");
    TextElementIfSet(handler, m_tags->externalizeMethod, EnumText<SMEnum_externalizeMethod>(externalizeMethod));
    FlagElementIfTrue(handler, m_tags->externalizeAutoSummary, externalizeAutoSummary);
}

// ---- repository

void SMQuerySubjectType2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.FlagIfTrue(COL_EXTERNALIZEAUTOSUMMARY, externalizeAutoSummary);
    row.TextIfSet(COL_STATUS, EnumText<SMEnum_status>(status));
    row.TextIfSet(COL_EXTERNALIZEMETHOD, EnumText<SMEnum_externalizeMethod>(externalizeMethod));
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMQuerySubjectType2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        ReadIfPresent(row, m_tags->externalizeAutoSummary, externalizeAutoSummary);
        ReadEnumIfPresent<SMEnum_status>(row, m_tags->status, status);
        ReadEnumIfPresent<SMEnum_externalizeMethod>(row, m_tags->externalizeMethod, externalizeMethod);
        ReadIfPresent(row, IOParamTag::OBJECT_TYPE, objectType);
    });
}

bool SMQuerySubjectType2::ReadDefinition(IOHelper& helper) {
    QvSmartPtr<IOArrayParam> rows;
    if (!SelectRows(helper, KIND_DEFINITION, rows)) return false;
    for (int i = 0; i < rows->Size(); ++i) {
        const QvSmartPtr<SMDefinition2> read = new SMDefinition2(this, m_project);
        read->constructFromIOParameter(*rows->At(i), objectType);
        helper.doReadAddToMiniObjectMap(read);
        SetDefinition(read);
        if (!read->read(helper)) return false;
    }
    return true;
}

bool SMQuerySubjectType2::read(IOHelper& helper) {
    SMQuerySubjectTypeBuilder builder(this);
    return read_custom_property_locale(helper, this, &builder) && ReadKeptInfo(helper, hierarchiesXml, m_tags->hierarchies) &&
           ReadKeptInfo(helper, levelsXml, m_tags->levels) && ReadDefinition(helper);
}

bool SMQuerySubjectType2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMQuerySubjectType2::write_next(IOHelper& helper) {
    return write_custom_property_locale(helper) && (!definition || definition->write(helper)) && WriteKeptInfo(helper, hierarchiesXml) &&
           WriteKeptInfo(helper, levelsXml) &&
           (filters.Previews().empty() ||
            write_remaining_info(helper, m_tags->previewFilters, WritePreviewFiltersToString(), previewFiltersSeq)) &&
           (filters.Securities().empty() ||
            write_remaining_info(helper, m_tags->securityFilters, WriteSecurityFiltersToString(), securityFiltersSeq));
}

// ---- builder

void SMQuerySubjectTypeBuilder::StartDefinition(const QvXMLAttributes& attrs) {
    auto* definition = new SMDefinition2(m_subject, m_subject->GetSMProject());
    definition->SetId(attrs.getValue(m_tags->id));
    m_subject->SetDefinition(definition);
    Push(new SMDefinitionBuilder(definition));
}

bool SMQuerySubjectTypeBuilder::StartFilter(Tag tag, const QvXMLAttributes& attrs) {
    switch (m_filters.Start(tag, attrs)) {
    case SMFilterStep::notMine: return tag == Tag::expression;  // outside filters it has no effect, and is not logged
    case SMFilterStep::collect: CollectText(); break;
    case SMFilterStep::keep: m_filters.SetExpression(KeepXml(m_tags->expression, attrs)); break;
    case SMFilterStep::done: break;
    }
    return true;
}

void SMQuerySubjectTypeBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                                  const QvXMLAttributes& attrs) {
    if (StartFilter(tag, attrs)) return;
    switch (tag) {
    case Tag::definition: StartDefinition(attrs); break;
    case Tag::hierarchies: m_subject->hierarchiesXml = KeepXml(m_tags->hierarchies, attrs); break;
    case Tag::levels: m_subject->levelsXml = KeepXml(m_tags->levels, attrs); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::externalizeMethod:
    case Tag::externalizeAutoSummary: CollectText(); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMQuerySubjectTypeBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    if (m_filters.End(tag, m_text)) return;
    switch (tag) {
    case Tag::externalizeMethod: m_subject->SetExternalizeMethod(TextAsEnum<SMEnum_externalizeMethod>()); break;
    case Tag::externalizeAutoSummary: m_subject->SetExternalizeAutoSummary(TextAsBool()); break;
    case Tag::property: EndProperty(*m_subject); break;
    case Tag::expression:
    case Tag::refobj:
    case Tag::hierarchies:
    case Tag::levels: break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
