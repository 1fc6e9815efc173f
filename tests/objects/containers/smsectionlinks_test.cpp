// The objects of sections that link others: shortcuts, relationships, relationship shortcuts and scope relationships.
#include <gmock/gmock.h>

#include "objects/base/getfromvector_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/links/smrelationship2_002_000.h"
#include "objects/links/smrelationshipshortcut2_002_000.h"
#include "objects/links/smscoperelationship2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
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

using Cardinality = SMEnum_cardinality;
constexpr auto UNSET = Cardinality::Enum(-1);

class SectionLinks : public testing::Test {
  protected:
    SMRelationship2* Relate(SMNamedObject2* left, SMNamedObject2* right, const char* expression = "x") {
        return root->AddOrUpdateRelationship("r", left, Cardinality::zero, Cardinality::one, right, Cardinality::one, Cardinality::many,
                                             expression);
    }
    SMScopeRelationship2* Scope(SMNamedObject2* left, SMNamedObject2* right) {
        return root->AddOrUpdateScopeRelationship("r", left, Cardinality::zero, Cardinality::one, right, Cardinality::one,
                                                  Cardinality::many);
    }
    static void Unstamp(SMObjectBase* object) { object->SetLastChangedDate(QvDate(false)); }
    static bool IsStamped(const SMObjectBase* object) { return object->GetLastChangedDate().IsSet(); }
    std::vector<std::string> Recorded() const {
        std::vector<std::string> keys;
        for (const auto& entry : project->m_idMap) keys.push_back(Str(entry.first));
        return keys;
    }
    std::vector<std::string> Order() const {
        std::vector<std::string> names;
        for (const SMObjectBase* item : root->GetDisplayOrderItems()) names.push_back(Str(item->GetNameForSMPath()));
        return names;
    }

    ProjectPtr project = NewProject("ns");
    SMNamespace2* root = project->GetRootNamespace();
    SMQuerySubject2* a = root->AddOrUpdateQuerySubject("a", "");
    SMQuerySubject2* b = root->AddOrUpdateQuerySubject("b", "");
    CapturedLog log;
};

using SectionRelationships = SectionLinks;
using SectionScopeRelationships = SectionLinks;
using SectionShortcuts = SectionLinks;
using SectionRelationshipShortcuts = SectionLinks;

}  // namespace

// ---- relationships

TEST_F(SectionRelationships, AreMadeWithTheNextNumberAndBothEnds) {
    SMRelationship2* relationship = Relate(a, b);
    EXPECT_EQ(relationship->parent, root);
    EXPECT_EQ(relationship->GetSMProject(), project.get());
    EXPECT_EQ(relationship->displayOrder, 2);
    EXPECT_EQ(relationship->GetName(), "r");
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[a]");
    EXPECT_EQ(relationship->GetLeft().minCard, Cardinality::zero);
    EXPECT_EQ(relationship->GetLeft().maxCard, Cardinality::one);
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "[ns].[b]");
    EXPECT_EQ(relationship->GetRight().minCard, Cardinality::one);
    EXPECT_EQ(relationship->GetRight().maxCard, Cardinality::many);
    EXPECT_EQ(relationship->GetExpression()->buffer.view(), "<expression>x</expression>");
    EXPECT_EQ(relationship->GetLeftQuerySubject(), a);
    EXPECT_THAT(Order(), ElementsAre("a", "b", "r"));
}

TEST_F(SectionRelationships, AreFoundBeforeTheyAreMade) {
    SMRelationship2* relationship = Relate(a, b);
    EXPECT_EQ(Relate(b, a, "y"), relationship);
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[b]");
    EXPECT_EQ(relationship->GetExpressionStr(), "y");
    EXPECT_EQ(root->GetRelationships().size(), 1u);
    relationship->SetName("other");
    EXPECT_NE(Relate(a, b), relationship);
}

TEST_F(SectionRelationships, AreStampedByAChangeAlone) {
    SMRelationship2* relationship = Relate(a, b);
    Unstamp(relationship);
    Relate(a, b);
    EXPECT_FALSE(IsStamped(relationship));
    Relate(a, b, "y");
    EXPECT_TRUE(IsStamped(relationship));
    Unstamp(relationship);
    Relate(a, a, "y");
    EXPECT_TRUE(IsStamped(relationship));
    Unstamp(relationship);
    ASSERT_NE(relationship->GetLeftRefObj(), nullptr);
    Relate(a, a, "y");
    EXPECT_TRUE(IsStamped(relationship)) << "the object that was looked up is dropped";
}

