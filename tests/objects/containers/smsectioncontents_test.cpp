// Subjects, dimensions, calculations, filters and functions of a section, and the walks over all kinds.
#include <gmock/gmock.h>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/publication/smfunction2_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smfilter2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/query/smupdatesubject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Contents : public testing::Test {
  protected:
    Contents() { project->m_keepIdMap = true; }

    void Read(const std::string& content) {
        SMNamespaceBuilder builder(root, false);
        ParseInside(builder, content);
    }
    SMCalculation2* Calculate(const char* expression, const char* description = "d", int size = 8) {
        return root->AddOrUpdateCalculation("c", expression, SMEnum_usage::fact, SMEnum_datatype::decimal, 10, 2, size, true,
                                            SMEnum_aggregationRule::count, SMEnum_aggregationRule::median, description);
    }
    template <class T>
    T* Add(SMSectionType2* section, void (SMSectionType2::*add)(T*), T* child, const char* name, const char* id = "") {
        (section->*add)(child);
        child->AddName("en", name);
        child->SetId(id);
        return child;
    }
    SMQuerySubject2* Subject(const char* name, const char* id = "") {
        return Add(root, &SMSectionType2::AddQuerySubject, new SMQuerySubject2(root, project, root), name, id);
    }
    SMCalculation2* CalculationIn(SMSectionType2* section, const char* name) {
        return Add(section, &SMSectionType2::AddCalculation, new SMCalculation2(section, project), name);
    }
    /** Whether an operation sets the date of an object. */
    template <class Operation>
    static bool Stamps(SMObjectBase* object, Operation operation) {
        object->SetLastChangedDate(QvDate(false));
        operation();
        return object->GetLastChangedDate().IsSet();
    }

    ProjectPtr project = NewProject("root");
    SMNamespace2* root = project->GetRootNamespace();
    CapturedLog log;
};

using SectionContentsModel = Contents;
using SectionContentsBuilder = Contents;
using SectionContentsRows = Contents;

/** A section with one child of each kind, whose id is its tag; all but the last two hold a reference into the namespace A. */
class SectionWalks : public Contents {
  protected:
    SectionWalks() {
        for (const char* tag : {"querySubject", "updateSubject", "dimension"})
            Child(tag, "<definition><dbQuery><sources><dataSourceRef>[A].[x].[y]</dataSourceRef></sources></dbQuery></definition>");
        for (const char* tag : {"calculation", "filter", "relationship"}) Child(tag, "<expression>[A].[x].[y]</expression>");
        for (const char* tag : {"folder", "namespace"})
            Child(tag,
                  "<filter><property name='id'>inside " + std::string(tag) + "</property><expression>[A].[x].[y]</expression></filter>");
        Child("shortcut", "<refobj>[A].[x].[y]</refobj>");
        for (const char* tag : {"relationshipShortcut", "scopeRelationship"}) Child(tag, "<left><refobj>[A].[x].[y]</refobj></left>");
        Child("function", "<dataSourceRef>[A].[x].[y]</dataSourceRef>");
    }
    void Child(const std::string& tag, const std::string& content) {
        Read("<" + tag + "><property name='id'>" + tag + "</property>" + content + "</" + tag + ">");
    }
};

/** Notes the ids of those objects given to it that have one of the ids of a section's children. */
struct NotingKinds : MapId2MiniObject {
    void AddObject(const IOObject* object) override {
        const std::string id = object->GetId().c_str();
        if (SMEnum_xmltag::GetInstance()->_string2enum(id.c_str()) >= 0) ids.push_back(id);
    }
    std::vector<std::string> ids;
};

}  // namespace

// ---- find or create

TEST_F(SectionContentsModel, NamesAndRecordsASubjectWhenItMakesItAndDescribesItEachTime) {
    SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("s", "one");
    EXPECT_EQ(subject->parent, root);
    EXPECT_EQ(subject->GetName(), "s");
    EXPECT_EQ(subject->GetDescription(), "one");
    EXPECT_EQ(subject->GetDefinition(), nullptr);
    EXPECT_THAT(project->m_idMap, ElementsAre(testing::Pair("[root].[s]", subject)));
    project->m_idMap.clear();
    EXPECT_EQ(root->AddOrUpdateQuerySubject("s", "two"), subject);
    EXPECT_EQ(subject->GetDescription(), "two");
    EXPECT_THAT(project->m_idMap, IsEmpty());
    EXPECT_EQ(root->AddOrUpdateQuerySubject("S", "")->displayOrder, 1) << "finding takes no number";
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(subject, root->GetQuerySubjects()[1].get()));
}

