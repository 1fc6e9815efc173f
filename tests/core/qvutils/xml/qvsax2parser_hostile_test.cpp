#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/eventlog.h"
#include "tests/support/tempdir.h"
#include "tests/support/cputime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::Not;

namespace {

/** The message with its place, or "read" when the document is no error. */
std::string VerdictOf(std::string_view document, const SMXMLLimits& limits = {}) {
    QvSAX2Parser parser;
    EventLog log;
    parser.setContentHandler(&log);
    parser.setLimits(limits);
    parser.setSourceName("d");
    try {
        parser.parse(document.data(), document.size());
        return "read";
    } catch (const TklRuntimeError& error) {
        return error.what();
    }
}

std::string Repeat(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) text += piece;
    return text;
}

double SecondsOf(std::string_view document, const SMXMLLimits& limits) {
    return CpuSecondsOf([&] {
        QvSAX2Parser parser;
        parser.setLimits(limits);
        try {
            parser.parse(document.data(), document.size());
        } catch (const TklRuntimeError&) {
        }
    });
}

}  // namespace

TEST(QvSAX2ParserErrors, TellPlaceAndReason) {
    EXPECT_EQ("d:2:7: expected end of tag 'b'", VerdictOf("<a>\n <b></a>"));
    EXPECT_EQ("d:1:1: the document is empty", VerdictOf(""));
    EXPECT_THAT(VerdictOf(" \n "), HasSubstr("d:2:2: "));
    EXPECT_EQ("d:1:1: invalid document structure: something stands before the root element that is no markup", VerdictOf("hello"));
    EXPECT_THAT(VerdictOf("<?xml version=\"1.0\"?>\n {}<a/>"), HasSubstr("d:2:2: invalid document structure: something stands before"));
    EXPECT_THAT(VerdictOf("<a>"), HasSubstr("input ended before all started tags were ended"));
    EXPECT_THAT(VerdictOf("<a x='1"), HasSubstr("unexpected end of input"));
    EXPECT_THAT(VerdictOf("<a x='1' x='2'/>"), HasSubstr("attribute 'x' is already specified"));
    EXPECT_THAT(VerdictOf("<a/><b/>"), Not("read"));
    EXPECT_THAT(VerdictOf("<a>]]></a>"), Not("read"));
    EXPECT_THAT(VerdictOf("<a>&#1;</a>"), Not("read"));
    EXPECT_THAT(VerdictOf("<a>\x01</a>"), Not("read"));
    EXPECT_THAT(VerdictOf("<a x=1/>"), Not("read"));
    EXPECT_THAT(VerdictOf("<a>&nbsp;</a>"), HasSubstr("entity 'nbsp' not found"));
}

TEST(QvSAX2ParserErrors, NameTheProgramThatPackedADocument) {
    const std::vector<std::pair<std::string, std::string>> packed = {{"gzip", "\x1F\x8B\x08"},
                                                                     {"zip", "PK\x03\x04"},
                                                                     {"xz",
                                                                      "\xFD"
                                                                      "7zXZ"},
                                                                     {"bzip2", "BZh9"},
                                                                     {"zstd", "\x28\xB5\x2F\xFD"}};
    for (const auto& [packer, head] : packed)
        EXPECT_EQ("d:1:1: the document is packed by " + packer + "; unpack it first", VerdictOf(head + "\x01\x02<a/>"));
}

TEST(QvSAX2ParserErrors, CoverEachTruncation) {
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- c --><a x=\"1\">t&amp;<![CDATA[u]]><b:c y='\xC3\xA9'/>\xF0\x9F\x98\x80</a>";
    ASSERT_EQ("read", VerdictOf(document));
    for (std::size_t length = 0; length < document.size(); ++length)
        EXPECT_THAT(VerdictOf(std::string_view(document).substr(0, length)), Not("read")) << length;
}

