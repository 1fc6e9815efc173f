#include "objects/face/smmodeldocument_002_000.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
namespace fs = std::filesystem;

/** A directory of the test's own. */
class SMModelDocumentFiles : public ::testing::Test {
  protected:
    SMModelDocumentFiles() : m_directory(fs::path(::testing::TempDir()) / ("smodel-face-" + std::to_string(::getpid()))) {
        fs::create_directories(m_directory);
    }
    ~SMModelDocumentFiles() override { fs::remove_all(m_directory); }
    std::string Path(const std::string& name) const { return (m_directory / name).string(); }
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }
    static std::string Read(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_directory)) names.push_back(entry.path().filename().string());
        return names;
    }

  private:
    fs::path m_directory;
};

/** Refuses its n-th block. */
class FailingTarget : public QvXMLFormatTarget {
  protected:
    void overflow(const char*, std::size_t) override { throw TklRuntimeError("the target is full"); }
};

std::string ManyNamespaces(int count) {
    std::string content;
    for (int i = 0; i < count; ++i) content += NamespaceElement("n" + std::to_string(i));
    return ModelDocument(NamespaceElement("root", content));
}

TEST(SMModelDocument, LoadsBytes) {
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("Sales")));
    ASSERT_TRUE(loaded.IsDone());
    EXPECT_THAT(loaded.diagnostics, IsEmpty());
    EXPECT_TRUE(loaded.project->FindNamespaceByName("Sales"));
}

TEST(SMModelDocument, GathersEventsWithPlaceAndObject) {
    SMLoadOptions options;
    options.name = "doc";
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument("\n" + NamespaceElement("Sales", "<nonsense></nonsense>")), options);
    ASSERT_TRUE(loaded.IsDone());
    ASSERT_FALSE(loaded.diagnostics.empty());
    EXPECT_TRUE(loaded.HasFindings());
    EXPECT_THAT(FormatDiagnostic(loaded.diagnostics.front()), StartsWith("doc:3:"));
    EXPECT_EQ(loaded.diagnostics.front().objectPath, "[Sales]");
}

TEST(SMModelDocument, TellsWhereATruncatedDocumentEnds) {
    SMLoadOptions options;
    options.name = "doc";
    const SMLoadResult loaded = SMLoadModelBytes("<project>\n<name>", options);
    EXPECT_EQ(loaded.status, SMStatus::failed);
    EXPECT_FALSE(loaded.project);
    ASSERT_EQ(loaded.diagnostics.size(), 1u);
    EXPECT_EQ(loaded.diagnostics[0].severity, SMSeverity::error);
    EXPECT_EQ(loaded.diagnostics[0].file, "doc");
    EXPECT_EQ(loaded.diagnostics[0].line, 2);
    EXPECT_GT(loaded.diagnostics[0].column, 0);
}

TEST(SMModelDocument, RefusesAnotherRoot) {
    const SMLoadResult loaded = SMLoadModelBytes("<namespace></namespace>");
    EXPECT_EQ(loaded.status, SMStatus::failed);
    ASSERT_EQ(loaded.diagnostics.size(), 1u);
    EXPECT_EQ(loaded.diagnostics[0].message, "no model document: the root element is <namespace>, not <project>");
    EXPECT_EQ(loaded.diagnostics[0].line, 1);
}

TEST(SMModelDocument, KeepsItsLimits) {
    SMLoadOptions options;
    options.limits.depth = 3;
    const SMLoadResult loaded = SMLoadModelBytes(ManyNamespaces(1), options);
    EXPECT_EQ(loaded.status, SMStatus::failed);
    EXPECT_THAT(loaded.diagnostics.back().message, HasSubstr("deeper than 3"));
}

