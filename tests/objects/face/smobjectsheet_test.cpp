#include "objects/face/smobjectsheet_002_000.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "objects/query/smqueryitem2_002_000.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

const std::string SUBJECT =
    "<querySubject status=\"valid\"><name locale=\"en\">s</name><name locale=\"fr\">su</name><description locale=\"en\">d</description>"
    "<property name=\"qvref\" type=\"hidden\">w</property><property name=\"id\" type=\"hidden\">ID</property>"
    "<property name=\"version\" type=\"hidden\">7</property>"
    "<definition id=\"D\"><modelQuery><sql type=\"native\">select <column>[N].[s].[i]</column> where a &lt; "
    "1</sql></modelQuery></definition>"
    "<determinants><determinant id=\"\" version=\"0\"><name>k</name><key><refobj>[N].[s].[i]</refobj></key></determinant></determinants>"
    "<queryItem><name locale=\"en\">i</name><expression><refobj>[N].[gone]</refobj> + 1</expression></queryItem>"
    "<queryItemFolder><name locale=\"en\">f</name><queryItem><name locale=\"en\">j</name></queryItem></queryItemFolder></querySubject>";

class SMObjectSheetOf : public testing::Test {
  protected:
    SMObjectSheet Sheet(const char* address) {
        const SMReferenceIndex index(*m_loaded.project);
        const SMObjectBase* const object = index.Find(address);
        if (!object) throw std::runtime_error(address);
        return SMSheetOf(index, *object);
    }
    static Lines Fields(const SMObjectSheet& sheet) {
        Lines lines;
        for (const auto& field : sheet.fields) lines.push_back(field.path + "=" + field.text);
        return lines;
    }
    static Lines Objects(const std::vector<SMObjectLine>& objects) {
        Lines lines;
        for (const SMObjectLine& line : objects) lines.push_back(line.kind + " " + line.objectId);
        return lines;
    }

    SMLoadResult m_loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("N", SUBJECT) + MapElement("m", "v")));
};

TEST_F(SMObjectSheetOf, ASubjectHasItsTextsInEachLanguage) {
    const SMObjectSheet sheet = Sheet("[N].[s]");
    EXPECT_EQ(sheet.object.kind, "querySubject");
    EXPECT_EQ(sheet.object.id, "ID");
    EXPECT_EQ(sheet.version, 7);
    Lines texts;
    for (const auto& text : sheet.texts) texts.push_back(text.element + " " + text.locale + " " + text.text);
    EXPECT_THAT(texts, ElementsAre("name fr su", "name en s", "description en d"));
}

TEST_F(SMObjectSheetOf, ASubjectHasItsDefinitionWithReadableSql) {
    const Lines fields = Fields(Sheet("[N].[s]"));
    EXPECT_THAT(fields, Contains("@status=valid"));
    EXPECT_THAT(fields, Contains("definition/modelQuery/sql@type=native"));
    EXPECT_THAT(fields, Contains("definition/modelQuery/sql=select [N].[s].[i] where a < 1"));
    EXPECT_THAT(fields, Contains("determinants/determinant/key/refobj=[N].[s].[i]"));
    for (const std::string& field : fields) EXPECT_EQ(field.find("queryItem"), std::string::npos) << field;
}

TEST_F(SMObjectSheetOf, ASubjectHasItsPropertiesAndPlace) {
    const SMObjectSheet sheet = Sheet("[N].[s]");
    ASSERT_EQ(sheet.properties.size(), 1u);
    EXPECT_EQ(sheet.properties[0].name + sheet.properties[0].type + sheet.properties[0].text, "qvrefhiddenw");
    EXPECT_THAT(Objects(sheet.containers), ElementsAre("project ", "namespace [N]"));
    EXPECT_THAT(Objects(sheet.children), ElementsAre("queryItem [N].[s].[i]", "queryItemFolder "));
    EXPECT_THAT(Objects(Sheet("[N].[s].[j]").containers),
                ElementsAre("project ", "namespace [N]", "querySubject [N].[s]", "queryItemFolder "));
}

TEST_F(SMObjectSheetOf, AnItemTellsWhatItRefersToAndWhoRefersToIt) {
    const SMObjectSheet sheet = Sheet("[N].[s].[i]");
    EXPECT_THAT(Fields(sheet), Contains("expression=[N].[gone] + 1"));
    ASSERT_EQ(sheet.references.size(), 1u);
    EXPECT_EQ(sheet.references[0].text, "[N].[gone]");
    EXPECT_FALSE(sheet.references[0].resolves);
    Lines referrers;
    for (const auto& referrer : sheet.referrers) referrers.push_back(referrer.object.objectId + " " + referrer.field);
    EXPECT_THAT(referrers, ElementsAre("[N].[s] definition/modelQuery/sql", "[N].[s] determinant k/key"));
}

TEST_F(SMObjectSheetOf, AMapShowsItsEntries) {
    const SMObjectSheet sheet = Sheet("[].[parameterMaps].[m]");
    EXPECT_THAT(Fields(sheet), Contains("parameterMapEntry/key=k"));
    EXPECT_THAT(Fields(sheet), Contains("parameterMapEntry/value=v"));
    EXPECT_THAT(sheet.children, IsEmpty());
}

TEST_F(SMObjectSheetOf, KeptXmlThatCannotBeReadStandsAsItIs) {
    const SMReferenceIndex index(*m_loaded.project);
    static_cast<const SMQueryItem2*>(index.Find("[N].[s].[i]"))->GetExpression()->SetInnerXML("<refobj>");
    const Lines fields = Fields(Sheet("[N].[s].[i]"));
    EXPECT_THAT(fields, Contains("unreadable=<expression><refobj></expression>"));
    EXPECT_THAT(fields, Contains("size=0"));  // what comes behind it is still told
}

}  // namespace
