#pragma once

#include "objects/links/smrelationshipbase2_002_000.h"

namespace schema_002_000 {

class SMScope2;

/** Joins a measure dimension to a dimension and says, level by level, which measures apply and how. */
class SM_API SMScopeRelationship2 : public SMRelationshipBase2 {
  public:
    SMScopeRelationship2(SMObjectBase* owner, SMProject2* project);
    ~SMScopeRelationship2() override;

    bool read(IOHelper& helper) override;
    SM_DECLARE_KEY_COLUMNS
    /** Name, a bar, then display order, warehouse link and both ends with nothing between. Scopes take no part. */
    void AssignDiffableString(QvULString& out) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMRelationshipBase2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::scopeRelationship; }
    using SMRelationshipBase2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list) override;

    /** Shares the scope. */
    void AddScope(SMScope2* scope);
    SMScope2* AddNewScope();
    const QvSmartVector<SMScope2>& GetScopes() const { return m_scopes; }
    /** The scopes as elements side by side, without one around them. */
    I18NString WriteScopesToString() const;
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

  private:
    QvSmartVector<SMScope2> m_scopes;
    /** Version of the record of the scopes. */
    long m_scopesInfoId = 0;
};

class SM_API SMScopeRelationshipBuilder : public SMRelationshipBaseBuilder {
  public:
    /** The relationship is borrowed. */
    explicit SMScopeRelationshipBuilder(SMScopeRelationship2* relationship)
        : SMRelationshipBaseBuilder(relationship), m_relationship(relationship) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  private:
    SMScopeRelationship2* m_relationship;
};

}  // namespace schema_002_000
