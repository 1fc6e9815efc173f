#include "objects/face/smaccounting_002_000.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/documents.h"
#include "tests/support/tempdir.h"

namespace {

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
namespace fs = std::filesystem;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";
const std::string UNKNOWN_TEXT = "stray";

/** "line:column code message". */
std::vector<std::string> Told(const SMAccountedResult& result) {
    std::vector<std::string> told;
    for (const SMLoss& loss : result.losses) {
        const SMDiagnostic found = SMDiagnosticOf(loss);
        told.push_back(std::to_string(found.line) + ":" + std::to_string(found.column) + " " + found.code + " " + found.message);
    }
    return told;
}

std::vector<std::string> LossesOf(const std::string& document) {
    const SMAccountedResult result = SMLoadModelBytesAccounted(document);
    EXPECT_TRUE(result.IsDone());
    return Told(result);
}

std::string Subject(const std::string& content, const std::string& attributes = "") {
    Document document;
    document.name = "p";
    document.defaultLocale = "en";
    document.locales = {"en"};
    document.root = NamespaceElement(
        "n", "\n<querySubject status=\"valid\"" + attributes + "><name locale=\"en\">s</name>" + content + "</querySubject>\n");
    return document.Text();
}

// ---------------------------------------------------------------------------------------------------------------------------
// Something unknown at every place of a document.

enum class Unknown { element, attribute, text };

/** Where something may be put: behind the name of a start tag, or behind a start tag in front of what is no text. */
std::vector<std::size_t> PlacesIn(const std::string& document, Unknown what) {
    std::vector<std::size_t> places;
    for (std::size_t at = 0; (at = document.find('<', at)) != std::string::npos; ++at) {
        if (!std::isalpha(static_cast<unsigned char>(document[at + 1]))) continue;
        const std::size_t end = document.find('>', at);  // the examples write no ">" in values
        const std::size_t next = document.find_first_not_of(" \r\n\t", end + 1);
        if (what == Unknown::attribute)
            places.push_back(document.find_first_of(" >/", at));
        else if (document[end - 1] != '/' && document[next] == '<')
            places.push_back(end + 1);
    }
    return places;
}

const char* Piece(Unknown what) {
    return what == Unknown::attribute ? " zz=\"y\"" : what == Unknown::element ? "<zz>q</zz>" : "stray";
}

using LineAndColumn = std::pair<long, long>;

/** Places of offsets that grow. */
class Places {
  public:
    explicit Places(const std::string& document) : m_document(document) {}
    LineAndColumn Of(std::size_t offset) {
        for (; m_at < offset; ++m_at) {
            const auto byte = static_cast<unsigned char>(m_document[m_at]);
            if (byte == '\n') {
                ++m_line;
                m_column = 1;
            } else {
                m_column += byte >= 0xF0 ? 2 : (byte & 0xC0) == 0x80 ? 0 : 1;
            }
        }
        return {m_line, m_column};
    }

  private:
    const std::string& m_document;
    std::size_t m_at = 0;
    long m_line = 1, m_column = 1;
};

std::size_t CountOf(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(piece, at)) != std::string::npos; ++at) ++count;
    return count;
}

class SMAccountingOf : public testing::TestWithParam<std::tuple<const char*, Unknown>> {
  protected:
    static void Copy(const fs::path& from, const fs::path& to) {
        for (const auto& entry : fs::directory_iterator(from))
            if (entry.is_regular_file()) fs::copy_file(entry.path(), to / entry.path().filename());
    }
};

/**
 * All at once: each is told where it stands, but for those that the model does keep, which a save proves by their number. What is
 * told of the document as it is, is told no more and no less.
 */
