// How objects write themselves as XML.
#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;

namespace {

const QvXMLAttributesImpl NONE;

QvXMLAttributesImpl Attribute(const char* name, const char* value) {
    QvXMLAttributesImpl attrs;
    attrs.push_back(name, value);
    return attrs;
}

}  // namespace

TEST(ObjectXml, WritesAnElementAlsoForNothing) {
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteString(handler, "t", NONE, ""); }), "<t></t>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteString(handler, "t", Attribute("a", "\"<'"), "&>"); }),
              "<t a=\"&quot;&lt;'\">&amp;&gt;</t>");
}

TEST(ObjectXml, WritesTruthAndNumbersAsText) {
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteBool(handler, "t", NONE, true); }), "<t>true</t>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteBool(handler, "t", NONE, false); }), "<t>false</t>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteLong(handler, "t", NONE, -2147483648L); }), "<t>-2147483648</t>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteLong(handler, "t", NONE, 1000000000L); }), "<t>1000000000</t>");
}

TEST(ObjectXml, WritesAnUnsetDateAsAnEmptyElement) {
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteSMDate(handler, "t", NONE, QvDate("2001-02-03T04:05:06")); }),
              "<t>2001-02-03T04:05:06</t>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteSMDate(handler, "t", NONE, QvDate(false)); }), "<t></t>");
}

TEST(ObjectXml, WritesListsInTheirOrder) {
    EXPECT_EQ(Printed([](QvContentHandler* handler) {
                  SMObjectBase::WriteList(handler, "l", "i", {"b", "", "a"});
              }),
              "<l><i>b</i><i></i><i>a</i></l>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) { SMObjectBase::WriteList(handler, "l", "i", {}); }), "<l></l>");
    EXPECT_EQ(Printed([](QvContentHandler* handler) {
                  SMObjectBase::WriteList(handler, "l", "i", {"x"}, Attribute("item", "1"), Attribute("list", "2"));
              }),
              "<l list=\"2\"><i item=\"1\">x</i></l>");
}

TEST(ObjectXml, GivesStringsAndListsAsTextWithoutADeclaration) {
    const PlainObject object(nullptr);
    EXPECT_EQ(object.WriteStringToString("t", Attribute("a", "b"), "c"), "<t a=\"b\">c</t>");
    EXPECT_EQ(object.WriteListToString("l", "i", {"x"}), "<l><i>x</i></l>");
}

TEST(ObjectXml, WritesHiddenPropertiesBeforeTheOthers) {
    PlainObject object(nullptr);
    object.SetId("the id");
    object.SetVersionNo(3);
    object.SetProperty("z", "", "last");
    object.SetProperty("A", "hidden", "first");
    const auto properties = [&](bool hidden) {
        return Printed([&](QvContentHandler* handler) { object.WriteProperties(handler, hidden); });
    };
    const std::string custom = R"(<property name="A" type="hidden">first</property><property name="z">last</property>)";
    EXPECT_EQ(properties(true), R"(<property name="id" type="hidden">the id</property>)"
                                R"(<property name="version" type="hidden">3</property>)" +
                                    custom);
    EXPECT_EQ(properties(false), custom);
    EXPECT_EQ(object.WritePropertiesToString(), custom.c_str());
}

TEST(ObjectXml, LogsAClassThatWritesNothing) {
    const PlainObject object(nullptr);
    const CapturedLog log;
    EXPECT_EQ(Printed([&](QvContentHandler* handler) {
                  I18NString other;
                  QvStringWriter target(other);
                  object.SMObjectBase::WriteXMLElement(handler, target);
                  object.SMObjectBase::WriteXMLElement(nullptr, handler, target);
              }),
              "");
    const LoggedEvent event = {4,
                               "smobjectbase",
                               "SMObjectBase",
                               "WriteXMLElement",
                               "Either this method or the version with 2 arguments must be overridden in the subclass.",
                               ""};
    EXPECT_THAT(log.Events(), ElementsAre(event, event));
}

TEST(ObjectXml, WritesAnObjectThatCannotStandAloneAllTheSame) {
    const ProjectPtr project = NewProject();
    SMParameterMap2 map(project, project);
    const CapturedLog log;
    const std::string text = Printed([&](QvContentHandler* handler) {
        I18NString other;
        QvStringWriter target(other);
        map.BreakAndWriteXMLDocument(nullptr, handler, target);
    });
    EXPECT_EQ(text, WriteElement(map));
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "smobjectbase", "SMObjectBase", "BreakAndWriteXMLDocument",
                                                      "This method should not be called for an object that is not a SMNamedObject.", ""}));
}
