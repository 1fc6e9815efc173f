#include "objects/links/smscoperelationship2_002_000.h"

#include <gmock/gmock.h>

#include "core/qvutils/persist/iohelper.h"
#include "objects/links/smscope2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string SCOPES =
    "<scope><levelRef>[ns].[d].[h].[l]</levelRef><measureScope excluded=\"false\"><rollup>sum</rollup><refobj>[ns].[m].[x]</refobj>"
    "</measureScope></scope><scope><levelRef></levelRef></scope>";
const std::string ENDS =
    "<left><refobj>[ns].[m]</refobj><mincard>zero</mincard><maxcard>one</maxcard></left>"
    "<right><refobj>[ns].[d]</refobj><mincard>one</mincard><maxcard>many</maxcard></right>";

struct Fixture {
    ProjectPtr project = NewProject("ns");
    QvSmartPtr<SMScopeRelationship2> relationship = new SMScopeRelationship2(project->GetRootNamespace(), project);

    explicit Fixture(const std::string& elements = "") {
        SMScopeRelationshipBuilder builder(relationship);
        ParseInside(builder, elements);
    }
    std::string Diffable() const {
        QvULString text;
        relationship->AssignDiffableString(text);
        return Str(text);
    }
};

}  // namespace

TEST(SMScopeRelationship2Xml, HasNameEndsAndTheirPartsAlways) {
    const Fixture fixture;
    fixture.relationship->SetLastChangedDate(QvDate("2020-01-02T03:04:05"));
    EXPECT_EQ(WriteElement(*fixture.relationship),
              "<scopeRelationship><name></name><property name=\"id\" type=\"hidden\"></property><property name=\"version\" "
              "type=\"hidden\">0</property><left><refobj></refobj><mincard></mincard><maxcard></maxcard></left>"
              "<right><refobj></refobj><mincard></mincard><maxcard></maxcard></right></scopeRelationship>")
        << "there is no date, status or expression";
}

TEST(SMScopeRelationship2Xml, HasItsScopesBehindTheEnds) {
    const CapturedLog log;
    const Fixture fixture(SCOPES + ENDS + "<property name=\"qvref\">w</property><property name=\"z\">v</property><name>scoped</name>");
    EXPECT_EQ(WriteElement(*fixture.relationship),
              "<scopeRelationship><name>scoped</name><property name=\"id\" type=\"hidden\"></property><property name=\"version\" "
              "type=\"hidden\">0</property><property name=\"z\">v</property><property name=\"qvref\" type=\"hidden\">w</property>" +
                  ENDS + SCOPES + "</scopeRelationship>");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMScopeRelationship2Xml, PrintsItsScopesWithoutAnElementAround) {
    EXPECT_EQ(Fixture(SCOPES).relationship->WriteScopesToString(), SCOPES.c_str());
    EXPECT_EQ(Fixture().relationship->WriteScopesToString(), "");
}

TEST(SMScopeRelationship2Builder, MakesScopesOfItsOwn) {
    const Fixture fixture(SCOPES);
    ASSERT_EQ(fixture.relationship->GetScopes().size(), 2u);
    const SMScope2& scope = *fixture.relationship->GetScopes()[0];
    EXPECT_EQ(scope.parent, fixture.relationship.get());
    EXPECT_EQ(scope.GetSMProject(), fixture.project.get());
    EXPECT_EQ(scope.GetMeasureScopes()[0]->m_rollup, SMEnum_aggregationRule::sum);
}

TEST(SMScopeRelationship2Builder, TakesADateThoughNoneIsWritten) {
    const Fixture fixture("<lastChanged>2020-01-02T03:04:05</lastChanged>");
    EXPECT_EQ(fixture.relationship->GetLastChangedDate(), QvDate("2020-01-02T03:04:05"));
}

TEST(SMScopeRelationship2Builder, LogsAnExpressionInTheWordsOfItsBase) {
    const CapturedLog log;
    const Fixture fixture("<expression></expression>");
    const LoggedEvent start{4, "smrelationshipbasebuilder", "SMRelationshipBaseBuilder", "realStartElement", "Unknown tag 'expression'",
                            ""};
    const LoggedEvent end{4, "smrelationshipbasebuilder", "SMRelationshipBaseBuilder", "smtagEndElement", "Unknown tag 'expression'", ""};
    EXPECT_THAT(log.Events(), ElementsAre(start, end));
}

