#include "core/qvutils/base/tklreferencecount.h"

#include <gtest/gtest.h>

namespace {

class Counted : public TklReferenceCount {
  public:
    explicit Counted(int& deleted) : m_deleted(deleted) {}
    Counted(const Counted&) = default;
    ~Counted() override { ++m_deleted; }

  private:
    int& m_deleted;
};

class Kept : public TklReferenceCount {
  public:
    void cleanup() override { ++cleanups; }
    int cleanups = 0;
};

}  // namespace

TEST(TklReferenceCount, StartsAtZeroAndGoesAtTheLastRemoval) {
    int deleted = 0;
    auto* const object = new Counted(deleted);
    EXPECT_EQ(object->getReferenceCount(), 0);
    object->addReference();
    object->addReference();
    EXPECT_EQ(object->getReferenceCount(), 2);
    object->removeReference();
    EXPECT_EQ(deleted, 0);
    object->removeReference();
    EXPECT_EQ(deleted, 1);
}

TEST(TklReferenceCount, CleanupDecidesWhatTheEndIs) {
    Kept kept;
    kept.addReference();
    kept.removeReference();
    EXPECT_EQ(kept.cleanups, 1);
    EXPECT_EQ(kept.getReferenceCount(), 0);
}

TEST(TklReferenceCount, ACopyStartsAnew) {
    int deleted = 0;
    Counted object(deleted);
    object.addReference();
    const Counted copy(object);
    EXPECT_EQ(copy.getReferenceCount(), 0);
    Kept a, b;
    a.addReference();
    b = a;
    EXPECT_EQ(b.getReferenceCount(), 0);
    a = b;
    EXPECT_EQ(a.getReferenceCount(), 1);
}
