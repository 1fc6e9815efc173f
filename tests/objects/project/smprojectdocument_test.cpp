#include "objects/project/smprojectdocument_002_000.h"

#include <gmock/gmock.h>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/** What the library makes of the content of a project element. */
std::string Rewritten(const std::string& content) {
    return WriteProject(*ParseProject("<project>" + content + "</project>"));
}

LoggedEvent UnknownStart(const char* tag) {
    return {4, "smproject2", "SMProjectBuilder", "realStartElement", std::string("Unknown tag:") + tag, ""};
}

LoggedEvent UnknownEnd(const char* tag) {
    return {4, "smproject2", "SMProjectBuilder", "realEndElement", std::string("Unknown tag '") + tag + "'", ""};
}

const Document MODEL = {.id = "i",
                        .name = "n",
                        .defaultLocale = "en",
                        .locales = {"en", "fr"},
                        .root = NamespaceElement("r", FolderElement("f")),
                        .parameterMaps = R"(<parameterMap hidden="true"><name>m</name><property name="id" type="hidden"></property>)"
                                         R"(<property name="version" type="hidden">0</property></parameterMap>)"};

}  // namespace

TEST(ProjectDocument, IsAFrameWithEmptySectionsWhenEmpty) {
    SMProject2 project;
    EXPECT_TRUE(SameXml(Document{}.Text(), WriteProject(project)));
}

TEST(ProjectDocument, HasTheModelNamespaceAndItsSchema) {
    EXPECT_EQ(GetModelNamespaceUri(), "http://schemas.example.org/schemas/krt/60/0");
    EXPECT_EQ(GetModelSchemaLocation(), "http://schemas.example.org/schemas/krt/60/0 KRTModelSpecification.xsd");
}

