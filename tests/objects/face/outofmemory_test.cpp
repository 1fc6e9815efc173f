// What a load and a save leave behind when the memory ends at any of their allocations.
#include <gmock/gmock.h>

#include <filesystem>
#include <new>
#include <optional>

#include "tests/support/sanitized.h"
#include "objects/face/smmodelfiles_002_000.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "tests/core/repository/repositorytest.h"
#include "tests/support/facemodel.h"
#include "tests/support/failingnew.h"
#include "tests/support/storerows.h"
#include "tests/support/tempdir.h"

using namespace schema_002_000;

namespace {

/** A few objects of several kinds, with texts in two locales, kept XML and a custom property. */
const std::string SMALL =
    ModelDocument(NamespaceElement("root",
                                   "<property name=\"id\">r</property><property name=\"p\" type=\"t\">v</property>"
                                   "<querySubject><name locale=\"en\">subject</name><name locale=\"fr\">sujet</name>"
                                   "<property name=\"id\">s</property><definition id=\"d\"><modelQuery></modelQuery></definition>"
                                   "<queryItem><name locale=\"en\">item</name><property name=\"id\">i</property>"
                                   "<expression>1 + <refobj>[root].[other]</refobj></expression></queryItem></querySubject>") +
                  MapElement("map", "value"));

/** Runs `step` with its n-th allocation failing; true when one failed. What the step raises must be std::bad_alloc. */
template <class Step>
bool RunsOutOfMemory(long n, Step step) {
    const FailingNew failing(n);
    try {
        step();
    } catch (const std::bad_alloc&) {
    }
    return failing.HasFailed();
}

class OutOfMemory : public RepositoryTest {
  protected:
    /** How far the next failure is from the last one: a server is slow, so that some of the places must do. */
    static long Stride() { return std::string_view(GetParam().name) == "Postgres" ? 13 : 1; }
    std::string Rows() { return RowsOf(*backend, plan->tables); }
    static std::string TextIn(SMRepositoryHelper& context) {
        const SMGetResult got = SMGetModel(context);
        return got.IsDone() ? CanonicalText(*got.project) : "not read";
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, OutOfMemory, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

}  // namespace

TEST(OutOfMemoryLoad, GivesTheWholeModelOrNone) {
    const std::string text = CanonicalText(*SMLoadModelBytes(SMALL).project);
    long n = 1;
    for (bool failed = true; failed; ++n) {
        std::optional<SMLoadResult> loaded;
        failed = RunsOutOfMemory(n, [&] { loaded = SMLoadModelBytes(SMALL); });
        if (loaded && loaded->IsDone()) {
            ASSERT_EQ(CanonicalText(*loaded->project), text) << n;
        } else if (loaded) {
            ASSERT_FALSE(loaded->project || loaded->diagnostics.empty()) << n;
        }
        ASSERT_EQ(CanonicalText(*SMLoadModelBytes(SMALL).project), text) << "the load behind allocation " << n;
    }
    EXPECT_GT(n, 40);
}

#if !SMODEL_SANITIZED
TEST(OutOfMemoryTexts, FailLikeAllElse) {
    ASSERT_TRUE(FailingNew::CountsMalloc());
    bool failed = false;
    try {
        const FailingNew failing(1);
        const I18NString text(std::string_view("a text that is too long to stand in the string itself, whatever that holds"));
    } catch (const std::bad_alloc&) {
        failed = true;
    }
    EXPECT_TRUE(failed);
}
#endif

TEST(OutOfMemoryWrite, GivesTheWholeDocumentOrFails) {
    const SMLoadResult model = SMLoadModelBytes(SMALL);
    const std::string text = CanonicalText(*model.project);
    const TempDir directory;
    const std::string path = directory.Write("a.xml", "old");
    long n = 1;
    for (bool failed = true; failed; ++n) {
        bool isSaved = false;
        failed = RunsOutOfMemory(n, [&] { isSaved = SMSaveModel(*model.project, path).IsDone(); });
        const std::string there = directory.Read("a.xml");
        ASSERT_TRUE(there == text || (!isSaved && there == "old")) << n << "\n" << there;
        ASSERT_EQ(directory.Files(), 1u) << n;
        directory.Write("a.xml", "old");
    }
    EXPECT_GT(n, 5);
    EXPECT_EQ(CanonicalText(*model.project), text);
}

TEST(OutOfMemoryCheck, LeavesTheModelAsItWas) {
    const SMLoadResult model = SMLoadModelBytes(SMALL);
    const std::string text = CanonicalText(*model.project);
    long n = 1;
    for (bool failed = true; failed; ++n) {
        std::optional<SMReferenceCheck> check;
        failed = RunsOutOfMemory(n, [&] { check = SMCheckReferences(*model.project); });
        if (!failed) {
            ASSERT_TRUE(check && check->IsDone() && check->dangling.size() == 1) << n;
        }
    }
    EXPECT_GT(n, 10);
    EXPECT_EQ(CanonicalText(*model.project), text);
}

TEST(OutOfMemorySplit, LeavesTheDirectoryAndTheModelAsTheyWere) {
    const SMLoadResult model = SMLoadModelBytes(SMALL);
    const std::string text = CanonicalText(*model.project);
    const TempDir directory;
    std::string main;
    long n = 1;
    for (bool failed = true; failed; ++n) {
        std::optional<SMSplitResult> split;
        const std::string into = directory.Path("d" + std::to_string(n));
        failed = RunsOutOfMemory(n, [&] { split = SMSplitModel(*model.project, into); });
        if (split && split->IsDone()) {
            const std::string written = directory.Read("d" + std::to_string(n) + "/main.xml");
            if (main.empty()) main = written;
            ASSERT_EQ(written, main) << n;
        } else {
            ASSERT_FALSE(std::filesystem::exists(into + "/main.xml")) << n;
        }
        ASSERT_EQ(CanonicalText(*model.project), text) << n;
    }
    EXPECT_GT(n, 50);
}

TEST_P(OutOfMemory, LeavesTheStoreAsItWasInAFirstSave) {
    const SMLoadResult model = SMLoadModelBytes(SMALL);
    const std::string before = Rows();
    const auto context = repository->NewProject();
    long n = 1;
    for (bool done = false; !done; n += Stride()) {
        const bool failed = RunsOutOfMemory(n, [&] { done = model.project->write(*context); });
        if (!done) {
            ASSERT_EQ(Rows(), before) << n;
        }
        if (!failed) {
            ASSERT_TRUE(done) << n;
        }
    }
    EXPECT_GT(n, 100);
    EXPECT_EQ(TextIn(*context), CanonicalText(*model.project));
}

TEST_P(OutOfMemory, LeavesTheRevisionBeforeInALaterSave) {
    const SMLoadResult model = SMLoadModelBytes(SMALL);
    const auto context = repository->NewProject();
    ASSERT_TRUE(SMPutModel(*model.project, *context).IsDone());
    model.project->SetName("other");
    model.project->AddParameterMapOrReturnExisting("map", true);
    model.project->AddParameterMapOrReturnExisting("new", true);
    const std::string before = Rows();
    long n = 1;
    for (bool done = false; !done; n += Stride()) {
        const bool failed = RunsOutOfMemory(n, [&] { done = model.project->write(*context); });
        if (!done) {
            ASSERT_EQ(Rows(), before) << n;
        }
        if (!failed) {
            ASSERT_TRUE(done) << n;
        }
    }
    EXPECT_GT(n, 50);
    EXPECT_EQ(TextIn(*context), CanonicalText(*model.project));
}

TEST_P(OutOfMemory, GivesTheWholeModelOrNoneInARead) {
    const SMLoadResult model = SMLoadModelBytes(SMALL);
    const auto context = repository->NewProject();
    ASSERT_TRUE(SMPutModel(*model.project, *context).IsDone());
    const std::string text = TextIn(*context);
    long n = 1;
    for (bool failed = true; failed; ++n) {
        std::optional<SMGetResult> got;
        failed = RunsOutOfMemory(n, [&] { got = SMGetModel(*context); });
        if (got && got->IsDone()) {
            ASSERT_EQ(CanonicalText(*got->project), text) << n;
        }
        if (!failed) {
            ASSERT_TRUE(got && got->IsDone()) << n;
        }
    }
    EXPECT_GT(n, 100);
    EXPECT_EQ(TextIn(*context), text);
}

TEST_P(OutOfMemory, TellsThatAPutIsDoneWhenItStands) {
    // of two objects with one id the second gets another, which is told
    std::string twins = SMALL;
    twins.insert(twins.find("</definition>") + 13,
                 "<queryItem><name locale=\"en\">twin</name><property name=\"id\">i</property></queryItem>");
    // from the second put on it finds that one again, so that each put takes about the same memory
    ASSERT_TRUE(SMPutModel(*SMLoadModelBytes(twins).project, *repository->NewProject()).IsDone());
    int puts = 1000000;
    bool done = false;
    const auto fails = [&](long n) {
        const SMLoadResult model = SMLoadModelBytes(twins);
        model.project->SetName(I18NString(std::string_view(std::to_string(++puts))));
        const auto context = repository->OpenProject(1);
        std::optional<SMPutResult> put;
        const bool failed = RunsOutOfMemory(n, [&] { put = SMPutModel(*model.project, *context); });
        done = put && put->IsDone();
        return failed;
    };
    long most = 1;
    while (fails(most)) most *= 2;
    for (long least = most / 2; most - least > 1;) (fails((least + most) / 2) ? least : most) = (least + most) / 2;
    // few allocations lie behind the commit, and a put in which a table grows takes one more than its neighbours
    int toldInSpite = 0;
    for (int pass = 0; pass < 20 && toldInSpite == 0; ++pass) {
        for (long n = most - 20; n < most + 4; ++n) {
            const long before = repository->Projects().front().revision;
            const bool failed = fails(n);
            ASSERT_EQ(done, repository->Projects().front().revision > before) << n << " of " << most;
            toldInSpite += failed && done;
        }
    }
    EXPECT_GT(toldInSpite, 0);
}
