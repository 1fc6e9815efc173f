#include "objects/query/smqueryitemtype2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "objects/base/getfromvector_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMLogWords WORDS = {"smqueryitemtype2", "SMQueryItemType2"};
const QvULString COL_QS_ITEM_TYPE_NAME = SMColumn("QS_ITEM_TYPE_NAME");
/** The kind under which roles are asked for. */
const I18NString KIND_ROLE = I18NString::Immortal("roles/role");

/** Whether precision and scale say something about a type. */
bool HasPrecision(SMEnum_datatype::Enum datatype) {
    switch (static_cast<int>(datatype)) {
    case SMEnum_datatype::int16:
    case SMEnum_datatype::int32:
    case SMEnum_datatype::int64:
    case SMEnum_datatype::decimal:
    case SMEnum_datatype::numeric:
    case SMEnum_datatype::float_:
    case SMEnum_datatype::float32:
    case SMEnum_datatype::float64:
    case SMEnum_datatype::date:
    case SMEnum_datatype::dateTime:
    case SMEnum_datatype::character:
    case SMEnum_datatype::characterLength16:
    case SMEnum_datatype::characterLength32:
    case SMEnum_datatype::nChar:
    case SMEnum_datatype::nVarChar: return true;
    default: return false;
    }
}

template <class Field, class Value>
bool Change(Field& field, Value value) {
    if (static_cast<Value>(field) == value) return false;
    field = value;
    return true;
}

}  // namespace

SMQueryItemType2::~SMQueryItemType2() {
    if (!rare) return;
    SMOrphanAll(rare->roles);
    SMOrphan(rare->promptInfo);
}

// ---- memory

const SMQueryItemType2::RareFields& SMQueryItemType2::NoRareFields() {
    static const RareFields none;
    return none;
}

SMQueryItemType2::RareFields& SMQueryItemType2::EditRare() {
    if (!rare) rare = std::make_unique<RareFields>();
    return *rare;
}

void SMQueryItemType2::SetPromptInfo(SMPromptInfo2* prompt) {
    if (rare || prompt) SMReplaceChild(EditRare().promptInfo, prompt);
}

SMPromptInfo2* SMQueryItemType2::AddOrUpdatePromptInfo(SMEnum_promptType::Enum type, SMQueryItem2* display, SMQueryItem2* filter,
                                                       SMQueryItem2* cascadeOn) {
    bool changed = false;
    if (!GetPromptInfo()) {
        SetPromptInfo(new SMPromptInfo2(this, m_project));
        changed = true;
    }
    SMPromptInfo2* prompt = GetPromptInfo();
    changed |= prompt->SetPromptType(EnumText<SMEnum_promptType>(type));
    if (display) changed |= prompt->SetPromptDisplayItemRef(display->GetSMID(false));
    if (filter) changed |= prompt->SetPromptFilterItemRef(filter->GetSMID(false));
    if (cascadeOn) changed |= prompt->SetPromptCascadeOnRef(cascadeOn->GetSMID(false));
    if (changed) SetLastChangedDateToNow();
    return prompt;
}

bool SMQueryItemType2::HasRole(SMEnum_role::Enum role) const {
    return GetFromVectorByName(GetRoles(), EnumText<SMEnum_role>(role)) != nullptr;
}

void SMQueryItemType2::AddRoleOfType(SMEnum_role::Enum role) {
    if (HasRole(role)) return;
    const QvSmartPtr<SMRole2> added = new SMRole2(this, m_project);
    added->ChangeDefaultName(EnumText<SMEnum_role>(role));
    AddRole(added);
}

void SMQueryItemType2::RemoveRoleOfType(SMEnum_role::Enum role) {
    if (const SMRole2* found = GetFromVectorByName(GetRoles(), EnumText<SMEnum_role>(role))) SMOrphan(EditRare().roles.Take(found));
}

void SMQueryItemType2::SetBasicProperties(SMEnum_usage::Enum newUsage, SMEnum_datatype::Enum newDatatype, long newPrecision, long newScale,
                                          long newSize, bool isNullable, SMEnum_aggregationRule::Enum newRegularAggregate,
                                          SMEnum_aggregationRule::Enum newSemiAggregate) {
    bool changed = Change(usage, newUsage);
    changed |= Change(datatype, newDatatype);
    changed |= Change(precision, newPrecision);
    changed |= Change(scale, newScale);
    changed |= Change(size, newSize);
    changed |= Change(nullable, isNullable);
    changed |= Change(regularAggregate, newRegularAggregate);
    changed |= Change(semiAggregate, newSemiAggregate);
    if (changed) SetLastChangedDateToNow();
}

bool SMQueryItemType2::CopyBasicProperties(const SMQueryItem2& other) {
    SetBasicProperties(other.GetUsage(), other.GetEnumDatatype(), other.GetPrecision(), other.GetScale(), other.GetSize(),
                       other.IsNullable(), other.GetRegularAggregate(), other.GetSemiAggregate());
    for (const auto& entry : other.GetDescriptions()) AddDescription(entry.first, entry.second);
    for (const auto& entry : other.GetScreenTips()) AddScreenTip(entry.first, entry.second);
    return true;
}