TEST(SMScopeRelationship2Builder, ReadsOnBehindAnUnknownElementInAScope) {
    const CapturedLog log;
    const ProjectPtr project = ParseProject(
        Document{.root = NamespaceElement("ns",
                                          "<scopeRelationship><name>r</name><scope><zeb><deep>x</deep></zeb><levelRef>[l]</levelRef>"
                                          "</scope></scopeRelationship>")}
            .Text());
    ASSERT_EQ(project->GetRootNamespace()->GetScopeRelationships().size(), 1u);
    EXPECT_EQ(project->GetRootNamespace()->GetScopeRelationships()[0]->GetScopes()[0]->m_levelRef, "[l]");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag:zeb", "4 Unknown tag:deep", "4 Unknown tag:deep", "4 Unknown tag:zeb"));
}

TEST(SMScopeRelationship2Model, HasItsTypeAndNoScopes) {
    EXPECT_EQ(Fixture().relationship->GetSMType(), 160);
    EXPECT_TRUE(Fixture().relationship->GetScopes().empty());
}

TEST(SMScopeRelationship2Model, AddsScopesAtTheEnd) {
    const Fixture fixture;
    SMScope2* made = fixture.relationship->AddNewScope();
    EXPECT_EQ(made->parent, fixture.relationship.get());
    EXPECT_EQ(made->GetSMProject(), fixture.project.get());
    const QvSmartPtr<SMScope2> given = new SMScope2(fixture.relationship, fixture.project);
    fixture.relationship->AddScope(given);
    EXPECT_THAT(fixture.relationship->GetScopes(), ElementsAre(made, given.get()));
}

TEST(SMScopeRelationship2Model, ComparesAllButTheScopesWithOneBar) {
    EXPECT_EQ(Fixture().Diffable(), "|0");
    const Fixture bare("<name>scoped</name><property name=\"qvref\">w</property>" + ENDS);
    bare.relationship->displayOrder = 7;
    EXPECT_EQ(bare.Diffable(), "scoped|7w[ns].[m]zeroone[ns].[d]onemany");
    const Fixture filled(SCOPES + "<name>scoped</name><property name=\"qvref\">w</property>" + ENDS);
    filled.relationship->displayOrder = 7;
    EXPECT_EQ(filled.Diffable(), bare.Diffable());
}

TEST(SMScopeRelationship2Model, MapsItsWarehouseLinkAndGivesNewIdsToAllBelow) {
    const Fixture fixture(SCOPES + "<property name=\"qvref\">old</property>");
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.relationship->RegenerateIds(ids);
    EXPECT_EQ(fixture.relationship->GetQvRefID(), "new") << "unlike a plain relationship";
    const SMScope2& scope = *fixture.relationship->GetScopes()[0];
    for (const SMObjectBase* object :
         {static_cast<const SMObjectBase*>(fixture.relationship.get()), static_cast<const SMObjectBase*>(&scope),
          static_cast<const SMObjectBase*>(scope.GetMeasureScopes()[0].get())})
        EXPECT_EQ(object->GetId().length(), 36);
}

TEST(SMScopeRelationship2Model, RenamesItsEndsAndItsScopes) {
    const Fixture fixture(SCOPES + "<left><refobj>[ns].[m].[x]</refobj></left><right><refobj>[ns].[d]</refobj></right>");
    SMRenameList2 list;
    list.AddRenameNamespace("ns", "B");
    fixture.relationship->RenameObjects(list);
    EXPECT_EQ(fixture.relationship->GetLeftRefobjSMID(), "[B].[m].[x]");
    EXPECT_EQ(fixture.relationship->GetRightRefobjSMID(), "[ns].[d]") << "as the format has it";
    EXPECT_EQ(fixture.relationship->GetScopes()[0]->m_levelRef, "[B].[d].[h].[l]");
    EXPECT_EQ(fixture.relationship->GetScopes()[0]->GetMeasureScopes()[0]->m_refobj, "[B].[m].[x]");
}

TEST(SMScopeRelationship2Model, RegistersItsScopesIfItHasSome) {
    const Fixture fixture(SCOPES + "<property name=\"id\">i</property>");
    SMNamespace2* root = fixture.project->GetRootNamespace();
    root->AddScopeRelationship(fixture.relationship);
    const auto unset = SMEnum_cardinality::Enum(-1);
    root->AddOrUpdateScopeRelationship("bare", nullptr, unset, unset, nullptr, unset, unset)->SetId("bare");
    MapId2RemainingInfo records;
    fixture.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    ASSERT_NE(records.Find("i/scope"), nullptr);
    EXPECT_EQ(records.Find("i/scope")->value, SCOPES.c_str());
    EXPECT_EQ(records.Find("bare/scope"), nullptr);
}