TEST(ProjectDocument, ComesBackAsItWas) {
    const CapturedLog log;
    EXPECT_TRUE(SameXml(MODEL.Text(), WriteProject(*ParseProject(MODEL.Text()))));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(ProjectDocument, IsWrittenTheSameByAnyHelper) {
    const ProjectPtr project = ParseProject(MODEL.Text());
    IOHelper plain;
    MultiFileHelper files;
    EXPECT_EQ(WriteProject(*project, &plain), MODEL.Text());
    EXPECT_EQ(WriteProject(*project, &files), MODEL.Text()) << "nothing is to stand alone";
}

TEST(ProjectDocument, DropsVersionDateAndPropertiesOfTheProject) {
    const ProjectPtr project = ParseProject(
        "<project id='i'><property name='version'>3</property><property name='a'>v</property>"
        "<property name='lastChanged'>2001-02-03T04:05:06</property></project>");
    EXPECT_EQ(project->GetVersionNo(), 3);
    EXPECT_EQ(project->GetProperty("a")->value, "v");
    EXPECT_TRUE(SameXml(Document{.id = "i"}.Text(), WriteProject(*project)));
}

TEST(ProjectBuilder, TakesALocaleAnywhere) {
    const ProjectPtr project = ParseProject("<project><locale>outside</locale><locales><locale>inside</locale></locales></project>");
    EXPECT_THAT(project->GetLocales(), ElementsAre("outside", "inside"));
}

TEST(ProjectBuilder, TakesTheLastOfWhatComesTwice) {
    const ProjectPtr project = ParseProject(
        "<project id='1'><name>a</name><name>b</name><defaultLocale>x</defaultLocale>"
        "<defaultLocale>y</defaultLocale></project>");
    EXPECT_EQ(project->GetName(), "b");
    EXPECT_EQ(project->GetDefaultLocale(), "y");
}

TEST(ProjectBuilder, LogsUnknownTagsAndReadsTheirInside) {
    const CapturedLog log;
    const ProjectPtr project = ParseProject("<project><zeb><name>n</name></zeb></project>");
    EXPECT_EQ(project->GetName(), "n");
    EXPECT_THAT(log.Events(), ElementsAre(UnknownStart("zeb"), UnknownEnd("zeb")));
}

TEST(ProjectBuilder, ReadsADocumentUnderAnyPrefixAndRoot) {
    const CapturedLog log;
    const ProjectPtr project = ParseProject("<x:project xmlns:x='u' id='i'><x:name>n</x:name></x:project>");
    EXPECT_EQ(project->GetId(), "i");
    EXPECT_EQ(project->GetName(), "n");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(ProjectBuilder, KeepsIdAndVersionOfTheSectionOfDataSources) {
    EXPECT_THAT(Rewritten("<dataSources id='d' version='2'/>"), HasSubstr("<dataSources id=\"d\" version=\"2\"></dataSources>"));
    for (const char* section : {"<dataSources id='d' version='0'/>", "<dataSources version='1'/>", "<dataSources id='d'/>",
                                "<dataSources id='d' version='-1'/>", "<dataSources id='d' version='x'/>"})
        EXPECT_THAT(Rewritten(section), HasSubstr("<dataSources></dataSources>")) << section;
}

TEST(ProjectBuilder, DropsIdAndVersionOfTheSectionOfViews) {
    EXPECT_THAT(Rewritten("<securityViews id='s' version='2'></securityViews>"), HasSubstr("<securityViews></securityViews>"));
}

TEST(ProjectBuilder, ReadsTheHiddenFlagOfAMapFromItsAttribute) {
    const ProjectPtr project = ParseProject("<project><parameterMap hidden='true'/><parameterMap hidden='TRUE'/><parameterMap/></project>");
    ASSERT_EQ(project->GetParameterMaps().size(), 3u);
    EXPECT_TRUE(project->GetParameterMaps()[0]->IsHidden());
    EXPECT_FALSE(project->GetParameterMaps()[1]->IsHidden());
    EXPECT_FALSE(project->GetParameterMaps()[2]->IsHidden());
}

TEST(ProjectBuilder, HasNoRootUntilItsEnd) {
    ProjectPtr project = NewProject();
    SMProjectBuilder builder(project);
    EXPECT_THROW(ParseInto(builder, "<project><name>n</name><parameterMap/><namespace><name locale='en'>r</name>"), TklRuntimeError);
    EXPECT_EQ(project->GetName(), "n");
    EXPECT_EQ(project->GetParameterMaps().size(), 1u);
    EXPECT_EQ(project->GetRootNamespace(), nullptr);
    EXPECT_TRUE(project->GetNamespaceMap().empty());
}

TEST(ProjectBuilder, TakesTheLastOfTwoRoots) {
    const ProjectPtr project =
        ParseProject("<project><defaultLocale>en</defaultLocale>" + NamespaceElement("a") + NamespaceElement("b") + "</project>");
    EXPECT_EQ(project->GetRootNamespace()->GetName(), "b");
    EXPECT_EQ(project->FindNamespaceByName("a")->GetName(), "a");
}

TEST(ProjectBuilder, MakesARootOfAPlaceholderWithoutAFile) {
    const CapturedLog log;
    const ProjectPtr project =
        ParseProject("<project><defaultLocale>en</defaultLocale><smnamespacefile id='i' name='n'></smnamespacefile></project>");
    ASSERT_NE(project->GetRootNamespace(), nullptr);
    EXPECT_EQ(project->GetRootNamespace()->GetName(), "n");
    EXPECT_EQ(project->GetRootNamespace()->GetId(), "i");
    EXPECT_EQ(project->FindNamespaceByName("n"), project->GetRootNamespace());
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(ProjectBuilder, MakesANamespaceThatIsThereTheRoot) {
    const ProjectPtr project = NewProject("r");
    SMNamespace2* inner = project->GetRootNamespace()->AddOrUpdateNamespace("n", "");
    SMProjectBuilder builder(project);
    ParseInside(builder, "<smnamespacefile id='ignored' name='n'/>");
    EXPECT_EQ(project->GetRootNamespace(), inner);
    EXPECT_EQ(inner->GetId(), "");
}

TEST(ProjectBuilder, LogsAFileThatIsMissing) {
    const CapturedLog log;
    const ProjectPtr project = ParseProject("<project><smnamespacefile name='n' filename='missing' filepath='nowhere'/></project>");
    EXPECT_EQ(project->GetRootNamespace(), nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre("1 Error reading SM model from XML"));
}

TEST(ProjectBuilder, LogsAPackageFileWithoutAName) {
    const CapturedLog log;
    ParseProject("<project><packages><packagefile/></packages></project>");
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smproject2", "SMProjectBuilder", "realStartElement",
                                                      "No filename attribute in packagefile tag.", ""}));
}
