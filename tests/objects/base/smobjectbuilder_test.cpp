#include "objects/base/smobjectbuilder_002_000.h"

#include <gmock/gmock.h>

#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** Writes down what reaches it, and pushes a builder of its own kind at each element "push". */
class Storey : public SMObjectBuilder {
  public:
    Storey(std::string name, std::vector<std::string>& lines) : m_name(std::move(name)), m_lines(lines) {}
    void realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes&) override {
        m_lines.push_back(m_name + " <" + Str(localName));
        if (localName == "push") Push(new Storey(m_name + ">", m_lines));
        if (localName == "replay" && m_name == "0")
            PushWithStart(new Storey(m_name + "!", m_lines), {}, localName, localName, QvXMLAttributesImpl());
        if (localName == "text") CollectText();
    }
    void realEndElement(const I18NString&, const I18NString& localName, const I18NString&) override {
        StopCollecting();
        m_lines.push_back(m_name + " " + Str(localName) + "> " + Str(m_text));
    }

  private:
    std::string m_name;
    std::vector<std::string>& m_lines;
};

std::vector<std::string> Parse(const char* document) {
    std::vector<std::string> lines;
    Storey bottom("0", lines);
    ParseInto(bottom, document);
    return lines;
}

/** Sends characters in pieces, as a host's parser may. */
void Text(QvContentHandler& handler, std::initializer_list<const char*> pieces) {
    for (const char* piece : pieces) handler.characters(piece);
}

}  // namespace

TEST(BuilderStack, ShowsAChildItsInsideAndItsEnd) {
    EXPECT_THAT(Parse("<a><push><b/></push><c/></a>"),
                ElementsAre("0 <a", "0 <push", "0> <b", "0> b> ", "0> push> ", "0 <c", "0 c> ", "0 a> "));
}

TEST(BuilderStack, CountsElementsOfTheChildsOwnName) {
    EXPECT_THAT(Parse("<push><x><push><push/></push></x></push>"),
                ElementsAre("0 <push", "0> <x", "0> <push", "0>> <push", "0>>> push> ", "0>> push> ", "0> x> ", "0> push> "));
}

TEST(BuilderStack, ShowsAChildItsStartWhereItIsReplayed) {
    EXPECT_THAT(Parse("<a><replay><b/></replay><c/></a>"),
                ElementsAre("0 <a", "0 <replay", "0! <replay", "0! <b", "0! b> ", "0! replay> ", "0 <c", "0 c> ", "0 a> "));
}

TEST(BuilderText, IsGatheredInCollectingElementsOnly) {
    EXPECT_THAT(Parse("<a>no<text>yes &amp; <![CDATA[more]]></text>no</a>"),
                ElementsAre("0 <a", "0 <text", "0 text> yes & more", "0 a> yes & more"));
}

TEST(BuilderText, IsJoinedFromPieces) {
    std::vector<std::string> lines;
    Storey builder("0", lines);
    builder.startElement({}, "text", "text", QvXMLAttributesImpl());
    Text(builder, {"a", "", "b ", "c"});
    builder.endElement({}, "text", "text");
    Text(builder, {"lost"});
    builder.startElement({}, "text", "text", QvXMLAttributesImpl());
    Text(builder, {"new"});
    builder.endElement({}, "text", "text");
    EXPECT_THAT(lines, ElementsAre("0 <text", "0 text> ab c", "0 <text", "0 text> new"));
}

// ---- the named layout

namespace {

class NamedBuilder : public testing::Test {
  protected:
    ProjectPtr project = NewProject();
    QvSmartPtr<PlainNested> object = new PlainNested(project);
    CapturedLog log;
};

LoggedEvent Unknown(const char* method, const char* name) {
    return {4, "", "", method, std::string("Unknown tag '") + name + "'", ""};
}

}  // namespace

