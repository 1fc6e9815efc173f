#include "objects/query/smqueryitem2_002_000.h"

#include "objects/catalogue/dbcolumn_002_000.h"
#include "objects/query/smquerysubjecttype2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_QUERY_ITEM", "QS_ITEM_ID", "QS_ITEM_VERSION_NO", "ITEM_FOLDER_ID", "ITEM_FOLDER_VERSION_NO"};
const SMLogWords WORDS = {"smqueryitem2", "SMQueryItem2"};
const SMLogWords ID_WORDS = {"smlevel2", "SMLevel2"};  // as the log has it
const QvULString PROPERTY_QVDBREF = QvULString::Immortal("qvdbref");
const QvULString PROPERTY_PHYSICAL_NAME = QvULString::Immortal("physicalName");
/** Id columns of the objects at which the way up to a physical column ends. */
const I18NString CONTAINER_SUBJECT = I18NString::Immortal("QS_ID");
const I18NString CONTAINER_LEVEL = I18NString::Immortal("LEVEL_ID");
const QvULString COL_QS_ID = SMColumn("QS_ID");
const QvULString COL_QS_VERSION_NO = SMColumn("QS_VERSION_NO");
const QvULString COL_PHYSICAL_OBJECT_ID = SMColumn("PHYSICAL_OBJECT_ID");
const QvULString COL_PHYSICAL_NAME = SMColumn("PHYSICAL_NAME");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const QvULString COL_EXTERNALNAME = SMColumn("EXTERNALNAME");
const QvULString COL_EXPRESSION = SMColumn("EXPRESSION");
const QvULString COL_SORT = SMColumn("SORT");
const QvULString COL_UNSORTABLE = SMColumn("UNSORTABLE");
const QvULString COL_SORTONREF = SMColumn("SORTONREF");
const QvULString COL_SEMIAGGREGATE = SMColumn("SEMIAGGREGATE");
const QvULString COL_REGULARAGGREGATE = SMColumn("REGULARAGGREGATE");
const QvULString COL_MIMETYPE = SMColumn("MIMETYPE");
const QvULString COL_DISPLAYTYPE = SMColumn("DISPLAYTYPE");
const QvULString COL_AGGREGATIONRULE = SMColumn("AGGREGATIONRULE");
const QvULString COL_SCALE = SMColumn("SCALE");
const QvULString COL_NULLABLE = SMColumn("NULLABLE");
const QvULString COL_SIZE = SMColumn("SIZE");
const QvULString COL_PRECISION = SMColumn("PRECISION");
const QvULString COL_DATATYPE = SMColumn("DATATYPE");
const QvULString COL_CURRENCY = SMColumn("CURRENCY");
const QvULString COL_FORMAT = SMColumn("FORMAT");
const QvULString COL_USAGE = SMColumn("USAGE");
const QvULString COL_HIDDEN = SMColumn("HIDDEN");
const QvULString COL_COLLATIONSEQNAME = SMColumn("COLLATIONSEQNAME");
const QvULString COL_COLLATIONSEQLEVEL = SMColumn("COLLATIONSEQLEVEL");
const QvULString COL_ORIGINALCOLLATIONSEQNAME = SMColumn("ORIGINALCOLLATIONSEQNAME");
const QvULString COL_ORIGINALENCODINGNAME = SMColumn("ORIGINALENCODINGNAME");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMQueryItem2, TABLE)

// ---- memory

I18NString SMQueryItem2::GetSMID(bool escape) const {
    const SMObjectBase* container = GetContainingObjectOfType(Tag::querySubject, Tag::level);
    if (!container) {
        SMLog(SM_MISUSE, ID_WORDS, "GetSMID", "Attempting to build an SM ID for a query item that is not inside a query subject or level.");
        return I18NString();
    }
    I18NString smid = container->GetSMID(escape);
    AppendToSMObjectID(escape, smid, GetName());
    return smid;
}

EDB_TYPE SMQueryItem2::GetColDBType() const {
    if (physicalObjectId.empty()) return EDB_TYPE::unknown;
    // by the names of the id columns, through any folders: an item of a level has no physical column
    const SMObjectBase* container = this;
    for (I18NString column; container && column != CONTAINER_SUBJECT && column != CONTAINER_LEVEL;) {
        container = container->GetParentSMObj();
        column = container ? container->GetIdCol() : I18NString();
    }
    if (!container || container->GetSMType() != Tag::querySubject) return EDB_TYPE::unknown;  // a dimension has no target tables
    const DBColumn* physical = static_cast<const SMQuerySubjectType2*>(container)->FindTargetColumn(physicalObjectId);
    return physical ? physical->getType() : EDB_TYPE::unknown;
}

