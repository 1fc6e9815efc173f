#include "objects/catalogue/dbcolumn_002_000.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "objects/catalogue/dbforeignkey_002_000.h"
#include "objects/catalogue/dbindex_002_000.h"
#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/params/ioparams.h"

using namespace schema_002_000;

namespace {

using Column = QvSmartPtr<DBColumn>;

struct Events : SMLogSink {
    void Take(const QvLogEvent& event, const SMSourceContext*) override { taken.push_back(event); }
    std::vector<std::string> Messages() const {
        std::vector<std::string> messages;
        for (const QvLogEvent& event : taken) messages.emplace_back(event.message.utf8());
        return messages;
    }
    std::vector<QvLogEvent> taken;
    SMLogScope scope{*this};
};

Column Make(int dataType = 4, int size = 10, int precision = 5, int scale = 2, bool allowNulls = true) {
    return new DBColumn("c", static_cast<SqlColType>(dataType), size, precision, scale, allowNulls);
}

std::string Field(const DBColumn& column, const char* key) {
    return std::string(column.GetByName(key)->GetQvStringValue().utf8());
}

struct Kind {
    EDB_TYPE type;
    std::string fixedId;
};

/** The kinds as they were handed down; "-" stands for no id. */
std::vector<Kind> Kinds() {
    std::ifstream in(SMODEL_TEST_DATA "/vocabulary/database_kinds.txt");
    std::vector<Kind> kinds;
    int number = 0;
    for (std::string name, id; in >> number >> name >> id;) kinds.push_back({static_cast<EDB_TYPE>(number), id == "-" ? "" : id});
    return kinds;
}

}  // namespace

// ---- model

TEST(DBColumnModel, StartsNullableAndOtherwiseEmpty) {
    const Column column = new DBColumn;
    EXPECT_EQ(column->GetName(), "");
    EXPECT_EQ(column->getType(), EDB_TYPE::unknown);
    EXPECT_EQ(column->GetDataType(), SqlColType::unknown);
    EXPECT_EQ(column->GetSize(), 0);
    EXPECT_EQ(column->GetPrecision(), 0);
    EXPECT_EQ(column->GetScale(), 0);
    EXPECT_TRUE(column->GetAllowNulls());
    EXPECT_TRUE(column->GetId().empty());
    EXPECT_TRUE(column->GetWarehouseItemId().empty());
    EXPECT_TRUE(column->GetGroupId().empty());
    EXPECT_TRUE(column->GetFKeys().empty());
    EXPECT_FALSE(column->hasIndex());
}

TEST(DBColumnModel, TakesWhatItsConstructorsName) {
    const Column named = new DBColumn("only");
    EXPECT_EQ(named->GetName(), "only");
    EXPECT_TRUE(named->GetAllowNulls());
    const Column full = new DBColumn("all", SqlColType::decimal, 11, 12, 13, false);
    EXPECT_EQ(full->GetName(), "all");
    EXPECT_EQ(full->GetDataType(), SqlColType::decimal);
    EXPECT_EQ(full->GetSize(), 11);
    EXPECT_EQ(full->GetPrecision(), 12);
    EXPECT_EQ(full->GetScale(), 13);
    EXPECT_FALSE(full->GetAllowNulls());
    EXPECT_TRUE(full->GetId().empty());
}

TEST(DBColumnModel, KeepsEachField) {
    const Column column = new DBColumn;
    column->SetDataType(SqlColType::nchar);
    column->SetSize(-1);
    column->SetPrecision(2);
    column->SetScale(3);
    column->SetAllowNulls(false);
    column->SetId("id");
    column->SetWarehouseItemId("wh");
    column->SetGroupId("group");
    EXPECT_EQ(column->GetDataType(), SqlColType::nchar);
    EXPECT_EQ(column->GetSize(), -1);
    EXPECT_EQ(column->GetPrecision(), 2);
    EXPECT_EQ(column->GetScale(), 3);
    EXPECT_FALSE(column->GetAllowNulls());
    EXPECT_EQ(column->GetId(), "id");
    EXPECT_EQ(column->GetWarehouseItemId(), "wh");
    EXPECT_EQ(column->GetGroupId(), "group");
}

