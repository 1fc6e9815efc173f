#include "objects/face/smmodelcheck_002_000.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/codes.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/facemodel.h"
#include "tests/support/markedmodel.h"

namespace {

using namespace schema_002_000;

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
namespace code = qv::code;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";
const std::string OBJECT = "[n].[s]";

/** Nothing is told but this finding, at the mark; gives its message. */
std::string TellsOnly(const Marked& document, const std::string& code, const std::string& object) {
    const SMCheckResult checked = SMCheckModelBytes(document.Text());
    EXPECT_TRUE(checked.IsDone());
    EXPECT_THAT(checked.diagnostics, IsEmpty());
    EXPECT_THAT(checked.losses, IsEmpty());
    if (checked.findings.size() != 1) {
        ADD_FAILURE() << checked.findings.size() << " findings";
        return {};
    }
    const SMDiagnostic& found = checked.findings.front();
    EXPECT_EQ(found.code, code);
    EXPECT_EQ(found.severity, SMFindCode(code)->severity);
    EXPECT_EQ(found.line, document.line);
    EXPECT_EQ(found.column, document.column);
    EXPECT_EQ(found.objectPath, object);
    return found.message;
}

/** Nothing is told but a loss with this reason, at the mark. */
SMLoss LosesOnly(const Marked& document, const std::string& reason) {
    const SMCheckResult checked = SMCheckModelBytes(document.Text());
    EXPECT_TRUE(checked.IsDone());
    EXPECT_THAT(checked.diagnostics, IsEmpty());
    EXPECT_THAT(checked.findings, IsEmpty());
    if (checked.losses.size() != 1) {
        ADD_FAILURE() << checked.losses.size() << " losses";
        return {};
    }
    const SMLoss& loss = checked.losses.front();
    EXPECT_EQ(loss.reason, reason);
    EXPECT_EQ(loss.line, document.line);
    EXPECT_EQ(loss.column, document.column);
    return loss;
}

TEST(SMModelCheck, TellsAReferenceThatLeadsNowhereWhereItsTextStands) {
    const Marked document =
        In(Named("querySubject", "s", Named("queryItem", "i", "<expression>1 + <refobj>@[n].[gone]</refobj></expression>")));
    EXPECT_EQ(TellsOnly(document, code::DANGLING_REFERENCE, "[n].[s].[i]"),
              "the reference [n].[gone] in 'expression' names no object of the model");
}

TEST(SMModelCheck, TellsEachOfSeveralAlikeReferencesAtItsPlace) {
    const SMCheckResult checked = SMCheckModelBytes(ModelDocument(
        Named("namespace", "n",
              "\n<description locale=\"en\">[x]</description>" +
                  Named("shortcut", "a", "<description locale=\"en\">[x]</description><refobj>[x]</refobj>") +
                  Named("shortcut", "b", "<refobj><![CDATA[[x]]]></refobj>") + Named("shortcut", "c", "<refobj>&#91;x]</refobj>"))));
    ASSERT_THAT(checked.findings, SizeIs(3));
    EXPECT_THAT(checked.dangling, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(checked.dangling[i].place.holder->GetSMProject(), &*checked.project);
        EXPECT_EQ(SMNameOf(*checked.dangling[i].place.holder), std::string(1, "abc"[i]));
        EXPECT_EQ(checked.findings[i].objectPath, std::string("[n].[") + "abc"[i] + "]");
        EXPECT_EQ(checked.findings[i].line, static_cast<long>(3 + i));
    }
}

TEST(SMModelCheck, TellsTheLaterOfTwoObjectsWithOneId) {
    const Marked document = In(Named("querySubject", "a", Id("7")) + "@" + Named("querySubject", "b", Id("7")));
    EXPECT_EQ(TellsOnly(document, code::DUPLICATE_ID, "[n].[b]"), "the id 7 is also that of [n].[a]");
}

TEST(SMModelCheck, TellsTheLaterOfTwoObjectsWithOneObjectId) {
    const Marked document = In(Named("querySubject", "s") + "@" + Named("querySubject", "s"));
    EXPECT_THAT(TellsOnly(document, code::DUPLICATE_OBJECT_ID, OBJECT), HasSubstr("references never lead here"));
}

TEST(SMModelCheck, GivesANameClashAsTheReasonOfItsLoss) {
    const Marked document = In(Named("namespace", "a", Named("folder", "f")) + "<namespace><name locale=\"en\">@a</name></namespace>\n");
    const SMLoss loss = LosesOnly(document, code::NAME_CLASH);
    EXPECT_EQ(loss.value, "a");
    EXPECT_THAT(SMDiagnosticOf(loss).message,
                HasSubstr(" is not kept (1 byte): error[SM3004] A namespace with name 'a' already exists - renaming"));
}

TEST(SMModelCheck, KnowsTheLaterOfNamesakesAlsoWhenTheFirstLosesSomething) {
    const SMCheckResult checked =
        SMCheckModelBytes(In(Named("namespace", "a", "", " zz=\"y\"") + "<namespace><name locale=\"en\">@a</name></namespace>\n").Text());
    ASSERT_THAT(checked.losses, SizeIs(2));
    EXPECT_EQ(checked.losses[0].attributeName, "zz");
    EXPECT_EQ(checked.losses[1].reason, code::NAME_CLASH);
}

/** Of namesakes, each that got another name is told, with the name that it got. */
TEST(SMModelCheck, KnowsEachNamesakeByTheNameThatItGot) {
    const auto check = [](const std::string& inFirst, const std::string& inThird) {
        return SMCheckModelBytes(ModelDocument(
            "\n" + Named("namespace", "n",
                         "\n" + Named("namespace", "A", inFirst) + Named("namespace", "A") + Named("namespace", "A1", inThird))));
    };
    for (const SMCheckResult& checked :
         {check("", ""), check(Named("folder", "f"), ""), check("<name locale=\"fr\">B</name>", "<name locale=\"fr\">A</name>")}) {
        EXPECT_THAT(checked.diagnostics, IsEmpty());
        ASSERT_THAT(checked.losses, SizeIs(2));
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(checked.losses[i].reason, code::NAME_CLASH);
            EXPECT_EQ(checked.losses[i].value, i == 0 ? "A" : "A1");
            EXPECT_EQ(checked.losses[i].instead, i == 0 ? "A1" : "A2");
            EXPECT_EQ(checked.losses[i].objectPath, "[" + checked.losses[i].instead + "]");
        }
        EXPECT_EQ(checked.losses[1].line, checked.losses[0].line + 1);
    }
}

