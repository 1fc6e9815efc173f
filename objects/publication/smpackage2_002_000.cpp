#include "objects/publication/smpackage2_002_000.h"

#include "core/qvutils/persist/cltask.h"
#include "objects/base/smprint_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_PACKAGE", "PACKAGE_ID", "PACKAGE_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO"};
const SMLogWords WORDS = {"smpackage2", "SMPackage2"};
const QvULString COL_ISROLEBASED = SMColumn("ISROLEBASED");
const QvULString COL_LASTPUBLISHED = SMColumn("LASTPUBLISHED");
const QvULString COL_MAXVERSIONS = SMColumn("MAXVERSIONS");
const I18NString FILE_EXTENSION = I18NString::Immortal("qva");
const QvULString NAME_PROJECT = QvULString::Immortal("project");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMPackage2, TABLE)

// ---- memory

void SMPackage2::SetLastPublished(const QvDate& date) {
    if (m_lastPublished)
        *m_lastPublished = date;
    else
        m_lastPublished = std::make_unique<QvDate>(date);
}

void SMPackage2::AddViewref(const I18NString& reference) {
    if (m_knownViewrefs.insert(reference).second) m_viewrefs.push_back(reference);
}

void SMPackage2::AddToSetPIDIDAndMiniObject() {
    const auto add = [&](const I18NString& tag, long version, const I18NString& text) {
        m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), tag, static_cast<int>(version), text);
    };
    add(m_tags->description, m_descriptionInfoId, WriteMapToString(m_tags->description, descriptions));
    add(m_tags->screenTip, m_screenTipInfoId, WriteMapToString(m_tags->screenTip, screenTips));
    add(m_tags->definition, m_viewrefsInfoId, WriteListToString(m_tags->definition, m_tags->viewref, m_viewrefs));
    add(m_tags->locales, m_localesInfoId, WriteListToString(m_tags->locales, m_tags->locale, m_locales));
    m_project->AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_adminAccess);
}

// ---- document

void SMPackage2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfTrue(attrs, m_tags->isRoleBased, m_isRoleBased);
    StartElement(handler, m_tags->package, attrs);
    WriteCommonElements(handler);
    if (m_lastPublished) WriteSMDate(handler, m_tags->lastPublished, NoAttributes(), *m_lastPublished);
    NumberElement(handler, m_tags->maxVersions, m_maxVersions);
    WriteList(handler, m_tags->locales, m_tags->locale, m_locales);
    WriteList(handler, m_tags->definition, m_tags->viewref, m_viewrefs);
    if (m_adminAccess) {
        WriteKept(m_adminAccess, target);
    } else {
        SMLog(SM_MISUSE, WORDS, "WriteXMLElement", "Writing to XML a package containing no adminAccess element.  Adding an empty tag.");
        TextElement(handler, m_tags->adminAccess, EMPTY_QVSTRING);
    }
    EndElement(handler, m_tags->package);
}

I18NString SMPackage2::WriteMapToString(const I18NString& tag, const SMLocaleMap& map) const {
    return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) {
        for (const auto& entry : map) {
            QvXMLAttributesImpl attrs;
            attrs.push_back(m_tags->locale, entry.first);
            WriteString(handler, tag, attrs, entry.second);
        }
    });
}

const I18NString& SMPackage2::GetFileExtension() {
    return FILE_EXTENSION;
}

int SMPackage2::WriteWhat() const {
    const CLTask* task = m_project ? m_project->getActiveExportTask() : nullptr;
    if (!task || task->GetMapTargetID2ObjectTask().count(GetId())) return static_cast<int>(SMWriteWhat::file);
    return static_cast<int>(GetName() == NAME_PROJECT ? SMWriteWhat::emptyPlaceholder : SMWriteWhat::nothing);
}

