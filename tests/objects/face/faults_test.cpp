// Watchers that raise, and targets that are full: at each of the places where they can.
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <sys/resource.h>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smmodelfiles_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "tests/support/facemodel.h"
#include "tests/support/tempdir.h"

using namespace schema_002_000;
using testing::HasSubstr;

namespace {

const std::string LINKED = ModelDocument(
    NamespaceElement("root",
                     "<folder><name locale=\"en\">f</name><shortcut><name locale=\"en\">s</name><refobj>[root].[gone]</refobj>"
                     "</shortcut><calculation><name locale=\"en\">c</name><expression>1 + <refobj>[root].[s]</refobj></expression>"
                     "</calculation></folder>" +
                         NamespaceElement("inner")) +
    MapElement("map", "value"));
const std::string ODD = ModelDocument(NamespaceElement("root", "<odd></odd><folder><even></even></folder><odd><odd></odd></odd>"));

struct Thrown {};

/** Raises at its n-th call, counted from 1. */
class Fuse {
  public:
    explicit Fuse(int n) : m_left(n) {}
    void Burn() {
        if (--m_left == 0) throw Thrown();
    }
    bool HasBlown() const { return m_left <= 0; }

  private:
    int m_left;
};

class ThrowingSink : public SMLogSink {
  public:
    explicit ThrowingSink(int n) : fuse(n) {}
    void Take(const QvLogEvent&, const SMSourceContext*) override { fuse.Burn(); }
    Fuse fuse;
};

/** Raises at its n-th write, as a device does that is full. */
class FullTarget : public QvXMLFormatTarget {
  public:
    explicit FullTarget(int n) : fuse(n) {}
    Fuse fuse;

  protected:
    void overflow(const char*, std::size_t) override {
        try {
            fuse.Burn();
        } catch (const Thrown&) {
            throw TklRuntimeError("the target is full");
        }
    }
};

/** A control whose progress call is the fuse. */
SMControl ControlOf(Fuse& fuse) {
    SMControl control;
    control.progress = [&](const SMProgress&) { fuse.Burn(); };
    return control;
}

/** For its life no file grows beyond `bytes`; a write there fails instead of ending the process. */
class FileBound {
  public:
    explicit FileBound(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit bound{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &bound);
    }
    ~FileBound() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileBound(const FileBound&) = delete;
    FileBound& operator=(const FileBound&) = delete;

  private:
    rlimit m_before{};
    void (*m_handler)(int);
};

QvSmartPtr<SMProject2> ProjectOf(const std::string& document) {
    return SMLoadModelBytes(document).project;
}

/** Runs `step(fuse)` for n = 1, 2, ... until it has no n-th call; gives how often it blew. `failed` looks at each run that it blew in. */
template <class Step>
int ForEachCall(Step step) {
    int n = 1;
    while (true) {
        Fuse fuse(n);
        step(fuse);
        if (!fuse.HasBlown()) return n - 1;
        ++n;
    }
}

std::string AllFilesOf(const TempDir& directory) {
    std::string all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.Path())) all += entry.path().string() + "\n";
    return all;
}

}  // namespace

TEST(FaultySink, EndsAParseWithWhatItRaises) {
    int n = 1;
    for (;; ++n) {
        ThrowingSink sink(n);
        const QvSmartPtr<SMProject2> project = new SMProject2();
        bool hasThrown = false;
        try {
            const SMLogScope scope(sink);
            SMProjectBuilder builder(project);
            QvSAX2Parser parser;
            parser.setContentHandler(&builder);
            parser.parse(ODD.data(), ODD.size());
        } catch (const Thrown&) {
            hasThrown = true;
        }
        ASSERT_EQ(hasThrown, sink.fuse.HasBlown()) << n;
        if (!hasThrown) break;
    }
    EXPECT_GT(n, 5);
}

