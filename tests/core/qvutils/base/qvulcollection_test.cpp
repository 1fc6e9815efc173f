#include "core/qvutils/base/qvulcollection.h"

#include "core/qvutils/base/tklreferencecount.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Item : public TklReferenceCount {
  public:
    explicit Item(const char* id) : m_id(id) {}
    const QvULString& GetId() const { return m_id; }
    void SetId(const char* id) { m_id = id; }

  private:
    QvULString m_id;
};

using Collection = QvULCollection<Item, QvULIdExtract<Item>>;

/** Adds an item that goes at once when the collection refuses it. */
Item* Push(Collection& items, const char* id) {
    const QvSmartPtr<Item> item = new Item(id);
    items.push_back(item);
    return item;
}

std::string Ids(const Collection& items) {
    std::string ids;
    for (const QvSmartPtr<Item>& item : items) ids.append(item ? item->GetId().utf8() : "null").append(" ");
    return ids;
}

}  // namespace

TEST(QvULCollection, FindsByKey) {
    Collection items;
    EXPECT_TRUE(items.empty());
    EXPECT_EQ(items.Find("a"), nullptr);
    Item* const a = Push(items, "a");
    Item* const b = Push(items, "b");
    EXPECT_EQ(items.size(), 2U);
    EXPECT_EQ(items.Find("a"), a);
    EXPECT_EQ(items.Find("b"), b);
    EXPECT_EQ(items[1], b);
    EXPECT_EQ(items.Find("c"), nullptr);
    EXPECT_EQ(items.Find(""), nullptr);
}

TEST(QvULCollection, AssertsOnADoubledKeyWhileTheIndexLives) {
    Collection items;
    Push(items, "a");
    try {
        Push(items, "a");
        FAIL() << "a doubled key was taken";
    } catch (const TklAssertError& error) {
        EXPECT_EQ(error.text(), "TKL_ASSERT(m_namemap.find(m_g(pItem)) == m_namemap.end());");
        EXPECT_EQ(error.code(), 0);
        EXPECT_NE(std::string(error.what()).find("TKL_THROW"), std::string::npos);
    }
    EXPECT_EQ(Ids(items), "a ");
    Push(items, "b");
    EXPECT_EQ(Ids(items), "a b ");
}

TEST(QvULCollection, AnEmptyKeyOrNullEmptiesTheIndexSoThatDoublesPass) {
    for (const bool null : {false, true}) {
        Collection items;
        Item* const first = Push(items, "a");
        if (null)
            items.push_back(nullptr);
        else
            Push(items, "");
        Push(items, "a");
        Push(items, "b");
        EXPECT_EQ(items.size(), 4U);
        EXPECT_EQ(items.Find("a"), first) << "of equal keys the first wins";
        EXPECT_NE(items.Find("b"), nullptr);
        EXPECT_EQ(items.Find(""), nullptr);
    }
}

TEST(QvULCollection, AnUnnamedFirstItemLeavesTheIndexOutOfDate) {
    Collection items;
    Push(items, "");
    Push(items, "a");
    EXPECT_NO_THROW(Push(items, "a"));
    EXPECT_NE(items.Find("a"), nullptr);
    EXPECT_THROW(Push(items, "a"), TklAssertError) << "the look-up has built the index";
}

TEST(QvULCollection, DoesNotNoticeAKeyThatChanges) {
    Collection items;
    Item* const item = Push(items, "old");
    EXPECT_EQ(items.Find("old"), item);
    item->SetId("new");
    EXPECT_EQ(items.Find("old"), item);
    EXPECT_EQ(items.Find("new"), nullptr);
    items.ForgetIndex();
    EXPECT_EQ(items.Find("old"), nullptr);
    EXPECT_EQ(items.Find("new"), item);
}

TEST(QvULCollection, DeletesByKeyAndMovesLaterItemsDown) {
    Collection items;
    for (const char* const id : {"a", "b", "c", "d"}) Push(items, id);
    const QvSmartPtr<Item> b = items.Find("b");
    items.Delete("b");
    EXPECT_EQ(b->getReferenceCount(), 1);
    EXPECT_EQ(Ids(items), "a c d ");
    items.Delete("missing");
    items.Delete("");
    EXPECT_EQ(Ids(items), "a c d ");
    EXPECT_NE(items.Find("d"), nullptr);
    items.Delete("a");
    items.Delete("c");
    items.Delete("d");
    EXPECT_TRUE(items.empty());
    items.Delete("d");
    EXPECT_EQ(items.Find("a"), nullptr);
}

TEST(QvULCollection, ADeleteLeavesTheIndexEmpty) {
    Collection items;
    Push(items, "a");
    Push(items, "b");
    items.Delete("a");
    EXPECT_NO_THROW(Push(items, "b"));
    EXPECT_EQ(items.size(), 2U);
}

TEST(QvULCollection, ADeleteThatFindsNothingKeepsTheIndex) {
    Collection items;
    Push(items, "a");
    items.Delete("missing");
    EXPECT_THROW(Push(items, "a"), TklAssertError);
}

TEST(QvULCollection, LetsGoOfAllWhenCleared) {
    Collection items;
    const QvSmartPtr<Item> item = Push(items, "a");
    items.clear();
    EXPECT_EQ(item->getReferenceCount(), 1);
    EXPECT_TRUE(items.empty());
    EXPECT_EQ(items.Find("a"), nullptr);
    Push(items, "a");
    EXPECT_EQ(items.size(), 1U);
}
