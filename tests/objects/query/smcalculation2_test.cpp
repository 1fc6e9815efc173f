#include "objects/query/smcalculation2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMCalculation2> calculation = new SMCalculation2(project->GetRootNamespace(), project);

    explicit Fixture(const std::string& elements = "") {
        SMCalculationBuilder builder(calculation);
        ParseInside(builder, elements);
    }
    std::string Text() const { return WriteElement(*calculation); }
};

const std::string FRAME = "<property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>";

}  // namespace

TEST(SMCalculation2Xml, WritesItsFieldsInAnOrderOfItsOwn) {
    const CapturedLog log;
    const Fixture fixture(
        "<name locale=\"en\">margin</name><description locale=\"en\">d</description><screenTip locale=\"en\">s</screenTip>"
        "<externalName>e</externalName><hidden>true</hidden><format>f</format><currency>c</currency><datatype>decimal</datatype>"
        "<lastChanged>2020-01-02T03:04:05</lastChanged><nullable>true</nullable><precision>10</precision>"
        "<regularAggregate>count</regularAggregate><scale>2</scale><semiAggregate>median</semiAggregate><size>8</size>"
        "<aggregationRule>average</aggregationRule><displayType>link</displayType><mimeType>m</mimeType><usage>fact</usage>"
        "<expression>x</expression><promptInfo><promptType>editBox</promptType></promptInfo><sortOnRef>[s]</sortOnRef>"
        "<unSortable>true</unSortable><sort>ascending</sort><roles><role><name locale=\"en\">r</name></role></roles>"
        "<calcType>unknown</calcType><collationSequenceName>lost</collationSequenceName>");
    fixture.calculation->SetStatus(SMEnum_status::valid);
    EXPECT_TRUE(SameXml(
        "<calculation status=\"valid\"><name locale=\"en\">margin</name><description locale=\"en\">d</description>"
        "<screenTip locale=\"en\">s</screenTip>" +
            FRAME +
            "<externalName>e</externalName><hidden>true</hidden><format>f</format><currency>c</currency><datatype>decimal</datatype>"
            "<lastChanged>2020-01-02T03:04:05</lastChanged><nullable>true</nullable><precision>10</precision>"
            "<regularAggregate>count</regularAggregate><scale>2</scale><semiAggregate>median</semiAggregate><size>8</size>"
            "<aggregationRule>average</aggregationRule><displayType>link</displayType><mimeType>m</mimeType><usage>fact</usage>"
            "<expression>x</expression><promptInfo version=\"0\"><promptType>editBox</promptType></promptInfo><sortOnRef>[s]</sortOnRef>"
            "<unSortable>true</unSortable><sort>ascending</sort><roles><role id=\"\" version=\"0\"><name "
            "locale=\"en\">r</name></role></roles>"
            "<calcType>unknown</calcType></calculation>",
        fixture.Text()));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMCalculation2Xml, LeavesOutWhatIsUnset) {
    const Fixture fixture;
    EXPECT_EQ(fixture.Text(), "<calculation>" + FRAME + "<lastChanged></lastChanged><size>0</size></calculation>");
}

TEST(SMCalculation2Xml, HasPrecisionForFewerTypesThanItems) {
    const std::set<int> types = {2, 3, 4, 5, 6, 7, 8, 9, 16, 17, 18};
    for (int type = -1; type <= 35; ++type) {
        const Fixture fixture;
        fixture.calculation->SetDatatype(SMEnum_datatype::Enum(type));
        const bool has = fixture.Text().find("<precision>0</precision><scale>0</scale>") != std::string::npos;
        EXPECT_EQ(has, types.count(type) > 0) << type;
        EXPECT_EQ(fixture.Text().find("<precision>") != std::string::npos, has) << type;
    }
}

