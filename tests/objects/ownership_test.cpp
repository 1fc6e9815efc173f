// Operations that take an object out of a model: the rest can be used on, and so can the object, for whoever kept it.
#include <gmock/gmock.h>

#include "core/repository/memory/memorybackend.h"
#include "core/repository/smrepository.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smhierarchy2_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "objects/dimensional/smmeasurefolder2_002_000.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/links/smscoperelationship2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

std::string Named(const std::string& tag, const std::string& name, const std::string& content = "") {
    return "<" + tag + "><name locale=\"en\">" + name + "</name><property name=\"id\" type=\"hidden\">" + name + "</property>" + content +
           "<property name=\"qvref\" type=\"hidden\">" + name + "</property></" + tag + ">";
}

/** One of each kind that an operation takes out, with its name as id and link. */
ProjectPtr Model() {
    const std::string item = Named("queryItem", "item", "<promptInfo/><roles><role><name locale=\"en\">_businessKey</name></role></roles>");
    const std::string subject =
        Named("querySubject", "subject",
              "<definition id=\"definition\"><dbQuery><filters><filterDefinition><displayName>filter</displayName></filterDefinition>"
              "</filters></dbQuery></definition>" +
                  item + Named("queryItemFolder", "item folder", Named("queryItem", "inner item")));
    const std::string dimension =
        Named("dimension", "dimension",
              "<definition id=\"definition of the dimension\"><modelQuery/></definition>" + Named("measure", "measure") +
                  Named("measureFolder", "measure folder", Named("measure", "inner measure") + Named("measureFolder", "inner folder")) +
                  Named("hierarchy", "hierarchy",
                        Named("queryItem", "own item") + Named("queryItemFolder", "own folder") +
                            Named("level", "level", Named("queryItem", "level item"))));
    Document document{.id = "project", .name = "model", .defaultLocale = "en", .locales = {"en"}};
    document.root = NamespaceElement("root", Named("namespace", "namespace", Named("filter", "filter of the namespace")) + subject +
                                                 dimension + Named("shortcut", "shortcut", "<refobj>[root].[subject]</refobj>") +
                                                 "<scopeRelationship><name>scopes</name><property name=\"id\" type=\"hidden\">scopes"
                                                 "</property><scope><measureScope/></scope></scopeRelationship>");
    document.securityViews = Named("securityView", "view");
    document.packages = Named("package", "package", "<adminAccess/>");
    return ParseProject(document.Text());
}

SMNamespace2& Root(SMProject2& project) {
    return *project.GetRootNamespace();
}
SMQuerySubject2& Subject(SMProject2& project) {
    return *Root(project).GetQuerySubjects()[0];
}
SMQueryItem2& Item(SMProject2& project) {
    return *Subject(project).GetQueryItems()[0];
}
SMDimension2& Dimension(SMProject2& project) {
    return *Root(project).GetDimensions()[0];
}
SMHierarchy2& Hierarchy(SMProject2& project) {
    return *Dimension(project).GetHierarchies()[0];
}
SMLevel2& Level(SMProject2& project) {
    return *Hierarchy(project).GetLevels()[0];
}
SMMeasureFolder2& MeasureFolder(SMProject2& project) {
    return *Dimension(project).GetMeasureFolders()[0];
}
SMDefinition2& Definition(SMProject2& project) {
    return *Subject(project).GetDefinition();
}

/** What an operation took out, shared. */
using Taken = QvSmartPtr<SMObjectBase>;

