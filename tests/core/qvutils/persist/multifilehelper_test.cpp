#include "core/qvutils/persist/multifilehelper.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

std::string FileOf(std::string_view name) {
    I18NString path;
    MultiFileHelper::MakeFilePath(I18NString(name), "qvf", path);
    return std::string(path.utf8());
}

std::string Folded(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return text;
}

TEST(MultiFileHelper, IsOfKindThreeAndKnowsItsTags) {
    const MultiFileHelper files({"namespace"});
    EXPECT_EQ(files.GetHelperKind(), 3);
    EXPECT_TRUE(files.IsSeparateFile("namespace"));
    EXPECT_FALSE(files.IsSeparateFile("package"));
    EXPECT_FALSE(MultiFileHelper().IsSeparateFile("namespace"));
}

TEST(MultiFileHelperPath, PutsThePlainNameIntoTheDirectory) {
    I18NString path("/tmp/models");
    MultiFileHelper::MakeFilePath("Database Layer", "qvf", path);
    EXPECT_EQ(path, "/tmp/models/Database Layer.qvf");
}

TEST(MultiFileHelperPath, EscapesWhatAFileSystemDoesNotTake) {
    EXPECT_EQ(FileOf("a/b"), "a%2Fb~c.qvf");
    EXPECT_EQ(FileOf(".."), "%2E%2E.qvf");
    EXPECT_EQ(FileOf("."), "%2E.qvf");
    EXPECT_EQ(FileOf(".Hidden"), "%2EHidden.qvf");
    EXPECT_EQ(FileOf("Sales "), "Sales%20.qvf");
    EXPECT_EQ(FileOf("Sales."), "Sales%2E.qvf");
    EXPECT_EQ(FileOf("100%"), "100%25.qvf");
    EXPECT_EQ(FileOf("A\\B:C*?\"<>|"), "A%5CB%3AC%2A%3F%22%3C%3E%7C.qvf");
    EXPECT_EQ(FileOf("\xc3\x89t\xc3\xa9"), "%C3%89t%C3%A9~8.qvf");
    EXPECT_EQ(FileOf(""), "%.qvf");
}

TEST(MultiFileHelperPath, EscapesNamesOfDevices) {
    EXPECT_EQ(FileOf("CON"), "%43ON~6.qvf");
    EXPECT_EQ(FileOf("Nul"), "%4Eul.qvf");
    EXPECT_EQ(FileOf("Com1.x"), "%43om1.x~1.qvf");
    EXPECT_EQ(FileOf("Aux .y"), "%41ux .y~1.qvf");
    EXPECT_EQ(FileOf("Console"), "Console.qvf");
    EXPECT_EQ(FileOf("Com"), "Com.qvf");
}

TEST(MultiFileHelperPath, NamesThatDifferInCaseAloneGetTwoFiles) {
    EXPECT_EQ(FileOf("Sales"), "Sales.qvf");
    EXPECT_EQ(FileOf("sales"), "sales~8.qvf");
    EXPECT_EQ(FileOf("SALES"), "SALES~78.qvf");
    EXPECT_EQ(FileOf("Sales~8"), "Sales%7E8.qvf");
}

TEST(MultiFileHelperPath, CutsOverLongNamesBehindADigest) {
    const std::string longName(300, 'x'), longer(301, 'x');
    EXPECT_LT(FileOf(longName).size(), 210u);
    EXPECT_NE(FileOf(longName), FileOf(longer));
    EXPECT_NE(FileOf(longName).find("~~"), std::string::npos);
    std::string umlauts;
    for (int i = 0; i < 120; ++i) umlauts += "\xc3\xa4";
    EXPECT_EQ(FileOf(umlauts).find("%~"), std::string::npos);
    EXPECT_LT(FileOf(umlauts).size(), 210u);
}

TEST(MultiFileHelperPath, NoTwoShortNamesShareAFileWhereCaseIsNotKept) {
    const std::string alphabet = "aAbB.~% /0fF";
    std::map<std::string, std::string> files;
    std::vector<std::string> names = {""};
    for (std::size_t at = 0; at < names.size(); ++at) {
        const std::string name = names[at];
        const auto [entry, fresh] = files.emplace(Folded(FileOf(name)), name);
        ASSERT_TRUE(fresh) << '"' << name << "\" and \"" << entry->second << "\" share " << entry->first;
        if (name.size() < 4)
            for (const char c : alphabet) names.push_back(name + c);
    }
    EXPECT_EQ(files.size(), 1u + 12 + 144 + 1728 + 20736);
}

}  // namespace
