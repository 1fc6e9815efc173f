#pragma once

#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

/** One key and its value in a parameter map. */
class SM_API SMParameterMapEntry2 : public SMObjectBase {
  public:
    SMParameterMapEntry2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::parameterMapEntry; }

    const I18NString& GetKey() const { return m_key; }
    /** Tells the project, whose indexes of keys may have to be built anew. */
    void SetKey(const I18NString& key);
    const I18NString& GetValue() const { return m_value; }
    void SetValue(const I18NString& value) { m_value = value; }
    void RenameObjects(SMRenameList2& list);

  private:
    I18NString m_key;
    I18NString m_value;
};

class SM_API SMParameterMapEntryBuilder : public SMObjectBuilder {
  public:
    /** The entry is borrowed. */
    explicit SMParameterMapEntryBuilder(SMParameterMapEntry2* entry) : m_entry(entry) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_entry; }

  private:
    SMParameterMapEntry2* m_entry;
};

}  // namespace schema_002_000
