#include "objects/links/smrelationship2_002_000.h"

#include <gmock/gmock.h>

#include "core/qvutils/persist/iohelper.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Cardinality = SMEnum_cardinality;
constexpr auto UNSET = Cardinality::Enum(-1);

struct Fixture {
    ProjectPtr project = NewProject("ns");
    QvSmartPtr<SMRelationship2> relationship = new SMRelationship2(project->GetRootNamespace(), project);

    explicit Fixture(const std::string& elements = "") {
        SMRelationshipBuilder builder(relationship);
        ParseInside(builder, elements);
    }
    /** An object that has every field that a document shows. */
    static Fixture Full() {
        return Fixture(
            "<name>joins</name><property name=\"id\">i</property><property name=\"qvref\">w</property><property "
            "name=\"z\">v</property><sql a=\"1\">x &lt; y</sql><expression>[ns].[a].[k] = [ns].[b].[k]</expression>"
            "<left><refobj>[ns].[a]</refobj><mincard>zero</mincard><maxcard>one</maxcard></left>"
            "<right><refobj>[ns].[b]</refobj><mincard>one</mincard><maxcard>many</maxcard></right>");
    }
    std::string Diffable() const {
        QvULString text;
        relationship->AssignDiffableString(text);
        return Str(text);
    }
};

}  // namespace

TEST(SMRelationship2Xml, HasNameEndsAndTheirPartsAlways) {
    const Fixture fixture;
    EXPECT_EQ(WriteElement(*fixture.relationship),
              "<relationship><name></name><property name=\"id\" type=\"hidden\"></property><property name=\"version\" "
              "type=\"hidden\">0</property><left><refobj></refobj><mincard></mincard><maxcard></maxcard></left>"
              "<right><refobj></refobj><mincard></mincard><maxcard></maxcard></right></relationship>");
}

TEST(SMRelationship2Xml, HasTheExpressionBeforeTheSqlAndBothBeforeTheEnds) {
    const Fixture fixture = Fixture::Full();
    fixture.relationship->SetStatus(SMEnum_status::invalid);
    EXPECT_EQ(WriteElement(*fixture.relationship),
              "<relationship status=\"invalid\"><name>joins</name><property name=\"id\" type=\"hidden\">i</property><property "
              "name=\"version\" type=\"hidden\">0</property><property name=\"z\">v</property><property name=\"qvref\" "
              "type=\"hidden\">w</property><expression>[ns].[a].[k] = [ns].[b].[k]</expression><sql a=\"1\">x &lt; y</sql>"
              "<left><refobj>[ns].[a]</refobj><mincard>zero</mincard><maxcard>one</maxcard></left>"
              "<right><refobj>[ns].[b]</refobj><mincard>one</mincard><maxcard>many</maxcard></right></relationship>");
}

TEST(SMRelationship2Xml, HasNoDate) {
    const Fixture fixture;
    fixture.relationship->SetLastChangedDate(QvDate("2020-01-02T03:04:05"));
    EXPECT_THAT(WriteElement(*fixture.relationship), testing::Not(testing::HasSubstr("lastChanged")));
}

TEST(SMRelationship2Builder, KnowsAllThatItWrites) {
    const CapturedLog log;
    const Fixture fixture = Fixture::Full();
    EXPECT_EQ(fixture.relationship->GetExpressionStr(), "[ns].[a].[k] = [ns].[b].[k]");
    EXPECT_EQ(fixture.relationship->sql->buffer.view(), "<sql a=\"1\">x &lt; y</sql>");
    EXPECT_EQ(fixture.relationship->GetStatus(), -1);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMRelationship2Builder, LeavesTheStatusOfTheElementAside) {
    const ProjectPtr project = NewProject("ns");
    SMSectionTypeBuilder builder(project->GetRootNamespace());
    ParseInside(builder, "<relationship status=\"valid\"><name>joins</name></relationship>");
    EXPECT_EQ(project->GetRootNamespace()->GetRelationships()[0]->GetStatus(), -1) << "as the format has it";
}

