#include "objects/publication/smsecurityview2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr auto REFOBJ = SMSecurityDefinitionSet2::refobj;
constexpr auto VIEWREF = SMSecurityDefinitionSet2::viewref;
constexpr auto INCLUDE = SMEnum_includeRule::include;
constexpr auto HIDE = SMEnum_includeRule::hide;

struct View {
    View() : project(NewProject()), view(new SMSecurityView2(project, project)) { view->AddName("en", "v"); }
    explicit View(const std::string& content) : View() {
        SMSecurityViewBuilder builder(view);
        ParseInside(builder, content);
    }
    SMSecurityView2* operator->() const { return view; }

    ProjectPtr project;
    QvSmartPtr<SMSecurityView2> view;
};

/** The element of a view named "v" that has no id. */
std::string Element(const std::string& content, const std::string& attributes = "") {
    return "<securityView" + attributes +
           "><name locale=\"en\">v</name><property name=\"id\" type=\"hidden\"></property>"
           "<property name=\"version\" type=\"hidden\">0</property>" +
           content + "</securityView>";
}

std::vector<std::string> RefsOf(const SMSecurityDefinitionSet2& set) {
    std::vector<std::string> refs;
    for (const I18NString& reference : set.refs) refs.push_back(Str(reference));
    return refs;
}

}  // namespace

// ---- memory

TEST(SMSecurityView2Model, HasAnObjectIdWithoutANamespace) {
    View view;
    view->AddName("en", "a & b");
    EXPECT_EQ(Str(view->GetSMID(false)), "[].[securityViews].[a & b]");
    EXPECT_EQ(Str(view->GetSMID(true)), "[].[securityViews].[a &amp; b]");
}

TEST(SMSecurityView2Model, InsertsIntoTheFirstSetOfTheRule) {
    View view;
    view->InsertRefID(INCLUDE, "[a]", REFOBJ);
    view->InsertRefID(HIDE, "[b]", VIEWREF);
    view->InsertRefID(INCLUDE, "[c]", REFOBJ);
    view->InsertRefID(INCLUDE, "[a]", REFOBJ);
    ASSERT_EQ(view->GetDefinition().size(), 2u);
    EXPECT_THAT(RefsOf(view->GetDefinition()[0]), ElementsAre("[a]", "[c]"));
    EXPECT_THAT(RefsOf(view->GetDefinition()[1]), ElementsAre("[b]"));
    EXPECT_EQ(view->GetDefinition()[1].refTag, VIEWREF);
}

TEST(SMSecurityView2Model, KnowsWhatWasReadOrRemovedWhenItInserts) {
    View view(
        "<definition><set includeRule=\"hide\"><refobj>a</refobj><refobj>a</refobj></set><set includeRule=\"hide\"><refobj>b</refobj></set>"
        "</definition>");
    for (const char* reference : {"a", "b", "b"}) view->InsertRefID(HIDE, reference, REFOBJ);
    EXPECT_THAT(RefsOf(view->GetDefinition()[0]), ElementsAre("a", "a", "b")) << "the first set alone is looked at";
    EXPECT_THAT(RefsOf(view->GetDefinition()[1]), ElementsAre("b"));
    view->RemoveRefID(HIDE, "a");
    view->RemoveRefID(HIDE, "b");
    EXPECT_THAT(RefsOf(view->GetDefinition()[1]), IsEmpty()) << "removed from all sets";
    for (const char* reference : {"b", "a", "b"}) view->InsertRefID(HIDE, reference, REFOBJ);
    EXPECT_THAT(RefsOf(view->GetDefinition()[0]), ElementsAre("b", "a"));
    view->InsertRefID(INCLUDE, "a", REFOBJ);
    EXPECT_THAT(RefsOf(view->GetDefinition()[2]), ElementsAre("a")) << "each rule for itself";
}

TEST(SMSecurityView2Model, LogsAndLeavesOutAReferenceOfAnotherKind) {
    CapturedLog log;
    View view;
    view->InsertRefID(INCLUDE, "[a]", REFOBJ);
    view->InsertRefID(INCLUDE, "[x]", VIEWREF);
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smsecurityview2", "SMSecurityView2", "InsertRefID",
                                                      "can't insert securityView difinition item [x]", ""}));
    EXPECT_THAT(RefsOf(view->GetDefinition()[0]), ElementsAre("[a]"));
}

TEST(SMSecurityView2Model, GivesNoKindForARuleThatNoSetHas) {
    View view;
    view->InsertRefID(INCLUDE, "[a]", REFOBJ);
    std::vector<QvULString> ids{"stays"};
    EXPECT_EQ(view->GetRefIDs(HIDE, ids), -1);
    EXPECT_THAT(ids, ElementsAre(QvULString("stays")));
}

