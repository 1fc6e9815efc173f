#include "core/qvutils/base/tkldbtypes.h"

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <set>
#include <string>

namespace {

const I18NString& NameOf(int number) {
    return TklDBTypes::get()->getName(static_cast<SqlColType>(number));
}

const std::map<int, std::string> NAMES = {
    {0, "unknown"},  {1, "char"},   {2, "varchar"}, {3, "smallint"},   {4, "integer"},   {5, "bigint"}, {6, "decimal"},    {7, "float"},
    {8, "real"},     {9, "double"}, {10, "binary"}, {11, "varbinary"}, {12, "date"},     {13, "time"},  {14, "timestamp"}, {15, "interval"},
    {16, "boolean"}, {17, "clob"},  {18, "blob"},   {25, "nchar"},     {26, "nvarchar"}, {27, "nclob"},
};

}  // namespace

TEST(TklDBTypes, NamesEveryType) {
    for (const auto& [number, name] : NAMES) EXPECT_EQ(NameOf(number), name.c_str()) << number;
}

TEST(TklDBTypes, GivesEachTypeANameOfItsOwn) {
    std::set<I18NString> seen;
    for (const auto& [number, name] : NAMES) EXPECT_TRUE(seen.insert(NameOf(number)).second) << name;
}

TEST(TklDBTypes, CallsAnyOtherNumberUnknown) {
    for (int number = -40; number < 400; ++number)
        if (!NAMES.contains(number)) {
            EXPECT_EQ(NameOf(number), "unknown") << number;
        }
    for (const int number : {INT_MIN, INT_MAX}) EXPECT_EQ(NameOf(number), "unknown") << number;
}

TEST(TklDBTypes, IsOneInstanceWithLastingTexts) {
    EXPECT_EQ(TklDBTypes::get(), TklDBTypes::get());
    EXPECT_EQ(&NameOf(6), &NameOf(6));
}
