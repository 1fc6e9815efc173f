#include "objects/containers/smsectiontype2_002_000.h"

#include "core/qvutils/persist/multifilehelper.h"
#include "objects/base/smreadguard_002_000.h"
#include "objects/containers/smsectionchildren_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_SECTION_TYPE", "SECTION_ID", "SECTION_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO"};
const SMLogWords WORDS = {"smsectiontype2", "SMSectionType2"};
const QvULString COL_SECTION_TYPE_NAME = SMColumn("SECTION_TYPE_NAME");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const I18NString KIND_SECTION = I18NString::Immortal("generic_section_type");
const I18NString KIND_SUBJECT = I18NString::Immortal("generic_query_subject_type");
constexpr int HELPER_KIND_MULTI_FILE = 3;

/** Calls `visit` with each of the collections given, in their order. */
template <class Visit, class... Children>
void InOrder(Visit visit, Children&... children) {
    (visit(children), ...);
}

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMSectionType2, TABLE)

SMSectionType2::SMSectionType2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

SMSectionType2::~SMSectionType2() {
    InOrder([](auto& children) { SMOrphanAll(children); }, folders, functions, namespaces, shortcuts, querySubjects, updateSubjects,
            relationships, relationshipShortcuts, filters, calculations, dimensions, scopeRelationships);
}

// ---- children

void SMSectionType2::Record(SMObjectBase* object) {
    if (SMProject2* project = object->GetSMProject()) project->RecordObject(object);
}

void SMSectionType2::AddFolder(SMFolder2* folder) {
    Add(folder, folders);
}
void SMSectionType2::AddFunction(SMFunction2* function) {
    Add(function, functions);
}
void SMSectionType2::AddQuerySubject(SMQuerySubject2* subject) {
    Add(subject, querySubjects);
}
void SMSectionType2::AddUpdateSubject(SMUpdateSubject2* subject) {
    Add(subject, updateSubjects);
}
void SMSectionType2::AddFilter(SMFilter2* filter) {
    Add(filter, filters);
}
void SMSectionType2::AddCalculation(SMCalculation2* calculation) {
    Add(calculation, calculations);
}
void SMSectionType2::AddDimension(SMDimension2* dimension) {
    Add(dimension, dimensions);
}
void SMSectionType2::AddShortcut(SMShortcut2* shortcut) {
    Add(shortcut, shortcuts);
}
void SMSectionType2::AddRelationship(SMRelationship2* relationship) {
    Add(relationship, relationships);
}
void SMSectionType2::AddRelationshipShortcut(SMRelationshipShortcut2* shortcut) {
    Add(shortcut, relationshipShortcuts);
}
void SMSectionType2::AddScopeRelationship(SMScopeRelationship2* relationship) {
    Add(relationship, scopeRelationships);
}

SMFolder2* SMSectionType2::AddOrUpdateFolder(const I18NString& name) {
    SMFolder2* folder = folders.Find(name.utf8(), *this);
    return folder ? folder : Create<SMFolder2>(folders, name);
}

SMNamespace2* SMSectionType2::GetThisOrContainingNamespace() {
    return GetContainingNamespace();
}

SMNamespace2* SMSectionType2::GetContainingNamespace() const {
    return static_cast<SMNamespace2*>(GetContainingObjectOfType(SMEnum_xmltag::Enum::namespace_, SMEnum_xmltag::Enum(-1)));
}

bool SMSectionType2::HasContent() const {
    bool content = false;
    InOrder([&](auto& children) { content = content || !children.empty(); }, folders, functions, shortcuts, querySubjects, updateSubjects,
            relationships, relationshipShortcuts, filters, calculations, dimensions, scopeRelationships);
    return content;
}

// ---- walks, each in an order of its own

void SMSectionType2::SetSMProject(SMProject2* project) {
    SMNameDescObject2::SetSMProject(project);
    const auto set = [&](auto& children) {
        for (const auto& child : children) child->SetSMProject(project);
    };
    InOrder(set, folders, functions, shortcuts, querySubjects, updateSubjects, relationships, relationshipShortcuts, filters, calculations,
            dimensions, scopeRelationships);
}