TEST_F(SectionContentsModel, GivesASubjectADatabaseQueryOnTables) {
    const SMQuerySubject2* subject = root->AddOrUpdateDBQuerySubject("s", "d");
    SMDefinition2* definition = subject->GetDefinition();
    ASSERT_NE(definition, nullptr);
    EXPECT_EQ(definition->parent, subject);
    EXPECT_EQ(WriteElement(*definition),
              "<definition id=\"\"><dbQuery><sources></sources><tableType>table</tableType></dbQuery></definition>");
    definition->GetDBQuery()->tableType = SMEnum_tableType::view;
    EXPECT_EQ(root->AddOrUpdateDBQuerySubject("s", "e"), subject);
    EXPECT_EQ(subject->GetDefinition(), definition);
    EXPECT_EQ(definition->GetDBQuery()->tableType, SMEnum_tableType::view) << "a query that is there is left alone";
    EXPECT_EQ(subject->GetDescription(), "e");
}

TEST_F(SectionContentsModel, AddsTheOtherKindOfQueryBesideTheOneThatIsThere) {
    const SMDefinition2* first = root->AddOrUpdateMDLQuerySubject("m", "")->GetDefinition();
    const auto* model = first->GetModelQuery();
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(first->GetDBQuery(), nullptr);
    EXPECT_EQ(root->AddOrUpdateDBQuerySubject("m", "")->GetDefinition(), first);
    EXPECT_EQ(first->GetModelQuery(), model);
    EXPECT_NE(first->GetDBQuery(), nullptr);
    const SMDefinition2* second = root->AddOrUpdateDBQuerySubject("d", "")->GetDefinition();
    const auto* database = second->GetDBQuery();
    EXPECT_EQ(root->AddOrUpdateMDLQuerySubject("d", "")->GetDefinition(), second);
    EXPECT_EQ(second->GetDBQuery(), database);
    EXPECT_NE(second->GetModelQuery(), nullptr);
}

TEST_F(SectionContentsModel, GivesACalculationOneTextAsDescriptionAndScreenTip) {
    SMCalculation2* calculation = Calculate("a &lt; 1");
    EXPECT_EQ(calculation->GetDescription(), "d");
    EXPECT_EQ(calculation->GetScreenTip(), "d");
    EXPECT_EQ(calculation->GetExpression()->buffer.view(), "<expression>a &lt; 1</expression>");
    EXPECT_EQ(calculation->GetUsage(), SMEnum_usage::fact);
    EXPECT_EQ(calculation->GetEnumDatatype(), SMEnum_datatype::decimal);
    EXPECT_EQ(calculation->GetPrecision(), 10);
    EXPECT_EQ(calculation->GetScale(), 2);
    EXPECT_EQ(calculation->GetSize(), 8);
    EXPECT_TRUE(calculation->IsNullable());
    EXPECT_EQ(calculation->GetRegularAggregate(), SMEnum_aggregationRule::count);
    EXPECT_EQ(calculation->GetSemiAggregate(), SMEnum_aggregationRule::median);
    EXPECT_EQ(Calculate("a &lt; 1", "e"), calculation);
    EXPECT_EQ(calculation->GetDescription(), "e");
    EXPECT_EQ(calculation->GetScreenTip(), "e");
}

TEST_F(SectionContentsModel, StampsACalculationThatChangesAndRecordsItEachTime) {
    SMCalculation2* calculation = Calculate("x");
    EXPECT_TRUE(calculation->GetLastChangedDate().IsSet());
    EXPECT_FALSE(Stamps(calculation, [&] { Calculate("x"); }));
    EXPECT_TRUE(Stamps(calculation, [&] { Calculate("y"); }));
    EXPECT_TRUE(Stamps(calculation, [&] { Calculate("y", "d", 9); }));
    EXPECT_EQ(calculation->GetExpressionStr(), "y");
    project->m_idMap.clear();
    Calculate("y");
    EXPECT_THAT(project->m_idMap, ElementsAre(testing::Pair("[root].[c]", calculation)));
    EXPECT_EQ(root->GetCalculations().size(), 1u);
    EXPECT_EQ(root->TakeDisplayOrder(), 1);
}

