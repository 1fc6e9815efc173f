#pragma once

#include <map>
#include <memory>

#include "objects/base/smchildren_002_000.h"
#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"
#include "objects/publication/smrole2_002_000.h"
#include "objects/query/smpromptinfo2_002_000.h"

namespace schema_002_000 {

/**
 * What query items and calculations have in common: the data type, the formatting, the expression.
 *
 * Models hold these by the million, so enumerators take a byte each, and what few items have stands in a block of its own that is
 * made when the first of it is set. Setters have no side effect, unless they say so: the date stays.
 */
class SM_API SMQueryItemType2 : public SMNameDescObject2 {
  public:
    SMQueryItemType2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}
    ~SMQueryItemType2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    int GetModelType() override { return 25; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    virtual void RenameObjects(SMRenameList2& list);
    /** The kind by which the rows of one table are told apart; empty for classes with a table of their own. */
    virtual const I18NString& GetQueryItemTypeName() const { return EMPTY_QVSTRING; }

    /** Null when there is none. */
    SMXMLObject2* GetExpression() const { return expression; }
    /** The inside of the expression; empty when there is none. */
    I18NString GetExpressionStr() const { return InnerXmlOf(expression); }
    /** Shares the expression. */
    void SetExpression(SMXMLObject2* newExpression) { expression = newExpression; }
    /** Sets the inside of the expression, which is XML; true when it is new or was another. */
    bool ChangeExpression(const I18NString& inner) { return ChangeKeptXml(expression, m_tags->expression, inner); }
    const QvULString& GetExternalName() const { return externalName; }
    void SetExternalName(const QvULString& text) { externalName = text; }
    bool IsHidden() const { return hidden; }
    void SetHidden(bool isHidden) { hidden = isHidden; }
    bool IsNullable() const { return nullable; }
    void SetNullable(bool isNullable) { nullable = isNullable; }
    bool IsUnSortable() const { return unSortable; }
    void SetUnSortable(bool isUnSortable) { unSortable = isUnSortable; }

    // enumerators; -1 stands for none
    SMEnum_usage::Enum GetUsage() const { return usage; }
    void SetUsage(SMEnum_usage::Enum newUsage) { usage = newUsage; }
    SMEnum_datatype::Enum GetEnumDatatype() const { return datatype; }
    const I18NString& GetStringDatatype() const { return EnumText(datatype); }
    void SetDatatype(SMEnum_datatype::Enum newDatatype) { datatype = newDatatype; }
    SMEnum_aggregationRule::Enum GetAggregationRule() const { return aggregationRule; }
    void SetAggregationRule(SMEnum_aggregationRule::Enum rule) { aggregationRule = rule; }
    SMEnum_displayType::Enum GetDisplayType() const { return displayType; }
    void SetDisplayType(SMEnum_displayType::Enum newDisplayType) { displayType = newDisplayType; }
    SMEnum_aggregationRule::Enum GetRegularAggregate() const { return regularAggregate; }
    void SetRegularAggregate(SMEnum_aggregationRule::Enum rule) { regularAggregate = rule; }
    SMEnum_aggregationRule::Enum GetSemiAggregate() const { return semiAggregate; }
    void SetSemiAggregate(SMEnum_aggregationRule::Enum rule) { semiAggregate = rule; }
    SMEnum_sort::Enum GetSort() const { return sort; }
    void SetSort(SMEnum_sort::Enum newSort) { sort = newSort; }

    /** In digits, digits and bytes. */
    long GetPrecision() const { return precision; }
    void SetPrecision(long digits) { precision = digits; }
    long GetScale() const { return scale; }
    void SetScale(long digits) { scale = digits; }
    long GetSize() const { return size; }
    void SetSize(long bytes) { size = bytes; }

    const QvULString& GetFormat() const { return Rare().format; }
    void SetFormat(const QvULString& text) { SetRare(&RareFields::format, text); }
    const QvULString& GetCurrency() const { return Rare().currency; }
    void SetCurrency(const QvULString& text) { SetRare(&RareFields::currency, text); }
    const QvULString& GetMimeType() const { return Rare().mimeType; }
    void SetMimeType(const QvULString& text) { SetRare(&RareFields::mimeType, text); }
    const QvULString& GetSortOnRef() const { return Rare().sortOnRef; }
    void SetSortOnRef(const QvULString& text) { SetRare(&RareFields::sortOnRef, text); }
    /** Written only where there are roles, and without a column. */
    const QvULString& GetRolesId() const { return Rare().rolesId; }
    void SetRolesId(const QvULString& text) { SetRare(&RareFields::rolesId, text); }
    const QvULString& GetCollationSequenceName() const { return Rare().collationSequenceName; }
    void SetCollationSequenceName(const QvULString& text) { SetRare(&RareFields::collationSequenceName, text); }
    long GetCollationSequenceLevel() const { return Rare().collationSequenceLevel; }
    void SetCollationSequenceLevel(long level) { SetRare(&RareFields::collationSequenceLevel, level); }
    const QvULString& GetOriginalCollationSequenceName() const { return Rare().originalCollationSequenceName; }
    void SetOriginalCollationSequenceName(const QvULString& text) { SetRare(&RareFields::originalCollationSequenceName, text); }
    const QvULString& GetOriginalEncodingName() const { return Rare().originalEncodingName; }
    void SetOriginalEncodingName(const QvULString& text) { SetRare(&RareFields::originalEncodingName, text); }

    /** Null when there is none. */
    SMPromptInfo2* GetPromptInfo() const { return Rare().promptInfo; }
    /** Shares the prompt; null takes it away. */
    void SetPromptInfo(SMPromptInfo2* prompt);
    /**
     * Makes the prompt if there is none, and sets its type and the references that are given: an item that is null leaves the old
     * reference. The third goes to the reference for cascading. A change sets the date of this object.
     */
    SMPromptInfo2* AddOrUpdatePromptInfo(SMEnum_promptType::Enum type, SMQueryItem2* display, SMQueryItem2* filter,
                                         SMQueryItem2* cascadeOn);
    const QvSmartVector<SMRole2>& GetRoles() const { return Rare().roles.Items(); }
    /** Shares the role, and puts it behind the others. */
    void AddRole(SMRole2* role) { EditRare().roles.Append(role); }
    bool HasRole(SMEnum_role::Enum role) const;
    /** Does nothing when there is a role of that name. */
    void AddRoleOfType(SMEnum_role::Enum role);
    /** Removes the first role of that name, if there is one. */
    void RemoveRoleOfType(SMEnum_role::Enum role);

    /** Sets what differs, and the date if anything did. */
    void SetBasicProperties(SMEnum_usage::Enum newUsage, SMEnum_datatype::Enum newDatatype, long newPrecision, long newScale, long newSize,
                            bool isNullable, SMEnum_aggregationRule::Enum newRegularAggregate,
                            SMEnum_aggregationRule::Enum newSemiAggregate);
    /** The basic properties, and all descriptions and screen tips, which join those that are there. True. */
    bool CopyBasicProperties(const SMQueryItem2& other);

    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

  protected:
    /** What stands between the tags of a query item and, first, of a measure. */
    void WriteXMLElementChildren(QvContentHandler* handler, QvXMLFormatTarget& target) const;
    void WritePromptInfo(QvContentHandler* handler, QvXMLFormatTarget& target) const;
    /** The element "roles"; nothing without a role. */
    void WriteRoles(QvContentHandler* handler, QvXMLFormatTarget& target) const;

    struct RareFields {
        QvULString format;
        QvULString currency;
        QvULString mimeType;
        QvULString sortOnRef;
        QvSmartPtr<SMPromptInfo2> promptInfo;
        SMChildren<SMRole2> roles;
        QvULString rolesId;
        QvULString collationSequenceName;
        long collationSequenceLevel = 0;
        QvULString originalCollationSequenceName;
        QvULString originalEncodingName;
    };
    const RareFields& Rare() const { return rare ? *rare : NoRareFields(); }
    RareFields& EditRare();
    /** Makes no block for the value that a missing block stands for. */
    template <class Field>
    void SetRare(Field RareFields::*field, const Field& value) {
        if (rare || !(value == Field())) EditRare().*field = value;
    }
    void ReadRareIfPresent(const IOParameter& row, const QvULString& key, QvULString RareFields::*field);

    QvSmartPtr<SMXMLObject2> expression;
    QvULString externalName;
    std::unique_ptr<RareFields> rare;
    long precision = 0;
    long scale = 0;
    long size = 0;
    SMSmallEnum<SMEnum_usage> usage;
    SMSmallEnum<SMEnum_datatype> datatype;
    SMSmallEnum<SMEnum_aggregationRule> aggregationRule;
    SMSmallEnum<SMEnum_displayType> displayType;
    SMSmallEnum<SMEnum_aggregationRule> regularAggregate;
    SMSmallEnum<SMEnum_aggregationRule> semiAggregate;
    SMSmallEnum<SMEnum_sort> sort;
    bool hidden = false;
    bool nullable = false;
    bool unSortable = false;

  private:
    static const RareFields& NoRareFields();
};

class SM_API SMQueryItemTypeBuilder : public SMNameDescObjectBuilder {
  public:
    /** The item is borrowed. */
    explicit SMQueryItemTypeBuilder(SMQueryItemType2* item) : SMNameDescObjectBuilder(item), m_item(item) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void StartPromptInfo();
    void StartRole();

    SMQueryItemType2* m_item;
};

}  // namespace schema_002_000