void SMSectionType2::AddToSetPIDIDAndMiniObject() {
    const auto enter = [&](auto& children) {
        for (const auto& child : children) {
            m_project->AddToSetPIDIDAndMiniObject(child);
            if constexpr (requires { child->AddToSetPIDIDAndMiniObject(); }) child->AddToSetPIDIDAndMiniObject();
        }
    };
    InOrder(enter, folders, namespaces, dimensions, querySubjects, updateSubjects, calculations, scopeRelationships, shortcuts, filters,
            relationships, relationshipShortcuts, functions);
}

void SMSectionType2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& collection) const {
    const auto list = [&](auto& children) {
        for (const auto& child : children) collection.push_back(child);
    };
    InOrder(list, scopeRelationships, dimensions, calculations, filters, relationshipShortcuts, querySubjects, updateSubjects,
            relationships, folders, functions, namespaces, shortcuts);
}

void SMSectionType2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    const auto regenerate = [&](auto& children) {
        for (const auto& child : children) child->RegenerateIds(idMap);
    };
    InOrder(regenerate, folders, functions, namespaces, shortcuts, querySubjects, updateSubjects, relationships, relationshipShortcuts,
            filters, calculations, dimensions, scopeRelationships);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMSectionType2::RenameObjects(SMRenameList2& list) {
    const auto rename = [&](auto& children) {
        for (const auto& child : children) child->RenameObjects(list);
    };
    InOrder(rename, folders, namespaces, shortcuts, querySubjects, updateSubjects, relationships, relationshipShortcuts, filters,
            calculations, dimensions, scopeRelationships);
}

// ---- document

void SMSectionType2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    WriteXMLElement(nullptr, handler, target);
}

void SMSectionType2::WriteXMLElement(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, GetTagName());
    WriteXMLElementChildren(helper, handler, target);
    EndElement(handler, GetTagName());
}

void SMSectionType2::WriteXMLElementChildren(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    WriteLocaleMap(handler, m_tags->name, names);
    WriteLocaleMap(handler, m_tags->description, descriptions);
    WriteLocaleMap(handler, m_tags->screenTip, screenTips);
    WriteSMDate(handler, m_tags->lastChanged, NoAttributes(), GetLastChangedDate());
    WriteProperties(handler, true);
    auto* files = helper && helper->GetHelperKind() == HELPER_KIND_MULTI_FILE ? static_cast<MultiFileHelper*>(helper) : nullptr;
    for (SMObjectBase* item : m_displayOrder.Items()) {
        if (!item) continue;
        if (!files || !files->IsSeparateFile(item->GetTagName()))
            item->WriteXMLElement(helper, handler, target);
        else if (parentHandler)  // placeholders go to the enclosing document, not into this section's own file
            item->BreakAndWriteXMLDocument(files, parentHandler, *parentTarget);
        else
            item->BreakAndWriteXMLDocument(files, handler, target);
    }
}

// ---- repository

void SMSectionType2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNameDescObject2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_SECTION_TYPE_NAME, GetTagName());
    row.Number(COL_DISPLAY_ORDER, displayOrder);
}

bool SMSectionType2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

bool SMSectionType2::WriteChildren(IOHelper& helper, const SMLogWords& words, const char* failure) {
    for (SMObjectBase* item : m_displayOrder.Items()) {
        if (!item || item->write(helper)) continue;
        SMLog(SM_FAILURE, words, "write_next", failure, item->GetId());
        return false;
    }
    return true;
}

bool SMSectionType2::readObjectType(IOHelper& helper, const I18NString& type, QvSmartPtr<IOArrayParam>& result, bool addObjectParameter) {
    result = new IOArrayParam();
    if (!helper.MayHaveRows(type, GetId())) return true;
    return ReadGuarded(WORDS, "read", [&] {
        const QvSmartPtr<IOParameter> params = PrepareReadAttributes(helper, type);
        if (addObjectParameter) params->GetByName(IOParamTag::ATTRIBUTES)->insertOrReplace(IOParamTag::OBJECT, new IOQvStringParam());
        return helper.DoReadAction(IOAction::AT_ReadSMObject, static_cast<const IOHashParam&>(*params), *result);
    });
}

