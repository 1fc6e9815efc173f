// What relationships and scope relationships have in common: the two ends, the plain name, the link to the warehouse.
#include "objects/links/smrelationshipbase2_002_000.h"

#include <gmock/gmock.h>

#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/columns.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Cardinality = SMEnum_cardinality;
constexpr auto UNSET = Cardinality::Enum(-1);

class Base : public Plain<SMRelationshipBase2> {
  public:
    using Plain::Plain;
    Reference& Left() { return left; }
};

class RelationshipBase : public testing::Test {
  protected:
    void Read(const std::string& elements) {
        SMRelationshipBaseBuilder builder(relationship);
        ParseInside(builder, elements);
    }
    /** Sets the left end, without a stamp. */
    void PointTo(const char* path) { relationship->SetLeftReference(path, UNSET, UNSET, false); }
    bool IsStamped() const { return relationship->GetLastChangedDate().IsSet(); }
    static Row FullRow() {
        return Row()
            .Text("id", "r")
            .Text("name", "joins")
            .Text("qvref", "w")
            .Text("left/refobj", "[ns].[a]")
            .Text("left/mincard", "zero")
            .Text("left/maxcard", "one")
            .Text("right/refobj", "[ns].[b]")
            .Text("right/mincard", "one")
            .Text("right/maxcard", "many");
    }

    ProjectPtr project = NewProject("ns");
    SMNamespace2* root = project->GetRootNamespace();
    QvSmartPtr<Base> relationship = new Base(project, root);
    CapturedLog log;
};

using SMRelationshipBase2Ends = RelationshipBase;
using SMRelationshipBase2Model = RelationshipBase;
using SMRelationshipBase2Xml = RelationshipBase;
using SMRelationshipBase2Builder = RelationshipBase;
using SMRelationshipBase2Rows = RelationshipBase;

}  // namespace

// ---- the ends

TEST_F(SMRelationshipBase2Ends, StartUnset) {
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "");
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "");
    EXPECT_EQ(relationship->GetLeft().minCard, -1);
    EXPECT_EQ(relationship->GetRight().maxCard, -1);
    EXPECT_EQ(relationship->GetLeft().cachedObject, nullptr);
}

TEST_F(SMRelationshipBase2Ends, TellAChangeOfEachPart) {
    const auto changes = [&](const char* path, Cardinality::Enum min, Cardinality::Enum max) {
        bool changed = true;
        relationship->SetReference(relationship->Left(), path, min, max, &changed);
        return changed;
    };
    EXPECT_TRUE(changes("[a]", UNSET, UNSET));
    EXPECT_TRUE(changes("[a]", Cardinality::zero, UNSET));
    EXPECT_TRUE(changes("[a]", Cardinality::zero, Cardinality::many));
    EXPECT_FALSE(changes("[a]", Cardinality::zero, Cardinality::many));
    relationship->SetReference(relationship->Left(), "[b]", UNSET, UNSET, nullptr);
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[b]");
}

TEST_F(SMRelationshipBase2Ends, StampOnlyAChangeAndOnlyWhenTold) {
    relationship->SetLastChangedDate(QvDate(false));
    relationship->SetLeftReference("[a]", UNSET, UNSET, false);
    relationship->SetRightReference("[b]", UNSET, UNSET, false);
    EXPECT_FALSE(IsStamped());
    relationship->SetLeftReference("[a]", UNSET, UNSET, true);
    relationship->SetRightReference("[b]", UNSET, UNSET, true);
    EXPECT_FALSE(IsStamped()) << "nothing changed";
    relationship->SetRightReference("[c]", UNSET, UNSET, true);
    EXPECT_TRUE(IsStamped());
    relationship->SetLastChangedDate(QvDate(false));
    relationship->SetLeftReference("[a]", Cardinality::one, UNSET, true);
    EXPECT_TRUE(IsStamped());
}

TEST_F(SMRelationshipBase2Ends, CountAForgottenLookUpAsAChange) {
    root->AddOrUpdateQuerySubject("a", "");
    PointTo("[ns].[a]");
    ASSERT_NE(relationship->GetLeftRefObj(), nullptr);
    relationship->SetLastChangedDate(QvDate(false));
    relationship->SetLeftReference("[ns].[a]", UNSET, UNSET, true);
    EXPECT_TRUE(IsStamped()) << "the same path, but the object found was dropped";
    EXPECT_EQ(relationship->GetLeft().cachedObject, nullptr);
    relationship->SetLastChangedDate(QvDate(false));
    relationship->SetLeftReference("[ns].[a]", UNSET, UNSET, true);
    EXPECT_FALSE(IsStamped());
}

