#include "core/repository/ascendingnumbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using qv::NumberedSibling;
using Stored = std::vector<std::int64_t>;

constexpr std::int64_t NEW = -1;

/** Siblings with these stored numbers, in memory numbered from 0. */
std::vector<NumberedSibling> Siblings(const Stored& stored) {
    std::vector<NumberedSibling> siblings;
    for (const std::int64_t number : stored) {
        NumberedSibling sibling;
        sibling.memory = static_cast<std::int64_t>(siblings.size());
        if (number != NEW) sibling.stored = number;
        siblings.push_back(sibling);
    }
    return siblings;
}

Stored NumbersOf(const std::vector<NumberedSibling>& siblings) {
    Stored numbers;
    for (const NumberedSibling& sibling : siblings) numbers.push_back(sibling.number);
    return numbers;
}

Stored Numbered(const Stored& stored) {
    std::vector<NumberedSibling> siblings = Siblings(stored);
    qv::NumberSiblings(siblings);
    return NumbersOf(siblings);
}

std::size_t KeptIn(const std::vector<NumberedSibling>& siblings) {
    return static_cast<std::size_t>(
        std::count_if(siblings.begin(), siblings.end(), [](const NumberedSibling& s) { return s.stored == s.number; }));
}

/** The size of the greatest selection that ascends and holds all that are pinned. */
std::size_t MostThatAscend(const std::vector<NumberedSibling>& siblings) {
    std::size_t most = 0;
    for (unsigned chosen = 0; chosen < 1u << siblings.size(); ++chosen) {
        std::int64_t before = -1;
        std::size_t count = 0;
        bool fits = true;
        for (std::size_t at = 0; at < siblings.size(); ++at) {
            if (!(chosen >> at & 1)) {
                fits &= !siblings[at].pinned;
                continue;
            }
            fits &= siblings[at].stored && *siblings[at].stored > before;
            if (fits) before = *siblings[at].stored;
            ++count;
        }
        if (fits) most = std::max(most, count);
    }
    return most;
}

TEST(AscendingNumbers, StayBehindOneThatWent) {
    EXPECT_EQ(Numbered({1, 2, 3, 4}), (Stored{1, 2, 3, 4}));
}

TEST(AscendingNumbers, StayForAllButTheOneThatMoved) {
    EXPECT_EQ(Numbered({1, 2, 3, 0}), (Stored{1, 2, 3, 4}));
    EXPECT_EQ(Numbered({10, 50, 20, 30}), (Stored{10, 15, 20, 30}));
}

TEST(AscendingNumbers, OfNewOnesLieBetweenTheirNeighbours) {
    EXPECT_EQ(Numbered({0, NEW, NEW, 9}), (Stored{0, 3, 6, 9}));
    EXPECT_EQ(Numbered({NEW, 1}), (Stored{0, 1}));
    EXPECT_EQ(Numbered({0, 1, NEW}), (Stored{0, 1, 2}));
}

TEST(AscendingNumbers, MakeRoomForTheNextOnesWhereThereIsNone) {
    EXPECT_EQ(Numbered({0, NEW, 1, 2}), (Stored{0, 16, 32, 48}));
    EXPECT_EQ(Numbered({0, NEW, 1, 40}), (Stored{0, 13, 26, 40})) << "as few as can be have to go";
}

TEST(AscendingNumbers, OfPinnedOnesAreThoseOfMemory) {
    std::vector<NumberedSibling> siblings = Siblings({0, NEW, 5, 3, 3});
    siblings[3].pinned = true;
    qv::NumberSiblings(siblings);
    EXPECT_EQ(NumbersOf(siblings), (Stored{0, 1, 2, 3, 4}));
}

TEST(AscendingNumbers, BeginAnewWhereTheyWouldBeTooBig) {
    EXPECT_EQ(Numbered({0, 2147483647, NEW}), (Stored{0, 1, 2}));
    EXPECT_EQ(Numbered({2147483646, NEW}), (Stored{2147483646, 2147483647}));
}

TEST(AscendingNumbers, AscendAndKeepAllThatCanStay) {
    std::minstd_rand random(3);
    for (int round = 0; round < 3000; ++round) {
        // wide apart, so that all who come find room
        Stored stored;
        for (std::int64_t at = 1; at <= 8; ++at) stored.push_back(at * 100);
        std::shuffle(stored.begin(), stored.end(), random);
        if (round % 2 == 0) std::sort(stored.begin(), stored.begin() + 5);
        for (int edits = static_cast<int>(random() % 4); edits-- > 0;) stored[random() % stored.size()] = NEW;
        std::vector<NumberedSibling> siblings = Siblings(stored);
        qv::NumberSiblings(siblings);
        const Stored numbers = NumbersOf(siblings);
        ASSERT_EQ(std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()), numbers.end())
            << testing::PrintToString(stored) << testing::PrintToString(numbers);
        ASSERT_EQ(KeptIn(siblings), MostThatAscend(siblings)) << testing::PrintToString(stored) << testing::PrintToString(numbers);
    }
}

TEST(AscendingNumbers, AscendAlsoWhereThereIsNoRoomAndSomeArePinned) {
    std::minstd_rand random(5);
    for (int round = 0; round < 20000; ++round) {
        Stored stored;
        for (int at = 0; at < 9; ++at) stored.push_back(random() % 3 == 0 ? NEW : static_cast<std::int64_t>(random() % 12));
        std::vector<NumberedSibling> siblings = Siblings(stored);
        for (NumberedSibling& sibling : siblings) {
            sibling.pinned = random() % 4 == 0;
            if (sibling.pinned && sibling.stored) sibling.stored = sibling.memory;
        }
        qv::NumberSiblings(siblings);
        const Stored numbers = NumbersOf(siblings);
        ASSERT_EQ(std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()), numbers.end())
            << testing::PrintToString(stored) << testing::PrintToString(numbers);
        for (const NumberedSibling& sibling : siblings) ASSERT_TRUE(!sibling.pinned || sibling.number == sibling.memory);
    }
}

}  // namespace
