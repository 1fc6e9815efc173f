// The kinds that a project owns beside its root namespace.
#include <gmock/gmock.h>

#include <stdexcept>

#include "core/qvutils/persist/multifilehelper.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr auto DATABASE_ONLY = SMEnum_queryProcessing::databaseOnly;

const std::string EVERYONE =
    "<decisionRole><securityObject type=\"group\"><displayPath>Everyone [Directory &gt; Lumora]</displayPath>"
    "<cmSearchPath>DIRID(&quot;::Everyone&quot;)</cmSearchPath></securityObject></decisionRole>";

SMPackage2* NewPackage(SMProject2& project, const char* id) {
    auto* package = new SMPackage2(&project, &project);
    package->SetId(id);
    project.AppendPackage(package);
    return package;
}

template <class Items>
std::vector<std::string> NamesOf(const Items& items) {
    std::vector<std::string> names;
    for (const auto& item : items) names.push_back(item->GetName().c_str());
    return names;
}

template <class Items>
std::vector<std::string> IdsOf(const Items& items) {
    std::vector<std::string> ids;
    for (const auto& item : items) ids.push_back(item->GetId().c_str());
    return ids;
}

/** A project with one of each kind, whose names and ids tell the kind. */
ProjectPtr FullProject() {
    ProjectPtr project = NewProject("root");
    project->SetId("project");
    project->GetRootNamespace()->SetId("root");
    project->AddLocale("en");
    project->AddDataSourceOrReturnExisting("source", "", "", DATABASE_ONLY)->SetId("source");
    SMSecurityView2* view = project->AddSecurityViewOrReturnExisting("view");
    view->SetId("view");
    project->AddPackageOrReturnExisting("package", "", view)->SetId("package");
    project->AddParameterMapOrReturnExisting("map", false)->SetId("map");
    return project;
}

/** Notes the order in which objects are given to it. */
struct Noting : MapId2MiniObject {
    void AddObject(const IOObject* object) override { ids.push_back(object->GetId().c_str()); }
    std::vector<std::string> ids;
};

}  // namespace

// ---- data sources

TEST(SMProject2DataSources, AreTheSameWhenAllFourAgree) {
    const ProjectPtr project = NewProject();
    SMDatasource2* source = project->AddDataSourceOrReturnExisting("a", "b", "c", DATABASE_ONLY);
    EXPECT_EQ(Str(source->GetName()), "a");
    EXPECT_EQ(Str(source->GetCmDataSource() + source->GetCatalog() + source->GetCube()), "abc");
    EXPECT_EQ(project->AddDataSourceOrReturnExisting("a", "b", "c", DATABASE_ONLY), source);
    EXPECT_NE(project->AddDataSourceOrReturnExisting("a", "b", "c", SMEnum_queryProcessing::limitedLocal), source);
    EXPECT_NE(project->AddDataSourceOrReturnExisting("a", "b", "", DATABASE_ONLY), source);
    EXPECT_NE(project->AddDataSourceOrReturnExisting("a", "", "c", DATABASE_ONLY), source);
    EXPECT_NE(project->AddDataSourceOrReturnExisting("", "b", "c", DATABASE_ONLY), source);
    EXPECT_EQ(project->GetDataSources().size(), 5u);
}

TEST(SMProject2DataSources, AreMappedByTheFirstOfAName) {
    const ProjectPtr project = NewProject();
    SMDatasource2* first = project->AddDataSourceOrReturnExisting("a", "1", "", DATABASE_ONLY);
    project->AddDataSourceOrReturnExisting("a", "2", "", DATABASE_ONLY);
    QvSmartMap<QvULString, SMDatasource2> map;
    project->CreateDatasourcesNameMap(map);
    ASSERT_EQ(map.size(), 1u);
    EXPECT_EQ(map["a"].get(), first);
}

