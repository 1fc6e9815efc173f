#pragma once

#include <cstdint>
#include <map>

#include "objects/base/smenums_002_000.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

class SMQuerySubject2;
class SMShortcut2;

/** What relationships and scope relationships share: two ends with cardinalities, one plain name, the link to the warehouse. */
class SM_API SMRelationshipBase2 : public SMObjectBase {
  public:
    /** One end: the object id of the target, and the object that the last look-up found. */
    struct Reference : TklReferenceCount {
        I18NString refobj;
        /** Borrowed; see SMProject2::WatchLife for the token that tells whether it still lives. Null: not looked up, or not found. */
        SMObjectBase* cachedObject = nullptr;
        std::uint64_t lifeToken = 0;
        SMEnum_cardinality::Enum minCard = SMEnum_cardinality::Enum(-1);
        SMEnum_cardinality::Enum maxCard = SMEnum_cardinality::Enum(-1);
    };

    SMRelationshipBase2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    /** The name "qvref" sets the warehouse link; all others go to the base. */
    void SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) override;
    const QvULString& GetNameForSMPath() const override { return name; }
    /** [namespace].[name] */
    I18NString GetSMID(bool escape) const override;
    /** The link to the warehouse comes last here, unlike in named objects. */
    void WriteProperties(QvContentHandler* handler, bool writeHidden) const override;
    using SMObjectBase::RegenerateIds;
    virtual void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    virtual void RenameObjects(SMRenameList2& list);

    const QvULString& GetName() const { return name; }
    /** Leaves the date alone. */
    void SetName(const QvULString& newName);
    const QvULString& GetQvRefID() const { return qvRefId; }
    void SetQvRefID(const QvULString& reference) { qvRefId = reference; }

    const I18NString& GetLeftRefobjSMID() const { return left.refobj; }
    const I18NString& GetRightRefobjSMID() const { return right.refobj; }
    const Reference& GetLeft() const { return left; }
    const Reference& GetRight() const { return right; }
    /** Sets an end; with `stamp` a change sets the date. An object that had been looked up counts as a change when it is dropped. */
    void SetLeftReference(const I18NString& path, SMEnum_cardinality::Enum minCard, SMEnum_cardinality::Enum maxCard, bool stamp);
    void SetRightReference(const I18NString& path, SMEnum_cardinality::Enum minCard, SMEnum_cardinality::Enum maxCard, bool stamp);
    /** `changed` may be null. */
    void SetReference(Reference& reference, const I18NString& path, SMEnum_cardinality::Enum minCard, SMEnum_cardinality::Enum maxCard,
                      bool* changed);
    /**
     * The object that an end refers to, or null. What was found is kept, also when it is renamed or replaced meanwhile, until the end
     * is set or ForceRefetchRefs; what was not found, or has died, is looked up again.
     */
    SMObjectBase* GetLeftRefObj() { return GetRefObj(left); }
    SMObjectBase* GetRightRefObj() { return GetRefObj(right); }
    SMQuerySubject2* GetLeftQuerySubject() { return GetRefQuerySubject(left); }
    SMQuerySubject2* GetRightQuerySubject() { return GetRefQuerySubject(right); }
    SMShortcut2* GetRightShortcut();
    void ForceRefetchRefs();

  protected:
    SMObjectBase* GetRefObj(Reference& reference);
    SMQuerySubject2* GetRefQuerySubject(Reference& reference);
    void WriteReferenceXMLElement(QvContentHandler* handler, const Reference& reference, const I18NString& tag) const;
    /** Refobj, minimum and maximum of an end, each behind `bar`. */
    static void AppendDiffable(I18NString& text, const Reference& reference, const char* bar);
    I18NString DisplayOrderText() const;

    Reference left, right;
    QvULString name;
    /** The property "qvref". */
    QvULString qvRefId;

  private:
    static void getReferenceAttributes(IOParameter& attrs, const Reference& reference, const QvULString& maxColumn,
                                       const QvULString& minColumn, const QvULString& refColumn);
    void constructReference(const IOParameter& row, Reference& reference, const I18NString& prefix) const;
};

class SM_API SMRelationshipBaseBuilder : public SMObjectBuilder {
  public:
    /** The relationship is borrowed. */
    explicit SMRelationshipBaseBuilder(SMRelationshipBase2* relationship) : m_base(relationship) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_base; }

  private:
    SMRelationshipBase2* m_base;
    I18NString m_refobj;
    SMEnum_cardinality::Enum m_currentMinCard = SMEnum_cardinality::Enum(-1);
    SMEnum_cardinality::Enum m_currentMaxCard = SMEnum_cardinality::Enum(-1);
};

}  // namespace schema_002_000
