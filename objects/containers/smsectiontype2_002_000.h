#pragma once

#include <map>

#include "objects/base/smchildren_002_000.h"
#include "objects/base/smenums_002_000.h"
#include "objects/base/smnamedescobject2_002_000.h"

namespace schema_002_000 {

class SMCalculation2;
class SMDimension2;
class SMFilter2;
class SMFolder2;
class SMFunction2;
class SMNamespace2;
class SMQuerySubject2;
class SMQuerySubjectType2;
class SMRelationship2;
class SMRelationshipShortcut2;
class SMScopeRelationship2;
class SMShortcut2;
class SMUpdateSubject2;

/**
 * Base of namespaces and folders: holds the top-level objects of a model, of every kind, in one display order. An object stands in
 * one typed collection, which shares it, and in the display list, which borrows it.
 */
class SM_API SMSectionType2 : public SMNameDescObject2 {
  public:
    using SubjectCollection = QvULCollection<SMQuerySubject2, QvULIdExtract<SMQuerySubject2>>;

    SMSectionType2(SMObjectBase* owner, SMProject2* project);
    ~SMSectionType2() override;

    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    void VisitTexts(IOTextVisitor& visitor) const override { VisitLangElements(visitor); }
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    void WriteXMLElement(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    virtual SMNamespace2* GetThisOrContainingNamespace();

    // ---- adding: each shares the child and puts it at the end of the display list; the caller sets the display order number

    void AddFolder(SMFolder2* folder);
    /** A name that another namespace of the project has is made unique, and the event logged. */
    void AddNamespace(SMNamespace2* ns);
    void AddFunction(SMFunction2* function);
    void AddQuerySubject(SMQuerySubject2* subject);
    void AddUpdateSubject(SMUpdateSubject2* subject);
    void AddFilter(SMFilter2* filter);
    void AddCalculation(SMCalculation2* calculation);
    void AddDimension(SMDimension2* dimension);
    void AddShortcut(SMShortcut2* shortcut);
    void AddRelationship(SMRelationship2* relationship);
    void AddRelationshipShortcut(SMRelationshipShortcut2* shortcut);
    void AddScopeRelationship(SMScopeRelationship2* relationship);

    // ---- find or create, by default name within this section

    /** Finds a namespace anywhere in the project, and moves it here with all below it, or makes it. */
    SMNamespace2* AddOrUpdateNamespace(const QvULString& name, const QvULString& description);
    SMFolder2* AddOrUpdateFolder(const I18NString& name);
    SMQuerySubject2* AddOrUpdateQuerySubject(const I18NString& name, const I18NString& description);
    /** A subject with a definition that has a database query; a model query that is there stays beside it. */
    SMQuerySubject2* AddOrUpdateDBQuerySubject(const I18NString& name, const I18NString& description);
    SMQuerySubject2* AddOrUpdateMDLQuerySubject(const I18NString& name, const I18NString& description);
    /** The description is the screen tip too. */
    SMCalculation2* AddOrUpdateCalculation(const I18NString& name, const I18NString& expression, SMEnum_usage::Enum usage,
                                           SMEnum_datatype::Enum datatype, int precision, int scale, int size, bool nullable,
                                           SMEnum_aggregationRule::Enum regularAggregate, SMEnum_aggregationRule::Enum semiAggregate,
                                           const I18NString& description);
    /** A new filter is valid and keeps the display order number 0; filters are not recorded. */
    SMFilter2* AddOrUpdateFilter(const I18NString& name, const I18NString& expression);
    SMDimension2* AddOrUpdateDimension(const I18NString& name, const I18NString& description);
    SMDimension2* AddOrUpdateMeasureDimension(const I18NString& name, const I18NString& description);
    SMDimension2* AddOrUpdateDimensionType(const I18NString& name, const I18NString& description, SMEnum_dimensionType::Enum type);
    /** A null end stands for none. */
    SMRelationship2* AddOrUpdateRelationship(const I18NString& name, SMNamedObject2* left, SMEnum_cardinality::Enum leftMin,
                                             SMEnum_cardinality::Enum leftMax, SMNamedObject2* right, SMEnum_cardinality::Enum rightMin,
                                             SMEnum_cardinality::Enum rightMax, const I18NString& expression);
    SMScopeRelationship2* AddOrUpdateScopeRelationship(const I18NString& name, SMNamedObject2* left, SMEnum_cardinality::Enum leftMin,
                                                       SMEnum_cardinality::Enum leftMax, SMNamedObject2* right,
                                                       SMEnum_cardinality::Enum rightMin, SMEnum_cardinality::Enum rightMax);
    SMShortcut2* AddOrUpdateShortcut(const I18NString& name, SMQuerySubjectType2* target);
    SMRelationshipShortcut2* AddOrUpdateRelationshipShortcut(const I18NString& name, SMNamedObject2* left, SMShortcut2* shortcut,
                                                             SMRelationship2* relationship);

    // ---- look-ups; null when there is none

    /** The namespace of that name if it stands directly in this section. */
    SMNamespace2* GetChildNamespaceByName(const I18NString& name) const;
    SMNamespace2* GetContainingNamespace() const;
    SMQuerySubject2* GetQuerySubjectById(const I18NString& id) const;
    SMQuerySubject2* GetQuerySubjectByName(const I18NString& name) const;
    /** A query subject, update subject, dimension or shortcut, in this order. */
    SMNamedObject2* GetRefObjectByName(const I18NString& name) const;
    SMDimension2* GetDimensionByName(const I18NString& name) const;
    /** Matches default names, here and then depth first below, folders before namespaces: as callers have come to expect. */
    SMCalculation2* GetCalculationBySMID(const I18NString& name) const;
    /** Adds each direct subject of that warehouse reference. Raises when one with the same id is there already. */
    void GetSMQuerySubjectsByQvRefID(SubjectCollection& subjects, const I18NString& reference) const;
    SMShortcut2* GetShortcutByName(const I18NString& name) const;
    SMScopeRelationship2* GetScopeRelationshipByName(const I18NString& name) const;

    // ---- deletes; an object that is not there is no error

    void DeleteNamespaceById(const I18NString& id);
    /** Removes a namespace that the caller holds, whatever its id. The project's name map is the caller's business. */
    void DeleteNamespace(SMNamespace2* ns);
    void DeleteQuerySubjectById(const I18NString& id);
    /** Leaves the display list alone, so the subject is still written. An id that is not there is logged. */
    void DeleteQuerySubjectWithId(const I18NString& id);
    void DeleteDimensionById(const I18NString& id);
    void DeleteShortcutById(const I18NString& id);
    void DeleteScopeRelationshipById(const I18NString& id);
    void DeleteScopeRelationship(SMScopeRelationship2* relationship);

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
    const QvSmartVector<SMFunction2>& GetFunctions() const { return functions.Items(); }
    const QvSmartVector<SMShortcut2>& GetShortcuts() const { return shortcuts.Items(); }
    const QvSmartVector<SMQuerySubject2>& GetQuerySubjects() const { return querySubjects.Items(); }
    const QvSmartVector<SMUpdateSubject2>& GetUpdateSubjects() const { return updateSubjects.Items(); }
    const QvSmartVector<SMRelationship2>& GetRelationships() const { return relationships.Items(); }
    const QvSmartVector<SMRelationshipShortcut2>& GetRelationshipShortcuts() const { return relationshipShortcuts.Items(); }
    const QvSmartVector<SMFilter2>& GetFilters() const { return filters.Items(); }
    const QvSmartVector<SMCalculation2>& GetCalculations() const { return calculations.Items(); }
    const QvSmartVector<SMDimension2>& GetDimensions() const { return dimensions.Items(); }
    const QvSmartVector<SMScopeRelationship2>& GetScopeRelationships() const { return scopeRelationships.Items(); }
    bool HasNamespace(const SMNamespace2* ns) const { return namespaces.Contains(ns); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }
    int TakeDisplayOrder() { return nextDisplayOrder++; }

  protected:
    bool WriteChildren(IOHelper& helper, const SMLogWords& words, const char* failure);
    /** Whether a child of a kind other than namespaces is here. */
    bool HasContent() const;

    SMDisplayList m_displayOrder;
    SMChildren<SMFolder2> folders;
    SMChildren<SMFunction2> functions;
    SMChildren<SMNamespace2> namespaces;
    SMChildren<SMShortcut2> shortcuts;
    SMChildren<SMQuerySubject2, SMByName, SMByQvRef> querySubjects;
    SMChildren<SMUpdateSubject2> updateSubjects;
    SMChildren<SMRelationship2> relationships;
    SMChildren<SMRelationshipShortcut2> relationshipShortcuts;
    SMChildren<SMFilter2> filters;
    SMChildren<SMCalculation2> calculations;
    SMChildren<SMDimension2> dimensions;
    SMChildren<SMScopeRelationship2> scopeRelationships;
    int nextDisplayOrder = 0;

  private:
    template <class T>
    T* Make();
    template <class T, class Children>
    void Add(T* child, Children& children);
    /** Makes a child with the next display order number, adds and names it. */
    template <class T, class Children>
    T* Create(Children& children, const I18NString& name);
    /** Enters the object into the project's map of object ids, if the project keeps one. */
    static void Record(SMObjectBase* object);

    void MakeNameUnique(SMNamespace2* ns);
    void AdoptDescendents(SMProject2* project);
    bool IsInside(const SMNamespace2* ns) const;
    bool MayMoveHere(const SMNamespace2* ns, const char* method) const;
    template <class T>
    bool ReadChild(IOHelper& helper, const IOParameter& row, void (SMSectionType2::*add)(T*));
    template <class T>
    bool ReadKind(IOHelper& helper, const I18NString& type, void (SMSectionType2::*add)(T*));
    bool ReadSections(IOHelper& helper);
    bool ReadSubjects(IOHelper& helper);
};

}  // namespace schema_002_000