TEST(SMProject2DataSources, LoseConnectionAndSchemaUnlessNamedAsTheProject) {
    const ProjectPtr project = NewProject();
    project->SetName("own");
    for (const char* name : {"own", "other"}) {
        SMDatasource2* source = project->AddDataSourceOrReturnExisting(name, "catalog", "", DATABASE_ONLY);
        source->SetSchema("schema");
    }
    project->ClearDSSchema();
    EXPECT_EQ(Str(project->GetDataSources()[0]->GetCmDataSource() + project->GetDataSources()[0]->GetSchema()), "ownschema");
    EXPECT_EQ(Str(project->GetDataSources()[1]->GetCmDataSource() + project->GetDataSources()[1]->GetSchema()), "");
    EXPECT_EQ(Str(project->GetDataSources()[1]->GetCatalog()), "catalog");
}

// ---- security views

TEST(SMProject2SecurityViews, LetEveryoneInWhenNew) {
    const ProjectPtr project = NewProject();
    SMSecurityView2* view = project->AddSecurityViewOrReturnExisting("v");
    EXPECT_EQ(std::string(view->GetAccess()->buffer.view()), "<access>" + EVERYONE + "</access>");
    EXPECT_EQ(Str(view->GetAccess()->tagName), "access");
    EXPECT_EQ(project->AddSecurityViewOrReturnExisting("v"), view);
    EXPECT_EQ(project->GetSecurityViews().size(), 1u);
}

TEST(SMProject2SecurityViews, KeepTheirAccessWhenTheyExist) {
    const ProjectPtr project = NewProject();
    project->AddSecurityViewOrReturnExisting("v")->SetAccess(nullptr);
    EXPECT_EQ(project->AddSecurityViewOrReturnExisting("v")->GetAccess(), nullptr);
}

TEST(SMProject2SecurityViews, AreFoundByTheThirdPartOfAnObjectId) {
    const ProjectPtr project = NewProject();
    SMSecurityView2* view = project->AddSecurityViewOrReturnExisting("x");
    EXPECT_EQ(project->GetSecurityViewBySMID(view->GetSMID(false)), view);
    EXPECT_EQ(project->GetSecurityViewBySMID("[securityViews].[x]"), nullptr);
    EXPECT_EQ(project->GetSecurityViewBySMID("[].[securityViews].[y]"), nullptr);
    EXPECT_EQ(project->GetSecurityViewBySMID(""), nullptr);
    EXPECT_EQ(project->GetSecurityViewByName("y"), nullptr);
}

TEST(SMProject2SecurityViews, MoveToTheEndInPlaceOfTheFirstOfTheirName) {
    const ProjectPtr project = NewProject();
    for (const char* name : {"a", "b"}) project->AddSecurityViewOrReturnExisting(name);
    const QvSmartPtr<SMSecurityView2> other = new SMSecurityView2(project, project);
    other->AddName("en", "a");
    project->DeleteAndAppendSecurityView(other);
    EXPECT_THAT(NamesOf(project->GetSecurityViews()), ElementsAre("b", "a"));
    EXPECT_EQ(project->GetSecurityViewByName("a"), other.get());
    project->DeleteAndAppendSecurityView(project->GetSecurityViewByName("b"));
    EXPECT_THAT(NamesOf(project->GetSecurityViews()), ElementsAre("a", "b"));
    const QvSmartPtr<SMSecurityView2> third = new SMSecurityView2(project, project);
    third->AddName("en", "c");
    project->DeleteAndAppendSecurityView(third);
    EXPECT_THAT(NamesOf(project->GetSecurityViews()), ElementsAre("a", "b", "c"));
}

TEST(SMProject2SecurityViews, AreDeletedByObjectId) {
    const ProjectPtr project = NewProject();
    for (const char* name : {"a", "b"}) project->AddSecurityViewOrReturnExisting(name);
    project->DeleteSecurityViewWithSMID("a");
    EXPECT_EQ(project->GetSecurityViews().size(), 2u);
    project->DeleteSecurityViewWithSMID("[].[securityViews].[a]");
    EXPECT_THAT(NamesOf(project->GetSecurityViews()), ElementsAre("b"));
}

