#include "objects/dimensional/smlevel2_002_000.h"

#include "objects/project/smproject2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_LEVEL", "LEVEL_ID", "LEVEL_VERSION_NO", "HIERARCHY_ID", "HIERARCHY_VERSION_NO"};
const SMLogWords WORDS = {"smlevel2", "SMLevel2"};
const QvULString COL_HIDDEN = SMColumn("HIDDEN");
const QvULString COL_ISUNIQUE = SMColumn("ISUNIQUE");
const QvULString COL_EXTERNALNAME = SMColumn("EXTERNALNAME");
const QvULString COL_EXTERNALORDINAL = SMColumn("EXTERNALORDINAL");
const QvULString COL_ISMANUAL = SMColumn("ISMANUAL");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMLevel2, TABLE)

SMLevel2::SMLevel2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

SMLevel2::~SMLevel2() {
    SMOrphanAll(m_queryItems);
    SMOrphanAll(m_queryItemFolders);
}

// ---- memory

void SMLevel2::SetExternalOrdinal(int ordinal) {
    if (ordinal >= 0) m_externalOrdinal = ordinal;
}

I18NString SMLevel2::GetSMID(bool escape) const {
    const SMObjectBase* hierarchy = GetContainingObjectOfType(Tag::hierarchy, Tag(-1));
    if (!hierarchy) {
        SMLog(SM_FAILURE, WORDS, "GetSMID", "Attempting to build an SM ID for a level that is not inside a hierarchy.");
        return I18NString();
    }
    I18NString smid = hierarchy->GetSMID(escape);
    AppendToSMObjectID(escape, smid, GetName());
    return smid;
}

void SMLevel2::AddQueryItem(SMQueryItem2* item) {
    m_queryItems.Append(item);
    m_displayOrder.Append(item);
}

void SMLevel2::AddQueryItemFolder(SMQueryItemFolder2* folder) {
    m_queryItemFolders.Append(folder);
    m_displayOrder.Append(folder);
}

SMQueryItem2* SMLevel2::GetQueryItemByName(const I18NString& name) const {
    return m_queryItems.Find(name.utf8(), *this);
}

SMQueryItem2* SMLevel2::GetQueryItemByWHOID(const I18NString& whoid) const {
    return whoid.empty() ? nullptr : m_queryItems.FindBySecond(whoid.utf8(), *this);
}

SMQueryItem2* SMLevel2::FindItem(const I18NString& name) const {
    if (SMQueryItem2* item = GetQueryItemByName(name)) return item;
    for (const auto& folder : m_queryItemFolders)
        if (SMQueryItem2* item = folder->GetQueryItemByName(name)) return item;
    return nullptr;
}

SMQueryItem2* SMLevel2::AddOrReturnExistingSMQueryItem(const I18NString& name) {
    if (SMQueryItem2* item = GetQueryItemByName(name)) return item;
    auto* item = new SMQueryItem2(this, m_project);
    const QvSmartPtr<SMQueryItem2> held = item;
    item->ChangeDefaultName(name);
    item->displayOrder = TakeDisplayOrder();
    AddQueryItem(item);
    if (m_project) m_project->RecordObject(item);
    return item;
}

SMQueryItem2* SMLevel2::AddOrUpdateSMQueryItem(const I18NString& name, const I18NString& expression, SMEnum_usage::Enum usage,
                                               SMEnum_datatype::Enum datatype, int precision, int scale, int size, bool nullable,
                                               SMEnum_aggregationRule::Enum regularAggregate, SMEnum_aggregationRule::Enum semiAggregate) {
    SMQueryItem2* item = FindItem(name);
    if (!item) {
        item = new SMQueryItem2(this, m_project);
        const QvSmartPtr<SMQueryItem2> held = item;
        item->ChangeDefaultName(name);
        AddQueryItem(item);
        if (m_project) m_project->RecordObject(item);
    }
    item->SetBasicProperties(usage, datatype, precision, scale, size, nullable, regularAggregate, semiAggregate);
    item->SetDescription(name);  // the name on purpose, not the expression
    item->ChangeDefaultScreenTip(name);
    if (SMXMLObject2* present = item->GetExpression()) {
        if (present->ChangeInnerXML(expression.c_str())) item->SetLastChangedDateToNow();
        return item;
    }
    item->SetExpression(new SMXMLObject2(m_tags->expression, expression, true));
    item->SetLastChangedDateToNow();
    return item;
}

void SMLevel2::DeleteQueryItemById(const I18NString& itemId) {
    SMDeleteTypedById(m_queryItems, m_displayOrder, itemId);
}

void SMLevel2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& item : m_queryItems) children.push_back(item);
    for (const auto& folder : m_queryItemFolders) children.push_back(folder);
}

