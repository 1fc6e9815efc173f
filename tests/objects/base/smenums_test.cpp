#include "objects/base/smenum_xmltag_002_000.h"
#include "objects/base/smenums_002_000.h"

#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <string>

using namespace schema_002_000;

namespace {

using Table = std::map<int, std::string>;

/** One enumeration, whatever its class. */
struct Face {
    Table enumerators;
    const I18NString* empty;
    std::function<int(const I18NString&)> numberOf;
    std::function<const I18NString&(int)> textOf;
    bool oneInstance;
};

template <class Class>
Face FaceOf(Table enumerators) {
    Class* instance = Class::GetInstance();
    return {std::move(enumerators), &Class::SMENUM_STRING_EMPTY,
            [instance](const I18NString& text) { return instance->_string2enum(text); },
            [instance](int number) -> const I18NString& { return instance->_enum2string(static_cast<typename Class::Enum>(number)); },
            instance == Class::GetInstance()};
}

const std::map<std::string, Face>& Faces() {
    // clang-format off
    static const std::map<std::string, Face> faces = {
#define SM_ENUM_BEGIN(CLASS) {#CLASS, FaceOf<CLASS>({
#define SM_ENUM_VALUE(NUMBER, IDENTIFIER, TEXT) {NUMBER, TEXT},
#define SM_ENUM_END(CLASS) })},
#include "objects/base/smenums_list.inc"
        {"SMEnum_xmltag", FaceOf<SMEnum_xmltag>({
#define SM_TAG(NUMBER, IDENTIFIER, TEXT) {SMEnum_xmltag::Enum::IDENTIFIER, TEXT},
#include "objects/base/smenum_xmltag_list.inc"
        })}};
    // clang-format on
    return faces;
}

/** The tables as they were handed down: a file per class, a line "number text" per value. */
std::map<std::string, Table> HandedDown() {
    std::map<std::string, Table> all;
    for (const auto& file : std::filesystem::directory_iterator(SMODEL_TEST_DATA "/vocabulary")) {
        if (!file.path().stem().string().starts_with("SMEnum_")) continue;
        std::ifstream in(file.path());
        Table& table = all[file.path().stem().string()];
        int number = 0;
        for (std::string text; in >> number >> text;) table[number] = text;
    }
    return all;
}

}  // namespace

TEST(SMEnumTables, AreThoseHandedDown) {
    std::map<std::string, Table> built;
    for (const auto& [name, face] : Faces()) built[name] = face.enumerators;
    EXPECT_EQ(built, HandedDown());
    EXPECT_EQ(built.size(), 23u);
    EXPECT_EQ(built["SMEnum_xmltag"].size(), 194u);
    EXPECT_EQ(built["SMEnum_datatype"].size(), 30u);
}

TEST(SMEnumTables, ConvertEveryValueBothWays) {
    for (const auto& [name, table] : HandedDown()) {
        const Face& face = Faces().at(name);
        for (const auto& [number, text] : table) {
            EXPECT_EQ(face.numberOf(I18NString(text)), number) << name << ' ' << text;
            EXPECT_EQ(face.textOf(number), text.c_str()) << name << ' ' << number;
            EXPECT_EQ(&face.textOf(number), &face.textOf(number)) << name << ' ' << number;
        }
    }
}

TEST(SMEnumTables, HaveNoTwoTextsOfOneHash) {
    for (const auto& [name, table] : HandedDown()) {
        std::set<int> hashes;
        for (const auto& [number, text] : table)
            EXPECT_TRUE(hashes.insert(SMEnum::HashSMXMLString(I18NString(text))).second) << name << ' ' << text;
    }
}

TEST(SMEnumTables, WriteUnknownNumbersAsTheirOwnEmptyText) {
    std::set<const I18NString*> empties;
    for (const auto& [name, face] : Faces()) {
        for (const int number : {-1, static_cast<int>(face.enumerators.rbegin()->first) + 1, 100000, INT_MIN, INT_MAX})
            EXPECT_EQ(&face.textOf(number), face.empty) << name << ' ' << number;
        EXPECT_TRUE(face.empty->empty());
        empties.insert(face.empty);
    }
    EXPECT_EQ(empties.size(), Faces().size());
}

TEST(SMEnumTables, GiveMinusOneForAForeignText) {
    for (const auto& [name, face] : Faces())
        for (const char* text :
             {"", "no such word", "Name", "größe", "no such word that is longer than any word of a vocabulary could ever come to be"})
            EXPECT_EQ(face.numberOf(text), -1) << name << ' ' << text;
}

TEST(SMEnumTables, TakeAForeignTextByItsHash) {
    EXPECT_EQ(SMEnum_datatype::GetInstance()->_string2enum("kb"), SMEnum_datatype::float32);
    EXPECT_EQ(SMEnum_sort::GetInstance()->_string2enum("gge"), SMEnum_sort::ascending);
    EXPECT_EQ(SMEnum_externalizeMethod::GetInstance()->_string2enum("ig"), SMEnum_externalizeMethod::default_);
    EXPECT_EQ(SMEnum_xmltag::GetInstance()->_string2enum("pz"), SMEnum_xmltag::Enum::name);
    EXPECT_EQ(SMEnum_xmltag::GetInstance()->_string2enum("qvref"), SMEnum_xmltag::Enum::role);
}

TEST(SMEnumTables, HaveOneInstanceEach) {
    for (const auto& [name, face] : Faces()) EXPECT_TRUE(face.oneInstance) << name;
}

TEST(SMEnumTables, HoldMinusOneAsAValue) {
    const SMEnum_cardinality::Enum unknown = SMEnum_cardinality::GetInstance()->_string2enum("several");
    EXPECT_EQ(static_cast<int>(unknown), -1);
    EXPECT_EQ(SMEnum_cardinality::GetInstance()->_enum2string(unknown), "");
}

TEST(SMEnumDatatype, HasNoNumberEleven) {
    const SMEnum_datatype* types = SMEnum_datatype::GetInstance();
    EXPECT_EQ(&types->_enum2string(static_cast<SMEnum_datatype::Enum>(11)), &SMEnum_datatype::SMENUM_STRING_EMPTY);
    EXPECT_EQ(types->_enum2string(SMEnum_datatype::date), "date");
    EXPECT_EQ(static_cast<int>(SMEnum_datatype::date), 12);
}

TEST(SMEnumSort, KeepsItsOwnSpelling) {
    EXPECT_EQ(SMEnum_sort::GetInstance()->_string2enum("desending"), 1);
    EXPECT_EQ(SMEnum_sort::GetInstance()->_string2enum("descending"), -1);
    EXPECT_EQ(SMEnum_sortedHierarchy::GetInstance()->_string2enum("descending"), 1);
    EXPECT_EQ(SMEnum_sortedHierarchy::GetInstance()->_string2enum("desending"), -1);
}