TEST(SMProject2SecurityViews, MayOutliveTheProject) {
    ProjectPtr project = NewProject();
    const QvSmartPtr<SMSecurityView2> kept = project->AddSecurityViewOrReturnExisting("kept");
    const QvSmartPtr<SMSecurityView2> deleted = project->AddSecurityViewOrReturnExisting("deleted");
    project->DeleteSecurityViewWithSMID(deleted->GetSMID(false));
    project = nullptr;
    EXPECT_EQ(kept->GetParentSMObj(), nullptr);
    EXPECT_EQ(deleted->GetParentSMObj(), nullptr);
    EXPECT_EQ(deleted->GetSMProject(), nullptr);
}

// ---- packages

TEST(SMProject2Packages, ShowTheViewAndLetEveryoneAdministrateWhenNew) {
    const ProjectPtr project = NewProject();
    SMSecurityView2* view = project->AddSecurityViewOrReturnExisting("v");
    SMPackage2* package = project->AddPackageOrReturnExisting("p", "d", view);
    EXPECT_EQ(Str(package->GetName()), "p");
    EXPECT_EQ(Str(package->GetDescription()), "d");
    EXPECT_EQ(Str(package->GetLocales().front()), "en");
    EXPECT_EQ(Str(package->GetViewrefs().front()), "[].[securityViews].[v]");
    EXPECT_EQ(std::string(package->GetAdminAccess()->buffer.view()), "<adminAccess>" + EVERYONE + "</adminAccess>");
    EXPECT_EQ(project->AddPackageOrReturnExisting("p", "other", view), package);
    EXPECT_EQ(Str(package->GetDescription()), "d");
    EXPECT_TRUE(project->AddPackageOrReturnExisting("q", "", view)->GetDescriptions().empty());
}

TEST(SMProject2Packages, AreDeletedById) {
    const ProjectPtr project = NewProject();
    for (const char* id : {"1", "", "2"}) NewPackage(*project, id);
    project->DeletePackageWithId("3");
    project->DeletePackageWithId("");
    EXPECT_THAT(IdsOf(project->GetPackages()), ElementsAre("1", "", "2"));
    project->DeletePackageWithId("2");
    project->DeletePackageWithId("1");
    EXPECT_THAT(IdsOf(project->GetPackages()), ElementsAre(""));
}

TEST(SMProject2Packages, MoveToTheEnd) {
    const ProjectPtr project = NewProject();
    SMPackage2* first = NewPackage(*project, "1");
    SMPackage2* unnamed = NewPackage(*project, "");
    NewPackage(*project, "2");
    project->DeleteAndAppendPackage(first);
    EXPECT_THAT(IdsOf(project->GetPackages()), ElementsAre("", "2", "1"));
    project->DeleteAndAppendPackage(unnamed);
    EXPECT_THAT(IdsOf(project->GetPackages()), ElementsAre("2", "1", ""));
    const QvSmartPtr<SMPackage2> other = new SMPackage2(project, project);
    other->SetId("2");
    project->DeleteAndAppendPackage(other);
    EXPECT_THAT(IdsOf(project->GetPackages()), ElementsAre("1", "", "2"));
    EXPECT_EQ(project->GetPackages()[2].get(), other.get());
}

TEST(SMProject2Packages, AreFoundByTheIdsThatAWriteGaveThem) {
    const ProjectPtr project = NewProject("root");
    SMPackage2* package = NewPackage(*project, "old");
    NewPackage(*project, "");
    EXPECT_EQ(project->GetPackages().Find("old"), package);
    RecordingContext context;
    EXPECT_TRUE(project->write(context));
    SMPackage2* second = project->GetPackages()[1];
    EXPECT_FALSE(second->GetId().empty());
    EXPECT_EQ(project->GetPackages().Find(second->GetId()), second);
}

// ---- walks

TEST(SMProject2Contents, AreItsChildrenButForThePackages) {
    const ProjectPtr project = FullProject();
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    project->getChildObjects(children);
    EXPECT_THAT(IdsOf(children), ElementsAre("source", "map", "view", "root"));
}

TEST(SMProject2Contents, AreRegisteredKindByKind) {
    const ProjectPtr project = FullProject();
    Noting objects;
    project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, &objects, nullptr);
    EXPECT_THAT(objects.ids, ElementsAre("project", "root", "source", "package", "map", "view"));
}

