#include <random>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/repository/documents/piececutter.h"
#include "tests/core/repository/repositorytest.h"

namespace {

std::string Prose(unsigned seed, std::size_t bytes) {
    std::minstd_rand random(seed);
    std::string text;
    while (text.size() < bytes) text += "<name>" + std::to_string(random()) + "</name>";
    text.resize(bytes);
    return text;
}

std::vector<std::string> Cut(std::string_view text, std::size_t step) {
    std::vector<std::string> pieces;
    qv::PieceCutter cutter([&](std::string_view piece) { pieces.emplace_back(piece); });
    for (std::size_t at = 0; at < text.size(); at += step) cutter.Add(text.substr(at, step));
    cutter.Finish();
    return pieces;
}

/** Saves projects together with documents. */
class RepositoryDocuments : public RepositoryTest {
  protected:
    long Put(SMRepositoryHelper& context, TestNode& project, std::string_view document) {
        const long before = context.Counters().rowsWritten;
        context.DocumentTarget()->write(document);
        EXPECT_TRUE(project.write(context));
        return context.Counters().rowsWritten - before;
    }
    static std::string DocumentOf(SMRepositoryHelper& context) {
        TklByteBuffer bytes;
        QvByteBufferWriter writer(bytes);
        if (!context.ReadDocument(writer)) return "none";
        return std::string(bytes.view());
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryDocuments, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

}  // namespace

TEST(PieceCutter, CutsTheSameHoweverTheBytesCome) {
    const std::string text = Prose(1, 300'000);
    const std::vector<std::string> whole = Cut(text, text.size());
    EXPECT_GT(whole.size(), 5u);
    EXPECT_EQ(Cut(text, 1), whole);
    EXPECT_EQ(Cut(text, 4097), whole);
    std::string joined;
    for (const std::string& piece : whole) joined += piece;
    EXPECT_EQ(joined, text);
}

TEST(PieceCutter, KeepsToItsBounds) {
    for (const std::string& text : {Prose(2, 400'000), std::string(400'000, 'x'), std::string(400'000, '\0')}) {
        const std::vector<std::string> pieces = Cut(text, 10'000);
        for (std::size_t at = 0; at + 1 < pieces.size(); ++at) {
            EXPECT_GE(pieces[at].size(), qv::PieceCutter::MIN_BYTES);
            EXPECT_LE(pieces[at].size(), qv::PieceCutter::MAX_BYTES);
        }
    }
}

TEST(PieceCutter, FindsTheOldPiecesAgainBehindAnEdit) {
    const std::string text = Prose(3, 1'000'000);
    std::string edited = text;
    edited.insert(500'000, "a word");
    const std::vector<std::string> before = Cut(text, text.size());
    std::size_t added = 0;
    for (const std::string& piece : Cut(edited, edited.size())) added += std::find(before.begin(), before.end(), piece) == before.end();
    EXPECT_GE(added, 1u);
    EXPECT_LE(added, 3u);
}

TEST_P(RepositoryDocuments, ComeBackByteForByteAtEachRevision) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    // small, several pieces, and more pieces than one list holds
    const std::string documents[] = {"<project></project>", Prose(4, 200'000), Prose(5, 20'000'000), std::string("\0\xff", 2),
                                     std::string()};
    for (const std::string& document : documents) Put(*context, *project, document);
    const auto reader = repository->OpenProject(context->ProjectNumber());
    EXPECT_EQ(reader->Revision(), 5) << "a document that differs is a revision, though no row does";
    for (long revision = 1; revision <= 5; ++revision) {
        reader->ReadAt(revision);
        EXPECT_TRUE(DocumentOf(*reader) == documents[revision - 1]) << revision;
    }
}

TEST_P(RepositoryDocuments, ShareWhatDidNotChange) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    std::string document = Prose(6, 5'000'000);
    EXPECT_GT(Put(*context, *project, document), 200);
    document.insert(2'500'000, "a word");
    EXPECT_LE(Put(*context, *project, document), 3 + 2 + REVISION) << "pieces around the word, the lists that hold them, and the revision";
}

TEST_P(RepositoryDocuments, ThatAreTheSameMakeNoRevision) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    Put(*context, *project, "<project></project>");
    EXPECT_EQ(Put(*context, *project, "<project></project>"), 0);
    EXPECT_EQ(context->Revision(), 1);
}

TEST_P(RepositoryDocuments, AreMadeWholeByTheNextSaveWhereAPieceWasLost) {
    const QvSmartPtr<TestNode> project = Sample();
    std::string document = Prose(8, 500'000);
    Put(*repository->NewProject(), *project, document);
    const auto losePieces = [&] {
        const auto connection = backend->Connect();
        const qv::TableShape& pieces =
            *std::find_if(plan->tables.begin(), plan->tables.end(), [](const qv::TableShape& shape) { return shape.name == "REPO_PIECE"; });
        std::vector<std::string> digests;
        {
            const auto source = connection->Prepare(qv::Query{&pieces, {1}, {}});
            source->Start({});
            for (qv::Cell row[1]; source->Next(row);) digests.emplace_back(row[0].view);
        }
        connection->Begin();
        const auto removal = connection->Prepare(qv::Removal{&pieces, {{1, qv::Condition::equal}}});
        for (std::size_t at = 0; at < digests.size(); at += 5) {
            const qv::Cell parameters[] = {qv::Cell::Text(digests[at])};
            EXPECT_EQ(removal->Run(parameters), 1);
        }
        connection->Commit();
        EXPECT_THROW(DocumentOf(*repository->OpenProject(1)), TklRuntimeError);
    };
    losePieces();
    EXPECT_GT(Put(*repository->OpenProject(1), *project, document), REVISION) << "though it is the same";
    EXPECT_TRUE(DocumentOf(*repository->OpenProject(1)) == document);
    losePieces();
    document.insert(250'000, "a word");
    Put(*repository->OpenProject(1), *project, document);
    EXPECT_TRUE(DocumentOf(*repository->OpenProject(1)) == document);
    EXPECT_EQ(repository->Revisions(1).size(), 3u);
    repository->Prune(1, 1);  // what the edit replaced is still lost to the older ones
}

TEST_P(RepositoryDocuments, AreNotThereForASaveWithoutOne) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    EXPECT_TRUE(project->write(*context));
    EXPECT_EQ(DocumentOf(*context), "none");
    EXPECT_FALSE(repository->Revisions(1).front().hasDocument);
}

TEST_P(RepositoryDocuments, LeaveNothingBehindWhenTheSaveFails) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    Put(*context, *project, "<project></project>");
    for (long step = 1; step <= 4; ++step) {
        plan->writes = 0;
        plan->failsAt = step;
        plan->commits = true;
        context->DocumentTarget()->write(Prose(7, 20'000));
        EXPECT_FALSE(project->write(*context)) << step;
    }
    plan->failsAt = 0;
    EXPECT_EQ(DocumentOf(*repository->OpenProject(1)), "<project></project>");
    EXPECT_EQ(repository->Revisions(1).size(), 1u);
}
