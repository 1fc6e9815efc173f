#include "core/qvutils/text/sharedtext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using qv::SharedText;

TEST(SharedText, IsOnePointer) {
    EXPECT_EQ(sizeof(SharedText), sizeof(void*));
}

TEST(SharedText, IsEmptyByDefaultAndFromNothing) {
    for (const SharedText& text : {SharedText(), SharedText(std::string_view()), SharedText(""), SharedText::Immortal("")}) {
        EXPECT_TRUE(text.empty());
        EXPECT_EQ(text.view(), "");
        EXPECT_STREQ(text.c_str(), "");
        EXPECT_TRUE(text.ascii());
        EXPECT_TRUE(text.same(SharedText()));
    }
}

TEST(SharedText, EndsInNul) {
    SharedText text("key");
    EXPECT_STREQ(text.c_str(), "key");
    text.append("words");
    EXPECT_STREQ(text.c_str(), "keywords");
    text.assign("k");
    EXPECT_STREQ(text.c_str(), "k");
}

TEST(SharedText, KeepsNulInside) {
    const SharedText text(std::string_view("a\0b", 3));
    EXPECT_EQ(text.view(), std::string_view("a\0b", 3));
}

TEST(SharedText, CopiesShareTheBytes) {
    const SharedText text("a text that is shared");
    const SharedText copy(text);
    SharedText assigned("other");
    assigned = text;
    EXPECT_EQ(copy.c_str(), text.c_str());
    EXPECT_EQ(assigned.c_str(), text.c_str());
    EXPECT_TRUE(copy.same(text));
}

TEST(SharedText, ChangingACopyLeavesTheOthersAlone) {
    const SharedText text("shared");
    SharedText appended(text), assigned(text), cleared(text), replaced(text);
    appended.append("!");
    assigned.assign("new");
    cleared.clear();
    replaced.replace(0, 1, "S");
    EXPECT_EQ(text.view(), "shared");
    EXPECT_EQ(appended.view(), "shared!");
    EXPECT_EQ(assigned.view(), "new");
    EXPECT_TRUE(cleared.empty());
    EXPECT_EQ(replaced.view(), "Shared");
}

TEST(SharedText, MoveLeavesTheSourceNull) {
    SharedText text("moved");
    const char* const bytes = text.c_str();
    SharedText target(std::move(text));
    EXPECT_EQ(target.c_str(), bytes);
    EXPECT_TRUE(text.same(SharedText()));
    SharedText assigned("old");
    assigned = std::move(target);
    EXPECT_EQ(assigned.c_str(), bytes);
    EXPECT_TRUE(target.same(SharedText()));
}

TEST(SharedText, SurvivesAssignmentToItself) {
    SharedText text("self");
    SharedText& alias = text;
    text = alias;
    EXPECT_EQ(text.view(), "self");
    text = std::move(alias);
    EXPECT_EQ(text.view(), "self");
}

TEST(SharedText, TakesPartsOfItself) {
    SharedText text("0123456789");
    text.append(text.view().substr(5));
    EXPECT_EQ(text.view(), "012345678956789");
    for (int i = 0; i < 6; ++i) text.append(text.view());
    EXPECT_EQ(text.view().size(), 15U * 64U);
    EXPECT_EQ(text.view().substr(15 * 63), "012345678956789");
    text.replace(1, text.view().size() - 2, text.view().substr(3, 2));
    EXPECT_EQ(text.view(), "0349");
    text.assign(text.view().substr(1, 2));
    EXPECT_EQ(text.view(), "34");
}

TEST(SharedText, ClearedReadsAsEmptyAndKeepsItsMemory) {
    SharedText text("a buffer that is filled again");
    const char* const bytes = text.c_str();
    text.clear();
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.view(), "");
    EXPECT_STREQ(text.c_str(), "");
    text.append("short");
    EXPECT_EQ(text.c_str(), bytes);
    EXPECT_EQ(text.view(), "short");
}

TEST(SharedText, CopyOfAClearedTextIsNull) {
    SharedText text("a buffer");
    text.clear();
    const SharedText copy(text);
    EXPECT_TRUE(copy.same(SharedText()));
}

TEST(SharedText, AssignUsesItsBlockAgainUnlessFarTooBig) {
    SharedText text(std::string(100, 'x'));
    const char* const bytes = text.c_str();
    text.assign(std::string(60, 'y'));
    EXPECT_EQ(text.c_str(), bytes);
    const SharedText before(text);
    text.assign("z");
    EXPECT_NE(text.c_str(), bytes) << "a shared block is not written to";
    EXPECT_EQ(before.view(), std::string(60, 'y'));
    SharedText big(std::string(100000, 'x'));
    const char* const bigBytes = big.c_str();
    const SharedText witness(std::string(100000, 'w'));  // keeps the allocator from handing the same place out
    big.assign("tiny");
    EXPECT_EQ(big.view(), "tiny");
    EXPECT_TRUE(big.c_str() < bigBytes || big.c_str() > bigBytes + 100000 || big.c_str() == bigBytes);
}

