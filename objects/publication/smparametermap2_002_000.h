#pragma once

#include <map>
#include <memory>

#include "objects/base/smchildren_002_000.h"
#include "objects/publication/smparametermapentry2_002_000.h"

namespace schema_002_000 {

/** The pair of query items that supplies the keys and values of a parameter map from data. */
struct SM_QUERY_ITEM_MAP {
    I18NString keyRef;
    I18NString valueRef;
};

/** A parameter map as plain values, for comparing a map with an edited copy. */
struct SMParameterMapContents {
    I18NString name;
    I18NString text2;
    bool hidden = false;
    I18NString defaultValue;
    std::map<I18NString, I18NString> entries;
    bool hasQueryItemMap = false;
    I18NString keyRef;
    I18NString valueRef;
};

/**
 * A named look-up table of the project: keys and values in their order, a default value, and, beside or instead of them, a pair of
 * query items. Its name is one plain text, not a text per locale.
 */
class SM_API SMParameterMap2 : public SMObjectBase {
  public:
    SMParameterMap2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}
    ~SMParameterMap2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::parameterMap; }

    const QvULString& GetName() const { return m_name; }
    void SetName(const I18NString& name);
    bool IsHidden() const { return m_hidden; }
    void SetHidden(bool hidden) { m_hidden = hidden; }
    const I18NString& GetDefaultValue() const { return m_defaultValue; }
    void SetDefaultValue(const I18NString& value) { m_defaultValue = value; }
    const SM_QUERY_ITEM_MAP* GetQueryItemMap() const { return m_queryItemMap.get(); }
    SM_QUERY_ITEM_MAP* GetQueryItemMap() { return m_queryItemMap.get(); }
    /** Takes ownership, and deletes the one before; null takes it away. */
    void SetQueryItemMap(SM_QUERY_ITEM_MAP* map);

    /** Shares the entry. */
    void AppendEntry(SMParameterMapEntry2* entry) { m_entries.Append(entry); }
    const QvSmartVector<SMParameterMapEntry2>& GetEntries() const { return m_entries.Items(); }
    /** The first entry with the key, or null: a document may hold a key twice. */
    SMParameterMapEntry2* GetParameterMapEntryWithKey(const QvULString& key) const { return m_entries.Find(key.utf8(), *this); }
    void AddOrUpdateParameterMapEntry(const I18NString& key, const I18NString& value);

    /** Copies everything out. A key that `out` has already keeps its value. */
    bool CopyContents(SMParameterMapContents& out) const;
    /** Compares by key, so the order of entries does not matter; `text2` is not looked at. */
    bool IsSameAs(const SMParameterMapContents& contents) const;

    using SMObjectBase::RegenerateIds;
    /** New ids for the entries and the map itself; the map of ids is not used. */
    void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    /** Renames in the values and the value reference; keys, key reference and default value stay. */
    void RenameObjects(SMRenameList2& list);
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();
    /** The "queryItemMap" element as text; empty when there is none. */
    I18NString WriteQueryItemMapToString() const;

  private:
    struct ByKey {
        static std::string_view Key(const SMParameterMapEntry2& entry) { return entry.GetKey().utf8(); }
    };
    void WriteQueryItemMap(QvContentHandler* handler) const;

    QvULString m_name;
    I18NString m_text2;
    bool m_hidden = false;
    I18NString m_defaultValue;
    SMChildren<SMParameterMapEntry2, ByKey> m_entries;
    std::unique_ptr<SM_QUERY_ITEM_MAP> m_queryItemMap;
    /** Version of the record that keeps the query item map. */
    long m_queryItemMapVersion = 0;
};

class SM_API SMParameterMapBuilder : public SMObjectBuilder {
  public:
    /** The map is borrowed. */
    explicit SMParameterMapBuilder(SMParameterMap2* map) : m_map(map) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_map; }

  private:
    void StartEntry(const QvXMLAttributes& attrs);

    SMParameterMap2* m_map;
    I18NString m_keyRef, m_valueRef;
};

}  // namespace schema_002_000