TEST(DBColumnModel, CopiesEveryFieldAndTheTwoMaps) {
    const QvSmartPtr<DBForeignKey> key = new DBForeignKey;
    key->SetId("k");
    const QvSmartPtr<DBIndex> index = new DBIndex;
    index->SetId("i");
    const Column column = new DBColumn("name", SqlColType::decimal, 1, 2, 3, false);
    column->SetDBName("db");
    column->SetSchema("schema");
    column->SetDescription("text");
    column->setType(EDB_TYPE::normal);
    column->SetId("id");
    column->SetWarehouseItemId("wh");
    column->SetGroupId("group");
    column->setInFKey(key);
    column->setInIndex(index);
    const Column copy = new DBColumn(*column);
    EXPECT_EQ(copy->getReferenceCount(), 1);
    for (const char* field : {"id", "wh_id", "name", "type", "dbtype", "size", "precision", "scale", "null", "dbName", "schema"})
        EXPECT_EQ(Field(*copy, field), Field(*column, field)) << field;
    EXPECT_EQ(copy->GetDescription(), "text");
    EXPECT_EQ(copy->GetGroupId(), "group");
    EXPECT_EQ(copy->GetFKeys(), column->GetFKeys());
    EXPECT_EQ(copy->GetIndexes(), column->GetIndexes());
    copy->unsetInIndex(index);
    EXPECT_TRUE(column->hasIndex());
}

TEST(DBColumnModel, IsOfObjectTypeFour) {
    EXPECT_EQ(Make()->getObjType(), 4);
}

TEST(DBColumnModel, PrintsItselfThenItsObjectPart) {
    const Column column = Make(6, 1234567);
    EXPECT_EQ(column->print(), "DBColumn::c, type=decimal, len=1234567, null=true\nDBColumn::DBObject.properties:\n");
    column->SetAllowNulls(false);
    EXPECT_EQ(column->print(), "DBColumn::c, type=decimal, len=1234567, null=false\nDBColumn::DBObject.properties:\n");
}

TEST(DBColumnModel, IsCalledThroughItsVirtualBase) {
    struct Renamed : DBColumn {
        Renamed() : DBObject("base") {}
        void setName(const I18NString& name) override { DBObject::setName(name + "!"); }
    };
    const QvSmartPtr<DBObject> object = new Renamed;
    object->setName("x");
    EXPECT_EQ(object->GetName(), "x!");
    EXPECT_EQ(object->print(), "DBColumn::x!, type=unknown, len=0, null=true\nDBColumn::DBObject.properties:\n");
    EXPECT_NE(dynamic_cast<DBColumn*>(object.get()), nullptr);
}

// ---- parameter

TEST(DBColumnParameter, GivesEachFieldByName) {
    const Column column = new DBColumn("name", SqlColType::varchar, 2147483647, -2, 3, false);
    column->SetId("id1");
    column->SetWarehouseItemId("wh1");
    column->setType(EDB_TYPE::level_no);
    column->SetDBName("db1");
    column->SetSchema("schema1");
    const std::map<std::string, std::string> expected = {
        {"id", "id1"},       {"wh_id", "wh1"}, {"name", "name"},  {"type", "level_no"}, {"dbtype", "varchar"}, {"size", "2147483647"},
        {"precision", "-2"}, {"scale", "3"},   {"null", "false"}, {"dbName", "db1"},    {"schema", "schema1"},
    };
    for (const auto& [key, value] : expected) EXPECT_EQ(Field(*column, key.c_str()), value) << key;
}

TEST(DBColumnParameter, GivesTheDefaultsAsTexts) {
    const Column column = new DBColumn;
    for (const char* key : {"id", "wh_id", "name", "dbName", "schema"}) EXPECT_EQ(Field(*column, key), "") << key;
    for (const char* key : {"size", "precision", "scale"}) EXPECT_EQ(Field(*column, key), "0") << key;
    EXPECT_EQ(Field(*column, "type"), "null");
    EXPECT_EQ(Field(*column, "dbtype"), "unknown");
    EXPECT_EQ(Field(*column, "null"), "true");
}

TEST(DBColumnParameter, GivesTheStoredWarehouseItemIdOnly) {
    const Column column = new DBColumn;
    column->setType(EDB_TYPE::surrogate_column);
    EXPECT_EQ(Field(*column, "wh_id"), "");
}