TEST_F(SMRelationshipBase2Ends, LookUpAgainWhatWasNotFound) {
    PointTo("[ns].[a]");
    EXPECT_EQ(relationship->GetLeftRefObj(), nullptr);
    EXPECT_EQ(relationship->GetLeftQuerySubject(), nullptr);
    SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("a", "");
    EXPECT_EQ(relationship->GetLeftRefObj(), subject);
    EXPECT_EQ(relationship->GetLeftQuerySubject(), subject);
    EXPECT_THAT(log.Events(), IsEmpty()) << "a path that names nothing is no event";
}

TEST_F(SMRelationshipBase2Ends, KeepWhatWasFoundUntilItIsForced) {
    SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("a", "");
    PointTo("[ns].[a]");
    ASSERT_EQ(relationship->GetLeftRefObj(), subject);
    subject->ChangeDefaultName("b");
    EXPECT_EQ(relationship->GetLeftRefObj(), subject) << "a stale find is not noticed";
    SMQuerySubject2* other = root->AddOrUpdateQuerySubject("a", "");
    EXPECT_EQ(relationship->GetLeftRefObj(), subject);
    relationship->ForceRefetchRefs();
    EXPECT_EQ(relationship->GetLeftRefObj(), other);
}

TEST_F(SMRelationshipBase2Ends, ForgetBothFindsAtOnce) {
    root->AddOrUpdateQuerySubject("a", "");
    PointTo("[ns].[a]");
    relationship->SetRightReference("[ns].[a]", UNSET, UNSET, false);
    ASSERT_NE(relationship->GetLeftRefObj(), nullptr);
    ASSERT_NE(relationship->GetRightRefObj(), nullptr);
    relationship->ForceRefetchRefs();
    EXPECT_EQ(relationship->GetLeft().cachedObject, nullptr);
    EXPECT_EQ(relationship->GetRight().cachedObject, nullptr);
}

TEST_F(SMRelationshipBase2Ends, NoticeAnObjectThatDied) {
    root->AddOrUpdateQuerySubject("a", "")->SetId("i");
    PointTo("[ns].[a]");
    relationship->SetRightReference("[ns].[a]", UNSET, UNSET, false);
    ASSERT_NE(relationship->GetLeftQuerySubject(), nullptr);
    ASSERT_NE(relationship->GetRightQuerySubject(), nullptr);
    root->DeleteQuerySubjectById("i");
    EXPECT_EQ(relationship->GetLeftRefObj(), nullptr);
    EXPECT_EQ(relationship->GetRightQuerySubject(), nullptr);
    SMQuerySubject2* next = root->AddOrUpdateQuerySubject("a", "");  // often at the address of the dead one
    EXPECT_EQ(relationship->GetLeftRefObj(), next);
    EXPECT_EQ(relationship->GetLeftRefObj()->GetNameForSMPath(), "a");
}

TEST_F(SMRelationshipBase2Ends, DoNotMistakeAnObjectAtTheAddressOfADeadOne) {
    PointTo("[ns].[a]");
    for (int round = 0; round < 20; ++round) {
        SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("a", "");
        subject->SetId("i");
        ASSERT_EQ(relationship->GetLeftRefObj(), subject);
        root->DeleteQuerySubjectById("i");
        root->AddOrUpdateQuerySubject("b", "")->SetId("j");
        EXPECT_EQ(relationship->GetLeftRefObj(), nullptr) << round;
        root->DeleteQuerySubjectById("j");
    }
}

TEST_F(SMRelationshipBase2Ends, CountADeadFindAsAChangeToo) {
    root->AddOrUpdateQuerySubject("a", "")->SetId("i");
    PointTo("[ns].[a]");
    ASSERT_NE(relationship->GetLeftRefObj(), nullptr);
    root->DeleteQuerySubjectById("i");
    relationship->SetLastChangedDate(QvDate(false));
    relationship->SetLeftReference("[ns].[a]", UNSET, UNSET, true);
    EXPECT_TRUE(IsStamped());
}

