#include "objects/catalogue/dbobject_002_000.h"

#include <gtest/gtest.h>

#include <climits>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "core/qvutils/params/ioparams.h"

using namespace schema_002_000;

namespace {

/** The kinds as they were handed down, number to name. */
std::map<int, std::string> HandedDown() {
    std::ifstream in(SMODEL_TEST_DATA "/vocabulary/database_kinds.txt");
    std::map<int, std::string> kinds;
    int number = 0;
    for (std::string name, id; in >> number >> name >> id;) kinds[number] = name;
    return kinds;
}

I18NString NameOf(int number) {
    return DBObject::DT2String(static_cast<EDB_TYPE>(number));
}

int NumberOf(const char* name) {
    return static_cast<int>(DBObject::String2DT(name));
}

}  // namespace

TEST(DBObjectKinds, AreThoseHandedDown) {
    std::map<int, std::string> built;
#define SM_DB_KIND(NUMBER, NAME, FIXED_ID) built[static_cast<int>(EDB_TYPE::NAME)] = #NAME;
#include "objects/catalogue/edbtype_list.inc"
    EXPECT_EQ(built, HandedDown());
    EXPECT_EQ(built.size(), 80u);
}

TEST(DBObjectKinds, ConvertBothWays) {
    for (const auto& [number, name] : HandedDown()) {
        EXPECT_EQ(NameOf(number), name.c_str()) << number;
        EXPECT_EQ(NumberOf(name.c_str()), number) << name;
    }
}

TEST(DBObjectKinds, WriteEveryOtherNumberAsNull) {
    const auto kinds = HandedDown();
    for (int number = -300; number < 600; ++number)
        if (!kinds.contains(number)) {
            EXPECT_EQ(NameOf(number), "null") << number;
        }
    for (const int number : {0, 9, 65, 109, 117, 118, 237, INT_MIN, INT_MAX}) EXPECT_EQ(NameOf(number), "null") << number;
}

TEST(DBObjectKinds, TakeNoOtherText) {
    for (const char* text : {"", "null", "unknown", "hierarchy", "hierarchy_view", "Normal", "normal ", " normal", "norma", "normall",
                             "fact_", "zzz", "größe"})
        EXPECT_EQ(NumberOf(text), 0) << text;
    EXPECT_EQ(DBObject::String2DT(I18NString(std::string_view("normal\0", 7))), EDB_TYPE::unknown);
}

TEST(DBObjectKinds, NameHierarchiesBesideTheTable) {
    EXPECT_EQ(DBObject::HIERARCHY, "hierarchy");
    EXPECT_EQ(DBObject::HIERARCHY_VIEW, "hierarchy_view");
}

TEST(DBObjectKinds, GiveLastingTexts) {
    for (const auto& [number, name] : HandedDown())
        EXPECT_EQ(&DBObject::DT2String(static_cast<EDB_TYPE>(number)), &DBObject::DT2String(static_cast<EDB_TYPE>(number)));
}

TEST(DBObjectModel, StartsEmpty) {
    const QvSmartPtr<DBObject> object = new DBObject;
    EXPECT_EQ(object->GetName(), "");
    EXPECT_EQ(object->GetDBName(), "");
    EXPECT_EQ(object->GetSchema(), "");
    EXPECT_EQ(object->GetDescription(), "");
    EXPECT_EQ(object->getType(), EDB_TYPE::unknown);
}

TEST(DBObjectModel, KeepsEachField) {
    const QvSmartPtr<DBObject> object = new DBObject("first");
    EXPECT_EQ(object->GetName(), "first");
    object->setName("n");
    object->SetDBName("d");
    object->SetSchema("s");
    object->SetDescription("t");
    object->setType(EDB_TYPE::fact);
    EXPECT_EQ(object->GetName() + object->GetDBName() + object->GetSchema() + object->GetDescription(), "ndst");
    EXPECT_EQ(object->getType(), EDB_TYPE::fact);
}

TEST(DBObjectModel, PrintsNothing) {
    const QvSmartPtr<DBObject> object = new DBObject("orders");
    EXPECT_EQ(object->print(), "");
}

TEST(DBObjectParameter, ShowsKindAndNameInALog) {
    const QvSmartPtr<DBObject> object = new DBObject("orders");
    EXPECT_EQ(object->toString("  "), "  null 'orders'");
    object->setType(EDB_TYPE::fact);
    EXPECT_EQ(object->toString(""), "fact 'orders'");
}

TEST(DBObjectParameter, TravelsInARow) {
    const QvSmartPtr<IOHashParam> row = new IOHashParam;
    row->insertOrReplace("TABLE", new DBObject("orders"));
    EXPECT_EQ(dynamic_cast<DBObject&>(*row->GetByName("table")).GetName(), "orders");
}

TEST(DBObjectParameter, RefusesWhatItDoesNotHold) {
    const QvSmartPtr<DBObject> object = new DBObject("orders");
    EXPECT_EQ(object->GetKind(), IOParameter::kindNone);
    EXPECT_THROW(object->GetQvStringValue(), IOParamException);
    EXPECT_THROW(object->GetByName("name"), IOParamException);
    EXPECT_THROW(object->Size(), IOParamException);
}
