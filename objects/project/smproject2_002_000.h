#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <set>
#include <unordered_map>
#include <vector>

#include "core/qvutils/base/takennumbers.h"
#include "objects/base/allsmobjects_002_000.h"
#include "objects/base/smchildren_002_000.h"
#include "objects/base/smenums_002_000.h"
#include "objects/base/smnameindex_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"
#include "objects/base/smpartfiles_002_000.h"

class CLTask;

namespace schema_002_000 {

class SMDatasource2;
class SMCalculation2;
class SMNamedObject2;
class SMNamespace2;
class SMQueryItem2;
class SMQuerySubject2;
class SMShortcut2;
class SMPackage2;
class SMParameterMap2;
class SMSecurityView2;
class SMXMLObject2;

/**
 * The root of a model, and the one object that a caller creates by itself. It owns all below it, holds the registry of live objects
 * and the map from name to namespace, and is the door to the whole. One thread at a time may use a project and its objects.
 */
class SM_API SMProject2 : public SMObjectBase {
  public:
    SMProject2();
    ~SMProject2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    /** The data sources, parameter maps and security views, and the root namespace; not the packages. */
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    int GetModelType() override { return 23; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::project; }
    using SMObjectBase::WriteXMLElement;
    void WriteXMLElement(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    /** Writes the whole document. The helper may be null; one of kind 3 breaks parts out into files of their own. */
    void WriteXMLDocument(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const;

    const I18NString& GetName() const { return m_name; }
    void SetName(const I18NString& name) { m_name = name; }
    const std::list<I18NString>& GetLocales() const { return m_locales; }
    void AddLocale(const I18NString& locale) { m_locales.push_back(locale); }
    const QvULString& GetDefaultLocale() const { return m_defaultLocale; }
    void SetDefaultLocale(const QvULString& locale) { m_defaultLocale = locale; }
    SMNamespace2* GetRootNamespace() const { return m_rootNamespace.get(); }

    // ---- namespaces: their names are unique in the project

    /** Shares the new root. The old one leaves the document but lives on with the project, and its name stays in the map. */
    void SetRootNamespace(SMNamespace2* ns);
    const std::map<QvULString, SMNamespace2*>& GetNamespaceMap() const { return m_namespaceMap; }
    /** An existing entry of the name is kept. */
    void AddNamespaceToMap(SMNamespace2* ns);
    /** Enters the namespaces below `section`. */
    void AddDescendentNamespacesToMap(const SMNamespace2& section);
    void RebuildNamespaceMap();
    void RemoveNamespaceAndDescendentsFromMap(SMNamespace2* ns);
    /** After a rename: drops the entry of the old name, whoever has it, and enters the new one. Nothing for one that is being built. */
    void AddOrUpdateNamespaceNameMap(SMNamespace2* ns, const I18NString& oldName);
    SMNamespace2* FindNamespaceByName(const I18NString& name) const;
    SMNamespace2* FindNamespaceByNameCaseInsensitive(const I18NString& name) const;
    SMNamespace2* FindNamespaceById(const I18NString& id) const;
    I18NString GenerateUniqueNamespaceName(const I18NString& name) const;
    /**
     * A path from the root down; consumed. Looks for the last element only, anywhere in the model; makes what is missing. A path of
     * one element that is not found becomes the root. An empty path is misuse: logged, and thrown as the QvLogEvent.
     */
    SMNamespace2* FindOrCreateNamespaceFromPath(std::list<QvULString>& path);
    /** The root stays in place, but its entries leave the map: the caller must rebuild it. */
    void DeleteNamespaceWithName(const I18NString& name);
    /** As above for a namespace that the caller holds. */
    void DeleteNamespace(SMNamespace2* ns);

    // ---- owned kinds

    const QvSmartVector<SMDatasource2>& GetDataSources() const { return m_dataSources.Items(); }
    /** Shares the data source. */
    void AppendDataSource(SMDatasource2* dataSource);
    /** The data source of all four; a new one is named after `cmDataSource`. */
    SMDatasource2* AddDataSourceOrReturnExisting(const I18NString& cmDataSource, const I18NString& catalog, const I18NString& cube,
                                                 SMEnum_queryProcessing::Enum queryProcessing);
    /** Enters each data source under its name; a name that is there already keeps its entry. */
    void CreateDatasourcesNameMap(QvSmartMap<QvULString, SMDatasource2>& map) const;
    /** Empties connection and schema of all data sources but the one that has the project's name. */
    void ClearDSSchema();

    using Packages = QvULCollection<SMPackage2, QvULIdExtract<SMPackage2>>;
    const Packages& GetPackages() const { return m_packages; }
    /** Shares the package. Its id may be the one of another package. */
    void AppendPackage(SMPackage2* package);
    SMPackage2* GetPackageWithName(const I18NString& name) const;
    /** A new package has the default locale, lets everyone administrate it, and shows the view, which must not be null. */
    SMPackage2* AddPackageOrReturnExisting(const I18NString& name, const I18NString& description, SMSecurityView2* securityView);
    void DeletePackageWithId(const QvULString& id);
    /** Moves the package to the end, where it takes the place of one with its id. */
    void DeleteAndAppendPackage(SMPackage2* package);

    const QvSmartVector<SMSecurityView2>& GetSecurityViews() const { return m_securityViews.Items(); }
    /** Shares the view. */
    void AppendSecurityView(SMSecurityView2* view);
    SMSecurityView2* GetSecurityViewByName(const I18NString& name) const;
    /** The view whose name is the third part of the object id. */
    SMSecurityView2* GetSecurityViewBySMID(const I18NString& id) const;
    /** A new view lets everyone use it. */
    SMSecurityView2* AddSecurityViewOrReturnExisting(const I18NString& name);
    /** Puts the view at the end, where it takes the place of the first one of its name. */
    void DeleteAndAppendSecurityView(SMSecurityView2* view);
    void DeleteSecurityViewWithSMID(const I18NString& id);

    const QvSmartVector<SMParameterMap2>& GetParameterMaps() const { return m_parameterMaps.Items(); }
    SMParameterMap2* GetParameterMapWithName(const I18NString& name) const;
    /** An existing map takes the flag too. */
    SMParameterMap2* AddParameterMapOrReturnExisting(const I18NString& name, bool hidden);
    /** Shares the map. */
    void AppendParameterMap(SMParameterMap2* map);

    /** Data sources, packages and security views keep what they refer to. */
    // ---- look-ups by object id over the whole model; null when there is none

    SMQuerySubject2* GetQuerySubjectBySMID(const I18NString& id) const;
    /** A query subject, update subject, dimension or shortcut. Only the first two parts of the id are looked at. */
    SMNamedObject2* GetRefObjectBySMID(const I18NString& id) const;
    SMQueryItem2* GetQueryItemBySMID(const I18NString& ns, const I18NString& subject, const I18NString& item) const;
    SMCalculation2* GetCalculationBySMID(const I18NString& ns, const I18NString& name, const I18NString& ignored) const;
    SMShortcut2* GetShortcutBySMID(const I18NString& id) const;

    /** Builds the namespace "Database Layer" anew below "Target", empty but for its namespace "Materialized Views". */
    void DropDatabaseLayerContentExceptMViews();

    void RenameObjects(SMRenameList2& list);
    using SMObjectBase::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap);

    CLTask* getActiveExportTask() const { return m_activeExportTask; }
    /** Borrowed. */
    void setActiveExportTask(CLTask* task) { m_activeExportTask = task; }

    // ---- sets and maps of a save

    /**
     * Fills the sets and maps with what the model holds. All are borrowed until the next call, and each may be null. An object whose
     * id another one has gets a new id, if `ids` is given.
     */
    void InitAndAddSetPIDIDAndMiniObject(std::set<QvULString>* pidid, std::set<QvULString>* ids, MapId2MiniObject* miniObjects,
                                         MapId2RemainingInfo* remainingInfo);
    void AddToSetPIDIDAndMiniObject(SMObjectBase* object);
    void AddToMiniRemainingInfoMap(const QvULString& objectId, int parentVersion, const SMXMLObject2* object);
    void AddToMiniRemainingInfoMap(const QvULString& objectId, int parentVersion, const I18NString& tag, int version,
                                   const QvULString& text);
    void AddToMiniRemainingInfoMap(const QvULString& recordId, int parentVersion, int version, const QvULString& text);

    // ---- set by callers

    /** Whether find-or-create operations enter what they make or find into the map of object ids. */
    bool m_keepIdMap = false;
    /** Objects by object id, borrowed. An existing key stays; an object that dies takes its own entry along. */
    std::map<QvULString, SMObjectBase*> m_idMap;
    /** The directory against which the model's separate files are found. */
    I18NString m_baseDirectory;
    /** How these files are read. */
    SMPartFiles m_partFiles;
    /** Borrowed; the name of the data source that is the target of an export. */
    QvULString* m_targetDataSourceName = nullptr;
    /** Whether data sources tell their connection and schema in a document. True again after each document that is written. */
    mutable bool m_writeDataSourceSchema = true;

    // ---- for the library's own classes

    /** Enters an object under its object id, if the project keeps the map. */
    void RecordObject(SMObjectBase* object);
    /** For an object that dies or leaves: its entry in the map of object ids goes, and who watches it learns of it. */
    void ForgetObject(SMObjectBase* object);
    /** Watches an object of this project: the token tells later, with the pointer, whether it still lives here. */
    std::uint64_t WatchLife(const SMObjectBase* object);
    bool IsWatchedAlive(const SMObjectBase* object, std::uint64_t token) const;
    void ForgetRecordedName(const QvULString& key);
    void ForgetNamespace(SMNamespace2* ns);
    SMNameEpochs& NameEpochs() noexcept { return m_nameEpochs; }
    /** The same text, shared with earlier uses of the same spelling. */
    const QvULString& ShareLocale(const QvULString& locale);
    const AllSMObjects& GetAllObjects() const noexcept { return m_allObjects; }

  private:
    friend class SMObjectBase;
    friend class SMProjectBuilder;

    /** The namespace of an id, and its second part; null when the id has fewer than two parts. */
    SMNamespace2* NamespaceOf(const I18NString& id, I18NString& name) const;
    void EnterNamespace(const QvULString& name, SMNamespace2* ns);
    void EraseNamespaceEntry(const QvULString& name);
    void WriteDataSources(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const;
    void WritePackages(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const;
    bool ReadRootNamespace(IOHelper& helper);
    bool readObjectType(IOHelper& helper, const I18NString& objectName, QvSmartPtr<IOArrayParam>& rows);
    template <class T>
    bool ReadOwned(IOHelper& helper, const I18NString& objectName, SMChildren<T>& owned);
    template <class Owned>
    bool WriteOwned(IOHelper& helper, const Owned& owned, const char* failure);
    template <class Owned>
    void RegisterOwned(const Owned& owned);

    I18NString m_name;
    std::list<I18NString> m_locales;
    QvULString m_defaultLocale;
    QvSmartPtr<SMNamespace2> m_rootNamespace;
    /** Every namespace of the model by name; borrows. */
    std::map<QvULString, SMNamespace2*> m_namespaceMap;
    /** Forgotten when a name leaves the map. */
    mutable std::map<I18NString, qv::TakenNumbers> m_takenNames;
    Packages m_packages;
    SMChildren<SMDatasource2> m_dataSources;
    SMChildren<SMParameterMap2> m_parameterMaps;
    SMChildren<SMSecurityView2> m_securityViews;
    /** Roots that were replaced: their entries may still stand in the map. */
    QvSmartVector<SMNamespace2> m_formerRoots;
    CLTask* m_activeExportTask = nullptr;
    std::set<QvULString>* m_setPIDID = nullptr;
    std::set<QvULString>* m_setID = nullptr;
    MapId2RemainingInfo* m_remainingInfoMap = nullptr;
    MapId2MiniObject* m_miniObjectMap = nullptr;
    bool m_beingDestroyed = false;
    AllSMObjects m_allObjects;
    /** Version of the record that keeps the list of locales. */
    long m_localesVersion = 0;
    /** Identity of the sections "dataSources" and "securityViews"; a version below 1 stands for none. */
    int m_dataSourcesVersion = 0;
    I18NString m_dataSourcesId;
    int m_securityViewsVersion = 0;
    I18NString m_securityViewsId;

    SMNameEpochs m_nameEpochs;
    std::vector<QvULString> m_localeSpellings;
    /** The keys under which objects were recorded; an object that moves under another name has several. */
    std::unordered_multimap<const SMObjectBase*, QvULString> m_recordedKeys;
    /** Tokens of the objects that are watched. */
    std::unordered_map<const SMObjectBase*, std::uint64_t> m_watched;
    std::uint64_t m_lastLifeToken = 0;
};

}  // namespace schema_002_000