TEST_P(SMAccountingOf, TellsEachUnknownPieceAndNothingElse) {
    const auto [name, what] = GetParam();
    const fs::path example = MODELS + name;
    TempDir directory;
    Copy(example.parent_path(), directory.Path());
    const std::string path = directory.Path(example.filename().string());
    const std::string document = ReadFile(path);
    const std::string piece = Piece(what);

    std::string changed;
    std::vector<std::size_t> offsets;
    std::size_t from = 0;
    for (const std::size_t place : PlacesIn(document, what)) {
        changed.append(document, from, place - from);
        offsets.push_back(changed.size() + (what == Unknown::attribute ? 1 : 0));
        changed += piece;
        from = place;
    }
    changed.append(document, from);
    directory.Write(example.filename().string(), changed);

    const SMAccountedResult result = SMLoadModelAccounted(path);
    ASSERT_TRUE(result.IsDone());
    std::map<LineAndColumn, const SMLoss*> told;
    for (const SMLoss& loss : result.losses) told[{loss.line, loss.column}] = &loss;
    EXPECT_EQ(told.size(), result.losses.size());
    std::size_t kept = 0;
    Places places(changed);
    for (const std::size_t offset : offsets) {
        const auto found = told.find(places.Of(offset));
        if (found == told.end()) {
            ++kept;
            continue;
        }
        EXPECT_EQ(found->second->bytes, piece.size() - (what == Unknown::attribute ? 1 : 0));
        told.erase(found);
    }
    EXPECT_THAT(told, IsEmpty());
    EXPECT_GT(offsets.size(), kept);

    I18NString written;
    QvStringWriter writer(written);
    ASSERT_TRUE(SMWriteModel(*result.project, writer).IsDone());
    EXPECT_EQ(kept, CountOf(std::string(written.utf8()), what == Unknown::text      ? UNKNOWN_TEXT
                                                         : what == Unknown::element ? "<zz>"
                                                                                    : "zz=\""));
}

std::string NameOf(const testing::TestParamInfo<std::tuple<const char*, Unknown>>& parameter) {
    const auto [document, what] = parameter.param;
    std::string name = document;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '/' || c == '.'; }, '_');
    return name + (what == Unknown::element ? "Element" : what == Unknown::attribute ? "Attribute" : "Text");
}

INSTANTIATE_TEST_SUITE_P(Examples, SMAccountingOf,
                         testing::Combine(testing::Values("minimal.xml", "everything.xml", "foodmart.xml", "tpcds.xml",
                                                          "multifile/single.xml", "multifile/main.xml"),
                                          testing::Values(Unknown::element, Unknown::attribute, Unknown::text)),
                         NameOf);

/** One at a time: exactly one more than in the document as it is. */
TEST(SMAccounting, TellsOnePieceAtAnyPlaceAsOne) {
    for (const char* const name : {"minimal.xml", "reader_forms.xml", "everything.xml"}) {
        const std::string document = ReadFile(MODELS + name);
        const std::size_t before = LossesOf(document).size();
        for (const Unknown what : {Unknown::element, Unknown::attribute, Unknown::text}) {
            const std::vector<std::size_t> places = PlacesIn(document, what);
            const std::size_t step = std::max<std::size_t>(places.size() / 20, 1);
            for (std::size_t i = 0; i < places.size(); i += step) {
                std::string changed = document;
                changed.insert(places[i], Piece(what));
                EXPECT_LE(LossesOf(changed).size(), before + 1) << name << " at " << places[i];
            }
        }
    }
}

TEST(SMAccounting, FindsNothingInTheExamples) {
    for (const char* const name :
         {"minimal.xml", "everything.xml", "foodmart.xml", "tpcds.xml", "multifile/single.xml", "multifile/main.xml"})
        EXPECT_THAT(Told(SMLoadModelAccounted(MODELS + name)), IsEmpty()) << name;
}

