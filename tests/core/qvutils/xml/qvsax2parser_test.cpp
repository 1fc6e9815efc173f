#include "core/qvutils/xml/qvsax2parser.h"

#include <sys/stat.h>

#include <cstdio>
#include <random>
#include <stdexcept>
#include <thread>

#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/diag/tklerrors.h"
#include "tests/support/eventlog.h"
#include "tests/support/tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

void Parse(std::string_view document, QvContentHandler* handler) {
    QvSAX2Parser parser;
    parser.setContentHandler(handler);
    parser.setSourceName("document");
    parser.parse(document.data(), document.size());
}

/** The events between the start and the end of the document. */
std::vector<std::string> EventsOf(std::string_view document) {
    EventLog log;
    Parse(document, &log);
    EXPECT_EQ("start document", log.lines.front());
    EXPECT_EQ("end document", log.lines.back());
    return {log.lines.begin() + 1, log.lines.end() - 1};
}

/** Collects the text of a document. */
std::string TextOf(std::string_view document) {
    EventLog log;
    std::string text;
    log.onText = [&](const I18NString& more) { text += more.utf8(); };
    Parse(document, &log);
    return text;
}

}  // namespace

TEST(QvSAX2ParserEvents, JoinsTextCDataAndReferencesIntoOneEvent) {
    EXPECT_THAT(EventsOf("<a>x&amp;<![CDATA[<y>]]>z<!-- c -->&#x1F600;</a>"),
                ElementsAre("start a", "text:x&<y>z\xF0\x9F\x98\x80", "end a"));
}

TEST(QvSAX2ParserEvents, DeliversTextBeforeEachTag) {
    EXPECT_THAT(EventsOf("<a>1<b>2</b>3<c/>4</a>"),
                ElementsAre("start a", "text:1", "start b", "text:2", "end b", "text:3", "start c", "end c", "text:4", "end a"));
}

TEST(QvSAX2ParserEvents, CutsLocalNamesAndKeepsXmlnsAttributesInTheirPlace) {
    EXPECT_THAT(EventsOf("<b:c x='1' xmlns:b=\"u\" b:y=\"2\" xmlns=\"v\"/>"),
                ElementsAre("start b:c(c) x=1 xmlns:b=u b:y=2 xmlns=v", "end b:c(c)"));
}

TEST(QvSAX2ParserEvents, TakesPrefixesThatNobodyDeclares) {
    EXPECT_THAT(EventsOf("<dummy xsi:type='t'><p:a/></dummy>"),
                ElementsAre("start dummy xsi:type=t", "start p:a(a)", "end p:a(a)", "end dummy"));
}

TEST(QvSAX2ParserEvents, DeliversWhiteSpaceInsideTheRootOnly) {
    EXPECT_THAT(EventsOf("\n <a> <b/>\n</a>\n \n"), ElementsAre("start a", "text: ", "start b", "end b", "text:\n", "end a"));
}

TEST(QvSAX2ParserEvents, DeliversProcessingInstructionsInTheirPlace) {
    EXPECT_THAT(EventsOf("<?p q r?><a>1<?x?>2</a>"), ElementsAre("pi p|q r", "start a", "text:1", "pi x|", "text:2", "end a"));
}

TEST(QvSAX2ParserEvents, NormalizesLineEndsAndAttributeBlanks) {
    EXPECT_THAT(EventsOf("<a x='1\r\n2\t3&#10;4'>\r\ny\rz&#13;</a>"), ElementsAre("start a x=1 2 3\n4", "text:\ny\nz\r", "end a"));
}

TEST(QvSAX2ParserEvents, DeliversOneTextForAMegabyteAndMore) {
    const std::string text(3'000'000, 'x');
    EXPECT_THAT(EventsOf("<a>" + text + "<![CDATA[" + text + "]]></a>"), ElementsAre("start a", "text:" + text + text, "end a"));
}

TEST(QvSAX2ParserEvents, GivesTheSameNameObjectForTheWholeDocument) {
    EventLog log;
    std::vector<I18NString> names;
    log.onStart = [&](const I18NString& qName, const QvXMLAttributes&) { names.push_back(qName); };
    Parse("<a><p:b/><a/><p:b></p:b></a>", &log);
    ASSERT_EQ(4u, names.size());
    EXPECT_TRUE(names[0].shared().same(names[2].shared()));
    EXPECT_TRUE(names[1].shared().same(names[3].shared()));
}

