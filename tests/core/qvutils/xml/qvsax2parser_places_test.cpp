#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/elementerror.h"
#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::StartsWith;

namespace {

constexpr const char* NEL = "\xC2\x85";

std::string Repeat(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) text += piece;
    return text;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) text.replace(at, from.size(), to);
    return text;
}

/** In UTF-16, of a document in UTF-8 without characters of four bytes. */
std::string Utf16Of(std::string_view utf8) {
    std::string bytes = "\xFF\xFE";
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
        unsigned unit = length == 1 ? lead : lead & (0xFFu >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) unit = unit << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3Fu);
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
        i += length;
    }
    return bytes;
}

template <class Parse>
std::string ErrorOf(const SMXMLLimits& limits, QvContentHandler* handler, Parse parse) {
    QvSAX2Parser parser;
    parser.setLimits(limits);
    parser.setContentHandler(handler);
    parser.setSourceName("d");
    try {
        parse(parser);
        return "read";
    } catch (const TklRuntimeError& error) {
        return std::to_string(error.line()) + ":" + std::to_string(error.column()) + " " + error.code();
    }
}

/** "line:column code" of the error of a document. */
std::string ErrorOf(std::string_view document, const SMXMLLimits& limits = {}, QvContentHandler* handler = nullptr) {
    return ErrorOf(limits, handler, [&](QvSAX2Parser& parser) { parser.parse(document.data(), document.size()); });
}

std::string ErrorOfFile(const std::string& path, const SMXMLLimits& limits = {}) {
    return ErrorOf(limits, nullptr, [&](QvSAX2Parser& parser) { parser.parse(I18NString(std::string_view(path))); });
}

/** A document with a caret where the error is to be told, and that place as an editor counts it. */
struct Marked {
    std::string document, place;

    explicit Marked(const std::string& text) {
        const std::size_t at = text.find('^');
        long line = 1, column = 1;
        for (std::size_t i = 0; i < at; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if (byte == '\n' || (byte == '\r' && text[i + 1] != '\n')) ++line, column = 0;
            if ((byte & 0xC0) != 0x80 && byte != '\r') ++column;
            if (byte == '\r' && text[i + 1] != '\n') column = 1;
        }
        place = std::to_string(line) + ":" + std::to_string(column) + " ";
        document = text.substr(0, at) + text.substr(at + 1);
    }
};

struct Bounded {
    std::size_t SMXMLLimits::*bound;
    std::size_t value;
    const char* code;
    std::string marked;
};

std::vector<Bounded> Bounds() {
    return {
        {&SMXMLLimits::depth, 2, "SM2102", "<a><c/>\n  <b>x ^<c \n d='1'>text</c></b></a>"},
        {&SMXMLLimits::depth, 2, "SM2102", "<a>\r\n<b><!-- <x> -->\r^<c/></b></a>"},
        {&SMXMLLimits::elements, 3, "SM2103", "<a><b>t</b><b/>\n\t ^<b\n/></a>"},
        {&SMXMLLimits::names, 3, "SM2107", "<place1><place2/>\n<place3/> ^<place4></place4></place1>"},
        {&SMXMLLimits::attributes, 2, "SM2104", "<a><b x='>' y=\"'\"\n  ^z='3' u='4'/></a>"},
        {&SMXMLLimits::attributeBytes, 4, "SM2105", "<a x='1234'><b y='1'\n ^z = 'x>345'/></a>"},
        {&SMXMLLimits::textBytes, 5, "SM2106", "<a><b>12345</b>\n ^12<!-- < -->34<![CDATA[56]]></a>"},
        {&SMXMLLimits::textBytes, 5, "SM2106", "<a><b>12345</b><![CDATA[\n^<b>456]]></a>"},
        {&SMXMLLimits::textBytes, 5, "SM2106", "<a>\n^<b x='123456'/></a>"},
        {&SMXMLLimits::textBytes, 5, "SM2106", "<a>\n<b/>^      </a>"},
    };
}

std::vector<Bounded> EntityBounds() {
    const std::string doctype = "<!DOCTYPE a [<!ENTITY e '12345'><!ENTITY f '&e;<b>&e;</b>'>]>\n";
    return {
        {&SMXMLLimits::entityReferences, 2, "SM2109", doctype + "<a>&e;&amp;<b/>&e;&#65; ^&e;</a>"},
        {&SMXMLLimits::entityReferences, 2, "SM2109", doctype + "<a x='&e;' y='&e;\n&amp;^&e;'/>"},
        {&SMXMLLimits::entityReferences, 2, "SM2109", doctype + "<a>t\n ^&f;</a>"},
        {&SMXMLLimits::entityCharacters, 10, "SM2110", doctype + "<a>&e;<b/>&e;\n^&e;</a>"},
        {&SMXMLLimits::entityCharacters, 4, "SM2110", doctype + "<a>x\n ^&e;</a>"},
        {&SMXMLLimits::entityCharacters, 4, "SM2110", doctype + "<a>x <b y='%^&e;&lt;' z=';'/></a>"},
        // what an entity holds stands where the reference to it stands
        {&SMXMLLimits::elements, 2, "SM2103", doctype + "<a><c/>&e; ^&f; t</a>"},
    };
}

