#include "objects/base/smdisplaylist_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;

namespace {

QvSmartPtr<PlainObject> Numbered(const char* id, int number) {
    QvSmartPtr<PlainObject> object = new PlainObject(nullptr);
    object->SetId(id);
    object->displayOrder = number;
    return object;
}

}  // namespace

TEST(DisplayList, SortsByNumberAndKeepsEqualOnesInOrder) {
    const auto a = Numbered("a", 2), b = Numbered("b", 0), c = Numbered("c", 2), d = Numbered("d", -1);
    SMDisplayList list;
    for (const auto& object : {a, b, c, d}) list.Append(object);
    list.Sort();
    EXPECT_THAT(list.Items(), ElementsAre(d.get(), b.get(), a.get(), c.get()));
}

TEST(DisplayList, SortsAroundGaps) {
    const auto a = Numbered("a", 5), b = Numbered("b", 3);
    SMDisplayList list;
    list.Items() = {a, nullptr, b};
    list.Sort();
    EXPECT_THAT(list.Items(), ElementsAre(b.get(), a.get(), nullptr));
    list.Items() = {nullptr, nullptr};
    list.Sort();
    EXPECT_EQ(list.Items().size(), 2u);
}

TEST(DisplayList, RemovesTheFirstOfAnIdOrAPointer) {
    const auto a = Numbered("x", 1), b = Numbered("x", 2);
    SMDisplayList list;
    list.Append(a);
    list.Append(b);
    EXPECT_TRUE(list.RemovePointer(b));
    EXPECT_FALSE(list.RemovePointer(b));
    EXPECT_TRUE(list.RemoveById("x"));
    EXPECT_FALSE(list.RemoveById("x"));
    EXPECT_TRUE(list.Items().empty());
}

TEST(DisplayList, KeepsADetachedObjectAliveWhileItNamesIt) {
    auto object = Numbered("a", 1);
    PlainObject* const raw = object;
    SMDisplayList list;
    list.Append(raw);
    list.Detach(object.get());
    object = nullptr;
    EXPECT_EQ(raw->getReferenceCount(), 1);
    const QvSmartPtr<PlainObject> witness = raw;
    EXPECT_TRUE(list.RemovePointer(raw));
    EXPECT_EQ(witness->getReferenceCount(), 1) << "the list has let it go";
}

TEST(DisplayList, DoesNotKeepADetachedObjectThatItDoesNotName) {
    const auto object = Numbered("a", 1);
    SMDisplayList list;
    list.Detach(object.get());
    EXPECT_EQ(object->getReferenceCount(), 1);
}
