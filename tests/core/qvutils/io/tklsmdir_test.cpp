#include "core/qvutils/io/tklsmdir.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Join(const char* path, const char* more) {
    I18NString joined(path);
    TklSmDir::joinPath(joined, more);
    return std::string(joined.utf8());
}

}  // namespace

TEST(TklSmDir, JoinsBehindOneSeparator) {
    EXPECT_EQ(Join("base", "part.xml"), "base/part.xml");
    EXPECT_EQ(Join("base/", "part.xml"), "base/part.xml");
    EXPECT_EQ(Join("base", "/part.xml"), "base/part.xml");
    EXPECT_EQ(Join("base/", "//part.xml"), "base/part.xml");
    EXPECT_EQ(Join("/", "part.xml"), "/part.xml");
    EXPECT_EQ(Join("b\xC3\xA9", "p\xC3\xA9/x"), "b\xC3\xA9/p\xC3\xA9/x");
}

TEST(TklSmDir, JoinsNothingWithoutATrace) {
    EXPECT_EQ(Join("base", ""), "base");
    EXPECT_EQ(Join("", "part.xml"), "part.xml");
    EXPECT_EQ(Join("", "/part.xml"), "/part.xml");
    EXPECT_EQ(Join("", ""), "");
}

TEST(TklSmDir, JoinsAPathWithItself) {
    I18NString path("a");
    TklSmDir::joinPath(path, path);
    EXPECT_EQ(path.utf8(), "a/a");
}

TEST(TklSmDir, SplitsAtTheLastSeparator) {
    const char* const cases[][3] = {{"a/b/c.xml", "a/b", "c.xml"},
                                    {"/a/c.xml", "/a", "c.xml"},
                                    {"/c.xml", "/", "c.xml"},
                                    {"c.xml", "", "c.xml"},
                                    {"a/", "a", ""},
                                    {"/", "/", ""},
                                    {"", "", ""}};
    for (const auto& [path, directory, file] : cases) {
        I18NString toDirectory("old"), toFile("old");
        TklSmDir::splitPath(path, &toDirectory, &toFile);
        EXPECT_EQ(toDirectory.utf8(), directory) << path;
        EXPECT_EQ(toFile.utf8(), file) << path;
    }
}

TEST(TklSmDir, LeavesOutWhatIsNotAskedFor) {
    I18NString directory, file;
    TklSmDir::splitPath("a/b", &directory, nullptr);
    TklSmDir::splitPath("a/b", nullptr, &file);
    TklSmDir::splitPath("a/b", nullptr, nullptr);
    EXPECT_EQ(directory.utf8(), "a");
    EXPECT_EQ(file.utf8(), "b");
}

TEST(TklSmDir, SplitsIntoThePathItself) {
    I18NString path("a/b"), file;
    TklSmDir::splitPath(path, &path, &file);
    EXPECT_EQ(path.utf8(), "a");
    EXPECT_EQ(file.utf8(), "b");
}

TEST(TklSmDir, JoinsWhatItSplit) {
    for (const char* const path : {"a/b/c", "/a", "c", "/a/b"}) {
        I18NString directory, file;
        TklSmDir::splitPath(path, &directory, &file);
        TklSmDir::joinPath(directory, file);
        EXPECT_EQ(directory.utf8(), path);
    }
}