TEST(SMAccounting, TellsTheFormsThatOnlyReadersKnow) {
    const SMAccountedResult result = SMLoadModelAccounted(MODELS + "reader_forms.xml");
    const auto told = Told(result);
    EXPECT_THAT(told, testing::Contains(HasSubstr("<property> in (project).().(00000000-0000-4000-8000-000000000041) is not kept")));
    EXPECT_THAT(told, testing::Contains(HasSubstr("the attribute intrinsic of <role>")));
    EXPECT_THAT(told, testing::Contains(testing::StartsWith("21:3673 SM1001 <nullable>")));
    EXPECT_THAT(told, testing::Contains(testing::StartsWith("44:450 SM1003 the text of <nullable>")));
    EXPECT_THAT(told, testing::Not(testing::Contains(HasSubstr("<locale>"))));
    EXPECT_THAT(told, testing::Not(testing::Contains(testing::StartsWith("35:361 "))));
    EXPECT_THAT(told, testing::Contains(testing::StartsWith("35:389 SM1001 <hierarchies>")));
    // another order, another place, an element for an attribute, leading zeros: all that is kept
    EXPECT_THAT(told, testing::Not(testing::Contains(HasSubstr("another order"))));
    EXPECT_THAT(told, testing::Not(testing::Contains(HasSubstr("status as an element"))));
    EXPECT_THAT(told, testing::Not(testing::Contains(HasSubstr("leading zeros"))));
}

// ---------------------------------------------------------------------------------------------------------------------------
// Single cases.

TEST(SMAccounting, TellsPlaceObjectAndSize) {
    EXPECT_THAT(LossesOf(Subject("\n  <colour>red</colour>")),
                ElementsAre(testing::EndsWith(":3 SM1001 <colour> in [n].[s] is not kept (20 bytes)")));
    EXPECT_THAT(LossesOf(Subject("", " colour='red'")),
                ElementsAre(testing::EndsWith(":30 SM1002 the attribute colour of <querySubject> in [n].[s] is not kept (12 bytes)")));
    EXPECT_THAT(LossesOf(Subject("\n  stray ")),
                ElementsAre(testing::EndsWith(":3 SM1003 the text of <querySubject> in [n].[s] is not kept (5 bytes)")));
}

TEST(SMAccounting, TellsTheFirstOfTwoWhereOneIsTaken) {
    EXPECT_THAT(
        LossesOf(Subject("<externalName>a</externalName><queryItem><name locale=\"en\">i</name><size>1</size><size>2</size></queryItem>")),
        ElementsAre(HasSubstr("<externalName>"), HasSubstr("<size> in [n].[s].[i] is not kept (14 bytes)")));
}

TEST(SMAccounting, CountsNeitherSpellingNorLayoutAsContent) {
    EXPECT_THAT(
        LossesOf(Subject(
            "<!-- note --><?pi x?>\n\t<queryItem><name locale=\"en\">i</name><size>007</size><usage><![CDATA[fact]]></usage></queryItem>")),
        IsEmpty());
}

TEST(SMAccounting, TellsAValueThatIsReadAsAnotherOne) {
    const SMAccountedResult result =
        SMLoadModelBytesAccounted(Subject("<queryItem><name locale=\"en\">i</name><size>12x</size></queryItem>"));
    ASSERT_THAT(result.losses, SizeIs(1));
    EXPECT_EQ(result.losses[0].kind, SMLoss::text);
    EXPECT_EQ(result.losses[0].value, "12x");
    EXPECT_EQ(result.losses[0].objectPath, "[n].[s].[i]");
}

TEST(SMAccounting, KeepsTheEventsOfTheLogButForUnknownElements) {
    const SMAccountedResult result = SMLoadModelBytesAccounted(Subject("<colour>red</colour>"));
    EXPECT_THAT(result.diagnostics, IsEmpty());
    EXPECT_THAT(result.losses, SizeIs(1));
    const SMLoadResult plain = SMLoadModelBytes(Subject("\n  <colour>red</colour>"));
    ASSERT_THAT(plain.diagnostics, testing::Not(IsEmpty()));
    EXPECT_EQ(plain.diagnostics.front().column, 3);
}