TEST_F(SMRelationshipBase2Ends, AreLookedUpAnewInAnotherProject) {
    root->AddOrUpdateQuerySubject("a", "");
    PointTo("[ns].[a]");
    ASSERT_NE(relationship->GetLeftRefObj(), nullptr);
    const ProjectPtr other = NewProject("ns");
    relationship->SetSMProject(other);
    EXPECT_EQ(relationship->GetLeftRefObj(), nullptr);
    SMQuerySubject2* subject = other->GetRootNamespace()->AddOrUpdateQuerySubject("a", "");
    EXPECT_EQ(relationship->GetLeftRefObj(), subject);
}

TEST_F(SMRelationshipBase2Ends, LogTheLeftEndWhicheverIsAskedForWithoutAProject) {
    root->AddOrUpdateQuerySubject("a", "");
    relationship->SetRightReference("[ns].[a]", UNSET, UNSET, false);
    ASSERT_NE(relationship->GetRightRefObj(), nullptr);
    project = nullptr;
    EXPECT_EQ(relationship->GetRightRefObj(), nullptr);
    const LoggedEvent event{
        4, "smrelationshipbase2", "SMRelationshipBase2", "GetRefObj", "Unable to complete GetLeftRefObj - SM project pointer is NULL.", ""};
    EXPECT_THAT(log.Events(), ElementsAre(event));
    EXPECT_EQ(relationship->GetLeftRefObj(), nullptr);
    EXPECT_EQ(relationship->GetRightShortcut(), nullptr);
    EXPECT_THAT(log.Events(), ElementsAre(event, event, event));
}

TEST_F(SMRelationshipBase2Ends, GiveASubjectOrAShortcutOnlyIfTheyAreOne) {
    SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("a", "");
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", subject);
    relationship->SetRightReference("[ns].[s]", UNSET, UNSET, false);
    EXPECT_EQ(relationship->GetRightRefObj(), shortcut);
    EXPECT_EQ(relationship->GetRightQuerySubject(), nullptr);
    EXPECT_EQ(relationship->GetRightShortcut(), shortcut);
    relationship->SetRightReference("[ns].[a]", UNSET, UNSET, false);
    EXPECT_EQ(relationship->GetRightQuerySubject(), subject);
    EXPECT_EQ(relationship->GetRightShortcut(), nullptr);
    PointTo("[ns].[s]");
    EXPECT_EQ(relationship->GetLeftQuerySubject(), nullptr);
}

TEST_F(SMRelationshipBase2Ends, FindTheDimensionOfALevel) {
    SMDimension2* dimension = root->AddOrUpdateDimension("time", "");
    PointTo("[ns].[time].[calendar].[month]");
    EXPECT_EQ(relationship->GetLeftRefObj(), dimension) << "the first two parts alone count";
    PointTo("[ns]");
    EXPECT_EQ(relationship->GetLeftRefObj(), nullptr);
}

// ---- memory

TEST_F(SMRelationshipBase2Model, HasThePlainNameEverywhere) {
    relationship->SetLastChangedDate(QvDate(false));
    relationship->SetName("joins");
    EXPECT_EQ(relationship->GetName(), "joins");
    EXPECT_EQ(relationship->GetNameForSMPath(), "joins");
    EXPECT_FALSE(IsStamped());
}

TEST_F(SMRelationshipBase2Model, HasAnIdOfNamespaceAndName) {
    const QvSmartPtr<Base> inner = new Base(project, root->AddOrUpdateFolder("folder"));
    inner->SetName("a.b");
    EXPECT_EQ(inner->GetSMID(false), "[ns].[a.b]") << "folders leave no trace";
    EXPECT_EQ(inner->GetSMID(true), "[ns].[a&#46;b]");
}

TEST_F(SMRelationshipBase2Model, HasNoChildren) {
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    relationship->getChildObjects(children);
    EXPECT_EQ(children.size(), 0u);
}

TEST_F(SMRelationshipBase2Model, TakesTheWarehouseLinkAsAProperty) {
    relationship->SetProperty("qvref", "any", "w");
    relationship->SetProperty("id", "", "i");
    relationship->SetProperty("custom", "", "v");
    EXPECT_EQ(relationship->GetQvRefID(), "w");
    EXPECT_EQ(relationship->GetProperty("qvref"), nullptr);
    EXPECT_EQ(relationship->GetId(), "i");
    EXPECT_EQ(relationship->GetProperty("custom")->value, "v");
}

