#include "objects/base/allsmobjects_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

/** Objects without a project, so that a registry of the test's own can list them. */
std::vector<std::unique_ptr<PlainObject>> Objects(int count) {
    std::vector<std::unique_ptr<PlainObject>> objects;
    for (int i = 0; i < count; ++i) objects.push_back(std::make_unique<PlainObject>(nullptr));
    return objects;
}

}  // namespace

TEST(Registry, ListsObjectsInTheOrderOfTheirComing) {
    AllSMObjects registry;
    const auto objects = Objects(3);
    for (const auto& object : objects) registry.Add(object.get());
    EXPECT_THAT(registry.GetObjects(), testing::ElementsAre(objects[0].get(), objects[1].get(), objects[2].get()));
    EXPECT_EQ(registry.GetCount(), 3);
}

TEST(Registry, ReservesFiveThousandSlotsAtFirst) {
    AllSMObjects registry;
    const auto objects = Objects(1);
    registry.Add(objects[0].get());
    EXPECT_GE(registry.GetObjects().capacity(), 5000u);
}

TEST(Registry, PutsAnObjectBackIntoTheSlotItRemembers) {
    AllSMObjects registry;
    const auto objects = Objects(2);
    for (const auto& object : objects) registry.Add(object.get());
    registry.Add(objects[0].get());
    EXPECT_THAT(registry.GetObjects(), testing::ElementsAre(objects[0].get(), objects[1].get()));
}

TEST(Registry, LosesNoHoleWithTheLastObject) {
    AllSMObjects registry;
    const auto objects = Objects(3);
    for (const auto& object : objects) registry.Add(object.get());
    registry.Remove(objects[1].get());
    EXPECT_EQ(registry.GetHoles(), 1);
    registry.Remove(objects[2].get());
    EXPECT_EQ(registry.GetHoles(), 1);
    EXPECT_EQ(registry.GetCount(), 2) << "the hole that now stands at the end stays";
    EXPECT_THAT(registry.GetObjects(), testing::ElementsAre(objects[0].get(), nullptr));
}

TEST(Registry, RemovesAnObjectOnce) {
    AllSMObjects registry;
    const auto objects = Objects(3);
    for (const auto& object : objects) registry.Add(object.get());
    registry.Remove(objects[0].get());
    registry.Remove(objects[0].get());
    EXPECT_EQ(registry.GetHoles(), 1);
}

TEST(Registry, ClosesItsHolesAtTheFiveThousandAndFirst) {
    AllSMObjects registry;
    const auto objects = Objects(5003);
    for (const auto& object : objects) registry.Add(object.get());
    for (int i = 0; i < 5000; ++i) registry.Remove(objects[static_cast<std::size_t>(i)].get());
    EXPECT_EQ(registry.GetHoles(), 5000);
    EXPECT_EQ(registry.GetCount(), 5003);
    registry.Remove(objects[5001].get());
    EXPECT_EQ(registry.GetHoles(), 0);
    EXPECT_THAT(registry.GetObjects(), testing::ElementsAre(objects[5000].get(), objects[5002].get()));
    registry.Remove(objects[5002].get());
    EXPECT_THAT(registry.GetObjects(), testing::ElementsAre(objects[5000].get())) << "objects have learnt their new slots";
}

TEST(Registry, ForgetsAllWithoutTouchingThem) {
    AllSMObjects registry;
    const auto objects = Objects(2);
    for (const auto& object : objects) registry.Add(object.get());
    registry.RemoveAll(true);
    EXPECT_EQ(registry.GetCount(), 0);
    EXPECT_TRUE(registry.GetObjects().empty());
    registry.Remove(objects[0].get());
    EXPECT_EQ(registry.GetHoles(), 0);
    registry.Add(objects[1].get());
    EXPECT_THAT(registry.GetObjects(), testing::ElementsAre(objects[1].get())) << "a stale slot is no slot";
}

TEST(Registry, DoesNotListItsProject) {
    const ProjectPtr project = NewProject();
    EXPECT_EQ(project->GetAllObjects().GetCount(), 0);
    const QvSmartPtr<PlainObject> object = new PlainObject(project);
    EXPECT_THAT(project->GetAllObjects().GetObjects(), testing::ElementsAre(object.get()));
}

TEST(Registry, FollowsAnObjectToAnotherProject) {
    const ProjectPtr from = NewProject(), to = NewProject();
    const QvSmartPtr<PlainObject> first = new PlainObject(to), object = new PlainObject(from);
    object->SetSMProject(to);
    EXPECT_EQ(object->GetSMProject(), to.get());
    EXPECT_EQ(from->GetAllObjects().GetCount(), 0);
    EXPECT_THAT(to->GetAllObjects().GetObjects(), testing::ElementsAre(first.get(), object.get()));
    object->SetSMProject(to);
    EXPECT_EQ(to->GetAllObjects().GetCount(), 2);
    object->SetSMProject(nullptr);
    EXPECT_EQ(to->GetAllObjects().GetCount(), 1);
}

TEST(Registry, KeepsItsListWhenAskedTo) {
    AllSMObjects registry;
    const auto objects = Objects(2);
    for (const auto& object : objects) registry.Add(object.get());
    registry.RemoveAll(false);
    EXPECT_EQ(registry.GetCount(), 0);
    EXPECT_EQ(registry.GetObjects().size(), 2u);
}

TEST(Registry, CostsAConstantToLeave) {
    const ProjectPtr project = NewProject();
    std::vector<QvSmartPtr<PlainObject>> objects;
    for (int i = 0; i < 20000; ++i) objects.emplace_back(new PlainObject(project));
    while (!objects.empty()) objects.pop_back();
    EXPECT_EQ(project->GetAllObjects().GetCount(), 0);
    EXPECT_EQ(project->GetAllObjects().GetHoles(), 0);
}