void SMQueryItem2::SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) {
    if (name == PROPERTY_QVDBREF)
        physicalObjectId = value;
    else if (name == PROPERTY_PHYSICAL_NAME)
        physicalName = value;
    else
        SMNamedObject2::SetProperty(name, type, value);
}

// ---- document

void SMQueryItem2::WriteProperties(QvContentHandler* handler, bool writeHidden) const {
    WriteHiddenPropertyIfSet(handler, PROPERTY_QVDBREF, physicalObjectId);
    WriteHiddenPropertyIfSet(handler, PROPERTY_PHYSICAL_NAME, physicalName);
    SMNameDescObject2::WriteProperties(handler, writeHidden);
}

void SMQueryItem2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->queryItem);
    WriteXMLElementChildren(handler, target);
    EndElement(handler, m_tags->queryItem);
}

// ---- repository

void SMQueryItem2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMQueryItemType2::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_QS_ID, parent ? parent->GetId() : EMPTY_QVULSTRING);  // whatever kind the parent is
    row.Number(COL_QS_VERSION_NO, parent ? parent->GetVersionNo() : 0);
    row.Text(COL_PHYSICAL_OBJECT_ID, physicalObjectId);
    row.Text(COL_PHYSICAL_NAME, physicalName);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
    row.Text(COL_EXTERNALNAME, externalName);
    row.InnerXml(COL_EXPRESSION, expression);
    row.NumberIfSet(COL_SORT, sort);  // as the format has it: the number here, the word wherever it is read
    row.Flag(COL_UNSORTABLE, unSortable);
    row.Text(COL_SORTONREF, GetSortOnRef());
    row.Text(COL_SEMIAGGREGATE, EnumText(semiAggregate));
    row.Text(COL_REGULARAGGREGATE, EnumText(regularAggregate));
    row.Text(COL_MIMETYPE, GetMimeType());
    row.Text(COL_DISPLAYTYPE, EnumText(displayType));
    row.Text(COL_AGGREGATIONRULE, EnumText(aggregationRule));
    row.Number(COL_SCALE, scale);
    row.Flag(COL_NULLABLE, nullable);
    row.Number(COL_SIZE, size);
    row.Number(COL_PRECISION, precision);
    row.Text(COL_DATATYPE, EnumText(datatype));
    row.Text(COL_CURRENCY, GetCurrency());
    row.Text(COL_FORMAT, GetFormat());
    row.Text(COL_USAGE, EnumText(usage));
    row.Flag(COL_HIDDEN, hidden);
    row.Text(COL_COLLATIONSEQNAME, GetCollationSequenceName());
    row.Number(COL_COLLATIONSEQLEVEL, GetCollationSequenceLevel());
    row.Text(COL_ORIGINALCOLLATIONSEQNAME, GetOriginalCollationSequenceName());
    row.Text(COL_ORIGINALENCODINGNAME, GetOriginalEncodingName());
}

void SMQueryItem2::constructFromIOParameter(const IOParameter& row) {
    SMQueryItemType2::constructFromIOParameter(row);
    FillGuarded(row, WORDS, [&] {
        ReadRareIfPresent(row, m_tags->collationSequenceName, &RareFields::collationSequenceName);
        if (const auto level = IfPresent(row, m_tags->collationSequenceLevel)) SetCollationSequenceLevel(level->GetLongValue());
        ReadRareIfPresent(row, m_tags->originalCollationSequenceName, &RareFields::originalCollationSequenceName);
        ReadRareIfPresent(row, m_tags->originalEncodingName, &RareFields::originalEncodingName);
        ReadIfPresent(row, PROPERTY_QVDBREF, physicalObjectId);
        ReadIfPresent(row, PROPERTY_PHYSICAL_NAME, physicalName);
    });
}

bool SMQueryItem2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

bool SMQueryItem2::write_next(IOHelper& helper) {
    if (!write_custom_property_locale(helper)) return false;
    if (SMPromptInfo2* prompt = GetPromptInfo(); prompt && !prompt->write(helper)) return false;
    for (const auto& role : GetRoles())
        if (!role->write(helper)) return false;
    return true;
}

// ---- builder

void SMQueryItemBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    if (tag != Tag::queryItem) SMQueryItemTypeBuilder::smtagStartElement(module, className, tag, attrs);
}

void SMQueryItemBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    if (tag != Tag::queryItem) SMQueryItemTypeBuilder::smtagEndElement(module, className, tag);
}

}  // namespace schema_002_000