struct Operation {
    const char* name;
    Taken (*run)(SMProject2& project);
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

/** Shares an object while it is taken out. */
template <class T, class TakeOut>
Taken Take(T& object, TakeOut takeOut) {
    const Taken taken(static_cast<SMObjectBase*>(&object));
    takeOut();
    return taken;
}

// clang-format off
const Operation OPERATIONS[] = {
    {"DimensionMeasure", [](SMProject2& p) { return Take(*Dimension(p).GetMeasures()[0], [&] { Dimension(p).DeleteMeasureById("measure"); }); }},
    {"DimensionMeasureFolder", [](SMProject2& p) { return Take(MeasureFolder(p), [&] { Dimension(p).DeleteMeasureFolderById("measure folder"); }); }},
    {"FolderMeasure", [](SMProject2& p) { return Take(*MeasureFolder(p).GetMeasures()[0], [&] { MeasureFolder(p).DeleteMeasureById("inner measure"); }); }},
    {"FolderMeasureFolder", [](SMProject2& p) { return Take(*MeasureFolder(p).GetMeasureFolders()[0], [&] { MeasureFolder(p).DeleteMeasureFolderById("inner folder"); }); }},
    {"LevelItem", [](SMProject2& p) { return Take(*Level(p).GetLevelItems()[0], [&] { Level(p).DeleteQueryItemById("level item"); }); }},
    {"HierarchyItem", [](SMProject2& p) { return Take(*Hierarchy(p).GetQueryItem(), [&] { Hierarchy(p).SetQueryItem(new SMQueryItem2(&Hierarchy(p), &p)); }); }},
    {"HierarchyItemFolder", [](SMProject2& p) { return Take(*Hierarchy(p).GetQueryItemFolder(), [&] { Hierarchy(p).SetQueryItemFolder(new SMQueryItemFolder2(&Hierarchy(p), &p)); }); }},
    {"Level", [](SMProject2& p) { return Take(Level(p), [&] { Hierarchy(p).DeleteLevelByQvRefId("level"); }); }},
    {"LevelWithAnEmptyLink", [](SMProject2& p) { Level(p).SetQvRef(""); return Take(Level(p), [&] { Hierarchy(p).DeleteLevelByQvRefId(""); }); }},
    {"SubjectWithId", [](SMProject2& p) { return Take(Subject(p), [&] { Root(p).DeleteQuerySubjectWithId("subject"); }); }},
    {"SubjectById", [](SMProject2& p) { return Take(Subject(p), [&] { Root(p).DeleteQuerySubjectById("subject"); }); }},
    {"SubjectWithARepeatedId", [](SMProject2& p) { Dimension(p).SetId("subject"); return Take(Subject(p), [&] { Root(p).DeleteQuerySubjectById("subject"); }); }},
    {"SubjectWithAnEmptyId", [](SMProject2& p) { Subject(p).SetId(""); return Take(Subject(p), [&] { Root(p).DeleteQuerySubjectById(""); }); }},
    {"EntryWithoutATypedObject", [](SMProject2& p) { return Take(Dimension(p), [&] { Root(p).DeleteQuerySubjectById("dimension"); }); }},
    {"DimensionById", [](SMProject2& p) { return Take(Dimension(p), [&] { Root(p).DeleteDimensionById("dimension"); }); }},
    {"ItemById", [](SMProject2& p) { return Take(Item(p), [&] { Subject(p).DeleteQueryItemById("item"); }); }},
    {"ShortcutById", [](SMProject2& p) { return Take(*Root(p).GetShortcuts()[0], [&] { Root(p).DeleteShortcutById("shortcut"); }); }},
    {"ScopeRelationshipById", [](SMProject2& p) { return Take(*Root(p).GetScopeRelationships()[0], [&] { Root(p).DeleteScopeRelationshipById("scopes"); }); }},
    {"ScopeRelationship", [](SMProject2& p) { return Take(*Root(p).GetScopeRelationships()[0], [&] { Root(p).DeleteScopeRelationship(Root(p).GetScopeRelationships()[0]); }); }},
    {"NamespaceById", [](SMProject2& p) { return Take(*Root(p).GetNamespaces()[0], [&] { Root(p).DeleteNamespaceById("namespace"); }); }},
    {"NamespaceWithName", [](SMProject2& p) { return Take(*Root(p).GetNamespaces()[0], [&] { p.DeleteNamespaceWithName("namespace"); }); }},
    {"RootNamespace", [](SMProject2& p) { return Take(Root(p), [&] { p.SetRootNamespace(new SMNamespace2(&p, &p)); }); }},
    {"Definition", [](SMProject2& p) { return Take(Definition(p), [&] { Subject(p).SetDefinition(new SMDefinition2(&Subject(p), &p)); }); }},
    {"DBQuery", [](SMProject2& p) { return Take(*Definition(p).GetDBQuery(), [&] { Definition(p).SetDBQuery(nullptr); }); }},
    {"ModelQuery", [](SMProject2& p) { return Take(*Dimension(p).GetDefinition()->GetModelQuery(), [&] { Dimension(p).GetDefinition()->SetModelQuery(nullptr); }); }},
    {"FilterDefinition", [](SMProject2& p) { return Take(*Definition(p).GetDBQuery()->filterDefinitions[0], [&] { Subject(p).RemoveFilterDefinition("filter"); }); }},
    {"Prompt", [](SMProject2& p) { return Take(*Item(p).GetPromptInfo(), [&] { Item(p).SetPromptInfo(nullptr); }); }},
    {"Role", [](SMProject2& p) { return Take(*Item(p).GetRoles()[0], [&] { Item(p).RemoveRoleOfType(SMEnum_role::_businessKey); }); }},
    {"Package", [](SMProject2& p) { return Take(*p.GetPackages()[0], [&] { p.DeletePackageWithId("package"); }); }},
    {"SecurityView", [](SMProject2& p) { return Take(*p.GetSecurityViews()[0], [&] { p.DeleteSecurityViewWithSMID("[].[securityViews].[view]"); }); }},
};
// clang-format on

template <class... Containers>
void Sort(SMObjectBase& object) {
    const auto sort = [](auto* container) {
        if (container) container->SortDisplayOrder();
    };
    (sort(dynamic_cast<Containers*>(&object)), ...);
}

void SortAll(SMObjectBase& object) {
    Sort<SMSectionType2, SMQuerySubject2, SMQueryItemFolder2, SMDimension2, SMHierarchy2, SMLevel2>(object);
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    object.getChildObjects(children);
    for (const auto& child : children) SortAll(static_cast<SMObjectBase&>(*child));
}

class EveryRemoval : public testing::TestWithParam<Operation> {};

}  // namespace

