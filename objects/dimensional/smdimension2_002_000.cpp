#include "objects/dimensional/smdimension2_002_000.h"

#include "objects/dimensional/smhierarchy2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "objects/dimensional/smmeasurefolder2_002_000.h"
#include "objects/base/smreadguard_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smdefinition2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMLogWords WORDS = {"smdimension2", "SMDimension2"};
const QvULString COL_TM_QS_IDENTIFIER = SMColumn("TM_QS_IDENTIFIER");
const QvULString COL_MEMBERSROLLUP = SMColumn("MEMBERSROLLUP");
const QvULString COL_DEFAULTHIERARCHY = SMColumn("DEFAULTHIERARCHY");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const QvULString COL_QUERY_SUBJECT_TYPE_NAME = SMColumn("QUERY_SUBJECT_TYPE_NAME");
const QvULString COL_QUERY_TYPE_NAME = SMColumn("QUERY_TYPE_NAME");
const QvULString KEY_QVQS_TYPE = QvULString::Immortal("qvqs_type");

/** Calls `visit` with each of the collections given, in their order. */
template <class Visit, class... Children>
void InOrder(Visit visit, Children&... children) {
    (visit(children), ...);
}

}  // namespace

SMDimension2::SMDimension2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns) : SMQuerySubjectType2(owner, project, ns) {}

SMDimension2::~SMDimension2() {
    InOrder([](auto& children) { SMOrphanAll(children); }, m_measures, m_measureFolders, m_queryItems, m_queryItemFolders, m_hierarchies);
}

// ---- memory

template <class T, class Children>
void SMDimension2::Add(T* child, Children& children) {
    children.Append(child);
    m_displayOrder.Append(child);
}

void SMDimension2::AddHierarchy(SMHierarchy2* hierarchy) {
    Add(hierarchy, m_hierarchies);
}
void SMDimension2::AddMeasure(SMMeasure2* measure) {
    Add(measure, m_measures);
}
void SMDimension2::AddMeasureFolder(SMMeasureFolder2* folder) {
    Add(folder, m_measureFolders);
}
void SMDimension2::AddQueryItem(SMQueryItem2* item) {
    Add(item, m_queryItems);
}
void SMDimension2::AddQueryItemFolder(SMQueryItemFolder2* folder) {
    Add(folder, m_queryItemFolders);
}

SMHierarchy2* SMDimension2::AddOrUpdateHierarchy(const I18NString& name, const I18NString& rootMUN, const I18NString& description) {
    SMHierarchy2* hierarchy = m_hierarchies.Find(name.utf8(), *this);
    if (!hierarchy) {
        hierarchy = new SMHierarchy2(this, m_project);
        hierarchy->displayOrder = TakeDisplayOrder();
        AddHierarchy(hierarchy);
        hierarchy->ChangeDefaultName(name);
    }
    hierarchy->SetDescription(description);
    if (hierarchy->GetRootMUN() != rootMUN) {
        hierarchy->SetRootMUN(rootMUN);
        hierarchy->SetLastChangedDateToNow();
    }
    if (m_project) m_project->RecordObject(hierarchy);
    return hierarchy;
}

SMMeasureFolder2* SMDimension2::AddOrUpdateMeasureFolder(const I18NString& name, const I18NString& description) {
    SMMeasureFolder2* folder = m_measureFolders.Find(name.utf8(), *this);
    if (!folder) {
        folder = new SMMeasureFolder2(this, m_project);
        folder->displayOrder = TakeDisplayOrder();
        AddMeasureFolder(folder);
        folder->ChangeDefaultName(name);
    }
    folder->SetDescription(description);
    return folder;
}

SMMeasure2* SMDimension2::AddOrReturnExistingMeasure(const I18NString& name) {
    if (SMMeasure2* measure = m_measures.Find(name.utf8(), *this)) return measure;
    auto* measure = new SMMeasure2(this, m_project);
    const QvSmartPtr<SMMeasure2> held = measure;
    measure->ChangeDefaultName(name);
    measure->displayOrder = TakeDisplayOrder();
    AddMeasure(measure);
    if (m_project) m_project->RecordObject(measure);
    return measure;
}