TEST(FaultyProgress, MakesALoadFailAndLeavesTheNextOneWhole) {
    const std::string large = ModelDocument(NamespaceElement("root", [] {
        std::string folders;
        for (int i = 0; i < 10'000; ++i) folders += "<folder><name locale=\"en\">f" + std::to_string(i) + "</name></folder>";
        return folders;
    }()));
    const int calls = ForEachCall([&](Fuse& fuse) {
        SMLoadOptions options;
        options.control = ControlOf(fuse);
        const SMLoadResult loaded = SMLoadModelBytes(large, options);
        ASSERT_EQ(loaded.IsDone(), !fuse.HasBlown());
        ASSERT_EQ(loaded.project != nullptr, loaded.IsDone());
        ASSERT_EQ(loaded.diagnostics.empty(), loaded.IsDone());
    });
    EXPECT_GT(calls, 3);
    EXPECT_TRUE(SMLoadModelBytes(large).IsDone());
}

TEST(FaultyProgress, MakesASaveFailAndLeavesTheOldFile) {
    const TempDir directory;
    const QvSmartPtr<SMProject2> project = ProjectOf(LINKED);
    const std::string path = directory.Write("a.xml", "old");
    const int calls = ForEachCall([&](Fuse& fuse) {
        directory.Write("a.xml", "old");
        SMSaveOptions options;
        options.control = ControlOf(fuse);
        const SMSaveResult saved = SMSaveModel(*project, path, options);
        ASSERT_EQ(saved.IsDone(), !fuse.HasBlown());
        ASSERT_EQ(directory.Read("a.xml"), saved.IsDone() ? CanonicalText(*project) : "old");
        ASSERT_EQ(directory.Files(), 1u);
    });
    EXPECT_GE(calls, 1);
}

TEST(FaultyProgress, MakesASplitFailAndLeavesTheDirectory) {
    const TempDir directory;
    const QvSmartPtr<SMProject2> project = ProjectOf(LINKED);
    const std::string text = CanonicalText(*project);
    ASSERT_TRUE(SMSplitModel(*project, directory.Path("d")).IsDone());
    const std::string before = AllFilesOf(directory), main = directory.Read("d/main.xml");
    project->SetName("other");
    project->SetName("Test");
    const int calls = ForEachCall([&](Fuse& fuse) {
        SMSplitOptions options;
        options.control = ControlOf(fuse);
        const SMSplitResult split = SMSplitModel(*project, directory.Path("d"), options);
        ASSERT_EQ(split.IsDone(), !fuse.HasBlown());
        ASSERT_EQ(AllFilesOf(directory), before);
        ASSERT_EQ(directory.Read("d/main.xml"), main);
        ASSERT_EQ(CanonicalText(*project), text) << "the project is as before";
    });
    EXPECT_GE(calls, 1);
}

TEST(FaultyProgress, MakesACheckFail) {
    const QvSmartPtr<SMProject2> project = ProjectOf(LINKED);
    const int calls = ForEachCall([&](Fuse& fuse) {
        const SMReferenceCheck check = SMCheckReferences(*project, ControlOf(fuse));
        ASSERT_EQ(check.IsDone(), !fuse.HasBlown());
    });
    EXPECT_GE(calls, 1);
    EXPECT_EQ(SMCheckReferences(*project).dangling.size(), 1u);
}

TEST(FaultyTarget, MakesAWriteFailWhereverItIsFull) {
    const QvSmartPtr<SMProject2> project = ProjectOf(LINKED);
    const std::string text = CanonicalText(*project);
    int n = 1;
    for (;; ++n) {
        FullTarget target(n);
        const SMSaveResult saved = SMWriteModel(*project, target);
        ASSERT_EQ(saved.IsDone(), !target.fuse.HasBlown()) << n;
        if (saved.IsDone()) break;
        ASSERT_EQ(saved.diagnostics.back().message, "the target is full") << n;
    }
    EXPECT_GT(n, 1);
    EXPECT_EQ(CanonicalText(*project), text);
}

TEST(FullDevice, LeavesTheOldFileAtEachByte) {
    const TempDir directory;
    const QvSmartPtr<SMProject2> project = ProjectOf(LINKED);
    const std::string path = directory.Write("a.xml", "old"), text = CanonicalText(*project);
    for (std::size_t bytes = 0; bytes < text.size(); bytes += 13) {
        SMSaveResult saved;
        {
            const FileBound bound(bytes);
            saved = SMSaveModel(*project, path);
        }
        ASSERT_EQ(saved.status, SMStatus::failed) << bytes;
        ASSERT_THAT(saved.diagnostics.back().message, HasSubstr("cannot write: File too large")) << bytes;
        ASSERT_EQ(directory.Read("a.xml"), "old") << bytes;
        ASSERT_EQ(directory.Files(), 1u) << bytes;
    }
    EXPECT_TRUE(SMSaveModel(*project, path).IsDone());
    EXPECT_EQ(directory.Read("a.xml"), text);
    EXPECT_THAT(SMSaveModel(*project, "/dev/full").diagnostics.back().message, HasSubstr("cannot write: No space left on device"));
}

TEST(FullDevice, LeavesTheDirectoryOfASplitAtEachByte) {
    const TempDir directory;
    const QvSmartPtr<SMProject2> project = ProjectOf(LINKED);
    for (std::size_t bytes = 0; bytes < 400; bytes += 13) {
        SMSplitResult split;
        {
            const FileBound bound(bytes);
            split = SMSplitModel(*project, directory.Path("d"));
        }
        if (split.IsDone()) break;
        ASSERT_THAT(split.diagnostics.back().message, HasSubstr("File too large")) << bytes;
        ASSERT_FALSE(std::filesystem::exists(directory.Path("d/main.xml"))) << bytes;
        std::filesystem::remove_all(directory.Path("d"));
    }
    EXPECT_TRUE(SMSplitModel(*project, directory.Path("d")).IsDone());
}
