#include "objects/dimensional/smhierarchy2_002_000.h"

#include "objects/base/smorphan_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_HIERARCHY", "HIERARCHY_ID", "HIERARCHY_VERSION_NO", "QS_ID", "QS_VERSION_NO"};
const SMLogWords WORDS = {"smhierarchy2", "SMHierarchy2"};
const QvULString COL_HIERARCHY_ID = SMColumn("HIERARCHY_ID");
const QvULString COL_QS_ID = SMColumn("QS_ID");
const QvULString COL_HIERARCHY_VERSION_NO = SMColumn("HIERARCHY_VERSION_NO");
const QvULString COL_QS_VERSION_NO = SMColumn("QS_VERSION_NO");
const QvULString COL_EXTERNALNUMBEROFLEVELS = SMColumn("EXTERNALNUMBEROFLEVELS");
const QvULString COL_PARENTCHILD = SMColumn("PARENTCHILD");
const QvULString COL_CARDINALITY = SMColumn("CARDINALITY");
const QvULString COL_SORTEDHIERARCHY = SMColumn("SORTEDHIERARCHY");
const QvULString COL_ROOTMEMBER = SMColumn("ROOTMEMBER");
const QvULString COL_RAGGED = SMColumn("RAGGED");
const QvULString COL_BALANCED = SMColumn("BALANCED");
const QvULString COL_MULTIROOT = SMColumn("MULTIROOT");
const QvULString COL_ISWIDEFAN = SMColumn("ISWIDEFAN");
const QvULString COL_ROOTCAPTION = SMColumn("ROOTCAPTION");
const QvULString COL_ROOTMUN = SMColumn("ROOTMUN");
const QvULString COL_EXTERNALNAME = SMColumn("EXTERNALNAME");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");

/** Puts a new object into a slot. The one before lives on with the display list, which still names it. */
template <class T>
void Replace(QvSmartPtr<T>& slot, T* object, SMDisplayList& list) {
    const QvSmartPtr<T> before = slot;
    slot = object;
    if (before && before.get() != object) list.Detach(before.get());
    list.Append(object);
}

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMHierarchy2, TABLE)

SMHierarchy2::SMHierarchy2(SMObjectBase* owner, SMProject2* project) : SMNestedObject2(owner, project) {}

SMHierarchy2::~SMHierarchy2() {
    SMOrphanAll(m_levels);
    SMOrphan(m_queryItem);
    SMOrphan(m_queryItemFolder);
}

// ---- memory

I18NString SMHierarchy2::GetSMID(bool escape) const {
    const SMObjectBase* dimension = GetContainingObjectOfType(Tag::dimension, Tag(-1));
    if (!dimension) {
        SMLog(SM_FAILURE, WORDS, "GetSMID", "Attempting to build an SM ID for a hierarchy that is not inside a dimension.");
        return I18NString();
    }
    I18NString smid = dimension->GetSMID(escape);
    AppendToSMObjectID(escape, smid, GetName());
    return smid;
}

void SMHierarchy2::AddLevel(SMLevel2* level) {
    m_levels.Append(level);
    m_displayOrder.Append(level);
}

void SMHierarchy2::SetQueryItem(SMQueryItem2* item) {
    Replace(m_queryItem, item, m_displayOrder);
}

void SMHierarchy2::SetQueryItemFolder(SMQueryItemFolder2* folder) {
    Replace(m_queryItemFolder, folder, m_displayOrder);
}

SMLevel2* SMHierarchy2::AddOrUpdateLevel(const I18NString& name, bool isManual) {
    SMLevel2* level = m_levels.Find(name.utf8(), *this);
    if (!level) {
        level = new SMLevel2(this, m_project);
        level->displayOrder = TakeDisplayOrder();
        AddLevel(level);
        level->ChangeDefaultName(name);
    }
    if (level->IsManual() != isManual) {
        level->SetIsManual(isManual);
        level->SetLastChangedDateToNow();
    }
    if (m_project) m_project->RecordObject(level);
    return level;
}

SMLevel2* SMHierarchy2::GetLevelByQvRefId(const I18NString& reference) const {
    return reference.empty() ? nullptr : m_levels.FindBySecond(reference.utf8(), *this);
}

void SMHierarchy2::DeleteLevelByQvRefId(const I18NString& reference) {
    const QvSmartPtr<SMLevel2> level = GetLevelByQvRefId(reference);
    if (!level) return;
    m_displayOrder.RemovePointer(level);
    m_levels.Take(level);
    SMOrphan(level);
}

SMLevel2* SMHierarchy2::GetLevelByTMGCalendarLevelType(int type) const {
    for (const auto& level : m_levels)
        if (level->GetTMGCalendarLevelType() == type) return level;
    return nullptr;
}

