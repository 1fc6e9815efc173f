#pragma once

#include "objects/query/smquerysubjecttype2_002_000.h"

namespace schema_002_000 {

/** A subject through which rows are changed. It has no items, determinants or properties of its own. */
class SM_API SMUpdateSubject2 : public SMQuerySubjectType2 {
  public:
    SMUpdateSubject2(SMObjectBase* owner, SMProject2* project, SMNamespace2* ns) : SMQuerySubjectType2(owner, project, ns) {}

    SM_DECLARE_KEY_COLUMNS
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    using SMQuerySubjectType2::WriteXMLElement;
    /** No status: it has a column, but no place in the document. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    const I18NString& GetTagName() const override { return m_tags->updateSubject; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::updateSubject; }
};

class SM_API SMUpdateSubjectBuilder : public SMQuerySubjectTypeBuilder {
  public:
    explicit SMUpdateSubjectBuilder(SMUpdateSubject2* subject) : SMQuerySubjectTypeBuilder(subject) {}
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;
};

}  // namespace schema_002_000
