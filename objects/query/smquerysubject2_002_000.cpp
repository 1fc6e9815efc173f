#include "objects/query/smquerysubject2_002_000.h"

#include "core/qvutils/text/qvstringformat.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/query/smdefinition2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smdeterminant2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMLogWords WORDS = {"smquerysubject2", "SMQuerySubject2"};
const QvULString COL_QUERY_SUBJECT_TYPE_NAME = SMColumn("QUERY_SUBJECT_TYPE_NAME");
const QvULString COL_QUERY_TYPE_NAME = SMColumn("QUERY_TYPE_NAME");
const QvULString COL_PHYSICAL_OBJECT_ID = SMColumn("PHYSICAL_OBJECT_ID");
const QvULString COL_TM_QS_IDENTIFIER = SMColumn("TM_QS_IDENTIFIER");
const QvULString PROPERTY_QVDBREF = QvULString::Immortal("qvdbref");
const QvULString PROPERTY_QVQS_TYPE = QvULString::Immortal("qvqs_type");
const I18NString DATA_SOURCES_ID = I18NString::Immortal("[].[dataSources]");
const I18NString KIND_DETERMINANT = I18NString::Immortal("determinants/determinant");

}  // namespace

SMQuerySubject2::SMQuerySubject2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns) : SMQuerySubjectType2(owner, project, ns) {}

SMQuerySubject2::~SMQuerySubject2() {
    SMOrphanAll(queryItems);
    SMOrphanAll(queryItemFolders);
    SMOrphanAll(determinants);
}

// ---- children

void SMQuerySubject2::AddQueryItem(SMQueryItem2* item) {
    queryItems.Append(item);
    m_displayOrder.Append(item);
}

void SMQuerySubject2::AddQueryItemFolder(SMQueryItemFolder2* folder) {
    queryItemFolders.Append(folder);
    m_displayOrder.Append(folder);
}

void SMQuerySubject2::AddDeterminant(SMDeterminant2* determinant) {
    determinants.Append(determinant);
}

void SMQuerySubject2::DeleteQueryItemById(const I18NString& itemId) {
    SMDeleteById(queryItems, m_displayOrder, itemId);
}

const QvSmartVector<SMQueryItem2>& SMQuerySubject2::GetQueryItems() const {
    return queryItems.Items();
}

const QvSmartVector<SMQueryItemFolder2>& SMQuerySubject2::GetQueryItemFolders() const {
    return queryItemFolders.Items();
}

const QvSmartVector<SMDeterminant2>& SMQuerySubject2::GetDeterminants() const {
    return determinants.Items();
}

SMQueryItem2* SMQuerySubject2::GetQueryItemByWHOID(const I18NString& whoid) const {
    return whoid.empty() ? nullptr : queryItems.FindBySecond(whoid.utf8(), *this);
}

SMQueryItem2* SMQuerySubject2::GetQueryItemByName(const I18NString& name) const {
    return queryItems.Find(name.utf8(), *this);
}

SMQueryItem2* SMQuerySubject2::GetQueryItemWithName(const I18NString& name) const {
    if (SMQueryItem2* item = GetQueryItemByName(name)) return item;
    for (const auto& folder : queryItemFolders)
        if (SMQueryItem2* item = folder->GetQueryItemByName(name)) return item;
    return nullptr;
}

SMQueryItem2* SMQuerySubject2::GetQueryItemByDBType(EDB_TYPE type) const {
    for (const auto& item : queryItems)
        if (item->GetColDBType() == type) return item;
    return queryItemFolders.empty() ? nullptr : queryItemFolders[0]->GetQueryItemByDBType(type);
}

SMQueryItem2* SMQuerySubject2::AddOrReturnExistingQueryItem(const I18NString& name) {
    SMQueryItem2* item = GetQueryItemWithName(name);
    if (!item) {
        item = new SMQueryItem2(this, m_project);
        const QvSmartPtr<SMQueryItem2> held = item;
        item->ChangeDefaultName(name);
        AddQueryItem(item);
    }
    if (m_project) m_project->RecordObject(item);
    return item;
}

