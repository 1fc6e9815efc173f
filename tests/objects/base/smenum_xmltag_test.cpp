#include "objects/base/smenum_xmltag_002_000.h"

#include <gtest/gtest.h>

using namespace schema_002_000;

namespace {

struct Tag {
    SMEnum_xmltag::Enum number;
    const char* text;
    I18NString SMEnum_xmltag::*member;
};

/** The places among the tag members in their order; an unused one has no text. */
constexpr Tag PLACES[] = {
#define SM_TAG(NUMBER, IDENTIFIER, TEXT) {SMEnum_xmltag::Enum::IDENTIFIER, TEXT, &SMEnum_xmltag::IDENTIFIER},
#define SM_TAG_UNUSED(IDENTIFIER) {static_cast<SMEnum_xmltag::Enum>(-1), nullptr, &SMEnum_xmltag::IDENTIFIER},
#include "objects/base/smenum_xmltag_list.inc"
};

}  // namespace

TEST(SMEnumXmltag, GivesEachTagTheTextOfItsNumber) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    for (const Tag& place : PLACES) {
        if (!place.text) continue;
        EXPECT_EQ(tags->*place.member, place.text);
        EXPECT_TRUE(tags->_enum2string(place.number).shared().same((tags->*place.member).shared())) << place.text;
    }
}

TEST(SMEnumXmltag, KeepsItsTextsInTheOrderOfTheNumbers) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    const I18NString* next = &tags->zebid;
    for (const Tag& place : PLACES) EXPECT_EQ(&(tags->*place.member), next++) << (place.text ? place.text : "an unused place");
    EXPECT_EQ(next - &tags->zebid, 194 + 3);
}

TEST(SMEnumXmltag, LeavesThreePlacesEmptyBeforeFilename) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    EXPECT_EQ(&tags->externalOrdinal + 4, &tags->filename);
    for (int i = 1; i <= 3; ++i) EXPECT_TRUE((&tags->externalOrdinal)[i].empty());
    EXPECT_EQ(SMEnum_xmltag::Enum::externalOrdinal + 1, static_cast<int>(SMEnum_xmltag::Enum::filename));
}

TEST(SMEnumXmltag, TellsTagsThatDifferOnlyInCase) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    EXPECT_EQ(tags->_string2enum("dataType"), 30);
    EXPECT_EQ(tags->_string2enum("datatype"), 31);
}

TEST(SMEnumXmltag, NumbersTheTagsThatAreOutOfOrder) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    EXPECT_EQ(tags->_string2enum("mode"), 102);
    EXPECT_EQ(tags->_string2enum("modelQuery"), 103);
    EXPECT_EQ(tags->_string2enum("rootMember"), 155);
    EXPECT_EQ(tags->_string2enum("rootMUN"), 156);
    EXPECT_EQ(tags->_string2enum("externalizeMethod"), 49);
    EXPECT_EQ(tags->_string2enum("externalizeAutoSummary"), 50);
    EXPECT_EQ(tags->_string2enum("xmlns:xsi"), 192);
    EXPECT_EQ(tags->_string2enum("xsi:schemaLocation"), 193);
}
