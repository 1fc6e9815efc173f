#include "core/qvutils/params/ioparams.h"

#include <gtest/gtest.h>

#include "core/qvutils/params/ionames.h"

namespace {

QvSmartPtr<IOHashParam> Row() {
    QvSmartPtr<IOHashParam> row = new IOHashParam;
    row->insertOrReplace("NAME", new IOQvStringParam("n"));
    row->insertOrReplace("SIZE", new IOLongParam(7));
    row->insertOrReplace("HIDDEN", new IOBoolParam(true));
    return row;
}

TEST(IOParameterKinds, GiveTheirOwnValue) {
    QvSmartPtr<IOParameter> text = new IOQvStringParam("t"), number = new IOLongParam(-5), flag = new IOBoolParam(true);
    QvSmartPtr<IOParameter> date = new QvDateParam(QvDate(I18NString("2024-05-06T07:08:09")));
    EXPECT_EQ(text->GetQvStringValue(), "t");
    EXPECT_EQ(text->GetQvULStringValue(), "t");
    EXPECT_EQ(number->GetLongValue(), -5);
    EXPECT_EQ(number->GetDoubleValue(), -5.0);
    EXPECT_TRUE(flag->GetBoolValue());
    EXPECT_EQ(date->GetDateValue().ToString(), "2024-05-06T07:08:09");
}

TEST(IOParameterKinds, RefuseWhatTheyDoNotHold) {
    QvSmartPtr<IOParameter> text = new IOQvStringParam("7"), number = new IOLongParam(1), flag = new IOBoolParam(true), row = Row().get();
    EXPECT_THROW(text->GetLongValue(), IOParamException);
    EXPECT_THROW(text->GetByName("x"), IOParamException);
    EXPECT_THROW(text->Size(), IOParamException);
    EXPECT_THROW(number->GetQvStringValue(), IOParamException);
    EXPECT_THROW(number->GetBoolValue(), IOParamException);
    EXPECT_THROW(flag->GetLongValue(), IOParamException);
    EXPECT_THROW(flag->GetDateValue(), IOParamException);
    EXPECT_THROW(row->At(0), IOParamException);
    EXPECT_THROW(row->push_back(text.get()), IOParamException);
    EXPECT_FALSE(text->HasKey("x"));
}

TEST(IOParameterKinds, NullIsPresentAndEmpty) {
    QvSmartPtr<IOParameter> text = IOQvStringParam::Null(), number = IOLongParam::Null(), flag = IOBoolParam::Null(),
                            date = new QvDateParam;
    for (const QvSmartPtr<IOParameter>& value : {text, number, flag, date}) EXPECT_TRUE(value->IsNull());
    EXPECT_EQ(text->GetQvStringValue(), "");
    EXPECT_EQ(number->GetLongValue(), 0);
    EXPECT_FALSE(flag->GetBoolValue());
    EXPECT_FALSE(date->GetDateValue().IsSet());
}

TEST(IOParameterKinds, OnlyAKeyedCollectionHasTheBit0x80) {
    QvSmartPtr<IOParameter> row = new IOHashParam, list = new IOArrayParam, text = new IOQvStringParam;
    EXPECT_EQ(row->GetKind() & 0x80, 0x80);
    EXPECT_EQ(list->GetKind() & 0x80, 0);
    EXPECT_EQ(text->GetKind() & 0x80, 0);
}

TEST(IOHashParam, FindsKeysWithoutRegardToAsciiCase) {
    const auto row = Row();
    EXPECT_EQ(row->GetByName("name")->GetQvStringValue(), "n");
    EXPECT_EQ(row->GetByName("Size")->GetLongValue(), 7);
    EXPECT_TRUE(row->HasKey("hidden"));
    EXPECT_FALSE(row->HasKey("hiddem"));
    EXPECT_FALSE(row->HasKey(""));
}

TEST(IOHashParam, NamesTheMissingKey) {
    try {
        Row()->GetByName("display_order");
        FAIL() << "no exception";
    } catch (const IOParamException& e) {
        EXPECT_STREQ(e.what(), "There is no parameter 'display_order'.");
    }
}

TEST(IOHashParam, AReplacedValueKeepsItsPlaceAndKey) {
    const auto row = Row();
    row->insertOrReplace("size", new IOLongParam(8));
    QvSmartPtr<IOParamPairIterator> pair = row->GetPairIterator();
    std::string keys;
    for (; !pair->atEnd(); pair->advance()) keys += std::string(pair->key().utf8()) + " ";
    EXPECT_EQ(keys, "NAME SIZE HIDDEN ");
    EXPECT_EQ(row->GetByName("SIZE")->GetLongValue(), 8);
    EXPECT_EQ(row->Size(), 3);
}

TEST(IOHashParam, ErasesAndClears) {
    const auto row = Row();
    row->erase("name");
    row->erase("no such key");
    EXPECT_EQ(row->Size(), 2);
    EXPECT_FALSE(row->HasKey("NAME"));
    row->clear();
    EXPECT_EQ(row->Size(), 0);
    EXPECT_TRUE(row->GetIterator()->atEnd());
}

TEST(IOHashParam, AnIteratorKeepsItsCollectionAlive) {
    QvSmartPtr<IOParamIterator> values = Row()->GetIterator();
    EXPECT_EQ(values->value()->GetQvStringValue(), "n");
    values->advance();
    values->advance();
    values->advance();
    EXPECT_TRUE(values->atEnd());
    EXPECT_THROW(values->value(), IOParamException);
}

TEST(IOHashParam, PrintsItselfForALog) {
    const auto row = Row();
    QvSmartPtr<IOArrayParam> list = new IOArrayParam;
    list->push_back(new QvDateParam);
    row->insertOrReplace("LIST", list.get());
    EXPECT_EQ(row->toString(">"), I18NString(">{\n>  NAME = \"n\"\n>  SIZE = 7\n>  HIDDEN = true\n>  LIST = [\n>    null\n>  ]\n>}"));
}

TEST(IOArrayParam, HoldsValuesByPlace) {
    QvSmartPtr<IOArrayParam> list = new IOArrayParam;
    list->push_back(new IOLongParam(1));
    list->push_back(new IOLongParam(2));
    EXPECT_EQ(list->Size(), 2);
    EXPECT_EQ(list->At(1)->GetLongValue(), 2);
    EXPECT_THROW(list->At(2), IOParamException);
    EXPECT_THROW(list->At(-1), IOParamException);
    list->clear();
    EXPECT_EQ(list->Size(), 0);
}

TEST(IOParamTag, ValuesThatTheFormatDependsOn) {
    EXPECT_EQ(IOParamTag::XML_ELEMENT_ORDER, "display_order");
    EXPECT_EQ(IOParamTag::OBJECT_TYPE, "object_type");
    EXPECT_EQ(IOParamTag::OBJECT, "object");
    for (const char* reserved : {"id", "version", "lastChanged", "qvref", "qvdbref", "qvqs_type"}) {
        EXPECT_FALSE(IOParamTag::REF_DB_OBJ_ID == reserved);
        EXPECT_FALSE(IOParamTag::REF_DB_OBJ_2ND_ID == reserved);
    }
}

}  // namespace