TEST(QvSAX2ParserEvents, KeepsTextsThatAHandlerHasCopied) {
    EventLog log;
    std::vector<I18NString> texts;
    log.onText = [&](const I18NString& text) { texts.push_back(text); };
    Parse("<a>one<b>two</b>three</a>", &log);
    EXPECT_THAT(texts, ElementsAre(I18NString("one"), I18NString("two"), I18NString("three")));
}

TEST(QvSAX2ParserEvents, TellNamesApartFromOneDocumentToTheNext) {
    for (int i = 0; i < 200; ++i) {
        const std::string name = "n" + std::to_string(i);
        EXPECT_THAT(EventsOf("<" + name + "><x" + name + "/></" + name + ">"),
                    ElementsAre("start " + name, "start x" + name, "end x" + name, "end " + name));
    }
}

TEST(QvSAX2ParserEvents, KnowThousandsOfNames) {
    std::string document = "<r>";
    std::vector<std::string> expected = {"start r"};
    for (int round = 0; round < 2; ++round)
        for (int i = 0; i < 5000; ++i) {
            const std::string name = "n" + std::to_string(i);
            document += "<" + name + "/>";
            expected.push_back("start " + name);
            expected.push_back("end " + name);
        }
    expected.push_back("end r");
    EXPECT_EQ(expected, EventsOf(document + "</r>"));
}

TEST(QvSAX2ParserEvents, ParseWithoutAHandlerOnlyChecks) {
    EXPECT_NO_THROW(Parse("<a>text<b c='d'/><?p i?></a>", nullptr));
    EXPECT_THROW(Parse("<a>", nullptr), TklRuntimeError);
}

TEST(QvSAX2ParserAttributes, AreFoundByQualifiedAndByLocalName) {
    EventLog log;
    log.onStart = [&](const I18NString&, const QvXMLAttributes& attrs) {
        const I18NString none;
        EXPECT_EQ(3, attrs.getLength());
        EXPECT_EQ(1, attrs.getIndex("p:name"));
        EXPECT_EQ("v1", attrs.getValue("p:name"));
        EXPECT_EQ(0, attrs.getIndex("nam"));
        EXPECT_EQ(-1, attrs.getIndex("name"));
        EXPECT_EQ(-1, attrs.getIndex("p:nam"));
        EXPECT_EQ(-1, attrs.getIndex(none));
        EXPECT_EQ(1, attrs.getIndex(none, "name"));
        EXPECT_EQ("v1", attrs.getValue(none, "name"));
        EXPECT_EQ("CDATA", attrs.getType(none, "name"));
        EXPECT_EQ(-1, attrs.getIndex("uri", "name"));
        EXPECT_EQ("name", attrs.getLocalName(1));
        EXPECT_EQ("", attrs.getURI(1));
        EXPECT_EQ("CDATA", attrs.getType(1));
        EXPECT_EQ("CDATA", attrs.getType("nam"));
        EXPECT_EQ("\xC3\xA9t\xC3\xA9", attrs.getQName(2));
        EXPECT_EQ(2, attrs.getIndex("\xC3\xA9t\xC3\xA9"));
        EXPECT_EQ("\xF0\x9F\x98\x80", attrs.getValue(2));
    };
    Parse("<a nam='v0' p:name='v1' \xC3\xA9t\xC3\xA9='\xF0\x9F\x98\x80'/>", &log);
    EXPECT_EQ(4u, log.lines.size());
}

TEST(QvSAX2ParserAttributes, AreEmptyTextsWhenAbsentOrOutOfRange) {
    EventLog log;
    log.onStart = [&](const I18NString&, const QvXMLAttributes& attrs) {
        for (const int index : {-1, 1, 100}) {
            EXPECT_EQ("", attrs.getQName(index));
            EXPECT_EQ("", attrs.getLocalName(index));
            EXPECT_EQ("", attrs.getType(index));
            EXPECT_EQ("", attrs.getValue(index));
        }
        EXPECT_EQ("", attrs.getValue("b"));
        EXPECT_EQ("", attrs.getType("b"));
        EXPECT_EQ("", attrs.getValue("u", "b"));
    };
    Parse("<a x='1'/>", &log);
    EXPECT_EQ(4u, log.lines.size());
}