TEST_F(SectionRelationships, GetNoExpressionFromAnEmptyText) {
    SMRelationship2* relationship = Relate(a, b, "");
    EXPECT_EQ(relationship->GetExpression(), nullptr);
    Relate(a, b, "x");
    Relate(a, b, "");
    EXPECT_EQ(relationship->GetExpressionStr(), "");
}

TEST_F(SectionRelationships, HaveAnEmptyPathForNoEnd) {
    SMRelationship2* relationship = Relate(nullptr, nullptr);
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "");
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "");
    EXPECT_EQ(relationship->GetRight().maxCard, Cardinality::many);
}

TEST_F(SectionRelationships, AreRecordedEachTime) {
    Relate(a, b);
    project->m_keepIdMap = true;
    EXPECT_THAT(Recorded(), IsEmpty());
    SMRelationship2* relationship = Relate(a, b);
    EXPECT_THAT(Recorded(), ElementsAre("[ns].[r]"));
    EXPECT_EQ(project->m_idMap["[ns].[r]"], relationship);
}

// ---- scope relationships

TEST_F(SectionScopeRelationships, AreMadeOrFoundWithBothEnds) {
    project->m_keepIdMap = true;
    SMScopeRelationship2* relationship = Scope(a, nullptr);
    EXPECT_EQ(relationship->GetName(), "r");
    EXPECT_EQ(relationship->displayOrder, 2);
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "");
    Unstamp(relationship);
    EXPECT_EQ(Scope(a, nullptr), relationship);
    EXPECT_FALSE(IsStamped(relationship));
    EXPECT_EQ(Scope(a, b), relationship);
    EXPECT_TRUE(IsStamped(relationship));
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[a]");
    EXPECT_EQ(relationship->GetRightRefobjSMID(), "[ns].[b]");
    EXPECT_EQ(relationship->GetLeft().maxCard, Cardinality::one);
    EXPECT_EQ(root->GetScopeRelationshipByName("r"), relationship);
    EXPECT_EQ(root->GetScopeRelationshipByName("R"), nullptr);
    EXPECT_THAT(Recorded(), ElementsAre("[ns].[r]"));
}

TEST_F(SectionScopeRelationships, AreKeptApartFromRelationshipsOfTheSameName) {
    const SMRelationship2* relationship = Relate(a, b);
    SMScopeRelationship2* scope = Scope(a, b);
    EXPECT_NE(static_cast<SMRelationshipBase2*>(scope), relationship);
    EXPECT_EQ(root->GetScopeRelationshipByName("r"), scope);
}

TEST_F(SectionScopeRelationships, LeaveBothListsWhenDeletedById) {
    Scope(a, b)->SetId("i");
    root->DeleteScopeRelationshipById("nobody");
    EXPECT_EQ(root->GetScopeRelationships().size(), 1u);
    root->DeleteScopeRelationshipById("i");
    EXPECT_TRUE(root->GetScopeRelationships().empty());
    EXPECT_THAT(Order(), ElementsAre("a", "b"));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SectionScopeRelationships, LeaveBothListsWhenDeleted) {
    const QvSmartPtr<SMScopeRelationship2> held = Scope(a, b);
    root->DeleteScopeRelationship(held);
    EXPECT_TRUE(root->GetScopeRelationships().empty());
    EXPECT_THAT(Order(), ElementsAre("a", "b"));
    EXPECT_EQ(held->getReferenceCount(), 1);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SectionScopeRelationships, MayBeHeldByTheirSectionAlone) {
    root->DeleteScopeRelationship(Scope(a, b));
    EXPECT_EQ(root->GetScopeRelationshipByName("r"), nullptr);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SectionScopeRelationships, AreMissedInEachListByItself) {
    const QvSmartPtr<SMScopeRelationship2> stranger = new SMScopeRelationship2(root, project);
    root->DeleteScopeRelationship(stranger);
    const auto event = [](const char* message) {
        return LoggedEvent{4, "smobjects", "SMSectionType2", "DeleteScopeRelationship", message, ""};
    };
    EXPECT_THAT(log.Events(), ElementsAre(event("Could not find a scope relationship we were supposed to delete."),
                                          event("Could not find a scope relationship to delete in the order list.")));
    log.Clear();
    root->DeleteScopeRelationship(nullptr);
    EXPECT_EQ(log.Events().size(), 2u);
}

