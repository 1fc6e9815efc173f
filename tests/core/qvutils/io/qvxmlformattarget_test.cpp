#include "core/qvutils/io/qvxmlformattarget.h"

#include <gtest/gtest.h>

TEST(QvStringWriter, KeepsNothingOfItsOwn) {
    I18NString text("at first ");
    QvStringWriter target(text);
    target.write("abc", 3);
    EXPECT_EQ("at first abc", text);
    text.erase();
    target.write('d');
    target.write(std::string_view("ef"));
    target.flush();
    EXPECT_EQ("def", text);
}

TEST(QvByteBufferWriter, KeepsNothingOfItsOwn) {
    TklByteBuffer buffer;
    QvByteBufferWriter target(buffer);
    target.write("a\0b", 3);
    EXPECT_EQ(std::string_view("a\0b", 3), buffer.view());
    buffer.reset();
    target.write('c');
    EXPECT_EQ("c", buffer.view());
}

TEST(QvXMLFormatTarget, TakesAnEmptyWrite) {
    I18NString text;
    QvStringWriter target(text);
    target.write(std::string_view());
    target.write("", 0);
    EXPECT_EQ("", text);
}