TEST(SMModelDocument, EndsALoadThatIsCancelledHalfway) {
    std::atomic<bool> cancelled{false};
    std::size_t calls = 0;
    SMLoadOptions options;
    options.control.cancelled = &cancelled;
    options.control.progress = [&](const SMProgress& progress) {
        EXPECT_EQ(progress.unit, SMProgress::elements);
        if (++calls == 2) cancelled = true;
    };
    const SMLoadResult loaded = SMLoadModelBytes(ManyNamespaces(9'000), options);
    EXPECT_EQ(loaded.status, SMStatus::cancelled);
    EXPECT_FALSE(loaded.project);
    EXPECT_THAT(loaded.diagnostics, IsEmpty());
    EXPECT_EQ(calls, 2u);
}

TEST(SMModelDocument, LogsNothingOfItsOwnBesideItsResult) {
    struct Counter : SMLogSink {
        int events = 0;
        void Take(const QvLogEvent&, const SMSourceContext*) override { ++events; }
    } outer;
    const SMLogScope scope(outer);
    EXPECT_TRUE(SMLoadModelBytes(ModelDocument("<nonsense></nonsense>")).HasFindings());
    EXPECT_EQ(outer.events, 0);
}

TEST(SMModelDocument, FailsWithItsTarget) {
    const SMLoadResult loaded = SMLoadModelBytes(ManyNamespaces(1));
    FailingTarget target;
    const SMSaveResult saved = SMWriteModel(*loaded.project, target);
    EXPECT_EQ(saved.status, SMStatus::failed);
    ASSERT_EQ(saved.diagnostics.size(), 1u);
    EXPECT_EQ(saved.diagnostics[0].message, "the target is full");
}

TEST(SMModelDocument, TurnsWhatACallbackThrowsIntoADiagnostic) {
    SMLoadOptions options;
    options.control.progress = [](const SMProgress&) { throw std::logic_error("no wish to look"); };
    const SMLoadResult loaded = SMLoadModelBytes(ManyNamespaces(1), options);
    EXPECT_EQ(loaded.status, SMStatus::failed);
    EXPECT_EQ(loaded.diagnostics.back().message, "no wish to look");
}

TEST(SMModelDocument, CountsTheBytesOfALongDocument) {
    const SMLoadResult loaded = SMLoadModelBytes(ManyNamespaces(3'000));
    I18NString text;
    QvStringWriter writer(text);
    std::vector<std::size_t> told;
    SMSaveOptions options;
    options.control.progress = [&](const SMProgress& progress) { told.push_back(progress.done); };
    const SMSaveResult saved = SMWriteModel(*loaded.project, writer, options);
    EXPECT_EQ(saved.bytes, text.utf8().size());
    EXPECT_GT(saved.bytes, 200'000u);
    ASSERT_GT(told.size(), 3u);
    EXPECT_EQ(told.back(), saved.bytes);
}

TEST(SMModelDocument, WritesWhatItReadsAgainAsTheSame) {
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("Sales") + MapElement("m", "a &lt; b")));
    const std::string text = CanonicalText(*loaded.project);
    EXPECT_EQ(CanonicalText(*SMLoadModelBytes(text).project), text);
}

TEST_F(SMModelDocumentFiles, SaveWhatTheyLoad) {
    const std::string in = Write("in.xml", ModelDocument(NamespaceElement("Sales"))), out = Path("out.xml");
    const SMLoadResult loaded = SMLoadModel(in);
    ASSERT_TRUE(loaded.IsDone());
    const SMSaveResult saved = SMSaveModel(*loaded.project, out);
    EXPECT_TRUE(saved.IsDone());
    EXPECT_EQ(Read(out), CanonicalText(*loaded.project));
    EXPECT_EQ(saved.bytes, fs::file_size(out));
}

TEST_F(SMModelDocumentFiles, NameTheDocumentAsTold) {
    SMLoadOptions options;
    options.name = "my model";
    EXPECT_EQ(SMLoadModel(Write("in.xml", "<project>"), options).diagnostics.at(0).file, "my model");
}

TEST_F(SMModelDocumentFiles, TellWhyADocumentCannotBeRead) {
    for (const std::string& path : {Path("absent.xml"), Path("")}) {
        const SMLoadResult loaded = SMLoadModel(path);
        EXPECT_EQ(loaded.status, SMStatus::failed) << path;
        ASSERT_EQ(loaded.diagnostics.size(), 1u) << path;
        EXPECT_EQ(loaded.diagnostics[0].file, path);
    }
}

TEST_F(SMModelDocumentFiles, FindTheFilesBesideTheDocument) {
    Write("part.qvf", NamespaceElement("Part"));
    const std::string main = Write(
        "main.xml", ModelDocument(NamespaceElement("root", "<smnamespacefile filepath=\"\" filename=\"part.qvf\"></smnamespacefile>")));
    const SMLoadResult loaded = SMLoadModel(main);
    ASSERT_TRUE(loaded.IsDone());
    EXPECT_THAT(loaded.diagnostics, IsEmpty());
    EXPECT_TRUE(loaded.project->FindNamespaceByName("Part"));
}

TEST_F(SMModelDocumentFiles, StayAsTheyWereWhenASaveIsCancelled) {
    const SMLoadResult loaded = SMLoadModelBytes(ManyNamespaces(3'000));
    const std::string out = Write("out.xml", "old");
    std::atomic<bool> cancelled{false};
    SMSaveOptions options;
    options.control.cancelled = &cancelled;
    options.control.progress = [&](const SMProgress&) { cancelled = true; };
    const SMSaveResult saved = SMSaveModel(*loaded.project, out, options);
    EXPECT_EQ(saved.status, SMStatus::cancelled);
    EXPECT_EQ(Read(out), "old");
    EXPECT_THAT(Files(), ElementsAre("out.xml"));
}

const SMNamespace2& RootOf(const SMLoadResult& loaded) {
    return *loaded.project->GetRootNamespace();
}

TEST(SMModelDocument, GivesNoDateToWhatTheDocumentDoesNotDate) {
    const std::string description = "<description locale=\"en\">d</description>";
    const SMLoadResult undated = SMLoadModelBytes(ModelDocument(NamespaceElement("root", description)));
    EXPECT_FALSE(RootOf(undated).GetLastChangedDate().IsSet());
    const SMLoadResult dated =
        SMLoadModelBytes(ModelDocument(NamespaceElement("root", description + "<lastChanged>2999-01-02T03:04:05</lastChanged>")));
    EXPECT_EQ(RootOf(dated).GetLastChangedDate(), QvDate("2999-01-02T03:04:05")) << "also when that is later than now";
}

}  // namespace
