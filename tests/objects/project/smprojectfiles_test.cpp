// A model whose namespaces and packages stand in files of their own.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <regex>

#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::IsEmpty;

namespace {

const std::string EXAMPLE = std::string(SMODEL_SOURCE_DIR) + "/examples/models/multifile";

class Directory {
  public:
    Directory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "smprojectfiles-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~Directory() { std::filesystem::remove_all(m_path); }
    const std::string& Path() const { return m_path; }

  private:
    std::string m_path;
};

ProjectPtr ReadFrom(const std::string& directory, const std::string& document) {
    ProjectPtr project = new SMProject2();
    project->m_baseDirectory = directory.c_str();
    SMProjectBuilder builder(project);
    ParseInto(builder, document);
    return project;
}

/** Without the white space that indents elements for people. */
std::string Settled(const std::string& document) {
    // a quotation mark in a text is written as it stands; the files have it escaped
    return std::regex_replace(std::regex_replace(document, std::regex(">\n *(<|$)"), ">$1"), std::regex("&quot;"), "\"");
}

}  // namespace

TEST(SMProject2Files, GiveTheSameModelAsOneFile) {
    CapturedLog log;
    const ProjectPtr split = ReadFrom(EXAMPLE, ReadFile(EXAMPLE + "/main.xml")), whole = ParseProject(ReadFile(EXAMPLE + "/single.xml"));
    EXPECT_EQ(split->GetPackages().size(), 2u);
    EXPECT_TRUE(SameXml(WriteProject(*whole), WriteProject(*split)));
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST(SMProject2Files, AreWrittenAsTheyWereRead) {
    const Directory directory;
    const ProjectPtr project = ReadFrom(EXAMPLE, ReadFile(EXAMPLE + "/main.xml"));
    project->SetVersionNo(1);  // a model that is not stored keeps its connections to itself
    const std::string whole = WriteProject(*project);
    project->m_baseDirectory = directory.Path().c_str();
    MultiFileHelper files({"namespace", "package"});
    const std::string main = WriteProject(*project, &files);
    EXPECT_TRUE(SameXml(WriteProject(*ReadFrom(directory.Path(), main)), whole));
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLE)) {
        const std::string name = entry.path().filename().string();
        if (name == "single.xml") continue;
        const std::string written = name == "main.xml" ? main : ReadFile(directory.Path() + "/" + name);
        EXPECT_TRUE(SameXml(Settled(ReadFile(entry.path().string())), Settled(written))) << name;
    }
}
