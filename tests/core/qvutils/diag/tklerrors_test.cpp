#include "core/qvutils/diag/tklerrors.h"

#include <gtest/gtest.h>

#include <string>

TEST(TklAssertError, CarriesTheWholeStatement) {
    const int line = __LINE__ + 2;
    try {
        TKL_ASSERT(false);
        FAIL() << "not raised";
    } catch (const TklAssertError& error) {
        EXPECT_EQ(error.text(), "TKL_ASSERT(false);");
        EXPECT_EQ(error.code(), 0);
        EXPECT_STREQ(error.location().file, __FILE__);
        EXPECT_EQ(error.location().line, line);
        EXPECT_EQ(std::string(error.what()), std::string(__FILE__) + ":" + std::to_string(line) + ": TKL_THROW: TKL_ASSERT(false);");
    }
}

TEST(TklAssertError, IsNotRaisedWhenTheConditionHolds) {
    int evaluated = 0;
    TKL_ASSERT(++evaluated == 1);
    EXPECT_EQ(evaluated, 1);
}

TEST(TklAssertError, TakesWhatItIsGiven) {
    TklAssertError error(5, "a text");
    EXPECT_STREQ(error.what(), "a text");
    try {
        error.hurl({nullptr, 0}, "module.cpp", "TKL_THROW");
    } catch (const std::exception& raised) {
        EXPECT_STREQ(raised.what(), "module.cpp: TKL_THROW: a text");
    }
    EXPECT_STREQ(TklAssertError(0, nullptr).what(), "");
}

TEST(TklRuntimeError, TellsThePlaceAsFarAsItIsKnown) {
    EXPECT_STREQ(TklRuntimeError("broken").what(), "broken");
    EXPECT_STREQ(TklRuntimeError("broken", "a.xml").what(), "a.xml: broken");
    EXPECT_STREQ(TklRuntimeError("broken", "a.xml", 3).what(), "a.xml:3: broken");
    EXPECT_STREQ(TklRuntimeError("broken", "a.xml", 3, 7).what(), "a.xml:3:7: broken");
    EXPECT_STREQ(TklRuntimeError("broken", "", 3, 7).what(), "3:7: broken");
    const TklRuntimeError error("broken", "a.xml", 3, 7);
    EXPECT_EQ(error.message(), "broken");
    EXPECT_EQ(error.file(), "a.xml");
    EXPECT_EQ(error.line(), 3);
    EXPECT_EQ(error.column(), 7);
}
