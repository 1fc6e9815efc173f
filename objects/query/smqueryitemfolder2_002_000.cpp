#include "objects/query/smqueryitemfolder2_002_000.h"

#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_ID", "ITEM_FOLDER_VERSION_NO", "QS_ID", "QS_VERSION_NO"};
const SMLogWords WORDS = {"smqueryitemfolder2", "SMQueryItemFolder2"};
const QvULString COL_ITEM_FOLDER_TYPE_NAME = SMColumn("ITEM_FOLDER_TYPE_NAME");
const QvULString COL_HIDDEN = SMColumn("HIDDEN");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMQueryItemFolder2, TABLE)

SMQueryItemFolder2::~SMQueryItemFolder2() {
    SMOrphanAll(queryItems);
    SMOrphanAll(queryItemFolders);
}

// ---- memory

void SMQueryItemFolder2::AddQueryItem(SMQueryItem2* item) {
    queryItems.Append(item);
    displayOrderItems.Append(item);
}

void SMQueryItemFolder2::AddQueryItemFolder(SMQueryItemFolder2* folder) {
    queryItemFolders.Append(folder);
    displayOrderItems.Append(folder);
}

SMQueryItem2* SMQueryItemFolder2::GetQueryItemByName(const I18NString& name) const {
    if (SMQueryItem2* item = queryItems.Find(name.utf8(), *this)) return item;
    for (const auto& folder : queryItemFolders)
        if (SMQueryItem2* item = folder->GetQueryItemByName(name)) return item;
    return nullptr;
}

SMQueryItem2* SMQueryItemFolder2::GetQueryItemByDBType(EDB_TYPE type) const {
    for (const auto& item : queryItems)
        if (item->GetColDBType() == type) return item;
    return queryItemFolders.empty() ? nullptr : queryItemFolders[0]->GetQueryItemByDBType(type);
}

void SMQueryItemFolder2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& item : queryItems) children.push_back(item);
    for (const auto& folder : queryItemFolders) children.push_back(folder);
}

void SMQueryItemFolder2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& item : queryItems) item->RegenerateIds(idMap);
    for (const auto& folder : queryItemFolders) folder->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMQueryItemFolder2::RenameObjects(SMRenameList2& list) {
    for (const auto& item : queryItems) item->RenameObjects(list);
    for (const auto& folder : queryItemFolders) folder->RenameObjects(list);
}

void SMQueryItemFolder2::SetSMProject(SMProject2* project) {
    SMNameDescObject2::SetSMProject(project);
    for (const auto& item : queryItems) item->SetSMProject(project);
    for (const auto& folder : queryItemFolders) folder->SetSMProject(project);
}

void SMQueryItemFolder2::AddToSetPIDIDAndMiniObject() {
    for (const auto& item : queryItems) {
        m_project->AddToSetPIDIDAndMiniObject(item);
        item->AddToSetPIDIDAndMiniObject();
    }
    for (const auto& folder : queryItemFolders) {
        m_project->AddToSetPIDIDAndMiniObject(folder);
        folder->AddToSetPIDIDAndMiniObject();
    }
}

// ---- document

void SMQueryItemFolder2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddIdAndVersion(attrs);
    StartElement(handler, m_tags->queryItemFolder, attrs);
    WriteCommonElements(handler);
    FlagElementIfTrue(handler, m_tags->hidden, hidden);
    for (const SMObjectBase* item : displayOrderItems.Items())
        if (item) item->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->queryItemFolder);
}

// ---- repository

void SMQueryItemFolder2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_ITEM_FOLDER_TYPE_NAME, m_tags->queryItemFolder);
    row.Flag(COL_HIDDEN, hidden);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

void SMQueryItemFolder2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] { hidden = FlagOf(row, m_tags->hidden); });
}

bool SMQueryItemFolder2::read(IOHelper& helper) {
    if (!ReadChildren<SMQueryItem2>(helper, m_tags->queryItem, [&](SMQueryItem2* item) { AddQueryItem(item); })) return false;
    if (!ReadChildren<SMQueryItemFolder2>(helper, m_tags->queryItemFolder, [&](SMQueryItemFolder2* folder) { AddQueryItemFolder(folder); }))
        return false;
    SortDisplayOrder();
    return true;
}

bool SMQueryItemFolder2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

bool SMQueryItemFolder2::write_next(IOHelper& helper) {
    for (const auto& item : queryItems)
        if (!item->write(helper)) return false;
    for (const auto& folder : queryItemFolders)
        if (!folder->write(helper)) return false;
    return true;
}

// ---- builder

void SMQueryItemFolderBuilder::StartItem() {
    auto* item = new SMQueryItem2(m_folder, m_folder->GetSMProject());
    item->displayOrder = m_folder->TakeDisplayOrder();
    m_folder->AddQueryItem(item);
    Push(new SMQueryItemBuilder(item));
}

void SMQueryItemFolderBuilder::StartFolder() {
    auto* folder = new SMQueryItemFolder2(m_folder, m_folder->GetSMProject());
    folder->displayOrder = m_folder->TakeDisplayOrder();
    m_folder->AddQueryItemFolder(folder);
    Push(new SMQueryItemFolderBuilder(folder));
}

void SMQueryItemFolderBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                                 const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::queryItem: StartItem(); break;
    case Tag::queryItemFolder: StartFolder(); break;
    case Tag::hidden: CollectText(); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMQueryItemFolderBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::queryItemFolder: m_folder->SortDisplayOrder(); break;
    case Tag::hidden: m_folder->SetHiddenFlag(TextAsBool()); break;
    case Tag::property: EndProperty(*m_folder); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
