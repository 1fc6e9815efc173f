#include "objects/base/smenum_002_000.h"

#include "core/qvutils/diag/diagnostics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

using namespace schema_002_000;

namespace {

/** The hash step by step, by its definition. */
int HashStepByStep(const std::u32string& characters) {
    std::int32_t hash = 0;
    for (auto at = characters.rbegin(); at != characters.rend(); ++at) {
        hash = hash * 31 + static_cast<std::int32_t>(*at);
        hash = hash % 32767;
    }
    return hash + static_cast<std::int32_t>(characters.size());
}

void AppendUtf8(std::string& bytes, char32_t c) {
    const auto add = [&bytes](char32_t byte) { bytes += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6);
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12);
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3F));
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

int HashOf(const std::u32string& characters) {
    std::string bytes;
    for (const char32_t c : characters) AppendUtf8(bytes, c);
    return SMEnum::HashSMXMLString(I18NString(bytes));
}

struct LogSink : SMLogSink {
    void Take(const QvLogEvent& event, const SMSourceContext*) override { events.push_back(event); }
    std::vector<QvLogEvent> events;
};

}  // namespace

namespace clash {

/** Two texts of one hash. */
class ClashingEnum {
  public:
    enum Enum : int { zero = 0, one = 1 };
    SM_ENUM_MEMBERS(ClashingEnum)
};

SM_DEFINE_ENUM_MEMBERS(ClashingEnum)

int clashingEnumsMade = 0;

ClashingEnum::ClashingEnum() {
    ++clashingEnumsMade;
    _insertOrError(m_vocabulary.InsertText(0, "name"), zero);
    _insertOrError(m_vocabulary.InsertText(1, "pz"), one);
}

}  // namespace clash

using clash::ClashingEnum;
using clash::clashingEnumsMade;

TEST(SMEnumHash, GivesTheWorkedValues) {
    EXPECT_EQ(SMEnum::HashSMXMLString(""), 0);
    EXPECT_EQ(SMEnum::HashSMXMLString("true"), 12117);
    EXPECT_EQ(SMEnum::HashSMXMLString("id"), 3207);
    EXPECT_EQ(SMEnum::HashSMXMLString("name"), 3896);
    EXPECT_EQ(SMEnum::HashSMXMLString("asView"), 9620);
}

TEST(SMEnumHash, AddsTheLengthAfterTheLastReduction) {
    int largest = 0;
    for (int length = 1; length <= 200; ++length)
        for (char32_t c = 1; c < 128; ++c) largest = std::max(largest, HashOf(std::u32string(static_cast<std::size_t>(length), c)));
    EXPECT_GT(largest, 32766);
}

TEST(SMEnumHash, CountsCharactersAndNotBytes) {
    EXPECT_EQ(HashOf(U"é"), 0xE9 + 1);
    EXPECT_EQ(HashOf(U"aé"), 'a' + 31 * 0xE9 + 2);
    EXPECT_EQ(HashOf(U"😀"), 0x1F600 % 32767 + 1);
}

TEST(SMEnumHash, AgreesWithItsDefinitionForEveryLength) {
    std::mt19937 random(7);
    for (std::size_t length = 0; length <= 150; ++length) {
        std::u32string ascii;
        std::u32string mixed;
        for (std::size_t i = 0; i < length; ++i) {
            ascii += static_cast<char32_t>(1 + random() % 127);
            mixed += static_cast<char32_t>(random() % 4 ? 1 + random() % 127 : 0x10000 + random() % 0x100000);
        }
        EXPECT_EQ(HashOf(ascii), HashStepByStep(ascii)) << length;
        EXPECT_EQ(HashOf(mixed), HashStepByStep(mixed)) << length;
    }
}

TEST(SMEnumBool, TakesOnlyTheExactWordForTrue) {
    EXPECT_TRUE(SMEnum_bool::string2bool("true"));
    for (const char* text : {"True", "TRUE", "1", "", "false", " true", "true ", "yes"})
        EXPECT_FALSE(SMEnum_bool::string2bool(text)) << text;
}

