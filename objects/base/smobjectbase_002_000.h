#pragma once

#include <list>
#include <map>
#include <vector>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/persist/iohelper.h"
#include "core/qvutils/persist/ioobject.h"
#include "core/qvutils/text/smallmap.h"
#include "core/qvutils/xml/qvcontenthandler.h"
#include "objects/base/smenum_xmltag_002_000.h"
#include "objects/base/smnameindex_002_000.h"
#include "objects/base/smrow_002_000.h"

class MultiFileHelper;

namespace schema_002_000 {

class SMObjectBuilder;
class SMProject2;
class SMRenameList2;
class SMXMLObject2;

/** A custom property without its name. */
struct SMProperty2 {
    QvULString type;
    QvULString value;
};

SM_API extern const I18NString SM_TAG_REFOBJ_OPEN;
SM_API extern const I18NString SM_TAG_REFOBJ_CLOSE;

/**
 * Base of every model object: a link to its parent and its project, a place in the project's registry, an object id and a path,
 * custom properties, and the verbs with which an object writes itself as XML and as a row.
 *
 * Objects are counted. A parent shares its children; `parent` and the project link are borrowed.
 */
class SM_API SMObjectBase : public IOObject {
  public:
    /** Enters the object into the project's registry, unless `project` is null. */
    SMObjectBase(IOObject* parent, SMProject2* project);
    SMObjectBase(const SMObjectBase&) = delete;
    SMObjectBase& operator=(const SMObjectBase&) = delete;
    ~SMObjectBase() override;

    void constructFromIOParameter(const IOParameter& row) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    int GetModelType() override { return 9; }
    int BasicObjType() const override { return 1; }
    /** The object id; else "(tag).(name).(id)". */
    void getPath(I18NString& out) const override;