TEST(DBColumnParameter, GivesNullForAnyOtherName) {
    for (const char* key : {"", "ID", "dbname", "DBNAME", "Null", "group", "fkeys", "warehouse_id", "id "})
        EXPECT_EQ(Make()->GetByName(key).get(), nullptr) << key;
}

TEST(DBColumnParameter, GivesANewTextToItsCaller) {
    const Column column = Make();
    const QvSmartPtr<IOParameter> first = column->GetByName("name");
    EXPECT_EQ(first->getReferenceCount(), 1);
    EXPECT_EQ(first->GetKind(), IOParameter::kindString);
    EXPECT_FALSE(first->IsNull());
    EXPECT_NE(first.get(), column->GetByName("name").get());
}

TEST(DBColumnParameter, IsAskedThroughItsBase) {
    const QvSmartPtr<IOParameter> parameter = Make().get();
    EXPECT_EQ(parameter->GetByName("name")->GetQvStringValue(), "c");
    EXPECT_EQ(parameter->GetKind(), 2);
    EXPECT_EQ(Make()->GetSupportedCapabilities(), 2);
    EXPECT_EQ(parameter->GetKind() & IOParameter::kindHash, 0);
    EXPECT_EQ(parameter->toString("> "), "> null 'c'");
}

TEST(DBColumnParameter, RefusesWhatItDoesNotHold) {
    try {
        Make()->GetLongValue();
        FAIL();
    } catch (const IOParamException& refusal) {
        EXPECT_STREQ(refusal.what(), "A set of fields was asked for a number.");
    }
}

// ---- warehouse item ids

TEST(DBColumnWarehouseItem, HasTheFixedIdOfItsKind) {
    int fixed = 0;
    for (const Kind& kind : Kinds()) {
        const Column column = new DBColumn;
        column->setType(kind.type);
        EXPECT_EQ(column->GetWarehouseItemId(), kind.fixedId.c_str()) << kind.fixedId;
        EXPECT_FALSE(column->IsExternalWarehouseItemId());
        if (!kind.fixedId.empty()) ++fixed;
    }
    EXPECT_EQ(fixed, 51);
}

TEST(DBColumnWarehouseItem, PrefersTheStoredIdForEveryKind) {
    for (const Kind& kind : Kinds()) {
        const Column column = new DBColumn;
        column->setType(kind.type);
        column->SetWarehouseItemId("external");
        EXPECT_TRUE(column->IsExternalWarehouseItemId());
        EXPECT_EQ(column->GetWarehouseItemId(), "external");
        column->SetWarehouseItemId("");
        EXPECT_EQ(column->GetWarehouseItemId(), kind.fixedId.c_str());
    }
}

TEST(DBColumnWarehouseItem, IsEmptyForKindsWithoutAFixedId) {
    for (const int number : {-1, 0, 9, 62, 65, 66, 67, 100, 199, 237, 100000}) {
        const Column column = new DBColumn;
        column->setType(static_cast<EDB_TYPE>(number));
        EXPECT_TRUE(column->GetWarehouseItemId().empty()) << number;
    }
}

// ---- ids

TEST(DBColumnRegenerateIds, GivesANewIdAndTellsIt) {
    const Column column = new DBColumn;
    column->SetId("old");
    std::map<QvULString, QvULString> ids;
    const QvULString id = column->RegenerateIds(ids);
    EXPECT_EQ(id.length(), 36);
    EXPECT_EQ(column->GetId(), id);
    EXPECT_EQ(ids, (std::map<QvULString, QvULString>{{"old", id}}));
}

TEST(DBColumnRegenerateIds, KeepsAnEntryOfTheOldId) {
    const Column column = new DBColumn;
    column->SetId("old");
    std::map<QvULString, QvULString> ids = {{"old", "before"}};
    const QvULString id = column->RegenerateIds(ids);
    EXPECT_EQ(ids, (std::map<QvULString, QvULString>{{"old", "before"}}));
    EXPECT_EQ(column->GetId(), id);
}

TEST(DBColumnRegenerateIds, EntersAnEmptyIdToo) {
    std::map<QvULString, QvULString> ids;
    const QvULString id = Make()->RegenerateIds(ids);
    EXPECT_EQ(ids, (std::map<QvULString, QvULString>{{"", id}}));
}

