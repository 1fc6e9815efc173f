#include "core/qvutils/base/takennumbers.h"

#include <random>
#include <set>

#include <gtest/gtest.h>

TEST(TakenNumbers, GiveTheFirstFreeOneFromTheStart) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        qv::TakenNumbers numbers;
        std::set<long> taken;
        for (int i = 0; i < 200; ++i) {
            const long start = static_cast<long>(random() % 100);
            long wanted = start;
            while (taken.count(wanted) != 0) ++wanted;
            ASSERT_EQ(numbers.FirstFree(start, [&](long number) { return taken.count(number) != 0; }), wanted);
            if (random() % 3 != 0) taken.insert(wanted);
            if (random() % 5 == 0) taken.insert(static_cast<long>(random() % 100));
        }
    }
}

TEST(TakenNumbers, LookAtEachNumberOnceWhereverSearchesBegin) {
    constexpr long MANY = 1'000;
    const auto steps = [](auto startOf) {
        qv::TakenNumbers numbers;
        std::set<long> taken;
        for (long i = 0; i < MANY; ++i) taken.insert(i);
        for (long i = 0; i < MANY; ++i) taken.insert(5 * MANY + i);
        long asked = 0;
        for (long i = 0; i < MANY; ++i)
            taken.insert(numbers.FirstFree(startOf(i), [&](long number) {
                ++asked;
                return taken.count(number) != 0;
            }));
        return asked;
    };
    EXPECT_LT(steps([](long) { return 0; }), 4 * MANY);
    EXPECT_LT(steps([](long i) { return i; }), 4 * MANY);
    EXPECT_LT(steps([](long i) { return MANY - i; }), 4 * MANY);
    EXPECT_LT(steps([](long i) { return i % 2 == 0 ? i : 5 * MANY + i; }), 6 * MANY);
}