TEST(SMSecurityView2Model, GivesTheReferencesOfAllSetsAndTheKindOfTheLast) {
    View view(
        "<definition><set includeRule=\"hide\"><refobj>a</refobj></set><set includeRule=\"include\"><refobj>b</refobj></set>"
        "<set includeRule=\"hide\"><viewref>c</viewref></set></definition>");
    std::vector<QvULString> ids;
    EXPECT_EQ(view->GetRefIDs(HIDE, ids), VIEWREF);
    EXPECT_THAT(ids, ElementsAre(QvULString("a"), QvULString("c")));
}

TEST(SMSecurityView2Model, KeepsAndWritesASetThatFellEmpty) {
    View view;
    view->InsertRefID(INCLUDE, "[a]", REFOBJ);
    view->RemoveRefID(HIDE, "[a]");
    EXPECT_THAT(RefsOf(view->GetDefinition()[0]), ElementsAre("[a]"));
    view->RemoveRefID(INCLUDE, "[a]");
    EXPECT_EQ(WriteElement(*view.view), Element("<definition><set includeRule=\"include\"></set></definition>"));
}

// ---- document

TEST(SMSecurityView2Xml, WritesNothingThatIsNotThere) {
    View view;
    EXPECT_EQ(WriteElement(*view.view), Element(""));
}

TEST(SMSecurityView2Xml, WritesItsPartsInTheirOrder) {
    const std::string content =
        "<definition><set includeRule=\"include\"><viewref>w</viewref></set><set includeRule=\"exclude\"><refobj>[a].[b]</refobj></set>"
        "</definition><functionSets><functionSet><functionSetId>f</functionSetId><functionSetId>g</functionSetId></functionSet>"
        "</functionSets><qosOverrides><qosOverride><functionId>i</functionId><qosLevel>limited</qosLevel>"
        "<description locale=\"en\">d</description></qosOverride><qosOverride><functionId></functionId></qosOverride></qosOverrides>"
        "<access x=\"1\"><decisionRole></decisionRole></access>";
    View view("<access x=\"1\"><decisionRole></decisionRole></access>" +  // the order of reading does not matter
              content.substr(0, content.find("<access")));
    view->SetRoleBased(true);
    EXPECT_EQ(WriteElement(*view.view), Element(content, " isRoleBased=\"true\""));
}

TEST(SMSecurityViewBuilder, LetsTheLastReferenceOfASetDecideItsKind) {
    View view("<definition><set includeRule=\"hide\"><viewref>a</viewref><refobj>b</refobj></set></definition>");
    EXPECT_EQ(Str(view->WriteDefinitionToString()),
              "<definition><set includeRule=\"hide\"><refobj>a</refobj><refobj>b</refobj></set></definition>");
}

TEST(SMSecurityViewBuilder, KeepsTwoSetsOfOneRuleAndOfUnknownRules) {
    View view(
        "<definition><set includeRule=\"hide\"></set><set includeRule=\"hide\"></set><set includeRule=\"Hide\"></set><set></set>"
        "</definition>");
    EXPECT_EQ(Str(view->WriteDefinitionToString()),
              "<definition><set includeRule=\"hide\"></set><set includeRule=\"hide\"></set><set includeRule=\"\"></set>"
              "<set includeRule=\"\"></set></definition>");
}

TEST(SMSecurityViewBuilder, StartsEachOverrideAnew) {
    View view(
        "<qosOverrides><qosOverride><functionId>f</functionId><qosLevel>l</qosLevel><description locale=\"en\">d</description>"
        "</qosOverride><qosOverride><functionId>g</functionId></qosOverride></qosOverrides>");
    ASSERT_EQ(view->GetQosOverrides().size(), 2u);
    EXPECT_EQ(Str(view->GetQosOverrides()[1].functionId), "g");
    EXPECT_TRUE(view->GetQosOverrides()[1].qosLevel.empty());
    EXPECT_TRUE(view->GetQosOverrides()[1].description.empty());
}

TEST(SMSecurityViewBuilder, GivesADescriptionToTheOverrideThatFollows) {
    View view("<description locale=\"en\">d</description><qosOverride></qosOverride>");
    EXPECT_EQ(view->GetQosOverrides()[0].description.size(), 1u);
}

TEST(SMSecurityViewBuilder, LogsUnknownTagsAtBothEnds) {
    CapturedLog log;
    View view("<pz><refobj>inside</refobj></pz><lastChanged>2020-01-01T00:00:00</lastChanged>");
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{4, "smsecurityview2", "SMSecurityViewBuilder", "realStartElement", "Unknown tag:lastChanged", ""},
                            LoggedEvent{4, "smsecurityview2", "SMSecurityViewBuilder", "realEndElement", "Unknown tag:lastChanged", ""}));
}

