// Lists that stand twice, and what stands beside or outside of its list.
#include "objects/face/smaccounting_002_000.h"

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/facemodel.h"
#include "tests/support/toldlosses.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Subject(const std::string& content, const std::string& inProject = {}) {
    return ModelDocument(NamespaceElement("n", "<querySubject><name locale=\"en\">s</name>" + content + "</querySubject>") + inProject);
}

std::string Source(const std::string& name, const std::string& attributes = {}, const std::string& content = {}) {
    return "<dataSource" + attributes + "><name locale=\"en\">" + name + "</name>" + content + "</dataSource>";
}

std::string Determinant(const std::string& name) {
    return "<determinant><name>" + name + "</name><canGroup>true</canGroup><identifiesRow>true</identifiesRow></determinant>";
}

}  // namespace

TEST(SMAccountingOfLists, KnowsThatReadersJoinThem) {
    const std::vector<std::string> documents = {
        Subject("", "<dataSources>" + Source("a") + "</dataSources><dataSources>" + Source("b") + "</dataSources>"),
        Subject("", "<locales><locale>fr</locale></locales>"),
        Subject("<determinants>" + Determinant("d") + "</determinants><determinants>" + Determinant("e") + "</determinants>")};
    for (const std::string& document : documents) EXPECT_THAT(LossesOf(document), IsEmpty());
}

TEST(SMAccountingOfLists, TellsWhatIsLostOfTheOneThatIsJoined) {
    const std::string lists =
        "<dataSources>" + Source("a", "", "<zz>x</zz>") + "</dataSources><dataSources>" + Source("b") + "</dataSources>";
    EXPECT_THAT(LossesOf(Subject("", lists)), ElementsAre(HasSubstr("<zz> in (dataSource).(a).() is not kept (10 bytes)")));
    const std::string text = "<dataSources>stray" + Source("a") + "</dataSources><dataSources>" + Source("b") + "</dataSources>";
    EXPECT_THAT(LossesOf(Subject("", text)), ElementsAre(HasSubstr("the text of <dataSources>")));
    const std::string three = "<dataSources id=\"x\">" + Source("a") + "</dataSources><dataSources id=\"y\">" + Source("b") +
                              "</dataSources><dataSources>" + Source("c") + "</dataSources>";
    EXPECT_THAT(LossesOf(Subject("", three)),
                ElementsAre(HasSubstr("the attribute id of <dataSources>"), HasSubstr("the attribute id of <dataSources>")));
    const std::string attribute = "<dataSources zz=\"1\">" + Source("a") + "</dataSources><dataSources>" + Source("b") + "</dataSources>";
    EXPECT_THAT(LossesOf(Subject("", attribute)), ElementsAre(HasSubstr("the attribute zz of <dataSources>")));
}

TEST(SMAccountingOfLists, TellsOneAsAWholeThatAnotherReplaces) {
    const std::string end = "<refobj>[n].[s]</refobj><mincard>one</mincard><maxcard>many</maxcard>", left = "<left>" + end + "</left>";
    const std::string document =
        ModelDocument(NamespaceElement("n", "<querySubject><name locale=\"en\">s</name></querySubject><relationship><name>r</name>" + left +
                                                left + "<right>" + end + "</right></relationship>"));
    EXPECT_THAT(LossesOf(document), ElementsAre(HasSubstr("<left> in [n].[r] is not kept (" + std::to_string(left.size()) + " bytes)")));
}

TEST(SMAccountingOfLists, TakesNothingOfOneForWhatIsAnywhereElse) {
    const std::string definition =
        "<definition><dbQuery><sources><dataSourceRef>[].[dataSources].[a]</dataSourceRef></sources><sql>s</sql>"
        "</dbQuery></definition>";
    const std::string document =
        ModelDocument(NamespaceElement("n", "<querySubject><name locale=\"en\">s</name>" + definition + definition + "</querySubject>" +
                                                "<zz><querySubject><name locale=\"en\">t</name>" + definition + "</querySubject></zz>"));
    EXPECT_THAT(LossesOf(document),
                testing::Contains(HasSubstr("<definition> in [n].[s] is not kept (" + std::to_string(definition.size()) + " bytes)")));
}

TEST(SMAccountingOfLists, KnowsThatReadersJoinThemInAnObjectOutsideOfItsOwn) {
    const auto key = [](const std::string& item) { return "<key><refobj>[n].[s].[" + item + "]</refobj></key>"; };
    const std::string determinant = "<determinant><name>d</name>" + key("a") + key("b") + "<zz/></determinant>";
    EXPECT_THAT(LossesOf(Subject(determinant)), ElementsAre(HasSubstr("<zz> in [n].[s] is not kept")));
}

TEST(SMAccountingOfLists, LooksAtEachAttributeOfWhatStandsOutsideOfThem) {
    const std::vector<std::pair<std::string, std::string>> secrets = {
        {Subject("", Source("d", " x:secret=\"gone\"")), "x:secret of <dataSource>"},
        {Subject("<queryItem><name locale=\"en\">i</name><externalName><format xml:lang=\"gone\">f</format></externalName></queryItem>"),
         "xml:lang of <format>"},
        {Subject("", "<locale zz=\"1\">fr</locale>"), "zz of <locale>"},
        {Subject("<description locale=\"en\"><screenTip locale=\"en\" id=\"\">tip</screenTip></description>"), "id of <screenTip>"}};
    for (const auto& [document, attribute] : secrets)
        EXPECT_THAT(LossesOf(document), ElementsAre(HasSubstr("the attribute " + attribute))) << document;
    EXPECT_THAT(LossesOf(Subject("", Source("d"))), IsEmpty());
}

TEST(SMAccountingOfLists, LooksAtEmptyElementsOfWhatStandsOutsideOfThem) {
    EXPECT_THAT(LossesOf(Subject("", Source("d", "", "<zz></zz>"))), ElementsAre(HasSubstr("<zz> in (dataSource).(d).() is not kept")));
}