void SMQueryItemType2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    if (SMPromptInfo2* prompt = GetPromptInfo()) children.push_back(prompt);
    for (const auto& role : GetRoles()) children.push_back(role);
}

void SMQueryItemType2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (expression) expression->RegenerateIds(idMap);
    for (const auto& role : GetRoles()) role->RegenerateIds(idMap);
    if (SMPromptInfo2* prompt = GetPromptInfo()) prompt->RegenerateIds();
    SMNamedObject2::RegenerateIds(idMap);
}

void SMQueryItemType2::RenameObjects(SMRenameList2& list) {
    if (expression) expression->RenameObjects(list);
    if (SMPromptInfo2* prompt = GetPromptInfo()) prompt->RenameObjects(list);
}

void SMQueryItemType2::SetSMProject(SMProject2* project) {
    for (const auto& role : GetRoles()) role->SetSMProject(project);
    if (SMPromptInfo2* prompt = GetPromptInfo()) prompt->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMQueryItemType2::AddToSetPIDIDAndMiniObject() {
    for (const auto& role : GetRoles()) m_project->AddToSetPIDIDAndMiniObject(role);
    if (SMPromptInfo2* prompt = GetPromptInfo()) m_project->AddToSetPIDIDAndMiniObject(prompt);
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_tags->property, static_cast<int>(m_propertyVersion),
                                         WritePropertiesToString());
}

// ---- document

void SMQueryItemType2::WritePromptInfo(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    if (const SMPromptInfo2* prompt = GetPromptInfo()) prompt->WriteXMLElement(handler, target);
}

void SMQueryItemType2::WriteRoles(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    if (GetRoles().empty()) return;
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->id, GetRolesId());
    StartElement(handler, m_tags->roles, attrs);
    for (const auto& role : GetRoles()) role->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->roles);
}

void SMQueryItemType2::WriteXMLElementChildren(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    WriteCommonElements(handler);
    WriteKept(expression, target);
    TextElementIfSet(handler, m_tags->externalName, externalName);
    FlagElementIfTrue(handler, m_tags->hidden, hidden);
    TextElementIfSet(handler, m_tags->usage, EnumText(usage));
    TextElementIfSet(handler, m_tags->format, GetFormat());
    TextElementIfSet(handler, m_tags->currency, GetCurrency());
    TextElementIfSet(handler, m_tags->datatype, EnumText(datatype));
    if (HasPrecision(datatype)) {
        NumberElement(handler, m_tags->precision, precision);
        NumberElement(handler, m_tags->scale, scale);
    }
    NumberElement(handler, m_tags->size, size);
    FlagElementIfTrue(handler, m_tags->nullable, nullable);
    TextElementIfSet(handler, m_tags->aggregationRule, EnumText(aggregationRule));
    TextElementIfSet(handler, m_tags->displayType, EnumText(displayType));
    TextElementIfSet(handler, m_tags->mimeType, GetMimeType());
    WritePromptInfo(handler, target);
    TextElementIfSet(handler, m_tags->regularAggregate, EnumText(regularAggregate));
    TextElementIfSet(handler, m_tags->semiAggregate, EnumText(semiAggregate));
    TextElementIfSet(handler, m_tags->sortOnRef, GetSortOnRef());
    FlagElementIfTrue(handler, m_tags->unSortable, unSortable);
    TextElementIfSet(handler, m_tags->sort, EnumText(sort));
    WriteRoles(handler, target);
    TextElementIfSet(handler, m_tags->collationSequenceName, GetCollationSequenceName());
    if (GetCollationSequenceLevel() != 0) NumberElement(handler, m_tags->collationSequenceLevel, GetCollationSequenceLevel());
    TextElementIfSet(handler, m_tags->originalCollationSequenceName, GetOriginalCollationSequenceName());
    TextElementIfSet(handler, m_tags->originalEncodingName, GetOriginalEncodingName());
}

// ---- repository

void SMQueryItemType2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_QS_ITEM_TYPE_NAME, GetQueryItemTypeName());
}

void SMQueryItemType2::ReadRareIfPresent(const IOParameter& row, const QvULString& key, QvULString RareFields::*field) {
    if (const auto value = IfPresent(row, key)) SetRare(field, value->GetQvULStringValue());
}