TEST(SMAccounting, ReadsAPipeOnce) {
    TempDir directory;
    const std::string pipe = directory.Path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << Subject("<colour/>"); });
    const SMAccountedResult result = SMLoadModelAccounted(pipe);
    writer.join();
    ASSERT_TRUE(result.IsDone());
    EXPECT_THAT(Told(result), ElementsAre(HasSubstr("<colour> in [n].[s] is not kept (9 bytes)")));
}

TEST(SMAccounting, TellsExactPlacesBehindLineEndsOfOtherVersionsOfXml) {
    for (const std::string odd : {"\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"})
        for (const std::string& markup : {"<!-- " + odd + odd + " -->", "<?p " + odd + odd + " ?>", "<zz a=\"" + odd + odd + "\"/>"}) {
            const std::string document =
                Subject("\n" + markup + "<description locale=\"en\" zy=\"1\">8</description>" + markup + "<zx>q</zx>");
            std::vector<std::string> lost;
            for (const SMLoss& loss : SMLoadModelBytesAccounted(document).losses) {
                const std::string line = document.substr(document.find(markup));
                std::size_t at = 0;
                for (long column = 1; column < loss.column; ++at) column += (line[at + 1] & 0xC0) != 0x80;
                lost.push_back(line.substr(at, loss.bytes));
            }
            std::vector<std::string> expected{"zy=\"1\"", "<zx>q</zx>"};
            if (markup.starts_with("<zz")) expected = {markup, expected[0], markup, expected[1]};
            EXPECT_EQ(lost, expected) << markup;
        }
}

TEST(SMAccounting, TellsADefaultOfTheDoctypeAtItsElement) {
    std::string document = Subject("\n  <description locale=\"en\">8</description>");
    document.insert(document.find("<project"), "<!DOCTYPE project [<!ATTLIST description zz CDATA 'four'>]>\n");
    const long line = std::count(document.begin(), document.begin() + static_cast<long>(document.find("<description")), '\n') + 1;
    EXPECT_THAT(LossesOf(document),
                ElementsAre(std::to_string(line) +
                            ":3 SM1002 the attribute zz of <description> in [n].[s] is not kept (9 bytes): it is a default of "
                            "the DOCTYPE"));
}

TEST(SMAccounting, TakesADefaultOfTheDoctypeForContent) {
    std::string document = Subject("");
    document.replace(document.find(" status=\"valid\""), std::string(" status=\"valid\"").size(), "");
    document.insert(document.find("<project"), "<!DOCTYPE project [<!ATTLIST querySubject status CDATA 'valid'>]>");
    EXPECT_THAT(LossesOf(document), IsEmpty());
}

TEST(SMAccounting, NotesAnExternalDtd) {
    std::string document = Subject("");
    document.insert(document.find("<project"), "<!DOCTYPE project SYSTEM 'm.dtd'>");
    const SMAccountedResult result = SMLoadModelBytesAccounted(document);
    ASSERT_THAT(result.diagnostics, SizeIs(1));
    EXPECT_EQ(result.diagnostics[0].code, "SM3019");
    EXPECT_EQ(result.diagnostics[0].message, "the external DTD \"m.dtd\" is not opened");
    EXPECT_FALSE(result.HasFindings());
}

TEST(SMAccounting, GivesUpOnADeviceThatNeverEnds) {
    EXPECT_FALSE(SMLoadModelAccounted("/dev/zero").IsDone());
}

TEST(SMAccounting, FindsPlacesInOtherEncodings) {
    const std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><project><name>\xE9</name><colour/></project>";
    EXPECT_THAT(LossesOf(text), ElementsAre(HasSubstr("1:67 SM1001 <colour>")));
    std::string wide = "\xFF\xFE";
    for (const char c : std::string("<project>\n <colour/></project>")) wide.append(1, c).append(1, '\0');
    EXPECT_THAT(LossesOf(wide), ElementsAre(HasSubstr("2:2 SM1001 <colour>")));
    for (const char* const encoding : {"IBM037", "UTF-32BE", "UTF-32LE", "ISO-8859-1"}) {
        const std::string far(300, ' '), declaration = "<?xml version=\"1.0\"" + far + " encoding=\"" + encoding + "\"?>";
        const I18NString document(declaration + "\n<project><name>\xC3\x83\xC2\xA9</name><colour c=\"1\">gone</colour></project>");
        int length = 0;
        const char* const bytes = document.c_str(encoding, &length);
        EXPECT_THAT(LossesOf(std::string(bytes, static_cast<std::size_t>(length))),
                    ElementsAre("2:25 SM1001 <colour> in (project).().() is not kept (27 bytes)"))
            << encoding;
    }
}

