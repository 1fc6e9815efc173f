#include "core/qvutils/base/qvsmartptr.h"

#include "core/qvutils/base/tklreferencecount.h"
#include "core/qvutils/text/qvulstring.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

class Counted : public TklReferenceCount {
  public:
    explicit Counted(int& deleted) : m_deleted(deleted) {}
    ~Counted() override { ++m_deleted; }
    int number = 7;

  private:
    int& m_deleted;
};

}  // namespace

TEST(QvSmartPtr, IsOnePointerAndNullAtFirst) {
    const QvSmartPtr<Counted> pointer;
    EXPECT_EQ(sizeof pointer, sizeof(void*));
    EXPECT_EQ(pointer, nullptr);
    EXPECT_FALSE(pointer);
    const QvSmartPtr<Counted> null(nullptr);
    EXPECT_EQ(null.get(), nullptr);
}

TEST(QvSmartPtr, CountsWhatItPointsTo) {
    int deleted = 0;
    {
        const QvSmartPtr<Counted> first = new Counted(deleted);
        EXPECT_EQ(first->getReferenceCount(), 1);
        {
            const QvSmartPtr<Counted> second(first);
            EXPECT_EQ(first->getReferenceCount(), 2);
            EXPECT_EQ(second, first);
            EXPECT_EQ((*second).number, 7);
        }
        EXPECT_EQ(first->getReferenceCount(), 1);
    }
    EXPECT_EQ(deleted, 1);
}

TEST(QvSmartPtr, AssignsFromPointersOfEitherKind) {
    int deleted = 0;
    QvSmartPtr<Counted> a = new Counted(deleted);
    QvSmartPtr<Counted> b;
    b = a;
    EXPECT_EQ(a->getReferenceCount(), 2);
    a = new Counted(deleted);
    EXPECT_EQ(deleted, 0);
    b = nullptr;
    EXPECT_EQ(deleted, 1);
    a = nullptr;
    EXPECT_EQ(deleted, 2);
}

TEST(QvSmartPtr, SurvivesAssignmentOfItsOwnObject) {
    int deleted = 0;
    QvSmartPtr<Counted> pointer = new Counted(deleted);
    pointer = pointer.get();
    QvSmartPtr<Counted>& alias = pointer;
    pointer = alias;
    pointer = std::move(alias);
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(pointer->getReferenceCount(), 1);
}

TEST(QvSmartPtr, MovesWithoutCounting) {
    int deleted = 0;
    QvSmartPtr<Counted> a = new Counted(deleted);
    QvSmartPtr<Counted> b(std::move(a));
    EXPECT_EQ(a, nullptr);
    EXPECT_EQ(b->getReferenceCount(), 1);
    QvSmartPtr<Counted> c = new Counted(deleted);
    c = std::move(b);
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(c->getReferenceCount(), 1);
}

TEST(QvSmartPtr, HelpersOfTheCountTakeNull) {
    int deleted = 0;
    QvSmartPtr<Counted>::ar(nullptr);
    QvSmartPtr<Counted>::rr(nullptr);
    auto* const object = new Counted(deleted);
    QvSmartPtr<Counted>::ar(object);
    EXPECT_EQ(object->getReferenceCount(), 1);
    QvSmartPtr<Counted>::rr(object);
    EXPECT_EQ(deleted, 1);
}

TEST(QvSmartMap, IsOrderedByKeyAndHoldsItsObjects) {
    int deleted = 0;
    {
        QvSmartMap<QvULString, Counted> map;
        map["b"] = new Counted(deleted);
        map["a"] = new Counted(deleted);
        map["b"] = new Counted(deleted);
        EXPECT_EQ(deleted, 1);
        EXPECT_EQ(map.begin()->first, "a");
    }
    EXPECT_EQ(deleted, 3);
}