TEST(SMModelCheck, KnowsNamesakesInDifferentNamespaces) {
    const SMCheckResult checked =
        SMCheckModelBytes(ModelDocument("\n" + Named("namespace", "n",
                                                     "\n" + Named("namespace", "x", Named("namespace", "A")) +
                                                         Named("folder", "y", Named("namespace", "A")) + Named("namespace", "A1"))));
    EXPECT_THAT(checked.diagnostics, IsEmpty());
    ASSERT_THAT(checked.losses, SizeIs(2));
    EXPECT_EQ(checked.losses[0].objectPath, "[A1]");
    EXPECT_EQ(checked.losses[1].objectPath, "[A2]");
}

TEST(SMModelCheck, TellsEndsOfRelationshipsWithoutCardinalities) {
    EXPECT_EQ(TellsOnly(In(Relationship("@" + End("left", "<mincard>one</mincard>"), End("right", ONE_TO_MANY))), code::NO_CARDINALITY,
                        "[n].[r]"),
              "the left end has no maxcard");
    EXPECT_EQ(TellsOnly(In(Relationship(End("left", ONE_TO_MANY), "@" + End("right", "<maxcard>many</maxcard>"))), code::NO_CARDINALITY,
                        "[n].[r]"),
              "the right end has no mincard");
    EXPECT_EQ(
        TellsOnly(In(Relationship(End("left", ONE_TO_MANY), "@" + End("right", "<mincard></mincard>"))), code::NO_CARDINALITY, "[n].[r]"),
        "the right end has neither mincard nor maxcard");
}

