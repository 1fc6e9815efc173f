// Texts around elements, and which of several objects alike a loss is told of.
#include "objects/face/smaccounting_002_000.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/cputime.h"
#include "tests/support/facemodel.h"
#include "tests/support/toldlosses.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string Folder(const std::string& name, const std::string& rest = {}) {
    return "<folder><name locale=\"en\">" + name + "</name>" + rest + "</folder>";
}

std::string InRoot(const std::string& content) {
    return ModelDocument(NamespaceElement("n", content));
}

}  // namespace

TEST(SMAccountingOfTexts, TellsOneThatIsAPartOfWhatIsWrittenInstead) {
    EXPECT_THAT(LossesOf(InRoot(Folder("north<description locale=\"en\">northern sales</description>"))),
                Contains(HasSubstr("SM1003] the text of <name>")));
    EXPECT_THAT(LossesOf(InRoot(Folder("f", "<description locale=\"en\">a<screenTip locale=\"en\">banana</screenTip></description>"))),
                Contains(HasSubstr("SM1003] the text of <description>")));
}

TEST(SMAccountingOfTexts, KnowsThePiecesOfWhichAValueIsMade) {
    EXPECT_THAT(LossesOf(InRoot(Folder("f<locale>g</locale>"))), ElementsAre(HasSubstr("<locale> in (folder).(fg).() is not kept")));
    const std::string value = "<description locale=\"en\">one <zz/>one <yy/> two</description>";
    EXPECT_THAT(LossesOf(InRoot(Folder("f", value))),
                ElementsAre(HasSubstr("<zz> in"), HasSubstr("2:210: error[SM1003] the text of <description>"), HasSubstr("<yy> in"),
                            HasSubstr("SM1003] the text of <description>")));
}

TEST(SMAccountingOfTexts, CostNoMoreThanTheirLength) {
    std::string pieces;
    for (int i = 0; i < 40'000; ++i) pieces += "ab<zz/>";
    for (const char character : {'a', ' '}) {
        const std::string screenTip = "<screenTip locale=\"en\">" + std::string(2'000'000, character) + "b</screenTip>";
        const std::string document = InRoot(Folder("f", "<description locale=\"en\">" + pieces + screenTip + "</description>"));
        EXPECT_LT(CpuSecondsOf([&] { EXPECT_THAT(LossesOf(document), Not(IsEmpty())); }), 20) << "a search for each takes minutes";
    }
}

TEST(SMAccountingOfTexts, AreOfTheObjectThatHasTheirId) {
    const auto id = [](const std::string& value) { return "<property name=\"id\" type=\"hidden\">" + value + "</property>"; };
    const std::string other = Folder("f<locale>g</locale>", id("7"));
    EXPECT_THAT(LossesOf(InRoot(Folder("f", id("6") + "stray") + other)),
                ElementsAre(HasSubstr("SM1003] the text of <folder> in (folder).(f).(6) is not kept (5 bytes)"),
                            HasSubstr("SM1001] <locale> in ")));
}

TEST(SMAccountingOfTexts, OfManyObjectsHideNothingOfTheOneAroundThem) {
    const std::string items = "<zz>" + [] {
        std::string many;
        for (int i = 0; i < 20'000; ++i) many += "<queryItem></queryItem>";
        return many;
    }() + "</zz>";
    std::string sizes;
    for (int i = 0; i < 20'000; ++i) sizes += "<size>0</size>";
    const std::string document = InRoot("<querySubject><name locale=\"en\">s</name>" + items + sizes + "</querySubject>");
    EXPECT_LT(CpuSecondsOf([&] { EXPECT_THAT(LossesOf(document), Contains(HasSubstr("<size> in [n].[s]"))); }), 20)
        << "a look at each for each takes minutes";
}