TEST(SMAccounting, TellsWhatAPlaceholderSaysOtherThanItsFile) {
    TempDir directory;
    for (const auto& entry : fs::directory_iterator(MODELS + "multifile"))
        fs::copy_file(entry.path(), fs::path(directory.Path()) / entry.path().filename());
    const std::string path = directory.Path("main.xml"), main = directory.Read("main.xml");
    EXPECT_THAT(SMLoadModelAccounted(path).losses, IsEmpty());
    const auto told = [&](const std::string& attribute, const std::string& other) {
        std::string text = main;
        const std::size_t at = text.find(" " + attribute + "=\"", text.find("<smnamespacefile"));
        const std::size_t value = text.find('"', at) + 1;
        text.replace(value, text.find('"', value) - value, other);
        directory.Write("main.xml", text);
        return Told(SMLoadModelAccounted(path));
    };
    EXPECT_THAT(told("id", "other"),
                ElementsAre(testing::AllOf(HasSubstr(" SM1002 the attribute id of <smnamespacefile> in [Northwind] is not"),
                                           HasSubstr("(10 bytes): what the placeholder stands for does not say so"))));
    EXPECT_THAT(told("name", "other"),
                ElementsAre(HasSubstr("the attribute name of <smnamespacefile> in [Northwind] is not kept (12 bytes)")));
    EXPECT_THAT(told("filepath", "."), IsEmpty());
}

TEST(SMAccounting, LeavesOutWhatAReaderTakesForAValueFurtherOut) {
    TempDir directory;
    for (const auto& entry : fs::directory_iterator(MODELS + "multifile"))
        fs::copy_file(entry.path(), fs::path(directory.Path()) / entry.path().filename());
    const std::string main = directory.Read("main.xml");
    const std::string end = "</packagefile>";
    for (const std::string last : {"first", "last"}) {
        std::string text = main;
        text.insert(text.find(end), "<name>first</name>");
        text.insert(text.rfind(end), "<name>" + last + "</name>");
        directory.Write("main.xml", text);
        const SMAccountedResult result = SMLoadModelAccounted(directory.Path("main.xml"));
        EXPECT_THAT(Told(result),
                    ElementsAre(testing::StartsWith("3:"), testing::AllOf(testing::StartsWith("57:"), HasSubstr("SM1001 <name>"))));
    }
}

/** A save writes such values by itself at other places, which lack them. */
TEST(SMAccounting, TellsWhatIsWrittenAtAnotherPlaceOnly) {
    const std::string item = "<queryItem><name locale=\"en\">i</name>", end = "</queryItem>", plain = item + end;
    const auto lost = [](const std::string& element) { return testing::Contains(HasSubstr("<" + element + "> in ")); };
    const std::string function =
        "<function><name locale=\"en\">f</name><procParameters><procParameter><parameterName>a</parameterName><mode>in</mode>"
        "</procParameter></procParameters>";
    std::string document = Subject(item + "<nullable>false</nullable>" + end);
    const std::size_t behind = document.find("</querySubject>") + std::string("</querySubject>").size();
    EXPECT_THAT(LossesOf(document.insert(behind, function + "</function>")), ElementsAre(HasSubstr("<nullable> in [n].[s].[i]")));
    document = Subject(plain).insert(behind - std::string("<nullable>false</nullable>").size(),
                                     function + "<nullable>false</nullable></function>");
    EXPECT_THAT(LossesOf(document), ElementsAre(HasSubstr("<nullable> in ")));
    EXPECT_THAT(LossesOf(Subject("<size>0</size>" + plain)), ElementsAre(HasSubstr("<size> in [n].[s] ")));
    document = Subject(plain);
    EXPECT_THAT(LossesOf(document.insert(document.find("<locale>"), "<size>0</size>")), lost("size"));
    EXPECT_THAT(LossesOf(Subject("<definition><dbQuery><canGroup>false</canGroup><sources></sources></dbQuery></definition>"
                                 "<determinants><determinant><name>a</name></determinant></determinants>")),
                lost("canGroup"));
    EXPECT_THAT(LossesOf(Subject(item + "<size>08</size><dbQuery><size>8</size></dbQuery>" + end)),
                ElementsAre(HasSubstr("<dbQuery> in ")));
    EXPECT_THAT(LossesOf(Subject("<definition><dbQuery><lastChanged>2007-01-08T00:00:00</lastChanged><sources></sources></dbQuery>"
                                 "</definition><lastChanged>2007-01-08</lastChanged>")),
                lost("lastChanged"));
}