TEST(SMModelCheck, AsksCardinalitiesAlsoOfAnEndThatRefersToNothing) {
    const std::string nothing = "<left><refobj></refobj><mincard></mincard><maxcard></maxcard></left>";
    EXPECT_EQ(TellsOnly(In(Relationship("@" + nothing, End("right", ONE_TO_MANY))), code::NO_CARDINALITY, "[n].[r]"),
              "the left end has neither mincard nor maxcard");
    EXPECT_THAT(SMCheckModelBytes(In("@" + Relationship("<left>" + ONE_TO_MANY + "</left>", End("right", ONE_TO_MANY))).Text()).findings,
                IsEmpty());
}

TEST(SMModelCheck, TellsEndsThatAreNotThereAtTheirRelationship) {
    EXPECT_EQ(TellsOnly(In(Named("querySubject", "s") + "@<relationship><name>r</name>" + End("right", ONE_TO_MANY) + "</relationship>"),
                        code::NO_CARDINALITY, "[n].[r]"),
              "there is no left end, and so no mincard and maxcard of it");
    EXPECT_EQ(
        TellsOnly(In(Named("querySubject", "s") + "@<scopeRelationship><name>r</name>" + End("left", ONE_TO_MANY) + "</scopeRelationship>"),
                  code::NO_CARDINALITY, "[n].[r]"),
        "there is no right end, and so no mincard and maxcard of it");
}

TEST(SMModelCheck, TakesNamelessObjectsForNoDuplicates) {
    const std::string nameless =
        "<relationship><name></name>" + End("left", ONE_TO_MANY, "[n]") + End("right", ONE_TO_MANY, "[n]") + "</relationship>";
    EXPECT_THAT(SMCheckModelBytes(In("@" + nameless + nameless).Text()).findings, IsEmpty());
}

TEST(SMModelCheck, GivesAnUnknownWordAsTheReasonOfItsLoss) {
    EXPECT_EQ(LosesOnly(In(Named("querySubject", "s", Named("queryItem", "i", "@<usage>fakt</usage>"))), code::UNKNOWN_WORD).kind,
              SMLoss::element);
    EXPECT_EQ(LosesOnly(In(Named("querySubject", "s", "", " @status=\"broken\"")), code::UNKNOWN_WORD).kind, SMLoss::attribute);
    // not told again as a cardinality that is missing
    EXPECT_EQ(LosesOnly(In(Relationship(End("left", ONE_TO_MANY), End("right", "<mincard>@two</mincard><maxcard>many</maxcard>"))),
                        code::UNKNOWN_WORD)
                  .value,
              "two");
}

TEST(SMModelCheck, KnowsAWordThatIsTakenForAnotherOne) {
    // the same number by which words are found
    const SMLoss loss = LosesOnly(In(Named("querySubject", "s", Named("queryItem", "i", "<usage>@Gbct</usage>"))), code::UNKNOWN_WORD);
    EXPECT_EQ(loss.instead, "fact");
}

TEST(SMModelCheck, GivesADateThatDoesNotParseAsTheReasonOfItsLoss) {
    const SMLoss loss = LosesOnly(In(Named("querySubject", "s", "<lastChanged>@yesterday</lastChanged>")), code::NO_DATE);
    EXPECT_EQ(loss.value, "yesterday");
    EXPECT_EQ(loss.instead, "");
}

