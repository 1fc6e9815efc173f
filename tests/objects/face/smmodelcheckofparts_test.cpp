#include "objects/face/smmodelcheck_002_000.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/codes.h"
#include "tests/support/facemodel.h"
#include "tests/support/markedmodel.h"
#include "tests/support/tempdir.h"

namespace {

using namespace schema_002_000;

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
namespace code = qv::code;

/** A namespace of the root in a file of its own. */
class SMModelCheckOfParts : public testing::Test {
  protected:
    static std::string Placeholder(const std::string& name) { return Placeholder(name, name); }
    static std::string Placeholder(const std::string& name, const std::string& file) {
        return "<smnamespacefile name=\"" + name + "\" filename=\"" + file + ".qvf\" filepath=\"\"></smnamespacefile>";
    }

    /** All that is told of a namespace in a file of its own is this, at the mark in that file. */
    void TellsOnlyInThePart(const std::string& content, const std::string& code) {
        const Marked part("<namespace>\n<name locale=\"en\">a</name>\n" + content + "</namespace>");
        const std::string path = m_directory.Write("a.qvf", part.Text());
        TellsOnlyAt(path, part, code, ModelDocument(Named("namespace", "n", Placeholder("a"))));
    }

    void TellsOnlyAt(const std::string& path, const Marked& part, const std::string& code, const std::string& main) {
        const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", main));
        EXPECT_THAT(checked.diagnostics, IsEmpty()) << code;
        ASSERT_EQ(checked.findings.size() + checked.losses.size(), 1U) << code;
        const bool isLost = checked.findings.empty();
        const SMDiagnostic told = isLost ? SMDiagnosticOf(checked.losses[0]) : checked.findings[0];
        EXPECT_EQ(isLost ? checked.losses[0].reason : told.code, code);
        EXPECT_EQ(told.file, path) << code;
        EXPECT_EQ(told.line, part.line) << code;
        EXPECT_EQ(told.column, part.column) << code;
        EXPECT_THAT(told.objectPath, Not(IsEmpty())) << code;
    }

    SMLoss LosesPlaceholder(const std::string& reason) {
        const Marked main(ModelDocument("\n" + Named("namespace", "n", "\n  @" + Placeholder("a"))));
        const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", main.Text()));
        EXPECT_THAT(checked.diagnostics, IsEmpty());
        EXPECT_THAT(checked.findings, IsEmpty());
        if (checked.losses.size() != 1) {
            ADD_FAILURE() << checked.losses.size() << " losses";
            return {};
        }
        EXPECT_EQ(checked.losses[0].reason, reason);
        EXPECT_EQ(checked.losses[0].line, main.line);
        EXPECT_EQ(checked.losses[0].column, main.column);
        return checked.losses[0];
    }