template <class T>
bool SMSectionType2::ReadChild(IOHelper& helper, const IOParameter& row, void (SMSectionType2::*add)(T*)) {
    const QvSmartPtr<T> child = Make<T>();
    AdoptRow(helper, *child, row);
    if (!child->read(helper)) return false;
    (this->*add)(child);  // last: a namespace's name must be known
    return true;
}

template <class T>
bool SMSectionType2::ReadKind(IOHelper& helper, const I18NString& type, void (SMSectionType2::*add)(T*)) {
    QvSmartPtr<IOArrayParam> rows;
    if (!readObjectType(helper, type, rows, false)) return false;
    for (int i = 0; i < rows->Size(); ++i)
        if (!ReadChild(helper, *rows->At(i), add)) return false;
    return true;
}

bool SMSectionType2::ReadSections(IOHelper& helper) {
    QvSmartPtr<IOArrayParam> rows;
    if (!readObjectType(helper, KIND_SECTION, rows, false)) return false;
    for (int i = 0; i < rows->Size(); ++i) {
        const QvSmartPtr<IOParameter> row = rows->At(i);
        const auto type = IfPresent(*row, IOParamTag::OBJECT_TYPE);
        switch (m_tags->_string2enum(type ? type->GetQvStringValue() : EMPTY_QVSTRING)) {
        case SMEnum_xmltag::Enum::folder:
            if (!ReadChild(helper, *row, &SMSectionType2::AddFolder)) return false;
            break;
        case SMEnum_xmltag::Enum::namespace_:
            if (!ReadChild(helper, *row, &SMSectionType2::AddNamespace)) return false;
            break;
        default: break;
        }
    }
    return true;
}

bool SMSectionType2::ReadSubjects(IOHelper& helper) {
    QvSmartPtr<IOArrayParam> rows;
    if (!readObjectType(helper, KIND_SUBJECT, rows, true)) return false;
    for (int i = 0; i < rows->Size(); ++i) {
        const QvSmartPtr<IOParameter> row = rows->At(i);
        const auto kind = IfPresent(*row, IOParamTag::OBJECT);
        switch (m_tags->_string2enum(kind ? kind->GetQvStringValue() : EMPTY_QVSTRING)) {
        case SMEnum_xmltag::Enum::dimension:
            if (!ReadChild(helper, *row, &SMSectionType2::AddDimension)) return false;
            break;
        case SMEnum_xmltag::Enum::querySubject:
            if (!ReadChild(helper, *row, &SMSectionType2::AddQuerySubject)) return false;
            break;
        default: break;
        }
    }
    return true;
}

bool SMSectionType2::read(IOHelper& helper) {
    SMSectionTypeBuilder builder(this);
    const auto guarded = [&](auto step) { return ReadGuarded(WORDS, "read", [&] { return (this->*step)(helper); }); };
    if (!read_custom_property_locale(helper, this, &builder) || !guarded(&SMSectionType2::ReadSections) ||
        !guarded(&SMSectionType2::ReadSubjects) || !ReadKind(helper, m_tags->updateSubject, &SMSectionType2::AddUpdateSubject) ||
        !ReadKind(helper, m_tags->calculation, &SMSectionType2::AddCalculation) ||
        !ReadKind(helper, m_tags->scopeRelationship, &SMSectionType2::AddScopeRelationship) ||
        !ReadKind(helper, m_tags->shortcut, &SMSectionType2::AddShortcut) ||
        !ReadKind(helper, m_tags->filter, &SMSectionType2::AddFilter) ||
        !ReadKind(helper, m_tags->relationship, &SMSectionType2::AddRelationship) ||
        !ReadKind(helper, m_tags->relationshipShortcut, &SMSectionType2::AddRelationshipShortcut) ||
        !ReadKind(helper, m_tags->function, &SMSectionType2::AddFunction))
        return false;
    SortDisplayOrder();
    return true;
}

}  // namespace schema_002_000
