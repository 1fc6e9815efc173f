#include "core/qvutils/xml/qvsax2printhandler.h"

#include <random>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/eventlog.h"

#include <gtest/gtest.h>

namespace {

const I18NString NONE;

/** A printer of a fragment with short calls. */
class Printer {
  public:
    explicit Printer(bool indent = false) { m_handler.SetIndent(indent); }
    Printer& Start(const char* name, const QvXMLAttributes& attributes = QvXMLAttributesImpl()) {
        m_handler.startElement(NONE, NONE, name, attributes);
        return *this;
    }
    Printer& End(const char* name) {
        m_handler.endElement(NONE, NONE, name);
        return *this;
    }
    Printer& Text(const char* text) {
        m_handler.characters(text);
        return *this;
    }
    /** Goes to the target behind the handler's back. */
    Printer& Kept(std::string_view xml) {
        m_target.write(xml);
        return *this;
    }
    std::string Printed() const { return std::string(m_text.utf8()); }
    QvSAX2PrintHandler& handler() { return m_handler; }

  private:
    I18NString m_text;
    QvStringWriter m_target{m_text};
    QvSAX2PrintHandler m_handler{"UTF-8", false, m_target, true};
};

std::string PrintAgain(std::string_view document) {
    I18NString text;
    QvStringWriter target(text);
    QvSAX2PrintHandler handler("UTF-8", false, target, true);
    QvSAX2Parser parser;
    parser.setContentHandler(&handler);
    parser.parse(document.data(), document.size());
    return std::string(text.utf8());
}

}  // namespace

TEST(QvSAX2PrintHandler, PrintsTheDeclarationInTheConstructor) {
    I18NString text;
    QvStringWriter target(text);
    QvSAX2PrintHandler handler("UTF-8", false, target, false);
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", text);
    handler.startDocument();
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", text);
}

TEST(QvSAX2PrintHandler, PrintsWhatComesAfterTheTargetWasErased) {
    I18NString text;
    QvStringWriter target(text);
    QvSAX2PrintHandler handler("UTF-8", false, target, false);
    text.erase();
    handler.startElement(NONE, NONE, "a", QvXMLAttributesImpl());
    handler.endElement(NONE, NONE, "a");
    EXPECT_EQ("<a></a>", text);
}

TEST(QvSAX2PrintHandler, PrintsNoDeclarationForAFragment) {
    EXPECT_EQ("", Printer().Printed());
}

TEST(QvSAX2PrintHandler, RefusesAnotherEncoding) {
    I18NString text;
    QvStringWriter target(text);
    EXPECT_THROW(QvSAX2PrintHandler("ISO-8859-1", false, target, true), TklRuntimeError);
    EXPECT_EQ("", text);
}

TEST(QvSAX2PrintHandler, ClosesAStartTagAtOnce) {
    Printer printer;
    printer.Start("a");
    EXPECT_EQ("<a>", printer.Printed());
    printer.Kept("<x/>").End("a");
    EXPECT_EQ("<a><x/></a>", printer.Printed());
}

TEST(QvSAX2PrintHandler, PrintsAnEmptyElementAsAPairOfTags) {
    EXPECT_EQ("<a></a>", Printer().Start("a").End("a").Printed());
}

TEST(QvSAX2PrintHandler, PrintsQualifiedNamesAndValuesInTheirOrder) {
    QvXMLAttributesImpl attributes;
    attributes.push_back({"uri", "local", "p:z", "ID", "1"});
    attributes.push_back("a", "2");
    attributes.push_back("xmlns", "");
    EXPECT_EQ("<p:e p:z=\"1\" a=\"2\" xmlns=\"\"></p:e>", Printer().Start("p:e", attributes).End("p:e").Printed());
}

TEST(QvSAX2PrintHandler, EscapesText) {
    EXPECT_EQ("&amp;&lt;&gt;&#xD;\"'\t\n\xC3\xA9", Printer().Text("&<>\r\"'\t\n\xC3\xA9").Printed());
}

TEST(QvSAX2PrintHandler, EscapesAttributeValues) {
    QvXMLAttributesImpl attributes;
    attributes.push_back("v", "&<>\r\"'\t\n\xC3\xA9");
    EXPECT_EQ("<a v=\"&amp;&lt;&gt;&#xD;&quot;'&#x9;&#xA;\xC3\xA9\">", Printer().Start("a", attributes).Printed());
}

