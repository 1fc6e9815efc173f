#include "objects/containers/smnamespace2_002_000.h"

#include "core/qvutils/persist/cltask.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smnamespace2", "SMNamespace2"};
const I18NString BUILDER_CLASS = I18NString::Immortal("SMNamespaceBuilder");
const I18NString BUILDER_MODULE = I18NString::Immortal("smnamespace2");
const I18NString FILE_EXTENSION = I18NString::Immortal("qvf");
const QvULString NAME_TARGET = QvULString::Immortal("Target");
const QvULString NAME_SOURCE = QvULString::Immortal("Source");
constexpr int MODEL_TYPE_NAMESPACE = 21, MODEL_TYPE_FOLDER = 22, MODEL_TYPE_PROJECT = 23;

}  // namespace

SMNamespace2::~SMNamespace2() {
    if (m_mapEntries > 0 && m_project) m_project->ForgetNamespace(this);
}

I18NString SMNamespace2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, GetName(), EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMNamespace2::ChangeDefaultName(const I18NString& name) {
    SMNamedObject2::ChangeDefaultName(name);
    if (m_project) m_project->AddNamespaceToMap(this);
}

void SMNamespace2::CorrectChildrenParentPtrs() {
    for (SMObjectBase* item : m_displayOrder.Items())
        if (item) item->parent = this;
}

// ---- document

const I18NString& SMNamespace2::GetFileExtension() {
    return FILE_EXTENSION;
}

int SMNamespace2::WriteWhat() const {
    const CLTask* task = m_project ? m_project->getActiveExportTask() : nullptr;
    if (!task || task->GetMapTargetID2ObjectTask().count(GetId())) return static_cast<int>(SMWriteWhat::file);
    // the two top namespaces are written whole for what they hold; their child namespaces do not count
    const bool whole = (GetName() == NAME_TARGET || GetName() == NAME_SOURCE) && HasContent();
    return static_cast<int>(whole ? SMWriteWhat::file : SMWriteWhat::emptyPlaceholder);
}

void SMNamespace2::WriteXMLEmptyPlaceholder(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->name, GetName());
    StartElement(handler, GetPlaceholderTag(), attrs);
    for (const auto& child : namespaces) child->BreakAndWriteXMLDocument(files, handler, target);
    EndElement(handler, GetPlaceholderTag());
}

bool SMNamespace2::ReadFromXMLFile(const I18NString& filepath, const I18NString& filename) {
    SMNamespaceBuilder builder(this, true);
    return ReadPartFile(filepath, filename, m_tags->namespace_, WORDS, builder);
}

// ---- repository

bool SMNamespace2::write_next(IOHelper& helper) {
    return write_custom_property_locale(helper) && WriteChildren(helper, WORDS, "Failed to write a child of a namespace.");
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

SMNamespaceBuilder::SMNamespaceBuilder(SMNamespace2* ns, bool isFileRoot)
    : SMSectionTypeBuilder(ns), m_namespace(ns), m_held(isFileRoot ? nullptr : ns), m_isFileRoot(isFileRoot) {}

void SMNamespaceBuilder::smtagStartElement(const I18NString&, const I18NString&, Tag tag, const QvXMLAttributes& attrs) {
    const bool isFirst = m_atFirstElement;
    m_atFirstElement = false;
    if (isFirst && m_isFileRoot && tag == Tag::namespace_) return;  // this object stands for the root element of its file
    SMSectionTypeBuilder::smtagStartElement(BUILDER_CLASS, BUILDER_MODULE, tag, attrs);
}

void SMNamespaceBuilder::smtagEndElement(const I18NString&, const I18NString&, Tag tag) {
    StopCollecting();
    if (tag == Tag::namespace_)
        JoinParent();
    else
        SMSectionTypeBuilder::smtagEndElement(BUILDER_CLASS, BUILDER_MODULE, tag);
}

void SMNamespaceBuilder::JoinParent() {
    m_namespace->SortDisplayOrder();
    SMObjectBase* parent = m_namespace->GetParentSMObj();
    if (!parent) return;
    switch (parent->GetModelType()) {
    case MODEL_TYPE_NAMESPACE:
    case MODEL_TYPE_FOLDER: {
        auto* section = static_cast<SMSectionType2*>(parent);
        // only a namespace that somebody else shares can stand there already: the others are spared the search
        const int ownShare = m_held ? 1 : 0;
        const bool joined = m_namespace->getReferenceCount() > ownShare && section->HasNamespace(m_namespace);
        if (!joined) section->AddNamespace(m_namespace);
        break;
    }
    case MODEL_TYPE_PROJECT: m_namespace->GetSMProject()->SetRootNamespace(m_namespace); break;
    default: break;
    }
}

}  // namespace schema_002_000