SMQueryItem2* SMQuerySubject2::AddOrReturnExistingQueryItem(const I18NString& name, const I18NString& screenTip,
                                                            const I18NString& expressionText, SMEnum_usage::Enum usage,
                                                            SMEnum_datatype::Enum datatype, int precision, int scale, int size,
                                                            bool nullable, SMEnum_aggregationRule::Enum regularAggregate,
                                                            SMEnum_aggregationRule::Enum semiAggregate, const I18NString& description) {
    SMQueryItem2* item = AddOrReturnExistingQueryItem(name);
    item->SetBasicProperties(usage, datatype, precision, scale, size, nullable, regularAggregate, semiAggregate);
    item->SetDescription(description);
    item->ChangeDefaultScreenTip(screenTip);
    bool changed = item->GetExternalName() != screenTip;
    if (changed) item->SetExternalName(screenTip);
    if (!expressionText.empty()) {
        if (SMXMLObject2* expression = item->GetExpression()) {
            changed = expression->ChangeInnerXML(expressionText.c_str()) || changed;
        } else {
            item->SetExpression(new SMXMLObject2(m_tags->expression, expressionText, true));
            changed = true;
        }
    }
    if (changed) item->SetLastChangedDateToNow();
    return item;
}

SMDeterminant2* SMQuerySubject2::AddOrUpdateDeterminant(const I18NString& name, const ItemCollection& keys,
                                                        const ItemCollection& attributes, bool canGroup, bool identifiesRow) {
    SMDeterminant2* determinant = determinants.Find(name.utf8(), *this);
    if (!determinant) {
        determinant = new SMDeterminant2(this, m_project);
        determinant->displayOrder = TakeDisplayOrder();
        determinant->SetName(name);
        determinant->SetLastChangedDateToNow();
        AddDeterminant(determinant);
    }
    determinant->SetCanGroup(canGroup);
    determinant->SetIdentifiesRow(identifiesRow);
    for (const auto& item : keys) {
        determinant->AddKeyRefObj(item->GetSMID(false));
        determinant->SetLastChangedDateToNow();
    }
    for (const auto& item : attributes) {
        determinant->AddAttrRefObj(item->GetSMID(false));
        determinant->SetLastChangedDateToNow();
    }
    return determinant;
}

// ---- links to the warehouse, the definition

void SMQuerySubject2::SetTargetTable(QvSmartPtr<DBTable>& field, const QvULString& property, DBTable* table) {
    if (!table) return;
    AddOrUpdateProperty(property, m_tags->hidden, table->GetId());
    field = table;
}

void SMQuerySubject2::SetDBTargetTable(DBTable* table) {
    SetTargetTable(dbTargetTable, IOParamTag::REF_DB_OBJ_ID, table);
}

void SMQuerySubject2::Set2ndDBTargetTable(DBTable* table) {
    SetTargetTable(dbTargetTable2, IOParamTag::REF_DB_OBJ_2ND_ID, table);
}

const QvULString& SMQuerySubject2::PropertyValue(const QvULString& name) const {
    const SMProperty2* property = GetProperty(name);
    return property ? property->value : EMPTY_QVULSTRING;
}

const QvULString& SMQuerySubject2::GetDBTargetTableID() const {
    return PropertyValue(IOParamTag::REF_DB_OBJ_ID);
}

const QvULString& SMQuerySubject2::Get2ndDBTargetTableID() const {
    return PropertyValue(IOParamTag::REF_DB_OBJ_2ND_ID);
}

DBColumn* SMQuerySubject2::FindTargetColumn(const QvULString& columnId) const {
    for (const DBTable* table : {dbTargetTable.get(), dbTargetTable2.get()})
        if (DBColumn* column = table ? table->FindColumnById(columnId) : nullptr) return column;
    return nullptr;
}

void SMQuerySubject2::SetSQL(const I18NString& text) {
    if (definition) definition->SetSql(text, SMEnum_sqlType::Enum(0));
}

