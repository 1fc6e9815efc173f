#include "objects/query/smdefinition2_002_000.h"

#include <gmock/gmock.h>

#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject("Sales");
    QvSmartPtr<SMQuerySubject2> subject = new SMQuerySubject2(project->GetRootNamespace(), project, project->GetRootNamespace());
    QvSmartPtr<SMDefinition2> definition = new SMDefinition2(subject, project);

    explicit Fixture(const std::string& elements = "") {
        subject->AddName("en", "Orders");
        SMDefinitionBuilder builder(definition);
        ParseInside(builder, elements);
        definition->SetLastChangedDate(QvDate(false));
    }
    bool IsStamped() const { return definition->GetLastChangedDate().IsSet(); }
    std::string Text() const { return WriteElement(*definition); }
    Row StoredRow() const {
        return Row().Text("id", "d").Text("name", "n").Text("description", "").Text("screenTip", "").Text("qvref", "");
    }
};

std::string InDefinition(const std::string& content) {
    return "<definition id=\"\">" + content + "</definition>";
}

}  // namespace

// ---- document

TEST(SMDefinition2Xml, WritesADatabaseQueryInItsOrder) {
    const CapturedLog log;
    const Fixture fixture(
        "<dbQuery multiDb=\"false\"><tableType>view</tableType><filters><filterDefinition apply=\"asNeeded\"><expression>x</expression>"
        "<displayName>f</displayName><refobj>[f]</refobj></filterDefinition><filterDefinition></filterDefinition></filters>"
        "<sql "
        "type=\"oracle\">select</sql><generateSQL>asView</generateSQL><sources><dataSourceRef>[d]</dataSourceRef></sources></dbQuery>");
    EXPECT_TRUE(SameXml(
        InDefinition(
            "<dbQuery><sources><dataSourceRef>[d]</dataSourceRef></sources><generateSQL>asView</generateSQL>"
            "<sql type=\"oracle\">select</sql><filters><filterDefinition apply=\"asNeeded\"><refobj>[f]</refobj>"
            "<displayName>f</displayName><expression>x</expression></filterDefinition><filterDefinition></filterDefinition></filters>"
            "<tableType>view</tableType></dbQuery>"),
        fixture.Text()));
    EXPECT_TRUE(fixture.definition->GetDBQuery()->multiDb) << "presence alone counts";
    EXPECT_FALSE(Fixture("<dbQuery></dbQuery>").definition->GetDBQuery()->multiDb);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMDefinition2Xml, WritesAModelQueryWithoutSources) {
    const Fixture fixture(
        "<modelQuery><sources><dataSourceRef>dropped</dataSourceRef></sources><tableType>view</tableType>"
        "<generateSQL>minimized</generateSQL><sql>s</sql><filters><filterDefinition "
        "apply=\"always\"></filterDefinition></filters></modelQuery>");
    EXPECT_EQ(fixture.Text(), InDefinition("<modelQuery><generateSQL>minimized</generateSQL><sql>s</sql><filters>"
                                           "<filterDefinition apply=\"always\"></filterDefinition></filters></modelQuery>"));
}

TEST(SMDefinition2Xml, KeepsThreeFormsAsTheyStand) {
    for (const char* form : {"mdQuery", "storedProcedure", "queryOperation"}) {
        const std::string element = "<" + std::string(form) + " a=\"1\">text<inner></inner></" + form + ">";
        const Fixture fixture(element);
        EXPECT_EQ(fixture.Text(), InDefinition(element));
        EXPECT_EQ(fixture.definition->GetQueryTypeName(), form);
        EXPECT_EQ(fixture.definition->GetQuery(), nullptr);
    }
}

TEST(SMDefinition2Xml, WritesTheFirstOfSeveralForms) {
    const Fixture fixture("<queryOperation>o</queryOperation><storedProcedure>p</storedProcedure>");
    EXPECT_EQ(fixture.Text(), InDefinition("<storedProcedure>p</storedProcedure>"));
    const Fixture both("<mdQuery></mdQuery><modelQuery></modelQuery><dbQuery></dbQuery>");
    EXPECT_EQ(both.Text(), InDefinition("<dbQuery><sources></sources></dbQuery>"));
    EXPECT_NE(both.definition->GetModelQuery(), nullptr) << "kept, though not written";
    EXPECT_EQ(both.definition->GetQueryTypeName(), "dbQuery");
}

