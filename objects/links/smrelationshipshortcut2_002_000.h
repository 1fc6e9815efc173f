#pragma once

#include "objects/base/smnamedobject2_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"

namespace schema_002_000 {

/** Stands for a relationship that lives elsewhere, and repeats the two ends that it has here. */
class SM_API SMRelationshipShortcut2 : public SMNamedObject2 {
  public:
    SMRelationshipShortcut2(SMObjectBase* owner, SMProject2* project) : SMNamedObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper&) override { return true; }
    using SMNamedObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::relationshipShortcut; }
    /** [namespace].[name] */
    I18NString GetSMID(bool escape) const override;
    void RenameObjects(SMRenameList2& list);

    I18NString leftRefObj, rightRefObj, relationshipRef;
};

class SM_API SMRelationshipShortcutBuilder : public SMNamedObjectBuilder {
  public:
    /** The shortcut is borrowed. */
    explicit SMRelationshipShortcutBuilder(SMRelationshipShortcut2* shortcut) : SMNamedObjectBuilder(shortcut), m_shortcut(shortcut) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMRelationshipShortcut2* m_shortcut;
    /** The end that was opened last; null before the first one. */
    I18NString* m_openEnd = nullptr;
};

}  // namespace schema_002_000