TEST(SMModelCheck, GivesANumberThatDoesNotParseAsTheReasonOfItsLoss) {
    const SMLoss loss = LosesOnly(In(Named("querySubject", "s", Named("queryItem", "i", "<size>@12.5</size>"))), code::NO_NUMBER);
    EXPECT_EQ(loss.value, "12.5");
    EXPECT_EQ(loss.instead, "0");
    const SMCheckResult version =
        SMCheckModelBytes(In(Named("querySubject", "s", "@<property name=\"version\" type=\"hidden\">x</property>")).Text());
    ASSERT_THAT(version.losses, SizeIs(1));
    EXPECT_EQ(version.losses[0].reason, code::NO_NUMBER);
    for (const char* const text : {"+5", "-5", "2147483648"})
        LosesOnly(In(Named("querySubject", "s", "<property name=\"version\" type=\"hidden\">@" + std::string(text) + "</property>")),
                  code::NO_NUMBER);
    EXPECT_THAT(
        SMCheckModelBytes(In(Named("querySubject", "s", "<property name=\"version\" type=\"hidden\">@02147483647</property>")).Text())
            .losses,
        IsEmpty());
}

TEST(SMModelCheck, GivesATruthValueThatDoesNotParseAsTheReasonOfItsLoss) {
    const auto item = [](const std::string& content) { return In(Named("querySubject", "s", Named("queryItem", "i", content))); };
    for (const char* const text : {"TRUE", "yes", "1", "0", "no", " true"}) {
        const SMLoss loss = LosesOnly(item("@<hidden>" + std::string(text) + "</hidden>"), code::NO_TRUTH);
        EXPECT_THAT(SMDiagnosticOf(loss).message, HasSubstr("warning[SM3018] \"" + std::string(text) + "\" is neither true nor false"));
    }
    EXPECT_EQ(
        LosesOnly(In("", "<parameterMaps>\n<parameterMap @hidden=\"no\"><name>m</name></parameterMap></parameterMaps>"), code::NO_TRUTH)
            .instead,
        "false");
    const SMCheckResult kept = SMCheckModelBytes(item("@<hidden>true</hidden>").Text());
    EXPECT_THAT(kept.losses, IsEmpty());
    EXPECT_THAT(kept.findings, IsEmpty());
    EXPECT_THAT(SMCheckModelBytes(item("@<hidden></hidden>").Text()).findings, IsEmpty()) << "an empty text says nothing";
}

TEST(SMModelCheck, AsksNoTruthValueOfThePropertiesOfADataSource) {
    const SMCheckResult checked = SMCheckModelBytes(
        ModelDocument("<dataSources><dataSource><name locale=\"en\">d</name><property name=\"p\">q</property></dataSource></dataSources>"));
    EXPECT_THAT(checked.losses, IsEmpty());
    EXPECT_THAT(checked.findings, IsEmpty());
}

/** One rule: the same value in another spelling is kept; what is not read as what it says is lost, and its reason told. */
TEST(SMModelCheck, TellsSpellingsThatAreNotReadAndNoOthers) {
    const auto size = [](const std::string& text) {
        return In(Named("querySubject", "s", Named("queryItem", "i", "<size>@" + text + "</size>")));
    };
    for (const char* const text : {"08", "+8", "00", "-0", "-08"}) {
        const SMCheckResult checked = SMCheckModelBytes(size(text).Text());
        EXPECT_THAT(checked.losses, IsEmpty()) << text;
        EXPECT_THAT(checked.findings, IsEmpty()) << text;
    }
    EXPECT_EQ(LosesOnly(size("0 "), code::NO_NUMBER).value, "0 ");
    EXPECT_EQ(LosesOnly(size("8.0"), code::NO_NUMBER).instead, "0");
    const auto changed = [](const std::string& text) { return In(Named("querySubject", "s", "<lastChanged>@" + text + "</lastChanged>")); };
    EXPECT_THAT(SMCheckModelBytes(changed("2026-11-21").Text()).losses, IsEmpty());
    EXPECT_EQ(LosesOnly(changed("2026-11-21T18:00:00.5"), code::NO_DATE).instead, "2026-11-21T18:00:00");
    EXPECT_EQ(LosesOnly(changed("2026-11-21T18:00:00Z"), code::NO_DATE).instead, "2026-11-21T18:00:00");
    EXPECT_EQ(LosesOnly(In(Named("querySubject", "s", "<property name=\"qvref\" @type=\" hidden \">w</property>")), "").instead, "hidden");
    EXPECT_EQ(LosesOnly(In(Named("querySubject", "s", "", " @status=\" valid\"")), code::UNKNOWN_WORD).value, " valid");
}

