#include "objects/query/smfilter2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject();
    QvSmartPtr<SMFilter2> filter = new SMFilter2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMFilterBuilder builder(filter);
        ParseInside(builder, elements);
    }
};

}  // namespace

TEST(SMFilter2Model, HasItsKind) {
    const Fixture fixture;
    EXPECT_EQ(fixture.filter->GetModelType(), 35);
    EXPECT_EQ(static_cast<int>(fixture.filter->GetSMType()), 56);
}

TEST(SMFilter2Xml, LeavesOutStatusAndExpressionWhenUnset) {
    const Fixture fixture;
    fixture.filter->AddName("en", "sold");
    EXPECT_EQ(WriteElement(*fixture.filter),
              "<filter><name locale=\"en\">sold</name><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
              "<property name=\"version\" type=\"hidden\">0</property></filter>");
}

TEST(SMFilter2Xml, WritesTheExpressionAsItStands) {
    const Fixture fixture("<expression a=\"1\"><refobj>[x]</refobj> &gt; 0</expression>");
    fixture.filter->SetStatus(SMEnum_status::valid);
    EXPECT_THAT(WriteElement(*fixture.filter),
                testing::AllOf(testing::StartsWith("<filter status=\"valid\">"),
                               testing::EndsWith("<expression a=\"1\"><refobj>[x]</refobj> &gt; 0</expression></filter>")));
}

TEST(SMFilter2Builder, ReadsStatusAsAnElementToo) {
    const CapturedLog log;
    const Fixture fixture("<name locale=\"en\">sold</name><status>invalid</status><property name=\"qvref\">w</property>");
    EXPECT_EQ(fixture.filter->GetStatus(), SMEnum_status::invalid);
    EXPECT_EQ(fixture.filter->GetQvRef(), "w");
    EXPECT_EQ(fixture.filter->GetName(), "sold");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMFilter2Builder, LogsWhatItDoesNotKnow) {
    const CapturedLog log;
    const Fixture fixture("<usage>fact</usage>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'usage'", "4 Unknown tag 'usage'"));
}

TEST(SMFilter2Rows, HaveNoDescriptionsAndOnlySetColumns) {
    const Fixture fixture;
    fixture.filter->SetId("f");
    fixture.filter->AddName("en", "sold");
    fixture.filter->AddName("fr", "vendu");
    fixture.filter->AddDescription("en", "lost");
    fixture.filter->SetLastChangedDate(QvDate(false));
    fixture.filter->SetProperty("custom", "", "lost");
    RecordingContext context;
    ASSERT_TRUE(fixture.filter->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_FILTER", "EndObject"));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre("FILTER_ID S \"f\"", "FILTER_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                                     "LASTCHANGED D null", "NAME S \"sold\"", "DISPLAY_ORDER L 0"));
}

TEST(SMFilter2Rows, BringStatusAndExpressionBack) {
    const CapturedLog log;
    const Fixture fixture;
    fixture.filter->SetId("f");
    fixture.filter->SetStatus(SMEnum_status::needsReevaluation);
    fixture.filter->ChangeExpression("<refobj>[x]</refobj> &gt; 0");
    fixture.filter->displayOrder = 4;
    StoreContext store;
    ASSERT_TRUE(fixture.filter->write(store));
    EXPECT_THAT(store.Attributes(0),
                testing::IsSupersetOf({"STATUS S \"needsReevaluation\"", "EXPRESSION S \"<refobj>[x]</refobj> &gt; 0\""}));
    const QvSmartPtr<SMFilter2> read = new SMFilter2(fixture.project, fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_FILTER", "f"));
    ASSERT_TRUE(read->read(store));
    EXPECT_EQ(read->GetStatus(), SMEnum_status::needsReevaluation);
    EXPECT_EQ(read->GetExpression()->buffer.view(), "<expression><refobj>[x]</refobj> &gt; 0</expression>");
    EXPECT_EQ(read->displayOrder, 4);
    EXPECT_THAT(store.Faults(), testing::IsEmpty());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMFilter2Rows, TakeAWholeExpressionAsItStands) {
    const Fixture fixture;
    const Row row = Row()
                        .Text("id", "f")
                        .Text("name", "n")
                        .Text("description", "")
                        .Text("screenTip", "")
                        .Text("expression", "<expression a='1'>x</expression>");
    fixture.filter->constructFromIOParameter(*row);
    EXPECT_EQ(fixture.filter->GetExpression()->buffer.view(), "<expression a='1'>x</expression>");
}

TEST(SMFilter2Model, TellsWhetherTheExpressionChanged) {
    const Fixture fixture;
    EXPECT_TRUE(fixture.filter->ChangeExpression("a"));
    EXPECT_FALSE(fixture.filter->ChangeExpression("a"));
    EXPECT_TRUE(fixture.filter->ChangeExpression("b"));
}

TEST(SMFilter2Model, RenamesAndRegeneratesInItsExpression) {
    const Fixture fixture("<expression>'old' = [A].[x].[y]</expression>");
    fixture.filter->SetQvRef("old");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.filter->RenameObjects(list);
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.filter->RegenerateIds(ids);
    EXPECT_EQ(fixture.filter->GetExpression()->buffer.view(), "<expression>'new' = [B].[x].[y]</expression>");
    EXPECT_EQ(fixture.filter->GetQvRef(), "new");
    EXPECT_NE(fixture.filter->GetId(), "");
}
