#include "objects/transforms/smrenamelist2_002_000.h"

#include <gmock/gmock.h>

#include "core/qvutils/diag/tklerrors.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

/** The text after the renames, with a mark in front when the list says that it changed. */
std::string Renamed(SMRenameList2& list, const char* text) {
    I18NString wide(text);
    QvULString compact(text);
    const bool changed = list.PerformRenames(wide);
    EXPECT_EQ(list.PerformRenames(compact), changed);
    EXPECT_EQ(compact, wide);
    EXPECT_TRUE(changed || wide == text);
    return (changed ? "+" : "-") + Str(wide);
}

std::string Parts(SMRenameList2& list, const char* nameSpace, const char* name, const char* item) {
    I18NString a(nameSpace), b(name), c(item);
    const bool found = list.PerformRenames(a, b, c);
    return (found ? "+" : "-") + Str(a) + "." + Str(b) + "." + Str(c);
}

std::string Fragment(SMRenameList2& list, const char* xml) {
    TklByteBuffer buffer;
    buffer << xml;
    list.PerformRenamesEscaped(buffer);
    return buffer.str();
}

SMNamespaceMap Taken(std::initializer_list<const char*> names) {
    SMNamespaceMap map;
    for (const char* name : names) map[name] = nullptr;
    return map;
}

std::string Unique(const char* name, std::initializer_list<const char*> taken) {
    return Str(SMRenameList2::GenerateUniqueNamespaceName(name, Taken(taken)));
}

class RenameTexts : public testing::Test {
  protected:
    RenameTexts() { list.AddRenameNamespace("A", "B"); }
    SMRenameList2 list;
};

}  // namespace

TEST(RenameTable, StoresNoRenameThatChangesNothing) {
    SMRenameList2 list;
    list.AddRename("a", "b", "c", "a", "b", "c");
    EXPECT_TRUE(list.empty());
    list.AddRenameNamespace("a", "a");
    EXPECT_TRUE(list.empty());
    list.AddRename("a", "b", "c", "a", "b", "d");
    EXPECT_FALSE(list.empty());
}

TEST(RenameTable, KeepsTheFirstRenameOfAKey) {
    SMRenameList2 list;
    list.AddRename("A", "x", "", "B", "y", "");
    list.AddRename("A", "x", "", "C", "z", "");
    EXPECT_EQ(Parts(list, "A", "x", "i"), "+B.y.i");
}

TEST(RenameTable, TriesTheItemThenTheNameThenTheNamespace) {
    SMRenameList2 list;
    list.AddRename("A", "x", "i", "A", "x", "j");
    list.AddRename("A", "x", "", "A", "z", "");
    list.AddRenameNamespace("A", "B");
    EXPECT_EQ(Parts(list, "A", "x", "i"), "+A.x.j");
    EXPECT_EQ(Parts(list, "A", "x", "other"), "+A.z.other");
    EXPECT_EQ(Parts(list, "A", "other", "i"), "+B.other.i");
    EXPECT_EQ(Parts(list, "C", "x", "i"), "-C.x.i");
}

TEST(RenameTable, HidesTheNamespaceBehindOneRenameOfAName) {
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    list.AddRename("A", "x", "y1", "A", "x", "new");
    EXPECT_EQ(Parts(list, "A", "x", "y2"), "-A.x.y2");
    EXPECT_EQ(Renamed(list, "[A].[x].[y2]"), "-[A].[x].[y2]");
}

TEST(RenameTable, TakesAnEmptyNamespaceButNoEmptyNameOrItem) {
    SMRenameList2 list;
    list.AddRename("A", "x", "i", "", "", "");
    EXPECT_EQ(Parts(list, "A", "x", "i"), "+.x.i");
}

TEST(RenameTable, MixesNoWildcards) {
    SMRenameList2 list;
    list.AddRename("A", "", "i", "A", "", "j");
    EXPECT_EQ(Parts(list, "A", "x", "i"), "-A.x.i");
}