void SMPackage2::WriteXMLEmptyPlaceholder(MultiFileHelper*, QvContentHandler* handler, QvXMLFormatTarget&) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->name, GetName());
    StartElement(handler, GetPlaceholderTag(), attrs);
    EndElement(handler, GetPlaceholderTag());
}

bool SMPackage2::ReadFromXMLFile(const I18NString& filepath, const I18NString& filename) {
    SMPackageBuilder builder(this);
    return ReadPartFile(filepath, filename, m_tags->package, WORDS, builder);
}

// ---- repository

void SMPackage2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);  // on purpose past the nearer base: a package keeps all its texts in records
    SMRowWriter row(attrs);
    row.Flag(COL_ISROLEBASED, m_isRoleBased);
    if (m_lastPublished) row.Date(COL_LASTPUBLISHED, *m_lastPublished);
    row.Number(COL_MAXVERSIONS, m_maxVersions);
}

void SMPackage2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        ReadIfPresent(row, m_tags->isRoleBased, m_isRoleBased);
        if (const auto date = IfPresent(row, m_tags->lastPublished)) SetLastPublished(date->GetDateValue());
        ReadIfPresent(row, m_tags->maxVersions, m_maxVersions);
    });
}

bool SMPackage2::read(IOHelper& helper) {
    const QvDate stored = GetLastChangedDate();
    std::map<QvULString, long*> wanted{{m_tags->locales, &m_localesInfoId},
                                       {m_tags->definition, &m_viewrefsInfoId},
                                       {m_tags->screenTip, &m_screenTipInfoId},
                                       {m_tags->description, &m_descriptionInfoId}};
    SMPackageBuilder builder(this);
    const bool success =
        ReadKeptInfo(helper, m_adminAccess, m_tags->adminAccess) && read_remaining_info_into_builder(helper, this, &builder, wanted);
    SetLastChangedDate(stored);  // the descriptions just read have touched it
    return success;
}

bool SMPackage2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

bool SMPackage2::write_next(IOHelper& helper) {
    const bool success =
        write_remaining_info(helper, m_tags->description, WriteMapToString(m_tags->description, descriptions), m_descriptionInfoId) &&
        write_remaining_info(helper, m_tags->screenTip, WriteMapToString(m_tags->screenTip, screenTips), m_screenTipInfoId) &&
        write_remaining_info(helper, m_tags->definition, WriteListToString(m_tags->definition, m_tags->viewref, m_viewrefs),
                             m_viewrefsInfoId) &&
        write_remaining_info(helper, m_tags->locales, WriteListToString(m_tags->locales, m_tags->locale, m_locales), m_localesInfoId);
    if (!success || m_adminAccess) return success && write_remaining_info(helper, m_adminAccess);
    SMLog(SM_MISUSE, WORDS, "write_next", "Writing to DB a package containing no adminAccess element.");
    return true;
}

// ---- builder

using Tag = SMEnum_xmltag::Enum;

void SMPackageBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    switch (tag) {
    case Tag::package:
    case Tag::locales: break;
    case Tag::locale:
    case Tag::lastPublished:
    case Tag::maxVersions:
    case Tag::viewref:
    case Tag::definition:  // a package file may name its one view here, without an element around it
        CollectText();
        break;
    case Tag::adminAccess: m_package->SetAdminAccess(KeepXml(m_tags->adminAccess, attrs)); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMPackageBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::package:
    case Tag::locales: break;
    case Tag::locale: m_package->AddLocale(m_text); break;
    case Tag::viewref: m_package->AddViewref(m_text); break;
    case Tag::definition:  // after a "viewref" the text is that one's, which is there already
        if (!m_text.empty()) m_package->AddViewref(m_text);
        break;
    case Tag::maxVersions: m_package->SetMaxVersions(TextAsInt()); break;
    case Tag::lastPublished:
        if (!m_text.empty()) m_package->SetLastPublished(QvDate(m_text));
        break;
    case Tag::property: EndProperty(*m_package); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
