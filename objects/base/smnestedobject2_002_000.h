#pragma once

#include "objects/base/smnamedescobject2_002_000.h"

namespace schema_002_000 {

/**
 * A named object with a list of children of any kind, written inside one "object" element. The children stand in the document
 * only; the table is the concrete class's, and this level has none.
 */
class SM_API SMNestedObject2 : public SMNameDescObject2 {
  public:
    SMNestedObject2(IOObject* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}
    ~SMNestedObject2() override;

    bool read(IOHelper& helper) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    /** The content of the element; its tags are the concrete class's business. The date stands before the screen tips here. */
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;

    /** Shares the child. */
    void AddNestedChild(SMObjectBase* child) { m_nested.emplace_back(child); }

  protected:
    QvSmartVector<SMObjectBase> m_nested;
};

}  // namespace schema_002_000