TEST(SMCalculation2Xml, WritesTheItemsOfTwoListsUnderTheListsTag) {
    const Fixture fixture;
    fixture.calculation->AddHierarchyRef("[h]");
    fixture.calculation->AddDimensionRef("[d]");
    fixture.calculation->AddDimensionRef("[d]");
    fixture.calculation->AddDataSourceRef("[s]");
    const std::string text = fixture.Text();
    EXPECT_THAT(text, testing::HasSubstr("<hierarchies><hierarchies>[h]</hierarchies></hierarchies>"
                                         "<dimensions><dimensions>[d]</dimensions><dimensions>[d]</dimensions></dimensions>"
                                         "<dataSources><dataSourceRef>[s]</dataSourceRef></dataSources></calculation>"));
    const CapturedLog log;
    const Fixture read(
        "<hierarchies><hierarchies>[h]</hierarchies></hierarchies><dataSources><dataSourceRef>[s]</dataSourceRef></dataSources>");
    EXPECT_THAT(read.calculation->GetHierarchyRefs(), testing::IsEmpty());
    EXPECT_THAT(read.calculation->GetDataSourceRefs(), testing::ElementsAre("[s]"));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMCalculation2Xml, WritesFiltersAsItReadsThem) {
    const CapturedLog log;
    const std::string filters =
        "<previewFilters><previewFilter><refobj>[p]</refobj><displayName>p</displayName><expression>1</expression></previewFilter>"
        "</previewFilters><securityFilters><securityFilterDefinition><securityObject type=\"role\"><displayPath>d</displayPath>"
        "<cmSearchPath>c</cmSearchPath></securityObject><basedOn><cmSearchPath>b</cmSearchPath></basedOn><refobj>[s]</refobj>"
        "<displayName>s</displayName><expression>2</expression></securityFilterDefinition></securityFilters>";
    const Fixture fixture("<expression>own</expression>" + filters);
    EXPECT_THAT(fixture.Text(), testing::HasSubstr(filters + "</calculation>"));
    EXPECT_EQ(fixture.calculation->GetExpressionStr(), "own");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMCalculation2Builder, PutsReferencesIntoTheListOpenedLast) {
    const CapturedLog log;
    const Fixture fixture(
        "<refobj>dropped</refobj><dimensions><refobj>[d]</refobj></dimensions><refobj>[late]</refobj>"
        "<hierarchies><refobj>[h]</refobj></hierarchies><previewFilters><previewFilter><refobj>[p]</refobj></previewFilter></"
        "previewFilters>");
    EXPECT_THAT(fixture.calculation->GetDimensionRefs(), testing::ElementsAre("[d]", "[late]"));
    EXPECT_THAT(fixture.calculation->GetHierarchyRefs(), testing::ElementsAre("[h]"));
    EXPECT_EQ(fixture.calculation->GetPreviewFilters().at(0).refobj, "[p]");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMCalculation2Builder, TakesAnExpressionInsideASecurityObjectForItsOwn) {
    const Fixture fixture(
        "<securityFilters><securityFilterDefinition><securityObject><expression>own</expression></securityObject>"
        "</securityFilterDefinition></securityFilters>");
    EXPECT_EQ(fixture.calculation->GetExpressionStr(), "own");
}

TEST(SMCalculation2Builder, TakesATForNullable) {
    EXPECT_TRUE(Fixture("<nullable>t</nullable>").calculation->IsNullable());
    EXPECT_TRUE(Fixture("<nullable>true</nullable>").calculation->IsNullable());
    EXPECT_FALSE(Fixture("<nullable>T</nullable>").calculation->IsNullable());
}

TEST(SMCalculation2Model, HasTheIdOfATopLevelObject) {
    const Fixture fixture;
    fixture.calculation->AddName("en", "Margin & more");
    EXPECT_EQ(fixture.calculation->GetSMID(false), "[Sales].[Margin & more]");
    EXPECT_EQ(fixture.calculation->GetSMID(true), "[Sales].[Margin &amp; more]");
    EXPECT_EQ(fixture.calculation->GetModelType(), 30);
}

TEST(SMCalculation2Model, WalksItsFilters) {
    const std::string filter = "<refobj>[A].[x].[y]</refobj><expression>[A].[x].[y] 'old'</expression>";
    const Fixture fixture("<expression>'old'</expression><previewFilters><previewFilter>" + filter +
                          "</previewFilter></previewFilters><securityFilters><securityFilterDefinition>" + filter +
                          "</securityFilterDefinition></securityFilters>");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.calculation->RenameObjects(list);
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.calculation->RegenerateIds(ids);
    const auto& preview = fixture.calculation->GetPreviewFilters().at(0);
    const auto& security = fixture.calculation->GetSecurityFilters().at(0);
    EXPECT_EQ(preview.refobj, "[B].[x].[y]");
    EXPECT_EQ(security.refobj, "[B].[x].[y]");
    EXPECT_EQ(InnerXmlOf(preview.expression), "[B].[x].[y] 'new'");
    EXPECT_EQ(InnerXmlOf(security.expression), "[B].[x].[y] 'new'");
    EXPECT_EQ(fixture.calculation->GetExpressionStr(), "'new'");
}