TEST(QvSAX2ParserAttributes, KeepValuesOfAnyLength) {
    std::string document = "<r>";
    std::vector<std::string> expected;
    for (std::size_t length : {0u, 1u, 30u, 31u, 32u, 33u, 5000u}) {
        expected.push_back(std::string(length, 'v'));
        document += "<a x='" + expected.back() + "'/>";
    }
    EventLog log;
    std::vector<std::string> values;
    log.onStart = [&](const I18NString& qName, const QvXMLAttributes& attrs) {
        if (qName == "a") values.emplace_back(attrs.getValue("x").utf8());
    };
    Parse(document + "</r>", &log);
    EXPECT_EQ(expected, values);
}

TEST(QvSAX2ParserText, ComesThroughAtEachPlaceOfABlock) {
    // Characters of each length, moved over the ends of all blocks on the way.
    const std::string piece = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    std::string text;
    while (text.size() < 200'000) text += piece;
    for (std::size_t shift = 0; shift < 12; ++shift) {
        const std::string expected = std::string(shift, '-') + text;
        EXPECT_TRUE(TextOf("<a>" + expected + "</a>") == expected) << shift;
    }
}

TEST(QvSAX2ParserText, ComesThroughForRandomText) {
    std::mt19937 engine(7);
    const auto random = [&engine] { return static_cast<unsigned>(engine()); };
    const auto append = [](std::string& text, unsigned c) {
        if (c < 0x80) {
            text += static_cast<char>(c);
        } else if (c < 0x800) {
            text += static_cast<char>(0xC0 | c >> 6);
            text += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            if (c < 0x10000) {
                text += static_cast<char>(0xE0 | c >> 12);
            } else {
                text += static_cast<char>(0xF0 | c >> 18);
                text += static_cast<char>(0x80 | (c >> 12 & 0x3F));
            }
            text += static_cast<char>(0x80 | (c >> 6 & 0x3F));
            text += static_cast<char>(0x80 | (c & 0x3F));
        }
    };
    for (int round = 0; round < 200; ++round) {
        std::string text;
        for (unsigned i = random() % 400; i > 0; --i) {
            const unsigned limits[] = {0x5B, 0x5B, 0x5B, 0x800, 0x10000, 0x110000};
            unsigned c = random() % limits[random() % 6];
            if (c < 0x20 || c == '&' || c == '<' || c == '>' || (c >= 0xD800 && c < 0xE000) || (c >= 0xFFFE && c < 0x10000)) c = 'x';
            append(text, c);
        }
        EXPECT_EQ(text, TextOf("<a>" + text + "</a>"));
    }
}

TEST(QvSAX2ParserEncodings, ReadUtf16Latin1AndTheByteOrderMark) {
    EXPECT_EQ("\xC3\xA9", TextOf("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"));
    EXPECT_EQ("\xC3\xA9", TextOf("\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><a>\xC3\xA9</a>"));
    const std::u16string utf16 = u"\uFEFF<a>\u00E9\U0001F600</a>";
    EXPECT_EQ("\xC3\xA9\xF0\x9F\x98\x80", TextOf({reinterpret_cast<const char*>(utf16.data()), utf16.size() * 2}));
}

TEST(QvSAX2ParserEncodings, RefuseAnUnknownOne) {
    EXPECT_THROW(Parse("<?xml version='1.0' encoding='klingon'?><a/>", nullptr), TklRuntimeError);
}

TEST(QvSAX2ParserReaders, NestInsideAHandler) {
    EventLog outer;
    std::vector<std::string> inner;
    outer.onStart = [&](const I18NString& qName, const QvXMLAttributes& attrs) {
        if (qName == "b") {
            inner = EventsOf("<x><y z='1'>deep</y></x>");
            // The outer parse still stands on its own ground.
            EXPECT_EQ("v", attrs.getValue("k"));
        }
    };
    Parse("<a>1<b k='v'>2</b>3</a>", &outer);
    EXPECT_THAT(inner, ElementsAre("start x", "start y z=1", "text:deep", "end y", "end x"));
    EXPECT_THAT(outer.lines,
                ElementsAre("start document", "start a", "text:1", "start b k=v", "text:2", "end b", "text:3", "end a", "end document"));
}

TEST(QvSAX2ParserReaders, NestTenDeep) {
    std::function<int(int)> parse = [&](int depth) {
        int below = 0;
        EventLog log;
        log.onStart = [&](const I18NString&, const QvXMLAttributes&) { below = depth ? parse(depth - 1) : 0; };
        Parse("<a/>", &log);
        return below + 1;
    };
    EXPECT_EQ(11, parse(10));
}

TEST(QvSAX2ParserReaders, PassAHandlersExceptionAndGoOn) {
    for (const char* document : {"<a>1<b>2</b></a>", "<!DOCTYPE a><a>1<b>2</b></a>"}) {
        EventLog log;
        log.onStart = [](const I18NString& qName, const QvXMLAttributes&) {
            if (qName == "b") throw std::logic_error("enough");
        };
        EXPECT_THROW(Parse(document, &log), std::logic_error);
        EXPECT_EQ("start b", log.lines.back()) << "no end events are made up";
        EXPECT_THAT(EventsOf("<x>y</x>"), ElementsAre("start x", "text:y", "end x"));
    }
}

TEST(QvSAX2ParserReaders, GoOnAfterAParserError) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_THROW(Parse("<a>1<b>2</c>", nullptr), TklRuntimeError);
        EXPECT_THAT(EventsOf("<x>y</x>"), ElementsAre("start x", "text:y", "end x"));
    }
}