// ---- shortcuts

TEST_F(SectionShortcuts, TakePathAndElementNameOfTheirTarget) {
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", a);
    EXPECT_EQ(shortcut->GetRefObj(), "[ns].[a]");
    EXPECT_EQ(shortcut->GetTargetType(), "querySubject");
    EXPECT_EQ(shortcut->displayOrder, 2);
    EXPECT_EQ(root->AddOrUpdateShortcut("s", root->AddOrUpdateDimension("d", "")), shortcut);
    EXPECT_EQ(shortcut->GetRefObj(), "[ns].[d]");
    EXPECT_EQ(shortcut->GetTargetType(), "dimension");
    EXPECT_EQ(root->GetShortcuts().size(), 1u);
}

TEST_F(SectionShortcuts, AreStampedByAChangeAlone) {
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", a);
    Unstamp(shortcut);
    root->AddOrUpdateShortcut("s", a);
    EXPECT_FALSE(IsStamped(shortcut));
    root->AddOrUpdateShortcut("s", b);
    EXPECT_TRUE(IsStamped(shortcut)) << "another path";
    Unstamp(shortcut);
    shortcut->SetTargetType("other");
    root->AddOrUpdateShortcut("s", b);
    EXPECT_TRUE(IsStamped(shortcut)) << "another type";
    EXPECT_EQ(shortcut->GetTargetType(), "querySubject");
}

TEST_F(SectionShortcuts, AreRecordedWhenTheyAreMadeAlone) {
    root->AddOrUpdateShortcut("s", a);
    project->m_keepIdMap = true;
    root->AddOrUpdateShortcut("s", b);
    EXPECT_THAT(Recorded(), IsEmpty());
    root->AddOrUpdateShortcut("t", a);
    EXPECT_THAT(Recorded(), ElementsAre("[ns].[t]"));
}

TEST_F(SectionShortcuts, AreFoundByNameInTheirSectionAlone) {
    SMShortcut2* inner = root->AddOrUpdateFolder("f")->AddOrUpdateShortcut("s", a);
    EXPECT_EQ(root->GetShortcutByName("s"), nullptr);
    EXPECT_EQ(root->GetFolders()[0]->GetShortcutByName("s"), inner);
    SMShortcut2* own = root->AddOrUpdateShortcut("s", a);
    EXPECT_NE(own, inner);
    EXPECT_EQ(root->GetShortcutByName("s"), own);
    own->ChangeDefaultName("t");
    EXPECT_EQ(root->GetShortcutByName("s"), nullptr);
    EXPECT_EQ(root->GetShortcutByName("t"), own);
    EXPECT_EQ(GetFromVectorByName(root->GetShortcuts(), "t"), own);
}

TEST_F(SectionShortcuts, AreFoundByObjectIdInTheirNamespaceAlone) {
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", a);
    root->AddOrUpdateFolder("f")->AddOrUpdateShortcut("deep", a);
    EXPECT_EQ(project->GetShortcutBySMID("[ns].[s]"), shortcut);
    EXPECT_EQ(project->GetShortcutBySMID("[ns].[s].[more]"), shortcut);
    for (const char* id : {"", "[ns]", "[].[s]", "[ns].[]", "[other].[s]", "[ns].[a]", "[ns].[deep]"})
        EXPECT_EQ(project->GetShortcutBySMID(id), nullptr) << id;
}

TEST_F(SectionShortcuts, ComeLastWhenAReferenceIsLookedUp) {
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("n", a);
    EXPECT_EQ(root->GetRefObjectByName("n"), shortcut);
    SMDimension2* dimension = root->AddOrUpdateDimension("n", "");
    EXPECT_EQ(root->GetRefObjectByName("n"), dimension);
    const QvSmartPtr<SMUpdateSubject2> update = new SMUpdateSubject2(root, project, root);
    root->AddUpdateSubject(update);
    update->ChangeDefaultName("n");
    EXPECT_EQ(root->GetRefObjectByName("n"), update.get());
    SMQuerySubject2* subject = root->AddOrUpdateQuerySubject("n", "");
    EXPECT_EQ(root->GetRefObjectByName("n"), subject);
    EXPECT_EQ(project->GetRefObjectBySMID("[ns].[n]"), subject);
    EXPECT_EQ(root->GetRefObjectByName("nobody"), nullptr);
}