TEST(SMScopeRelationship2Model, TakesItsScopesToAnotherProject) {
    const Fixture fixture(SCOPES);
    const ProjectPtr other = NewProject("ns");
    fixture.relationship->SetSMProject(other);
    EXPECT_EQ(fixture.relationship->GetSMProject(), other.get());
    EXPECT_EQ(fixture.relationship->GetScopes()[0]->GetSMProject(), other.get());
    EXPECT_EQ(fixture.relationship->GetScopes()[0]->GetMeasureScopes()[0]->GetSMProject(), other.get());
}

TEST(SMScopeRelationship2Model, LeavesAScopeThatOutlivesItWithoutAParent) {
    Fixture fixture(SCOPES);
    const QvSmartPtr<SMScope2> scope = fixture.relationship->GetScopes()[0];
    fixture.relationship = nullptr;
    EXPECT_EQ(scope->parent, nullptr);
    EXPECT_FALSE(WriteElement(*scope).empty());
}

TEST(SMScopeRelationship2Rows, AreTheEndsAlone) {
    const Fixture fixture;
    fixture.relationship->SetId("r");
    fixture.relationship->SetName("scoped");
    fixture.relationship->SetLastChangedDate(QvDate(false));
    fixture.relationship->SetRightReference("[ns].[d]", SMEnum_cardinality::Enum(-1), SMEnum_cardinality::many, false);
    fixture.relationship->SetProperty("custom", "", "lost");
    RecordingContext context;
    ASSERT_TRUE(fixture.relationship->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_SCOPE_RELATIONSHIP", "EndObject")) << "no scopes, no record";
    EXPECT_THAT(context.Attributes(0),
                ElementsAre("SCOPE_RELATIONSHIP_ID S \"r\"", "SCOPE_REL_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                            "LASTCHANGED D null", "NAME S \"scoped\"", "DISPLAY_ORDER L 0", "WAREHOUSE_OBJECT_ID S \"\"",
                            "RIGHT_MAXCARD S \"many\"", "RIGHT_REFOBJ S \"[ns].[d]\""));
}

TEST(SMScopeRelationship2Rows, BringTheScopesBackThroughRemainingInfo) {
    const CapturedLog log;
    const Fixture fixture(SCOPES + ENDS + "<property name=\"id\">i</property>");
    StoreContext store;
    ASSERT_TRUE(fixture.relationship->write(store));
    const QvSmartPtr<SMScopeRelationship2> read = new SMScopeRelationship2(fixture.project->GetRootNamespace(), fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_SCOPE_RELATIONSHIP", "i"));
    EXPECT_TRUE(read->GetScopes().empty());
    ASSERT_TRUE(read->read(store));
    EXPECT_EQ(WriteElement(*read), WriteElement(*fixture.relationship));
    EXPECT_THAT(store.Faults(), IsEmpty());
    ASSERT_TRUE(read->read(store));
    EXPECT_EQ(read->GetScopes().size(), 4u) << "a second read appends";
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMScopeRelationship2Rows, DoNotClearTheRecordOfScopesThatWentAway) {
    const Fixture fixture("<property name=\"id\">i</property>");
    RecordingContext context;
    context.records["i/scope"] = RemainingInfoEntry{3, 1, SCOPES.c_str()};
    ASSERT_TRUE(fixture.relationship->write_next(context));
    EXPECT_THAT(context.Actions(), IsEmpty()) << "as the format has it";
}

TEST(SMScopeRelationship2Rows, FailWithARecordThatCannotBeParsed) {
    const CapturedLog log;
    const Fixture fixture("<property name=\"id\">i</property>");
    RecordingContext context;
    context.answers = {{Row()
                            .Text("xml_element_id", "i/scope")
                            .Number("xml_element_version", 2)
                            .Number("xml_element_parent_version", 0)
                            .Text("name", "scope")
                            .Text("value", "<scope><levelRef>")}};
    EXPECT_FALSE(fixture.relationship->read(context)) << "what is read in part must not be saved over the whole";
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].message, "Unable to parse remaining info.");
}