TEST(SMRelationship2Builder, LogsInTheWordsOfItsBase) {
    const CapturedLog log;
    const Fixture fixture("<scope></scope>");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag 'scope'", "4 Unknown tag 'scope'"));
}

TEST(SMRelationship2Model, StartsBare) {
    const Fixture fixture;
    EXPECT_EQ(fixture.relationship->GetSMType(), 145);
    EXPECT_EQ(fixture.relationship->GetStatus(), -1);
    EXPECT_EQ(fixture.relationship->GetExpression(), nullptr);
    EXPECT_EQ(fixture.relationship->GetExpressionStr(), "");
    EXPECT_EQ(fixture.relationship->sql, nullptr);
}

TEST(SMRelationship2Model, TakesAnExpressionAsAnObjectOrAsItsInside) {
    const Fixture fixture;
    fixture.relationship->SetLastChangedDate(QvDate(false));
    fixture.relationship->SetExpression(I18NString("a &lt; b"));
    EXPECT_EQ(fixture.relationship->GetExpression()->buffer.view(), "<expression>a &lt; b</expression>");
    fixture.relationship->SetExpression(I18NString("c"));
    EXPECT_EQ(fixture.relationship->GetExpression()->buffer.view(), "<expression>c</expression>");
    const QvSmartPtr<SMXMLObject2> kept = new SMXMLObject2("expression", "d", true);
    fixture.relationship->SetExpression(kept);
    EXPECT_EQ(fixture.relationship->GetExpression(), kept.get());
    EXPECT_EQ(fixture.relationship->GetExpressionStr(), "d");
    EXPECT_FALSE(fixture.relationship->GetLastChangedDate().IsSet()) << "no form stamps";
}

TEST(SMRelationship2Model, ComparesTenFieldsWithBarsBetween) {
    EXPECT_EQ(Fixture().Diffable(), "||0|||||||");
    const Fixture fixture = Fixture::Full();
    fixture.relationship->SetStatus(SMEnum_status::valid);
    fixture.relationship->displayOrder = 7;
    EXPECT_EQ(fixture.Diffable(), "valid|joins|7|w|[ns].[a]|zero|one|[ns].[b]|one|many");
}

TEST(SMRelationship2Model, LeavesItsWarehouseLinkWhenIdsAreRegenerated) {
    const Fixture fixture("<property name=\"qvref\">old</property><expression>'old'</expression><sql>'old'</sql>");
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.relationship->RegenerateIds(ids);
    EXPECT_EQ(fixture.relationship->GetQvRefID(), "old") << "as the format has it";
    EXPECT_EQ(fixture.relationship->GetExpressionStr(), "'new'");
    EXPECT_EQ(fixture.relationship->sql->buffer.view(), "<sql>'old'</sql>") << "as the format has it";
    EXPECT_EQ(fixture.relationship->GetId().length(), 36);
}

TEST(SMRelationship2Model, RenamesEndsAndExpressionButNotTheSql) {
    const Fixture fixture(
        "<expression>[A].[a].[k]</expression><sql>[A].[a].[k]</sql><left><refobj>[A].[a].[h]</refobj></left>"
        "<right><refobj>[A].[b]</refobj></right>");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.relationship->RenameObjects(list);
    EXPECT_EQ(fixture.relationship->GetLeftRefobjSMID(), "[B].[a].[h]");
    EXPECT_EQ(fixture.relationship->GetRightRefobjSMID(), "[A].[b]") << "as the format has it";
    EXPECT_EQ(fixture.relationship->GetExpressionStr(), "[B].[a].[k]");
    EXPECT_EQ(fixture.relationship->sql->buffer.view(), "<sql>[A].[a].[k]</sql>") << "as the format has it";
}

