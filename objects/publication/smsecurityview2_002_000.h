#pragma once

#include <list>
#include <map>
#include <unordered_set>
#include <vector>

#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"
#include "objects/publication/smqosoverride2_002_000.h"
#include "objects/publication/smsecuritydefinitionset2_002_000.h"

namespace schema_002_000 {

/**
 * Says which model objects a published audience may reach: sets of references by include rule, function sets, and overrides of the
 * quality of service per function. Has no description of its own.
 */
class SM_API SMSecurityView2 : public SMNamedObject2 {
  public:
    SMSecurityView2(SMObjectBase* owner, SMProject2* project) : SMNamedObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNamedObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::securityView; }
    /** "[].[securityViews].[name]" */
    I18NString GetSMID(bool escape) const override;

    bool IsRoleBased() const { return m_isRoleBased; }
    void SetRoleBased(bool roleBased) { m_isRoleBased = roleBased; }
    /** The element "access"; null when there is none. */
    SMXMLObject2* GetAccess() const { return m_access; }
    /** Shares the object; null takes it away. */
    void SetAccess(SMXMLObject2* access) { m_access = access; }
    const std::vector<SMSecurityDefinitionSet2>& GetDefinition() const { return m_definition; }
    void AppendDefinitionSet(const SMSecurityDefinitionSet2& set) { m_definition.push_back(set); }
    const std::vector<SMQosOverride2>& GetQosOverrides() const { return m_qosOverrides; }
    void AppendQosOverride(const SMQosOverride2& entry) { m_qosOverrides.push_back(entry); }
    const std::list<I18NString>& GetFunctionSets() const { return m_functionSets; }
    void AppendFunctionSet(const I18NString& functionSetId) { m_functionSets.push_back(functionSetId); }

    /**
     * Enters a reference into the first set of the rule, or into a new one; does nothing when it is there already. A set takes one
     * kind of references only: another kind is logged and left out. Takes constant time, however many references there are.
     */
    void InsertRefID(SMEnum_includeRule::Enum rule, const I18NString& reference, SMSecurityDefinitionSet2::ERefTag tag);
    /** Appends the references of all sets of the rule; gives the kind of the last such set, or -1 when there is none. */
    SMSecurityDefinitionSet2::ERefTag GetRefIDs(SMEnum_includeRule::Enum rule, std::vector<QvULString>& ids) const;
    /** Takes the reference out of all sets of the rule; a set that falls empty stays, and is written. */
    void RemoveRefID(SMEnum_includeRule::Enum rule, const I18NString& reference);

    void AddToSetPIDIDAndMiniObject();
    /** The three elements as text. */
    I18NString WriteDefinitionToString() const;
    I18NString WriteFunctionSetsToString() const;
    I18NString WriteQosOverridesToString() const;

  private:
    void WriteDefinition(QvContentHandler* handler) const;
    void WriteFunctionSets(QvContentHandler* handler) const;
    void WriteQosOverrides(QvContentHandler* handler) const;

    bool m_isRoleBased = false;
    QvSmartPtr<SMXMLObject2> m_access;
    std::vector<SMSecurityDefinitionSet2> m_definition;
    /** What the first set of a rule holds; made by the first insertion under the rule. */
    std::map<SMEnum_includeRule::Enum, std::unordered_set<I18NString>> m_insertedUnder;
    std::vector<SMQosOverride2> m_qosOverrides;
    std::list<I18NString> m_functionSets;
    /** Versions of the records that keep the three. */
    long m_functionSetsInfoId = 0, m_definitionInfoId = 0, m_qosOverridesInfoId = 0;
};

/** Appends what it reads: two sets of one rule stay two. */
class SM_API SMSecurityViewBuilder : public SMObjectBuilder {
  public:
    /** The view is borrowed. */
    explicit SMSecurityViewBuilder(SMSecurityView2* view) : m_view(view) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_view; }

  private:
    void AddRef(SMSecurityDefinitionSet2::ERefTag tag);

    SMSecurityView2* m_view;
    SMSecurityDefinitionSet2 m_set;
    SMQosOverride2 m_override;
    I18NString m_locale;
};

}  // namespace schema_002_000