TEST_F(RenameTexts, ChangesCompleteReferences) {
    EXPECT_EQ(Renamed(list, "[A].[x].[y]"), "+[B].[x].[y]");
    EXPECT_EQ(Renamed(list, "[A].[x].[y].[z].[w]"), "+[B].[x].[y].[z].[w]");
    EXPECT_EQ(Renamed(list, "1 + [A].[x].[y] + 2"), "+1 + [B].[x].[y] + 2");
    EXPECT_EQ(Renamed(list, "[A].[].[]"), "+[B].[].[]");
}

TEST_F(RenameTexts, LeavesReferencesOfTwoParts) {
    EXPECT_EQ(Renamed(list, "[A].[x]"), "-[A].[x]");
    EXPECT_EQ(Renamed(list, "[A]"), "-[A]");
    EXPECT_EQ(Renamed(list, ""), "-");
}

TEST_F(RenameTexts, LosesTheBracketOfWhatIsNoReference) {
    EXPECT_EQ(Renamed(list, "[A].[x] + [A].[x].[y]"), "+A].[x] + [B].[x].[y]");
    EXPECT_EQ(Renamed(list, "[A].[x].[y] + [A].[x]"), "+[B].[x].[y] + A].[x]");
    EXPECT_EQ(Renamed(list, "a[0] + [A].[x].[y]"), "+a0] + [B].[x].[y]");
    EXPECT_EQ(Renamed(list, "[A].[x].[y] tail [open"), "+[B].[x].[y] tail open");
    EXPECT_EQ(Renamed(list, "[A].[x][A].[x].[y]"), "+A].[x][B].[x].[y]");
    EXPECT_EQ(Renamed(list, "[A].[x].[y] [A].[open"), "+[B].[x].[y] A].[open");
    EXPECT_EQ(Renamed(list, "[A].[x].[y] [A].[x].[open"), "+[B].[x].[y] A].[x].[open");
}

TEST_F(RenameTexts, FollowsTheLastReference) {
    EXPECT_EQ(Renamed(list, "[A].[x].[y] + [C].[x].[y]"), "-[A].[x].[y] + [C].[x].[y]");
    EXPECT_EQ(Renamed(list, "[C].[x].[y] + [A].[x].[y]"), "+[C].[x].[y] + [B].[x].[y]");
}

TEST_F(RenameTexts, KeepsATailThatIsNotClosed) {
    EXPECT_EQ(Renamed(list, "[A].[x].[y].[z"), "+[B].[x].[y].[z");
    EXPECT_EQ(Renamed(list, "[A].[x].[y].[z].[w and [A].[x].[y]"), "+[B].[x].[y].[z].[w and [A].[x].[y]");
}

TEST_F(RenameTexts, TakesBracketsInsideAPartAsText) {
    EXPECT_EQ(Renamed(list, "[[A].[x].[y]"), "-[[A].[x].[y]");
}

TEST_F(RenameTexts, HandlesManyOpenBracketsInLinearTime) {
    const std::string text(2'000'000, '[');
    EXPECT_EQ(Renamed(list, text.c_str()), "-" + text);
}

TEST_F(RenameTexts, CountsCharactersBeyondAscii) {
    list.AddRenameNamespace("\xC3\xA4", "\xF0\x9F\x98\x80");
    EXPECT_EQ(Renamed(list, "\xC3\xA9 [\xC3\xA4].[x].[\xC3\xB6] \xC3\xA9"), "+\xC3\xA9 [\xF0\x9F\x98\x80].[x].[\xC3\xB6] \xC3\xA9");
}

// ---- kept XML

TEST_F(RenameTexts, RenamesInsideFragmentsAsTheyRead) {
    list.AddRenameNamespace("a & b", "c < d");
    EXPECT_EQ(Fragment(list, "<expression>[A].[x].[y]</expression>"), "<expression>[B].[x].[y]</expression>");
    EXPECT_EQ(Fragment(list, "<e>[a &amp; b].[x].[y]</e>"), "<e>[c &lt; d].[x].[y]</e>");
    EXPECT_EQ(Fragment(list, "<e k='[A].[x].[y]' l=''><f/>t</e>"), "<e k=\"[B].[x].[y]\" l=\"\"><f></f>t</e>");
    EXPECT_EQ(Fragment(list, "<e/><f/>"), "<e></e><f></f>");
    EXPECT_EQ(Fragment(list, ""), "");
}