TEST_F(SectionContentsModel, StampsACalculationForItsFirstExpressionAlsoWhenThatIsEmpty) {
    SMCalculation2* calculation = Calculate("x");
    calculation->SetExpression(nullptr);
    EXPECT_TRUE(Stamps(calculation, [&] { Calculate(""); }));
    EXPECT_NE(calculation->GetExpression(), nullptr);
    EXPECT_FALSE(Stamps(calculation, [&] { Calculate(""); }));
}

TEST_F(SectionContentsModel, MakesValidFiltersWithoutANumber) {
    SMFilter2* first = root->AddOrUpdateFilter("f", "x &gt; 1");
    SMFilter2* second = root->AddOrUpdateFilter("g", "y");
    EXPECT_EQ(first->displayOrder, 0);
    EXPECT_EQ(second->displayOrder, 0);
    EXPECT_EQ(root->TakeDisplayOrder(), 0);
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(first, second));
    EXPECT_EQ(first->GetStatus(), SMEnum_status::valid);
    EXPECT_EQ(first->GetExpression()->buffer.view(), "<expression>x &gt; 1</expression>");
    EXPECT_TRUE(first->GetLastChangedDate().IsSet());
    EXPECT_THAT(project->m_idMap, IsEmpty()) << "filters are not recorded";
}

TEST_F(SectionContentsModel, StampsAFilterOnlyForAnotherExpression) {
    SMFilter2* filter = root->AddOrUpdateFilter("f", "x");
    filter->SetStatus(SMEnum_status::invalid);
    EXPECT_FALSE(Stamps(filter, [&] { EXPECT_EQ(root->AddOrUpdateFilter("f", "x"), filter); }));
    EXPECT_TRUE(Stamps(filter, [&] { root->AddOrUpdateFilter("f", "y"); }));
    EXPECT_EQ(filter->GetExpression()->buffer.view(), "<expression>y</expression>");
    EXPECT_EQ(filter->GetStatus(), SMEnum_status::invalid) << "valid when made, and left alone when found";
}

TEST_F(SectionContentsModel, MakesDimensionsOnAModelQuery) {
    SMDimension2* dimension = root->AddOrUpdateDimension("d", "one");
    EXPECT_EQ(dimension->GetName(), "d");
    EXPECT_EQ(dimension->GetDescription(), "one");
    EXPECT_EQ(dimension->GetType(), SMEnum_dimensionType::regular);
    ASSERT_NE(dimension->GetDefinition(), nullptr);
    EXPECT_EQ(WriteElement(*dimension->GetDefinition()), "<definition id=\"\"><modelQuery></modelQuery></definition>");
    EXPECT_THAT(project->m_idMap, ElementsAre(testing::Pair("[root].[d]", dimension)));
    project->m_idMap.clear();
    EXPECT_EQ(root->AddOrUpdateMeasureDimension("d", "two"), dimension);
    EXPECT_EQ(dimension->GetType(), SMEnum_dimensionType::measure);
    EXPECT_EQ(dimension->GetDescription(), "two");
    EXPECT_THAT(project->m_idMap, ElementsAre(testing::Pair("[root].[d]", dimension))) << "recorded each time";
    EXPECT_EQ(root->AddOrUpdateDimension("e", "")->displayOrder, 1);
}

// ---- look-ups

TEST_F(SectionContentsModel, FindsTheFirstSubjectOfAnIdOrAName) {
    SMQuerySubject2* first = Subject("a", "1");
    Subject("a", "1");
    SMQuerySubject2* third = Subject("b", "2");
    EXPECT_EQ(root->GetQuerySubjectById("1"), first);
    EXPECT_EQ(root->GetQuerySubjectById("2"), third);
    EXPECT_EQ(root->GetQuerySubjectById("3"), nullptr);
    EXPECT_EQ(root->GetQuerySubjectByName("a"), first);
    EXPECT_EQ(root->GetQuerySubjectByName("B"), nullptr);
    SMDimension2* dimension = root->AddOrUpdateDimension("d", "");
    EXPECT_EQ(root->GetDimensionByName("d"), dimension);
    EXPECT_EQ(root->GetDimensionByName("a"), nullptr) << "subjects are no dimensions";
}

