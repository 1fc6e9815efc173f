#include "core/qvutils/content/movedcontent.h"

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

/** A simple element of the object with this number, which nobody looks into. */
qv::ContentNode Simple(const std::string& name, const std::vector<char>& objects, std::size_t object) {
    qv::ContentNode node;
    node.name = name;
    node.bareDigest = std::hash<std::string>()(name);
    node.filled = reinterpret_cast<const IOObject*>(&objects[object]);
    return node;
}

const char OBJECT = 0;

/** A data source that a reader has made. */
qv::ContentNode Object(const std::string& key, std::uint64_t digest) {
    qv::ContentNode node;
    node.name = "dataSource";
    node.key = key;
    node.digest = node.bareDigest = digest;
    node.filled = reinterpret_cast<const IOObject*>(&OBJECT);
    node.isHollow = true;
    return node;
}

const auto ANY = [](const qv::ContentNode&) { return true; };
const auto NONE = [](const qv::ContentNode&) { return false; };

}  // namespace

TEST(MovedContent, IsLookedForAmongWhatMayBeOfItsObjectAlone) {
    constexpr std::size_t MANY = 2'000;
    const std::vector<char> objects(2 * MANY);
    std::vector<qv::ContentNode> lost, arounds;
    const qv::ContentNode added = Simple("canGroup", objects, 0);
    for (std::size_t i = 0; i < MANY; ++i) {
        lost.push_back(Simple("canGroup", objects, i));
        arounds.push_back(Simple("determinant", objects, i + MANY / 2));
    }
    std::vector<qv::ContentLoss> losses;
    std::vector<qv::ContentGain> gains;
    for (std::size_t i = 0; i < MANY; ++i) {
        losses.push_back({qv::ContentLoss::Kind::element, &lost[i], &arounds[i]});
        gains.push_back({&added, &arounds[i]});
    }
    std::size_t asked = 0;
    const qv::ContentModel model{[&](const qv::ContentNode&) {
                                     ++asked;
                                     return true;
                                 },
                                 NONE, nullptr};
    qv::DropMovedContent(losses, gains, model);
    EXPECT_EQ(losses.size(), MANY / 2);
    EXPECT_LT(asked, 2 * MANY);
}

TEST(MovedContent, IsAnObjectOfTheSameNameUnlessAllOfItIsThere) {
    const qv::ContentNode around;
    const qv::ContentNode whole = Object("a", 1), partly = Object("b", 2), gone = Object("c", 3), other = Object("a", 4);
    const qv::ContentNode wholeThere = Object("a", 1), partlyThere = Object("b", 5);
    std::vector<qv::ContentLoss> losses;
    for (const qv::ContentNode* const one : {&other, &whole, &partly, &gone})
        losses.push_back({qv::ContentLoss::Kind::element, one, &around});
    std::vector<qv::ContentGain> gains{{&wholeThere, &around}, {&partlyThere, &around}};
    const std::vector<qv::ContentMove> moves = qv::TakeMovedObjects(losses, gains, {ANY, NONE, nullptr});
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].loss.element, &partly);
    EXPECT_EQ(moves[0].written, &partlyThere);
    ASSERT_EQ(losses.size(), 2u);
    EXPECT_EQ(losses[0].element, &other);
    EXPECT_EQ(losses[1].element, &gone);
    EXPECT_TRUE(gains.empty());
}

TEST(MovedContent, IsComparedWhereASaveMayHaveAddedAllThatDiffers) {
    const qv::ContentNode around, object = Object("a", 1);
    qv::ContentNode written = Object("a", 1);
    written.digest = 2;
    std::vector<qv::ContentLoss> losses{{qv::ContentLoss::Kind::element, &object, &around}};
    std::vector<qv::ContentGain> gains{{&written, &around}};
    const std::vector<qv::ContentMove> moves = qv::TakeMovedObjects(losses, gains, {ANY, NONE, nullptr});
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].written, &written);
    EXPECT_TRUE(losses.empty());
}

TEST(MovedContent, IsNoneOfAnotherPlaceUnlessItIsAnObject) {
    const qv::ContentNode around;
    qv::ContentNode key = Object("", 1);
    key.filled = nullptr;
    const qv::ContentNode written = key;
    std::vector<qv::ContentLoss> losses{{qv::ContentLoss::Kind::element, &key, &around}};
    std::vector<qv::ContentGain> gains{{&written, &around}};
    qv::ContentNode elsewhere;
    elsewhere.range = {7, 8};
    key.range = {3, 4};
    gains[0].around = &elsewhere;
    EXPECT_TRUE(qv::TakeMovedObjects(losses, gains, {ANY, NONE, nullptr}).empty());
    EXPECT_EQ(losses.size(), 1u);
}
