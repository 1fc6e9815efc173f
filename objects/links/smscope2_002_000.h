#pragma once

#include "objects/base/smenums_002_000.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

/** How one measure applies in a scope. It has no row: scopes travel inside the remaining info of their relationship. */
class SM_API SMMeasureScope2 : public SMObjectBase {
  public:
    SMMeasureScope2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}

    void constructFromIOParameter(const IOParameter&) override {}
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter&, IOParameter&) override {}
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper&) override { return true; }
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::measureScope; }
    void RenameObjects(SMRenameList2& list);

    bool m_excluded = false;
    SMEnum_aggregationRule::Enum m_rollup = SMEnum_aggregationRule::Enum(-1);
    I18NString m_allocation;
    /** The path of the measure. */
    I18NString m_refobj;
};

/** Which measures apply at a level, and how. */
class SM_API SMScope2 : public SMObjectBase {
  public:
    SMScope2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}
    ~SMScope2() override;

    void constructFromIOParameter(const IOParameter&) override {}
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter&, IOParameter&) override {}
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper&) override { return true; }
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::scope; }
    /** New ids for the measure scopes too. */
    void RegenerateIds() override;
    void RenameObjects(SMRenameList2& list);
    void SetSMProject(SMProject2* project);

    /** Shares the measure scope. */
    void AddMeasureScope(SMMeasureScope2* measureScope) { m_measureScopes.emplace_back(measureScope); }
    SMMeasureScope2* AddNewMeasureScope(const I18NString& refobj, bool excluded);
    /** The first one of that measure, or null. */
    SMMeasureScope2* GetMeasureScopeWithRefobj(const I18NString& refobj) const;
    const QvSmartVector<SMMeasureScope2>& GetMeasureScopes() const { return m_measureScopes; }

    /** The path of the level. */
    I18NString m_levelRef;

  private:
    QvSmartVector<SMMeasureScope2> m_measureScopes;
};

class SM_API SMScopeBuilder : public SMObjectBuilder {
  public:
    /** The scope is borrowed. */
    explicit SMScopeBuilder(SMScope2* scope) : m_scope(scope) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_scope; }

  private:
    SMScope2* m_scope;
};

class SM_API SMMeasureScopeBuilder : public SMObjectBuilder {
  public:
    /** The measure scope is borrowed. */
    explicit SMMeasureScopeBuilder(SMMeasureScope2* measureScope) : m_measureScope(measureScope) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_measureScope; }

  private:
    SMMeasureScope2* m_measureScope;
};

}  // namespace schema_002_000