TEST_F(SectionShortcuts, LeaveBothListsWhenDeletedById) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");  // has the empty id too, and stands before the shortcuts
    const QvSmartPtr<SMShortcut2> first = root->AddOrUpdateShortcut("s", a);
    SMShortcut2* second = root->AddOrUpdateShortcut("t", a);
    second->SetId("i");
    root->DeleteShortcutById("i");
    EXPECT_THAT(root->GetShortcuts(), ElementsAre(first));
    root->DeleteShortcutById("");
    EXPECT_TRUE(root->GetShortcuts().empty());
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(a, b, folder)) << "the shortcut of that id, not the folder";
    EXPECT_EQ(first->getReferenceCount(), 1);
}

// ---- relationship shortcuts

TEST_F(SectionRelationshipShortcuts, TakeThePathsOfEndShortcutAndRelationship) {
    project->m_keepIdMap = true;
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", b);
    SMRelationshipShortcut2* link = root->AddOrUpdateRelationshipShortcut("l", a, shortcut, Relate(a, b));
    EXPECT_EQ(link->leftRefObj, "[ns].[a]");
    EXPECT_EQ(link->rightRefObj, "[ns].[s]");
    EXPECT_EQ(link->relationshipRef, "[ns].[r]");
    EXPECT_EQ(link->GetName(), "l");
    EXPECT_THAT(Recorded(), ElementsAre("[ns].[l]", "[ns].[r]", "[ns].[s]"));
}

TEST_F(SectionRelationshipShortcuts, AreFoundAndStampedByAChangeOfEachPath) {
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", b);
    SMRelationship2* relationship = Relate(a, b);
    const auto update = [&](SMNamedObject2* left, SMShortcut2* right, SMRelationship2* reference) {
        SMRelationshipShortcut2* link = root->AddOrUpdateRelationshipShortcut("l", left, right, reference);
        const bool stamped = IsStamped(link);
        Unstamp(link);
        return stamped;
    };
    update(a, shortcut, relationship);
    EXPECT_FALSE(update(a, shortcut, relationship));
    EXPECT_TRUE(update(b, shortcut, relationship));
    EXPECT_TRUE(update(b, nullptr, relationship));
    EXPECT_TRUE(update(b, nullptr, nullptr));
    EXPECT_FALSE(update(b, nullptr, nullptr));
    ASSERT_EQ(root->GetRelationshipShortcuts().size(), 1u);
    EXPECT_EQ(root->GetRelationshipShortcuts()[0]->rightRefObj, "");
    EXPECT_EQ(root->GetRelationshipShortcuts()[0]->relationshipRef, "");
}

TEST_F(SectionRelationshipShortcuts, AreRecordedEachTime) {
    root->AddOrUpdateRelationshipShortcut("l", a, nullptr, nullptr);
    project->m_keepIdMap = true;
    SMRelationshipShortcut2* link = root->AddOrUpdateRelationshipShortcut("l", a, nullptr, nullptr);
    EXPECT_THAT(Recorded(), ElementsAre("[ns].[l]"));
    EXPECT_EQ(project->m_idMap["[ns].[l]"], link);
}

// ---- all kinds

TEST_F(SectionLinks, JoinAtTheirStartTagsWithTheNextNumbers) {
    SMSectionTypeBuilder builder(root);
    ParseInside(
        builder,
        "<shortcut><name locale='en'>s</name></shortcut><relationship><name>r</name></relationship>"
        "<relationshipShortcut><name locale='en'>l</name></relationshipShortcut><scopeRelationship><name>c</name></scopeRelationship>");
    EXPECT_THAT(Order(), ElementsAre("a", "b", "s", "r", "l", "c"));
    for (int number = 0; number < 6; ++number)
        EXPECT_EQ(root->GetDisplayOrderItems()[static_cast<std::size_t>(number)]->displayOrder, number);
    for (const SMObjectBase* item : root->GetDisplayOrderItems()) EXPECT_EQ(item->parent, root);
    EXPECT_THAT(log.Events(), IsEmpty());
    SMSectionTypeBuilder cut(root);
    EXPECT_ANY_THROW(ParseInside(cut, "<relationship><name>half"));
    EXPECT_EQ(root->GetRelationships().size(), 2u);
}

