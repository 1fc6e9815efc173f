#include "objects/publication/smfunction2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/columns.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;

namespace {

struct Function {
    Function() : project(NewProject()), function(new SMFunction2(project, project)) {}
    explicit Function(const std::string& content) : Function() {
        SMFunctionBuilder builder(function);
        ParseInside(builder, content);
    }
    SMFunction2* operator->() const { return function; }

    ProjectPtr project;
    QvSmartPtr<SMFunction2> function;
};

/** The element of a function without names and id. */
std::string Element(const std::string& content) {
    return "<function><lastChanged></lastChanged><property name=\"id\" type=\"hidden\"></property>"
           "<property name=\"version\" type=\"hidden\">0</property>" +
           content + "</function>";
}

constexpr const char* PARAMETER =
    "<procParameter><parameterName>p</parameterName><mode>in</mode><datatype>date</datatype><size>4</size>"
    "<nullable>true</nullable><aggregationRule>sum</aggregationRule></procParameter>";

}  // namespace

TEST(SMFunction2Xml, WritesItsTwoNamesAlwaysAndTheRestWhenThere) {
    EXPECT_EQ(WriteElement(*Function().function), Element("<canonicalName></canonicalName><dataSourceRef></dataSourceRef>"));
}

TEST(SMFunction2Xml, WritesItsPartsInTheirOrder) {
    const std::string content =
        "<syntaxTip locale=\"en\">f(x)</syntaxTip><canonicalName>c</canonicalName><dataSourceRef>d</dataSourceRef>"
        "<result><datatype>int32</datatype><precision>9</precision><scale>1</scale><size>4</size><nullable>false</nullable></result>"
        "<procParameters>" +
        std::string(PARAMETER) + "</procParameters>";
    EXPECT_EQ(WriteElement(*Function(content).function), Element(content));
}

TEST(SMFunction2Xml, WritesPrecisionAndScaleForNumbersAndCharactersOnly) {
    const std::set<int> types = {2, 3, 4, 5, 6, 7, 8, 9, 16, 17, 18};
    for (int type = -1; type <= 35; ++type) {
        SMDataColumnProperties2 properties;
        properties.dataType = SMEnum_datatype::Enum(type);
        properties.precision = 5;
        Function function;
        function->SetResult(properties);
        const std::string text = Str(function->WriteResultToString());
        const bool has = text.find("<precision>5</precision><scale>0</scale>") != std::string::npos;
        EXPECT_EQ(has, types.count(type) > 0) << type;
        EXPECT_EQ(text.find("<precision>") != std::string::npos, has) << type;
        EXPECT_THAT(text, testing::HasSubstr("<size>0</size><nullable>false</nullable>")) << type;
    }
}

TEST(SMFunctionBuilder, TakesTheDefaultLocaleForASyntaxTipWithoutOne) {
    Function function("<syntaxTip>tip</syntaxTip><syntaxTip locale=\"fr\">conseil</syntaxTip><syntaxTip locale=\"FR\">autre</syntaxTip>");
    ASSERT_EQ(function->GetSyntaxTips().size(), 2u);
    EXPECT_EQ(Str(function->GetSyntaxTips().find("en")->second), "tip");
    EXPECT_EQ(Str(function->GetSyntaxTips().find("fr")->second), "autre");
}

TEST(SMFunctionBuilder, PutsASyntaxTipWithoutProjectAndLocaleUnderTheEmptyKey) {
    const QvSmartPtr<SMFunction2> function = new SMFunction2(nullptr, nullptr);
    SMFunctionBuilder builder(function);
    ParseInside(builder, "<syntaxTip>tip</syntaxTip>");
    EXPECT_EQ(Str(function->GetSyntaxTips().find("")->second), "tip");
}

TEST(SMFunctionBuilder, StartsEachParameterAndTheResultAnew) {
    Function function("<procParameters>" + std::string(PARAMETER) + "<procParameter></procParameter></procParameters><result></result>");
    ASSERT_EQ(function->GetProcParameters().size(), 2u);
    const SMProcParameter2& second = function->GetProcParameters()[1];
    EXPECT_TRUE(second.parameterName.empty());
    EXPECT_TRUE(second.mode.empty());
    EXPECT_EQ(second.properties.dataType, -1);
    EXPECT_FALSE(second.properties.nullable);
    EXPECT_EQ(function->GetResult().dataType, -1);
    EXPECT_EQ(function->GetResult().size, 0);
    EXPECT_TRUE(function->GetResult().isPresent);
}

TEST(SMFunctionBuilder, GivesAResultNothingOfTheParameterBeforeIt) {
    Function function(std::string(PARAMETER) + "<result></result>");
    EXPECT_EQ(function->GetProcParameters().at(0).properties.size, 4);
    EXPECT_EQ(function->GetResult().size, 0);
    EXPECT_EQ(function->GetResult().dataType, -1);
}

TEST(SMFunctionBuilder, HandsUnknownTagsToTheBase) {
    CapturedLog log;
    Function function("<sql></sql><property name=\"p\">x</property><description locale=\"en\">d</description>");
    EXPECT_THAT(log.Messages(), ElementsAre("4 Unknown tag 'sql'", "4 Unknown tag 'sql'"));
    EXPECT_EQ(Str(function->GetProperty("p")->value), "x");
    EXPECT_EQ(Str(function->GetDescription()), "d");
}

TEST(SMFunction2Rows, NamesNoKeyColumns) {
    Function function;
    EXPECT_TRUE(function->GetIdCol().empty());
    EXPECT_TRUE(function->GetVersionCol().empty());
    EXPECT_TRUE(function->GetParentIdCol().empty());
    EXPECT_TRUE(function->GetParentVersionCol().empty());
}

TEST(SMFunction2Rows, StoresNoRecordWithoutParametersAndResult) {
    RecordingContext context;
    EXPECT_TRUE(Function()->write(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_InsertObject SM_FUNCTION", "EndObject"));
}

TEST(SMFunction2Rows, HasColumnsForItsNamesAndItsPlace) {
    Function function("<canonicalName>c</canonicalName><dataSourceRef>d</dataSourceRef><description locale=\"en\">x</description>");
    function->displayOrder = 7;
    const auto columns = ColumnsOf(*function.function);
    EXPECT_THAT(std::vector<std::string>(columns.end() - 3, columns.end()),
                ElementsAre("CANONICALNAME S \"c\"", "DATASOURCEREF S \"d\"", "DISPLAY_ORDER L 7"));
    EXPECT_THAT(columns, testing::Not(testing::Contains(testing::StartsWith("DESCRIPTION"))));
}

TEST(SMFunction2Rows, ReadsItsResultBackButNotItsParameters) {
    Function function("<result><size>3</size></result><procParameters>" + std::string(PARAMETER) + "</procParameters>"), other;
    function->SetId("i");
    StoreContext store;
    ASSERT_TRUE(function->write(store));
    other->SetId("i");
    other->SetVersionNo(function->GetVersionNo());
    ASSERT_TRUE(other->read(store));
    EXPECT_TRUE(other->GetResult().isPresent);
    EXPECT_EQ(other->GetResult().size, 3);
    EXPECT_TRUE(other->GetProcParameters().empty());
}

TEST(SMFunction2Rows, LogsAMissingCanonicalName) {
    CapturedLog log;
    Function function;
    function->constructFromIOParameter(
        *Row().Text("id", "i").Text("name", "n").Text("description", "").Text("screenTip", "").Text("dataSourceRef", "d"));
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].module + "/" + log.Events()[0].className, "smfunction2/SMFunction2");
    EXPECT_TRUE(function->GetDataSourceRef().empty());
}