TEST_F(SMRelationshipBase2Model, MapsItsWarehouseLinkWithTheIds) {
    relationship->SetQvRefID("old");
    relationship->SetId("i");
    std::map<QvULString, QvULString> ids{{"old", "new"}, {"", "never"}};
    relationship->RegenerateIds(ids);
    EXPECT_EQ(relationship->GetQvRefID(), "new");
    EXPECT_EQ(relationship->GetId().length(), 36);
    relationship->RegenerateIds(ids);
    EXPECT_EQ(relationship->GetQvRefID(), "new") << "no key of the map";
    relationship->SetQvRefID("");
    relationship->RegenerateIds(ids);
    EXPECT_EQ(relationship->GetQvRefID(), "");
}

TEST_F(SMRelationshipBase2Model, RenamesEndsOfThreePartsAlone) {
    SMRenameList2 list;
    list.AddRenameNamespace("ns", "other");
    PointTo("[ns].[a].[h]");
    relationship->SetRightReference("[ns].[a]", UNSET, UNSET, false);
    relationship->RenameObjects(list);
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[other].[a].[h]");
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "[ns].[a]") << "as the format has it";
}

TEST_F(SMRelationshipBase2Model, ForgetsItsFindsWhenItIsRenamed) {
    SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("a", "");
    PointTo("[ns].[a]");
    ASSERT_EQ(relationship->GetLeftRefObj(), subject);
    SMRenameList2 nothing;
    relationship->RenameObjects(nothing);
    EXPECT_EQ(relationship->GetLeft().cachedObject, nullptr);
    EXPECT_EQ(relationship->GetLeftRefObj(), subject);
}

// ---- document

TEST_F(SMRelationshipBase2Xml, HasTheWarehouseLinkBehindAllOtherProperties) {
    relationship->SetId("i");
    relationship->SetProperty("z", "", "v");
    const auto properties = [&] { return Printed([&](QvContentHandler* handler) { relationship->WriteProperties(handler, true); }); };
    const std::string others =
        "<property name=\"id\" type=\"hidden\">i</property><property name=\"version\" type=\"hidden\">0</property><property "
        "name=\"z\">v</property>";
    EXPECT_EQ(properties(), others);
    relationship->SetQvRefID("w");
    EXPECT_EQ(properties(), others + "<property name=\"qvref\" type=\"hidden\">w</property>");
}

TEST_F(SMRelationshipBase2Builder, ReadsBothEndsWithoutAStamp) {
    relationship->SetLastChangedDate(QvDate(false));
    Read(
        "<name>joins</name><left><refobj>[ns].[a]</refobj><mincard>zero</mincard><maxcard>one</maxcard></left>"
        "<right><refobj>[ns].[b]</refobj><mincard>one</mincard><maxcard>many</maxcard></right>");
    EXPECT_EQ(relationship->GetName(), "joins");
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[a]");
    EXPECT_EQ(relationship->GetLeft().minCard, Cardinality::zero);
    EXPECT_EQ(relationship->GetLeft().maxCard, Cardinality::one);
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "[ns].[b]");
    EXPECT_EQ(relationship->GetRight().minCard, Cardinality::one);
    EXPECT_EQ(relationship->GetRight().maxCard, Cardinality::many);
    EXPECT_FALSE(IsStamped());
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SMRelationshipBase2Builder, StartsEachEndBare) {
    Read("<left><refobj>[ns].[a]</refobj><mincard>zero</mincard><maxcard>one</maxcard></left><right></right>");
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "");
    EXPECT_EQ(relationship->GetRight().minCard, -1);
    EXPECT_EQ(relationship->GetRight().maxCard, -1);
}

TEST_F(SMRelationshipBase2Builder, ReadsEmptyAndUnknownCardinalitiesAsUnset) {
    Read("<left><refobj>[a]</refobj><mincard></mincard><maxcard>plenty</maxcard></left>");
    EXPECT_EQ(relationship->GetLeft().minCard, -1);
    EXPECT_EQ(relationship->GetLeft().maxCard, -1);
}

