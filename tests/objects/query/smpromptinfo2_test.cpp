#include "objects/query/smpromptinfo2_002_000.h"

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
    QvSmartPtr<SMPromptInfo2> prompt = new SMPromptInfo2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMPromptInfoBuilder builder(prompt);
        ParseInside(builder, elements);
    }
};

}  // namespace

TEST(SMPromptInfo2Xml, LeavesOutTheEmptyIdAndEmptyReferences) {
    const Fixture fixture;
    EXPECT_EQ(WriteElement(*fixture.prompt), "<promptInfo version=\"0\"><promptType></promptType></promptInfo>");
}

TEST(SMPromptInfo2Xml, HasNoReferenceForCascading) {
    const Fixture fixture;
    fixture.prompt->SetId("p");
    fixture.prompt->SetVersionNo(2);
    fixture.prompt->SetPromptType("editBox");
    fixture.prompt->SetPromptDisplayItemRef("[d]");
    fixture.prompt->SetPromptFilterItemRef("[f]");
    fixture.prompt->SetPromptUseItemRef("[u]");
    fixture.prompt->SetPromptCascadeOnRef("[c]");
    EXPECT_EQ(WriteElement(*fixture.prompt),
              "<promptInfo id=\"p\" version=\"2\"><promptType>editBox</promptType><promptDisplayItemRef>[d]</promptDisplayItemRef>"
              "<promptFilterItemRef>[f]</promptFilterItemRef><promptUseItemRef>[u]</promptUseItemRef></promptInfo>");
}

TEST(SMPromptInfo2Builder, ReadsItsFourTexts) {
    const Fixture fixture(
        "<promptType>selectValue</promptType><promptDisplayItemRef>[d]</promptDisplayItemRef>"
        "<promptFilterItemRef>[f]</promptFilterItemRef><promptUseItemRef>[u]</promptUseItemRef>");
    EXPECT_EQ(fixture.prompt->GetPromptType(), "selectValue");
    EXPECT_EQ(fixture.prompt->GetPromptDisplayItemRef(), "[d]");
    EXPECT_EQ(fixture.prompt->GetPromptFilterItemRef(), "[f]");
    EXPECT_EQ(fixture.prompt->GetPromptUseItemRef(), "[u]");
}

TEST(SMPromptInfo2Builder, LogsForeignElementsAndReadsTheOthers) {
    const CapturedLog log;
    const Fixture fixture("<promptCascadeOnRef>[c]</promptCascadeOnRef><promptType>editBox</promptType><property>x</property>");
    EXPECT_EQ(fixture.prompt->GetPromptType(), "editBox");
    const LoggedEvent start{4, "SMPromptInfo2", "SMPromptInfoBuilder", "realStartElement", "Unknown tag 'promptCascadeOnRef'", ""};
    const LoggedEvent end{4, "SMPromptInfo2", "SMPromptInfoBuilder", "realEndElement", "Unknown tag 'promptCascadeOnRef'", ""};
    const LoggedEvent knownStart{4, "SMPromptInfo2", "SMPromptInfoBuilder", "realStartElement", "Unknown tag 'property'", ""};
    const LoggedEvent knownEnd{4, "SMPromptInfo2", "SMPromptInfoBuilder", "realEndElement", "Unknown tag 'property'", ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(start, end, knownStart, knownEnd));
}

TEST(SMPromptInfo2Rows, HaveTheReferenceForCascadingButNotTheOneInUse) {
    const Fixture fixture;
    fixture.prompt->SetPromptCascadeOnRef("[c]");
    fixture.prompt->SetPromptUseItemRef("[u]");
    StoreContext store;
    fixture.prompt->SetId("p");
    ASSERT_TRUE(fixture.prompt->write(store));
    EXPECT_THAT(store.Names(), testing::ElementsAre("AT_InsertObject SM_PROMPTINFO", "EndObject"));
    const QvSmartPtr<SMPromptInfo2> read = new SMPromptInfo2(fixture.project, fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_PROMPTINFO", "p"));
    EXPECT_EQ(read->GetPromptCascadeOnRef(), "[c]");
    EXPECT_EQ(read->GetPromptUseItemRef(), "");
    EXPECT_THAT(store.Faults(), testing::IsEmpty());
}

TEST(SMPromptInfo2Rows, LogAMissingKeyUnderTheOldModuleWord) {
    const CapturedLog log;
    const Fixture fixture;
    const Row row = Row().Text("id", "p").Text("promptType", "editBox").Text("promptFilterItemRef", "[f]");
    fixture.prompt->constructFromIOParameter(*row);
    EXPECT_EQ(fixture.prompt->GetPromptType(), "editBox");
    EXPECT_EQ(fixture.prompt->GetPromptFilterItemRef(), "");
    ASSERT_EQ(log.Events().size(), 1u);
    const LoggedEvent& event = log.Events()[0];
    EXPECT_EQ(event.level, 1);
    EXPECT_EQ(event.module, "smpromtinfo2");
    EXPECT_EQ(event.className, "SMPromptInfo2");
    EXPECT_EQ(event.method, "constructFromIOParameter");
    EXPECT_THAT(event.message, testing::StartsWith("Error reading object. Message: "));
    EXPECT_THAT(event.detail, testing::StartsWith("Probably a missing parameter: "));
}

TEST(SMPromptInfo2Model, TellsWhetherASetterChangedSomething) {
    const Fixture fixture;
    EXPECT_TRUE(fixture.prompt->SetPromptType("editBox"));
    EXPECT_FALSE(fixture.prompt->SetPromptType("editBox"));
}

TEST(SMPromptInfo2Model, RenamesAllFourReferences) {
    const Fixture fixture;
    const I18NString before("[A].[x].[y]"), after("[B].[x].[y]");
    fixture.prompt->SetPromptCascadeOnRef(before);
    fixture.prompt->SetPromptDisplayItemRef(before);
    fixture.prompt->SetPromptFilterItemRef(before);
    fixture.prompt->SetPromptUseItemRef(before);
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.prompt->RenameObjects(list);
    EXPECT_EQ(fixture.prompt->GetPromptCascadeOnRef(), after);
    EXPECT_EQ(fixture.prompt->GetPromptDisplayItemRef(), after);
    EXPECT_EQ(fixture.prompt->GetPromptFilterItemRef(), after);
    EXPECT_EQ(fixture.prompt->GetPromptUseItemRef(), after);
}
