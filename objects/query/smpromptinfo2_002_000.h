#pragma once

#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

/**
 * How a query item is prompted for. The reference for cascading travels through the repository alone, the one to the item in use
 * through documents alone; neither is ever copied to the other.
 */
class SM_API SMPromptInfo2 : public SMObjectBase {
  public:
    SMPromptInfo2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::promptInfo; }

    const I18NString& GetPromptType() const { return promptType; }
    const I18NString& GetPromptCascadeOnRef() const { return promptCascadeOnRef; }
    const I18NString& GetPromptDisplayItemRef() const { return promptDisplayItemRef; }
    const I18NString& GetPromptFilterItemRef() const { return promptFilterItemRef; }
    const I18NString& GetPromptUseItemRef() const { return promptUseItemRef; }
    /** Each is true when the text was another. */
    bool SetPromptType(const I18NString& text) { return Change(promptType, text); }
    bool SetPromptCascadeOnRef(const I18NString& text) { return Change(promptCascadeOnRef, text); }
    bool SetPromptDisplayItemRef(const I18NString& text) { return Change(promptDisplayItemRef, text); }
    bool SetPromptFilterItemRef(const I18NString& text) { return Change(promptFilterItemRef, text); }
    bool SetPromptUseItemRef(const I18NString& text) { return Change(promptUseItemRef, text); }
    /** All four references. */
    void RenameObjects(SMRenameList2& list);

  private:
    static bool Change(I18NString& field, const I18NString& text);

    I18NString promptType;
    I18NString promptCascadeOnRef;
    I18NString promptDisplayItemRef;
    I18NString promptFilterItemRef;
    I18NString promptUseItemRef;
};

class SM_API SMPromptInfoBuilder : public SMObjectBuilder {
  public:
    /** The prompt is borrowed. */
    explicit SMPromptInfoBuilder(SMPromptInfo2* prompt) : m_prompt(prompt) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_prompt; }

  private:
    SMPromptInfo2* m_prompt;
};

}  // namespace schema_002_000