SMMeasure2* SMDimension2::GetMeasureByWHOID(const I18NString& whoid) const {
    return whoid.empty() ? nullptr : m_measures.FindBySecond(whoid.utf8(), *this);
}

void SMDimension2::DeleteMeasureById(const I18NString& measureId) {
    SMDeleteTypedById(m_measures, m_displayOrder, measureId);
}

void SMDimension2::DeleteMeasureFolderById(const I18NString& folderId) {
    SMDeleteTypedById(m_measureFolders, m_displayOrder, folderId);
}

// ---- walks

void SMDimension2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& collection) const {
    const auto list = [&](auto& children) {
        for (const auto& child : children) collection.push_back(child);
    };
    InOrder(list, m_measures, m_measureFolders, m_queryItems, m_queryItemFolders, m_hierarchies);
    SMQuerySubjectType2::getChildObjects(collection);
}

void SMDimension2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    const auto regenerate = [&](auto& children) {
        for (const auto& child : children) child->RegenerateIds(idMap);
    };
    InOrder(regenerate, m_measures, m_measureFolders, m_queryItems, m_queryItemFolders, m_hierarchies);
    SMQuerySubjectType2::RegenerateIds(idMap);
}

void SMDimension2::RenameObjects(SMRenameList2& list) {
    const auto rename = [&](auto& children) {
        for (const auto& child : children) child->RenameObjects(list);
    };
    InOrder(rename, m_measures, m_measureFolders, m_queryItems, m_queryItemFolders, m_hierarchies);
    SMQuerySubjectType2::RenameObjects(list);
}

void SMDimension2::SetSMProject(SMProject2* project) {
    const auto set = [&](auto& children) {
        for (const auto& child : children) child->SetSMProject(project);
    };
    InOrder(set, m_measures, m_measureFolders, m_queryItems, m_queryItemFolders, m_hierarchies);
    SMQuerySubjectType2::SetSMProject(project);
}

void SMDimension2::AddToSetPIDIDAndMiniObject() {
    const auto enter = [&](auto& children) {
        for (const auto& child : children) {
            m_project->AddToSetPIDIDAndMiniObject(child);
            child->AddToSetPIDIDAndMiniObject();
        }
    };
    InOrder(enter, m_measures, m_measureFolders, m_queryItems, m_queryItemFolders, m_hierarchies);
    SMQuerySubjectType2::AddToSetPIDIDAndMiniObject();
}

// ---- document

void SMDimension2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->status, EnumText<SMEnum_status>(status));
    StartElement(handler, m_tags->dimension, attrs);
    WriteCommonElements(handler);
    if (definition) definition->WriteXMLElement(handler, target);
    WriteKept(hierarchiesXml, target);
    WriteKept(levelsXml, target);
    filters.WritePreviews(handler, target);
    filters.WriteSecurities(handler, target);
    TextElementIfSet(handler, m_tags->externalizeMethod, EnumText<SMEnum_externalizeMethod>(externalizeMethod));
    FlagElementIfTrue(handler, m_tags->externalizeAutoSummary, externalizeAutoSummary);
    TextElementIfSet(handler, m_tags->type, EnumText<SMEnum_dimensionType>(m_dimensionType));
    FlagElement(handler, m_tags->membersRollup, m_membersRollup);
    TextElementIfSet(handler, m_tags->defaultHierarchy, m_defaultHierarchy);
    for (const SMObjectBase* child : m_displayOrder.Items())
        if (child) child->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->dimension);
}

// ---- repository

void SMDimension2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMQuerySubjectType2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_TM_QS_IDENTIFIER, EnumText<SMEnum_dimensionType>(m_dimensionType));
    row.Flag(COL_MEMBERSROLLUP, m_membersRollup);
    row.Text(COL_DEFAULTHIERARCHY, m_defaultHierarchy);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
    row.Text(COL_QUERY_SUBJECT_TYPE_NAME, m_tags->dimension);
    if (definition) row.Text(COL_QUERY_TYPE_NAME, definition->GetQueryTypeName());
}