void ExpectPlace(const Bounded& each, const std::string& marked, const char* what) {
    const Marked wanted(marked);
    SMXMLLimits limits;
    limits.*each.bound = each.value;
    const std::string told = wanted.place + each.code;
    EXPECT_EQ(ErrorOf(wanted.document, limits), told) << what << "\n" << marked;
    EXPECT_EQ(ErrorOf(Utf16Of(wanted.document), limits), told) << what << ", in UTF-16\n" << marked;
}

}  // namespace

TEST(QvSAX2ParserPlaces, AreThoseOfWhatPassesALimit) {
    for (const Bounded& each : Bounds()) {
        ExpectPlace(each, each.marked, "alone");
        if (each.bound != &SMXMLLimits::textBytes)
            ExpectPlace(each, "<!DOCTYPE a [<!ENTITY n 'none'>]>\n" + each.marked, "behind a DOCTYPE");
        ExpectPlace(each, Repeat("<!--a-->\r\n", 40'000) + each.marked, "behind much");
        ExpectPlace(each, "<!--" + std::string(NEL) + "\xE2\x80\xA8-->" + each.marked, "behind what the parser does not count");
    }
    for (const Bounded& each : EntityBounds()) ExpectPlace(each, each.marked, "with entities");
}

TEST(QvSAX2ParserPlaces, AreTheSameInFiles) {
    const TempDir directory;
    for (const Bounded& each : Bounds()) {
        const Marked wanted(each.marked);
        SMXMLLimits limits;
        limits.*each.bound = each.value;
        directory.Write("d.xml", "\xEF\xBB\xBF" + wanted.document);
        EXPECT_EQ(ErrorOfFile(directory.Path("d.xml"), limits), wanted.place + each.code) << each.marked;
        directory.Write("d.xml", "a line before\n" + wanted.document);
        const int file = ::open(directory.Path("d.xml").c_str(), O_RDONLY);
        ::lseek(file, 14, SEEK_SET);
        EXPECT_EQ(ErrorOf(limits, nullptr, [&](QvSAX2Parser& parser) { parser.parseOpenFile(file, "d"); }), wanted.place + each.code);
        ::close(file);
    }
}

TEST(QvSAX2ParserPlaces, AreThoseOfTheScannerWhereNothingCanBeReadAgain) {
    const TempDir directory;
    const std::string path = directory.Path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const int pipe = ::open(path.c_str(), O_RDWR);
    const std::string_view document = "<a>\n<b></b></a>";
    ASSERT_EQ(::write(pipe, document.data(), document.size()), static_cast<ssize_t>(document.size()));
    const int reader = ::open(path.c_str(), O_RDONLY);
    ::close(pipe);
    SMXMLLimits limits;
    limits.depth = 1;
    EXPECT_EQ(ErrorOf(limits, nullptr, [&](QvSAX2Parser& parser) { parser.parseOpenFile(reader, "d"); }), "2:4 SM2102");
    ::close(reader);
}

TEST(QvSAX2ParserPlaces, AreThoseOfWhatNeverEnds) {
    SMXMLLimits limits;
    limits.textBytes = 100'000;
    const std::string much(500'000, 'x'), names = Repeat("nm ", 200'000);
    for (const std::string& text :
         {"<a>\n<b/> ^<!--" + much + "--></a>", "<a>\n<b/> ^<?p " + much + "?></a>", "<a>\n<b/> ^<" + much + "/></a>",
          "<a>\n<b/> ^<c x='1' y='" + much + "'/></a>", "<a>\n<b/><![CDATA[^" + much + "]]></a>", "<a>\n<b> ^" + much + "</b></a>",
          "<?xml version='1.0'?>\n ^<!DOCTYPE a [<!ENTITY e 'x'><!--" + names + "-->]><a/>"}) {
        const Marked wanted(text);
        EXPECT_EQ(ErrorOf(wanted.document, limits), wanted.place + "SM2106") << text.substr(0, 40);
        const Marked far("<!--" + Repeat("line\n", 9'000) + "-->" + text);
        if (text.starts_with("<?xml")) continue;
        EXPECT_EQ(ErrorOf(far.document, limits), far.place + "SM2106") << text.substr(0, 40);
    }
    std::string tag = "<a>\n<b";
    for (int i = 0; i < 40'000; ++i) tag += (i == 10'000 ? "\n ^a" : " a") + std::to_string(i) + "=''";
    const Marked wanted(tag + "/></a>");
    EXPECT_EQ(ErrorOf(wanted.document), wanted.place + "SM2104");
    EXPECT_EQ(ErrorOf("<!DOCTYPE a>" + wanted.document), wanted.place + "SM2104");
}

TEST(QvSAX2ParserPlaces, AreThoseOfReferencesAndDeclarations) {
    for (const auto& [text, code] : std::vector<std::pair<std::string, const char*>>{
             {"<a>x &amp;\n ^&nbsp;</a>", "SM2010"},
             {"<a x='&lt;^&nbsp;'/>", "SM2010"},
             {"<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>\n<a>x ^&e;</a>", "SM2009"},
             {"<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>\n<a x='1' y=' ^&e;'/>", "SM2009"},
             {"<!DOCTYPE a [<!ENTITY e SYSTEM 'f'><!ENTITY g '<b>&e;</b>'>]>\n<a>&amp;^&g;</a>", "SM2009"},
             {"<!DOCTYPE a [<!ENTITY e 'x&f;'><!ENTITY f '&e;'>]>\n<a>t ^&e;</a>", "SM2012"},
             {"<!DOCTYPE a [<!-- ' <!ENTITY --> <?p ' ?>\n ^<!ENTITY % p '<!ENTITY e \"x\">'> %p;]><a/>", "SM2011"},
             {"<!DOCTYPE a [<!ENTITY e '<x>'>\n  ^<!ATTLIST a x CDATA '&e;'>]><a/>", "SM2011"},
         }) {
        const Marked wanted(text);
        EXPECT_EQ(ErrorOf(wanted.document), wanted.place + code) << text;
        EXPECT_EQ(ErrorOf(Utf16Of(wanted.document)), wanted.place + code) << text;
    }
}

TEST(QvSAX2ParserPlaces, OfFaultsCountEachCharacterOfTheLine) {
    // Where an x stands in for the character, the parser's own column is right.
    const std::vector<std::string> broken{"<a>xx</b>",
                                          "<a>\nx<b y='xx' x='1' x='2'/></a>",
                                          "<a>xx]]></a>",
                                          "<a><!--x--><b><![CDATA[xx]]></a>",
                                          "<a>x\r\nx\rx<b z=1/></a>",
                                          "<a>xx\x01</a>",
                                          "<a>xx\xFF</a>",
                                          "<a>xx<b",
                                          "<a>xx",
                                          "<a/>\n<!--xx--><b/>",
                                          "<a>xx&#1;</a>",
                                          "<?p xx?><a></b>",
                                          "<!DOCTYPE a [<!--xx--><!ENTITY e 'xx'>]><a>xx&e;</b>",
                                          "<!DOCTYPE a [<!--xx--><!ENTITY e '<b>'>]><a>xx&e;</a>"};
    for (const std::string& document : broken) {
        const std::string told = ErrorOf(document);
        ASSERT_NE(told, "read") << document;
        for (const std::string& character : {std::string(NEL), std::string("\xE2\x80\xA8"), std::string("\xC3\xA9")})
            EXPECT_EQ(ErrorOf(Replaced(Replaced(document, "xx", character + character), "x<", character + "<")), told) << document;
        if (document.find('\xFF') != std::string::npos) continue;
        EXPECT_EQ(ErrorOf(Utf16Of(Replaced(document, "xx", Repeat(NEL, 2)))), ErrorOf(Utf16Of(document))) << document;
    }
}

TEST(QvSAX2ParserPlaces, AreOfNoLineForTheSizeOfADocument) {
    SMXMLLimits limits;
    limits.documentBytes = 100'000;
    EXPECT_EQ(ErrorOf("<a>" + Repeat("line\n", 50'000) + "</a>", limits), "0:0 SM2101");
}

namespace {

/** Ends the parse at an element. */
class Refusing : public QvNeutralHandler {
  public:
    explicit Refusing(bool atEnd) : m_atEnd(atEnd) {}
    void startElement(const I18NString&, const I18NString&, const I18NString& name, const QvXMLAttributes&) override {
        if (!m_atEnd && name == "bad") qv::FailAtToldElement("bad", "SM2003");
    }
    void endElement(const I18NString&, const I18NString&, const I18NString& name) override {
        if (m_atEnd && name == "bad") qv::FailAtToldElement("bad", "SM2003");
    }

  private:
    bool m_atEnd;
};

}  // namespace

TEST(QvSAX2ParserPlaces, OfAnElementAreThereForItsHandler) {
    for (const std::string& text : {std::string("<a>\n x ^<bad>t<b/></bad></a>"), std::string("^<bad\n a='>'/>"),
                                    "<!--" + std::string(NEL) + "--><a><b/>^<bad><b/>\n</bad></a>",
                                    std::string("<!DOCTYPE a [<!ENTITY e '<bad>x</bad>'>]><a>\nx^&e; </a>")})
        for (const bool atEnd : {false, true}) {
            const Marked wanted(text);
            Refusing handler(atEnd);
            EXPECT_EQ(ErrorOf(wanted.document, {}, &handler), wanted.place + "SM2003") << text << atEnd;
        }
    EXPECT_EQ(qv::PlaceOfToldElement().line, 0) << "outside of a parse";
}