TEST(SMProject2Contents, GetNewIdsWhereTheyAreDoubled) {
    const ProjectPtr project = FullProject();
    SMPackage2* package = project->GetPackages()[0];
    package->SetId("source");
    EXPECT_EQ(project->GetPackages().Find("source"), package);
    std::set<QvULString> pairs, ids;
    Noting objects;
    project->InitAndAddSetPIDIDAndMiniObject(&pairs, &ids, &objects, nullptr);
    EXPECT_THAT(objects.ids, ElementsAre("project", "root", "source", "source", "map", "view"));
    EXPECT_NE(Str(package->GetId()), "source");
    EXPECT_EQ(ids.size(), 6u);
    EXPECT_EQ(project->GetPackages().Find(package->GetId()), package);
}

TEST(SMProject2Contents, GetNewIdsAndFollowTheMap) {
    const ProjectPtr project = FullProject();
    project->GetDataSources()[0]->SetQvRef("from");
    project->GetPackages()[0]->SetQvRef("from");
    project->GetSecurityViews()[0]->SetQvRef("from");
    EXPECT_NE(project->GetPackages().Find("package"), nullptr);
    std::map<QvULString, QvULString> map{{"from", "to"}};
    project->RegenerateIds(map);
    EXPECT_EQ(project->GetPackages().Find("package"), nullptr);
    EXPECT_EQ(project->GetPackages().Find(project->GetPackages()[0]->GetId()), project->GetPackages()[0].get());
    EXPECT_EQ(Str(project->GetDataSources()[0]->GetQvRef()), "to");
    EXPECT_EQ(Str(project->GetPackages()[0]->GetQvRef()), "to");
    EXPECT_EQ(Str(project->GetSecurityViews()[0]->GetQvRef()), "to");
    EXPECT_NE(Str(project->GetSecurityViews()[0]->GetId()), "view");
    EXPECT_NE(Str(project->GetParameterMaps()[0]->GetId()), "map");
    EXPECT_NE(Str(project->GetId()), "project");
}

TEST(SMProject2Contents, KeepTheirReferencesInARename) {
    const ProjectPtr project = FullProject();
    SMSecurityView2* view = project->GetSecurityViews()[0];
    view->InsertRefID(SMEnum_includeRule::include, "[root].[a]", SMSecurityDefinitionSet2::refobj);
    project->GetPackages()[0]->AddViewref("[root].[a]");
    SMRenameList2 list;
    list.AddRename("root", "a", "", "root", "b", "");
    project->RenameObjects(list);
    EXPECT_EQ(Str(view->GetDefinition()[0].refs.front()), "[root].[a]");
    EXPECT_EQ(Str(project->GetPackages()[0]->GetViewrefs().back()), "[root].[a]");
}

// ---- document

TEST(SMProject2Sections, HoldEachKindInItsOrder) {
    CapturedLog log;
    Document document;
    document.defaultLocale = "en";
    document.dataSourcesAttributes = " id=\"ds\" version=\"2\"";
    const std::string tail = "<property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>";
    document.dataSources = "<dataSource><lastChanged></lastChanged>" + tail + "<schema>s</schema></dataSource>";
    document.parameterMaps = "<parameterMap hidden=\"true\"><name>m</name>" + tail + "</parameterMap>";
    document.securityViews = "<securityView isRoleBased=\"true\">" + tail + "</securityView><securityView>" + tail + "</securityView>";
    document.packages = "<package isRoleBased=\"true\"><lastChanged></lastChanged>" + tail +
                        "<maxVersions>0</maxVersions><locales></locales><definition></definition><adminAccess></adminAccess></package>";
    const ProjectPtr project = ParseProject(document.Text());
    EXPECT_TRUE(SameXml(document.Text(), WriteProject(*project)));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMProject2Sections, WriteTheirIdentityOnlyWhole) {
    for (const char* attributes : {" id=\"ds\" version=\"0\"", " version=\"1\"", " id=\"ds\" version=\"1.0\"", " id=\"ds\""}) {
        Document document;
        document.dataSourcesAttributes = attributes;
        EXPECT_THAT(WriteProject(*ParseProject(document.Text())), HasSubstr("<dataSources></dataSources>")) << attributes;
    }
}

