#include "objects/face/smmodelrename_002_000.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "objects/containers/smnamespace2_002_000.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/** Namespaces A, B and C below a root, and a map whose value is the text. */
SMLoadResult Load(const std::string& value) {
    return SMLoadModelBytes(ModelDocument(NamespaceElement("root", NamespaceElement("A") + NamespaceElement("B") + NamespaceElement("C")) +
                                          MapElement("m", value)));
}

std::vector<std::string> Messages(const SMResult& result) {
    std::vector<std::string> messages;
    for (const SMDiagnostic& diagnostic : result.diagnostics) messages.push_back(diagnostic.message);
    return messages;
}

std::string Value(const SMProject2& project) {
    const std::string text = CanonicalText(project);
    const std::size_t from = text.find("<value>") + 7;
    return text.substr(from, text.find("</value>") - from);
}

TEST(SMModelRename, RenamesNamespaceAndReferences) {
    const SMLoadResult loaded = Load("[A].[x].[y]");
    const SMResult renamed = SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out");
    EXPECT_TRUE(renamed.IsDone());
    EXPECT_THAT(Messages(renamed), IsEmpty());
    EXPECT_EQ(Value(*loaded.project), "[Z].[x].[y]");
    ASSERT_TRUE(loaded.project->FindNamespaceByName("Z"));
    EXPECT_FALSE(loaded.project->FindNamespaceByName("A"));
}

TEST(SMModelRename, SwapsNames) {
    const SMLoadResult loaded = Load("[A].[x].[y] [B].[x].[y]");
    const SMNamespace2* const a = loaded.project->FindNamespaceByName("A");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "B"}, {"B", "A"}}, "out")), IsEmpty());
    EXPECT_EQ(loaded.project->FindNamespaceByName("B"), a);
    EXPECT_EQ(Value(*loaded.project), "[B].[x].[y] [A].[x].[y]");
}

TEST(SMModelRename, ThereAndBackGivesTheSameBytes) {
    const SMLoadResult loaded = Load("[A].[x].[y]");
    const std::string before = CanonicalText(*loaded.project);
    SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out");
    EXPECT_NE(CanonicalText(*loaded.project), before);
    SMRenameNamespaces(*loaded.project, {{"Z", "A"}}, "out");
    EXPECT_EQ(CanonicalText(*loaded.project), before);
}

TEST(SMModelRename, ListsTextsThatStillUseTheOldName) {
    const SMLoadResult loaded = Load("[A].[x]");
    const SMResult renamed = SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out");
    ASSERT_TRUE(renamed.IsDone());
    EXPECT_TRUE(renamed.HasFindings());
    ASSERT_THAT(Messages(renamed), ElementsAre("This text still names the namespace 'A': [A].[x]"));
    EXPECT_EQ(renamed.diagnostics[0].file, "out");
    EXPECT_EQ(renamed.diagnostics[0].line, 2);
    EXPECT_GT(renamed.diagnostics[0].column, 100);
    EXPECT_EQ(renamed.diagnostics[0].objectPath, "(parameterMapEntry).().(e1)");
}

TEST(SMModelRename, ListsTextsThatASwapLeavesAsTheyWere) {
    const SMLoadResult loaded = Load("[A].[x] [B].[x]");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "B"}, {"B", "A"}}, "out")),
                ElementsAre(HasSubstr("still names the namespace 'A'"), HasSubstr("still names the namespace 'B'")));
}

TEST(SMModelRename, ListsTextsThatLostABracket) {
    const SMLoadResult loaded = Load("[A].[x].[y] tail [open");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out")),
                ElementsAre("This text lost a bracket: [Z].[x].[y] tail open"));
}

TEST(SMModelRename, DoesNotTakeAnObjectForANamespace) {
    const SMLoadResult loaded = Load("[C].[A].[y]");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out")), IsEmpty());
}

TEST(SMModelRename, RefusesWhatCannotBeDone) {
    struct Case {
        std::vector<SMNamespaceRename> renames;
        const char* why;
    };
    const std::vector<Case> cases = {
        {{{"A", "B"}}, "the name 'B' is taken"},
        {{{"A", "Z"}, {"B", "Z"}}, "the name 'Z' is taken"},
        {{{"missing", "Z"}}, "the model has no namespace 'missing'"},
        {{{"A", "Z"}, {"A", "Y"}}, "'A' is to be renamed twice"},
        {{{"A", "x]y"}}, "'x]y' has a bracket"},
        {{{"A", ""}}, "a namespace must have a name"},
        {{{"A", "x\x01"}}, "a new name has characters that no document can carry"},
        {{{"A", "x\x92y"}}, "a new name has characters that no document can carry"},
        {{{"A", "\xEF\xBF\xBF"}}, "a new name has characters that no document can carry"},
    };
    for (const Case& refused : cases) {
        const SMLoadResult loaded = Load("[A].[x].[y]");
        const std::string before = CanonicalText(*loaded.project);
        const SMResult renamed = SMRenameNamespaces(*loaded.project, refused.renames, "out");
        EXPECT_EQ(renamed.status, SMStatus::failed);
        EXPECT_THAT(Messages(renamed), ElementsAre(HasSubstr(refused.why)));
        EXPECT_EQ(CanonicalText(*loaded.project), before) << refused.why;
    }
}

