// Whole model documents: what the library writes is what it reads.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

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

/** Without what the examples have for people alone: lines between elements, and quotes escaped in texts. */
std::string WithoutLayout(const std::string& document) {
    std::string out;
    for (std::size_t at = 0; at < document.size();) {
        const std::size_t open = std::min(document.find('<', at), document.size());
        std::string text = document.substr(at, open - at);
        const bool isLayout = !text.empty() && text[0] == '\n' && text.find_first_not_of(" \n") == std::string::npos;
        for (std::size_t quote; (quote = text.find("&quot;")) != std::string::npos;) text.replace(quote, 6, "\"");
        if (!isLayout) out += text;
        at = open == document.size() ? open : document.find('>', open) + 1;
        out += document.substr(open, at - open);
    }
    return out;
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

TEST_P(ModelDocuments, AreWrittenAsTheyStand) {
    const CapturedLog log;
    std::filesystem::path file = GetParam();
    if (file.filename() == "reader_forms.xml") return;  // made of forms that are read and not written
    const std::string written = WriteProject(*Load(file));
    if (file.filename() == "main.xml") file.replace_filename("single.xml");  // what its parts make together
    std::ifstream stream(file);
    const std::string document(std::istreambuf_iterator<char>(stream), {});
    EXPECT_TRUE(SameXml(WithoutLayout(document), WithoutLayout(written)));
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