TEST_P(EveryRemoval, LeavesAModelThatIsWalkedSortedWrittenAndSaved) {
    const CapturedLog log;
    const ProjectPtr project = Model();
    GetParam().run(*project);
    std::size_t objects = 0;
    SMForEachObject(*project, [&](const SMObjectBase& object, int) { objects += !SMDescribeObject(object).kind.empty(); });
    EXPECT_GT(objects, 2u);
    SortAll(*project);
    const std::string once = WriteProject(*project);
    EXPECT_TRUE(SameXml(once, WriteProject(*ParseProject(once))));

    SMRepository repository(qv::MakeMemoryBackend("memory"), SMRepository::createIfAbsent);
    EXPECT_TRUE(SMPutModel(*project, *repository.NewProject()).IsDone());
    std::map<QvULString, QvULString> ids;
    project->RegenerateIds(ids);
    EXPECT_FALSE(WriteProject(*project).empty());
}

TEST_P(EveryRemoval, TakesNoLinkToADeadObjectAlong) {
    const CapturedLog log;
    ProjectPtr project = Model();
    const Taken taken = GetParam().run(*project);
    ASSERT_TRUE(taken);
    EXPECT_FALSE(SMDescribeObject(*taken).kind.empty());
    project = nullptr;
    EXPECT_EQ(taken->GetSMProject(), nullptr);
    EXPECT_EQ(taken->GetParentSMObj(), nullptr);
    EXPECT_FALSE(SMDescribeObject(*taken).kind.empty());
    EXPECT_FALSE(WriteElement(*taken).empty());
}

INSTANTIATE_TEST_SUITE_P(Model, EveryRemoval, testing::ValuesIn(OPERATIONS), [](const auto& instance) { return instance.param.name; });

TEST(Ownership, LeavesTheMapOfIdsWithTheObject) {
    const CapturedLog log;
    const ProjectPtr project = Model();
    project->m_keepIdMap = true;
    QvSmartPtr<SMQuerySubject2> subject = Root(*project).AddOrUpdateDBQuerySubject("another", "link");
    subject->SetId("another");
    EXPECT_EQ(project->m_idMap.count("[root].[another]"), 1u);
    Root(*project).DeleteQuerySubjectById("another");
    EXPECT_EQ(project->m_idMap.count("[root].[another]"), 1u) << "for as long as somebody keeps it";
    subject = nullptr;
    EXPECT_EQ(project->m_idMap.count("[root].[another]"), 0u);
}

TEST(Ownership, TakesANamespaceOutOfTheMapOfTheProjectThatItLeaves) {
    const ProjectPtr project = Model(), other = NewProject();
    const QvSmartPtr<SMNamespace2> ns = Root(*project).GetNamespaces()[0];
    ASSERT_EQ(project->FindNamespaceByName("namespace"), ns);
    static_cast<SMObjectBase*>(ns.get())->SetSMProject(other);
    EXPECT_EQ(project->FindNamespaceByName("namespace"), nullptr);
}
