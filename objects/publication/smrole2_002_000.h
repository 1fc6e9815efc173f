#pragma once

#include "objects/base/smnamedobjectbuilder_002_000.h"

namespace schema_002_000 {

/** A named role of a query item. */
class SM_API SMRole2 : public SMNamedObject2 {
  public:
    SMRole2(SMObjectBase* owner, SMProject2* project) : SMNamedObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    bool write_next(IOHelper&) override { return true; }
    using SMNamedObject2::WriteXMLElement;
    /** `intrinsic` goes out as an attribute and comes in as an element: it does not survive a document. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::role; }

    bool IsIntrinsic() const { return m_intrinsic; }
    void SetIntrinsic(bool intrinsic) { m_intrinsic = intrinsic; }

  private:
    /** Has no column. */
    bool m_intrinsic = false;
};

class SM_API SMRoleBuilder : public SMNamedObjectBuilder {
  public:
    /** The role is borrowed. */
    explicit SMRoleBuilder(SMRole2* role) : SMNamedObjectBuilder(role), m_role(role) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMRole2* m_role;
};

}  // namespace schema_002_000