    /**
     * What the builders call for a "property" element. The names "id", "version" (numeric texts only; others are dropped) and
     * "lastChanged" set the fields of the object; any other name is stored, empty values and types too.
     */
    virtual void SetProperty(const QvULString& name, const QvULString& type, const QvULString& value);
    /** Stores a property, whatever its name, when all three texts are set; does nothing otherwise. */
    virtual void AddOrUpdateProperty(const QvULString& name, const QvULString& type, const QvULString& value);
    virtual void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const;
    virtual void WriteXMLElement(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const;
    /** The tag of the classes that can be broken out or referred to by kind; empty for the others. */
    virtual const I18NString& GetTagName() const { return EMPTY_QVSTRING; }
    virtual void BreakAndWriteXMLDocument(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target);
    /** Gives the object a new id; containers do so for what they hold. */
    virtual void RegenerateIds();
    virtual const QvULString& GetNameForSMPath() const { return EMPTY_QVULSTRING; }
    /** Folders leave no trace in paths. */
    virtual bool IsFolder() const { return false; }
    virtual SMEnum_xmltag::Enum GetSMType() const = 0;
    /** The object id, "[a].[b]"; empty for classes that have none. `escape` makes it fit for XML. */
    virtual I18NString GetSMID(bool escape) const;
    /** The custom properties, in the order of their names; `writeHidden` puts the id and the version before them. */
    virtual void WriteProperties(QvContentHandler* handler, bool writeHidden) const;
    virtual I18NString WritePropertiesToString();

    /** Null for an object without a parent, and for one whose parent is no model object. */
    SMObjectBase* GetParentSMObj() const;
    SMProject2* GetSMProject() const noexcept { return m_project; }
    /** Moves the object from one project's registry to another's; null takes it out. Containers walk their children first. */
    void SetSMProject(SMProject2* project);
    static bool IsSMObject(IOObject* object) { return object->BasicObjType() == 1; }
    /** The nearest ancestor of one of two types; the second is -1 when one is enough. Logs, and gives null, when there is none. */
    SMObjectBase* GetContainingObjectOfType(SMEnum_xmltag::Enum a, SMEnum_xmltag::Enum b) const;
    const QvULString& GetContainingNamespaceName() const;

    static void AddEscapedString(bool escape, I18NString& out, const I18NString& s);
    static void AppendToSMObjectID(bool escape, I18NString& out, const I18NString& s);
    /** "[a]", then ".[x]" for each of the others up to the first empty one. */
    static I18NString BuildSMObjectID(bool escape, const I18NString& a, const I18NString& b, const I18NString& c, const I18NString& d,
                                      const I18NString& e);
    /** The first three parts of an id. An output for which there is no part keeps its value. */
    static void DeconstructSMObjectID(const I18NString& id, I18NString& a, I18NString& b, I18NString& c);
    /** "<refobj>" + the escaped id + "</refobj>". */
    I18NString GetRefObjEscSMID() const;
    /**
     * The path from the innermost namespace to this object. Returns the name of the namespace directly below the root on the way
     * up, empty when the innermost namespace is the root. Raises TklAssertError when the ancestors run out below a project.
     */
    QvULString GetSMPath(I18NString& path) const;
    /** Owner id + "/" + tag, cut to the 50 characters that the column takes: long tags of one owner may fall together. */
    static void GetRemainingInfoId(const QvULString& ownerId, const I18NString& tag, I18NString& out);

    void SetHiddenProperty(const QvULString& name, const QvULString& value);
    /** Null when there is no property of that name. Borrowed; good until the properties change. */
    const SMProperty2* GetProperty(const QvULString& name) const;

    static void WriteString(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, const I18NString& value);
    static void WriteBool(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, bool value);
    static void WriteLong(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, long value);
    static void WriteSMDate(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs, const QvDate& date);
    static void WriteList(QvContentHandler* handler, const I18NString& listTag, const I18NString& itemTag,
                          const std::list<I18NString>& items);
    static void WriteList(QvContentHandler* handler, const I18NString& listTag, const I18NString& itemTag,
                          const std::list<I18NString>& items, const QvXMLAttributes& itemAttrs, const QvXMLAttributes& listAttrs);
    I18NString WriteStringToString(const I18NString& tag, const QvXMLAttributes& attrs, const I18NString& value) const;
    I18NString WriteListToString(const I18NString& listTag, const I18NString& itemTag, const std::list<I18NString>& items) const;

    void SetSMLastChangedDate(const I18NString& text);
    void SetLastChangedDateToNow();
    /** "yyyy-MM-dd'T'HH:mm:ss". */
    static const I18NString& GetSMDateFormat();

    /** The query for the rows of a kind below this object. */
    QvSmartPtr<IOParameter> PrepareReadAttributes(const IOHelper& helper, const I18NString& objectName);

    /**
     * Remaining info: XML of this object that has no column, one record a tag, versioned on its own. The long form writes when the
     * record is new, when its owner's version or its text is another, or when records are being repaired; `version` takes the
     * record's number. False: an action failed.
     */
    bool write_remaining_info(IOHelper& helper, SMXMLObject2* object);
    bool write_remaining_info(IOHelper& helper, const I18NString& tag, const I18NString& text, long& version);
    /** Reads the record of one tag; `result` is null when there is none, or an empty one. */
    bool read_remaining_info_into_smxmlobject(IOHelper& helper, const SMObjectBase* owner, QvSmartPtr<SMXMLObject2>& result,
                                              const QvULString& tag);
    /** Replays the records whose tags are wanted into a builder, and stores their versions through the pointers. */
    bool read_remaining_info_into_builder(IOHelper& helper, const SMObjectBase* owner, SMObjectBuilder* builder,
                                          std::map<QvULString, long*>& wanted);
    /** The record "property": custom properties and texts in other locales. */
    bool read_custom_property_locale(IOHelper& helper, const SMObjectBase* owner, SMObjectBuilder* builder);

    static const I18NString EMPTY_QVSTRING;
    static const QvULString EMPTY_QVULSTRING;
    /** The namespace URI of every element: none, since only the root of a document carries one. */
    static const I18NString ms_strUri;

  protected:
    using Properties = qv::SmallSortedMap<QvULString, SMProperty2, std::less<QvULString>>;

    static void StartElement(QvContentHandler* handler, const I18NString& tag, const QvXMLAttributes& attrs);
    static void StartElement(QvContentHandler* handler, const I18NString& tag);
    static void EndElement(QvContentHandler* handler, const I18NString& tag);
    static const QvXMLAttributes& NoAttributes();
    void WriteCustomProperties(QvContentHandler* handler) const;
    /** A "property" of type "hidden" for a link that has a field of its own; nothing for an empty one. */
    void WriteHiddenPropertyIfSet(QvContentHandler* handler, const I18NString& name, const I18NString& value) const;
    /** The attributes "id" and "version" of the elements that have them. */
    void AddIdAndVersion(QvXMLAttributesImpl& attrs) const;
    void AddIdIfSetAndVersion(QvXMLAttributesImpl& attrs) const;

    /** One simple element, without attributes, or none. */
    static void TextElement(QvContentHandler* handler, const I18NString& tag, const I18NString& value);
    static void TextElementIfSet(QvContentHandler* handler, const I18NString& tag, const I18NString& value);
    static void FlagElement(QvContentHandler* handler, const I18NString& tag, bool value);
    static void FlagElementIfTrue(QvContentHandler* handler, const I18NString& tag, bool value);
    static void NumberElement(QvContentHandler* handler, const I18NString& tag, long value);
    /** A negative number stands for none. */
    static void NumberElementIfSet(QvContentHandler* handler, const I18NString& tag, long value);
    static void AddAttributeIfSet(QvXMLAttributesImpl& attrs, const I18NString& name, const I18NString& value);
    static void AddAttributeIfTrue(QvXMLAttributesImpl& attrs, const I18NString& name, bool value);

    /** Kept XML, if there is any: its bytes into a document, its record into and from the repository. */
    static void WriteKept(const SMXMLObject2* kept, QvXMLFormatTarget& target);
    bool WriteKeptInfo(IOHelper& helper, SMXMLObject2* kept);
    bool ReadKeptInfo(IOHelper& helper, QvSmartPtr<SMXMLObject2>& kept, const QvULString& tag);

    /** The row insert that all classes share: takes the attributes and sends them; false on failure. */
    bool InsertRow(IOHelper& helper, const SMTable& table);
    /** Rows of a child kind of this object; false when the context refuses. */
    bool SelectRows(IOHelper& helper, const I18NString& objectName, QvSmartPtr<IOArrayParam>& rows);
    /** Fills a child from its row and notes it as read. */
    static void AdoptRow(IOHelper& helper, SMObjectBase& child, const IOParameter& row);
    /** Reads the children of a kind: each is made, handed to `add`, filled, and reads what hangs below it. False: a step failed. */
    template <class T, class Add>
    bool ReadChildren(IOHelper& helper, const I18NString& objectName, Add add) {
        return ReadChildrenIf<T>(
            helper, objectName, [](const IOParameter&) { return true; }, add);
    }
    /** The same for the rows that `accept` takes. */
    template <class T, class Accept, class Add>
    bool ReadChildrenIf(IOHelper& helper, const I18NString& objectName, Accept accept, Add add) {
        QvSmartPtr<IOArrayParam> rows;
        if (!SelectRows(helper, objectName, rows)) return false;
        for (int i = 0; i < rows->Size(); ++i) {
            const QvSmartPtr<IOParameter> row = rows->At(i);
            if (!accept(*row)) continue;
            const QvSmartPtr<T> child = new T(this, m_project);
            add(child.get());
            AdoptRow(helper, *child, *row);
            if (!child->read(helper)) return false;
        }
        return true;
    }

    /** Tells the project that a text by which objects are looked up changes: its indexes may have to be built anew. */
    void NoteNameChange(std::string_view before, std::string_view after);
    /** The same for the link to the warehouse. */
    void NoteLinkChange(std::string_view before, std::string_view after);

    /** The single table of tags; the names of elements and attributes come from here. */
    const SMEnum_xmltag* m_tags;
    /** Borrowed. Null while the project itself is being built, and after the project has gone. */
    SMProject2* m_project;
    Properties m_properties;
    /** Version of the record that keeps the custom properties. */
    int m_propertyVersion = 0;

  private:
    friend class AllSMObjects;
    friend class SMProject2;
    void AddVersion(QvXMLAttributesImpl& attrs) const;
    void NoteChange(SMNameEpoch SMNameEpochs::*kind, std::string_view before, std::string_view after);
    bool SelectRemainingInfo(IOHelper& helper, const SMObjectBase* owner, const char* method, QvSmartVector<IOParameter>& rows);
    bool NoteRemainingInfo(IOHelper& helper, const IOParameter& row, const SMObjectBase* owner, const char* method, long& version);

    /** Slot in the project's registry; -1: none. */
    int m_registryIndex = -1;
};

/** Less-than on the display order; false when either is null. */
SM_API bool DisplayOrderSort(SMObjectBase* a, SMObjectBase* b);
/** Removes the first object with the id, if there is one. Nothing is released: the list borrows. */
SM_API void RemoveDisplayOrderItemById(std::vector<SMObjectBase*>& items, const QvULString& id);

}  // namespace schema_002_000