TEST_F(SectionContentsModel, PrefersSubjectsOverDimensionsOverShortcuts) {
    EXPECT_EQ(root->GetRefObjectByName("n"), nullptr);
    SMNamedObject2* shortcut = Add(root, &SMSectionType2::AddShortcut, new SMShortcut2(root, project), "n");
    EXPECT_EQ(root->GetRefObjectByName("n"), shortcut);
    SMNamedObject2* dimension = root->AddOrUpdateDimension("n", "");
    EXPECT_EQ(root->GetRefObjectByName("n"), dimension);
    SMNamedObject2* update = Add(root, &SMSectionType2::AddUpdateSubject, new SMUpdateSubject2(root, project, root), "n");
    EXPECT_EQ(root->GetRefObjectByName("n"), update);
    SMNamedObject2* subject = root->AddOrUpdateQuerySubject("n", "");
    EXPECT_EQ(root->GetRefObjectByName("n"), subject);
}

TEST_F(SectionContentsModel, FindsACalculationByNameDepthFirstInFoldersBeforeNamespaces) {
    SMFolder2* inner = root->AddOrUpdateFolder("f")->AddOrUpdateFolder("g");
    SMCalculation2* inNamespace = CalculationIn(root->AddOrUpdateNamespace("n", ""), "c");
    EXPECT_EQ(root->GetCalculationBySMID("c"), inNamespace);
    SMCalculation2* inSecondFolder = CalculationIn(root->AddOrUpdateFolder("h"), "c");
    EXPECT_EQ(root->GetCalculationBySMID("c"), inSecondFolder);
    SMCalculation2* deep = CalculationIn(inner, "c");
    EXPECT_EQ(root->GetCalculationBySMID("c"), deep) << "the first folder to its bottom before the second";
    SMCalculation2* direct = CalculationIn(root, "c");
    EXPECT_EQ(root->GetCalculationBySMID("c"), direct);
    EXPECT_EQ(root->GetCalculationBySMID("[root].[c]"), nullptr) << "a name is asked for, no id";
}

TEST_F(SectionContentsModel, CollectsItsOwnSubjectsOfAWarehouseReference) {
    SMQuerySubject2* first = Subject("a", "1");
    SMQuerySubject2* second = Subject("b", "2");
    Subject("c", "3");
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    SMQuerySubject2* inside = folder->AddOrUpdateQuerySubject("d", "");
    for (SMQuerySubject2* subject : {first, second, inside}) subject->SetQvRef("w");
    SMSectionType2::SubjectCollection found;
    root->GetSMQuerySubjectsByQvRefID(found, "");
    root->GetSMQuerySubjectsByQvRefID(found, "other");
    EXPECT_EQ(found.size(), 0u);
    root->GetSMQuerySubjectsByQvRefID(found, "w");
    EXPECT_THAT(std::vector<SMQuerySubject2*>(found.begin(), found.end()), ElementsAre(first, second));
}

TEST_F(SectionContentsModel, RefusesASubjectWhoseIdIsCollectedAlreadyButNotTheEmptyId) {
    for (const char* name : {"a", "b"}) Subject(name)->SetQvRef("empty");
    SMSectionType2::SubjectCollection found;
    root->GetSMQuerySubjectsByQvRefID(found, "empty");
    EXPECT_EQ(found.size(), 2u);
    for (const char* name : {"c", "d"}) Subject(name, "same")->SetQvRef("w");
    SMSectionType2::SubjectCollection doubled;
    try {
        root->GetSMQuerySubjectsByQvRefID(doubled, "w");
        FAIL();
    } catch (const TklAssertError& error) {
        EXPECT_EQ(error.text(), "TKL_ASSERT(m_namemap.find(m_g(pItem)) == m_namemap.end());");
    }
}

// ---- deletes

