#include "core/qvutils/persist/iohelper.h"

#include <gtest/gtest.h>

namespace {

class Thing : public IOObject {
  public:
    explicit Thing(IOObject* parentObject = nullptr, const char* key = "") : IOObject(parentObject, false) { id = key; }
    void constructFromIOParameter(const IOParameter&) override {}
    bool read(IOHelper&) override { return true; }
    I18NString GetVersionCol() const override { return columns ? "THING_VERSION_NO" : ""; }
    I18NString GetIdCol() const override { return columns ? "THING_ID" : ""; }
    I18NString GetParentVersionCol() const override { return columns ? "OWNER_VERSION_NO" : ""; }
    I18NString GetParentIdCol() const override { return columns ? "OWNER_ID" : ""; }
    int GetModelType() override { return 9; }
    void getPath(I18NString& out) const override { out = "thing"; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override {
        ++rows;
        return write_next(helper);
    }
    bool write_next(IOHelper&) override {
        ++walks;
        return true;
    }

    bool columns = true;
    int rows = 0, walks = 0;
};

TEST(IOObject, StartsEmptyAndUnstored) {
    QvSmartPtr<Thing> thing = new Thing;
    EXPECT_TRUE(thing->GetId().empty());
    EXPECT_EQ(thing->GetVersionNo(), 0);
    EXPECT_EQ(thing->displayOrder, 0);
    EXPECT_FALSE(thing->GetLastChangedDate().IsSet());
}

TEST(IOObject, PutsItsKeysUnderItsColumns) {
    QvSmartPtr<Thing> owner = new Thing(nullptr, "o"), thing = new Thing(owner.get(), "t");
    owner->SetVersionNo(3);
    IOHashParam* const row = new IOHashParam;
    QvSmartPtr<IOParameter> keep = row;
    IOHashParam history;
    thing->getAttributes(*row, history);
    EXPECT_EQ(
        row->toString(""),
        I18NString("{\n  THING_ID = \"t\"\n  THING_VERSION_NO = 0\n  OWNER_ID = \"o\"\n  OWNER_VERSION_NO = 3\n  LASTCHANGED = null\n}"));
}

TEST(IOObject, NamesTheKeyColumnsOfAClassWithoutNames) {
    QvSmartPtr<Thing> thing = new Thing(nullptr, "t");
    thing->columns = false;
    QvSmartPtr<IOHashParam> row = new IOHashParam, history = new IOHashParam;
    thing->getAttributes(*row, *history);
    for (const char* key : {"ID", "VERSION", "PARENT_ID", "PARENT_VERSION", "LASTCHANGED"}) EXPECT_TRUE(row->HasKey(key)) << key;
    EXPECT_EQ(row->Size(), 5);
    EXPECT_EQ(history->Size(), 0);
}

TEST(IOObject, AsksForRowsBelowItself) {
    QvSmartPtr<Thing> thing = new Thing(nullptr, "t");
    thing->SetVersionNo(2);
    QvSmartPtr<IOHashParam> params = new IOHashParam;
    const QvULString other = "elsewhere";
    thing->getInputParams(*params, "kind", nullptr);
    EXPECT_EQ(params->GetByName(IOParamTag::OBJECT)->GetQvStringValue(), "kind");
    const auto clauses = params->GetByName(IOParamTag::CLAUSES);
    EXPECT_EQ(clauses->GetByName(IOParamTag::XML_ELEMENT_PARENT_ID)->GetQvStringValue(), "t");
    EXPECT_EQ(clauses->GetByName(IOParamTag::XML_ELEMENT_PARENT_VERSION)->GetLongValue(), 2);
    thing->getInputParams(*params, "kind", &other);
    EXPECT_EQ(params->GetByName(IOParamTag::CLAUSES)->GetByName(IOParamTag::XML_ELEMENT_PARENT_ID)->GetQvStringValue(), "elsewhere");
}

TEST(IOHelper, OfTheBaseSendsEachObjectAndGivesItAnId) {
    IOHelper helper;
    QvSmartPtr<Thing> thing = new Thing;
    EXPECT_TRUE(thing->write(helper));
    EXPECT_EQ(thing->rows, 1);
    EXPECT_EQ(thing->walks, 1);
    EXPECT_EQ(thing->GetId().length(), 36);
    EXPECT_EQ(thing->GetVersionNo(), 1);
    const QvULString given = thing->GetId();
    EXPECT_TRUE(thing->write(helper));
    EXPECT_EQ(thing->GetId(), given);
    EXPECT_EQ(thing->rows, 2);
}

TEST(IOHelper, OnlyWalksBelowWhatNeedsNoRow) {
    class Knowing : public IOHelper {
        bool CompareStored(IOObject&) override { return false; }
    } helper;
    QvSmartPtr<Thing> thing = new Thing;
    EXPECT_TRUE(thing->write(helper));
    EXPECT_EQ(thing->rows, 0);
    EXPECT_EQ(thing->walks, 1);
}

TEST(IOHelper, OfTheBaseAnswersWithoutRows) {
    IOHelper helper;
    QvSmartPtr<IOHashParam> params = new IOHashParam;
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    rows->push_back(new IOLongParam(1));
    EXPECT_TRUE(helper.DoReadAction(IOAction::AT_ReadSMObject, *params, *rows));
    EXPECT_EQ(rows->Size(), 0);
    EXPECT_TRUE(helper.DoWriteAction(IOAction::AT_InsertObject, *params));
    EXPECT_TRUE(helper.EndObject());
    EXPECT_EQ(helper.GetObjectMapping("namespace").get(), nullptr);
    EXPECT_EQ(helper.doWriteLookUpRemainingInfo("id"), nullptr);
    EXPECT_FALSE(helper.GetFixingLostRemainingInfo());
    helper.SetFixingLostRemainingInfo(true);
    EXPECT_TRUE(helper.GetFixingLostRemainingInfo());
}

TEST(MapId2MiniObject, KnowsIdVersionAndParent) {
    MapId2MiniObject map;
    QvSmartPtr<Thing> owner = new Thing(nullptr, "o"), thing = new Thing(owner.get(), "t");
    thing->SetVersionNo(4);
    map.AddObject(thing.get());
    map.AddObject(nullptr);
    ASSERT_EQ(map.Size(), 1u);
    EXPECT_EQ(map.Find("t")->version, 4);
    EXPECT_EQ(map.Find("t")->parentId, "o");
    EXPECT_EQ(map.Find("o"), nullptr);
    map.Clear();
    EXPECT_EQ(map.Size(), 0u);
}

TEST(MapId2RemainingInfo, KeepsTheLastEntryOfAnId) {
    MapId2RemainingInfo map;
    map.AddObject("r", 1, 2, "v");
    map.AddObject("r", 3, 4, "w");
    ASSERT_NE(map.Find("r"), nullptr);
    EXPECT_EQ(map.Find("r")->version, 3);
    EXPECT_EQ(map.Find("r")->parentVersion, 4);
    EXPECT_EQ(map.Find("r")->value, "w");
    EXPECT_EQ(map.Size(), 1u);
}

}  // namespace