    TempDir m_directory;
};

TEST_F(SMModelCheckOfParts, GivesAMissingFileAsTheReasonOfItsLoss) {
    EXPECT_THAT(SMDiagnosticOf(LosesPlaceholder(code::PART_MISSING)).message, HasSubstr("a.qvf: cannot open: No such file or directory"));
}

TEST_F(SMModelCheckOfParts, GivesABrokenFileAsTheReasonOfItsLoss) {
    m_directory.Write("a.qvf", "<namespace>\n<name>");
    EXPECT_THAT(SMDiagnosticOf(LosesPlaceholder(code::PART_BROKEN)).message, HasSubstr("a.qvf:2:"));
    m_directory.Write("a.qvf", "<package></package>");
    EXPECT_THAT(SMDiagnosticOf(LosesPlaceholder(code::PART_BROKEN)).message, HasSubstr("the root element is <package>, not <namespace>"));
}

/** Half of a kept element would break the document that is written, and with it the account. */
TEST_F(SMModelCheckOfParts, TellsThePlaceholderOfAFileThatEndsInKeptXml) {
    m_directory.Write("p.qva", "<package><name locale=\"en\">p</name><adminAccess><a>b");
    const std::string placeholder = "<packagefile id=\"\" name=\"p\" filename=\"p.qva\" filepath=\"\"></packagefile>";
    std::string main = ModelDocument(Named("namespace", "n"));
    main.insert(main.find("</project>"), "<packages>" + placeholder + "</packages>");
    const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", main));
    ASSERT_THAT(checked.losses, SizeIs(1));
    EXPECT_EQ(checked.losses[0].elementName, "packagefile");
    EXPECT_EQ(checked.losses[0].reason, code::PART_BROKEN);
    EXPECT_EQ(checked.losses[0].bytes, placeholder.size());
}

TEST_F(SMModelCheckOfParts, TellsPlacesInTheirFiles) {
    const std::string part = m_directory.Write("a.qvf", "<namespace>\n" + Id("7") + "<name locale=\"en\">a</name>\n <shortcut>" + Id("7") +
                                                            "<name locale=\"en\">k</name><refobj>[x]</refobj></shortcut></namespace>");
    const SMCheckResult checked = SMCheckModel(m_directory.Write(
        "main.xml", ModelDocument(Named("namespace", "n",
                                        "<smnamespacefile id=\"7\" name=\"a\" filename=\"a.qvf\" filepath=\"\"></smnamespacefile>"))));
    ASSERT_THAT(checked.findings, SizeIs(2));
    EXPECT_EQ(checked.findings[0].code, code::DUPLICATE_ID);
    EXPECT_EQ(checked.findings[1].code, code::DANGLING_REFERENCE);
    for (const SMDiagnostic& found : checked.findings) {
        EXPECT_EQ(found.file, part);
        EXPECT_EQ(found.line, 3);
        EXPECT_EQ(found.objectPath, "[a].[k]");
    }
    EXPECT_EQ(checked.findings[0].column, 2);
}

TEST_F(SMModelCheckOfParts, TellsWhatTheLaterObjectHasInCommonThere) {
    TellsOnlyInThePart(Named("querySubject", "s", Id("7")) + "@" + Named("querySubject", "b", Id("7")), code::DUPLICATE_ID);
    TellsOnlyInThePart(Named("querySubject", "s") + "@" + Named("querySubject", "s"), code::DUPLICATE_OBJECT_ID);
    TellsOnlyInThePart(Named("namespace", "z", Named("folder", "f")) + "<namespace><name locale=\"en\">@z</name></namespace>",
                       code::NAME_CLASH);
}

TEST_F(SMModelCheckOfParts, KnowsEachNamesakeByTheNameThatItGot) {
    for (const char* const name : {"a", "b", "c"})
        m_directory.Write(std::string(name) + ".qvf",
                          "<namespace>\n<name locale=\"en\">" + std::string(*name == 'c' ? "A1" : "A") + "</name></namespace>");
    const SMCheckResult checked = SMCheckModel(m_directory.Write(
        "main.xml", ModelDocument(Named("namespace", "n", Placeholder("A", "a") + Placeholder("A", "b") + Placeholder("A1", "c")))));
    EXPECT_THAT(checked.diagnostics, IsEmpty());
    ASSERT_THAT(checked.losses, SizeIs(2));
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(checked.losses[i].reason, code::NAME_CLASH);
        EXPECT_EQ(checked.losses[i].file, m_directory.Path(i == 0 ? "b.qvf" : "c.qvf"));
        EXPECT_EQ(checked.losses[i].line, 2);
        EXPECT_EQ(checked.losses[i].instead, i == 0 ? "A1" : "A2");
    }
}

TEST_F(SMModelCheckOfParts, TellsWhatLeadsNowhereOrIsMissingThere) {
    TellsOnlyInThePart(Named("shortcut", "k", "<refobj>@[x]</refobj>"), code::DANGLING_REFERENCE);
    TellsOnlyInThePart(Relationship(End("left", ONE_TO_MANY, "[a].[s]"), "@" + End("right", "<mincard>one</mincard>", "[a].[s]")),
                       code::NO_CARDINALITY);
}

TEST_F(SMModelCheckOfParts, TellsWhatCannotBeReadThere) {
    const auto item = [](const std::string& content) { return Named("querySubject", "s", Named("queryItem", "i", content)); };
    TellsOnlyInThePart(item("@<usage>fakt</usage>"), code::UNKNOWN_WORD);
    TellsOnlyInThePart(Named("querySubject", "s", "", " @status=\"broken\""), code::UNKNOWN_WORD);
    TellsOnlyInThePart(Named("querySubject", "s", "<lastChanged>@yesterday</lastChanged>"), code::NO_DATE);
    TellsOnlyInThePart(item("<size>@12.5</size>"), code::NO_NUMBER);
    TellsOnlyInThePart(item("@<Tjze>5</Tjze>"), code::LOOK_ALIKE);
}