TEST_F(SectionContentsModel, LeavesADeletedSubjectInTheDisplayListWhereToldTo) {
    Subject("a", "1");
    SMQuerySubject2* second = Subject("b", "2");
    root->DeleteQuerySubjectById("1");
    EXPECT_EQ(root->GetQuerySubjects().size(), 1u);
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(second));
    root->DeleteQuerySubjectWithId("2");
    EXPECT_THAT(root->GetQuerySubjects(), IsEmpty());
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(second));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SectionContentsModel, LogsADeleteOfNobodyInOneOfTwoForms) {
    root->DeleteQuerySubjectById("x");
    root->DeleteDimensionById("x");
    EXPECT_THAT(log.Events(), IsEmpty());
    root->DeleteQuerySubjectWithId("x");
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{1, "smsectiontype2", "SMSectionType2", "DeleteQuerySubjectWithId",
                                                      "Failed to find QuerySubject with id x to delete", ""}));
}

TEST_F(SectionContentsModel, DeletesADimensionFromBothLists) {
    root->AddOrUpdateDimension("a", "")->SetId("1");
    SMDimension2* stays = root->AddOrUpdateDimension("b", "");
    root->DeleteDimensionById("1");
    EXPECT_EQ(root->GetDimensions().size(), 1u);
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(stays));
}

// ---- builder

TEST_F(SectionContentsBuilder, NumbersEachKindAndReadsTheStatusOfFour) {
    Read(
        "<filter status='invalid'></filter><querySubject status='invalid'></querySubject><updateSubject status='invalid'></updateSubject>"
        "<dimension status='needsReevaluation'></dimension><calculation status='valid'></calculation><function></function>"
        "<querySubject></querySubject>");
    EXPECT_EQ(root->GetFilters().at(0)->GetStatus(), SMEnum_status::invalid);
    EXPECT_EQ(root->GetQuerySubjects().at(0)->GetStatus(), SMEnum_status::invalid);
    EXPECT_EQ(root->GetUpdateSubjects().at(0)->GetStatus(), SMEnum_status::Enum(-1)) << "has no attribute";
    EXPECT_EQ(root->GetDimensions().at(0)->GetStatus(), SMEnum_status::needsReevaluation);
    EXPECT_EQ(root->GetCalculations().at(0)->GetStatus(), SMEnum_status::valid);
    EXPECT_EQ(root->GetQuerySubjects().at(1)->GetStatus(), SMEnum_status::Enum(-1));
    int number = 0;
    for (const SMObjectBase* child :
         {static_cast<SMObjectBase*>(root->GetFilters()[0]), static_cast<SMObjectBase*>(root->GetQuerySubjects()[0]),
          static_cast<SMObjectBase*>(root->GetUpdateSubjects()[0]), static_cast<SMObjectBase*>(root->GetDimensions()[0]),
          static_cast<SMObjectBase*>(root->GetCalculations()[0]), static_cast<SMObjectBase*>(root->GetFunctions().at(0)),
          static_cast<SMObjectBase*>(root->GetQuerySubjects()[1])}) {
        EXPECT_EQ(child->displayOrder, number++);
        EXPECT_EQ(child->parent, root);
    }
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SectionContentsBuilder, AddsAChildAtItsStart) {
    EXPECT_ANY_THROW(Read("<querySubject><name locale='en'>s</name>"));
    EXPECT_EQ(root->GetQuerySubjects().size(), 1u);
}

// ---- rows

TEST_F(SectionContentsRows, AskForTheKindsInTheirOrder) {
    RecordingContext context;
    EXPECT_TRUE(root->read(context));
    std::vector<std::string> kinds;
    for (const std::string& name : context.Names())
        if (name.rfind("AT_ReadSMObject ", 0) == 0) kinds.push_back(name.substr(16));
    EXPECT_THAT(kinds, ElementsAre("generic_section_type", "generic_query_subject_type", "updateSubject", "calculation",
                                   "scopeRelationship", "shortcut", "filter", "relationship", "relationshipShortcut", "function"));
    EXPECT_THAT(context.Attributes(2), ElementsAre("object S \"\"")) << "subjects and dimensions alone are told apart by it";
    EXPECT_THAT(context.Attributes(3), IsEmpty());
}

TEST_F(SectionContentsRows, EndWithTheKindThatFails) {
    for (std::size_t action = 1; action <= 11; ++action) {
        RecordingContext context;
        context.FailAt(action);
        EXPECT_FALSE(root->read(context)) << action;
        EXPECT_EQ(context.Actions().size(), action);
    }
}

