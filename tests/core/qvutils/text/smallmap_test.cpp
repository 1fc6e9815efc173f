#include "core/qvutils/text/smallmap.h"

#include "core/qvutils/text/asciifold.h"
#include "core/qvutils/text/qvulstring.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using Map = qv::SmallSortedMap<QvULString, std::string>;

std::string Listing(const Map& map) {
    std::string text;
    for (const auto& [key, value] : map) text.append(key.utf8()).append("=").append(value).append(" ");
    return text;
}

/** A value whose making can fail. */
struct Fragile {
    explicit Fragile(bool fail) {
        if (fail) throw std::runtime_error("as asked");
    }
};

}  // namespace

TEST(SmallSortedMap, IsOnePointerAndEmptyAtFirst) {
    Map map;
    EXPECT_EQ(sizeof map, sizeof(void*));
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map.begin(), map.end());
    EXPECT_EQ(map.find("a"), map.end());
    EXPECT_EQ(map.erase("a"), 0U);
    map.clear();
    EXPECT_TRUE(map.empty());
}

TEST(SmallSortedMap, WalksInTheOrderOfKeys) {
    Map map;
    map["b"] = "2";
    map["c"] = "3";
    map["a"] = "1";
    map["\xC3\xA9"] = "5";
    map["d"] = "4";
    EXPECT_EQ(Listing(map), "a=1 b=2 c=3 d=4 \xC3\xA9=5 ");
    EXPECT_EQ(map.find("c")->second, "3");
    EXPECT_EQ(map.lower_bound("bb")->second, "3");
    EXPECT_EQ(map.find("bb"), map.end());
    EXPECT_TRUE(map.contains("a"));
    EXPECT_EQ(map.count("x"), 0U);
}

TEST(SmallSortedMap, KeepsAnExistingEntry) {
    Map map{{"a", "1"}, {"b", "2"}};
    const auto [at, added] = map.emplace("a", "new");
    EXPECT_FALSE(added);
    EXPECT_EQ(at->second, "1");
    EXPECT_FALSE(map.insert({"b", "new"}).second);
    EXPECT_TRUE(map.insert({"c", "3"}).second);
    EXPECT_FALSE(map.insert_or_assign("a", "9").second);
    EXPECT_TRUE(map.insert_or_assign("0", "0").second);
    EXPECT_EQ(Listing(map), "0=0 a=9 b=2 c=3 ");
}

TEST(SmallSortedMap, MakesAMissingValue) {
    qv::SmallSortedMap<QvULString, int> map;
    EXPECT_EQ(map["a"], 0);
    ++map["a"];
    EXPECT_EQ(map["a"], 1);
    EXPECT_EQ(map.size(), 1U);
}

TEST(SmallSortedMap, ErasesByKeyAndByPlace) {
    Map map{{"a", "1"}, {"b", "2"}, {"c", "3"}};
    EXPECT_EQ(map.erase("b"), 1U);
    EXPECT_EQ(map.erase("b"), 0U);
    EXPECT_EQ(Listing(map), "a=1 c=3 ");
    auto next = map.erase(map.begin());
    EXPECT_EQ(next->first, "c");
    next = map.erase(next);
    EXPECT_EQ(next, map.end());
    EXPECT_TRUE(map.empty());
    map["again"] = "1";
    EXPECT_EQ(map.size(), 1U);
}

TEST(SmallSortedMap, CopiesAndMoves) {
    Map map{{"a", "1"}, {"b", "2"}};
    Map copy(map);
    copy["a"] = "9";
    EXPECT_EQ(Listing(map), "a=1 b=2 ");
    EXPECT_FALSE(copy == map);
    copy = map;
    EXPECT_TRUE(copy == map);
    Map& alias = copy;
    copy = alias;
    EXPECT_TRUE(copy == map);
    const Map moved(std::move(copy));
    EXPECT_TRUE(copy.empty());
    EXPECT_TRUE(moved == map);
    map = Map();
    EXPECT_TRUE(map.empty());
    const Map emptyCopy(map);
    EXPECT_TRUE(emptyCopy.empty());
}

TEST(SmallSortedMap, TakesItsOwnPartsAsArguments) {
    Map map{{"b", "value of b"}};
    map.emplace("a", map.find("b")->second);
    map.emplace("c", map.find("a")->second);
    map.insert_or_assign(map.begin()->first, map.begin()->second);
    EXPECT_EQ(Listing(map), "a=value of b b=value of b c=value of b ");
    map.erase(map.begin()->first);
    EXPECT_EQ(map.size(), 2U);
}

TEST(SmallSortedMap, FollowsItsOrder) {
    qv::SmallSortedMap<QvULString, int, qv::AsciiLessIgnoreCase> map;
    map["EN"] = 1;
    map["en"] = 2;
    map["de"] = 3;
    EXPECT_EQ(map.size(), 2U);
    EXPECT_EQ(map.begin()->first, "de");
    EXPECT_EQ(map.find("En")->second, 2);
}

TEST(SmallSortedMap, IsUnchangedWhenMakingAValueFails) {
    qv::SmallSortedMap<QvULString, Fragile> map;
    map.emplace("b", false);
    EXPECT_THROW(map.emplace("a", true), std::runtime_error);
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(map.begin()->first, "b");
}

TEST(SmallSortedMap, HoldsTypesOfAnyAlignment) {
    qv::SmallSortedMap<char, long double> map;
    map['b'] = 2;
    map['a'] = 1;
    EXPECT_EQ(map.begin()->second, 1.0L);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&map.begin()->second) % alignof(long double), 0U);
}

TEST(SmallSortedMap, BehavesAsAnOrderedMapUnderRandomUse) {
    std::mt19937 random(20240229);
    Map map;
    std::map<QvULString, std::string> model;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(random() % 40);
        const QvULString key{std::string_view(number)};
        const std::string value = std::to_string(i);
        switch (random() % 4) {
        case 0: EXPECT_EQ(map.emplace(key, value).second, model.emplace(key, value).second); break;
        case 1: EXPECT_EQ(map.erase(key), model.erase(key)); break;
        case 2: map[key] = model[key] = value; break;
        default: EXPECT_EQ(map.find(key) == map.end(), model.find(key) == model.end());
        }
        ASSERT_EQ(map.size(), model.size());
        ASSERT_TRUE(std::equal(map.begin(), map.end(), model.begin(),
                               [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; }));
    }
}