TEST(SMAccounting, TellsANameThatAClashGivesToAnotherObject) {
    for (const std::string inner : {"<definition><name>A1</name><dbQuery><sources></sources></dbQuery></definition>",
                                    "<queryItem><name locale=\"en\">i</name><promptInfo><name>A1</name></promptInfo></queryItem>"}) {
        const std::string name = "<name locale=\"en\">A</name>";
        std::string document = Subject("");
        document.insert(document.find("</namespace>"), "<namespace>" + name + "</namespace><namespace>" + name +
                                                           "<querySubject><name locale=\"en\">q</name>" + inner +
                                                           "</querySubject></namespace>");
        EXPECT_THAT(LossesOf(document), testing::AllOf(testing::Contains(HasSubstr("the text of <name> in [A1]")),
                                                       testing::Contains(HasSubstr(" SM1001 <name> in "))))
            << inner;
    }
}

/** The versions of objects are such values. */
TEST(SMAccounting, TellsWhatIsLikeAnAddedValueOfAnotherName) {
    const std::string root = "<name locale=\"en\">n</name>";
    for (const std::string stray : {"0", "<mimeType>0</mimeType>"}) {
        std::string document = Subject("");
        for (std::size_t at; (at = document.find("<property name=\"version\"")) != std::string::npos;)
            document.erase(at, document.find("</property>", at) + std::string("</property>").size() - at);
        const std::size_t at = document.find(root);
        ASSERT_NE(at, std::string::npos);
        EXPECT_THAT(LossesOf(document.insert(at, stray)), SizeIs(1)) << stray;
    }
    std::string document = Subject("");
    document.insert(document.find("</project>"),
                    "<parameterMaps><parameterMap hidden=\"false\"><name>p</name><defaultValue>x</defaultValue>0"
                    "</parameterMap></parameterMaps>");
    EXPECT_THAT(LossesOf(document), testing::Contains(HasSubstr("the text of <parameterMap> in ")));
}

/** Versions and sizes that are not there are added as 0. */
TEST(SMAccounting, TellsReferencesThatAreLikeAnAddedValue) {
    EXPECT_THAT(LossesOf(Subject("<refobj>0</refobj>")), ElementsAre(HasSubstr("<refobj> in [n].[s] ")));
    EXPECT_THAT(LossesOf(Subject("<queryItem><name locale=\"en\">i</name><refobj>0</refobj></queryItem>")),
                ElementsAre(HasSubstr("<refobj> in [n].[s].[i] ")));
}