TEST(QvSAX2PrintHandler, EscapesAtEachPlaceOfALongText) {
    for (const std::string& special : {std::string("&"), std::string("<"), std::string(">"), std::string("\r")})
        for (std::size_t length = 0; length < 40; ++length)
            for (std::size_t at = 0; at <= length; ++at) {
                std::string text(length, '"'), expected = text;
                text.insert(at, special);
                expected.insert(at, special == "&" ? "&amp;" : special == "<" ? "&lt;" : special == ">" ? "&gt;" : "&#xD;");
                EXPECT_EQ(expected, Printer().Text(text.c_str()).Printed());
            }
}

TEST(QvSAX2PrintHandler, LeavesEachOtherByteAsItIs) {
    for (int c = 1; c < 256; ++c) {
        const std::string text(20, static_cast<char>(c));
        if (c == '&' || c == '<' || c == '>' || c == '\r') continue;
        EXPECT_EQ(text, Printer().Text(text.c_str()).Printed());
    }
}

TEST(QvSAX2PrintHandler, PrintsLongNames) {
    const std::string name(300, 'n');
    EXPECT_EQ("<" + name + "></" + name + ">", Printer().Start(name.c_str()).End(name.c_str()).Printed());
}

TEST(QvSAX2PrintHandler, PrintsProcessingInstructionsAndSkippedEntities) {
    Printer printer;
    printer.handler().processingInstruction("p", "some data");
    printer.handler().processingInstruction("q", "");
    printer.handler().skippedEntity("e");
    printer.handler().ignorableWhitespace(" \n");
    printer.handler().startPrefixMapping("p", "u");
    printer.handler().endPrefixMapping("p");
    EXPECT_EQ("<?p some data?><?q?>&e; \n", printer.Printed());
}

TEST(QvSAX2PrintHandler, GivesBackWhatTheParserRead) {
    const std::string document =
        "<p:a x=\"1&#x9;&#xA;&#xD;&quot;&amp;&lt;&gt;' \" xmlns:p=\"u\">&amp;&lt;&gt;&#xD;\"'\t\n<b></b><?p i?> "
        "\xC3\xA9\xF0\x9F\x98\x80</p:a>";
    EXPECT_EQ(document, PrintAgain(document));
}

TEST(QvSAX2PrintHandler, GivesBackRandomText) {
    std::mt19937 engine(11);
    const auto random = [&engine] { return static_cast<unsigned>(engine()); };
    const char* const pieces[] = {
        "a", "&", "<", ">", "\r", "\n", "\t", "\"", "'", " ", "]]>", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "bcdefghijklmnopq"};
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (unsigned i = random() % 30; i > 0; --i) text += pieces[random() % std::size(pieces)];
        QvXMLAttributesImpl attributes;
        attributes.push_back("v", I18NString(std::string_view(text)));
        const std::string printed = Printer().Start("a", attributes).Text(text.c_str()).End("a").Printed();
        EventLog log;
        QvSAX2Parser parser;
        parser.setContentHandler(&log);
        parser.parse(printed.data(), printed.size());
        EXPECT_EQ("start a v=" + text, log.lines.at(1));
        if (!text.empty()) {
            EXPECT_EQ("text:" + text, log.lines.at(2));
        }
        EXPECT_EQ(printed, PrintAgain(printed));
    }
}

TEST(QvSAX2PrintHandlerIndent, PutsElementsOnLinesOfTheirOwn) {
    Printer printer(true);
    printer.handler().startDocument();
    printer.Start("a").Start("b").Text("text").End("b").Start("c").Start("d").End("d").End("c").End("a");
    printer.handler().endDocument();
    EXPECT_EQ("<a>\n  <b>text</b>\n  <c>\n    <d></d>\n  </c>\n</a>\n", printer.Printed());
}

TEST(QvSAX2PrintHandlerIndent, LeavesMixedContentAlone) {
    const std::string mixed = "<b>one<i>two</i> <i><j></j></i></b>";
    I18NString text;
    QvStringWriter target(text);
    QvSAX2PrintHandler handler("UTF-8", false, target, true);
    handler.SetIndent(true);
    QvSAX2Parser parser;
    parser.setContentHandler(&handler);
    parser.parse(mixed.data(), mixed.size());
    EXPECT_EQ("<b>one<i>two</i> <i>\n    <j></j>\n  </i></b>\n", text);
}

TEST(QvSAX2PrintHandlerIndent, LeavesKeptXmlAsItStands) {
    Printer printer(true);
    printer.Start("a").Start("b").End("b").Kept("<expression>1 <r>2</r></expression>").Start("c").Kept("x<y/>z").End("c").End("a");
    EXPECT_EQ("<a>\n  <b></b><expression>1 <r>2</r></expression>\n  <c>x<y/>z</c>\n</a>", printer.Printed());
}