TEST(QvSAX2ParserErrors, TellTheExactPlaceOfBytesThatAreNotUtf8) {
    EXPECT_EQ("d:3:4: the bytes here are not UTF-8", VerdictOf("<a>\n\nabc\xC3(</a>"));
    EXPECT_EQ("d:1:5: the bytes here are not UTF-8", VerdictOf("<a/>\xC3"));
    const std::string before = "<a>" + Repeat("line\n", 50'000);
    EXPECT_EQ("d:50001:1: the bytes here are not UTF-8", VerdictOf(before + "\xFF</a>"));
    // What stands before the fault is judged first.
    EXPECT_EQ("d:1:6: expected end of tag 'a'", VerdictOf("<a></b>\xFF"));
}

TEST(QvSAX2ParserErrors, RefuseEachFormOfWrongUtf8) {
    for (const char* bytes : {"\x80",
                              "\xBF",
                              "\xC0\x80",
                              "\xC1\xBF",
                              "\xC3(",
                              "\xE0\x80\x80",
                              "\xE0\x9F\xBF",
                              "\xED\xA0\x80",
                              "\xED\xBF\xBF",
                              "\xE2\x82(",
                              "\xF0\x80\x80\x80",
                              "\xF0\x8F\xBF\xBF",
                              "\xF4\x90\x80\x80",
                              "\xF5\x80\x80\x80",
                              "\xFF",
                              "\xFE",
                              "\xF0\x9F\x98(",
                              "\xC3",
                              "\xE2\x82",
                              "\xF0\x9F\x98"}) {
        EXPECT_EQ("d:1:4: the bytes here are not UTF-8", VerdictOf("<a>" + std::string(bytes) + "</a>"));
        EXPECT_EQ("d:1:24: the bytes here are not UTF-8", VerdictOf("<a>" + std::string(20, 'x') + bytes + "</a>" + std::string(20, ' ')));
    }
    for (const char* bytes :
         {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_EQ("read", VerdictOf("<a>" + std::string(bytes) + "</a>"));
}

TEST(QvSAX2ParserErrors, RefuseNulWhereverItStands) {
    const std::string document = "<?xml version='1.0'?><!--c--><a x='1'>t<![CDATA[u]]></a><!--d--> ";
    for (std::size_t at = 0; at <= document.size(); ++at) {
        std::string broken = document;
        broken.insert(at, 1, '\0');
        EXPECT_THAT(VerdictOf(broken), Not("read")) << at;
    }
    EXPECT_EQ("d:1:5: a NUL character is not allowed", VerdictOf(std::string("<a>t\0</a>", 9)));
    EXPECT_EQ("d:1:5: a NUL character is not allowed", VerdictOf(std::string("<a/>\0<b/>", 9)));
    EXPECT_EQ("d:1:7: a NUL character is not allowed", VerdictOf(std::string("<aa></\0aa>", 10)));
    EXPECT_EQ("d:1:8: a NUL character is not allowed", VerdictOf(std::string("<aa></a\0a>", 10)));
    EXPECT_EQ("d:1:1: a NUL character is not allowed", VerdictOf(std::string("\0<?xml version='1.0'?><a/>", 26)));
    EXPECT_EQ("d:1:1: a NUL character is not allowed", VerdictOf(std::string("\0", 1)));
    const std::u16string utf16(u"\uFEFF<a/>\0<b/>", 10);
    EXPECT_THAT(VerdictOf({reinterpret_cast<const char*>(utf16.data()), utf16.size() * 2}), HasSubstr("NUL"));
}

TEST(QvSAX2ParserErrors, RefuseALatin1DocumentThatEndsWithinNothing) {
    EXPECT_THAT(VerdictOf("<?xml version='1.0' encoding='ISO-8859-1'?><a/>\xE9"), Not("read"));
}

TEST(QvSAX2ParserErrors, RefuseADeclarationThatCannotBeDecoded) {
    // the scanner gives up before it stands anywhere
    for (const std::string& document :
         {std::string("<?xml version=\"1.0\" encoding=\"UTF-8\xD7\xD7<"), std::string("\0\0\xFE\xFF\xFF\xFF\x0F\x08", 8)})
        EXPECT_THAT(VerdictOf(document), HasSubstr("first line")) << document;
}

TEST(QvSAX2ParserErrors, RefuseVersionOneOne) {
    EXPECT_THAT(VerdictOf("<?xml version='1.1'?><a>&#1;</a>"), HasSubstr("XML version 1.1 is not supported"));
}

TEST(QvSAX2ParserLimits, BoundTheDepth) {
    SMXMLLimits limits;
    limits.depth = 3;
    EXPECT_EQ("read", VerdictOf("<a><b><c/></b><b><c></c></b></a>", limits));
    EXPECT_THAT(VerdictOf("<a><b><c><d/></c></b></a>", limits), HasSubstr("elements are nested deeper than 3"));
    EXPECT_THAT(VerdictOf(Repeat("<a>", 20'000)), HasSubstr("elements are nested deeper than " + std::to_string(SMXMLLimits().depth)));
}

TEST(QvSAX2ParserLimits, LetDepthCostNoMoreThanItsLength) {
    SMXMLLimits limits;
    limits.depth = 1'000'000;
    const auto document = [](std::size_t depth) { return Repeat("<a>", depth) + Repeat("</a>", depth); };
    EXPECT_EQ("read", VerdictOf(document(100'000), limits));
    const double once = SecondsOf(document(50'000), limits), fourfold = SecondsOf(document(200'000), limits);
    EXPECT_LT(fourfold, 10 * once + 0.1);
    EXPECT_EQ("read", VerdictOf("<!DOCTYPE a>" + document(100'000), limits));
}

TEST(QvSAX2ParserLimits, BoundTheAttributesOfATag) {
    SMXMLLimits limits;
    limits.attributes = 2;
    EXPECT_EQ("read", VerdictOf("<a x='1' y='2'><b x='1' z='3'/></a>", limits));
    EXPECT_THAT(VerdictOf("<a x='1' y='2' z='3'/>", limits), HasSubstr("a start tag has more than 2 attributes"));
}

TEST(QvSAX2ParserLimits, StopATagOfAMillionAttributesEarly) {
    std::string tag = "<a";
    for (int i = 0; i < 1'000'000; ++i) tag += " a" + std::to_string(i) + "=''";
    EXPECT_LT(CpuSecondsOf([&] {
                  EXPECT_THAT(VerdictOf(tag + "/>"), HasSubstr("a start tag has more than 10000 attributes"));
                  EXPECT_THAT(VerdictOf("<!DOCTYPE a>" + tag + "/>"), HasSubstr("a start tag has more than 10000 attributes"));
              }),
              20);
}

TEST(QvSAX2ParserLimits, BoundTheNames) {
    SMXMLLimits limits;
    limits.names = 3;
    EXPECT_THAT(VerdictOf("<a1><a2/><a3/><a2/><a4/></a1>", limits), HasSubstr("elements have more than 3 different names"));
}

TEST(QvSAX2ParserLimits, BoundTexts) {
    SMXMLLimits limits;
    limits.textBytes = 100;
    const std::string full(100, 'x');
    EXPECT_EQ("read", VerdictOf("<a y='" + full + "'>" + full + "<b/>" + full + "</a>", limits));
    EXPECT_THAT(VerdictOf("<a>" + full + "x</a>", limits), HasSubstr("a text is longer than 100 bytes"));
    EXPECT_THAT(VerdictOf("<a>" + full + "<![CDATA[x]]></a>", limits), HasSubstr("a text is longer than 100 bytes"));
    EXPECT_THAT(VerdictOf("<a>" + Repeat("\xC3\xA9", 51) + "</a>", limits), HasSubstr("a text is longer than 100 bytes"));
    EXPECT_THAT(VerdictOf("<a y='" + full + "x'/>", limits), HasSubstr("a tag is longer than 100 bytes"));
    EXPECT_THAT(VerdictOf("<a y='" + Repeat("\xC3\xA9", 51) + "'/>", limits), HasSubstr("a tag is longer than 100 bytes"));
}

TEST(QvSAX2ParserLimits, BoundWhatTheScannerGathersUnseen) {
    SMXMLLimits limits;
    limits.textBytes = 1'000'000;
    const std::string much(3'000'000, 'x');
    for (const std::string& document : {"<a><![CDATA[" + much + "]]></a>", "<a y='" + much + "'/>", "<a><!--" + much + "--></a>",
                                        "<a><?p " + much + "?></a>", "<" + much + "/>", "<!DOCTYPE a [<!--" + much + "-->]><a/>"})
        EXPECT_THAT(VerdictOf(document, limits), HasSubstr("longer than 1000000 bytes"));
    limits.textBytes = 4'000'000;
    EXPECT_EQ("read", VerdictOf("<a y='" + much + "'><!--" + much + "-->" + much + "<?p " + much + "?></a>", limits));
}

TEST(QvSAX2ParserDoctype, IsReadButItsExternalPartIsNotOpened) {
    const TempDir dir;
    dir.Write("a.dtd", "<!ENTITY e 'from outside'>");
    const std::string doctype = "<!DOCTYPE a SYSTEM \"" + dir.Path("a.dtd") + "\">";
    EXPECT_EQ("read", VerdictOf(doctype + "<a/>"));
    // Its text would vanish unseen otherwise.
    EXPECT_THAT(VerdictOf(doctype + "<a>&e;</a>"), HasSubstr("entity 'e' not found"));
    EXPECT_THAT(VerdictOf(doctype + "<a x='&e;'/>"), HasSubstr("entity 'e' not found"));
    EXPECT_EQ("read", VerdictOf("<!DOCTYPE a PUBLIC '-//x' 'http://localhost:1/a.dtd'><a/>"));
}

TEST(QvSAX2ParserDoctype, OpensNoExternalEntity) {
    const TempDir dir;
    const std::string path = dir.Path("secret");
    // Whoever opens this pipe to read would wait for ever.
    ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
    const std::string system = "SYSTEM \"" + path + "\"";
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e " + system + ">]><a>&e;</a>"), HasSubstr("is not opened"));
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e " + system + ">]><a x='&e;'/>"), Not("read"));
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e SYSTEM 'http://localhost:1/x'>]><a>&e;</a>"), HasSubstr("is not opened"));
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY % e " + system + "> %e;]><a/>"), HasSubstr("parameter entities are not supported"));
    EXPECT_EQ("read", VerdictOf("<!DOCTYPE a " + system + "><a/>"));
    EXPECT_EQ("read", VerdictOf("<!DOCTYPE a [<!ENTITY e " + system + ">]><a>unused</a>"));
}

TEST(QvSAX2ParserDoctype, ExpandsInternalEntities) {
    EventLog log;
    QvSAX2Parser parser;
    parser.setContentHandler(&log);
    const std::string_view document =
        "<?xml version='1.0'?><!-- c -->\n<!DOCTYPE a [<!ENTITY e 'in <b>bold</b>'><!ENTITY f '(&e;)'>]><a x='&#x41;&lt;'>1&f;2</a>";
    parser.parse(document.data(), document.size());
    EXPECT_THAT(log.lines, testing::ElementsAre("start document", "start a x=A<", "text:1(in ", "start b", "text:bold", "end b", "text:)2",
                                                "end a", "end document"));
}

TEST(QvSAX2ParserDoctype, SuppliesDeclaredAttributes) {
    EventLog log;
    QvSAX2Parser parser;
    parser.setContentHandler(&log);
    const std::string_view document = "<!DOCTYPE a [<!ATTLIST a x CDATA 'default' y ID #IMPLIED>]><a y='1'/>";
    log.onStart = [](const I18NString&, const QvXMLAttributes& attrs) { EXPECT_EQ("ID", attrs.getType("y")); };
    parser.parse(document.data(), document.size());
    EXPECT_EQ("start a y=1 x=default", log.lines.at(1));
}

TEST(QvSAX2ParserDoctype, RefusesEntitiesThatContainThemselves) {
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e 'x&f;'><!ENTITY f '&e;'>]><a>&e;</a>"), HasSubstr("recursive entity"));
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e 'x&e;'>]><a y='&e;'/>"), HasSubstr("recursive entity"));
}

namespace {

/** Ten times ten times ... `levels` times. */
std::string Bomb(int levels, const std::string& seed) {
    std::string doctype = "<!DOCTYPE a [<!ENTITY e0 '" + seed + "'>";
    for (int level = 1; level <= levels; ++level)
        doctype += "<!ENTITY e" + std::to_string(level) + " '" + Repeat("&e" + std::to_string(level - 1) + ";", 10) + "'>";
    return doctype + "]>";
}

}  // namespace

TEST(QvSAX2ParserDoctype, BoundsExpansionInText) {
    EXPECT_THAT(VerdictOf(Bomb(12, "ha") + "<a>&e12;</a>"), HasSubstr("there are more than 100000 references to internal entities"));
    // Few references to much text.
    const std::string wide = "<!DOCTYPE a [<!ENTITY e '" + std::string(100'000, 'x') + "'>]><a>" + Repeat("&e;", 3000) + "</a>";
    EXPECT_THAT(VerdictOf(wide), HasSubstr("internal entities expand to more than 1048576 characters"));
    // Many references to nothing.
    SMXMLLimits limits;
    limits.entityReferences = 2000;
    EXPECT_THAT(VerdictOf(Bomb(12, "") + "<a>&e12;</a>", limits), HasSubstr("internal entities"));
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e ''>]><a>" + Repeat("&e;", 3000) + "</a>", limits), HasSubstr("internal entities"));
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY e ''>]><a x='" + Repeat("&e;", 3000) + "'/>", limits), HasSubstr("internal entities"));
    EXPECT_EQ("read", VerdictOf(Bomb(3, "ha") + "<a>&e3;</a>"));
}

TEST(QvSAX2ParserDoctype, BoundsExpansionInAttributeValues) {
    EXPECT_THAT(VerdictOf(Bomb(12, "ha") + "<a x='&e12;'/>"), HasSubstr("internal entities expand to more than 1048576 characters"));
    const std::string wide = "<!DOCTYPE a [<!ENTITY e '" + std::string(100'000, 'x') + "'>]>";
    EXPECT_THAT(VerdictOf(wide + "<a x='" + Repeat("&e;", 3000) + "'/>"), HasSubstr("internal entities expand to more than"));
    EXPECT_THAT(VerdictOf(wide + "<a>" + Repeat("<b x='&e;'/>", 3000) + "</a>"), HasSubstr("internal entities expand to more than"));
    EXPECT_EQ("read", VerdictOf(wide + "<a>" + Repeat("<b x='&e;'/>", 10) + "</a>"));
    EXPECT_EQ("read", VerdictOf(Bomb(3, "ha") + "<a x='&e3;'/>"));
    const std::string shortAndLong = "<!DOCTYPE a [<!ENTITY e '" + std::string(100'000, 'x') + "'><!ENTITY s 'short'>]>";
    EXPECT_EQ("read", VerdictOf(shortAndLong + "<a>" + Repeat("<b x='&s;'/>", 3000) + "</a>")) << "no value is as long";
    const std::string blanks = "<!DOCTYPE a [<!ATTLIST b x NMTOKENS #IMPLIED><!ENTITY e '" + std::string(500'000, ' ') + "'>]>";
    EXPECT_THAT(VerdictOf(blanks + "<a>" + Repeat("<b x='y&e;'/>", 4) + "</a>"), HasSubstr("internal entities expand to more than"))
        << "though nothing is left of them";
}

TEST(QvSAX2ParserDoctype, BoundsAreExactInText) {
    SMXMLLimits limits;
    limits.entityCharacters = 30;
    const std::string doctype = "<!DOCTYPE a [<!ENTITY small '12345'><!ENTITY large '" + std::string(25, 'x') + "'>]>";
    EXPECT_EQ("read", VerdictOf(doctype + "<a>" + Repeat("&small;", 6) + "</a>", limits));
    EXPECT_EQ("read", VerdictOf(doctype + "<a>&large;&small;</a>", limits));
    EXPECT_THAT(VerdictOf(doctype + "<a>" + Repeat("&small;", 7) + "</a>", limits), HasSubstr("internal entities expand to more than 30"));
    EXPECT_THAT(VerdictOf(doctype + "<a>&large;&small;&small;</a>", limits), HasSubstr("internal entities expand to more than 30"));
    limits.entityReferences = 2;
    EXPECT_EQ("read", VerdictOf(doctype + "<a>" + Repeat("&small;", 2) + "</a>", limits));
    EXPECT_THAT(VerdictOf(doctype + "<a>" + Repeat("&small;", 3) + "</a>", limits), HasSubstr("internal entities"));
}

TEST(QvSAX2ParserDoctype, BoundsAttributesGivenByDefault) {
    const std::string doctype = "<!DOCTYPE a [<!ATTLIST b x CDATA '" + std::string(99'999, 'v') + "' y CDATA #IMPLIED>]><a>";
    EXPECT_EQ("read", VerdictOf(doctype + Repeat("<b/>", 10) + Repeat("<b x='1'/>", 20) + "</a>"));
    EXPECT_THAT(VerdictOf(doctype + Repeat("<b/>", 11) + "</a>"),
                HasSubstr("attributes that the DOCTYPE gives by default come to more than 1048576 characters"));
    SMXMLLimits limits;
    limits.entityCharacters = 30;
    const std::string empty = "<!DOCTYPE a [<!ATTLIST b x CDATA '' y CDATA ''>]><a>";
    EXPECT_EQ("read", VerdictOf(empty + Repeat("<b/>", 15) + "</a>", limits));
    EXPECT_THAT(VerdictOf(empty + Repeat("<b/>", 16) + "</a>", limits), HasSubstr("come to more than 30 characters"));
}

TEST(QvSAX2ParserDoctype, RefusesWhatExpandsOutOfSight) {
    EXPECT_THAT(VerdictOf("<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'> %p;]><a/>"), HasSubstr("parameter entities are not supported"));
    const std::string bomb = Bomb(12, "ha");
    EXPECT_THAT(VerdictOf(bomb.substr(0, bomb.size() - 2) + "<!ATTLIST a x CDATA '&e12;'>]><a/>"),
                HasSubstr("attribute lists behind entities are not supported"));
}

TEST(QvSAX2ParserDoctype, CannotHideFromTheLookAtTheProlog) {
    const std::string tail = "<!DOCTYPE a [<!ENTITY e 'text'>]><a>&e;</a>";
    for (const std::string& head :
         {std::string(), std::string("<?xml version='1.0'?>\n"), std::string("<!-- <a> -->"), std::string("<?p <a> ?>"),
          "<!--" + std::string(200'000, 'x') + "-->", "\xEF\xBB\xBF" + std::string("<?xml version='1.0'?> <!---->")})
        EXPECT_EQ("read", VerdictOf(head + tail)) << head.size();
}
