#pragma once

#include "objects/base/smxmlobject2_002_000.h"
#include "objects/links/smrelationshipbase2_002_000.h"

namespace schema_002_000 {

/** Joins two objects, usually query subjects, by an expression. */
class SM_API SMRelationship2 : public SMRelationshipBase2 {
  public:
    SMRelationship2(SMObjectBase* owner, SMProject2* project) : SMRelationshipBase2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    /** Status, name, display order, warehouse link and both ends with bars between. Expression and date take no part. */
    void AssignDiffableString(QvULString& out) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMRelationshipBase2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::relationship; }
    using SMRelationshipBase2::RegenerateIds;
    /** The expression and the object's own id; the warehouse link stays, unlike in scope relationships. */
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list) override;

    SMEnum_status::Enum GetStatus() const { return status; }
    void SetStatus(SMEnum_status::Enum value) { status = value; }
    SMXMLObject2* GetExpression() const { return expression.get(); }
    /** Shares the expression. Neither form sets the date. */
    void SetExpression(SMXMLObject2* newExpression) { expression = newExpression; }
    /** Sets the inside of the expression, which is XML. */
    void SetExpression(const I18NString& innerXml);
    I18NString GetExpressionStr() const { return InnerXmlOf(expression); }
    void AddToSetPIDIDAndMiniObject();

    /** The whole "sql" element, kept in remaining info alone. */
    QvSmartPtr<SMXMLObject2> sql;

  private:
    SMEnum_status::Enum status = SMEnum_status::Enum(-1);
    QvSmartPtr<SMXMLObject2> expression;
};

class SM_API SMRelationshipBuilder : public SMRelationshipBaseBuilder {
  public:
    /** The relationship is borrowed. */
    explicit SMRelationshipBuilder(SMRelationship2* relationship) : SMRelationshipBaseBuilder(relationship), m_relationship(relationship) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;

  private:
    SMRelationship2* m_relationship;
};

}  // namespace schema_002_000