void SMQuerySubject2::AddOrUpdateDataSourceRef(SMDatasource2* dataSource) {
    if (!dataSource || !definition) return;
    SMDefinition2::DBQuery* query = definition->GetDBQuery();
    if (!query) {
        SMLog(SM_MISUSE, WORDS, "AddOrUpdateDataSourceRef", "AddOrUpdateDataSourceRef called on a query subject without a database query.");
        return;
    }
    I18NString reference = DATA_SOURCES_ID;
    AppendToSMObjectID(false, reference, dataSource->GetName());
    query->AddOrUpdateDataSourceRef(reference);
}

void SMQuerySubject2::AddOrUpdateFilterDefinition(SMEnum_apply::Enum apply, const I18NString& displayName,
                                                  const I18NString& expressionText) {
    if (!definition) {
        SetDefinition(new SMDefinition2(this, m_project));
        SetLastChangedDateToNow();
    }
    if (SMDefinition2::DefinitionQueryBase* query = definition->GetQuery())
        query->AddOrUpdateFilterDefinition(apply, displayName, expressionText);
    else
        SMLog(SM_MISUSE, WORDS, "AddOrUpdateFilterDefinition", "Unknown query type for AddOrUpdateFilterDefinition call.");
}

void SMQuerySubject2::RemoveFilterDefinition(const I18NString& displayName) {
    SMDefinition2::DefinitionQueryBase* query = definition ? definition->GetQuery() : nullptr;
    if (query) query->RemoveFilterDefinition(displayName);
}

void SMQuerySubject2::AddFromAssociation(const I18NString& association) {
    if (!association.empty()) associations.insert(association);
}

// ---- walks

void SMQuerySubject2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& folder : queryItemFolders) children.push_back(folder);
    for (const auto& item : queryItems) children.push_back(item);
    for (const auto& determinant : determinants) children.push_back(determinant);
    SMQuerySubjectType2::getChildObjects(children);
}

void SMQuerySubject2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& item : queryItems) item->RegenerateIds(idMap);
    for (const auto& folder : queryItemFolders) folder->RegenerateIds(idMap);
    for (const auto& determinant : determinants) determinant->RegenerateIds();
    SMQuerySubjectType2::RegenerateIds(idMap);
}

void SMQuerySubject2::RenameObjects(SMRenameList2& list) {
    for (const auto& item : queryItems) item->RenameObjects(list);
    for (const auto& folder : queryItemFolders) folder->RenameObjects(list);
    for (const auto& determinant : determinants) determinant->RenameObjects(list);
    SMQuerySubjectType2::RenameObjects(list);
}

void SMQuerySubject2::SetSMProject(SMProject2* project) {
    SMQuerySubjectType2::SetSMProject(project);
    for (const auto& folder : queryItemFolders) folder->SetSMProject(project);
    for (const auto& item : queryItems) item->SetSMProject(project);
    for (const auto& determinant : determinants) determinant->SetSMProject(project);
}

void SMQuerySubject2::AddToSetPIDIDAndMiniObject() {
    SMQuerySubjectType2::AddToSetPIDIDAndMiniObject();
    for (const auto& folder : queryItemFolders) {
        m_project->AddToSetPIDIDAndMiniObject(folder);
        folder->AddToSetPIDIDAndMiniObject();
    }
    for (const auto& item : queryItems) {
        m_project->AddToSetPIDIDAndMiniObject(item);
        item->AddToSetPIDIDAndMiniObject();
    }
    for (const auto& determinant : determinants) m_project->AddToSetPIDIDAndMiniObject(determinant);
}

// ---- document

void SMQuerySubject2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->status, EnumText<SMEnum_status>(status));
    StartElement(handler, m_tags->querySubject, attrs);
    WriteXMLElementChildren(handler, target);
    if (!determinants.empty()) {
        StartElement(handler, m_tags->determinants);
        for (const auto& determinant : determinants) determinant->WriteXMLElement(handler, target);
        EndElement(handler, m_tags->determinants);
    }
    for (const SMObjectBase* item : m_displayOrder.Items())
        if (item) item->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->querySubject);
}

void SMQuerySubject2::WriteProperties(QvContentHandler* handler, bool writeHidden) const {
    WriteHiddenPropertyIfSet(handler, PROPERTY_QVDBREF, physicalObjectId);
    WriteHiddenPropertyIfSet(handler, PROPERTY_QVQS_TYPE, targetQSIdentifier);
    SMQuerySubjectType2::WriteProperties(handler, writeHidden);
}