TEST_F(SectionContentsRows, TellSubjectsAndDimensionsApart) {
    const auto row = [](const char* kind, const char* id, int number) {
        Row filled;
        for (const char* key : {"name", "description", "screenTip", "qvdbref", "qvqs_type"}) filled.Text(key, "");
        return filled.Text("object", kind).Text("object_type", "modelQuery").Text("id", id).Number("display_order", number);
    };
    RecordingContext context;
    context.answers = {{}, {}, {row("dimension", "d", 2), row("querySubject", "s", 1), row("updateSubject", "u", 0)}};
    EXPECT_TRUE(root->read(context));
    ASSERT_EQ(root->GetDimensions().size(), 1u);
    ASSERT_EQ(root->GetQuerySubjects().size(), 1u);
    EXPECT_EQ(root->GetDimensions()[0]->GetId(), "d");
    EXPECT_EQ(root->GetQuerySubjects()[0]->GetId(), "s");
    EXPECT_THAT(root->GetUpdateSubjects(), IsEmpty()) << "has a table of its own";
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(root->GetQuerySubjects()[0].get(), root->GetDimensions()[0].get()));
}

// ---- walks

TEST_F(SectionWalks, ListChildrenKindByKind) {
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    root->getChildObjects(children);
    std::vector<std::string> ids;
    for (const auto& child : children) ids.push_back(child->GetId().c_str());
    EXPECT_THAT(ids, ElementsAre("scopeRelationship", "dimension", "calculation", "filter", "relationshipShortcut", "querySubject",
                                 "updateSubject", "relationship", "folder", "function", "namespace", "shortcut"));
}

TEST_F(SectionWalks, EnterChildrenIntoTheMapsOfASaveInAnotherOrder) {
    root->SetId("the root");
    NotingKinds noted;
    project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, &noted, nullptr);
    EXPECT_THAT(noted.ids, ElementsAre("folder", "namespace", "dimension", "querySubject", "updateSubject", "calculation",
                                       "scopeRelationship", "shortcut", "filter", "relationship", "relationshipShortcut", "function"));
    std::set<QvULString> pairs;
    project->InitAndAddSetPIDIDAndMiniObject(&pairs, nullptr, nullptr, nullptr);
    for (const char* pair : {"folder+inside folder", "namespace+inside namespace", "the root+function"})
        EXPECT_EQ(pairs.count(pair), 1u) << pair;
}

TEST_F(SectionWalks, RenameInAllKindsButFunctions) {
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    root->RenameObjects(list);
    EXPECT_EQ(root->GetFunctions()[0]->GetDataSourceRef(), "[A].[x].[y]");
    root->GetFunctions()[0]->SetDataSourceRef("");
    const std::string text = WriteElement(*root);
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("[A]")));
    std::size_t references = 0;
    for (std::size_t place = 0; (place = text.find("[B].[x].[y]", place)) != std::string::npos; ++place) ++references;
    EXPECT_EQ(references, 11u);
}

TEST_F(SectionWalks, GiveNewIdsToAllKinds) {
    std::map<QvULString, QvULString> ids;
    root->RegenerateIds(ids);
    ASSERT_EQ(root->GetDisplayOrderItems().size(), 12u);
    for (const SMObjectBase* child : root->GetDisplayOrderItems())
        EXPECT_EQ(child->GetId().length(), 36) << static_cast<int>(child->GetSMType());
    EXPECT_EQ(root->GetFolders()[0]->GetFilters()[0]->GetId().length(), 36);
    EXPECT_EQ(root->GetNamespaces()[0]->GetFilters()[0]->GetId().length(), 36);
}

TEST_F(SectionWalks, TakeAllKindsButNamespacesToAnotherProject) {
    const ProjectPtr other = NewProject();
    root->SetSMProject(other);
    for (const SMObjectBase* child : root->GetDisplayOrderItems()) {
        const bool stays = child->GetSMType() == SMEnum_xmltag::Enum::namespace_;
        EXPECT_EQ(child->GetSMProject(), stays ? project.get() : other.get()) << static_cast<int>(child->GetSMType());
    }
    EXPECT_EQ(root->GetQuerySubjects()[0]->GetDefinition()->GetDBQuery()->GetSMProject(), other.get());
    root->SetSMProject(project);
}