TEST(SMCalculation2Rows, HaveTheColumnsOfACalculation) {
    const Fixture fixture(
        "<name locale=\"en\">margin</name><description "
        "locale=\"en\">lost</description><datatype>decimal</datatype><nullable>true</nullable>"
        "<sort>desending</sort><size>8</size><expression>x</expression>");
    fixture.calculation->SetId("c");
    fixture.calculation->SetQvRef("w");
    RecordingContext context;
    fixture.calculation->SetLastChangedDate(QvDate(false));
    ASSERT_TRUE(fixture.calculation->write(context));
    EXPECT_THAT(context.Attributes(0),
                testing::ElementsAre("CALCULATION_ID S \"c\"", "CALC_VERSION_NO L 1", "SECTION_ID S \"\"", "SECTION_VERSION_NO L 0",
                                     "LASTCHANGED D null", "NAME S \"margin\"", "WAREHOUSE_OBJECT_ID S \"w\"", "CALCTYPE S \"\"",
                                     "EXTERNALNAME S \"\"", "SORT S \"desending\"", "UNSORTABLE B false", "SORTONREF S \"\"",
                                     "SEMIAGGREGATE S \"\"", "REGULARAGGREGATE S \"\"", "MIMETYPE S \"\"", "DISPLAYTYPE S \"\"",
                                     "AGGREGATIONRULE S \"\"", "SCALE L 0", "NULLABLE S \"t\"", "CAL_SIZE L 8", "PRECISION L 0",
                                     "DATATYPE S \"decimal\"", "CURRENCY S \"\"", "FORMAT S \"\"", "USAGE S \"\"", "HIDDEN B false",
                                     "DISPLAY_ORDER L 0", "STATUS S \"\"", "EXPRESSION S \"x\""));
}

TEST(SMCalculation2Rows, KeepTextsOfOtherLocalesAndThePromptAlone) {
    const Fixture fixture(
        "<name locale=\"en\">margin</name><name locale=\"fr\">marge</name><promptInfo></promptInfo><roles><role></role></roles>"
        "<property name=\"custom\">lost</property><previewFilters><previewFilter></previewFilter></previewFilters>");
    RecordingContext context;
    ASSERT_TRUE(fixture.calculation->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_CALCULATION", "AT_WriteLangText", "AT_InsertObject SM_PROMPTINFO",
                                                      "EndObject", "EndObject"));
}

TEST(SMCalculation2Rows, BringBackWhatHasAColumn) {
    const CapturedLog log;
    const std::string elements =
        "<name locale=\"en\">margin</name><externalName>e</externalName><hidden>true</hidden><format>f</format><currency>c</currency>"
        "<datatype>decimal</datatype><nullable>true</nullable><precision>10</precision><regularAggregate>count</regularAggregate>"
        "<scale>2</scale><semiAggregate>median</semiAggregate><size>8</size><aggregationRule>average</aggregationRule>"
        "<displayType>link</displayType><mimeType>m</mimeType><usage>fact</usage><expression>x</expression>"
        "<promptInfo><promptType>editBox</promptType></promptInfo><sortOnRef>[s]</sortOnRef><unSortable>true</unSortable>"
        "<sort>ascending</sort><calcType>unknown</calcType>";
    const Fixture fixture(elements);
    fixture.calculation->SetId("c");
    fixture.calculation->SetStatus(SMEnum_status::invalid);
    StoreContext store;
    ASSERT_TRUE(fixture.calculation->write(store));
    const QvSmartPtr<SMCalculation2> read = new SMCalculation2(fixture.project->GetRootNamespace(), fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_CALCULATION", "c"));
    ASSERT_TRUE(read->read(store));
    EXPECT_TRUE(SameXml(fixture.Text(), WriteElement(*read)));
    EXPECT_THAT(store.Faults(), testing::IsEmpty());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMCalculation2Rows, LogAMissingColumnAndKeepWhatCameBefore) {
    const CapturedLog log;
    const Fixture fixture;
    const Row row = Row()
                        .Text("id", "c")
                        .Text("name", "n")
                        .Text("description", "")
                        .Text("screenTip", "")
                        .Text("calcType", "")
                        .Text("externalName", "e");
    fixture.calculation->constructFromIOParameter(*row);
    EXPECT_EQ(fixture.calculation->GetExternalName(), "e");
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].module, "smcalculation2");
    EXPECT_EQ(log.Events()[0].className, "SMCalculation2");
}
