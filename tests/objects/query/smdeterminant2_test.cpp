#include "objects/query/smdeterminant2_002_000.h"

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
    QvSmartPtr<SMDeterminant2> determinant = new SMDeterminant2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMDeterminantBuilder builder(determinant);
        ParseInside(builder, elements);
    }
};

Row FullRow(const char* key, const char* attributes) {
    return Row()
        .Text("id", "d")
        .Text("name", "grain")
        .Put("canGroup", new IOBoolParam(true))
        .Put("identifiesRow", new IOBoolParam(true))
        .Text("key", key)
        .Text("attributes", attributes);
}

}  // namespace

TEST(SMDeterminant2Xml, WritesNameAndFlagsAlways) {
    const Fixture fixture;
    EXPECT_EQ(
        WriteElement(*fixture.determinant),
        "<determinant id=\"\" version=\"0\"><name></name><canGroup>false</canGroup><identifiesRow>false</identifiesRow></determinant>");
}

TEST(SMDeterminant2Xml, WritesEachListThatHasEntries) {
    const Fixture fixture;
    fixture.determinant->SetName("grain");
    fixture.determinant->AddKeyRefObj("[k]");
    fixture.determinant->AddKeyRefObj("[k]");
    fixture.determinant->AddAttrRefObj("[a]");
    fixture.determinant->SetCanGroup(true);
    EXPECT_EQ(WriteElement(*fixture.determinant),
              "<determinant id=\"\" version=\"0\"><name>grain</name><key><refobj>[k]</refobj><refobj>[k]</refobj></key>"
              "<attributes><refobj>[a]</refobj></attributes><canGroup>true</canGroup><identifiesRow>false</identifiesRow></determinant>");
}

TEST(SMDeterminant2Builder, PutsReferencesIntoTheListThatWasOpenedLast) {
    const Fixture fixture(
        "<refobj>dropped</refobj><name>grain</name><key><refobj>[k1]</refobj><refobj>[k2]</refobj></key>"
        "<attributes><refobj>[a]</refobj></attributes><refobj>[late]</refobj><canGroup>true</canGroup><identifiesRow>TRUE</identifiesRow>");
    EXPECT_EQ(fixture.determinant->GetName(), "grain");
    EXPECT_THAT(fixture.determinant->GetKeyRefObjs(), testing::ElementsAre("[k1]", "[k2]"));
    EXPECT_THAT(fixture.determinant->GetAttrRefObjs(), testing::ElementsAre("[a]", "[late]"));
    EXPECT_TRUE(fixture.determinant->CanGroup());
    EXPECT_FALSE(fixture.determinant->IdentifiesRow());
}

TEST(SMDeterminant2Builder, TakesProperties) {
    const CapturedLog log;
    const Fixture fixture("<property name=\"id\" type=\"hidden\">d1</property><property name=\"x\">1</property>");
    EXPECT_EQ(fixture.determinant->GetId(), "d1");
    EXPECT_EQ(fixture.determinant->GetProperty("x")->value, "1");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMDeterminant2Builder, LogsUnknownElements) {
    const CapturedLog log;
    const Fixture fixture("<other></other>");
    const LoggedEvent start{4, "smdeterminant2", "SMDeterminantBuilder", "realStartElement", "Unknown tag:other", ""};
    const LoggedEvent end{4, "smdeterminant2", "SMDeterminantBuilder", "realEndElement", "Unknown tag:other", ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(start, end));
}

TEST(SMDeterminant2Rows, HoldAnEmptyElementForAnEmptyList) {
    const Fixture fixture;
    fixture.determinant->SetId("d");
    fixture.determinant->SetName("grain");
    fixture.determinant->AddAttrRefObj("[a] & b");
    RecordingContext context;
    ASSERT_TRUE(fixture.determinant->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_DETERMINANT", "EndObject"));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre("DETERMINANT_ID S \"d\"", "DETERMINANT_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                                     "LASTCHANGED D null", "NAME S \"grain\"", "CANGROUP B false", "IDENTIFIESROW B false",
                                     "KEY_REFOBJS S \"<key></key>\"",
                                     "ATTRIBUTES_REFOBJS S \"<attributes><refobj>[a] &amp; b</refobj></attributes>\""));
}

TEST(SMDeterminant2Rows, BringTheListsBack) {
    const CapturedLog log;
    const Fixture fixture;
    fixture.determinant->constructFromIOParameter(
        *FullRow("<key><refobj>[k1]</refobj><refobj>[k2]</refobj></key>", "<attributes></attributes>"));
    EXPECT_EQ(fixture.determinant->GetName(), "grain");
    EXPECT_TRUE(fixture.determinant->CanGroup());
    EXPECT_TRUE(fixture.determinant->IdentifiesRow());
    EXPECT_THAT(fixture.determinant->GetKeyRefObjs(), testing::ElementsAre("[k1]", "[k2]"));
    EXPECT_THAT(fixture.determinant->GetAttrRefObjs(), testing::IsEmpty());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMDeterminant2Rows, TakeAnEmptyTextForNoList) {
    const CapturedLog log;
    const Fixture fixture;
    fixture.determinant->constructFromIOParameter(*FullRow("", ""));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMDeterminant2Rows, KeepWhatWasReadOfABrokenListAndReadTheOther) {
    const CapturedLog log;
    const Fixture fixture;
    fixture.determinant->constructFromIOParameter(
        *FullRow("<key><refobj>[k]</refobj><refobj>", "<attributes><refobj>[a]</refobj></attributes>"));
    EXPECT_THAT(fixture.determinant->GetKeyRefObjs(), testing::ElementsAre("[k]"));
    EXPECT_THAT(fixture.determinant->GetAttrRefObjs(), testing::ElementsAre("[a]"));
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].module, "smdeterminant2");
    EXPECT_EQ(log.Events()[0].className, "SMDeterminant2");
    EXPECT_EQ(log.Events()[0].method, "constructFromIOParameter");
}

TEST(SMDeterminant2Model, RenamesKeysAndAttributes) {
    const Fixture fixture;
    fixture.determinant->AddKeyRefObj("[A].[x].[k]");
    fixture.determinant->AddAttrRefObj("[A].[x].[a]");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.determinant->RenameObjects(list);
    EXPECT_THAT(fixture.determinant->GetKeyRefObjs(), testing::ElementsAre("[B].[x].[k]"));
    EXPECT_THAT(fixture.determinant->GetAttrRefObjs(), testing::ElementsAre("[B].[x].[a]"));
}