TEST(SMModelCheck, TakesANumberThatIsTooBigForNone) {
    const std::string big = "99999999999999999999", biggest = "9223372036854775807";
    const auto losses = [](const std::string& size) {
        return SMCheckModelBytes(In(Named("querySubject", "s", Named("queryItem", "i", "<size>@" + size + "</size>"))).Text()).losses;
    };
    ASSERT_THAT(losses(big), SizeIs(1));
    EXPECT_EQ(losses(big)[0].reason, code::NO_NUMBER);
    EXPECT_EQ(losses(big)[0].instead, biggest);
    EXPECT_THAT(losses(biggest), IsEmpty());
    EXPECT_THAT(SMCheckModelBytes(ModelDocument(Named("querySubject", "s", "<size>" + biggest + "</size>"))).findings, IsEmpty());
}

TEST(SMModelCheck, TellsTheReasonOfALossInItsLine) {
    const auto line = [](const std::string& content) {
        return SMDiagnosticOf(SMCheckModelBytes(In(Named("querySubject", "s", Named("queryItem", "i", content))).Text()).losses.at(0))
            .message;
    };
    EXPECT_EQ(line("@<usage>fakt</usage>"),
              "<usage> in [n].[s].[i] is not kept (19 bytes): warning[SM3006] \"fakt\" is none of the words that "
              "may stand here");
    EXPECT_THAT(line("@<usage>Gbct</usage>"), HasSubstr("none of the words that may stand here, and taken for \"fact\""));
    EXPECT_THAT(line("<lastChanged>@2026-11-21T18:00:00Z</lastChanged>"),
                HasSubstr("says more than a date and a time of day, and is taken for \"2026-11-21T18:00:00\""));
    EXPECT_THAT(line("@<size>12.5</size>"), HasSubstr(" is not kept (4 bytes): warning[SM3008] \"12.5\" is no whole number"));
    EXPECT_THAT(line("@<Tjze>5</Tjze>"), HasSubstr(": warning[SM3009] \"Tjze\" is no known name, and taken for \"size\""));
    EXPECT_THAT(line("@<Tjze>five</Tjze>"), HasSubstr("SM3009"));
    EXPECT_THAT(line("@<usage>" + std::string(79, 'x') + "\xC3\xA9" + "y</usage>"),
                HasSubstr("\"" + std::string(40, 'x') + "..." + std::string(37, 'x') + "\xC3\xA9y\""));
}

TEST(SMModelCheck, TellsNothingOfWhatStandsInALostElement) {
    const std::string content = "<usage>fakt</usage><size>12.5</size><property name=\"version\" type=\"hidden\">x</property>";
    EXPECT_EQ(LosesOnly(In(Named("querySubject", "s", Named("queryItem", "i", "@<odd>" + content + "</odd>"))), "").elementName, "odd");
    EXPECT_EQ(LosesOnly(In(Named("querySubject", "s", "@<odd status=\"broken\"></odd>")), "").elementName, "odd");
}

TEST(SMModelCheck, GivesALookAlikeAsTheReasonOfItsLoss) {
    // the same number by which names are found
    const SMLoss loss = LosesOnly(In(Named("querySubject", "s", Named("queryItem", "i", "@<Tjze>5</Tjze>"))), code::LOOK_ALIKE);
    EXPECT_EQ(loss.elementName, "Tjze");
    const SMCheckResult unknown = SMCheckModelBytes(In(Named("querySubject", "s", Named("queryItem", "i", "@<colour>5</colour>"))).Text());
    ASSERT_THAT(unknown.losses, SizeIs(1));
    EXPECT_EQ(unknown.losses[0].reason, "") << "an unknown element is no look-alike";
}