TEST(SMDefinition2Xml, LogsADefinitionWithoutContents) {
    const CapturedLog log;
    const Fixture fixture("<name locale=\"en\">n</name>");
    EXPECT_EQ(fixture.Text(), InDefinition(""));
    EXPECT_EQ(fixture.definition->GetQueryTypeName(), "");
    const LoggedEvent contents{4, "smdefinition2", "SMDefinition2", "WriteXMLElement", "Found a definition with no contents.", ""};
    const LoggedEvent query{4, "smdefinition2", "SMDefinition2", "GetQueryTypeName", "Definition 'n' has no query.", ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(contents, query));
}

// ---- builders

TEST(SMDefinition2Builder, LogsUnknownElementsOfEachKindAndPassesKnownOnesInSilence) {
    const auto events = [](const std::string& before, const std::string& after) {
        const CapturedLog log;
        const Fixture fixture(before + "<other>text</other><usage>x</usage>" + after);
        return log.Events();
    };
    const auto both = [](const char* className) {
        const LoggedEvent start{4, "smdefinition2", className, "realStartElement", "Unknown tag:other", ""};
        const LoggedEvent end{4, "smdefinition2", className, "realEndlement", "Unknown tag:other", ""};
        return std::vector<LoggedEvent>{start, end};
    };
    EXPECT_EQ(events("<dbQuery>", "</dbQuery>"), both("SMDefinitionBuilder::DBQueryBuilder"));
    EXPECT_EQ(events("<modelQuery>", "</modelQuery>"), both("SMDefinitionBuilder::ModelQueryBuilder"));
    EXPECT_EQ(events("<dbQuery><filters><filterDefinition>", "</filterDefinition></filters></dbQuery>"),
              both("SMDefinitionBuilder::FilterDefinitionBuilder"));
}

TEST(SMDefinition2Builder, LogsAPropertyAndTakesTexts) {
    const CapturedLog log;
    const Fixture fixture("<definition><name locale=\"en\">n</name></definition><property name=\"id\">d</property>");
    EXPECT_EQ(fixture.definition->GetName(), "n");
    EXPECT_THAT(log.Messages(), testing::ElementsAre("4 Unknown tag 'property'", "4 Unknown tag 'property'"));
}

TEST(SMDefinition2Builder, ReadsTheDateOfAFilter) {
    const Fixture fixture("<modelQuery><filterDefinition><lastChanged>2020-01-02T03:04:05</lastChanged></filterDefinition></modelQuery>");
    EXPECT_EQ(fixture.definition->GetQuery()->filterDefinitions[0]->GetLastChangedDate(), QvDate("2020-01-02T03:04:05"));
}

// ---- memory

TEST(SMDefinition2Model, SetsTheSqlRawAndWithoutAStamp) {
    const Fixture fixture("<dbQuery></dbQuery>");
    fixture.definition->SetSql("select &lt; 1", SMEnum_sqlType::native);
    EXPECT_EQ(fixture.definition->GetQuery()->sql->buffer.view(), "<sql type=\"native\">select &lt; 1</sql>");
    fixture.definition->SetSql("<b></b>", SMEnum_sqlType::db2);
    EXPECT_EQ(fixture.definition->GetQuery()->sql->buffer.view(), "<sql type=\"db2\"><b></b></sql>");
    EXPECT_FALSE(fixture.IsStamped());
}

TEST(SMDefinition2Model, HasNoPlaceForSqlInAKeptForm) {
    const Fixture fixture("<mdQuery>q</mdQuery>");
    const std::string before = fixture.Text();
    fixture.definition->SetSql("select", SMEnum_sqlType::native);
    EXPECT_EQ(fixture.Text(), before);
}