TEST_F(SMModelCheckOfParts, TellsWhatIsWrongWithAFileThatAPartNames) {
    TellsOnlyInThePart("@" + Placeholder("b"), code::PART_MISSING);
    m_directory.Write("b.qvf", "");
    TellsOnlyInThePart("@" + Placeholder("b"), code::PART_BROKEN);
    TellsOnlyInThePart("@" + Placeholder("a"), code::PART_BROKEN);  // it would be read inside itself
}

TEST_F(SMModelCheckOfParts, TellsWhatCannotBeReadInAPackage) {
    const Marked part("<package>\n<name locale=\"en\">p</name><lastPublished>@soon</lastPublished><adminAccess></adminAccess></package>");
    const std::string path = m_directory.Write("p.qva", part.Text());
    TellsOnlyAt(path, part, code::NO_DATE,
                ModelDocument(Named("namespace", "n") +
                              "<packages><packagefile name=\"p\" filename=\"p.qva\" filepath=\"\"></packagefile></packages>"));
}

TEST_F(SMModelCheckOfParts, NamesThePackageOfALoss) {
    m_directory.Write("p.qva", "<package zz=\"y\"><name locale=\"en\">p</name><odd/><adminAccess></adminAccess></package>");
    const SMCheckResult checked = SMCheckModel(m_directory.Write(
        "main.xml", ModelDocument(Named("namespace", "n") +
                                  "<packages><packagefile name=\"p\" filename=\"p.qva\" filepath=\"\"></packagefile></packages>")));
    ASSERT_THAT(checked.losses, SizeIs(2));
    for (const SMLoss& loss : checked.losses) EXPECT_EQ(loss.objectPath, "(package).(p).()");
}

/** The inner one fills nothing that the model has; its fault is told all the same, with the object that lacks it. */
TEST_F(SMModelCheckOfParts, TellsWhatIsWrongWithAFileBelowAMissingOne) {
    const std::string inner = "<smnamespacefile id=\"j\" name=\"b\" filename=\"b.qvf\" filepath=\"\"></smnamespacefile>";
    const Marked main(ModelDocument(Named(
        "namespace", "n", "<smnamespacefile id=\"i\" name=\"a\" filename=\"a.qvf\" filepath=\"\">\n @" + inner + "</smnamespacefile>")));
    for (const char* const code : {code::PART_MISSING, code::PART_BROKEN}) {
        const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", main.Text()));
        ASSERT_THAT(checked.losses, SizeIs(1));
        EXPECT_EQ(checked.losses[0].reason, code::PART_MISSING);
        ASSERT_THAT(checked.diagnostics, SizeIs(1));
        const SMDiagnostic& told = checked.diagnostics[0];
        EXPECT_EQ(told.code, code);
        EXPECT_EQ(told.line, main.line);
        EXPECT_EQ(told.column, main.column);
        EXPECT_EQ(told.objectPath, "[n]");
        EXPECT_THAT(told.message, HasSubstr(": error[SM20"));
        EXPECT_THAT(told.message, HasSubstr("b.qvf"));
        m_directory.Write("b.qvf", "");
    }
}

/** What was read of the broken one is in no model, though the second read holds it for the places of what is lost. */
TEST_F(SMModelCheckOfParts, TellsPlacesBehindABrokenFile) {
    m_directory.Write("a.qvf", "<namespace><name locale=\"en\">a</name>" +
                                   Named("namespace", "m", "<zz/>" + Named("filter", "f", "<zz/>")) +
                                   "<relationship q=\"1\"><name>rel</name></relationship>");
    const Marked part("<namespace>\n<name locale=\"en\">b</name>\n" + Named("filter", "g", "<zz/>") +
                      Named("filter", "h", "\n<expression><refobj>@[no].[such]</refobj></expression>") + "</namespace>");
    const std::string path = m_directory.Write("b.qvf", part.Text());
    const std::string main = ModelDocument(Named("namespace", "n", Placeholder("a") + Placeholder("b")));
    const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", main));
    EXPECT_THAT(checked.losses, SizeIs(2));
    ASSERT_THAT(checked.findings, SizeIs(1));
    EXPECT_EQ(checked.findings[0].file, path);
    EXPECT_EQ(checked.findings[0].line, part.line);
    EXPECT_EQ(checked.findings[0].column, part.column);
}

