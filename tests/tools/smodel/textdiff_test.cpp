#include "tools/smodel/textdiff.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> Diff(std::string_view first, std::string_view second, std::size_t most = 100) {
    std::vector<std::string> lines;
    for (const LineChange& change : DiffLines(first, second, most))
        lines.push_back(change.sign + std::to_string(change.number) + ":" + std::string(change.line));
    return lines;
}

TEST(SmodelTextDiff, FindsNothingInEqualTexts) {
    EXPECT_THAT(Diff("a\nb\n", "a\nb\n"), IsEmpty());
    EXPECT_THAT(Diff("", ""), IsEmpty());
}

TEST(SmodelTextDiff, FindsWhatWasTakenOutAndPutIn) {
    EXPECT_THAT(Diff("a\nb\nc\n", "a\nc\nd\n"), ElementsAre("-2:b", "+3:d"));
    EXPECT_THAT(Diff("", "a\nb"), ElementsAre("+1:a", "+2:b"));
    EXPECT_THAT(Diff("a\nb", ""), ElementsAre("-1:a", "-2:b"));
    EXPECT_THAT(Diff("x\na\nb\nc", "a\ny\nb\nc"), ElementsAre("-1:x", "+2:y"));
}

TEST(SmodelTextDiff, FindsTheFewestLines) {
    EXPECT_EQ(Diff("a\nb\nc\na\nb\nb\na", "c\nb\na\nb\na\nc").size(), 5u);
}

TEST(SmodelTextDiff, ComparesPlaceByPlaceWhatDiffersTooMuch) {
    EXPECT_THAT(Diff("a\nb\nc", "x\ny\nz", 3), ElementsAre("-1:a", "+1:x", "-2:b"));
}

}  // namespace
