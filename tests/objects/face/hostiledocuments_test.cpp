// Documents too large for a file of the tree: cut at each byte, deep, wide and long.
#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/limits.h"
#include "objects/face/smaccounting_002_000.h"
#include "objects/face/smmodelcheck_002_000.h"
#include "tests/support/facemodel.h"
#include "tests/support/tempdir.h"
#include "tests/support/cputime.h"

using namespace schema_002_000;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::string Repeat(const std::string& piece, std::size_t times) {
    std::string text;
    text.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) text += piece;
    return text;
}

/** "code message" of the first error, or "read". */
std::string VerdictOf(const SMLoadResult& loaded) {
    for (const SMDiagnostic& diagnostic : loaded.diagnostics)
        if (diagnostic.severity == SMSeverity::error) return diagnostic.code + " " + diagnostic.message;
    return loaded.IsDone() ? "read" : "nothing told";
}

std::string VerdictOf(const std::string& document, const SMXMLLimits& limits = {}) {
    SMLoadOptions options;
    options.limits = limits;
    return VerdictOf(SMLoadModelBytes(document, options));
}

/** Objects inside each other; the pieces stand before, inside and behind `depth` of them. */
struct Nest {
    std::string before, start, end, behind;
    std::string Of(std::size_t depth) const { return ModelDocument(before + Repeat(start, depth) + Repeat(end, depth) + behind); }
};

const std::string ROOT = "<namespace><name locale=\"en\">r</name>";
const std::vector<std::pair<const char*, Nest>> NESTS = {
    {"folders", {ROOT, "<folder><name locale=\"en\">f</name>", "</folder>", "</namespace>"}},
    {"item folders",
     {ROOT + "<querySubject><name locale=\"en\">q</name>", "<queryItemFolder><name locale=\"en\">f</name>", "</queryItemFolder>",
      "</querySubject></namespace>"}},
    {"kept XML",
     {ROOT + "<calculation><name locale=\"en\">c</name><expression>", "<a>", "</a>", "</expression></calculation></namespace>"}},
    {"unknown elements", {ROOT, "<nobody_knows_this>", "</nobody_knows_this>", "</namespace>"}},
};

double SecondsOf(const std::string& document, const SMXMLLimits& limits) {
    return CpuSecondsOf([&] { EXPECT_EQ("read", VerdictOf(document, limits)); });
}

}  // namespace