TEST(SharedText, GrowsWithFewMoves) {
    SharedText text;
    int moves = 0;
    const char* at = text.c_str();
    for (int i = 0; i < 1000000; ++i) {
        text.append("x");
        if (text.c_str() != at) ++moves;
        at = text.c_str();
    }
    EXPECT_EQ(text.view().size(), 1000000U);
    EXPECT_LT(moves, 60);
}

TEST(SharedText, ReplacesInTheMiddle) {
    SharedText text("a[name]b");
    text.replace(1, 6, "-");
    EXPECT_EQ(text.view(), "a-b");
    text.replace(1, 1, " a longer part than there was room for ");
    EXPECT_EQ(text.view(), "a a longer part than there was room for b");
    text.replace(0, text.view().size(), "");
    EXPECT_TRUE(text.empty());
    text.replace(0, 0, "new");
    EXPECT_EQ(text.view(), "new");
}

TEST(SharedText, RemembersWhetherItIsAscii) {
    SharedText text("plain");
    EXPECT_TRUE(text.ascii());
    text.append(" and plain");
    EXPECT_TRUE(text.ascii());
    text.append("\xC3\xA9");
    EXPECT_FALSE(text.ascii());
    text.append(" plain");
    EXPECT_FALSE(text.ascii());
    text.replace(text.view().find('\xC3'), 2, "e");
    EXPECT_TRUE(text.ascii());
    text.assign("\xC3\xA9");
    EXPECT_FALSE(text.ascii());
    text.clear();
    EXPECT_TRUE(text.ascii());
}

TEST(SharedText, FindsAByteBeyondAsciiAtEveryPlace) {
    for (std::size_t size = 1; size < 20; ++size)
        for (std::size_t at = 0; at < size; ++at) {
            std::string bytes(size, 'a');
            EXPECT_TRUE(SharedText(bytes).ascii());
            bytes[at] = '\x80';
            EXPECT_FALSE(SharedText(bytes).ascii()) << size << ' ' << at;
        }
}

TEST(SharedText, ImmortalTextsAreOneForEqualTexts) {
    const SharedText a = SharedText::Immortal("parameterMap");
    const SharedText b = SharedText::Immortal(std::string("parameter") + "Map");
    EXPECT_TRUE(a.same(b));
    SharedText changed(a);
    changed.append("s");
    EXPECT_EQ(a.view(), "parameterMap");
    EXPECT_EQ(changed.view(), "parameterMaps");
    changed = a;
    changed.clear();
    EXPECT_EQ(SharedText::Immortal("parameterMap").view(), "parameterMap");
}

TEST(SharedText, RefusesMoreThanAGibibyte) {
    const std::string_view tooLong("x", SharedText::MAX_SIZE + 1);  // never looked at: the size alone is refused
    SharedText text("kept");
    EXPECT_THROW(SharedText{tooLong}, std::length_error);
    EXPECT_THROW(text.assign(tooLong), std::length_error);
    EXPECT_THROW(text.append(std::string_view("x", SharedText::MAX_SIZE)), std::length_error);
    EXPECT_THROW(text.replace(0, 1, std::string_view("x", SharedText::MAX_SIZE)), std::length_error);
    EXPECT_EQ(text.view(), "kept");
}

TEST(SharedTextThreads, ShareOneTextAndGoTheirOwnWays) {
    const SharedText text("shared by \xC3\xA9very thread");
    const SharedText name = SharedText::Immortal("immortal name");
    const auto work = [&](int number) {
        for (int i = 0; i < 2000; ++i) {
            std::vector<SharedText> copies(8, text);
            copies.push_back(name);
            EXPECT_FALSE(copies[3].ascii());
            copies[2].append(std::to_string(number));
            copies[1] = copies[2];
            copies[0].clear();
            EXPECT_EQ(copies[1].view().substr(0, 10), "shared by ");
        }
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) threads.emplace_back(work, number);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(text.view(), "shared by \xC3\xA9very thread");
}

TEST(SharedTextThreads, LastOwnerFreesWhicheverThreadItIsIn) {
    for (int i = 0; i < 200; ++i) {
        SharedText text("handed over " + std::to_string(i));
        std::thread other([copy = text]() mutable { copy.append(" and changed"); });
        text.assign("dropped here");
        other.join();
        EXPECT_EQ(text.view(), "dropped here");
    }
}

TEST(SharedTextThreads, MakeImmortalTextsAtOnce) {
    std::vector<const char*> bytes(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        threads.emplace_back([&bytes, i] { bytes[i] = SharedText::Immortal("made by four threads").c_str(); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(), [&](const char* at) { return at == bytes[0]; }));
}
