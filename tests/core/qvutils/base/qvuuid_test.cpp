#include "core/qvutils/base/qvuuid.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

std::string NewId() {
    return QvUUIDGen::Create().GetAsQvULString().c_str();
}

}  // namespace

TEST(QvUUID, IsThirtySixCharactersInLowerCase) {
    const std::string id = NewId();
    ASSERT_EQ(id.size(), 36U);
    for (std::size_t i = 0; i < id.size(); ++i) {
        if (i == 8 || i == 13 || i == 18 || i == 23)
            EXPECT_EQ(id[i], '-');
        else
            EXPECT_NE(std::string("0123456789abcdef").find(id[i]), std::string::npos) << id;
    }
}

TEST(QvUUID, CarriesVersionVariantAndTime) {
    using namespace std::chrono;
    for (int i = 0; i < 2000; ++i) {
        const std::string id = NewId();
        EXPECT_EQ(id[14], '7');
        EXPECT_NE(std::string("89ab").find(id[19]), std::string::npos);
    }
    const std::string id = NewId();
    const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const long long time = std::stoll(id.substr(0, 8) + id.substr(9, 4), nullptr, 16);
    EXPECT_LE(std::abs(now - time), 10000);
}

TEST(QvUUID, IsEqualToItselfOnly) {
    const QvUUID id = QvUUIDGen::Create();
    EXPECT_EQ(id, QvUUID(id));
    EXPECT_FALSE(id == QvUUIDGen::Create());
    EXPECT_EQ(id.GetAsQvULString(), id.GetAsQvULString());
}

TEST(QvUUIDGen, EachIdIsGreaterThanTheOneBefore) {
    std::string last = NewId();
    for (int i = 0; i < 100000; ++i) {
        const std::string next = NewId();
        ASSERT_LT(last, next);
        last = next;
    }
}

TEST(QvUUIDGen, ThreadsGetTheirOwnInOrder) {
    std::vector<std::vector<std::string>> ids(4);
    std::vector<std::thread> threads;
    for (auto& own : ids)
        threads.emplace_back([&own] {
            for (int i = 0; i < 5000; ++i) own.push_back(NewId());
        });
    for (std::thread& thread : threads) thread.join();
    std::set<std::string> all;
    for (const auto& own : ids) {
        EXPECT_TRUE(std::is_sorted(own.begin(), own.end()));
        all.insert(own.begin(), own.end());
    }
    EXPECT_EQ(all.size(), 20000U);
}

TEST(QvUUIDGen, AForkedChildMakesIdsOfItsOwn) {
    NewId();
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const std::string id = NewId();
        const bool written = write(channel[1], id.data(), id.size()) == static_cast<ssize_t>(id.size());
        _exit(written ? 0 : 1);
    }
    const std::string own = NewId();
    char bytes[36];
    ASSERT_EQ(read(channel[0], bytes, sizeof bytes), static_cast<ssize_t>(sizeof bytes));
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_NE(std::string(bytes, sizeof bytes), own);
    close(channel[0]);
    close(channel[1]);
}
