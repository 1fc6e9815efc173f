#include "objects/publication/smrole2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/columns.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;

namespace {

struct Role {
    Role() : project(NewProject()), role(new SMRole2(project, project)) {}
    explicit Role(const std::string& content) : Role() {
        SMRoleBuilder builder(role);
        ParseInside(builder, content);
    }
    SMRole2* operator->() const { return role; }

    ProjectPtr project;
    QvSmartPtr<SMRole2> role;
};

}  // namespace

TEST(SMRole2Xml, WritesItsIdentityAlwaysAndIntrinsicWhenTrue) {
    Role role;
    EXPECT_EQ(WriteElement(*role.role), "<role id=\"\" version=\"0\"></role>");
    role->SetId("i");
    role->SetVersionNo(4);
    role->SetIntrinsic(true);
    role->AddName("en", "_key");
    EXPECT_EQ(WriteElement(*role.role), "<role id=\"i\" version=\"4\" intrinsic=\"true\"><name locale=\"en\">_key</name></role>");
}

TEST(SMRole2Xml, WritesNeitherPropertiesNorTheDate) {
    Role role;
    role->SetProperty("p", "t", "v");
    role->SetLastChangedDateToNow();
    EXPECT_EQ(WriteElement(*role.role), "<role id=\"\" version=\"0\"></role>");
}

TEST(SMRoleBuilder, TakesIntrinsicFromAnElementOnly) {
    EXPECT_TRUE(Role("<intrinsic>true</intrinsic>")->IsIntrinsic());
    EXPECT_FALSE(Role("<intrinsic>True</intrinsic>")->IsIntrinsic());
    Role written;
    written->SetIntrinsic(true);
    const std::string text = WriteElement(*written.role);
    Role read;
    SMRoleBuilder builder(read.role);
    ParseInside(builder, text.substr(text.find('>') + 1, text.rfind('<') - text.find('>') - 1) + "<name locale=\"en\">n</name>");
    EXPECT_FALSE(read->IsIntrinsic());
    EXPECT_EQ(Str(read->GetName()), "n");
}

TEST(SMRoleBuilder, LogsAPropertyAsUnknown) {
    CapturedLog log;
    Role role("<property name=\"id\">i</property>");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag 'property'", "4 Unknown tag 'property'"));
    EXPECT_TRUE(role->GetId().empty());
}

TEST(SMRole2Rows, WritesItsLanguageRows) {
    Role role("<name locale=\"en\">n</name><name locale=\"fr\">m</name>");
    RecordingContext context;
    EXPECT_TRUE(role->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_ROLES", "AT_WriteLangText", "EndObject"));
}

TEST(SMRole2Rows, HasNoColumnForIntrinsic) {
    Role role;
    role->SetIntrinsic(true);
    const auto columns = ColumnsOf(*role.role);
    for (const std::string& line : columns) EXPECT_THAT(line, testing::Not(testing::HasSubstr("INTRINSIC")));
    EXPECT_EQ(Str(role->GetParentIdCol()), "QS_ITEM_ID");
}