TEST(SMDefinition2Model, StampsItselfWhenAFilterChanges) {
    const Fixture fixture("<modelQuery></modelQuery>");
    auto& query = *fixture.definition->GetQuery();
    const auto stamps = [&](auto change) {
        fixture.definition->SetLastChangedDate(QvDate(false));
        change();
        return fixture.IsStamped();
    };
    EXPECT_TRUE(stamps([&] { query.AddOrUpdateFilterDefinition(SMEnum_apply::always, "f", "x"); }));
    EXPECT_FALSE(stamps([&] { query.AddOrUpdateFilterDefinition(SMEnum_apply::always, "f", "x"); }));
    EXPECT_TRUE(stamps([&] { query.AddOrUpdateFilterDefinition(SMEnum_apply::asNeeded, "f", "x"); }));
    EXPECT_TRUE(stamps([&] { query.AddOrUpdateFilterDefinition(SMEnum_apply::asNeeded, "f", "y"); }));
    query.filterDefinitions[0]->expression = nullptr;
    EXPECT_TRUE(stamps([&] { query.AddOrUpdateFilterDefinition(SMEnum_apply::asNeeded, "f", "y"); }));
    EXPECT_EQ(query.filterDefinitions.size(), 1u);
    EXPECT_EQ(InnerXmlOf(query.filterDefinitions[0]->expression), "y");
    EXPECT_FALSE(stamps([&] { query.RemoveFilterDefinition("unknown"); }));
    EXPECT_TRUE(stamps([&] { query.RemoveFilterDefinition("f"); }));
    EXPECT_TRUE(query.filterDefinitions.empty());
    EXPECT_FALSE(fixture.subject->GetLastChangedDate().IsSet());
}

TEST(SMDefinition2Model, RemovesTheFirstFilterOfANameAndKeepsTheOrder) {
    const std::string twin = "<filterDefinition><displayName>f</displayName><refobj>2</refobj></filterDefinition>";
    const Fixture fixture(
        "<modelQuery><filterDefinition><displayName>a</displayName></filterDefinition>"
        "<filterDefinition><displayName>f</displayName><refobj>1</refobj></filterDefinition>" +
        twin + "</modelQuery>");
    auto& filters = fixture.definition->GetQuery()->filterDefinitions;
    fixture.definition->GetQuery()->RemoveFilterDefinition("f");
    ASSERT_EQ(filters.size(), 2u);
    EXPECT_EQ(filters[0]->displayName, "a");
    EXPECT_EQ(filters[1]->refobj, "2");
}

TEST(SMDefinition2Model, RefersToADataSourceOnce) {
    const Fixture fixture("<dbQuery></dbQuery>");
    fixture.definition->GetDBQuery()->AddOrUpdateDataSourceRef("[d]");
    EXPECT_TRUE(fixture.IsStamped());
    fixture.definition->SetLastChangedDate(QvDate(false));
    fixture.definition->GetDBQuery()->AddOrUpdateDataSourceRef("[d]");
    EXPECT_FALSE(fixture.IsStamped());
    EXPECT_THAT(fixture.definition->GetDBQuery()->dataSourceRefs, testing::ElementsAre("[d]"));
}

TEST(SMDefinition2Model, RenamesAndRegeneratesFiltersButNotTheSql) {
    const Fixture fixture(
        "<dbQuery><sources><dataSourceRef>[A].[x].[y]</dataSourceRef></sources><sql>[A].[x].[y] 'old'</sql><filters><filterDefinition>"
        "<refobj>[A].[x].[y]</refobj><expression>[A].[x].[y] 'old'</expression></filterDefinition></filters></dbQuery>");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.definition->RenameObjects(list);
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.definition->RegenerateIds(ids);
    const auto& query = *fixture.definition->GetDBQuery();
    EXPECT_THAT(query.dataSourceRefs, testing::ElementsAre("[B].[x].[y]"));
    EXPECT_EQ(query.filterDefinitions[0]->refobj, "[B].[x].[y]");
    EXPECT_EQ(InnerXmlOf(query.filterDefinitions[0]->expression), "[B].[x].[y] 'new'");
    EXPECT_EQ(InnerXmlOf(query.sql), "[A].[x].[y] 'old'");
    EXPECT_NE(fixture.definition->GetId(), "");
}

TEST(SMDefinition2Model, EntersFiltersAndSourcesOrItsKeptFormIntoTheMapOfASave) {
    const auto entries = [](const std::string& elements) {
        const Fixture fixture(elements);
        MapId2RemainingInfo records;
        fixture.definition->SetId("d");
        fixture.subject->SetDefinition(fixture.definition);
        fixture.project->GetRootNamespace()->AddQuerySubject(fixture.subject);
        fixture.project->InitAndAddSetPIDIDAndMiniObject(nullptr, nullptr, nullptr, &records);
        std::vector<std::string> lines;
        for (const char* tag : {"filterDefinition", "sources", "mdQuery", "storedProcedure", "queryOperation"})
            if (const auto* entry = records.Find(("d/" + std::string(tag)).c_str())) lines.push_back(Str(entry->value));
        return lines;
    };
    const std::string filters = "<filters><filterDefinition></filterDefinition></filters>", kept = "<queryOperation>o</queryOperation>";
    EXPECT_THAT(entries("<dbQuery>" + filters + "</dbQuery>" + kept),
                testing::ElementsAre("<filterDefinition></filterDefinition>", "<sources></sources>"));
    EXPECT_THAT(entries("<modelQuery>" + filters + "</modelQuery>"), testing::ElementsAre("<filterDefinition></filterDefinition>"));
    EXPECT_THAT(entries("<dbQuery></dbQuery>"), testing::ElementsAre("<sources></sources>"));
    EXPECT_THAT(entries(kept + "<mdQuery>q</mdQuery>"), testing::ElementsAre("<mdQuery>q</mdQuery>"));
    EXPECT_THAT(entries(""), testing::IsEmpty());
}

