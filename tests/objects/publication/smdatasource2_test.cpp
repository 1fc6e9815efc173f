#include "objects/publication/smdatasource2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/columns.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

struct DataSource {
    DataSource() : project(NewProject()), source(new SMDatasource2(project, project)) { source->AddName("en", "d"); }
    explicit DataSource(const std::string& content) : DataSource() {
        SMDatasourceBuilder builder(source);
        ParseInside(builder, content);
    }
    SMDatasource2* operator->() const { return source; }

    ProjectPtr project;
    QvSmartPtr<SMDatasource2> source;
};

/** The element of a data source named "d" that has no id. */
std::string Element(const std::string& content) {
    return "<dataSource><name locale=\"en\">d</name><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
           "<property name=\"version\" type=\"hidden\">0</property>" +
           content + "</dataSource>";
}

constexpr const char* CONTENT =
    "<queryProcessing>limitedLocal</queryProcessing><rollupProcessing>extended</rollupProcessing><catalog>c</catalog><cube>k</cube>"
    "<type a=\"1\"><interface>OL</interface></type><connectionString>s</connectionString><aliasTableMapRef>r</aliasTableMapRef>"
    "<cmDataSource>m</cmDataSource><schema>h</schema>";

}  // namespace

// ---- memory

TEST(SMDatasource2Model, IsTheSameAsItsCopy) {
    DataSource source(CONTENT);
    SMDatasourceContents contents;
    source->CopyContents(contents);
    EXPECT_EQ(Str(contents.type), "<type a=\"1\"><interface>OL</interface></type>");
    EXPECT_EQ(Str(contents.name), "d");
    EXPECT_TRUE(source->IsSameAs(contents));
}

TEST(SMDatasource2Model, DiffersInEachField) {
    DataSource source(CONTENT);
    SMDatasourceContents same;
    source->CopyContents(same);
    for (I18NString SMDatasourceContents::*field :
         {&SMDatasourceContents::cmDataSource, &SMDatasourceContents::catalog, &SMDatasourceContents::cube, &SMDatasourceContents::schema,
          &SMDatasourceContents::connectionString, &SMDatasourceContents::aliasTableMapRef, &SMDatasourceContents::name,
          &SMDatasourceContents::type}) {
        SMDatasourceContents other = same;
        other.*field = "other";
        EXPECT_FALSE(source->IsSameAs(other));
    }
    SMDatasourceContents processing = same, rollup = same;
    processing.queryProcessing = SMEnum_queryProcessing::databaseOnly;
    rollup.rollupProcessing = SMEnum_rollupProcessing::local;
    EXPECT_FALSE(source->IsSameAs(processing));
    EXPECT_FALSE(source->IsSameAs(rollup));
}

TEST(SMDatasource2Model, ComparesAMissingTypeWithTheEmptyText) {
    DataSource source;
    SMDatasourceContents contents;
    contents.name = "d";
    EXPECT_TRUE(source->IsSameAs(contents));
    contents.type = "<type></type>";
    EXPECT_FALSE(source->IsSameAs(contents));
}

// ---- document

TEST(SMDatasource2Xml, WritesItsPartsInTheirOrder) {
    EXPECT_EQ(WriteElement(*DataSource(CONTENT).source), Element(CONTENT));
}

TEST(SMDatasource2Xml, WritesNothingThatIsNotThere) {
    EXPECT_EQ(WriteElement(*DataSource().source), Element(""));
}

TEST(SMDatasource2Xml, MarksTheTargetOfTheProjectWhateverItHasRead) {
    QvULString target = "d";
    DataSource source("<property name=\"isTarget\" type=\"hidden\">true</property>");
    EXPECT_TRUE(source->IsTarget());
    EXPECT_EQ(WriteElement(*source.source), Element(""));
    source.project->m_targetDataSourceName = &target;
    EXPECT_EQ(WriteElement(*source.source), Element("<property name=\"isTarget\" type=\"hidden\">true</property>"));
    target = "e";
    EXPECT_EQ(WriteElement(*source.source), Element(""));
}

TEST(SMDatasource2Xml, LeavesConnectionAndSchemaOutWhenToldTo) {
    DataSource source("<cmDataSource>m</cmDataSource><schema>h</schema>");
    source.project->m_writeDataSourceSchema = false;
    EXPECT_EQ(WriteElement(*source.source), Element(""));
    const auto columns = ColumnsOf(*source.source);
    EXPECT_THAT(columns, testing::IsSupersetOf({"CMDATASOURCE S \"m\"", "SCHEMA S \"h\""}));
}

TEST(SMDatasource2Xml, WritesConnectionAndSchemaWithoutAProject) {
    const QvSmartPtr<SMDatasource2> source = new SMDatasource2(nullptr, nullptr);
    source->SetCmDataSource("m");
    source->SetSchema("h");
    EXPECT_THAT(WriteElement(*source), testing::EndsWith("<cmDataSource>m</cmDataSource><schema>h</schema></dataSource>"));
}

TEST(SMDatasourceBuilder, PutsANameWithoutALocaleUnderTheDefaultOne) {
    DataSource source("<name>n</name><name locale=\"fr\">f</name>");
    EXPECT_EQ(Str(source->GetName()), "n");
    EXPECT_EQ(Str(source->GetName("en")), "n");
    EXPECT_EQ(Str(source->GetName("fr")), "f");
}