TEST(SMAccounting, KnowsTheNamesAndPlacesThatListsGiveTheirEntries) {
    std::string document = Subject("");
    const auto fill = [&](const std::string& section, const std::string& content) {
        const std::size_t at = document.find("</" + section + ">");
        ASSERT_NE(at, std::string::npos);
        document.insert(at, content);
    };
    fill("securityViews",
         "<securityView><name>v</name><definition><set includeRule=\"include\"><viewref>[n].[a]</viewref>"
         "<refobj>[n].[s]</refobj></set></definition></securityView>");
    fill("packages",
         "<package><name>p</name><definition>v</definition></package>"
         "<package><name>q</name><locale>en</locale><viewref>v</viewref></package>");
    EXPECT_THAT(LossesOf(document), IsEmpty());
}

TEST(SMAccounting, TellsThePropertyThatAnotherOneOfItsNameReplaces) {
    std::string document = Subject("");
    const std::size_t at = document.find("<property name=\"version\"");
    ASSERT_NE(at, std::string::npos);
    const std::string own = "<property name=\"x\">7</property>";
    document.replace(at, document.find("</property>", at) + std::string("</property>").size() - at, own + own);
    EXPECT_THAT(LossesOf(document), ElementsAre(HasSubstr("<property> in [n] is not kept (31 bytes)")));
}

TEST(SMAccounting, TellsTheNearestObjectThatHasAName) {
    const SMAccountedResult result = SMLoadModelBytesAccounted(Subject("<determinants><determinant><zz/></determinant></determinants>"));
    ASSERT_THAT(result.losses, testing::Not(IsEmpty()));
    EXPECT_EQ(result.losses[0].objectPath, "[n].[s]");
    const std::string nameless = "<queryItem><zz/></queryItem>";
    EXPECT_THAT(LossesOf(Subject(nameless)), ElementsAre(HasSubstr("<zz> in [n].[s] is ")));
    EXPECT_THAT(LossesOf(Subject(nameless + "<queryItem><name locale=\"en\">i</name><zz/></queryItem>")),
                ElementsAre(HasSubstr("<zz> in [n].[s] is "), HasSubstr("<zz> in [n].[s].[i] is ")));
}

/** What a save adds in the place of a value that is lacking stands for none that nobody read, nor for two. */
TEST(SMAccounting, TellsWhatNobodyReadsThoughADefaultIsLikeIt) {
    const std::string item = "<name locale=\"en\">i</name>";
    EXPECT_THAT(LossesOf(Subject("<queryItem size=\"0\">" + item + "</queryItem>")),
                ElementsAre(HasSubstr("the attribute size of <queryItem>")));
    EXPECT_THAT(LossesOf(Subject("<queryItem version=\"0\" id=\"\">" + item + "</queryItem>")),
                ElementsAre(HasSubstr("the attribute version of"), HasSubstr("the attribute id of")));
    EXPECT_THAT(LossesOf(Subject("<queryItem>" + item + "<version>0</version></queryItem>")), ElementsAre(HasSubstr("<version>")));
    EXPECT_THAT(LossesOf(Subject("<determinants><determinant canGroup=\"false\"><name>d</name></determinant></determinants>")),
                ElementsAre(HasSubstr("the attribute canGroup of <determinant>")));
    const std::string filter = "<filter><name locale=\"en\">f</name><status>valid</status>", end = "<expression>1</expression></filter>";
    const auto with = [](const std::string& content) {
        Document document;
        document.root = NamespaceElement("n", content);
        return LossesOf(document.Text());
    };
    const auto withEntry = [](const std::string& content) {
        Document document;
        document.root = NamespaceElement("n");
        std::string text = document.Text();
        const std::string maps = "<parameterMaps>";
        EXPECT_NE(text.find(maps), std::string::npos);
        return LossesOf(text.insert(text.find(maps) + maps.size(),
                                    "<parameterMap hidden=\"false\"><name>m</name><parameterMapEntry>"
                                    "<key>k</key><value>v</value>" +
                                        content + "</parameterMapEntry></parameterMap>"));
    };
    EXPECT_THAT(withEntry(""), IsEmpty());
    EXPECT_THAT(withEntry("<version>0</version>"), ElementsAre(HasSubstr("<version>")));
    EXPECT_THAT(withEntry("<property name=\"version\">0</property>"), ElementsAre(HasSubstr("<property>")));
    EXPECT_THAT(with(filter + end), IsEmpty());
    EXPECT_THAT(with(filter + "<status>valid</status>" + end), ElementsAre(HasSubstr("<status>")));
}

