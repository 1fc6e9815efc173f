#include "objects/base/smxmlobject2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

std::string Inner(const SMXMLObject2& kept) {
    TklByteBuffer out;
    out << "to be reset";
    kept.GetInnerXML(out);
    I18NString text("before");
    kept.GetInnerXMLStr(text);
    EXPECT_EQ(Str(text), out.str());
    return out.str();
}

std::string InnerOf(const char* tag, const char* whole) {
    const QvSmartPtr<SMXMLObject2> kept = new SMXMLObject2(tag, whole, false);
    return Inner(*kept);
}

std::string Whole(const SMXMLObject2& kept) {
    I18NString text;
    QvStringWriter writer(text);
    kept.WriteBytes(writer);
    return Str(text);
}

/** The text after the ids of the map have been replaced. */
std::string Replaced(const char* text, std::map<QvULString, QvULString> ids) {
    const SMXMLObject2 kept("a", "<a></a>", false);
    I18NString edited(text);
    kept.UpdateWHID(ids, edited);
    return Str(edited);
}

/** What is kept of an element of a document. */
std::string Captured(const char* element) {
    const QvSmartPtr<SMXMLObject2> kept = new SMXMLObject2("x");
    SMXMLObjectBuilder builder(kept);
    ParseInto(builder, element);
    return Whole(*kept);
}

}  // namespace

TEST(KeptXml, IsMadeFromTheInsideOrFromTheWhole) {
    EXPECT_EQ(Whole(SMXMLObject2("a", "x<b/>", true)), "<a>x<b/></a>");
    EXPECT_EQ(Whole(SMXMLObject2("a", "<a k='1'>x</a>", false)), "<a k='1'>x</a>");
    EXPECT_EQ(Whole(SMXMLObject2("a")), "");
    EXPECT_EQ(SMXMLObject2("a").version, 1);
    EXPECT_EQ(SMXMLObject2("a").tagName, "a");
}

TEST(KeptXml, HasAnInsideOnlyBetweenPlainTags) {
    EXPECT_EQ(InnerOf("a", "<a>x</a>"), "x");
    EXPECT_EQ(InnerOf("a", "<a b='1'>x</a>"), "");
    EXPECT_EQ(InnerOf("a", "<a></a>"), "");
    EXPECT_EQ(InnerOf("a", "<a/>"), "");
    EXPECT_EQ(InnerOf("a", ""), "");
    EXPECT_EQ(InnerOf("expression", "<expression><refobj>[a].[b]</refobj> + 1</expression>"), "<refobj>[a].[b]</refobj> + 1");
}

TEST(KeptXml, ChangesItsInsideOnlyWhenItDiffers) {
    SMXMLObject2 kept("a", "x", true);
    kept.version = 7;
    EXPECT_FALSE(kept.ChangeInnerXML("x"));
    EXPECT_TRUE(kept.ChangeInnerXML("y<b></b>"));
    EXPECT_EQ(Whole(kept), "<a>y<b></b></a>");
    EXPECT_EQ(kept.version, 7);
    kept.SetInnerXML("");
    EXPECT_FALSE(kept.ChangeInnerXML(""));
    EXPECT_EQ(Whole(kept), "<a></a>");
}

TEST(KeptXml, TakesItsInsideFromItsOwnBuffer) {
    SMXMLObject2 kept("a", "0123456789", true);
    kept.SetInnerXML(kept.buffer.str() + 5);
    EXPECT_EQ(Whole(kept), "<a>23456789</a></a>");
}

TEST(KeptXml, LosesTheAttributesOfItsStartTagWithANewInside) {
    SMXMLObject2 kept("a", "<a k='1'>x</a>", false);
    EXPECT_FALSE(kept.ChangeInnerXML("")) << "its inside reads as empty";
    EXPECT_TRUE(kept.ChangeInnerXML("x"));
    EXPECT_EQ(Whole(kept), "<a>x</a>");
}

TEST(KeptXml, IsComparedWithItsTags) {
    const SMXMLObject2 kept("a", "x", true);
    EXPECT_FALSE(kept.IsXMLDifferentFrom("<a>x</a>"));
    EXPECT_TRUE(kept.IsXMLDifferentFrom("x"));
    EXPECT_TRUE(kept.IsXMLDifferentFrom(""));
}

TEST(KeptXmlIds, AreReplacedWhereverTheyStandOnceQuoted) {
    EXPECT_EQ(Replaced("x 'id' id <id/>", {{"id", "new"}}), "x 'new' new <new/>");
    EXPECT_EQ(Replaced("x id", {{"id", "new"}}), "x id") << "nothing in apostrophes";
    EXPECT_EQ(Replaced("'a' 'b' c", {{"a", "1"}, {"b", "2"}, {"c", "3"}}), "'1' '2' c");
    EXPECT_EQ(Replaced("", {{"", "1"}}), "");
}

TEST(KeptXmlIds, AreReplacedUntilNoneIsLeft) {
    EXPECT_EQ(Replaced("'aa' aaaa", {{"aa", "a"}}), "'a' a");
    EXPECT_EQ(Replaced("'ab' aabb", {{"ab", ""}}), "'' ");
}

TEST(KeptXmlIds, EndAlsoWhenAValueHoldsItsKey) {
    EXPECT_EQ(Replaced("'a' a", {{"a", "bab"}}), "'bab' bab");
    EXPECT_EQ(Replaced("'a' a", {{"a", "a"}}), "'a' a");
    EXPECT_EQ(Replaced("'' x", {{"", "y"}}), "'' x");
}

TEST(KeptXmlIds, StartARecordOfTheirOwn) {
    SMXMLObject2 kept("a", "<a>'old' \xC3\xA9</a>", false);
    kept.version = 7;
    std::map<QvULString, QvULString> ids = {{"old", "a much longer new id"}};
    kept.RegenerateIds(ids);
    EXPECT_EQ(Whole(kept), "<a>'a much longer new id' \xC3\xA9</a>");
    EXPECT_EQ(kept.version, 1);
}

TEST(KeptXml, FollowsRenames) {
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B & C");
    SMXMLObject2 kept("expression", "<expression>[A].[x].[y]</expression>", false);
    kept.RenameObjects(list);
    EXPECT_EQ(Whole(kept), "<expression>[B &amp; C].[x].[y]</expression>");
}

TEST(KeptXmlBuilder, PrintsAnElementAsItStands) {
    EXPECT_EQ(Captured("<e a=\"1\" xmlns:n='u'><n:b/>&lt;&amp; 'q' \"q\"<![CDATA[<]]><!-- gone --></e>"),
              "<e a=\"1\" xmlns:n=\"u\"><n:b></n:b>&lt;&amp; 'q' \"q\"&lt;</e>");
    EXPECT_EQ(Captured("<e> \n </e>"), "<e> \n </e>");
}