TEST(SMRelationship2Model, RegistersItsSqlIfItHasOne) {
    const Fixture fixture = Fixture::Full();
    SMNamespace2* root = fixture.project->GetRootNamespace();
    root->AddRelationship(fixture.relationship);
    root->AddOrUpdateRelationship("bare", nullptr, UNSET, UNSET, nullptr, UNSET, UNSET, "x")->SetId("bare");
    MapId2RemainingInfo records;
    fixture.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    ASSERT_NE(records.Find("i/sql"), nullptr);
    EXPECT_EQ(records.Find("i/sql")->value, "<sql a=\"1\">x &lt; y</sql>");
    EXPECT_EQ(records.Find("bare/sql"), nullptr);
    EXPECT_EQ(records.Find("i/expression"), nullptr) << "that has a column";
}

TEST(SMRelationship2Rows, HaveTheExpressionAlwaysAndTheStatusIfSet) {
    const Fixture fixture;
    fixture.relationship->SetId("r");
    fixture.relationship->SetLastChangedDate(QvDate(false));
    fixture.relationship->SetProperty("custom", "", "lost");
    RecordingContext context;
    ASSERT_TRUE(fixture.relationship->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_RELATIONSHIP", "EndObject"));
    EXPECT_THAT(context.Attributes(0),
                ElementsAre("RELATIONSHIP_ID S \"r\"", "REL_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                            "LASTCHANGED D null", "NAME S \"\"", "DISPLAY_ORDER L 0", "WAREHOUSE_OBJECT_ID S \"\"", "EXPRESSION S \"\""));
    fixture.relationship->SetStatus(SMEnum_status::valid);
    RecordingContext again;
    ASSERT_TRUE(fixture.relationship->write(again));
    EXPECT_THAT(again.Attributes(0), testing::Contains("STATUS S \"valid\""));
}

TEST(SMRelationship2Rows, BringAllBackTheSqlThroughRemainingInfo) {
    const CapturedLog log;
    const Fixture fixture = Fixture::Full();
    fixture.relationship->SetStatus(SMEnum_status::needsReevaluation);
    fixture.relationship->displayOrder = 4;
    StoreContext store;
    ASSERT_TRUE(fixture.relationship->write(store));
    EXPECT_THAT(store.Names(),
                ElementsAre("AT_InsertObject SM_RELATIONSHIP", "AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject", "EndObject"));
    const QvSmartPtr<SMRelationship2> read = new SMRelationship2(fixture.project->GetRootNamespace(), fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_RELATIONSHIP", "i"));
    EXPECT_EQ(read->sql, nullptr);
    ASSERT_TRUE(read->read(store));
    EXPECT_EQ(read->GetStatus(), SMEnum_status::needsReevaluation);
    EXPECT_EQ(read->GetExpressionStr(), "[ns].[a].[k] = [ns].[b].[k]");
    EXPECT_EQ(read->sql->buffer.view(), "<sql a=\"1\">x &lt; y</sql>");
    EXPECT_EQ(read->displayOrder, 4);
    EXPECT_EQ(read->GetRight().maxCard, Cardinality::many);
    EXPECT_THAT(store.Faults(), IsEmpty());
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMRelationship2Rows, BringUnsetCardinalitiesBackAsUnset) {
    const Fixture fixture;
    fixture.relationship->SetId("r");
    fixture.relationship->SetLeftReference("[ns].[a]", UNSET, Cardinality::one, false);
    StoreContext store;
    ASSERT_TRUE(fixture.relationship->write(store));
    fixture.relationship->SetLeftReference("", Cardinality::one, Cardinality::one, false);
    fixture.relationship->constructFromIOParameter(*store.RowOf("SM_RELATIONSHIP", "r"));
    EXPECT_EQ(fixture.relationship->GetLeft().minCard, -1);
    EXPECT_EQ(fixture.relationship->GetLeft().maxCard, Cardinality::one);
    EXPECT_EQ(fixture.relationship->GetRight().minCard, -1);
    EXPECT_EQ(fixture.relationship->GetExpression(), nullptr) << "an empty expression is none";
}

TEST(SMRelationship2Rows, FailWithTheRecordOfTheSql) {
    const Fixture fixture = Fixture::Full();
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(fixture.relationship->write(context));
    RecordingContext reading;
    reading.FailAt(1);
    EXPECT_FALSE(fixture.relationship->read(reading));
}
