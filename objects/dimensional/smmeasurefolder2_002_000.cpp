#include "objects/dimensional/smmeasurefolder2_002_000.h"

#include "objects/dimensional/smmeasure2_002_000.h"
#include "objects/base/smreadguard_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_ID", "ITEM_FOLDER_VERSION_NO", "QS_ID", "QS_VERSION_NO"};
const SMLogWords WORDS = {"smmeasurefolder2", "SMMeasureFolder2"};
const QvULString COL_ITEM_FOLDER_TYPE_NAME = SMColumn("ITEM_FOLDER_TYPE_NAME");
const QvULString COL_HIDDEN = SMColumn("HIDDEN");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMMeasureFolder2, TABLE)

SMMeasureFolder2::SMMeasureFolder2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

SMMeasureFolder2::~SMMeasureFolder2() {
    SMOrphanAll(m_measures);
    SMOrphanAll(m_measureFolders);
}

// ---- memory

void SMMeasureFolder2::AddMeasure(SMMeasure2* measure) {
    m_measures.Append(measure);
    m_displayOrder.Append(measure);
}

void SMMeasureFolder2::AddMeasureFolder(SMMeasureFolder2* folder) {
    m_measureFolders.Append(folder);
    m_displayOrder.Append(folder);
}

SMMeasureFolder2* SMMeasureFolder2::AddOrUpdateMeasureFolder(const I18NString& name, const I18NString& description) {
    SMMeasureFolder2* folder = m_measureFolders.Find(name.utf8(), *this);
    if (!folder) {
        folder = new SMMeasureFolder2(this, m_project);
        AddMeasureFolder(folder);
        folder->ChangeDefaultName(name);
    }
    folder->SetDescription(description);
    return folder;
}

SMMeasure2* SMMeasureFolder2::AddOrReturnExistingMeasure(const I18NString& name) {
    SMMeasure2* measure = m_measures.Find(name.utf8(), *this);
    if (!measure) {
        measure = new SMMeasure2(this, m_project);
        const QvSmartPtr<SMMeasure2> held = measure;
        measure->ChangeDefaultName(name);
        AddMeasure(measure);
    }
    if (m_project) m_project->RecordObject(measure);
    return measure;
}

SMMeasure2* SMMeasureFolder2::GetMeasureByWHOID(const I18NString& whoid) const {
    return whoid.empty() ? nullptr : m_measures.FindBySecond(whoid.utf8(), *this);
}

void SMMeasureFolder2::DeleteMeasureById(const I18NString& measureId) {
    SMDeleteTypedById(m_measures, m_displayOrder, measureId);
}

void SMMeasureFolder2::DeleteMeasureFolderById(const I18NString& folderId) {
    SMDeleteTypedById(m_measureFolders, m_displayOrder, folderId);
}

void SMMeasureFolder2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& measure : m_measures) children.push_back(measure);
    for (const auto& folder : m_measureFolders) children.push_back(folder);
}

void SMMeasureFolder2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& measure : m_measures) measure->RegenerateIds(idMap);
    for (const auto& folder : m_measureFolders) folder->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMMeasureFolder2::RenameObjects(SMRenameList2& list) {
    for (const auto& measure : m_measures) measure->RenameObjects(list);
    for (const auto& folder : m_measureFolders) folder->RenameObjects(list);
}

void SMMeasureFolder2::SetSMProject(SMProject2* project) {
    for (const auto& measure : m_measures) measure->SetSMProject(project);
    for (const auto& folder : m_measureFolders) folder->SetSMProject(project);
    SMObjectBase::SetSMProject(project);
}

void SMMeasureFolder2::AddToSetPIDIDAndMiniObject() {
    const auto enter = [&](const auto& children) {
        for (const auto& child : children) {
            m_project->AddToSetPIDIDAndMiniObject(child);
            child->AddToSetPIDIDAndMiniObject();
        }
    };
    enter(m_measures);
    enter(m_measureFolders);
}

// ---- document

void SMMeasureFolder2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->measureFolder);
    WriteCommonElements(handler);
    FlagElement(handler, m_tags->hidden, m_hidden);
    for (const SMObjectBase* child : m_displayOrder.Items())
        if (child) child->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->measureFolder);
}

// ---- repository

void SMMeasureFolder2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_ITEM_FOLDER_TYPE_NAME, m_tags->measureFolder);
    row.Flag(COL_HIDDEN, m_hidden);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMMeasureFolder2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] { m_hidden = FlagOf(row, m_tags->hidden); });
}

bool SMMeasureFolder2::read(IOHelper& helper) {
    return ReadGuarded(WORDS, "read", [&] {
        return ReadChildrenIf<SMMeasure2>(helper, m_tags->measure, SMMeasure2::IsMeasureRow,
                                          [&](SMMeasure2* measure) { AddMeasure(measure); }) &&
               ReadChildren<SMMeasureFolder2>(helper, m_tags->measureFolder, [&](SMMeasureFolder2* folder) { AddMeasureFolder(folder); });
    });
}

bool SMMeasureFolder2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMMeasureFolder2::write_next(IOHelper& helper) {
    for (SMObjectBase* child : m_displayOrder.Items()) {
        if (!child || child->write(helper)) continue;
        SMLog(SM_FAILURE, WORDS, "write_next", "Failed to write a child of a measure folder", child->GetId());
        return false;
    }
    return true;
}

// ---- builder

void SMMeasureFolderBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                               const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::measure: {
        auto* measure = new SMMeasure2(m_folder, m_folder->GetSMProject());
        m_folder->AddMeasure(measure);
        Push(new SMMeasureBuilder(measure));
        break;
    }
    case Tag::measureFolder: {
        auto* folder = new SMMeasureFolder2(m_folder, m_folder->GetSMProject());
        m_folder->AddMeasureFolder(folder);
        Push(new SMMeasureFolderBuilder(folder));
        break;
    }
    case Tag::hidden: CollectText(); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMMeasureFolderBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::measureFolder: break;
    case Tag::hidden:
        if (!m_text.empty()) m_folder->SetHidden(TextAsBool());
        break;
    case Tag::property: EndProperty(*m_folder); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
