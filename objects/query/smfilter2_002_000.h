#pragma once

#include <map>

#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

/**
 * A filter expression that stands by itself in a namespace. The repository has no columns for its descriptions and no record for
 * its custom properties: these live in documents.
 */
class SM_API SMFilter2 : public SMNameDescObject2 {
  public:
    SMFilter2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    int GetModelType() override { return 35; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper&) override { return true; }
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::filter; }
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;

    /** Null when there is none. */
    SMXMLObject2* GetExpression() const { return expression; }
    /** Shares the expression. */
    void SetExpression(SMXMLObject2* newExpression) { expression = newExpression; }
    /** Sets the inside of the expression, which is XML; true when it is new or was another. */
    bool ChangeExpression(const I18NString& inner) { return ChangeKeptXml(expression, m_tags->expression, inner); }
    SMEnum_status::Enum GetStatus() const { return status; }
    /** -1: none. */
    void SetStatus(SMEnum_status::Enum newStatus) { status = newStatus; }
    void RenameObjects(SMRenameList2& list);

  private:
    QvSmartPtr<SMXMLObject2> expression;
    SMSmallEnum<SMEnum_status> status;
};

class SM_API SMFilterBuilder : public SMNameDescObjectBuilder {
  public:
    /** The filter is borrowed. */
    explicit SMFilterBuilder(SMFilter2* filter) : SMNameDescObjectBuilder(filter), m_filter(filter) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMFilter2* m_filter;
};

}  // namespace schema_002_000