TEST(SMModelRename, RefusesToRenameANamespaceWithoutAName) {
    const SMLoadResult loaded =
        SMLoadModelBytes(ModelDocument(NamespaceElement("root", NamespaceElement("")) + MapElement("m", "[].[dataSources].[y]")));
    const std::string before = CanonicalText(*loaded.project);
    const SMResult renamed = SMRenameNamespaces(*loaded.project, {{"", "Z"}}, "out");
    EXPECT_EQ(renamed.status, SMStatus::failed);
    EXPECT_THAT(Messages(renamed), ElementsAre(HasSubstr("nothing was renamed: a namespace without a name")));
    EXPECT_EQ(CanonicalText(*loaded.project), before);
}

TEST(SMModelRename, TakesAnyTextThatADocumentCanCarry) {
    for (const char* name : {"a\tb", "\xC3\xA9t\xC3\xA9", "\xEF\xBF\xBD", "\xF0\x9F\x98\x80", "<&>\"'"}) {
        const SMLoadResult loaded = Load("[A].[x].[y]");
        EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", name}}, "out")), IsEmpty());
        EXPECT_TRUE(SMLoadModelBytes(CanonicalText(*loaded.project)).project->FindNamespaceByName(I18NString(name)));
    }
}

TEST(SMModelRename, TakesANameThatIsBeingGivenUp) {
    const SMLoadResult loaded = Load("[A].[x].[y] [B].[x].[y]");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "B"}, {"B", "Z"}}, "out")), IsEmpty());
    EXPECT_EQ(Value(*loaded.project), "[B].[x].[y] [Z].[x].[y]");
}

TEST(SMModelRename, TellsATextOnceForEachName) {
    const SMLoadResult loaded = Load("[A] [A].[x]");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out")), ElementsAre(HasSubstr("'A': [A] [A].[x]")));
}

TEST(SMModelRename, CutsLongTextsBetweenCharacters) {
    std::string value = "[A] x";
    for (int i = 0; i < 100; ++i) value += "\xC3\xA4";
    const SMLoadResult loaded = Load(value);
    const std::vector<std::string> messages = Messages(SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out"));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_THAT(messages[0], ::testing::EndsWith("\xC3\xA4..."));
}

TEST(SMModelRename, SaysNothingOfTextsThatNameOthers) {
    const SMLoadResult loaded = Load("[C].[x] [ [C].[x].[y]");
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out")), IsEmpty());
}

/** A namespace A with objects that link others. */
SMLoadResult LoadLinks() {
    return SMLoadModelBytes(ModelDocument(NamespaceElement(
        "root",
        NamespaceElement("A",
                         "<relationship><name>r</name><expression>[A].[s].[k] = 1"
                         "</expression><left><refobj>[A].[s]</refobj></left><right><refobj>[A].[d].[h]</refobj></right></relationship>"
                         "<shortcut><name locale=\"en\">c</name><refobj>[A].[d].[h]</refobj></shortcut>"
                         "<scopeRelationship><name>o</name><scope><levelRef>[A].[d].[h].[l]</levelRef><measureScope><refobj>[A].[m].[x]"
                         "</refobj></measureScope></scope></scopeRelationship>"))));
}

TEST(SMModelRename, ListsTheEndsOfLinksThatHaveTwoPartsAlone) {
    const SMLoadResult loaded = LoadLinks();
    EXPECT_THAT(Messages(SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out")),
                ElementsAre("This text still names the namespace 'A': [A].[s]"));
    EXPECT_THAT(
        CanonicalText(*loaded.project),
        ::testing::AllOf(HasSubstr("[Z].[s].[k] = 1"), HasSubstr("<right><refobj>[Z].[d].[h]</refobj>"),
                         HasSubstr("<refobj>[Z].[d].[h]</refobj><targetType>"), HasSubstr("[Z].[d].[h].[l]"), HasSubstr("[Z].[m].[x]")));
}

TEST(SMModelRename, BringsLinksThereAndBack) {
    const SMLoadResult loaded = LoadLinks();
    const std::string before = CanonicalText(*loaded.project);
    SMRenameNamespaces(*loaded.project, {{"A", "Z"}}, "out");
    EXPECT_NE(CanonicalText(*loaded.project), before);
    SMRenameNamespaces(*loaded.project, {{"Z", "A"}}, "out");
    EXPECT_EQ(CanonicalText(*loaded.project), before);
}

}  // namespace

TEST(SMModelRename, BringsEachExampleThereAndBack) {
    for (const char* const name : {"minimal.xml", "everything.xml", "foodmart.xml", "tpcds.xml", "multifile/main.xml"}) {
        const SMLoadResult loaded = SMLoadModel(std::string(SMODEL_SOURCE_DIR "/examples/models/") + name);
        const std::string before = CanonicalText(*loaded.project);
        std::vector<SMNamespaceRename> there, back;
        for (const auto& entry : loaded.project->GetNamespaceMap()) {
            there.push_back({std::string(entry.first.utf8()), "renamed " + std::to_string(there.size())});
            back.push_back({there.back().newName, there.back().oldName});
        }
        ASSERT_TRUE(SMRenameNamespaces(*loaded.project, there, "there").IsDone()) << name;
        EXPECT_FALSE(CanonicalText(*loaded.project) == before) << name;
        ASSERT_TRUE(SMRenameNamespaces(*loaded.project, back, "back").IsDone()) << name;
        EXPECT_TRUE(CanonicalText(*loaded.project) == before) << name;
    }
}
