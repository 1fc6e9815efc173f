#pragma once

#include <map>

#include "objects/base/smchildren_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"

namespace schema_002_000 {

class SMFolder2;
class SMNamespace2;

/**
 * Base of namespaces and folders: holds the top-level objects of a model, of every kind, in one display order. An object stands in
 * one typed collection, which shares it, and in the display list, which borrows it.
 */
class SM_API SMSectionType2 : public SMNameDescObject2 {
  public:
    SMSectionType2(SMObjectBase* owner, SMProject2* project);
    ~SMSectionType2() override;

    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    void WriteXMLElement(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    virtual SMNamespace2* GetThisOrContainingNamespace();

    /** Shares the child and puts it at the end of the display list. The caller sets the display order number. */
    void AddFolder(SMFolder2* folder);
    /** As AddFolder. A name that another namespace of the project has is made unique, and the event logged. */
    void AddNamespace(SMNamespace2* ns);
    /** Finds a namespace anywhere in the project, and moves it here with all below it, or makes it. */
    SMNamespace2* AddOrUpdateNamespace(const QvULString& name, const QvULString& description);
    SMFolder2* AddOrUpdateFolder(const I18NString& name);
    /** The namespace of that name if it stands directly in this section, else null. */
    SMNamespace2* GetChildNamespaceByName(const I18NString& name) const;
    SMNamespace2* GetContainingNamespace() const;
    void DeleteNamespaceById(const I18NString& id);
    /** Removes a namespace that the caller holds, whatever its id. The project's name map is the caller's business. */
    void DeleteNamespace(SMNamespace2* ns);

    void SortDisplayOrder() { m_displayOrder.Sort(); }
    /** Moves a namespace with all below it into this section, possibly from another project. */
    void ImportNamespace(SMNamespace2* ns);
    /** Enters all namespaces below this section under their names; existing names stay. */
    void AddDescendentNamespacesToMap(std::map<QvULString, SMNamespace2*>& map) const;
    void RemoveDescendentNamespacesFromMap();
    /** Moves this section and its children, but for its namespaces, which ImportNamespace reaches. */
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();
    void RenameObjects(SMRenameList2& list);
    /** The content of the element: texts, date, properties, and the children in display order, broken out where asked for. */
    void WriteXMLElementChildren(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const;
    /** Reads the rows of a kind below this section; the flag asks for their object kind too. */
    bool readObjectType(IOHelper& helper, const I18NString& type, QvSmartPtr<IOArrayParam>& result, bool addObjectParameter);

    const QvSmartVector<SMFolder2>& GetFolders() const { return folders.Items(); }
    const QvSmartVector<SMNamespace2>& GetNamespaces() const { return namespaces.Items(); }
    bool HasNamespace(const SMNamespace2* ns) const { return namespaces.Contains(ns); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }
    int TakeDisplayOrder() { return nextDisplayOrder++; }

  protected:
    /** Enters the object into the project's map of object ids, if the project keeps one. */
    static void Record(SMObjectBase* object);
    /** Gives a child the next display order number. */
    void Number(SMObjectBase* child) { child->displayOrder = TakeDisplayOrder(); }
    bool WriteChildren(IOHelper& helper, const SMLogWords& words, const char* failure);

    SMDisplayList m_displayOrder;
    SMChildren<SMFolder2> folders;
    SMChildren<SMNamespace2> namespaces;
    int nextDisplayOrder = 0;

  private:
    void MakeNameUnique(SMNamespace2* ns);
    void AdoptDescendents(SMProject2* project);
    bool IsInside(const SMNamespace2* ns) const;
    bool MayMoveHere(const SMNamespace2* ns, const char* method) const;
    bool ReadSections(IOHelper& helper);
};

class SM_API SMSectionTypeBuilder : public SMNameDescObjectBuilder {
  public:
    /** The section is borrowed. */
    explicit SMSectionTypeBuilder(SMSectionType2* section) : SMNameDescObjectBuilder(section), m_section(section) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void StartNamespaceFile(const QvXMLAttributes& attrs);

    SMSectionType2* m_section;
};

}  // namespace schema_002_000
