#include "objects/containers/smsectiontype2_002_000.h"

#include "core/qvutils/persist/multifilehelper.h"
#include "objects/base/smskippedelement_002_000.h"
#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_SECTION_TYPE", "SECTION_ID", "SECTION_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO"};
const QvULString COL_SECTION_TYPE_NAME = SMColumn("SECTION_TYPE_NAME");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const I18NString KIND_SECTION = I18NString::Immortal("generic_section_type");
constexpr int HELPER_KIND_MULTI_FILE = 3;

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMSectionType2, TABLE)

SMSectionType2::SMSectionType2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

SMSectionType2::~SMSectionType2() {
    SMOrphan(folders);
    SMOrphan(namespaces);
}

// ---- children

void SMSectionType2::Record(SMObjectBase* object) {
    if (SMProject2* project = object->GetSMProject()) project->RecordObject(object);
}

void SMSectionType2::AddFolder(SMFolder2* folder) {
    m_displayOrder.Append(folder);
    folders.Append(folder);
}

SMFolder2* SMSectionType2::AddOrUpdateFolder(const I18NString& name) {
    if (SMFolder2* folder = folders.Find(name.utf8(), *this)) return folder;
    auto* folder = new SMFolder2(this, m_project);
    Number(folder);
    AddFolder(folder);
    folder->ChangeDefaultName(name);
    return folder;
}

SMNamespace2* SMSectionType2::GetThisOrContainingNamespace() {
    return GetContainingNamespace();
}

SMNamespace2* SMSectionType2::GetContainingNamespace() const {
    return static_cast<SMNamespace2*>(GetContainingObjectOfType(SMEnum_xmltag::Enum::namespace_, SMEnum_xmltag::Enum(-1)));
}

// ---- display order, ids, walks

void SMSectionType2::SetSMProject(SMProject2* project) {
    SMNameDescObject2::SetSMProject(project);
    for (const auto& folder : folders) folder->SetSMProject(project);
}

void SMSectionType2::AddToSetPIDIDAndMiniObject() {
    for (const auto& folder : folders) {
        m_project->AddToSetPIDIDAndMiniObject(folder);
        folder->AddToSetPIDIDAndMiniObject();
    }
    for (const auto& ns : namespaces) {
        m_project->AddToSetPIDIDAndMiniObject(ns);
        ns->AddToSetPIDIDAndMiniObject();
    }
}

void SMSectionType2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& folder : folders) children.push_back(folder);
    for (const auto& ns : namespaces) children.push_back(ns);
}

void SMSectionType2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    for (const auto& folder : folders) folder->RegenerateIds(idMap);
    for (const auto& ns : namespaces) ns->RegenerateIds(idMap);
    SMNamedObject2::RegenerateIds(idMap);
}

void SMSectionType2::RenameObjects(SMRenameList2& list) {
    for (const auto& folder : folders) folder->RenameObjects(list);
    for (const auto& ns : namespaces) ns->RenameObjects(list);
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
    const QvSmartPtr<IOParameter> params = PrepareReadAttributes(helper, type);
    if (addObjectParameter) params->GetByName(IOParamTag::ATTRIBUTES)->insertOrReplace(IOParamTag::OBJECT, new IOQvStringParam());
    result = new IOArrayParam();
    return helper.DoReadAction(IOAction::AT_ReadSMObject, static_cast<const IOHashParam&>(*params), *result);
}

bool SMSectionType2::ReadSections(IOHelper& helper) {
    QvSmartPtr<IOArrayParam> rows;
    if (!readObjectType(helper, KIND_SECTION, rows, false)) return false;
    for (int i = 0; i < rows->Size(); ++i) {
        const QvSmartPtr<IOParameter> row = rows->At(i);
        const auto type = IfPresent(*row, IOParamTag::OBJECT_TYPE);
        switch (m_tags->_string2enum(type ? type->GetQvStringValue() : I18NString())) {
            case SMEnum_xmltag::Enum::folder: {
                const QvSmartPtr<SMFolder2> folder = new SMFolder2(this, m_project);
                AdoptRow(helper, *folder, *row);
                if (!folder->read(helper)) return false;
                AddFolder(folder);
                break;
            }
            case SMEnum_xmltag::Enum::namespace_: {
                const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(this, m_project);
                AdoptRow(helper, *ns, *row);
                if (!ns->read(helper)) return false;
                AddNamespace(ns);
                break;
            }
            default:
                break;
        }
    }
    return true;
}

bool SMSectionType2::read(IOHelper& helper) {
    SMSectionTypeBuilder builder(this);
    if (!read_custom_property_locale(helper, this, &builder) || !ReadSections(helper)) return false;
    SortDisplayOrder();
    return true;
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMSectionTypeBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
        case Tag::namespace_: {
            auto* ns = new SMNamespace2(m_section, m_section->GetSMProject());
            ns->displayOrder = m_section->TakeDisplayOrder();
            Push(new SMNamespaceBuilder(ns, false));  // joins the section at its end, when its name is known
            break;
        }
        case Tag::folder: {
            auto* folder = new SMFolder2(m_section, m_section->GetSMProject());
            folder->displayOrder = m_section->TakeDisplayOrder();
            m_section->AddFolder(folder);
            Push(new SMFolderBuilder(folder));
            break;
        }
        case Tag::smnamespacefile:
            StartNamespaceFile(attrs);
            break;
        case Tag::property:
            StartProperty(attrs);
            break;
        case Tag::querySubject:
        case Tag::updateSubject:
        case Tag::dimension:
        case Tag::calculation:
        case Tag::filter:
        case Tag::function:
        case Tag::shortcut:
        case Tag::relationship:
        case Tag::relationshipShortcut:
        case Tag::scopeRelationship:
            Push(new SMSkippedElementBuilder(m_tags->_enum2string(tag)));
            break;
        default:
            SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMSectionTypeBuilder::StartNamespaceFile(const QvXMLAttributes& attrs) {
    SMProject2* project = m_section->GetSMProject();
    const int filename = attrs.getIndex(m_tags->filename);
    QvSmartPtr<SMNamespace2> ns;
    if (filename < 0) {
        const I18NString name = attrs.getValue(m_tags->name);
        ns = project->FindNamespaceByName(name);
        if (!ns) {
            ns = new SMNamespace2(m_section, project);
            ns->SetId(attrs.getValue(m_tags->id));
            ns->SetNameDontTouchNamespaceMap(name);
            m_section->AddNamespace(ns);
        }
    } else {
        ns = new SMNamespace2(m_section, project);
        ns->ReadFromXMLFile(attrs.getValue(m_tags->filepath), attrs.getValue(filename));
    }
    Push(new SMNamespaceBuilder(ns, false));  // takes the placeholders inside this one
}

void SMSectionTypeBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
        case Tag::smnamespacefile:
            break;
        case Tag::property:
            EndProperty(*m_section);
            break;
        default:
            SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