TEST_F(NamedBuilder, TakesNamesAndTheDate) {
    SMNamedObjectBuilder builder(object);
    ParseInside(builder, R"(<name locale="en">n</name><name locale="fr">m</name><lastChanged>2001-02-03T04:05:06</lastChanged>)");
    EXPECT_EQ(object->GetName(), "n");
    EXPECT_EQ(object->GetName("fr"), "m");
    EXPECT_EQ(object->GetLastChangedDate().ToString(), "2001-02-03T04:05:06");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(NamedBuilder, LogsUnknownTagsByTheirNumber) {
    SMNamedObjectBuilder builder(object);
    ParseInside(builder, "<filter/><nobody_knows_this/>");
    EXPECT_THAT(log.Events(), ElementsAre(Unknown("realStartElement", "filter"), Unknown("realEndElement", "filter"),
                                          Unknown("realStartElement", ""), Unknown("realEndElement", "")));
}

TEST_F(NamedBuilder, ActsOnKnownTagsInsideUnknownOnes) {
    SMNamedObjectBuilder builder(object);
    ParseInside(builder, R"(<nobody_knows_this><name locale="en">n</name></nobody_knows_this>)");
    EXPECT_EQ(object->GetName(), "n");
    EXPECT_EQ(log.Events().size(), 2u);
}

TEST_F(NamedBuilder, TakesAForeignNameWithAKnownHashForTheKnownOne) {
    SMNamedObjectBuilder builder(object);
    ParseInside(builder, R"(<pz locale="en">taken for a name</pz>)");
    EXPECT_EQ(object->GetName(), "taken for a name");
}

TEST_F(NamedBuilder, LeavesDescriptionsToTheNextLevel) {
    SMNamedObjectBuilder named(object);
    ParseInside(named, R"(<description locale="en">d</description>)");
    EXPECT_THAT(log.Events(), ElementsAre(Unknown("realStartElement", "description"), Unknown("realEndElement", "description")));
    SMNameDescObjectBuilder nameDesc(object);
    log.Clear();
    ParseInside(nameDesc, R"(<description locale="en">d</description><screenTip locale="fr">t</screenTip><name locale="en">n</name>)");
    EXPECT_EQ(object->GetDescription(), "d");
    EXPECT_EQ(object->GetScreenTip(I18NString("fr")), "t");
    EXPECT_EQ(object->GetName(), "n");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(NamedBuilder, LeavesPropertiesToTheNestedLevel) {
    SMNameDescObjectBuilder nameDesc(object);
    ParseInside(nameDesc, R"(<property name="a" type="t">v</property>)");
    EXPECT_THAT(log.Events(), ElementsAre(Unknown("realStartElement", "property"), Unknown("realEndElement", "property")));
    SMNestedObjectBuilder nested(object);
    log.Clear();
    ParseInside(nested, R"(<property name="a" type="t">v</property><property name="qvref">w</property>)");
    EXPECT_EQ(object->GetProperty("a")->value, "v");
    EXPECT_EQ(object->GetQvRef(), "w");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(NamedBuilder, LogsTheStartOfAnObjectElementAlone) {
    SMNestedObjectBuilder nested(object);
    ParseInside(nested, "<object></object>");
    EXPECT_THAT(log.Events(), ElementsAre(Unknown("realStartElement", "object")));
}

TEST_F(NamedBuilder, TakesATextWithoutALocaleAsOneOfNoLocale) {
    SMNameDescObjectBuilder builder(object);
    ParseInside(builder, R"(<name locale="en">n</name><name>m</name>)");
    EXPECT_EQ(object->GetName(), "n");
    ASSERT_EQ(object->GetNames().size(), 2u);
    EXPECT_EQ(object->GetNames().begin()[1].first, "");
    EXPECT_EQ(object->GetNames().begin()[1].second, "m");
}

TEST_F(NamedBuilder, KeepsTextsAsTheyStand) {
    SMNameDescObjectBuilder builder(object);
    ParseInside(builder, "<name locale=\"en\">  a\n\t&lt;b&gt; &#xD; </name>");
    EXPECT_EQ(object->GetName(), "  a\n\t<b> \r ");
}