TEST_F(SMRelationshipBase2Builder, TakesADateThoughNoneIsWritten) {
    Read("<lastChanged>2020-01-02T03:04:05</lastChanged><property name=\"qvref\">w</property><property name=\"a\" type=\"t\">v</property>");
    EXPECT_EQ(relationship->GetLastChangedDate(), QvDate("2020-01-02T03:04:05"));
    EXPECT_EQ(relationship->GetQvRefID(), "w");
    EXPECT_EQ(relationship->GetProperty("a")->type, "t");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SMRelationshipBase2Builder, LogsWhatItDoesNotKnowInTwoWords) {
    Read("<zeb></zeb><filter></filter>");
    const auto event = [](const char* method, const char* message) {
        return LoggedEvent{4, "smrelationshipbasebuilder", "SMRelationshipBaseBuilder", method, message, ""};
    };
    EXPECT_THAT(log.Events(),
                ElementsAre(event("realStartElement", "Unknown tag 'zeb'"), event("smtagEndElement", "Unknown tag 'zeb'"),
                            event("realStartElement", "Unknown tag 'filter'"), event("smtagEndElement", "Unknown tag 'filter'")));
}

// ---- rows

TEST_F(SMRelationshipBase2Rows, HaveMaximumMinimumAndReferenceOfEachEndInThisOrder) {
    relationship->SetName("joins");
    relationship->SetQvRefID("w");
    relationship->SetLeftReference("[ns].[a]", Cardinality::zero, Cardinality::one, false);
    relationship->SetRightReference("[ns].[b]", Cardinality::one, Cardinality::many, false);
    std::vector<std::string> columns = ColumnsOf(*relationship);
    columns.erase(columns.begin(), columns.begin() + 5);
    EXPECT_THAT(columns, ElementsAre("NAME S \"joins\"", "DISPLAY_ORDER L 0", "WAREHOUSE_OBJECT_ID S \"w\"", "LEFT_MAXCARD S \"one\"",
                                     "LEFT_MINCARD S \"zero\"", "LEFT_REFOBJ S \"[ns].[a]\"", "RIGHT_MAXCARD S \"many\"",
                                     "RIGHT_MINCARD S \"one\"", "RIGHT_REFOBJ S \"[ns].[b]\""));
}

TEST_F(SMRelationshipBase2Rows, LeaveOutWhatAnEndDoesNotHave) {
    std::vector<std::string> columns = ColumnsOf(*relationship);
    columns.erase(columns.begin(), columns.begin() + 5);
    EXPECT_THAT(columns, ElementsAre("NAME S \"\"", "DISPLAY_ORDER L 0", "WAREHOUSE_OBJECT_ID S \"\""));
}

TEST_F(SMRelationshipBase2Rows, GiveBothEnds) {
    relationship->constructFromIOParameter(*FullRow());
    EXPECT_EQ(relationship->GetId(), "r");
    EXPECT_EQ(relationship->GetName(), "joins");
    EXPECT_EQ(relationship->GetQvRefID(), "w");
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[a]");
    EXPECT_EQ(relationship->GetLeft().minCard, Cardinality::zero);
    EXPECT_EQ(relationship->GetLeft().maxCard, Cardinality::one);
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "[ns].[b]");
    EXPECT_EQ(relationship->GetRight().minCard, Cardinality::one);
    EXPECT_EQ(relationship->GetRight().maxCard, Cardinality::many);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SMRelationshipBase2Rows, ClearWhatTheyDoNotHold) {
    relationship->constructFromIOParameter(*FullRow());
    const Row row =
        Row().Text("id", "r").Text("name", "joins").Put("qvref", IOQvStringParam::Null()).Put("right/refobj", IOQvStringParam::Null());
    relationship->constructFromIOParameter(*row);
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "");
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "");
    EXPECT_EQ(relationship->GetLeft().minCard, -1);
    EXPECT_EQ(relationship->GetRight().maxCard, -1);
    EXPECT_EQ(relationship->GetQvRefID(), "");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SMRelationshipBase2Rows, LogAMissingLinkAndLeaveTheRest) {
    PointTo("[ns].[a]");
    const Row row = Row().Text("id", "r").Text("name", "joins");
    relationship->constructFromIOParameter(*row);
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].module, "smrelationshipbase2");
    EXPECT_EQ(log.Events()[0].className, "SMRelationshipBase2");
    EXPECT_THAT(log.Events()[0].detail, testing::StartsWith("Probably a missing parameter: "));
    EXPECT_EQ(relationship->GetName(), "joins");
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[a]");
}