TEST(SMDatasourceBuilder, LetsAnyPropertyDecideOfTheTarget) {
    EXPECT_TRUE(DataSource("<property name=\"x\">true</property>")->IsTarget());
    EXPECT_FALSE(DataSource("<property name=\"isTarget\">true</property><property name=\"x\">no</property>")->IsTarget());
}

TEST(SMDatasourceBuilder, KeepsPropertiesOtherThanTheTarget) {
    DataSource source(
        "<property name=\"id\">i</property><property name=\"version\">3</property><property name=\"qvref\">w</property>"
        "<property name=\"x\">y</property><property name=\"isTarget\">true</property>");
    EXPECT_EQ(Str(source->GetId()), "i");
    EXPECT_EQ(source->GetVersionNo(), 3);
    EXPECT_EQ(Str(source->GetQvRef()), "w");
    EXPECT_EQ(Str(source->GetProperty("x")->value), "y");
    EXPECT_EQ(source->GetProperty("isTarget"), nullptr);
}

TEST(SMDatasourceBuilder, ReadsTheDateAndTakesUnknownWordsAsUnset) {
    DataSource source("<lastChanged>2020-02-03T04:05:06</lastChanged><queryProcessing>both</queryProcessing>");
    EXPECT_EQ(Str(source->GetLastChangedDate().ToString()), "2020-02-03T04:05:06");
    EXPECT_EQ(source->GetQueryProcessing(), -1);
}

TEST(SMDatasourceBuilder, LogsAndSkipsUnknownTags) {
    CapturedLog log;
    DataSource source("<description>d</description>");
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{4, "smdatasource2", "SMDatasourceBuilder", "realStartElement", "Unknown tag:description", ""},
                            LoggedEvent{4, "smdatasource2", "SMDatasourceBuilder", "realEndElement", "Unknown tag:description", ""}));
}

TEST(SMDatasourceBuilder, KeepsThePrefixOfATypeAtBothEnds) {
    DataSource source("<p:type><p:a></p:a></p:type>");
    ASSERT_NE(source->GetType(), nullptr);
    EXPECT_EQ(std::string(source->GetType()->buffer.view()), "<p:type><p:a></p:a></p:type>");
}

// ---- repository

TEST(SMDatasource2Rows, WritesEmptyTextsForUnsetWords) {
    DataSource source;
    const auto columns = ColumnsOf(*source.source);
    EXPECT_THAT(columns, testing::IsSupersetOf({"QUERYPROCESSING S \"\"", "ROLLUPPROCESSING S \"\"", "NAME S \"d\""}));
}

TEST(SMDatasource2Rows, LeavesWordsAloneThatComeEmpty) {
    DataSource source("<queryProcessing>limitedLocal</queryProcessing>");
    Row row;
    row.Text("id", "i").Text("name", "n").Text("queryProcessing", "").Text("rollupProcessing", "local").Text("cmDataSource", "m");
    row.Text("catalog", "c").Text("cube", "k").Text("schema", "h").Text("connectionString", "s").Text("aliasTableMapRef", "r");
    source->constructFromIOParameter(*row);
    EXPECT_EQ(source->GetQueryProcessing(), SMEnum_queryProcessing::limitedLocal);
    EXPECT_EQ(source->GetRollupProcessing(), SMEnum_rollupProcessing::local);
    EXPECT_EQ(Str(source->GetAliasTableMapRef()), "r");
}

TEST(SMDatasource2Rows, LogsAMissingKeyAndStopsThere) {
    CapturedLog log;
    DataSource source;
    source->constructFromIOParameter(*Row().Text("id", "i").Text("name", "n").Text("queryProcessing", "limitedLocal"));
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].module + "/" + log.Events()[0].className, "smdatasource2/SMDatasource2");
    EXPECT_EQ(source->GetQueryProcessing(), SMEnum_queryProcessing::limitedLocal);
    EXPECT_EQ(Str(source->GetId()), "i");
}

TEST(SMDatasource2Rows, KeepsItsTypeInARecord) {
    DataSource source(CONTENT), other;
    source->SetId("i");
    StoreContext store;
    ASSERT_TRUE(source->write(store));
    EXPECT_THAT(store.Names(),
                ElementsAre("AT_InsertObject SM_DATASOURCE", "AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject", "EndObject"));
    other->SetId("i");
    other->SetVersionNo(source->GetVersionNo());
    ASSERT_TRUE(other->read(store));
    EXPECT_EQ(std::string(other->GetType()->buffer.view()), "<type a=\"1\"><interface>OL</interface></type>");
}

TEST(SMDatasource2Rows, RegistersItsTypeWhenItHasOne) {
    DataSource source(CONTENT);
    source->SetId("i");
    source.project->AppendDataSource(source.source);
    source.project->AddDataSourceOrReturnExisting("without a type", "", "", SMEnum_queryProcessing::databaseOnly);
    MapId2RemainingInfo records;
    source.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
    EXPECT_EQ(records.Size(), 2u);  // the other one is the list of locales
    ASSERT_NE(records.Find("i/type"), nullptr);
    EXPECT_EQ(Str(records.Find("i/type")->value), "<type a=\"1\"><interface>OL</interface></type>");
}