void SMHierarchy2::SetRootCaption(const I18NString& caption) {
    AddRootCaption(m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING, caption);
}

QvULString SMHierarchy2::DefaultRootCaption() const {
    const auto found = m_rootCaption.find(m_project ? m_project->GetDefaultLocale() : EMPTY_QVULSTRING);
    return found == m_rootCaption.end() ? EMPTY_QVULSTRING : found->second;
}

void SMHierarchy2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& level : m_levels) children.push_back(level);
    if (m_queryItemFolder) children.push_back(m_queryItemFolder);
    if (m_queryItem) children.push_back(m_queryItem);
}

void SMHierarchy2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& level : m_levels) level->RegenerateIds(idMap);
    if (m_queryItemFolder) m_queryItemFolder->RegenerateIds(idMap);
    if (m_queryItem) m_queryItem->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMHierarchy2::RenameObjects(SMRenameList2& list) {
    for (const auto& level : m_levels) level->RenameObjects(list);
    if (m_queryItemFolder) m_queryItemFolder->RenameObjects(list);
    if (m_queryItem) m_queryItem->RenameObjects(list);
}

void SMHierarchy2::SetSMProject(SMProject2* project) {
    for (const auto& level : m_levels) level->SetSMProject(project);
    if (m_queryItemFolder) m_queryItemFolder->SetSMProject(project);
    if (m_queryItem) m_queryItem->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMHierarchy2::AddToSetPIDIDAndMiniObject() {
    const auto enter = [&](const auto& child) {
        if (!child) return;
        m_project->AddToSetPIDIDAndMiniObject(child);
        child->AddToSetPIDIDAndMiniObject();
    };
    for (const auto& level : m_levels) enter(level);
    enter(m_queryItemFolder);
    enter(m_queryItem);
}

// ---- document

void SMHierarchy2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->hierarchy);
    SMNestedObject2::WriteXMLElement(handler, target);
    if (m_queryItem) m_queryItem->WriteXMLElement(handler, target);
    if (m_queryItemFolder) m_queryItemFolder->WriteXMLElement(handler, target);
    for (const auto& level : m_levels) level->WriteXMLElement(handler, target);
    TextElementIfSet(handler, m_tags->externalName, m_externalName);
    FlagElementIfTrue(handler, m_tags->multiRoot, m_multiRoot);
    if (!m_balanced) FlagElement(handler, m_tags->balanced, false);  // true is the default, and left unwritten
    FlagElementIfTrue(handler, m_tags->ragged, m_ragged);
    TextElementIfSet(handler, m_tags->rootMember, m_rootMember);
    TextElementIfSet(handler, m_tags->rootMUN, m_rootMUN);
    WriteLocaleMap(handler, m_tags->rootCaption, m_rootCaption);
    TextElementIfSet(handler, m_tags->sortedHierarchy, EnumText<SMEnum_sortedHierarchy>(m_sortedHierarchy));
    NumberElementIfSet(handler, m_tags->cardinality, m_cardinality);
    FlagElementIfTrue(handler, m_tags->parentChild, m_parentChild);
    NumberElementIfSet(handler, m_tags->externalNumberOfLevels, m_externalNumberOfLevels);
    FlagElementIfTrue(handler, m_tags->isWideFan, m_isWideFan);
    EndElement(handler, m_tags->hierarchy);
}

// ---- repository

void SMHierarchy2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNestedObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_HIERARCHY_ID, GetId());
    row.Text(COL_QS_ID, parent ? parent->GetId() : EMPTY_QVULSTRING);
    row.Number(COL_HIERARCHY_VERSION_NO, GetVersionNo());
    row.Number(COL_QS_VERSION_NO, parent ? parent->GetVersionNo() : 0);
    row.Number(COL_EXTERNALNUMBEROFLEVELS, m_externalNumberOfLevels);
    row.Flag(COL_PARENTCHILD, m_parentChild);
    row.Number(COL_CARDINALITY, m_cardinality);
    row.Text(COL_SORTEDHIERARCHY, EnumText<SMEnum_sortedHierarchy>(m_sortedHierarchy));
    row.Text(COL_ROOTMEMBER, m_rootMember);
    row.Flag(COL_RAGGED, m_ragged);
    row.Flag(COL_BALANCED, m_balanced);
    row.Flag(COL_MULTIROOT, m_multiRoot);
    row.Flag(COL_ISWIDEFAN, m_isWideFan);
    row.Text(COL_ROOTCAPTION, DefaultRootCaption());
    row.Text(COL_ROOTMUN, m_rootMUN);
    row.Text(COL_EXTERNALNAME, m_externalName);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMHierarchy2::constructFromIOParameter(const IOParameter& row) {
    SMNestedObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        m_externalNumberOfLevels = static_cast<int>(NumberOf(row, m_tags->externalNumberOfLevels));
        m_parentChild = FlagOf(row, m_tags->parentChild);
        m_cardinality = static_cast<int>(NumberOf(row, m_tags->cardinality));
        m_sortedHierarchy = EnumAt<SMEnum_sortedHierarchy>(row, m_tags->sortedHierarchy);
        m_rootMember = TextOf(row, m_tags->rootMember);
        m_ragged = FlagOf(row, m_tags->ragged);
        m_balanced = FlagOf(row, m_tags->balanced);
        m_multiRoot = FlagOf(row, m_tags->multiRoot);
        m_isWideFan = FlagOf(row, m_tags->isWideFan);
        if (const I18NString caption = TextOf(row, m_tags->rootCaption); !caption.empty()) SetRootCaption(caption);
        m_rootMUN = TextOf(row, m_tags->rootMUN);
        m_externalName = TextOf(row, m_tags->externalName);
    });
}