TEST(SMEnumBool, GivesReferencesToItsTwoTexts) {
    EXPECT_EQ(&SMEnum_bool::bool2string(true), &SMEnum_bool::s_true);
    EXPECT_EQ(&SMEnum_bool::bool2string(false), &SMEnum_bool::s_false);
    EXPECT_EQ(SMEnum_bool::s_true, "true");
    EXPECT_EQ(SMEnum_bool::s_false, "false");
}

TEST(SMVocabulary, KnowsNothingWhenEmpty) {
    const SMVocabulary vocabulary("Empty");
    EXPECT_EQ(vocabulary.NumberOf(""), -1);
    EXPECT_EQ(vocabulary.NumberOf("name"), -1);
    EXPECT_EQ(vocabulary.TextOf(0), nullptr);
    EXPECT_EQ(vocabulary.TextOf(-1), nullptr);
}

TEST(SMVocabulary, KeepsTheFirstTextOfANumber) {
    SMVocabulary vocabulary("Doubled");
    EXPECT_EQ(vocabulary.InsertText(3, "first"), "first");
    EXPECT_EQ(vocabulary.InsertText(3, "second"), "first");
    EXPECT_EQ(*vocabulary.TextOf(3), "first");
    EXPECT_EQ(vocabulary.TextOf(2), nullptr);
    EXPECT_EQ(vocabulary.TextOf(4), nullptr);
}

TEST(SMVocabulary, FindsEveryTextWhileItGrows) {
    SMVocabulary vocabulary("Growing");
    std::vector<int> numberOfHash(40000, -1);
    for (int number = 0; number < 5000; ++number) {
        const I18NString text(std::to_string(number * 37));
        int& known = numberOfHash[static_cast<std::size_t>(SMEnum::HashSMXMLString(text))];
        if (known != -1) continue;
        known = number;
        vocabulary.InsertOrError(text, number);
    }
    for (int number = 0; number < 10000; ++number) {
        const I18NString text(std::to_string(number * 37));
        EXPECT_EQ(vocabulary.NumberOf(text), numberOfHash[static_cast<std::size_t>(SMEnum::HashSMXMLString(text))]);
    }
}

TEST(SMVocabulary, LogsAndThrowsACollision) {
    LogSink log;
    const SMLogScope scope(log);
    EXPECT_THROW(
        {
            try {
                ClashingEnum::GetInstance();
            } catch (const QvLogEvent& event) {
                EXPECT_EQ(event.className, "ClashingEnum");
                throw;
            }
        },
        QvLogEvent);
    ASSERT_EQ(log.events.size(), 1u);
    const QvLogEvent& event = log.events[0];
    EXPECT_EQ(event.level, 4);
    EXPECT_EQ(event.category, "code");
    EXPECT_EQ(event.product, "QvOne");
    EXPECT_EQ(event.module, "smenumsmacro");
    EXPECT_EQ(event.className, "ClashingEnum");
    EXPECT_EQ(event.method, "_insertOrError");
    EXPECT_EQ(event.action, 0);
    EXPECT_EQ(
        event.message,
        "The string 'pz' hashes to the same value as another string in this enum.  Please check for duplicated enum values, and if none "
        "are found, modify the hash function to avoid this error.");
    EXPECT_EQ(event.detail, "");
}

TEST(SMVocabulary, IsBuiltAnewAfterAFailure) {
    LogSink log;
    const SMLogScope scope(log);
    const int before = clashingEnumsMade;
    EXPECT_THROW(ClashingEnum::GetInstance(), QvLogEvent);
    EXPECT_THROW(ClashingEnum::GetInstance(), QvLogEvent);
    EXPECT_EQ(clashingEnumsMade, before + 2);
    EXPECT_EQ(log.events.size(), 2u);
}
