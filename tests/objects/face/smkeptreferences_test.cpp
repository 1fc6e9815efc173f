#include "objects/face/smkeptreferences_002_000.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/tklerrors.h"

namespace {

using namespace schema_002_000;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Texts = std::vector<std::string>;

Texts Scan(const std::string& xml, SMKeptNames names = SMKeptNames::references) {
    Texts texts;
    SMForEachKeptReference(xml, names, [&](std::string_view text) { texts.emplace_back(text); });
    return texts;
}

TEST(SMKeptReferences, HandsOnReferencesInTheirOrder) {
    EXPECT_THAT(Scan("<e a=\"x>y\">1 <refobj>[a].[b]</refobj> + <f><viewref>v</viewref></f><dataSourceRef>d</dataSourceRef></e>"),
                ElementsAre("[a].[b]", "v", "d"));
    EXPECT_THAT(Scan("<refobj>[a]</refobj>"), ElementsAre("[a]"));
}

TEST(SMKeptReferences, LeavesOutEmptyOnesAndOtherTexts) {
    EXPECT_THAT(Scan("<e><refobj></refobj><refobj/><refobjx>x</refobjx>[a].[b].[c]</e>"), IsEmpty());
}

TEST(SMKeptReferences, TakesTablesAndColumnsInBracketsWhereTheyNameObjects) {
    const std::string sql = "<sql>select <column>[a].[b].[c]</column> from <table>[a].[b]</table> as <table>t0</table></sql>";
    EXPECT_THAT(Scan(sql, SMKeptNames::tablesToo), ElementsAre("[a].[b].[c]", "[a].[b]"));
    EXPECT_THAT(Scan(sql), IsEmpty());
}

TEST(SMKeptReferences, UndoesEscapes) {
    EXPECT_THAT(Scan("<e><refobj>[&amp;&lt;&gt;&quot;]</refobj></e>"), ElementsAre("[&<>\"]"));
}

TEST(SMKeptReferences, ReadsOtherFormsThroughTheParser) {
    EXPECT_THAT(Scan("<e><!-- <refobj>no</refobj> --><refobj>[a]</refobj></e>"), ElementsAre("[a]"));
    EXPECT_THAT(Scan("<e><refobj><![CDATA[[a<b]]]></refobj></e>"), ElementsAre("[a<b]"));
    EXPECT_THAT(Scan("<e><refobj>[&#xE9;&apos;]</refobj></e>"), ElementsAre("[\xC3\xA9']"));
    EXPECT_THAT(Scan("<e><refobj a=\">\">[a]</refobj></e>"), ElementsAre("[a]"));
    EXPECT_THAT(Scan("<e><refobj\n>[a]</refobj ></e>"), ElementsAre("[a]"));
    EXPECT_THAT(Scan("<p:e xmlns:p=\"u\"><p:refobj>[a]</p:refobj></p:e>"), ElementsAre("[a]"));
    EXPECT_THAT(Scan("<?xml version=\"1.0\"?><e><refobj>[a]</refobj></e>"), ElementsAre("[a]"));
    EXPECT_THAT(Scan("<e><refobj>[a\r\nb]</refobj></e>"), ElementsAre("[a\nb]"));
}

TEST(SMKeptReferences, FindsTheSameInBothForms) {
    for (const std::string inner : {"<refobj>[a]</refobj>", "x<refobj>[&lt;]</refobj>y", "<refobj></refobj>", "<a><b c=\"d\"></b></a>",
                                    "<refobj>[a]</refobj><refobj>[b]</refobj>", "<viewref> [a] </viewref>"})
        EXPECT_EQ(Scan("<e>" + inner + "</e>"), Scan("<e><!---->" + inner + "</e>")) << inner;
}

TEST(SMKeptReferences, RaisesForTextThatIsNoXml) {
    EXPECT_THROW(Scan("<e><refobj>[a]"), TklRuntimeError);
    EXPECT_THROW(Scan("<e><refobj>[a]</e></refobj>&x;"), TklRuntimeError);
}

}  // namespace