void SMQueryItemType2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        ReadIfPresent(row, m_tags->hidden, hidden);
        ReadIfPresent(row, m_tags->nullable, nullable);
        ReadIfPresent(row, m_tags->unSortable, unSortable);
        ReadIfPresent(row, m_tags->externalName, externalName);
        ReadRareIfPresent(row, m_tags->format, &RareFields::format);
        ReadRareIfPresent(row, m_tags->currency, &RareFields::currency);
        ReadRareIfPresent(row, m_tags->mimeType, &RareFields::mimeType);
        ReadRareIfPresent(row, m_tags->sortOnRef, &RareFields::sortOnRef);
        ReadIfPresent(row, m_tags->precision, precision);
        ReadIfPresent(row, m_tags->scale, scale);
        ReadIfPresent(row, m_tags->size, size);
        ReadIfPresent(row, m_tags->usage, usage);
        ReadIfPresent(row, m_tags->datatype, datatype);
        ReadIfPresent(row, m_tags->aggregationRule, aggregationRule);
        ReadIfPresent(row, m_tags->displayType, displayType);
        ReadIfPresent(row, m_tags->regularAggregate, regularAggregate);
        ReadIfPresent(row, m_tags->semiAggregate, semiAggregate);
        // the column holds a number and is read as a word: nothing comes back, and nothing must be raised
        if (const auto value = IfPresent(row, m_tags->sort))
            sort = value->GetKind() == IOParameter::kindString ? EnumOf<SMEnum_sort>(value->GetQvStringValue()) : SMEnum_sort::Enum(-1);
        ReadKeptXmlIfPresent(row, m_tags->expression, expression);
    });
}

bool SMQueryItemType2::read(IOHelper& helper) {
    SMQueryItemTypeBuilder builder(this);
    return read_custom_property_locale(helper, this, &builder) &&
           ReadChildren<SMPromptInfo2>(helper, m_tags->promptInfo, [&](SMPromptInfo2* prompt) { SetPromptInfo(prompt); }) &&
           ReadChildren<SMRole2>(helper, KIND_ROLE, [&](SMRole2* role) { AddRole(role); });
}

// ---- builder

void SMQueryItemTypeBuilder::StartPromptInfo() {
    auto* prompt = new SMPromptInfo2(m_item, m_item->GetSMProject());
    m_item->SetPromptInfo(prompt);
    Push(new SMPromptInfoBuilder(prompt));
}

void SMQueryItemTypeBuilder::StartRole() {
    auto* role = new SMRole2(m_item, m_item->GetSMProject());
    m_item->AddRole(role);
    Push(new SMRoleBuilder(role));
}

void SMQueryItemTypeBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                               const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::expression: m_item->SetExpression(KeepXml(m_tags->expression, attrs)); break;
    case Tag::promptInfo: StartPromptInfo(); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::role: StartRole(); break;
    case Tag::roles: m_item->SetRolesId(attrs.getValue(m_tags->id)); break;
    case Tag::externalName:
    case Tag::hidden:
    case Tag::usage:
    case Tag::format:
    case Tag::currency:
    case Tag::datatype:
    case Tag::precision:
    case Tag::scale:
    case Tag::size:
    case Tag::nullable:
    case Tag::aggregationRule:
    case Tag::displayType:
    case Tag::mimeType:
    case Tag::regularAggregate:
    case Tag::semiAggregate:
    case Tag::sortOnRef:
    case Tag::unSortable:
    case Tag::sort:
    case Tag::collationSequenceName:
    case Tag::collationSequenceLevel:
    case Tag::originalCollationSequenceName:
    case Tag::originalEncodingName: CollectText(); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMQueryItemTypeBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::property: EndProperty(*m_item); break;
    case Tag::roles: break;
    case Tag::externalName: m_item->SetExternalName(m_text); break;
    case Tag::hidden: m_item->SetHidden(TextAsBool()); break;
    case Tag::usage: m_item->SetUsage(TextAsEnum<SMEnum_usage>()); break;
    case Tag::format: m_item->SetFormat(m_text); break;
    case Tag::currency: m_item->SetCurrency(m_text); break;
    case Tag::datatype: m_item->SetDatatype(TextAsEnum<SMEnum_datatype>()); break;
    case Tag::precision: m_item->SetPrecision(TextAsLong()); break;
    case Tag::scale: m_item->SetScale(TextAsLong()); break;
    case Tag::size: m_item->SetSize(TextAsLong()); break;
    case Tag::nullable: m_item->SetNullable(TextAsBool()); break;
    case Tag::aggregationRule: m_item->SetAggregationRule(TextAsEnum<SMEnum_aggregationRule>()); break;
    case Tag::displayType: m_item->SetDisplayType(TextAsEnum<SMEnum_displayType>()); break;
    case Tag::mimeType: m_item->SetMimeType(m_text); break;
    case Tag::regularAggregate: m_item->SetRegularAggregate(TextAsEnum<SMEnum_aggregationRule>()); break;
    case Tag::semiAggregate: m_item->SetSemiAggregate(TextAsEnum<SMEnum_aggregationRule>()); break;
    case Tag::sortOnRef: m_item->SetSortOnRef(m_text); break;
    case Tag::unSortable: m_item->SetUnSortable(TextAsBool()); break;
    case Tag::sort: m_item->SetSort(TextAsEnum<SMEnum_sort>()); break;
    case Tag::collationSequenceName: m_item->SetCollationSequenceName(m_text); break;
    case Tag::collationSequenceLevel: m_item->SetCollationSequenceLevel(TextAsLong()); break;
    case Tag::originalCollationSequenceName: m_item->SetOriginalCollationSequenceName(m_text); break;
    case Tag::originalEncodingName: m_item->SetOriginalEncodingName(m_text); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
