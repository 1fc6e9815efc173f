#include "core/qvutils/xml/qvxmlattributes.h"

#include <gtest/gtest.h>

TEST(QvXMLAttributesImpl, KeepsTheOrderOfPushing) {
    QvXMLAttributesImpl attributes;
    attributes.push_back("b", "1");
    attributes.push_back("a", "2");
    attributes.push_back("b", "3");
    ASSERT_EQ(3, attributes.getLength());
    EXPECT_EQ("b", attributes.getQName(0));
    EXPECT_EQ("a", attributes.getQName(1));
    EXPECT_EQ("3", attributes.getValue(2));
    EXPECT_EQ(0, attributes.getIndex("b"));
    EXPECT_EQ("1", attributes.getValue("b"));
}

TEST(QvXMLAttributesImpl, FindsByUriAndLocalName) {
    QvXMLAttributesImpl attributes;
    attributes.push_back({"u", "name", "p:name", "ID", "value"});
    EXPECT_EQ(0, attributes.getIndex("u", "name"));
    EXPECT_EQ("value", attributes.getValue("u", "name"));
    EXPECT_EQ("ID", attributes.getType("u", "name"));
    EXPECT_EQ("ID", attributes.getType("p:name"));
    EXPECT_EQ("u", attributes.getURI(0));
    EXPECT_EQ("name", attributes.getLocalName(0));
    EXPECT_EQ("ID", attributes.getType(0));
    EXPECT_EQ(-1, attributes.getIndex("", "name"));
    EXPECT_EQ(-1, attributes.getIndex("u", "p:name"));
}

TEST(QvXMLAttributesImpl, GivesEmptyTextsForWhatIsNotThere) {
    QvXMLAttributesImpl attributes;
    attributes.push_back("a", "1");
    for (const int index : {-1, 1, 1000}) {
        EXPECT_EQ("", attributes.getURI(index));
        EXPECT_EQ("", attributes.getLocalName(index));
        EXPECT_EQ("", attributes.getQName(index));
        EXPECT_EQ("", attributes.getType(index));
        EXPECT_EQ("", attributes.getValue(index));
    }
    EXPECT_LT(attributes.getIndex("b"), 0);
    EXPECT_EQ("", attributes.getValue("b"));
    EXPECT_EQ("", attributes.getType("b"));
    EXPECT_EQ("", attributes.getValue("u", "a"));
    EXPECT_EQ("", attributes.getType("u", "a"));
}

TEST(QvXMLAttributesImpl, TellsAnEmptyValueFromAMissingOne) {
    QvXMLAttributesImpl attributes;
    attributes.push_back("filename", "");
    EXPECT_EQ(0, attributes.getIndex("filename"));
    EXPECT_EQ("", attributes.getValue("filename"));
    attributes.clear();
    EXPECT_EQ(-1, attributes.getIndex("filename"));
    EXPECT_EQ(0, attributes.getLength());
}