TEST_F(RenameTexts, NormalisesFragmentsThatNameNothing) {
    EXPECT_EQ(Fragment(list, "<e  k='\"'/>"), "<e k=\"&quot;\"></e>");
}

TEST_F(RenameTexts, RenamesEachTextOfAFragmentForItself) {
    EXPECT_EQ(Fragment(list, "<e>[A].[x].[y]<f/>[C].[x].[y]</e>"), "<e>[B].[x].[y]<f></f>[C].[x].[y]</e>");
    EXPECT_EQ(Fragment(list, "<e>[A].[x].<![CDATA[[y]]]></e>"), "<e>[B].[x].[y]</e>");
}

TEST_F(RenameTexts, RaisesAndEmptiesAFragmentThatDoesNotParse) {
    TklByteBuffer buffer;
    buffer << "<e>";
    EXPECT_THROW(list.PerformRenamesEscaped(buffer), TklRuntimeError);
    EXPECT_EQ(buffer.pcount(), 0u);
    EXPECT_EQ(Fragment(list, "<e>[A].[x].[y]</e>"), "<e>[B].[x].[y]</e>") << "and can be used again";
}

// ---- unique names

TEST(UniqueNames, AreTheNameItselfOrTheNextNumber) {
    EXPECT_EQ(Unique("Sales", {}), "Sales");
    EXPECT_EQ(Unique("Sales", {"Sales"}), "Sales1");
    EXPECT_EQ(Unique("Sales", {"Sales", "Sales1"}), "Sales2");
    EXPECT_EQ(Unique("Sales2", {"Sales2"}), "Sales3");
    EXPECT_EQ(Unique("Sales", {"sales"}), "Sales");
}

TEST(UniqueNames, NormaliseTheirNumber) {
    EXPECT_EQ(Unique("Sales007", {}), "Sales7");
    EXPECT_EQ(Unique("Sales0", {}), "Sales");
    EXPECT_EQ(Unique("Sales007", {"Sales7"}), "Sales8");
}

TEST(UniqueNames, MayBeNumbers) {
    EXPECT_EQ(Unique("2005", {"2005"}), "2006");
    EXPECT_EQ(Unique("0", {}), "1") << "the empty name is no name";
    EXPECT_EQ(Unique("", {}), "1");
}

TEST(UniqueNames, TakeASignForPartOfTheName) {
    EXPECT_EQ(Unique("A-5", {"A-5"}), "A-6");
    EXPECT_EQ(Unique("A.5", {"A.5"}), "A.6");
}

TEST(UniqueNames, TakeTheLongestNumberThatFits) {
    const std::string digits(18, '9');
    EXPECT_EQ(Unique(("A1" + digits).c_str(), {("A1" + digits).c_str()}), "A11" + std::string(18, '0'));
}

TEST(UniqueNames, AvoidBothMapsAndEarlierTargets) {
    SMRenameList2 list;
    I18NString result;
    const SMNamespaceMap first = Taken({"Sales"}), second = Taken({"Sales2"});
    list.AddRenameUniqueNamespace("Sales", first, second, result);
    EXPECT_EQ(result, "Sales1");
    list.AddRenameUniqueNamespace("Sales", first, second, result);
    EXPECT_EQ(result, "Sales3") << "1 is a target, 2 is in the second map";
    EXPECT_EQ(Parts(list, "Sales", "x", "y"), "+Sales1.x.y") << "the first rename stays";
}

TEST(UniqueNames, CountATargetThatChangedNothing) {
    SMRenameList2 list;
    I18NString result;
    list.AddRenameUniqueNamespace("Free", {}, {}, result);
    EXPECT_EQ(result, "Free");
    EXPECT_TRUE(list.empty());
    list.AddRenameUniqueNamespace("Free", {}, {}, result);
    EXPECT_EQ(result, "Free1");
}