TEST(SMModelCheck, GivesAnEmptyPlaceholderAsTheReasonOfItsLoss) {
    const SMLoss loss =
        LosesOnly(In("", "\n<packages>@<packagefile id=\"i\" name=\"p\"></packagefile></packages>"), code::EMPTY_PLACEHOLDER);
    EXPECT_THAT(SMDiagnosticOf(loss).message, HasSubstr("<packagefile> in "));
    EXPECT_THAT(SMDiagnosticOf(loss).message, HasSubstr("): warning[SM3012] No filename attribute in packagefile tag."));
}

TEST(SMModelCheck, FindsNothingInTheExamplesButWhatIsKnown) {
    for (const char* const name : {"minimal.xml", "foodmart.xml", "tpcds.xml", "multifile/single.xml", "multifile/main.xml"}) {
        std::string told;
        for (const SMDiagnostic& found : SMCheckModel(MODELS + name).findings) told += FormatDiagnostic(found) + "\n";
        EXPECT_EQ(told, "") << name;
    }
    const SMCheckResult everything = SMCheckModel(MODELS + "everything.xml");
    ASSERT_THAT(everything.findings, SizeIs(6));
    EXPECT_THAT(everything.losses, IsEmpty());
    const std::string document = smtest::ReadFile(MODELS + "everything.xml");
    std::size_t ends = 0;
    for (const SMDiagnostic& found : everything.findings) {
        if (found.code == code::NO_CARDINALITY && ++ends) continue;
        EXPECT_EQ(found.code, code::DANGLING_REFERENCE);
        std::size_t line = 0;
        for (long i = 1; i < found.line; ++i) line = document.find('\n', line) + 1;
        const std::string text = found.message.substr(14, found.message.find(" in '") - 14);
        EXPECT_EQ(document.substr(line + static_cast<std::size_t>(found.column) - 1, text.size()), text);
    }
    EXPECT_EQ(ends, 3U);
}

/** Its definitions have one id, and it refers to much that it has not. */
TEST(SMModelCheck, KnowsWhatIsNotConsistentInTheFormsThatOnlyReadersKnow) {
    const SMCheckResult checked = SMCheckModel(MODELS + "reader_forms.xml");
    EXPECT_THAT(checked.dangling, Not(IsEmpty()));
    for (const SMDiagnostic& found : checked.findings) {
        EXPECT_GT(found.line, 0) << found.message;
        EXPECT_THAT(found.code, AnyOf(code::DANGLING_REFERENCE, code::DUPLICATE_ID, code::NO_CARDINALITY)) << found.message;
        if (found.code == code::DUPLICATE_ID) {
            EXPECT_THAT(found.message, HasSubstr("the id d is also that of definition"));
        }
    }
}

TEST(SMModelCheck, KnowsTheReasonsOfTheLossesOfTheExamples) {
    const SMCheckResult checked = SMCheckModel(MODELS + "reader_forms.xml");
    const auto reasonOf = [&](const std::string& element, const std::string& value) {
        for (const SMLoss& loss : checked.losses)
            if (loss.elementName == element && (value.empty() || loss.value == value)) return loss.reason;
        return std::string("no loss");
    };
    EXPECT_EQ(reasonOf("usage", ""), code::UNKNOWN_WORD);
    EXPECT_EQ(reasonOf("sort", ""), code::UNKNOWN_WORD);
    EXPECT_EQ(reasonOf("hidden", ""), code::NO_TRUTH);
}

TEST(SMModelCheck, TakesTheNameOfTheCaller) {
    SMLoadOptions options;
    options.name = "<stdin>";
    const SMCheckResult checked =
        SMCheckModelBytes(ModelDocument(NamespaceElement("n", Named("shortcut", "k", "<refobj>[x]</refobj>"))), options);
    ASSERT_THAT(checked.findings, SizeIs(1));
    EXPECT_EQ(checked.findings[0].file, "<stdin>");
}

TEST(SMModelCheck, FailsAsALoadDoes) {
    const SMCheckResult checked = SMCheckModelBytes("<project><name></project>");
    EXPECT_EQ(checked.status, SMStatus::failed);
    EXPECT_FALSE(checked.project);
    EXPECT_THAT(checked.diagnostics, SizeIs(1));
}

}  // namespace
