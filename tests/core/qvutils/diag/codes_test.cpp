#include "core/qvutils/diag/codes.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/documents.h"

using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

std::string WordOf(SMSeverity severity) {
    return severity == SMSeverity::error ? "error" : severity == SMSeverity::warning ? "warning" : "note";
}

}  // namespace

TEST(SMCodes, AreUniqueAndInOrder) {
    std::string before;
    for (const SMCodeInfo& info : SMCodes()) {
        EXPECT_THAT(info.code, MatchesRegex("SM[0-3][0-9][0-9][0-9]"));
        EXPECT_LT(before, info.code);
        before = info.code;
    }
}

TEST(SMCodes, ShowThemselvesInTheirExamples) {
    for (const SMCodeInfo& info : SMCodes())
        EXPECT_THAT(info.example, HasSubstr(WordOf(info.severity) + "[" + info.code + "] ")) << info.code;
}

TEST(SMCodes, AreFoundByTheirWord) {
    ASSERT_NE(SMFindCode("SM1001"), nullptr);
    EXPECT_STREQ(SMFindCode("SM1001")->title, "an element is not kept");
    EXPECT_EQ(SMFindCode("SM9999"), nullptr);
    EXPECT_EQ(SMFindCode(""), nullptr);
}

TEST(SMCodes, StandOnTheirPageWithAnExampleEach) {
    const std::string page = smtest::ReadFile(std::string(SMODEL_SOURCE_DIR) + "/docs/diagnostics.md");
    for (const SMCodeInfo& info : SMCodes()) {
        EXPECT_THAT(page, HasSubstr(std::string("### ") + info.code + " — " + info.title + "\n")) << info.code;
        EXPECT_THAT(page, HasSubstr(std::string(info.explanation))) << info.code;
        EXPECT_THAT(page, HasSubstr(std::string("    ") + info.example + "\n")) << info.code;
    }
}
