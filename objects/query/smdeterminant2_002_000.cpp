#include "objects/query/smdeterminant2_002_000.h"

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/base/smprint_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_DETERMINANT", "DETERMINANT_ID", "DETERMINANT_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smdeterminant2", "SMDeterminant2"};
const QvULString COL_NAME = SMColumn("NAME");
const QvULString COL_CANGROUP = SMColumn("CANGROUP");
const QvULString COL_IDENTIFIESROW = SMColumn("IDENTIFIESROW");
const QvULString COL_KEY_REFOBJS = SMColumn("KEY_REFOBJS");
const QvULString COL_ATTRIBUTES_REFOBJS = SMColumn("ATTRIBUTES_REFOBJS");
const I18NString BUILDER_MODULE = I18NString::Immortal("smdeterminant2");
const I18NString BUILDER_CLASS = I18NString::Immortal("SMDeterminantBuilder");
constexpr std::size_t COLUMN_BUFFER = 0x10000;

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMDeterminant2, TABLE)

// ---- memory

void SMDeterminant2::SetName(const QvULString& text) {
    NoteNameChange(name.utf8(), text.utf8());
    name = text;
}

void SMDeterminant2::RenameObjects(SMRenameList2& list) {
    for (QvULString& path : keyRefObjs) list.PerformRenames(path);
    for (QvULString& path : attrRefObjs) list.PerformRenames(path);
}

// ---- document

void SMDeterminant2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget&) const {
    QvXMLAttributesImpl attrs;
    AddIdAndVersion(attrs);
    StartElement(handler, m_tags->determinant, attrs);
    TextElement(handler, m_tags->name, name);
    if (!keyRefObjs.empty()) WriteVector(handler, m_tags->key, keyRefObjs);
    if (!attrRefObjs.empty()) WriteVector(handler, m_tags->attributes, attrRefObjs);
    FlagElement(handler, m_tags->canGroup, canGroup);
    FlagElement(handler, m_tags->identifiesRow, identifiesRow);
    EndElement(handler, m_tags->determinant);
}

void SMDeterminant2::WriteVector(QvContentHandler* handler, const I18NString& startTag, const std::vector<QvULString>& paths) const {
    StartElement(handler, startTag);
    for (const QvULString& path : paths) TextElement(handler, m_tags->refobj, path);
    EndElement(handler, startTag);
}

// ---- repository

void SMDeterminant2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_NAME, name);
    row.Flag(COL_CANGROUP, canGroup);
    row.Flag(COL_IDENTIFIESROW, identifiesRow);
    getAttributesFromVector(attrs);
}

void SMDeterminant2::getAttributesFromVector(IOParameter& attrs) const {
    const auto print = [&](const I18NString& tag, const std::vector<QvULString>& paths) {
        return SMPrintToString([&](QvContentHandler* handler, QvXMLFormatTarget&) { WriteVector(handler, tag, paths); });
    };
    SMRowWriter row(attrs);
    row.Text(COL_KEY_REFOBJS, print(m_tags->key, keyRefObjs));
    row.Text(COL_ATTRIBUTES_REFOBJS, print(m_tags->attributes, attrRefObjs));
}

void SMDeterminant2::constructFromIOParameter(const IOParameter& row) {
    SMObjectBase::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        SetName(TextOf(row, m_tags->name));
        canGroup = FlagOf(row, m_tags->canGroup);
        identifiesRow = FlagOf(row, m_tags->identifiesRow);
        ReadVector(row, m_tags->key);
        ReadVector(row, m_tags->attributes);
    });
}

void SMDeterminant2::ReadVector(const IOParameter& row, const QvULString& key) {
    const I18NString text = TextOf(row, key);
    if (text.empty()) return;
    try {
        TklByteBuffer document(COLUMN_BUFFER, COLUMN_BUFFER);
        document.appendChars(text.utf8().data(), text.utf8().size());
        SMDeterminantBuilder builder(this);
        QvSAX2Parser parser;
        parser.setContentHandler(&builder);
        parser.parse(document);
    } catch (const TklRuntimeError& error) {
        LogReadFailure(row, WORDS, error);  // what was read of this list stays, and the other one is read all the same
    }
}

bool SMDeterminant2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && helper.EndObject();
}

// ---- builder

void SMDeterminantBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&,
                                            const QvXMLAttributes& attrs) {
    switch (TagOf(localName)) {
    case Tag::determinant: break;
    case Tag::name:
    case Tag::refobj:
    case Tag::canGroup:
    case Tag::identifiesRow: CollectText(); break;
    case Tag::key: m_list = List::keys; break;
    case Tag::attributes: m_list = List::attributes; break;
    case Tag::property: StartProperty(attrs); break;
    default: LogUnknownStart(BUILDER_MODULE, BUILDER_CLASS, "realStartElement", localName);
    }
}

void SMDeterminantBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::determinant:
    case Tag::key:
    case Tag::attributes: break;
    case Tag::name: m_determinant->SetName(m_text); break;
    case Tag::refobj: AddRefObj(); break;
    case Tag::canGroup: m_determinant->SetCanGroup(TextAsBool()); break;
    case Tag::identifiesRow: m_determinant->SetIdentifiesRow(TextAsBool()); break;
    case Tag::property: EndProperty(*m_determinant); break;
    default: LogUnknownStart(BUILDER_MODULE, BUILDER_CLASS, "realEndElement", localName);
    }
}

void SMDeterminantBuilder::AddRefObj() {
    if (m_list == List::keys) m_determinant->AddKeyRefObj(m_text);
    if (m_list == List::attributes) m_determinant->AddAttrRefObj(m_text);
}

}  // namespace schema_002_000