TEST(SMDefinition2Model, HasAPathOfItsOwn) {
    const Fixture fixture;
    I18NString path;
    fixture.definition->getPath(path);
    EXPECT_EQ(path, "definition/[Sales].[Orders]");
    EXPECT_EQ(static_cast<int>(fixture.definition->GetSMType()), 37);
}

TEST(SMDefinition2Model, ListsBothQueriesAndTheirFilters) {
    const Fixture fixture("<modelQuery><filterDefinition></filterDefinition></modelQuery><dbQuery></dbQuery>");
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children, filters;
    fixture.definition->getChildObjects(children);
    EXPECT_THAT(std::vector<IOObject*>(children.begin(), children.end()),
                testing::ElementsAre(fixture.definition->GetDBQuery(), fixture.definition->GetModelQuery()));
    fixture.definition->GetModelQuery()->getChildObjects(filters);
    ASSERT_EQ(filters.size(), 1u);
    EXPECT_EQ(static_cast<int>(fixture.definition->GetDBQuery()->GetSMType()), 32);
    EXPECT_EQ(static_cast<int>(fixture.definition->GetModelQuery()->GetSMType()), 103);
    EXPECT_EQ(static_cast<int>(fixture.definition->GetModelQuery()->filterDefinitions[0]->GetSMType()), 57);
}

// ---- repository

TEST(SMDefinition2Rows, HaveTheColumnsOfTheQuery) {
    const auto columns = [](const std::string& elements) {
        const Fixture fixture(elements);
        RecordingContext context;
        EXPECT_TRUE(fixture.definition->write(context));
        std::vector<std::string> lines = context.Attributes(0);
        lines.erase(lines.begin(), lines.begin() + 9);  // key columns, date, texts, warehouse link
        return lines;
    };
    EXPECT_THAT(columns("<dbQuery></dbQuery>"),
                testing::ElementsAre("MULTIDB B false", "GENERATE_SQL S \"\"", "SQL S \"\"", "TABLE_TYPE S \"\""));
    EXPECT_THAT(
        columns("<dbQuery multiDb=\"\"><sql type=\"db2\">s</sql><tableType>table</tableType><generateSQL>asView</generateSQL></dbQuery>"),
        testing::ElementsAre("MULTIDB B true", "GENERATE_SQL S \"asView\"", "SQL S \"<sql type=\"db2\">s</sql>\"",
                             "TABLE_TYPE S \"table\""));
    EXPECT_THAT(columns("<modelQuery></modelQuery>"), testing::ElementsAre("GENERATE_SQL S \"\""));
    EXPECT_THAT(columns("<modelQuery><sql>s</sql></modelQuery>"), testing::ElementsAre("GENERATE_SQL S \"\"", "SQL S \"<sql>s</sql>\""));
    EXPECT_THAT(columns("<mdQuery></mdQuery>"), testing::IsEmpty());
}

TEST(SMDefinition2Rows, SendFiltersSideBySideAndSourcesInAList) {
    const Fixture fixture(
        "<dbQuery><filters><filterDefinition></filterDefinition><filterDefinition></filterDefinition></filters></dbQuery>");
    fixture.definition->SetId("d");
    RecordingContext context;
    ASSERT_TRUE(fixture.definition->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_DEFINITION", "AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject",
                                                      "AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject", "EndObject"));
    EXPECT_EQ(fixture.definition->WriteFilterDefinitionsToString(),
              "<filterDefinition></filterDefinition><filterDefinition></filterDefinition>");
    const std::string sources = testing::PrintToString(context.Attributes(3));
    EXPECT_THAT(sources, testing::HasSubstr("<sources></sources>"));
}