TEST(HostileDocuments, AreToldAsCutAtEachByteOfThem) {
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- c --><!DOCTYPE project [<!ENTITY e \"x\">]>\n<?p d?><project id=\"1\">"
        "<name>a&amp;b&#65;&e;</name><locales><locale>en</locale></locales><defaultLocale>en</defaultLocale><!-- d -->"
        "<namespace><name locale=\"en\"><![CDATA[root]]></name><folder><name locale='en'>\xC3\xA9\xF0\x9F\x98\x80</name></folder>"
        "</namespace></project>";
    ASSERT_EQ("read", VerdictOf(document));
    ASSERT_GT(document.size(), 300u);
    EXPECT_THAT(VerdictOf(""), StartsWith("SM2002"));
    for (std::size_t length = 1; length < document.size(); ++length) {
        // the document ends within a character
        const bool isCut = (static_cast<unsigned char>(document[length]) & 0xC0) == 0x80;
        const std::string cut = document.substr(0, length);
        // inside markup the parser may name what it expects there
        const std::size_t open = cut.rfind('<'), closed = cut.rfind('>');
        const bool isInMarkup = open != std::string::npos && (closed == std::string::npos || open > closed);
        const std::string expected = isCut ? "SM2005" : "SM2004";
        EXPECT_THAT(VerdictOf(cut), testing::AnyOf(StartsWith(expected), StartsWith(isInMarkup ? "SM2001" : expected))) << cut;
    }
}

TEST(HostileDocuments, AreStoppedAtTheirLimit) {
    const std::string inside = "<project>" + ROOT;
    EXPECT_THAT(VerdictOf(inside + Repeat("<folder>", 1'000'000)), StartsWith("SM2102"));
    EXPECT_THAT(VerdictOf(inside + "<a " + std::string(300'000'000, 'x') + "='1'>"), StartsWith("SM2106"));
    EXPECT_THAT(VerdictOf(inside + "<" + std::string(300'000'000, 'x') + ">"), StartsWith("SM2106"));
    EXPECT_THAT(VerdictOf(inside + "<a x='" + std::string(20'000'000, 'x') + "'/>"), StartsWith("SM2105"));
    EXPECT_THAT(VerdictOf(inside + "<name locale=\"en\">" + std::string(300'000'000, 'x') + "</name>"), StartsWith("SM2106"));
    std::string attributes, names;
    for (int i = 0; i < 110'000; ++i) {
        const std::string number = std::to_string(i);
        if (i < 20'000) attributes += " a" + number + "=''";
        names += "<n" + number + "/>";
    }
    EXPECT_THAT(VerdictOf(inside + "<a" + attributes + "/>"), StartsWith("SM2104"));
    EXPECT_THAT(VerdictOf(inside + names), StartsWith("SM2107"));
}

TEST(HostileDocuments, MakeNoLongerListsThanTheLimitAllows) {
    SMLoadOptions options;
    options.limits.findings = 4;
    const auto document = [](const std::string& one, int times) {
        std::string folders;
        for (int i = 0; i < times; ++i) folders += "<folder><name locale=\"en\">f" + std::to_string(i) + "</name>" + one + "</folder>";
        return ModelDocument(ROOT + folders + "</namespace>");
    };
    const std::vector<std::tuple<std::string, int, std::string>> TOO_MANY = {
        {"<nobody_knows_this>t</nobody_knows_this>", 2, "reading logs more events than are to be listed"},  // two each
        {"<description locale=\"en\" odd=\"1\"/>", 4, "5 parts of the document would not be kept, more than are to be listed"},
        {"<lastChanged>soon</lastChanged>", 4, "5 values cannot be read, more than are to be listed"},
        {"<shortcut><name locale=\"en\"/><refobj>[no].[such]</refobj></shortcut>", 4, "there are more than 4 findings"},
    };
    for (const auto& [one, most, what] : TOO_MANY) {
        EXPECT_EQ("read", VerdictOf(SMCheckModelBytes(document(one, most), options))) << one;
        const SMCheckResult checked = SMCheckModelBytes(document(one, most + 1), options);
        ASSERT_EQ(checked.diagnostics.size(), 1u) << one;
        EXPECT_EQ(VerdictOf(checked), "SM2113 " + what + "; where that is meant, raise the limit, as by --limits findings=8");
        EXPECT_TRUE(checked.losses.empty() && checked.findings.empty() && !checked.project) << one;
    }
}

TEST(HostileDocuments, AreReadOnWhereOnlyTheLogIsTooLong) {
    SMLoadOptions options;
    options.limits.findings = 4;
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument(ROOT + Repeat("<a/>", 5) + "</namespace>"), options);
    EXPECT_TRUE(loaded.IsDone());
    ASSERT_EQ(loaded.diagnostics.size(), 5u);
    EXPECT_EQ(loaded.diagnostics.back().message, "6 more events are not listed") << "two for each";
    EXPECT_EQ(loaded.diagnostics.back().column, loaded.diagnostics[3].column + 4) << "where the first of them is";
}

TEST(HostileDocuments, MayBeWide) {
    EXPECT_EQ("read", VerdictOf(ModelDocument(ROOT + Repeat("<folder><name locale=\"en\">f</name></folder>", 20'000) + "</namespace>")));
}

TEST(HostileDocuments, MayBeAsDeepAsTheLimitAllows) {
    SMXMLLimits limits;
    limits.depth = 1'000'000;
    for (const auto& [what, nest] : NESTS) EXPECT_EQ("read", VerdictOf(nest.Of(150'000), limits)) << what;
}

TEST(HostileDocuments, AreRefusedByWhatTheStackIsTooSmallFor) {
    SMLoadOptions options;
    options.limits.depth = 1'000'000;
    for (const std::size_t nest : {0u, 1u}) {
        const SMAccountedResult accounted = SMLoadModelBytesAccounted(NESTS[nest].second.Of(150'000), options);
        EXPECT_EQ(accounted.status, SMStatus::failed);
        EXPECT_THAT(VerdictOf(accounted), StartsWith("SM2112 the model is too deep for the stack of this thread"));
        const SMLoadResult loaded = SMLoadModelBytes(NESTS[nest].second.Of(150'000), options);
        ASSERT_EQ("read", VerdictOf(loaded));
        I18NString written;
        QvStringWriter target(written);
        const SMSaveResult saved = SMWriteModel(*loaded.project, target);
        EXPECT_EQ(saved.status, SMStatus::failed);
        ASSERT_FALSE(saved.diagnostics.empty());
        EXPECT_EQ(saved.diagnostics.back().code, "SM2112");
    }
}

TEST(HostileDocuments, CostNoMoreThanTheirLengthWhenDeep) {
    SMXMLLimits limits;
    limits.depth = 1'000'000;
    for (const auto& [what, nest] : NESTS) {
        const double once = SecondsOf(nest.Of(10'000), limits), eightfold = SecondsOf(nest.Of(80'000), limits);
        EXPECT_LT(eightfold, 24 * once + 0.2) << what;
    }
}

TEST(HostileDocuments, LeaveNothingBehindWhenTheyEndDeep) {
    SMXMLLimits limits;
    limits.depth = 1'000'000;
    EXPECT_THAT(VerdictOf("<project>" + ROOT + Repeat("<folder><name locale=\"en\">f</name>", 100'000), limits), StartsWith("SM2004"));
}

// ---- separate files

namespace {

std::string Placeholder(const std::string& file) {
    return "<smnamespacefile id=\"i\" name=\"n\" filename=\"" + file + "\" filepath=\"\"></smnamespacefile>";
}

/** "file:line:column" of what ended a read. */
std::string PlaceOf(const SMLoadResult& loaded) {
    const SMDiagnostic& told = loaded.diagnostics.back();
    return told.file + ":" + std::to_string(told.line) + ":" + std::to_string(told.column);
}

/** ":line:column" of a piece of a document. */
std::string PlaceIn(const std::string& document, const std::string& piece) {
    const std::size_t at = document.find(piece);
    const auto lines = std::count(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    const std::size_t start = document.rfind('\n', at) + 1;  // 0 in the first line
    return ":" + std::to_string(lines + 1) + ":" + std::to_string(at - start + 1);
}

class HostileFiles : public testing::Test {
  protected:
    SMLoadResult Load(const std::string& content) {
        m_dir.Write("main.xml", ModelDocument(content));
        SMLoadOptions options;
        options.limits = m_limits;
        return SMLoadModel(m_dir.Path("main.xml"), options);
    }

    TempDir m_dir;
    SMXMLLimits m_limits;
};

}  // namespace

TEST_F(HostileFiles, CountTogetherWithTheMainDocument) {
    m_dir.Write("a.qvf", NamespaceElement("a", "<folder><name locale=\"en\">f</name></folder>"));
    m_dir.Write("b.qvf", NamespaceElement("b"));
    // nine of the main document, which include the placeholders, four and two of the files
    const std::string placeholders =
        "<namespace><name locale=\"en\">r</name>" + Placeholder("a.qvf") + Placeholder("b.qvf") + "</namespace>";
    EXPECT_EQ("read", VerdictOf(Load(placeholders)));
    m_limits.elements = 15;
    EXPECT_EQ("read", VerdictOf(Load(placeholders)));
    m_limits.elements = 14;
    EXPECT_THAT(VerdictOf(Load(placeholders)), StartsWith("SM2103"));
    m_limits = {};
    m_limits.documentBytes = ModelDocument(placeholders).size() + 100;
    const SMLoadResult tooLarge = Load(placeholders);
    EXPECT_THAT(VerdictOf(tooLarge), StartsWith("SM2101"));
    EXPECT_EQ(tooLarge.status, SMStatus::failed);
}

TEST_F(HostileFiles, CountTheElementsAroundThem) {
    m_dir.Write("a.qvf", NamespaceElement("a", "<folder><name locale=\"en\">f</name></folder>"));
    m_limits.depth = 6;
    EXPECT_EQ("read", VerdictOf(Load(ROOT + Placeholder("a.qvf") + "</namespace>")));
    m_limits.depth = 5;
    const SMLoadResult tooDeep = Load(ROOT + Placeholder("a.qvf") + "</namespace>");
    EXPECT_THAT(VerdictOf(tooDeep), StartsWith("SM2102"));
    EXPECT_EQ(PlaceOf(tooDeep), m_dir.Path("a.qvf") + ":1:46");
}

TEST_F(HostileFiles, ThatNameTheSameTooOftenAreToldAtTheirPlaceholder) {
    m_dir.Write("a.qvf", NamespaceElement("a"));
    const std::string before = ROOT + Repeat(Placeholder("a.qvf"), 10'001);
    const std::string document = before + Placeholder("./a.qvf") + "</namespace>";
    const SMLoadResult tooOften = Load(document);
    EXPECT_EQ(tooOften.diagnostics.back().code, "SM2108");
    EXPECT_EQ(tooOften.diagnostics.back().message, "the placeholders of the model name the same files too often");
    EXPECT_EQ(PlaceOf(tooOften), m_dir.Path("main.xml") + PlaceIn(ModelDocument(document), Placeholder("./a.qvf")));
}

TEST_F(HostileFiles, TellEventsBeforeTheEndOfAReadWhereTheyBelong) {
    const std::string unknown = "<unknown>x</unknown>";
    m_dir.Write("a.qvf", NamespaceElement("a", "<folder><name locale=\"en\">f</name>\n  " + unknown + "</folder>"));
    const auto placesIn = [](const SMLoadResult& loaded) {
        std::vector<std::string> places;
        for (const SMDiagnostic& told : loaded.diagnostics)
            places.push_back(std::filesystem::path(told.file).filename().string() + ":" + std::to_string(told.line) + ":" +
                             std::to_string(told.column));
        return places;
    };
    for (const std::string character : {"", "\xC2\x85"}) {
        const std::string content = "<!--" + character + "-->" + ROOT + Placeholder("a.qvf") + "\n   " + unknown + "<broken>";
        const std::string end = character.empty() ? "main.xml:3:34" : "main.xml:3:35";  // behind the "</" of another tag than the open one
        const std::string broken = content + character + "</namespace>";
        m_limits = {};
        EXPECT_THAT(placesIn(Load(broken)), ElementsAre("a.qvf:2:3", "a.qvf:2:12", "main.xml:3:4", "main.xml:3:13", "main.xml:3:24", end));
        m_limits.findings = 1;
        EXPECT_THAT(placesIn(Load(broken)), ElementsAre("a.qvf:2:3", end, "a.qvf:2:12")) << "the last one counts those behind the first";
    }
}

TEST_F(HostileFiles, AreBoundInTheirNumber) {
    for (const char* name : {"a.qvf", "b.qvf", "c.qvf"}) m_dir.Write(name, NamespaceElement(name));
    const std::string three = ROOT + Placeholder("a.qvf") + Placeholder("b.qvf") + Placeholder("c.qvf") + "</namespace>";
    m_limits.partFiles = 3;
    EXPECT_EQ("read", VerdictOf(Load(three)));
    m_limits.partFiles = 2;
    const SMLoadResult tooMany = Load(three);
    EXPECT_EQ(tooMany.status, SMStatus::failed);
    EXPECT_EQ(PlaceOf(tooMany), m_dir.Path("main.xml") + PlaceIn(ModelDocument(three), Placeholder("c.qvf")));
    EXPECT_EQ(VerdictOf(tooMany),
              "SM2108 the model has more than 2 separate files; where that is meant, raise the limit, as by --limits files=4");
}

TEST_F(HostileFiles, AreBoundInTheirNesting) {
    for (int i = 0; i < 120; ++i)
        m_dir.Write("f" + std::to_string(i) + ".qvf",
                    NamespaceElement("n" + std::to_string(i), Placeholder("f" + std::to_string(i + 1) + ".qvf")));
    const SMLoadResult loaded = Load(Placeholder("f0.qvf"));
    EXPECT_EQ(loaded.status, SMStatus::failed);
    EXPECT_EQ(VerdictOf(loaded), "SM2111 more than 100 files would be read one inside the other");
    const std::string next = Placeholder("f100.qvf");
    EXPECT_EQ(PlaceOf(loaded), m_dir.Path("f99.qvf") + PlaceIn(NamespaceElement("n99", next), next));
}
