// The index must answer as a search from the front would, whatever happens to the vector and the names in it.
#include "objects/base/smnameindex_002_000.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

using namespace schema_002_000;

namespace {

struct Item {
    std::string name;
};

struct Fixture {
    std::vector<std::shared_ptr<Item>> items;
    SMNameEpoch epoch;
    SMNameIndex index;
    std::size_t keysRead = 0;

    void Add(const std::string& name) { items.push_back(std::make_shared<Item>(Item{name})); }
    void Rename(std::size_t place, const std::string& name) {
        Item& item = *items[place];
        if (item.name == name) return;
        if (item.name.empty())
            epoch.NoteNamed(&item);
        else
            epoch.NoteRenamed();
        item.name = name;
    }
    void Erase(std::size_t place) {
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(place));
        index.Forget();
    }
    long Find(const std::string& name) {
        const auto keyAt = [this](std::size_t place) {
            ++keysRead;
            return std::string_view(items[place]->name);
        };
        return index.Find(name, items.size(), epoch, keyAt, [this](std::size_t place) { return items[place].get(); });
    }
    long Search(const std::string& name) const {
        for (std::size_t place = 0; place < items.size(); ++place)
            if (items[place]->name == name) return static_cast<long>(place);
        return -1;
    }
};

}  // namespace

TEST(SMNameIndex, FindsTheFirstOfEqualNames) {
    Fixture fixture;
    for (const char* name : {"a", "b", "a"}) fixture.Add(name);
    EXPECT_EQ(fixture.Find("a"), 0);
    EXPECT_EQ(fixture.Find("b"), 1);
    EXPECT_EQ(fixture.Find("c"), -1);
    fixture.Rename(0, "c");
    EXPECT_EQ(fixture.Find("a"), 2);
}

TEST(SMNameIndex, FindsTheFirstWithoutANameForTheEmptyName) {
    Fixture fixture;
    fixture.Add("a");
    EXPECT_EQ(fixture.Find(""), -1);
    fixture.Add("");
    EXPECT_EQ(fixture.Find(""), 1);
}

TEST(SMNameIndex, LooksAgainAtAPlaceWhoseObjectGetsItsFirstName) {
    Fixture fixture;
    fixture.Add("");
    fixture.Add("a");
    EXPECT_EQ(fixture.Find("a"), 1);
    fixture.Rename(0, "a");
    EXPECT_EQ(fixture.Find("a"), 0);
}

TEST(SMNameIndex, KnowsAnObjectThatStandsInTheVectorTwice) {
    Fixture fixture;
    fixture.Add("");
    fixture.items.push_back(fixture.items[0]);
    EXPECT_EQ(fixture.Find("a"), -1);
    fixture.Rename(1, "a");
    EXPECT_EQ(fixture.Find("a"), 0);
}

TEST(SMNameIndex, StartsAnewWithAnotherProjectsEpoch) {
    Fixture fixture;
    fixture.Add("a");
    EXPECT_EQ(fixture.Find("a"), 0);
    const auto keyAt = [&](std::size_t place) { return std::string_view(fixture.items[place]->name); };
    fixture.items[0]->name = "b";
    SMNameEpoch other;
    EXPECT_EQ(fixture.index.Find("b", 1, other, keyAt, [&](std::size_t place) { return fixture.items[place].get(); }), 0);
}

TEST(SMNameIndex, AnswersAsASearchThroughAnyChanges) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
        const auto name = [&] { return below(3) == 0 ? std::string() : "n" + std::to_string(below(seed * 4)); };
        Fixture fixture;
        for (int step = 0; step < 2000; ++step) {
            const std::size_t what = below(100);
            const std::size_t count = fixture.items.size();
            if (what < 40) {
                fixture.Add(name());
            } else if (what < 41 && count > 0) {
                fixture.Erase(below(count));
            } else if (what < 45 && count > 0) {
                fixture.Rename(below(count), name());
            } else if (what < 70 && count > 0) {
                if (const std::size_t place = below(count); fixture.items[place]->name.empty()) fixture.Rename(place, name());
            } else if (what == 99) {
                for (std::size_t place = 0; place < count; ++place)  // more than is remembered one by one
                    if (fixture.items[place]->name.empty()) fixture.Rename(place, name());
            } else {
                const std::string wanted = name();
                ASSERT_EQ(fixture.Find(wanted), fixture.Search(wanted)) << "seed " << seed << " step " << step;
            }
        }
    }
}

TEST(SMNameIndex, NamesOneByOneAmongManyWithoutReadingThemAll) {
    Fixture fixture;
    constexpr std::size_t COUNT = 20000;
    for (std::size_t i = 0; i < COUNT; ++i) fixture.Add("");
    EXPECT_EQ(fixture.Find("n"), -1);
    fixture.keysRead = 0;
    for (std::size_t i = 0; i < COUNT; ++i) {
        const std::string name = "n" + std::to_string(i);
        ASSERT_EQ(fixture.Find(name), -1);
        fixture.Rename(i, name);
        ASSERT_EQ(fixture.Find(name), static_cast<long>(i));
    }
    EXPECT_LT(fixture.keysRead, COUNT * 10);
}
