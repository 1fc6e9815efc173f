#include "objects/base/smenum_xmltag_002_000.h"

#include <gtest/gtest.h>

using namespace schema_002_000;

TEST(SMEnumXmltag, GivesEachTagTheTextOfItsNumber) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
#define SM_TAG(NUMBER, IDENTIFIER, TEXT)                                  \
    EXPECT_EQ(tags->IDENTIFIER, TEXT);                                    \
    EXPECT_EQ(tags->_enum2string(SMEnum_xmltag::Enum::IDENTIFIER), TEXT); \
    EXPECT_TRUE(tags->_enum2string(SMEnum_xmltag::Enum::IDENTIFIER).shared().same(tags->IDENTIFIER.shared()));
#include "objects/base/smenum_xmltag_list.inc"
}

TEST(SMEnumXmltag, KeepsItsTextsInTheOrderOfTheNumbers) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    const I18NString* next = &tags->zebid;
#define SM_TAG(NUMBER, IDENTIFIER, TEXT) EXPECT_EQ(&tags->IDENTIFIER, next++) << TEXT;
#define SM_TAG_UNUSED(IDENTIFIER) EXPECT_EQ(&tags->IDENTIFIER, next++);
#include "objects/base/smenum_xmltag_list.inc"
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
