#include "objects/query/smcalculation2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

namespace {

const SMTable TABLE = {"SM_CALCULATION", "CALCULATION_ID", "CALC_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};
const SMLogWords WORDS = {"smcalculation2", "SMCalculation2"};
const QvULString COL_WAREHOUSE_OBJECT_ID = SMColumn("WAREHOUSE_OBJECT_ID");
const QvULString COL_CALCTYPE = SMColumn("CALCTYPE");
const QvULString COL_EXTERNALNAME = SMColumn("EXTERNALNAME");
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
const QvULString COL_CAL_SIZE = SMColumn("CAL_SIZE");
const QvULString COL_PRECISION = SMColumn("PRECISION");
const QvULString COL_DATATYPE = SMColumn("DATATYPE");
const QvULString COL_CURRENCY = SMColumn("CURRENCY");
const QvULString COL_FORMAT = SMColumn("FORMAT");
const QvULString COL_USAGE = SMColumn("USAGE");
const QvULString COL_HIDDEN = SMColumn("HIDDEN");
const QvULString COL_DISPLAY_ORDER = SMColumn("DISPLAY_ORDER");
const QvULString COL_STATUS = SMColumn("STATUS");
const QvULString COL_EXPRESSION = SMColumn("EXPRESSION");
/** How the column "NULLABLE" says yes and no; documents may say yes in this way too. */
const I18NString YES = I18NString::Immortal("t");
const I18NString NO = I18NString::Immortal("f");

/** Narrower than for query items, on purpose. */
bool HasPrecision(SMEnum_datatype::Enum datatype) {
    return (datatype >= SMEnum_datatype::int16 && datatype <= SMEnum_datatype::float64) ||
           (datatype >= SMEnum_datatype::character && datatype <= SMEnum_datatype::characterLength32);
}

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMCalculation2, TABLE)

// ---- memory

I18NString SMCalculation2::GetSMID(bool escape) const {
    return BuildSMObjectID(escape, GetContainingNamespaceName(), GetName(), EMPTY_QVSTRING, EMPTY_QVSTRING, EMPTY_QVSTRING);
}

void SMCalculation2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    filters.RegenerateIds(idMap);
    SMQueryItemType2::RegenerateIds(idMap);
}

void SMCalculation2::RenameObjects(SMRenameList2& list) {
    filters.RenameObjects(list);
    SMQueryItemType2::RenameObjects(list);
}

// ---- document

void SMCalculation2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    AddAttributeIfSet(attrs, m_tags->status, EnumText(status));
    StartElement(handler, m_tags->calculation, attrs);
    WriteLocaleMap(handler, m_tags->name, names);
    WriteLocaleMap(handler, m_tags->description, descriptions);
    WriteLocaleMap(handler, m_tags->screenTip, screenTips);
    WriteProperties(handler, true);
    TextElementIfSet(handler, m_tags->externalName, externalName);
    FlagElementIfTrue(handler, m_tags->hidden, hidden);
    TextElementIfSet(handler, m_tags->format, GetFormat());
    TextElementIfSet(handler, m_tags->currency, GetCurrency());
    TextElementIfSet(handler, m_tags->datatype, EnumText(datatype));
    WriteSMDate(handler, m_tags->lastChanged, NoAttributes(), GetLastChangedDate());
    FlagElementIfTrue(handler, m_tags->nullable, nullable);
    if (HasPrecision(datatype)) NumberElement(handler, m_tags->precision, precision);
    TextElementIfSet(handler, m_tags->regularAggregate, EnumText(regularAggregate));
    if (HasPrecision(datatype)) NumberElement(handler, m_tags->scale, scale);
    TextElementIfSet(handler, m_tags->semiAggregate, EnumText(semiAggregate));
    NumberElement(handler, m_tags->size, size);
    TextElementIfSet(handler, m_tags->aggregationRule, EnumText(aggregationRule));
    TextElementIfSet(handler, m_tags->displayType, EnumText(displayType));
    TextElementIfSet(handler, m_tags->mimeType, GetMimeType());
    TextElementIfSet(handler, m_tags->usage, EnumText(usage));
    WriteKept(expression, target);
    WritePromptInfo(handler, target);
    TextElementIfSet(handler, m_tags->sortOnRef, GetSortOnRef());
    FlagElementIfTrue(handler, m_tags->unSortable, unSortable);
    TextElementIfSet(handler, m_tags->sort, EnumText(sort));
    WriteRoles(handler, target);
    filters.WritePreviews(handler, target);
    filters.WriteSecurities(handler, target);
    TextElementIfSet(handler, m_tags->calcType, EnumText(calcType));
    if (!hierarchyRefs.empty()) WriteList(handler, m_tags->hierarchies, m_tags->hierarchies, hierarchyRefs);
    if (!dimensionRefs.empty()) WriteList(handler, m_tags->dimensions, m_tags->dimensions, dimensionRefs);
    if (!dataSourceRefs.empty()) WriteList(handler, m_tags->dataSources, m_tags->dataSourceRef, dataSourceRefs);
    EndElement(handler, m_tags->calculation);
}

// ---- repository