void SMQuerySubject2::SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) {
    if (name == PROPERTY_QVDBREF)
        physicalObjectId = value;
    else if (name == PROPERTY_QVQS_TYPE)
        targetQSIdentifier = value;
    else
        SMQuerySubjectType2::SetProperty(name, type, value);
}

// ---- repository

void SMQuerySubject2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMQuerySubjectType2::getAttributes(attrs, historyAttrs);
    if (!definition) SMLog(SM_MISUSE, WORDS, "getAttributes", "SMQuerySubject with missing definition.");
    SMRowWriter row(attrs);
    row.Text(COL_QUERY_SUBJECT_TYPE_NAME, m_tags->querySubject);
    row.Text(COL_QUERY_TYPE_NAME, definition ? definition->GetQueryTypeName() : EMPTY_QVSTRING);
    row.Text(COL_PHYSICAL_OBJECT_ID, physicalObjectId);
    row.Text(COL_TM_QS_IDENTIFIER, targetQSIdentifier);
}

void SMQuerySubject2::constructFromIOParameter(const IOParameter& row) {
    SMQuerySubjectType2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        physicalObjectId = TextOf(row, PROPERTY_QVDBREF);
        targetQSIdentifier = TextOf(row, PROPERTY_QVQS_TYPE);
    });
}

bool SMQuerySubject2::read(IOHelper& helper) {
    if (!SMQuerySubjectType2::read(helper)) return false;
    if (!ReadChildren<SMDeterminant2>(helper, KIND_DETERMINANT, [&](SMDeterminant2* determinant) { AddDeterminant(determinant); }) ||
        !ReadChildren<SMQueryItem2>(helper, m_tags->queryItem, [&](SMQueryItem2* item) { AddQueryItem(item); }) ||
        !ReadChildren<SMQueryItemFolder2>(helper, m_tags->queryItemFolder, [&](SMQueryItemFolder2* folder) { AddQueryItemFolder(folder); }))
        return false;
    SortDisplayOrder();
    return true;
}

bool SMQuerySubject2::write_next(IOHelper& helper) {
    const auto writeAll = [&](const auto& children) {
        for (const auto& child : children)
            if (!child->write(helper)) return false;
        return true;
    };
    return SMQuerySubjectType2::write_next(helper) && writeAll(determinants) && writeAll(queryItems) && writeAll(queryItemFolders);
}

// ---- builder

void SMQuerySubjectBuilder::StartDeterminant(const QvXMLAttributes& attrs) {
    auto* determinant = new SMDeterminant2(m_querySubject, m_querySubject->GetSMProject());
    m_querySubject->AddDeterminant(determinant);  // takes no display order number here
    determinant->SetId(attrs.getValue(m_tags->id));
    determinant->SetProperty(m_tags->version, m_tags->hidden, attrs.getValue(m_tags->version));
    Push(new SMDeterminantBuilder(determinant));
}

void SMQuerySubjectBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag,
                                              const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::queryItem: {
        auto* item = new SMQueryItem2(m_querySubject, m_querySubject->GetSMProject());
        item->displayOrder = m_querySubject->TakeDisplayOrder();
        m_querySubject->AddQueryItem(item);
        Push(new SMQueryItemBuilder(item));
        break;
    }
    case Tag::queryItemFolder: {
        auto* folder = new SMQueryItemFolder2(m_querySubject, m_querySubject->GetSMProject());
        folder->displayOrder = m_querySubject->TakeDisplayOrder();
        m_querySubject->AddQueryItemFolder(folder);
        Push(new SMQueryItemFolderBuilder(folder));
        break;
    }
    case Tag::determinant: StartDeterminant(attrs); break;
    case Tag::determinants:
    case Tag::querySubject: break;
    default: SMQuerySubjectTypeBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMQuerySubjectBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::determinants: break;
    case Tag::querySubject: m_querySubject->SortDisplayOrder(); break;
    default: SMQuerySubjectTypeBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
