#include "objects/query/smupdatesubject2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMUpdateSubject2> subject = new SMUpdateSubject2(project->GetRootNamespace(), project, project->GetRootNamespace());

    explicit Fixture(const std::string& elements) {
        SMUpdateSubjectBuilder builder(subject);
        ParseInside(builder, elements);
    }
};

}  // namespace

TEST(SMUpdateSubject2Xml, HasNoStatus) {
    const CapturedLog log;
    const Fixture fixture("<definition><mdQuery></mdQuery></definition><previewFilters><previewFilter></previewFilter></previewFilters>");
    fixture.subject->SetStatus(SMEnum_status::valid);
    EXPECT_EQ(
        WriteElement(*fixture.subject),
        "<updateSubject><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
        "<property name=\"version\" type=\"hidden\">0</property><definition id=\"\"><mdQuery></mdQuery></definition></updateSubject>");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMUpdateSubject2Builder, LogsTheItemsThatItHasNoPlaceFor) {
    const CapturedLog log;
    const Fixture fixture("<queryItem></queryItem>");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'queryItem'", "4 Unknown tag 'queryItem'"));
}

TEST(SMUpdateSubject2Rows, HaveAStatusAndTextsOfOtherLocales) {
    const Fixture fixture("<name locale=\"fr\">n</name><externalizeAutoSummary>false</externalizeAutoSummary>");
    fixture.subject->SetId("u");
    fixture.subject->SetStatus(SMEnum_status::needsReevaluation);
    fixture.subject->SetExternalizeMethod(SMEnum_externalizeMethod::default_);
    RecordingContext context;
    ASSERT_TRUE(fixture.subject->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_UPDATE_SUBJECT", "AT_WriteLangText",
                                                      "AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject", "EndObject"));
    EXPECT_THAT(
        context.Attributes(0),
        testing::ElementsAre("UPDATE_QS_ID S \"u\"", "UPD_QS_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                             "LASTCHANGED D null", "NAME S \"\"", "DESCRIPTION S \"\"", "SCREENTIP S \"\"", "WAREHOUSE_OBJECT_ID S \"\"",
                             "STATUS S \"needsReevaluation\"", "EXTERNALIZEMETHOD S \"default\"", "DISPLAY_ORDER L 0"));
}

TEST(SMUpdateSubject2Model, HasTheTypesOfAnUpdateSubject) {
    const Fixture fixture("<name locale=\"en\">U</name>");
    EXPECT_EQ(static_cast<int>(fixture.subject->GetSMType()), 185);
    EXPECT_EQ(fixture.subject->GetModelType(), 9);
    EXPECT_EQ(fixture.subject->GetTagName(), "updateSubject");
    EXPECT_EQ(fixture.subject->GetSMID(false), "[Sales].[U]");
    EXPECT_TRUE(fixture.subject->GetQueryItems().empty());
}
