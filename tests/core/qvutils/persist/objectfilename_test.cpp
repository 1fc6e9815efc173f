#include "core/qvutils/persist/objectfilename.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using qv::ObjectFileName;

std::string Lowered(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return text;
}

std::string Raised(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    return text;
}

/** Good on every file system: what the strictest of them take. */
bool IsSafe(const std::string& file) {
    if (file.empty() || file.size() > ObjectFileName::LONGEST) return false;
    for (const char c : file)
        if (!(std::isalnum(static_cast<unsigned char>(c)) || std::string(" ._-%~").find(c) != std::string::npos)) return false;
    const std::string edges = {file.front(), file.back()};
    return edges.find_first_of(" .") == std::string::npos;
}

TEST(ObjectFileName, IsTheNameItselfWhereThatIsSafe) {
    for (const char* name : {"Sales", "Database Layer", "A.B-C_9", "Com", "Console", "9 Lives"}) EXPECT_EQ(name, ObjectFileName::Of(name));
}

TEST(ObjectFileName, EscapesWhatAFileSystemDoesNotTake) {
    EXPECT_EQ(ObjectFileName::Of("a/b"), "a%2Fb~c");
    EXPECT_EQ(ObjectFileName::Of(".."), "%2E%2E");
    EXPECT_EQ(ObjectFileName::Of("Sales "), "Sales%20");
    EXPECT_EQ(ObjectFileName::Of("Sales."), "Sales%2E");
    EXPECT_EQ(ObjectFileName::Of("A\tB\x01\x7F"), "A%09B%01%7F");
    EXPECT_EQ(ObjectFileName::Of(""), "%");
}

TEST(ObjectFileName, EscapesNamesOfDevices) {
    EXPECT_EQ(ObjectFileName::Of("CON"), "%43ON~6");
    EXPECT_EQ(ObjectFileName::Of("Lpt9.txt"), "%4Cpt9.txt~1");
    EXPECT_EQ(ObjectFileName::Of("Nul"), "%4Eul");
}

TEST(ObjectFileName, TellsComposedFromDecomposedAccents) {
    const std::string composed = "Caf\xC3\xA9", decomposed = "Cafe\xCC\x81";
    EXPECT_EQ(ObjectFileName::Of(composed), "Caf%C3%A9");
    EXPECT_EQ(ObjectFileName::Of(decomposed), "Cafe%CC%81");
}

TEST(ObjectFileName, NumbersObjectsOfOneName) {
    EXPECT_EQ(ObjectFileName::Of("Sales", 1), "Sales");
    EXPECT_EQ(ObjectFileName::Of("Sales", 2), "Sales~~2");
    EXPECT_EQ(ObjectFileName::Of("sales", 10), "sales~8~~10");
    for (const char* name : {"Sales", "sales", "", "CON"}) EXPECT_EQ(ObjectFileName::ObjectNameOf(ObjectFileName::Of(name, 7)), name);
}

TEST(ObjectFileName, CutsAnOverLongNameBehindADigest) {
    const std::string name(300, 'x'), other(301, 'x');
    const std::string file = ObjectFileName::Of(name);
    EXPECT_EQ(file.size(), ObjectFileName::LONGEST);
    EXPECT_NE(file, ObjectFileName::Of(other));
    EXPECT_NE(Lowered(file), Lowered(ObjectFileName::Of(Raised(name))));
    EXPECT_EQ(ObjectFileName::ObjectNameOf(file), std::nullopt);
    EXPECT_EQ(ObjectFileName::ObjectNameOf(ObjectFileName::Of(name, 2)), std::nullopt);
}

TEST(ObjectFileName, CutsNoEscapeInTwo) {
    for (std::size_t shift = 0; shift < 3; ++shift) {
        std::string name(shift, 'X');
        for (int i = 0; i < 120; ++i) name += "\xC3\xA4";
        const std::string file = ObjectFileName::Of(name);
        EXPECT_EQ(file.find("%~"), std::string::npos);
        EXPECT_EQ(file.find("%C~"), std::string::npos);
        EXPECT_TRUE(IsSafe(file)) << file;
    }
}