TEST_F(SMModelCheckOfParts, LooksIntoAPlaceholderWithoutAFile) {
    const Marked part("<namespace>\n<name locale=\"en\">a</name>\n @<zz/></namespace>");
    const std::string path = m_directory.Write("a.qvf", part.Text());
    const auto with = [&](const std::string& attributes) {
        const std::string main = ModelDocument(Named(
            "namespace", "n", "<smnamespacefile id=\"i\" name=\"between\"" + attributes + ">" + Placeholder("a") + "</smnamespacefile>"));
        return SMCheckModel(m_directory.Write("main.xml", main)).losses;
    };
    const std::vector<SMLoss> losses = with("");
    ASSERT_THAT(losses, SizeIs(1));
    EXPECT_EQ(FormatDiagnostic(SMDiagnosticOf(losses[0])), path + ":" + std::to_string(part.line) + ":" + std::to_string(part.column) +
                                                               ": error[SM1001] <zz> in [a] is not kept (5 bytes)");
    const std::vector<SMLoss> more = with(" odd=\"1\"");
    ASSERT_THAT(more, SizeIs(2));
    EXPECT_EQ(more[1].elementName + "@" + more[1].attributeName, "smnamespacefile@odd");
    EXPECT_THAT(with(" version=\"0\""), SizeIs(2)) << "which nobody reads, though a save adds it";
}

TEST_F(SMModelCheckOfParts, TellsPlacesOfPlaceholdersWithoutAFile) {
    const std::string id = "<property name=\"id\" type=\"hidden\">7</property>";
    const auto check = [&](const Marked& main) {
        const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", main.Text()));
        EXPECT_EQ(checked.losses.size() + checked.findings.size(), 1u);
        if (checked.losses.size() + checked.findings.size() != 1) return std::string();
        const SMDiagnostic told = checked.losses.empty() ? checked.findings[0] : SMDiagnosticOf(checked.losses[0]);
        EXPECT_EQ(told.line, main.line) << told.message;
        EXPECT_EQ(told.column, main.column) << told.message;
        return told.code + " " + told.message;
    };
    EXPECT_THAT(check(In(Named("namespace", "a", id) + "@<smnamespacefile id=\"7\" name=\"b\"/>")), HasSubstr("SM3002 the id 7 is also"));
    EXPECT_THAT(check(In("<smnamespacefile id=\"7\" name=\"b\">" + id + "@<zz/></smnamespacefile>")), HasSubstr("<zz> in [b] is"));
    EXPECT_THAT(check(In(Named("filter", "f", "@<smnamespacefile name=\"b\"/>"))), HasSubstr("<smnamespacefile> in"));
}

TEST_F(SMModelCheckOfParts, TellsWhatWasMisreadBeforeAFileBroke) {
    const Marked part("<namespace>\n<name locale=\"en\">a</name>\n<querySubject><queryItem><usage>@fakt</usage>\n<");
    const std::string path = m_directory.Write("a.qvf", part.Text());
    const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", ModelDocument(Named("namespace", "n", Placeholder("a")))));
    ASSERT_THAT(checked.losses, SizeIs(1));
    EXPECT_EQ(checked.losses[0].reason, code::PART_BROKEN);
    ASSERT_THAT(checked.findings, SizeIs(1));
    EXPECT_EQ(checked.findings[0].code, code::UNKNOWN_WORD);
    EXPECT_EQ(checked.findings[0].file, path);
    EXPECT_EQ(checked.findings[0].line, part.line);
    EXPECT_EQ(checked.findings[0].column, part.column);
    EXPECT_EQ(checked.findings[0].message, "\"fakt\" is none of the words that may stand here");
}

/** Each fault costs the same, however many of them there are. */
TEST_F(SMModelCheckOfParts, GivesEachOfManyFaultsItsReason) {
    constexpr std::size_t MANY = 3000;
    std::string content;
    for (std::size_t i = 0; i < MANY; ++i) content += Placeholder("gone" + std::to_string(i)) + "\n";
    const SMCheckResult checked = SMCheckModel(m_directory.Write("main.xml", ModelDocument(Named("namespace", "n", content))));
    EXPECT_THAT(checked.diagnostics, IsEmpty());
    ASSERT_THAT(checked.losses, SizeIs(MANY));
    for (std::size_t i = 0; i < MANY; ++i) ASSERT_THAT(checked.losses[i].why, HasSubstr("gone" + std::to_string(i) + ".qvf: cannot open"));
}

}  // namespace