TEST(DBColumnRegenerateIds, MapsTheStoredWarehouseItemId) {
    const Column column = new DBColumn;
    column->SetWarehouseItemId("item");
    std::map<QvULString, QvULString> ids = {{"item", "new item"}};
    column->RegenerateIds(ids);
    EXPECT_EQ(column->GetWarehouseItemId(), "new item");
}

TEST(DBColumnRegenerateIds, MapsTheFixedWarehouseItemId) {
    const Column column = new DBColumn;
    column->setType(EDB_TYPE::calendar_grain);
    std::map<QvULString, QvULString> ids = {{"2_C45CC074-D47D-4e96-9A45-E7E97A5B14", "mapped"}};
    column->RegenerateIds(ids);
    EXPECT_TRUE(column->IsExternalWarehouseItemId());
    EXPECT_EQ(column->GetWarehouseItemId(), "mapped");
}

TEST(DBColumnRegenerateIds, LeavesAnUnknownWarehouseItemId) {
    const Column column = new DBColumn;
    column->setType(EDB_TYPE::level_no);
    std::map<QvULString, QvULString> ids = {{"other", "x"}};
    column->RegenerateIds(ids);
    EXPECT_FALSE(column->IsExternalWarehouseItemId());
    column->SetWarehouseItemId("item");
    column->RegenerateIds(ids);
    EXPECT_EQ(column->GetWarehouseItemId(), "item");
}

// ---- keys and indexes

TEST(DBColumnKeys, KeepsOneEntryForAnId) {
    const QvSmartPtr<DBForeignKey> first = new DBForeignKey;
    const QvSmartPtr<DBForeignKey> second = new DBForeignKey;
    first->SetId("k");
    second->SetId("k");
    const Column column = Make();
    column->setInFKey(first);
    column->setInFKey(first);
    column->setInFKey(second);
    EXPECT_EQ(column->GetFKeys(), (DBColumn::ForeignKeys{{"k", first.get()}}));
    column->unsetInFKey(second);
    EXPECT_TRUE(column->GetFKeys().empty());
    column->unsetInFKey(second);
}

TEST(DBColumnKeys, IgnoresNull) {
    const Column column = Make();
    column->setInFKey(nullptr);
    column->setInIndex(nullptr);
    column->unsetInFKey(nullptr);
    column->unsetInIndex(nullptr);
    EXPECT_TRUE(column->GetFKeys().empty());
    EXPECT_FALSE(column->hasIndex());
}

TEST(DBColumnKeys, KnowsItsIndexes) {
    const QvSmartPtr<DBIndex> first = new DBIndex;
    const QvSmartPtr<DBIndex> second = new DBIndex;
    first->SetId("b");
    second->SetId("a");
    const Column column = Make();
    column->setInIndex(first);
    column->setInIndex(second);
    column->setInIndex(first);
    EXPECT_EQ(column->GetIndexes(), (DBColumn::Indexes{{"a", second.get()}, {"b", first.get()}}));
    column->unsetInIndex(first);
    EXPECT_TRUE(column->hasIndex());
    column->unsetInIndex(second);
    EXPECT_FALSE(column->hasIndex());
    EXPECT_TRUE(column->GetFKeys().empty());
}

TEST(DBColumnKeys, TakesAnEmptyIdAsAnyOther) {
    const QvSmartPtr<DBIndex> index = new DBIndex;
    const Column column = Make();
    column->setInIndex(index);
    EXPECT_TRUE(column->hasIndex());
    column->unsetInIndex(index);
    EXPECT_FALSE(column->hasIndex());
}

// ---- comparison

TEST(DBColumnEquality, AsksForTheSameName) {
    const Column other = Make();
    other->setName("C");
    EXPECT_FALSE(*Make() == *other);
    EXPECT_TRUE(*Make() != *other);
    EXPECT_TRUE(*Make() == *Make());
}

TEST(DBColumnEquality, AsksForTheSameNullability) {
    for (const int type : {4, 12, 6, 1}) EXPECT_FALSE(*Make(type, 10, 5, 2, true) == *Make(type, 10, 5, 2, false)) << type;
}

TEST(DBColumnEquality, IgnoresTheOtherTypeOfADateOrTime) {
    for (const int type : {12, 13, 14})
        for (const int other : {0, 6, 12, 13, 14, 25}) EXPECT_TRUE(*Make(type) == *Make(other, 1, 1, 1)) << type << ' ' << other;
}