TEST(SMAccounting, TellsWhyADateIsLostThatCanBeRead) {
    const std::string date = "<lastChanged>2019-01-01T10:00:00</lastChanged>", text = "<description locale=\"en\">d</description>";
    const std::string name = "<queryItem><name locale=\"en\">i</name>", end = "</queryItem>";
    EXPECT_THAT(LossesOf(Subject(name + text + date + end)), IsEmpty());
    EXPECT_THAT(LossesOf(Subject(name + date + text + end)),
                ElementsAre(HasSubstr("is not kept (19 bytes): another date or a description behind it, or")));
}

TEST(SMAccounting, ShortensNamesOfAnySizeInItsLines) {
    const std::string name(40'000, 'N'), tag(3'000, 't');
    const SMAccountedResult result =
        SMLoadModelBytesAccounted(Subject("<queryItem><name locale=\"en\">" + name + "</name><" + tag + "/></queryItem>"));
    ASSERT_THAT(result.losses, SizeIs(1));
    EXPECT_EQ(result.losses[0].objectPath.size(), 1'003u) << "since each loss has a path of its own";
    EXPECT_EQ(result.losses[0].elementName, tag);
    const std::string line = FormatDiagnostic(SMDiagnosticOf(result.losses[0]));
    EXPECT_THAT(line, HasSubstr(" in [n].[s].[NNN"));
    EXPECT_THAT(line, HasSubstr("N...N"));
    EXPECT_THAT(line, testing::EndsWith("NNN] is not kept (3003 bytes)"));
    EXPECT_LT(line.size(), 1'100u);
}

TEST(SMAccounting, LooksIntoAnObjectThatStandsOutsideOfItsSection) {
    const auto with = [](const std::string& content) {
        std::string document = Subject("");
        return document.insert(document.find("<locales>"),
                               "<dataSource><name>d</name><cmDataSource>c</cmDataSource>" + content + "</dataSource>");
    };
    EXPECT_THAT(LossesOf(with("")), IsEmpty());
    EXPECT_THAT(LossesOf(with("<zz/>")), ElementsAre(HasSubstr("<zz> in (dataSource).(d).() is not kept (5 bytes)")));
    EXPECT_THAT(LossesOf(with("<zz><name>d</name><yy>x</yy></zz>")), testing::Contains(HasSubstr("<zz> in (dataSource)")));
}

TEST(SMAccounting, TellsOfSeparateFilesByTheirNames) {
    TempDir directory;
    for (const auto& entry : fs::directory_iterator(MODELS + "multifile"))
        fs::copy_file(entry.path(), fs::path(directory.Path()) / entry.path().filename());
    std::string part = directory.Read("Analysis.qvf");
    part.insert(part.find("<name "), "\n<colour/>");
    directory.Write("Analysis.qvf", part);
    const SMAccountedResult result = SMLoadModelAccounted(directory.Path("main.xml"));
    ASSERT_THAT(result.losses, SizeIs(1));
    EXPECT_EQ(result.losses[0].file, directory.Path("Analysis.qvf"));
    EXPECT_EQ(result.losses[0].column, 1);
    EXPECT_EQ(result.losses[0].objectPath, "[Analysis]");
}

TEST(SMAccounting, EndsWhenItIsCancelled) {
    std::atomic<bool> cancelled = false;
    SMLoadOptions options;
    options.control.cancelled = &cancelled;
    std::size_t calls = 0;
    options.control.progress = [&](const SMProgress&) { cancelled = ++calls > 1; };
    const SMAccountedResult result = SMLoadModelAccounted(MODELS + "tpcds.xml", options);
    EXPECT_EQ(result.status, SMStatus::cancelled);
    EXPECT_FALSE(result.project);
}

}  // namespace
