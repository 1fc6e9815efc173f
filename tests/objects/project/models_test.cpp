// Whole model documents: what the library writes is what it reads.
#include <gmock/gmock.h>

#include <filesystem>

#include "core/qvutils/xml/qvsax2parser.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

ProjectPtr Load(const std::filesystem::path& file) {
    ProjectPtr project = new SMProject2();
    project->m_baseDirectory = file.parent_path().string().c_str();
    SMProjectBuilder builder(project);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    parser.parse(I18NString(file.string().c_str()));
    return project;
}

std::vector<std::filesystem::path> Models() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(SMODEL_SOURCE_DIR "/examples/models"))
        if (entry.path().extension() == ".xml") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void Erase(std::string& text, const std::string& part) {
    for (std::size_t at; (at = text.find(part)) != std::string::npos;) text.erase(at, part.size());
}

/** Takes out of a document what is written and not read: the lists of a calculation, and that a role is intrinsic. */
std::string WithoutTheUnread(std::string text) {
    Erase(text, " intrinsic=\"true\"");
    for (const std::string tag : {"hierarchies", "dimensions"}) {
        const std::string open = "<" + tag + "><" + tag + ">", close = "</" + tag + "></" + tag + ">";
        for (std::size_t at; (at = text.find(open)) != std::string::npos;) text.erase(at, text.find(close, at) + close.size() - at);
    }
    return text;
}

class ModelDocuments : public testing::TestWithParam<std::filesystem::path> {};

}  // namespace

TEST_P(ModelDocuments, AreAFixedPoint) {
    CapturedLog log;
    const std::string once = WithoutTheUnread(WriteProject(*Load(GetParam())));
    log.Clear();
    const ProjectPtr project = ParseProject(once);
    EXPECT_THAT(log.Events(), testing::IsEmpty()) << "what the library writes it knows";
    EXPECT_TRUE(SameXml(once, WriteProject(*project)));
}

TEST_P(ModelDocuments, LeaveNoObjectBehind) {
    const CapturedLog log;
    const ProjectPtr project = Load(GetParam());
    const int before = project->GetAllObjects().GetCount();
    EXPECT_GT(before, 0);
    std::map<QvULString, QvULString> ids;
    project->RegenerateIds(ids);
    EXPECT_EQ(project->GetAllObjects().GetCount(), before);
}

INSTANTIATE_TEST_SUITE_P(Model, ModelDocuments, testing::ValuesIn(Models()), [](const auto& instance) {
    std::string name = std::filesystem::relative(instance.param, SMODEL_SOURCE_DIR "/examples/models").replace_extension().string();
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
});
