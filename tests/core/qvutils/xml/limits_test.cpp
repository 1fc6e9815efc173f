#include "core/qvutils/xml/limits.h"

#include <algorithm>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/xml/qvsax2parser.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

/** "code message" of a document, or "read". */
std::string VerdictOf(const std::string& document, const SMXMLLimits& limits, SMXMLTotals* totals = nullptr) {
    QvSAX2Parser parser;
    parser.setLimits(limits);
    parser.setTotals(totals);
    try {
        parser.parse(document.data(), document.size());
        return "read";
    } catch (const TklRuntimeError& error) {
        return std::string(error.code()) + " " + error.message();
    }
}

std::string WithBound(std::size_t SMXMLLimits::*bound, std::size_t value, const std::string& document) {
    SMXMLLimits limits;
    limits.*bound = value;
    return VerdictOf(document, limits);
}

}  // namespace

TEST(SMXMLLimits, HaveEachACodeAndANameOfTheirOwn) {
    std::set<std::string> codes, names;
    for (const SMXMLLimitInfo& info : SMXMLLimitInfos()) {
        EXPECT_TRUE(codes.insert(info.code).second) << info.code;
        EXPECT_TRUE(names.insert(info.name).second) << info.name;
        const SMCodeInfo* const code = SMFindCode(info.code);
        ASSERT_TRUE(code) << info.code;
        EXPECT_THAT(code->explanation, HasSubstr("(" + qv::SizeText(SMXMLLimits().*info.bound) + " by default)")) << info.name;
        EXPECT_THAT(code->example, HasSubstr(std::string("--limits ") + info.name + "=")) << info.name;
    }
    EXPECT_EQ(names.size() * sizeof(std::size_t), sizeof(SMXMLLimits)) << "a bound that users do not know";
}

TEST(SMXMLLimits, HoldToTheLastUnit) {
    struct Case {
        std::size_t SMXMLLimits::*bound;
        std::string document;
        std::size_t exact;
        const char* code;
    };
    const std::string entities = "<!DOCTYPE a [<!ENTITY e '12345'>]>";
    for (const Case& each : {
             Case{&SMXMLLimits::documentBytes, "<a><b></b></a>", 14, "SM2101"},
             Case{&SMXMLLimits::depth, "<a><b><c></c></b><b></b></a>", 3, "SM2102"},
             Case{&SMXMLLimits::elements, "<a><b></b><b></b></a>", 3, "SM2103"},
             Case{&SMXMLLimits::attributes, "<a x='' y=''></a>", 2, "SM2104"},
             Case{&SMXMLLimits::attributeBytes, "<a x='1234'></a>", 4, "SM2105"},
             Case{&SMXMLLimits::textBytes, "<a>12345<b>67</b></a>", 5, "SM2106"},
             Case{&SMXMLLimits::names, "<new1><new2></new2><new3></new3><new2></new2></new1>", 3, "SM2107"},
             Case{&SMXMLLimits::entityReferences, entities + "<a>&e;<b></b>&e;</a>", 2, "SM2109"},
             Case{&SMXMLLimits::entityCharacters, entities + "<a>&e;<b></b>&e;</a>", 10, "SM2110"},
         }) {
        // the smaller one first: a reader that is used again counts no name that it knows
        EXPECT_THAT(WithBound(each.bound, each.exact - 1, each.document), StartsWith(each.code));
        EXPECT_EQ("read", WithBound(each.bound, each.exact, each.document)) << each.code;
    }
}

TEST(SMXMLLimits, TellHowToRaiseThem) {
    EXPECT_EQ("SM2102 elements are nested deeper than 2; where that is meant, raise the limit, as by --limits depth=4",
              WithBound(&SMXMLLimits::depth, 2, "<a><b><c></c></b></a>"));
    EXPECT_EQ("SM2106 a text is longer than 1024 bytes; where that is meant, raise the limit, as by --limits text=2K",
              WithBound(&SMXMLLimits::textBytes, 1024, "<a>" + std::string(1025, 'x') + "</a>"));
    EXPECT_EQ("SM2106 a tag is longer than 5 bytes; where that is meant, raise the limit, as by --limits text=10",
              WithBound(&SMXMLLimits::textBytes, 5, "<a b='123456'/>"));
}

TEST(SMXMLLimits, CountTheDocumentsOfOneReadTogether) {
    SMXMLLimits limits;
    limits.elements = 5;
    SMXMLTotals totals;
    EXPECT_EQ("read", VerdictOf("<a><b></b></a>", limits, &totals));
    EXPECT_EQ("read", VerdictOf("<a><b></b></a>", limits, &totals));
    EXPECT_EQ(totals.elements, 4u);
    EXPECT_EQ(totals.bytes, 28u);
    EXPECT_THAT(VerdictOf("<a><b></b></a>", limits, &totals), StartsWith("SM2103"));
    EXPECT_EQ("read", VerdictOf("<a><b></b></a>", limits)) << "of no read but its own";

    const std::string entity = "<!DOCTYPE a [<!ENTITY e '12345'>]><a>&e;</a>";
    limits.entityCharacters = 9;
    totals = {};
    EXPECT_EQ("read", VerdictOf(entity, limits, &totals));
    EXPECT_THAT(VerdictOf(entity, limits, &totals), StartsWith("SM2110"));
}

TEST(SMXMLLimits, CountTheElementsAroundADocument) {
    SMXMLLimits limits;
    limits.depth = 3;
    SMXMLTotals totals;
    totals.depth = 1;
    EXPECT_EQ("read", VerdictOf("<a><b></b></a>", limits, &totals));
    EXPECT_THAT(VerdictOf("<a><b><c></c></b></a>", limits, &totals), StartsWith("SM2102"));
    EXPECT_EQ(totals.depth, 1u) << "what a document that failed had open is not open any more";
}

TEST(SMXMLLimits, AreToldInUnitsWhereThatIsExact) {
    EXPECT_EQ(qv::SizeText(0), "0");
    EXPECT_EQ(qv::SizeText(1000), "1000");
    EXPECT_EQ(qv::SizeText(1024), "1K");
    EXPECT_EQ(qv::SizeText(std::size_t{256} << 20), "256M");
    EXPECT_EQ(qv::SizeText(std::size_t{4} << 40), "4096G");
}