TEST_F(SectionLinks, AreAddedWithoutANumber) {
    const QvSmartPtr<SMShortcut2> shortcut = new SMShortcut2(root, project);
    const QvSmartPtr<SMRelationship2> relationship = new SMRelationship2(root, project);
    const QvSmartPtr<SMRelationshipShortcut2> link = new SMRelationshipShortcut2(root, project);
    const QvSmartPtr<SMScopeRelationship2> scope = new SMScopeRelationship2(root, project);
    root->AddScopeRelationship(scope);
    root->AddRelationshipShortcut(link);
    root->AddRelationship(relationship);
    root->AddShortcut(shortcut);
    EXPECT_THAT(root->GetDisplayOrderItems(), ElementsAre(a, b, scope.get(), link.get(), relationship.get(), shortcut.get()));
    EXPECT_EQ(shortcut->displayOrder, 0);
    EXPECT_EQ(shortcut->getReferenceCount(), 2) << "the display list borrows";
}

TEST_F(SectionLinks, AreReadKindByKindInTheirPlaces) {
    RecordingContext context;
    EXPECT_TRUE(root->read(context));
    std::vector<std::string> kinds;
    for (const std::string& name : context.Names())
        if (name.rfind("AT_ReadSMObject ", 0) == 0) kinds.push_back(name.substr(16));
    EXPECT_THAT(kinds, ElementsAre("generic_section_type", "generic_query_subject_type", "updateSubject", "calculation",
                                   "scopeRelationship", "shortcut", "filter", "relationship", "relationshipShortcut", "function"));
}

TEST_F(SectionLinks, TakePartInTheWalksOfTheirSection) {
    SMShortcut2* shortcut = root->AddOrUpdateShortcut("s", a);
    SMRelationship2* relationship = Relate(a, b, "[ns].[a].[k]");
    SMRelationshipShortcut2* link = root->AddOrUpdateRelationshipShortcut("l", a, shortcut, relationship);
    SMScopeRelationship2* scope = Scope(a, b);
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    root->getChildObjects(children);
    EXPECT_THAT(std::vector<IOObject*>(children.begin(), children.end()), ElementsAre(scope, link, a, b, relationship, shortcut));

    std::map<QvULString, QvULString> ids;
    root->RegenerateIds(ids);
    for (const SMObjectBase* object : root->GetDisplayOrderItems()) EXPECT_EQ(object->GetId().length(), 36);

    SMRenameList2 list;
    list.AddRenameNamespace("ns", "other");
    shortcut->SetRefObj("[ns].[d].[h]");
    link->relationshipRef = "[ns].[r].[x]";
    scope->SetLeftReference("[ns].[m].[x]", UNSET, UNSET, false);
    root->RenameObjects(list);
    EXPECT_EQ(shortcut->GetRefObj(), "[other].[d].[h]");
    EXPECT_EQ(relationship->GetExpressionStr(), "[other].[a].[k]");
    EXPECT_EQ(link->relationshipRef, "[other].[r].[x]");
    EXPECT_EQ(scope->GetLeftRefobjSMID(), "[other].[m].[x]");

    const ProjectPtr elsewhere = NewProject();
    root->SetSMProject(elsewhere);
    for (const SMObjectBase* object : root->GetDisplayOrderItems()) EXPECT_EQ(object->GetSMProject(), elsewhere.get());
    root->SetSMProject(project);
}

TEST_F(SectionLinks, MayOutliveTheirSection) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    const QvSmartPtr<SMShortcut2> shortcut = folder->AddOrUpdateShortcut("s", a);
    const QvSmartPtr<SMRelationship2> relationship = folder->AddOrUpdateRelationship("r", a, UNSET, UNSET, b, UNSET, UNSET, "x");
    ASSERT_EQ(relationship->GetLeftQuerySubject(), a);
    root = nullptr;
    project = nullptr;
    EXPECT_EQ(shortcut->parent, nullptr);
    EXPECT_EQ(relationship->GetLeftRefObj(), nullptr);
    EXPECT_EQ(relationship->GetLeftRefobjSMID(), "[ns].[a]");
}