void SMLevel2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& item : m_queryItems) item->RegenerateIds(idMap);
    for (const auto& folder : m_queryItemFolders) folder->RegenerateIds(idMap);
    if (m_memberSort) m_memberSort->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMLevel2::RenameObjects(SMRenameList2& list) {
    for (const auto& item : m_queryItems) item->RenameObjects(list);
    for (const auto& folder : m_queryItemFolders) folder->RenameObjects(list);
}

void SMLevel2::SetSMProject(SMProject2* project) {
    for (const auto& item : m_queryItems) item->SetSMProject(project);
    for (const auto& folder : m_queryItemFolders) folder->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMLevel2::AddToSetPIDIDAndMiniObject() {
    const auto enter = [&](const auto& children) {
        for (const auto& child : children) {
            m_project->AddToSetPIDIDAndMiniObject(child);
            child->AddToSetPIDIDAndMiniObject();
        }
    };
    enter(m_queryItems);
    enter(m_queryItemFolders);
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_memberSort);
}

// ---- document

void SMLevel2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->level);
    WriteCommonElements(handler);
    FlagElementIfTrue(handler, m_tags->hidden, m_hidden);
    FlagElementIfTrue(handler, m_tags->isUnique, m_isUnique);
    NumberElementIfSet(handler, m_tags->externalOrdinal, m_externalOrdinal);
    TextElementIfSet(handler, m_tags->externalName, m_externalName);
    FlagElement(handler, m_tags->isManual, m_isManual);
    for (const SMObjectBase* child : m_displayOrder.Items())
        if (child) child->WriteXMLElement(handler, target);
    WriteKept(m_memberSort, target);
    EndElement(handler, m_tags->level);
}

// ---- repository

void SMLevel2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Flag(COL_HIDDEN, m_hidden);
    row.Flag(COL_ISUNIQUE, m_isUnique);
    row.Text(COL_EXTERNALNAME, m_externalName);
    row.NumberIfSet(COL_EXTERNALORDINAL, m_externalOrdinal);
    row.Flag(COL_ISMANUAL, m_isManual);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMLevel2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        m_hidden = FlagOf(row, m_tags->hidden);
        m_isUnique = FlagOf(row, m_tags->isUnique);
        m_externalName = TextOf(row, m_tags->externalName);
        ReadIfPresent(row, m_tags->externalOrdinal, m_externalOrdinal);
        m_isManual = FlagOf(row, m_tags->isManual);
    });
}

bool SMLevel2::read(IOHelper& helper) {
    if (!ReadChildren<SMQueryItem2>(helper, m_tags->queryItem, [&](SMQueryItem2* item) { AddQueryItem(item); }) ||
        !ReadChildren<SMQueryItemFolder2>(helper, m_tags->queryItemFolder,
                                          [&](SMQueryItemFolder2* folder) { AddQueryItemFolder(folder); }) ||
        !ReadKeptInfo(helper, m_memberSort, m_tags->memberSort))
        return false;
    SortDisplayOrder();
    return true;
}

bool SMLevel2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMLevel2::write_next(IOHelper& helper) {
    const auto writeAll = [&](const auto& children, const char* failure) {
        for (const auto& child : children) {
            if (child->write(helper)) continue;
            SMLog(SM_FAILURE, WORDS, "write_next", failure);
            return false;
        }
        return true;
    };
    return writeAll(m_queryItems, "Failed to write a queryitem of a level.") &&
           writeAll(m_queryItemFolders, "Failed to write a queryitemfolder of a level.") && WriteKeptInfo(helper, m_memberSort);
}

// ---- builder

void SMLevelBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::queryItem: {
        auto* item = new SMQueryItem2(m_level, m_level->GetSMProject());
        item->displayOrder = m_level->TakeDisplayOrder();
        m_level->AddQueryItem(item);
        Push(new SMQueryItemBuilder(item));
        break;
    }
    case Tag::queryItemFolder: {
        auto* folder = new SMQueryItemFolder2(m_level, m_level->GetSMProject());
        folder->displayOrder = m_level->TakeDisplayOrder();
        m_level->AddQueryItemFolder(folder);
        Push(new SMQueryItemFolderBuilder(folder));
        break;
    }
    case Tag::level: break;
    case Tag::memberSort: m_level->m_memberSort = KeepXml(m_tags->memberSort, attrs); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::hidden:
    case Tag::isUnique:
    case Tag::isManual:
    case Tag::externalName:
    case Tag::externalOrdinal: CollectText(); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMLevelBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::level: m_level->SortDisplayOrder(); break;
    case Tag::property: EndProperty(*m_level); break;
    case Tag::hidden: m_level->SetHidden(TextAsBool()); break;
    case Tag::isUnique: m_level->SetIsUnique(TextAsBool()); break;
    case Tag::isManual: m_level->SetIsManual(TextAsBool()); break;
    case Tag::externalName: m_level->SetExternalName(m_text); break;
    case Tag::externalOrdinal: m_level->SetExternalOrdinal(TextAsInt()); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