TEST(DBColumnEquality, IsNotSymmetric) {
    EXPECT_TRUE(*Make(12) == *Make(6));
    EXPECT_FALSE(*Make(6) == *Make(12));
}

TEST(DBColumnEquality, LooksAtPrecisionAndScaleAsTheTypeHasIt) {
    for (int type = 0; type < 40; ++type) {
        const bool precision = type == 1 || type == 2 || type == 6 || type == 25 || type == 26;
        EXPECT_EQ(*Make(type) == *Make(type, 10, 6, 2), !precision) << type;
        EXPECT_EQ(*Make(type) == *Make(type, 10, 5, 3), type != 6) << type;
        EXPECT_TRUE(*Make(type) == *Make(type, 99)) << type;
        if (type < 12 || type > 14) {
            EXPECT_FALSE(*Make(type) == *Make(type + 1)) << type;
        }
    }
}

TEST(DBColumnEquality, IgnoresAllOtherFields) {
    const Column other = Make();
    other->setType(EDB_TYPE::normal);
    other->SetId("id");
    other->SetWarehouseItemId("wh");
    other->SetGroupId("group");
    other->SetSchema("schema");
    other->SetDBName("db");
    EXPECT_TRUE(*Make() == *other);
}

TEST(DBColumnValidate, SaysNothingOfEqualColumns) {
    Events events;
    EXPECT_TRUE(Make()->validate(Make()));
    EXPECT_TRUE(Make()->validate(Make(4, 10, 77, 2)));  // precision is not looked at
    EXPECT_TRUE(events.taken.empty());
}

TEST(DBColumnValidate, ReportsEachDifference) {
    const auto messagesOf = [](const Column& a, const Column& b) {
        Events events;
        EXPECT_FALSE(a->validate(b));
        return events.Messages();
    };
    using Messages = std::vector<std::string>;
    const Column renamed = Make();
    renamed->setName("d");
    EXPECT_EQ(messagesOf(Make(), renamed), Messages{"Column Name doesn't match"});
    EXPECT_EQ(messagesOf(Make(12), Make(13)), Messages{"Column data type doesn't match"});
    EXPECT_EQ(messagesOf(Make(), Make(4, 11)), Messages{"Column size doesn't match"});
    EXPECT_EQ(messagesOf(Make(), Make(4, 10, 5, 3)), Messages{"Column scale doesn't match"});
    EXPECT_EQ(messagesOf(Make(), Make(4, 10, 5, 2, false)), Messages{"Column allows nulls but comparison column doesn't"});
    EXPECT_EQ(messagesOf(Make(4, 10, 5, 2, false), Make()), Messages{"Column doesn't allow nulls but comparison column does"});
}

TEST(DBColumnValidate, ReportsAllDifferencesInOrder) {
    Events events;
    const Column other = Make(5, 11, 6, 3, false);
    other->setName("d");
    EXPECT_FALSE(Make()->validate(other));
    EXPECT_EQ(events.Messages(),
              (std::vector<std::string>{"Column Name doesn't match", "Column data type doesn't match", "Column size doesn't match",
                                        "Column scale doesn't match", "Column allows nulls but comparison column doesn't"}));
}

TEST(DBColumnValidate, ReportsNameAndScaleAsTwoEvents) {
    Events events;
    const Column other = Make(4, 10, 5, 3);
    other->setName("d");
    EXPECT_FALSE(Make()->validate(other));
    EXPECT_EQ(events.taken.size(), 2u);
}

TEST(DBColumnValidate, LogsInItsOwnWords) {
    Events events;
    EXPECT_FALSE(Make()->validate(Make(5)));
    ASSERT_EQ(events.taken.size(), 1u);
    const QvLogEvent& event = events.taken[0];
    EXPECT_EQ(event.level, 4);
    EXPECT_EQ(event.category, "code");
    EXPECT_EQ(event.product, "QvOne");
    EXPECT_EQ(event.module, "qvdbobjects");
    EXPECT_EQ(event.className, "DBColumn");
    EXPECT_EQ(event.method, "validate");
    EXPECT_EQ(event.action, 0);
    EXPECT_EQ(event.detail, "");
}

TEST(DBColumnValidate, RefusesNullWithoutAnEvent) {
    Events events;
    EXPECT_FALSE(Make()->validate(nullptr));
    EXPECT_TRUE(events.taken.empty());
}