bool SMHierarchy2::read(IOHelper& helper) {
    if (!ReadChildren<SMLevel2>(helper, m_tags->level, [&](SMLevel2* level) { AddLevel(level); })) return false;
    SortDisplayOrder();
    return true;
}

bool SMHierarchy2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

bool SMHierarchy2::write_next(IOHelper& helper) {
    const auto write = [&](SMObjectBase* child) {
        if (!child || child->write(helper)) return true;
        SMLog(SM_FAILURE, WORDS, "write_next", "Failed to write a child of a hierarchy.", child->GetId());
        return false;
    };
    if (!write(m_queryItem) || !write(m_queryItemFolder)) return false;
    for (const auto& level : m_levels)
        if (!write(level)) return false;
    return true;
}

// ---- builder

void SMHierarchyBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    SMProject2* project = m_hierarchy->GetSMProject();
    switch (tag) {
    case Tag::level: {
        auto* level = new SMLevel2(m_hierarchy, project);
        level->displayOrder = m_hierarchy->TakeDisplayOrder();
        m_hierarchy->AddLevel(level);
        Push(new SMLevelBuilder(level));
        break;
    }
    case Tag::queryItem: {
        auto* item = new SMQueryItem2(m_hierarchy, project);
        item->displayOrder = m_hierarchy->TakeDisplayOrder();
        m_hierarchy->SetQueryItem(item);
        Push(new SMQueryItemBuilder(item));
        break;
    }
    case Tag::queryItemFolder: {
        auto* folder = new SMQueryItemFolder2(m_hierarchy, project);
        folder->displayOrder = m_hierarchy->TakeDisplayOrder();
        m_hierarchy->SetQueryItemFolder(folder);
        Push(new SMQueryItemFolderBuilder(folder));
        break;
    }
    case Tag::hierarchy: break;
    case Tag::rootCaption: CollectLocaleText(attrs); break;
    case Tag::externalName:
    case Tag::rootMember:
    case Tag::rootMUN:
    case Tag::multiRoot:
    case Tag::balanced:
    case Tag::ragged:
    case Tag::parentChild:
    case Tag::isWideFan:
    case Tag::cardinality:
    case Tag::externalNumberOfLevels:
    case Tag::sortedHierarchy: CollectText(); break;
    default: SMNestedObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMHierarchyBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::hierarchy: m_hierarchy->SortDisplayOrder(); break;
    case Tag::rootCaption: m_hierarchy->AddRootCaption(m_locale, m_text); break;
    case Tag::externalName: m_hierarchy->m_externalName = m_text; break;
    case Tag::rootMember: m_hierarchy->m_rootMember = m_text; break;
    case Tag::rootMUN: m_hierarchy->SetRootMUN(m_text); break;
    case Tag::multiRoot: m_hierarchy->m_multiRoot = TextAsBool(); break;
    case Tag::balanced: m_hierarchy->m_balanced = TextAsBool(); break;
    case Tag::ragged: m_hierarchy->m_ragged = TextAsBool(); break;
    case Tag::parentChild: m_hierarchy->m_parentChild = TextAsBool(); break;
    case Tag::isWideFan: m_hierarchy->m_isWideFan = TextAsBool(); break;
    case Tag::cardinality: m_hierarchy->m_cardinality = TextAsInt(); break;
    case Tag::externalNumberOfLevels: m_hierarchy->m_externalNumberOfLevels = TextAsInt(); break;
    case Tag::sortedHierarchy: m_hierarchy->m_sortedHierarchy = TextAsEnum<SMEnum_sortedHierarchy>(); break;
    default: SMNestedObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
