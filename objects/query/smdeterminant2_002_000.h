#pragma once

#include <vector>

#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

/** Which query items of a subject are the keys of a grain of data, and which its attributes. Has one plain name for all locales. */
class SM_API SMDeterminant2 : public SMObjectBase {
  public:
    SMDeterminant2(SMObjectBase* owner, SMProject2* project) : SMObjectBase(owner, project) {}

    /** The two lists are read by this class's builder: each column holds a small document. */
    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper&) override { return true; }
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    /** The parent columns are named after sections, though the parent is a query subject. */
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper&) override { return true; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::determinant; }

    const QvULString& GetName() const { return name; }
    /** Tells the project, whose indexes of names may have to be built anew. */
    void SetName(const QvULString& text);
    bool CanGroup() const { return canGroup; }
    void SetCanGroup(bool group) { canGroup = group; }
    bool IdentifiesRow() const { return identifiesRow; }
    void SetIdentifiesRow(bool identifies) { identifiesRow = identifies; }
    /** Paths of query items, in the order of their coming; a path may stand in a list twice. */
    const std::vector<QvULString>& GetKeyRefObjs() const { return keyRefObjs; }
    void AddKeyRefObj(const QvULString& path) { keyRefObjs.push_back(path); }
    const std::vector<QvULString>& GetAttrRefObjs() const { return attrRefObjs; }
    void AddAttrRefObj(const QvULString& path) { attrRefObjs.push_back(path); }
    void RenameObjects(SMRenameList2& list);

  private:
    void getAttributesFromVector(IOParameter& attrs) const;
    void WriteVector(QvContentHandler* handler, const I18NString& startTag, const std::vector<QvULString>& paths) const;
    void ReadVector(const IOParameter& row, const QvULString& key);

    QvULString name;
    bool canGroup = false;
    bool identifiesRow = false;
    std::vector<QvULString> keyRefObjs;
    std::vector<QvULString> attrRefObjs;
};

class SM_API SMDeterminantBuilder : public SMObjectBuilder {
  public:
    /** The determinant is borrowed. */
    explicit SMDeterminantBuilder(SMDeterminant2* determinant) : m_determinant(determinant) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_determinant; }

  private:
    enum class List { none, keys, attributes };
    void AddRefObj();

    SMDeterminant2* m_determinant;
    /** The list that was opened last; its end does not close it. */
    List m_list = List::none;
};

}  // namespace schema_002_000
