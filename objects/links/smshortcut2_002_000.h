#pragma once

#include "objects/base/smnamedescobject2_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"

namespace schema_002_000 {

/** Stands in one namespace or folder for an object that lives elsewhere. It holds the path as text; nothing keeps the target alive. */
class SM_API SMShortcut2 : public SMNameDescObject2 {
  public:
    SMShortcut2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper&) override { return true; }
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::shortcut; }
    /** [namespace].[name] */
    I18NString GetSMID(bool escape) const override;

    const I18NString& GetRefObj() const { return refObj; }
    void SetRefObj(const I18NString& reference) { refObj = reference; }
    /** The element name of the target. */
    const I18NString& GetTargetType() const { return targetType; }
    void SetTargetType(const I18NString& type) { targetType = type; }
    void RenameObjects(SMRenameList2& list);

  private:
    I18NString refObj, targetType;
};

class SM_API SMShortcutBuilder : public SMNameDescObjectBuilder {
  public:
    /** The shortcut is borrowed. */
    explicit SMShortcutBuilder(SMShortcut2* shortcut) : SMNameDescObjectBuilder(shortcut), m_shortcut(shortcut) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMShortcut2* m_shortcut;
};

}  // namespace schema_002_000