TEST(QvSAX2ParserReaders, CanBeUsedAgainWithAnotherHandler) {
    EventLog first, second;
    QvSAX2Parser parser;
    TklByteBuffer document;
    document << "<a/>";
    parser.setContentHandler(&first);
    parser.parse(document);
    parser.setContentHandler(nullptr);
    parser.parse(document);
    parser.setContentHandler(&second);
    parser.parse(document);
    EXPECT_THAT(first.lines, ElementsAre("start document", "start a", "end a", "end document"));
    EXPECT_EQ(first.lines, second.lines);
}

TEST(QvSAX2ParserReaders, WorkInSeveralThreads) {
    std::vector<std::thread> threads;
    std::vector<std::vector<std::string>> lines(4);
    for (std::size_t i = 0; i < lines.size(); ++i)
        threads.emplace_back([&lines, i] {
            for (int round = 0; round < 50; ++round) {
                EventLog log;
                Parse("<a><b x='1'>text</b></a>", &log);
                lines[i] = log.lines;
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const auto& of : lines) EXPECT_EQ(7u, of.size());
}

namespace {

/** A handler that knows the object under construction, and writes down where the parse stands at each text. */
class PlaceLog : public EventLog, public SMObjectLocator {
  public:
    PlaceLog() {
        onText = [this](const I18NString&) {
            const SMSourceContext context = SMSourceFrame::Innermost()->Describe();
            places.push_back(std::string(context.file) + ":" + std::to_string(context.line) + ":" + std::string(context.element));
            objects.push_back(context.object);
        };
    }
    const IOObject* InnermostObject() const override { return object; }

    std::vector<std::string> places;
    std::vector<const IOObject*> objects;
    const IOObject* object = nullptr;
};

}  // namespace

TEST(QvSAX2ParserPlace, IsKnownDuringTheParseOnly) {
    PlaceLog log;
    log.object = reinterpret_cast<const IOObject*>(&log);
    EXPECT_EQ(nullptr, SMSourceFrame::Innermost());
    Parse("<a>\n<p:b>1</p:b>\n\n<c>2</c>3</a>", &log);
    EXPECT_EQ(nullptr, SMSourceFrame::Innermost());
    EXPECT_THAT(log.places, ElementsAre("document:2:a", "document:2:p:b", "document:4:a", "document:4:c", "document:4:a"));
    EXPECT_EQ(log.object, log.objects.front());
}

TEST(QvSAX2ParserPlace, GoesAwayWithAnException) {
    EXPECT_THROW(Parse("<a>", nullptr), TklRuntimeError);
    EXPECT_EQ(nullptr, SMSourceFrame::Innermost());
}

TEST(QvSAX2ParserPlace, HasNoObjectWhenTheHandlerKnowsNone) {
    EventLog log;
    bool asked = false;
    log.onText = [&](const I18NString&) {
        asked = true;
        EXPECT_EQ(nullptr, SMSourceFrame::Innermost()->Describe().object);
    };
    Parse("<a>1</a>", &log);
    EXPECT_TRUE(asked);
}

TEST(QvSAX2ParserPlace, IsThatOfTheInnermostParse) {
    EventLog outer;
    std::string after;
    PlaceLog inner;
    outer.onStart = [&](const I18NString&, const QvXMLAttributes&) {
        QvSAX2Parser parser;
        parser.setContentHandler(&inner);
        parser.setSourceName("part");
        const std::string_view part = "<x>t</x>";
        parser.parse(part.data(), part.size());
        after = SMSourceFrame::Innermost()->Describe().file;
    };
    Parse("<a/>", &outer);
    EXPECT_THAT(inner.places, ElementsAre("part:1:x"));
    EXPECT_EQ("document", after);
}

TEST(QvSAX2ParserFiles, AreReadByTheirLocalPath) {
    const TempDir dir;
    const std::string path = dir.Write("mod\xC3\xA8le #1 %20?.xml", "<?xml version=\"1.0\"?>\n<a>\xC3\xA9</a>");
    PlaceLog log;
    QvSAX2Parser parser;
    parser.setContentHandler(&log);
    parser.parse(I18NString(path.c_str()));
    EXPECT_THAT(log.places, ElementsAre(path + ":2:a"));
}

TEST(QvSAX2ParserFiles, AreReadBlockByBlock) {
    const TempDir dir;
    std::string text;
    while (text.size() < 1'000'000) text += "\xE2\x82\xAC\xC3\xA9 and more, ";
    for (std::size_t shift = 0; shift < 4; ++shift) {
        const std::string expected = std::string(shift, '.') + text;
        const std::string path = dir.Write("large.xml", "<a>" + expected + "</a>");
        EventLog log;
        std::string read;
        log.onText = [&](const I18NString& more) { read += more.utf8(); };
        QvSAX2Parser parser;
        parser.setContentHandler(&log);
        parser.parse(I18NString(path.c_str()));
        EXPECT_TRUE(read == expected);
    }
}

TEST(QvSAX2ParserFiles, MayBePipes) {
    const TempDir dir;
    const std::string path = dir.Path("pipe");
    ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
    std::thread writer([&] {
        std::FILE* pipe = std::fopen(path.c_str(), "w");
        for (const char* part : {"<?xml version='1.0'", "?><a>", "\xC3", "\xA9</", "a>"}) {
            std::fputs(part, pipe);
            std::fflush(pipe);
        }
        std::fclose(pipe);
    });
    EventLog log;
    QvSAX2Parser parser;
    parser.setContentHandler(&log);
    parser.parse(I18NString(path.c_str()));
    writer.join();
    EXPECT_THAT(log.lines, ElementsAre("start document", "start a", "text:\xC3\xA9", "end a", "end document"));
}

namespace {

TklRuntimeError ErrorOfFile(const std::string& path) {
    QvSAX2Parser parser;
    try {
        parser.parse(I18NString(std::string_view(path)));
    } catch (const TklRuntimeError& error) {
        return error;
    }
    ADD_FAILURE() << path << " was read";
    return TklRuntimeError("");
}

}  // namespace

TEST(QvSAX2ParserFiles, ThatCannotBeReadRaiseWithTheReason) {
    const TempDir dir;
    const auto expect = [](const std::string& path, const char* reason) {
        const TklRuntimeError error = ErrorOfFile(path);
        EXPECT_EQ(path, error.file());
        EXPECT_THAT(error.message(), HasSubstr(reason));
    };
    expect(dir.Path("absent.xml"), "No such file");
    expect(dir.Path(), "Is a directory");
    expect("", "No such file");
    expect(dir.Write("file", "x") + "/below.xml", "Not a directory");
    expect(std::string("a\0b", 3), "Invalid argument");
    expect(dir.Write("empty.xml", ""), "the document is empty");
    expect("/dev/null", "the document is empty");
    ASSERT_EQ(0, ::chmod(dir.Write("secret.xml", "<a/>").c_str(), 0));
    const WithoutPrivileges user;
    expect(dir.Path("secret.xml"), "Permission denied");
}

TEST(QvSAX2ParserFiles, ThatAreCutOffRaiseWithThePlace) {
    const TempDir dir;
    const TklRuntimeError error = ErrorOfFile(dir.Write("cut.xml", "<a>\n  <b>text"));
    EXPECT_EQ(dir.Path("cut.xml"), error.file());
    EXPECT_EQ(2, error.line());
    EXPECT_EQ(10, error.column());
    EXPECT_EQ(error.file() + ":2:10: " + error.message(), error.what());
}