TEST(SMSecurityViewBuilder, TakesPropertiesAndNamesOfAllLocales) {
    View view("<name locale=\"fr\">vue</name><property name=\"id\" type=\"hidden\">i</property><property name=\"p\">x</property>");
    EXPECT_EQ(Str(view->GetId()), "i");
    EXPECT_EQ(Str(view->GetName("fr")), "vue");
    EXPECT_EQ(Str(view->GetProperty("p")->value), "x");
}

TEST(SMSecurityViewBuilder, ReadsTheRoleFlagOfItsOwnElement) {
    View view("<securityView isRoleBased=\"true\"></securityView>");
    EXPECT_TRUE(view->IsRoleBased());
}

// ---- repository

TEST(SMSecurityView2Rows, StoresNoRecordWithoutContent) {
    View view;
    RecordingContext context;
    EXPECT_TRUE(view->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_SECURITY_VIEW", "EndObject"));
}

TEST(SMSecurityView2Rows, StoresItsRecordsInTheirOrder) {
    View view("<qosOverride></qosOverride><access></access><functionSetId>f</functionSetId><set></set>");
    view->SetId("i");
    RecordingContext context;
    EXPECT_TRUE(view->write(context));
    std::vector<std::string> tags;
    for (std::size_t place = 0; place < context.Actions().size(); ++place)
        if (context.Actions()[place].name == "AT_WriteRemainingInfo SM_REMAIN_INFO") tags.push_back(context.Attributes(place)[0]);
    EXPECT_THAT(tags, ElementsAre(testing::EndsWith("\"i/functionSets\""), testing::EndsWith("\"i/access\""),
                                  testing::EndsWith("\"i/definition\""), testing::EndsWith("\"i/qosOverrides\"")));
}

TEST(SMSecurityView2Rows, BringsItsRecordsBack) {
    CapturedLog log;
    View view(
        "<definition><set includeRule=\"include\"><viewref>w</viewref></set><set includeRule=\"include\"></set></definition>"
        "<functionSets><functionSet><functionSetId>f</functionSetId></functionSet></functionSets><qosOverrides><qosOverride>"
        "<functionId>i</functionId><qosLevel>l</qosLevel><description locale=\"en\">a &lt; b</description></qosOverride></qosOverrides>"
        "<access x=\"1\">y</access>");
    View other;
    view->SetId("i");
    view->SetRoleBased(true);
    StoreContext store;
    ASSERT_TRUE(view->write(store));
    other->constructFromIOParameter(*store.RowOf("SM_SECURITY_VIEW", "i"));
    ASSERT_TRUE(other->read(store));
    EXPECT_EQ(WriteElement(*other.view), WriteElement(*view.view));
    EXPECT_THAT(store.Faults(), IsEmpty());
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMSecurityView2Rows, LeavesTheLaterRecordsUnwrittenWhereOneFails) {
    View view("<qosOverride></qosOverride><access></access><functionSetId>f</functionSetId><set></set>");
    RecordingContext whole;
    ASSERT_TRUE(view->write_next(whole));
    for (std::size_t action = 1; action <= whole.Actions().size(); ++action) {
        RecordingContext context;
        context.FailAt(action);
        EXPECT_FALSE(view->write_next(context)) << action;
        EXPECT_EQ(context.Actions().size(), action);
    }
}

TEST(SMSecurityView2Rows, KeepsItsRoleFlag) {
    View view;
    view->constructFromIOParameter(*Row().Text("id", "i").Number("version", 2).Text("name", "n").Put("isRoleBased", new IOBoolParam(true)));
    EXPECT_TRUE(view->IsRoleBased());
    EXPECT_EQ(Str(view->GetId()), "i");
}

TEST(SMSecurityView2Rows, LogsARowWithoutItsRoleFlag) {
    CapturedLog log;
    View view;
    view->constructFromIOParameter(*Row().Text("id", "i").Text("name", "n"));
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].module, "smsecurityview2");
    EXPECT_EQ(log.Events()[0].className, "SMSecurityView2");
    EXPECT_THAT(log.Events()[0].message, testing::StartsWith("Error reading object. Message: "));
    EXPECT_THAT(log.Events()[0].detail, testing::StartsWith("Probably a missing parameter: "));
}

TEST(SMSecurityView2Rows, RegistersWhatItHas) {
    struct Recorder : MapId2RemainingInfo {
        void AddObject(const QvULString& id, int, int, const QvULString&) override { ids.push_back(id.c_str()); }
        std::vector<std::string> ids;
    } records;
    View view("<qosOverride></qosOverride><access></access><functionSetId>f</functionSetId><set></set>");
    view->SetId("i");
    view.project->AppendSecurityView(view.view);
    view.project->AddSecurityViewOrReturnExisting("empty")->SetAccess(nullptr);
    view.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    EXPECT_THAT(records.ids, ElementsAre("i/qosOverrides", "i/definition", "i/access", "i/functionSets", "/locales"));
}