void SMCalculation2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMNamedObject2::getAttributes(attrs, historyAttrs);  // on purpose past the nearer bases: there are no description columns
    SMRowWriter row(attrs);
    row.Text(COL_WAREHOUSE_OBJECT_ID, qvref);
    row.Text(COL_CALCTYPE, EnumText(calcType));
    row.Text(COL_EXTERNALNAME, externalName);
    row.Text(COL_SORT, EnumText(sort));  // a word, unlike that of a query item
    row.Flag(COL_UNSORTABLE, unSortable);
    row.Text(COL_SORTONREF, GetSortOnRef());
    row.Text(COL_SEMIAGGREGATE, EnumText(semiAggregate));
    row.Text(COL_REGULARAGGREGATE, EnumText(regularAggregate));
    row.Text(COL_MIMETYPE, GetMimeType());
    row.Text(COL_DISPLAYTYPE, EnumText(displayType));
    row.Text(COL_AGGREGATIONRULE, EnumText(aggregationRule));
    row.Number(COL_SCALE, scale);
    row.Text(COL_NULLABLE, nullable ? YES : NO);
    row.Number(COL_CAL_SIZE, size);
    row.Number(COL_PRECISION, precision);
    row.Text(COL_DATATYPE, EnumText(datatype));
    row.Text(COL_CURRENCY, GetCurrency());
    row.Text(COL_FORMAT, GetFormat());
    row.Text(COL_USAGE, EnumText(usage));
    row.Flag(COL_HIDDEN, hidden);
    row.Number(COL_DISPLAY_ORDER, displayOrder);
    row.Text(COL_STATUS, EnumText(status));
    row.InnerXml(COL_EXPRESSION, expression);
}

void SMCalculation2::constructFromIOParameter(const IOParameter& row) {
    SMNameDescObject2::constructFromIOParameter(row);  // past the nearer base, which takes "nullable" for a truth value
    FillGuarded(row, WORDS, [&] {
        calcType = EnumAt<SMEnum_calcType>(row, m_tags->calcType);
        externalName = TextOf(row, m_tags->externalName);
        sort = EnumAt<SMEnum_sort>(row, m_tags->sort);
        unSortable = FlagOf(row, m_tags->unSortable);
        SetSortOnRef(TextOf(row, m_tags->sortOnRef));
        regularAggregate = EnumAt<SMEnum_aggregationRule>(row, m_tags->regularAggregate);
        semiAggregate = EnumAt<SMEnum_aggregationRule>(row, m_tags->semiAggregate);
        SetMimeType(TextOf(row, m_tags->mimeType));
        displayType = EnumAt<SMEnum_displayType>(row, m_tags->displayType);
        aggregationRule = EnumAt<SMEnum_aggregationRule>(row, m_tags->aggregationRule);
        scale = NumberOf(row, m_tags->scale);
        nullable = TextOf(row, m_tags->nullable) == YES;
        size = NumberOf(row, m_tags->size);
        precision = NumberOf(row, m_tags->precision);
        datatype = EnumAt<SMEnum_datatype>(row, m_tags->datatype);
        SetCurrency(TextOf(row, m_tags->currency));
        SetFormat(TextOf(row, m_tags->format));
        usage = EnumAt<SMEnum_usage>(row, m_tags->usage);
        hidden = FlagOf(row, m_tags->hidden);
        status = EnumAt<SMEnum_status>(row, m_tags->status);
        if (auto kept = KeptXmlOf(row, m_tags->expression)) SetExpression(kept);
    });
}

bool SMCalculation2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

bool SMCalculation2::write_next(IOHelper& helper) {
    SMPromptInfo2* prompt = GetPromptInfo();
    return !prompt || prompt->write(helper);
}

// ---- builder

bool SMCalculationBuilder::StartFilter(Tag tag, const QvXMLAttributes& attrs) {
    switch (m_filters.Start(tag, attrs)) {
    case SMFilterStep::notMine: return false;
    case SMFilterStep::collect: CollectText(); break;
    case SMFilterStep::keep: m_filters.SetExpression(KeepXml(m_tags->expression, attrs)); break;
    case SMFilterStep::done: break;
    }
    return true;
}

void SMCalculationBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    if (StartFilter(tag, attrs)) return;
    switch (tag) {
    case Tag::calculation:
    case Tag::dataSources: break;
    case Tag::dimensions: m_list = List::dimensions; break;
    case Tag::hierarchies: m_list = List::hierarchies; break;
    case Tag::dataSourceRef:
    case Tag::calcType: CollectText(); break;
    default: SMQueryItemTypeBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMCalculationBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    if (m_filters.End(tag, m_text)) return;
    switch (tag) {
    case Tag::calculation:
    case Tag::expression:
    case Tag::dataSources:
    case Tag::dimensions:
    case Tag::hierarchies: break;
    case Tag::refobj: AddRefObj(); break;
    case Tag::dataSourceRef: m_calculation->AddDataSourceRef(m_text); break;
    case Tag::calcType: m_calculation->SetCalcType(TextAsEnum<SMEnum_calcType>()); break;
    case Tag::nullable: m_calculation->SetNullable(TextAsBool() || m_text == YES); break;
    default: SMQueryItemTypeBuilder::smtagEndElement(module, className, tag);
    }
}

void SMCalculationBuilder::AddRefObj() {
    if (m_list == List::dimensions) m_calculation->AddDimensionRef(m_text);
    if (m_list == List::hierarchies) m_calculation->AddHierarchyRef(m_text);
}

}  // namespace schema_002_000