TEST(SMDefinition2Rows, LogADefinitionWithoutAQueryAndSucceed) {
    const Fixture fixture("<name locale=\"en\">n</name>");
    const CapturedLog log;
    RecordingContext context;
    EXPECT_TRUE(fixture.definition->write(context));
    const LoggedEvent event{4, "smdefinition2", "SMDefinition2", "write_next", "Definition 'n', has no query.", ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(event));
}

TEST(SMDefinition2Rows, BringQueriesOfBothKindsBack) {
    const std::string shared =
        "<generateSQL>minimized</generateSQL><sql type=\"db2\">a &lt; b</sql><filters><filterDefinition apply=\"always\">"
        "<refobj>[f]</refobj><displayName>f</displayName><expression>x</expression></filterDefinition><filterDefinition>"
        "</filterDefinition></filters>";
    const std::pair<const char*, std::string> queries[] = {
        {"dbQuery", "<dbQuery><sources><dataSourceRef>[a]</dataSourceRef><dataSourceRef>[a]</dataSourceRef></sources>" + shared +
                        "<tableType>view</tableType></dbQuery>"},
        {"modelQuery", "<modelQuery>" + shared + "</modelQuery>"}};
    for (const auto& [type, query] : queries) {
        const CapturedLog log;
        const Fixture fixture(query), other;
        fixture.definition->SetId("d");
        StoreContext store;
        ASSERT_TRUE(fixture.definition->write(store));
        other.definition->constructFromIOParameter(*store.RowOf("SM_DEFINITION", "d"), type);
        ASSERT_TRUE(other.definition->read(store));
        EXPECT_EQ(WriteElement(*other.definition), "<definition id=\"d\">" + query + "</definition>");
        EXPECT_THAT(store.Faults(), testing::IsEmpty());
        EXPECT_THAT(log.Events(), testing::IsEmpty());
    }
}

TEST(SMDefinition2Rows, BringBackThatAQueryMayRunOnSeveralDatabases) {
    const Fixture fixture("<dbQuery multiDb=\"false\"></dbQuery>"), other;
    fixture.definition->SetId("d");
    StoreContext store;
    ASSERT_TRUE(fixture.definition->write(store));
    other.definition->constructFromIOParameter(*store.RowOf("SM_DEFINITION", "d"), "dbQuery");
    EXPECT_TRUE(other.definition->GetDBQuery()->multiDb);
}

TEST(SMDefinition2Rows, AskForTheKeptFormsFirstAndStopWhereARecordCannotBeRead) {
    const Fixture fixture("<dbQuery></dbQuery>");
    RecordingContext all;
    ASSERT_TRUE(fixture.definition->read(all));
    ASSERT_EQ(all.Actions().size(), 4u) << testing::PrintToString(all.Names());
    for (std::size_t action = 1; action <= 4; ++action) {
        RecordingContext context;
        context.FailAt(action);
        EXPECT_FALSE(fixture.definition->read(context));
        EXPECT_EQ(context.Actions().size(), action);
    }
}

TEST(SMDefinition2Rows, BringKeptFormsBackWithAnEvent) {
    const Fixture fixture("<storedProcedure a=\"1\">p</storedProcedure>");
    fixture.definition->SetId("d");
    StoreContext store;
    ASSERT_TRUE(fixture.definition->write(store));
    const Fixture other;
    const CapturedLog log;
    other.definition->constructFromIOParameter(*store.RowOf("SM_DEFINITION", "d"), "storedProcedure");
    ASSERT_TRUE(other.definition->read(store));
    EXPECT_EQ(WriteElement(*other.definition), WriteElement(*fixture.definition));
    const LoggedEvent event{4,
                            "smdefinition2",
                            "SMDefinition2",
                            "constructFromIOParameter",
                            "Constructing a definition with query type 'storedProcedure', which we don't know what to do with.",
                            ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(event));
}

TEST(SMDefinition2Rows, KeepDefaultsForColumnsThatAreNull) {
    const CapturedLog log;
    const Fixture fixture;
    fixture.definition->constructFromIOParameter(
        *fixture.StoredRow().Put("multiDb", IOBoolParam::Null()).Put("generateSQL", IOQvStringParam::Null()).Text("sql", ""), "dbQuery");
    EXPECT_FALSE(fixture.definition->GetDBQuery()->multiDb);
    EXPECT_EQ(fixture.definition->GetDBQuery()->generateSQL, SMEnum_generateSQL::Enum(-1));
    EXPECT_FALSE(fixture.definition->GetDBQuery()->sql);
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}