TEST(SMProject2Sections, DoNotWriteTheIdentityOfTheViews) {
    std::string text = Document().Text();
    text.insert(text.find("<securityViews") + std::string("<securityViews").size(), " id=\"sv\" version=\"3\"");
    EXPECT_EQ(WriteProject(*ParseProject(text)), WriteProject(*ParseProject(Document().Text())));
}

TEST(SMProject2Sections, LeaveConnectionsOutOfSeveralFilesOfAModelThatIsNotStored) {
    const ProjectPtr project = FullProject();
    MultiFileHelper files;
    const std::string connection = "<cmDataSource>source</cmDataSource>";
    EXPECT_THAT(WriteProject(*project), HasSubstr(connection));
    EXPECT_THAT(WriteProject(*project, &files), testing::Not(HasSubstr(connection)));
    EXPECT_TRUE(project->m_writeDataSourceSchema);
    project->SetVersionNo(1);
    EXPECT_THAT(WriteProject(*project, &files), HasSubstr(connection));
    project->m_writeDataSourceSchema = false;
    EXPECT_THAT(WriteProject(*project), testing::Not(HasSubstr(connection)));
    EXPECT_TRUE(project->m_writeDataSourceSchema);
}

TEST(SMProject2Sections, TellConnectionsAgainAfterAWriteThatRaised) {
    struct Raising : QvSAX2PrintHandler {
        using QvSAX2PrintHandler::QvSAX2PrintHandler;
        void startElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes&) override {
            if (localName == "dataSource") throw std::runtime_error("full");
        }
    };
    const ProjectPtr project = FullProject();
    I18NString text;
    QvStringWriter writer(text);
    Raising handler("UTF-8", false, writer, true);
    project->m_writeDataSourceSchema = false;
    EXPECT_THROW(project->WriteXMLDocument(nullptr, &handler, writer), std::runtime_error);
    EXPECT_TRUE(project->m_writeDataSourceSchema);
}

TEST(SMProject2Sections, RefuseAPackageFileWithoutAName) {
    CapturedLog log;
    Document document;
    document.packages = "<packagefile id=\"i\" name=\"project\"></packagefile>";
    const ProjectPtr project = ParseProject(document.Text());
    EXPECT_TRUE(project->GetPackages().empty());
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smproject2", "SMProjectBuilder", "realStartElement",
                                                      "No filename attribute in packagefile tag.", ""}));
}

TEST(SMProject2Sections, TakeAPackageWhoseFileIsMissing) {
    CapturedLog log;
    Document document;
    document.packages =
        "<packagefile filename=\"missing.qva\" filepath=\"nowhere\"></packagefile><packagefile filename=\"\"></packagefile>";
    EXPECT_EQ(ParseProject(document.Text())->GetPackages().size(), 2u);
    EXPECT_THAT(log.Messages(), ElementsAre("1 Error reading SM model from XML", "1 Error reading SM model from XML"));
}

TEST(SMProject2Sections, TakeTwoPackagesOfOneId) {
    Document document;
    const std::string package = "<package><property name=\"id\">i</property></package>";
    document.packages = package + package;
    EXPECT_EQ(ParseProject(document.Text())->GetPackages().size(), 2u);
}

// ---- repository

TEST(SMProject2Rows, WritesViewsBeforeMapsAndReadsThemAfter) {
    const ProjectPtr project = FullProject();
    StoreContext store;
    ASSERT_TRUE(project->write(store));
    std::vector<std::string> tables;
    for (const std::string& name : store.Names())
        if (name.rfind("AT_InsertObject ", 0) == 0) tables.push_back(name.substr(16));
    EXPECT_THAT(tables,
                ElementsAre("SM_PROJECT", "SM_SECTION_TYPE", "SM_DATASOURCE", "SM_PACKAGE", "SM_SECURITY_VIEW", "SM_PARAMETER_MAP"));

    const std::size_t writes = store.Actions().size();
    const ProjectPtr other = new SMProject2();
    ASSERT_TRUE(other->read(store));
    std::vector<std::string> kinds;
    for (std::size_t at = writes; at < store.Actions().size(); ++at) {
        const std::string name = store.Actions()[at].name;
        for (const char* kind : {"dataSource", "package", "parameterMap", "securityView"})
            if (name == std::string("AT_ReadSMObject ") + kind) kinds.push_back(kind);
    }
    EXPECT_THAT(kinds, ElementsAre("dataSource", "package", "parameterMap", "securityView"));
    EXPECT_EQ(WriteProject(*other), WriteProject(*project));
}