void SMDimension2::constructFromIOParameter(const IOParameter& row) {
    SMQuerySubjectType2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        m_membersRollup = FlagOf(row, m_tags->membersRollup);
        m_defaultHierarchy = TextOf(row, m_tags->defaultHierarchy);
        m_dimensionType = EnumAt<SMEnum_dimensionType>(row, KEY_QVQS_TYPE);
    });
}

bool SMDimension2::read(IOHelper& helper) {
    const auto isItem = [](const IOParameter& row) { return !SMMeasure2::IsMeasureRow(row); };
    const auto readChildren = [&] {
        return ReadChildren<SMHierarchy2>(helper, m_tags->hierarchy, [&](SMHierarchy2* hierarchy) { AddHierarchy(hierarchy); }) &&
               ReadChildrenIf<SMMeasure2>(helper, m_tags->measure, SMMeasure2::IsMeasureRow,
                                          [&](SMMeasure2* measure) { AddMeasure(measure); }) &&
               ReadChildren<SMMeasureFolder2>(helper, m_tags->measureFolder, [&](SMMeasureFolder2* folder) { AddMeasureFolder(folder); }) &&
               ReadChildrenIf<SMQueryItem2>(helper, m_tags->queryItem, isItem, [&](SMQueryItem2* item) { AddQueryItem(item); }) &&
               ReadChildren<SMQueryItemFolder2>(helper, m_tags->queryItemFolder,
                                                [&](SMQueryItemFolder2* folder) { AddQueryItemFolder(folder); });
    };
    if (!SMQuerySubjectType2::read(helper) || !ReadGuarded(WORDS, "read", readChildren)) return false;
    SortDisplayOrder();
    return true;
}

bool SMDimension2::write_next(IOHelper& helper) {
    if (!SMQuerySubjectType2::write_next(helper)) return false;
    bool success = true;
    for (SMObjectBase* child : m_displayOrder.Items()) {
        if (!child) continue;
        success = success && child->write(helper);
        // as the log has it: the child that fails and each that is left
        if (!success) SMLog(SM_FAILURE, WORDS, "write_next", "Failed to write a child of a dimension", child->GetId());
    }
    return success;
}

// ---- builder

template <class T, class Builder>
void SMDimensionBuilder::StartChild(void (SMDimension2::*add)(T*)) {
    T* child = new T(m_dimension, m_dimension->GetSMProject());
    child->displayOrder = m_dimension->TakeDisplayOrder();
    (m_dimension->*add)(child);
    Push(new Builder(child));
}

void SMDimensionBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::measure: StartChild<SMMeasure2, SMMeasureBuilder>(&SMDimension2::AddMeasure); break;
    case Tag::measureFolder: StartChild<SMMeasureFolder2, SMMeasureFolderBuilder>(&SMDimension2::AddMeasureFolder); break;
    case Tag::hierarchy: StartChild<SMHierarchy2, SMHierarchyBuilder>(&SMDimension2::AddHierarchy); break;
    case Tag::queryItem: StartChild<SMQueryItem2, SMQueryItemBuilder>(&SMDimension2::AddQueryItem); break;
    case Tag::queryItemFolder: StartChild<SMQueryItemFolder2, SMQueryItemFolderBuilder>(&SMDimension2::AddQueryItemFolder); break;
    case Tag::dimension:
        if (const I18NString status = attrs.getValue(m_tags->status); !status.empty())
            m_dimension->SetStatus(EnumOf<SMEnum_status>(status));
        break;
    case Tag::type:
    case Tag::membersRollup:
    case Tag::defaultHierarchy: CollectText(); break;
    default: SMQuerySubjectTypeBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMDimensionBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::dimension: m_dimension->SortDisplayOrder(); break;
    case Tag::type: m_dimension->SetType(TextAsEnum<SMEnum_dimensionType>()); break;
    case Tag::membersRollup: m_dimension->SetMembersRollup(TextAsBool()); break;
    case Tag::defaultHierarchy: m_dimension->SetDefaultHierarchy(m_text); break;
    default: SMQuerySubjectTypeBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
