// What goes from a query subject to all that it holds.
#include <gmock/gmock.h>

#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smdeterminant2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Subject {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMQuerySubject2> subject = new SMQuerySubject2(project->GetRootNamespace(), project, project->GetRootNamespace());

    explicit Subject(const std::string& elements) {
        SMQuerySubjectBuilder builder(subject);
        ParseInside(builder, elements);
    }
};

}  // namespace

TEST(SMQuerySubject2Walks, CarriesItsWalksToAllBelow) {
    const std::string expression = "<expression>[A].[x].[y] 'old'</expression>", item = "<queryItem>" + expression + "</queryItem>";
    const std::string filter = "<refobj>[A].[x].[y]</refobj>" + expression;
    const Subject fixture("<definition><modelQuery><filterDefinition>" + filter +
                          "</filterDefinition></modelQuery></definition><determinants><determinant><key><refobj>[A].[x].[y]</refobj></key>"
                          "</determinant></determinants><previewFilters><previewFilter>" +
                          filter + "</previewFilter></previewFilters><securityFilters><securityFilterDefinition>" + filter +
                          "</securityFilterDefinition></securityFilters>" + item + "<queryItemFolder>" + item + "</queryItemFolder>");
    const SMQuerySubject2& subject = *fixture.subject;
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.subject->RenameObjects(list);
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.subject->RegenerateIds(ids);
    const SMQueryItem2* nested = subject.GetQueryItemFolders()[0]->GetItems()[0];
    for (const SMQueryItem2* each : {static_cast<const SMQueryItem2*>(subject.GetQueryItems()[0]), nested}) {
        EXPECT_EQ(each->GetExpressionStr(), "[B].[x].[y] 'new'");
        EXPECT_EQ(each->GetId().length(), 36);
    }
    const auto& ofQuery = *subject.GetDefinition()->GetModelQuery()->filterDefinitions[0];
    const auto& preview = subject.GetFilters().Previews()[0];
    const auto& security = subject.GetFilters().Securities()[0];
    for (const I18NString& reference : {ofQuery.refobj, preview.refobj, security.refobj}) EXPECT_EQ(reference, "[B].[x].[y]");
    for (const SMXMLObject2* kept : {ofQuery.expression.get(), preview.expression.get(), security.expression.get()})
        EXPECT_EQ(kept->buffer.view(), "<expression>[B].[x].[y] 'new'</expression>");
    const SMDeterminant2& determinant = *subject.GetDeterminants()[0];
    EXPECT_THAT(determinant.GetKeyRefObjs(), testing::ElementsAre("[B].[x].[y]"));
    for (const SMObjectBase* each :
         std::initializer_list<const SMObjectBase*>{&subject, subject.GetDefinition(), &determinant, subject.GetQueryItemFolders()[0]})
        EXPECT_EQ(each->GetId().length(), 36) << static_cast<int>(each->GetSMType());
}

TEST(SMQuerySubject2Walks, TakesAllBelowToAnotherProject) {
    const Subject fixture(
        "<definition><dbQuery><filterDefinition></filterDefinition></dbQuery></definition><determinant></determinant>"
        "<queryItem></queryItem><queryItemFolder></queryItemFolder>");
    const SMQuerySubject2& subject = *fixture.subject;
    const ProjectPtr other = NewProject();
    fixture.subject->SetSMProject(other);
    const SMDefinition2* definition = subject.GetDefinition();
    for (const SMObjectBase* each : std::initializer_list<const SMObjectBase*>{
             &subject, definition, definition->GetDBQuery(), definition->GetDBQuery()->filterDefinitions[0], subject.GetDeterminants()[0],
             subject.GetQueryItems()[0], subject.GetQueryItemFolders()[0]})
        EXPECT_EQ(each->GetSMProject(), other.get()) << static_cast<int>(each->GetSMType());
}

TEST(SMQuerySubject2Walks, EntersAllBelowIntoTheSetsOfASave) {
    const Subject fixture(
        "<property name=\"id\">s</property><definition id=\"d\"><modelQuery></modelQuery></definition>"
        "<determinant id=\"k\"></determinant><queryItem><property name=\"id\">i</property></queryItem>"
        "<queryItemFolder><property name=\"id\">f</property><queryItem><property "
        "name=\"id\">j</property></queryItem><queryItemFolder><property name=\"id\">g</property></queryItemFolder></queryItemFolder>");
    fixture.project->GetRootNamespace()->AddQuerySubject(fixture.subject);
    std::set<QvULString> pairs;
    fixture.project->InitAndAddSetPIDIDAndMiniObject(&pairs, nullptr, nullptr, nullptr);
    for (const char* pair : {"s+d", "s+k", "s+i", "s+f", "f+j", "f+g"}) EXPECT_EQ(pairs.count(pair), 1u) << pair;
}

TEST(SMQuerySubject2Walks, SortsWhatItShowsAtTheEndOfItsElementAndOfItsRows) {
    const Subject fixture(
        "<queryItemFolder><property name=\"id\">f</property></queryItemFolder>"
        "<queryItem><property name=\"id\">i</property></queryItem>");
    const SMQuerySubject2& subject = *fixture.subject;
    subject.GetQueryItemFolders()[0]->displayOrder = 9;
    SMQuerySubjectBuilder builder(fixture.subject);
    builder.startElement("", "querySubject", "querySubject", QvXMLAttributesImpl());
    builder.endElement("", "querySubject", "querySubject");
    EXPECT_EQ(subject.GetDisplayOrderItems()[0], subject.GetQueryItems()[0]);
    subject.GetQueryItems()[0]->displayOrder = 10;
    StoreContext store;
    fixture.subject->SetId("s");
    fixture.subject->SetDefinition(new SMDefinition2(fixture.subject, fixture.project));
    ASSERT_TRUE(fixture.subject->write(store));
    const Subject other("");
    other.subject->constructFromIOParameter(*store.RowOf("SM_QUERY_SUBJECT", "s"));
    ASSERT_TRUE(other.subject->read(store));
    ASSERT_EQ(other.subject->GetDisplayOrderItems().size(), 2u);
    EXPECT_EQ(other.subject->GetDisplayOrderItems()[0]->GetId(), "f");
}
