#include "core/qvutils/text/tklbytebuffer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

TEST(TklByteBuffer, IsOnePointerAndEmptyAtFirst) {
    const TklByteBuffer buffer(1024, 512);
    EXPECT_EQ(sizeof(TklByteBuffer), sizeof(void*));
    EXPECT_EQ(buffer.pcount(), 0U);
    EXPECT_STREQ(buffer.str(), "");
}

TEST(TklByteBuffer, TakesBytes) {
    TklByteBuffer buffer;
    buffer.appendChars("abc\0d", 5);
    buffer << "ef" << 'g' << static_cast<const char*>(nullptr) << '\0';
    EXPECT_EQ(buffer.view(), std::string_view("abc\0defg\0", 9));
    EXPECT_EQ(buffer.str()[9], '\0');
    TklByteBuffer other;
    other << "<" << buffer << ">";
    EXPECT_EQ(other.pcount(), 11U);
}

TEST(TklByteBuffer, TakesItself) {
    TklByteBuffer buffer;
    buffer << "0123456789";
    for (int i = 0; i < 5; ++i) buffer << buffer;
    EXPECT_EQ(buffer.pcount(), 320U);
    buffer.shrink();
    buffer.appendChars(buffer.str() + 5, 5);
    EXPECT_EQ(buffer.view().substr(310), "012345678956789");
}

TEST(TklByteBuffer, ForgetsItsContentAndKeepsItsMemory) {
    TklByteBuffer buffer;
    buffer << "some content";
    const char* const bytes = buffer.str();
    buffer.reset();
    EXPECT_EQ(buffer.pcount(), 0U);
    EXPECT_STREQ(buffer.str(), "");
    buffer << "again";
    EXPECT_EQ(buffer.str(), bytes);
    TklByteBuffer untouched;
    untouched.reset();
    EXPECT_STREQ(untouched.str(), "");
}

TEST(TklByteBuffer, StaysInPlaceWithinWhatIsReserved) {
    TklByteBuffer buffer;
    buffer.reserve(1000);
    const char* const bytes = buffer.str();
    EXPECT_EQ(buffer.pcount(), 0U);
    for (int i = 0; i < 1000; ++i) buffer << 'x';
    EXPECT_EQ(buffer.str(), bytes);
    buffer.reserve(10);
    EXPECT_EQ(buffer.pcount(), 1000U);
}

TEST(TklByteBuffer, IsCutAndLengthenedWithZeroBytes) {
    TklByteBuffer buffer;
    buffer << "abcdef";
    buffer.setLength(2);
    EXPECT_EQ(buffer.view(), "ab");
    EXPECT_STREQ(buffer.str(), "ab");
    buffer.setLength(5);
    EXPECT_EQ(buffer.view(), std::string_view("ab\0\0\0", 5));
    buffer.setLength(0);
    EXPECT_EQ(buffer.pcount(), 0U);
    TklByteBuffer untouched;
    untouched.setLength(0);
    EXPECT_EQ(untouched.pcount(), 0U);
    untouched.setLength(3);
    EXPECT_EQ(untouched.view(), std::string_view("\0\0\0", 3));
}

TEST(TklByteBuffer, ShrinksToItsContent) {
    TklByteBuffer buffer;
    buffer.reserve(10000);
    buffer << "kept";
    buffer.shrink();
    EXPECT_EQ(buffer.view(), "kept");
    buffer.reset();
    buffer.shrink();
    EXPECT_STREQ(buffer.str(), "");
    buffer << "again";
    EXPECT_EQ(buffer.view(), "again");
}

TEST(TklByteBuffer, CopiesAndMoves) {
    TklByteBuffer buffer;
    buffer << "content";
    TklByteBuffer copy(buffer);
    copy << "!";
    EXPECT_EQ(buffer.view(), "content");
    EXPECT_EQ(copy.view(), "content!");
    TklByteBuffer& alias = copy;
    copy = alias;
    EXPECT_EQ(copy.view(), "content!");
    copy = buffer;
    EXPECT_EQ(copy.view(), "content");
    copy = TklByteBuffer();
    EXPECT_EQ(copy.pcount(), 0U);
    const TklByteBuffer moved(std::move(buffer));
    EXPECT_EQ(moved.view(), "content");
    EXPECT_EQ(buffer.pcount(), 0U);
}

TEST(TklByteBuffer, GrowsWithFewMoves) {
    TklByteBuffer buffer(16, 1);
    int moves = 0;
    const char* at = buffer.str();
    for (int i = 0; i < 1000000; ++i) {
        buffer << 'x';
        if (buffer.str() != at) ++moves;
        at = buffer.str();
    }
    EXPECT_EQ(buffer.pcount(), 1000000U);
    EXPECT_LT(moves, 60);
}