TEST(SMProject2Rows, TellsWhichKindCouldNotBeWritten) {
    StoreContext whole;
    ASSERT_TRUE(FullProject()->write(whole));
    std::set<std::string> messages;
    for (std::size_t at = 1; at <= whole.Actions().size(); ++at) {
        CapturedLog log;
        RecordingContext context;
        context.FailAt(at);
        EXPECT_FALSE(FullProject()->write(context)) << at;
        EXPECT_EQ(context.Actions().size(), at) << "goes on after a failure";
        for (const LoggedEvent& event : log.Events()) {
            if (event.className != "SMProject2") continue;
            EXPECT_EQ(event, (LoggedEvent{1, "smproject2", "SMProject2", "write_next", event.message, ""}));
            messages.insert(event.message);
        }
    }
    EXPECT_THAT(messages,
                ElementsAre("Failed to write a Datasource child of smproject.", "Failed to write a Package child of smproject.",
                            "Failed to write a ParameterMap child of smproject.", "Failed to write a SecurityViews child of smproject."));
}

// ---- the database layer

namespace {

SMNamespace2* Named(const ProjectPtr& project, const char* name) {
    return project->FindNamespaceByName(name);
}

}  // namespace

TEST(SMProject2DatabaseLayer, IsMadeWithAllThatIsMissing) {
    const ProjectPtr project = NewProject("root");
    project->DropDatabaseLayerContentExceptMViews();
    ASSERT_NE(Named(project, "Materialized Views"), nullptr);
    EXPECT_EQ(Named(project, "Target")->GetParentSMObj(), project->GetRootNamespace());
    EXPECT_EQ(Named(project, "Database Layer")->GetParentSMObj(), Named(project, "Target"));
    EXPECT_EQ(Named(project, "Materialized Views")->GetParentSMObj(), Named(project, "Database Layer"));
}

TEST(SMProject2DatabaseLayer, NeedsARoot) {
    const ProjectPtr project = NewProject();
    project->DropDatabaseLayerContentExceptMViews();
    EXPECT_TRUE(project->GetNamespaceMap().empty());
}

TEST(SMProject2DatabaseLayer, KeepsIdentityAndMaterializedViewsOnly) {
    const ProjectPtr project = NewProject("root");
    SMNamespace2* target = project->GetRootNamespace()->AddOrUpdateNamespace("Target", "");
    SMNamespace2* old = target->AddOrUpdateNamespace("Database Layer", "");
    old->AddOrUpdateNamespace("other", "");
    const QvSmartPtr<SMNamespace2> views = old->AddOrUpdateNamespace("Materialized Views", "");
    SMNamespace2* below = views->AddOrUpdateNamespace("below", "");
    old->SetId("layer");
    old->hostSequence = 7;
    old->SetLastChangedDate(QvDate("2001-02-03T04:05:06"));
    project->DropDatabaseLayerContentExceptMViews();

    SMNamespace2* layer = Named(project, "Database Layer");
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(Str(layer->GetId()), "layer");
    EXPECT_EQ(layer->hostSequence, 7);
    EXPECT_EQ(Str(layer->GetLastChangedDate().ToString()), "2001-02-03T04:05:06");
    EXPECT_THAT(NamesOf(layer->GetNamespaces()), ElementsAre("Materialized Views"));
    EXPECT_EQ(layer->GetNamespaces()[0].get(), views.get());
    EXPECT_EQ(views->GetParentSMObj(), layer);
    EXPECT_EQ(below->GetParentSMObj(), views.get());
    EXPECT_EQ(Named(project, "below"), below);
    EXPECT_EQ(Named(project, "other"), nullptr);
    EXPECT_EQ(Named(project, "Target"), target);
}