TEST(ObjectFileName, IsWholeUpToTheLongest) {
    const std::string longest = "A" + std::string(ObjectFileName::LONGEST - 1, 'a');
    EXPECT_EQ(ObjectFileName::Of(longest), longest);
    EXPECT_EQ(ObjectFileName::ObjectNameOf(longest), longest);
    EXPECT_EQ(ObjectFileName::ObjectNameOf(ObjectFileName::Of(longest + "a")), std::nullopt);
}

TEST(ObjectFileName, GivesNoNameForWhatItDidNotMake) {
    for (const char* file : {"", "a/b", ".", "..", "x%", "x%4", "%zz", "%41", "Sales~", "Sales~0", "Sales~8~8", "Sales~xyz", "a\xC3\xA9",
                             "CON", "Sales.", "Sales~~x", "Sales%20%20 "})
        EXPECT_EQ(ObjectFileName::ObjectNameOf(file), std::nullopt) << file;
}

/** All texts of up to four of these letters: marks, escapes, blanks and points at the edges, and letters that are hexadecimal digits. */
TEST(ObjectFileName, IsSafeReversibleAndItsOwnForEachShortName) {
    const std::string alphabet = "aAbB.~% /0fF";
    std::map<std::string, std::string> files;
    std::vector<std::string> names = {""};
    for (std::size_t at = 0; at < names.size(); ++at) {
        const std::string name = names[at], file = ObjectFileName::Of(name);
        const auto [entry, fresh] = files.emplace(Lowered(file), name);
        ASSERT_TRUE(fresh) << '"' << name << "\" and \"" << entry->second << "\" share " << entry->first;
        ASSERT_TRUE(IsSafe(file)) << '"' << name << "\": " << file;
        ASSERT_EQ(ObjectFileName::ObjectNameOf(file), name) << file;
        ASSERT_EQ(ObjectFileName::ObjectNameOf(Lowered(file)), name) << "where case is lost: " << file;
        ASSERT_EQ(ObjectFileName::ObjectNameOf(Raised(file)), name) << "where case is lost: " << file;
        if (name.size() < 4)
            for (const char c : alphabet) names.push_back(name + c);
    }
    EXPECT_EQ(files.size(), 1u + 12 + 144 + 1728 + 20736);
}

TEST(ObjectFileName, IsSafeReversibleAndItsOwnForRandomBytes) {
    std::mt19937 random(7);
    std::map<std::string, std::string> files;
    for (int i = 0; i < 20'000; ++i) {
        std::string name(1 + random() % 40, '\0');
        for (char& c : name) c = static_cast<char>(random() % 3 ? 'A' + random() % 58 : random() % 256);
        const std::string file = ObjectFileName::Of(name);
        const auto [entry, fresh] = files.emplace(Lowered(file), name);
        ASSERT_TRUE(fresh || entry->second == name);
        ASSERT_TRUE(IsSafe(file)) << file;
        const auto back = ObjectFileName::ObjectNameOf(Raised(file));
        ASSERT_EQ(back, file.find("~~") == std::string::npos ? std::optional(name) : std::nullopt) << file;
    }
}

TEST(ObjectFileName, IsSafeForDevicesOfAnyCaseAndExtension) {
    for (std::string device : {"con", "prn", "aux", "nul", "com0", "com9", "lpt1"}) {
        for (const std::string end : {"", ".x", " ", " .x", "..", ". "}) {
            for (const std::string& name : {device + end, Raised(device) + end}) {
                EXPECT_EQ(ObjectFileName::Of(name).front(), '%') << name;
                EXPECT_EQ(ObjectFileName::ObjectNameOf(ObjectFileName::Of(name)), name);
            }
        }
    }
}

}  // namespace
