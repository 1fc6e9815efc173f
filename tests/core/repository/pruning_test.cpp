// What those who read a revision get when a prune takes it away meanwhile.
#include <gmock/gmock.h>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "tests/core/repository/repositorytest.h"

namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

class RepositoryPruning : public RepositoryTest {
  protected:
    static constexpr long NUMBER = 1;
    RepositoryPruning() { Save(); }

    /** One more revision, in which a row of several tables is another and the document has other pieces. */
    void Save() {
        const std::string edition = std::to_string(++m_edition);
        Map(*project).Named("Map " + edition);
        Map(*project).Child(0).Set("VALUE", TestNode::Text(edition.c_str()));
        Root(*project).Named("Root " + edition);
        Root(*project).names["fr"] = "Racine " + edition;
        Root(*project).records["property"] = "<a>" + edition + "</a>";
        std::swap(Root(*project).children[0], Root(*project).children[1]);
        const auto context = m_edition == 1 ? repository->NewProject() : repository->OpenProject(NUMBER);
        std::string document;
        for (int line = 0; line < 5'000; ++line) document += "<line>" + edition + " " + std::to_string(line) + "</line>";
        context->DocumentTarget()->write(document);
        ASSERT_TRUE(project->write(*context));
    }
    static std::string Tell(const std::vector<SMRepositoryChange>& changes) {
        std::string text;
        for (const SMRepositoryChange& change : changes) {
            text += std::string(change.id.utf8()) + (change.order ? " order" : "");
            for (const SMRepositoryValue& value : change.values) text += " " + std::string(value.after.utf8());
            text += "\n";
        }
        return text;
    }
    std::unique_ptr<SMRepositoryHelper> ContextAt(long revision) {
        auto context = repository->OpenProject(NUMBER);
        context->ReadAt(revision);
        return context;
    }
    /** What the work gives, or what the log or an error tells of why it failed. */
    template <class Work>
    static std::string Outcome(Work&& work) {
        CaughtLog log;
        std::string told;
        try {
            told = work();
        } catch (const TklRuntimeError& error) {
            told = error.what();
        }
        for (const std::string& message : log.messages) told += message;
        return told;
    }
    /** Prunes before each question that the reader of a revision asks in turn: what it gives is whole, or it tells what became of it. */
    template <class Read>
    void PruneWhile(Read&& read) {
        long told = 0;
        // the order of the questions is the same on each store, so that one that answers at once is asked at each
        const long step = GetParam().name == std::string_view("Memory") ? 1 : 6;
        for (long n = 1;; n += step) {
            Save();
            const long revision = repository->OpenProject(NUMBER)->Revision() - 1;
            const std::string whole = Outcome([&] { return read(revision); });
            plan->Meanwhile(n, [&] { repository->Prune(NUMBER, 1); });
            const std::string got = Outcome([&] { return read(revision); });
            const bool isOver = plan->meanwhile != nullptr;
            plan->meanwhile = nullptr;
            EXPECT_THAT(got, AnyOf(whole, HasSubstr("Revision " + std::to_string(revision) + " is not in the repository; a prune may have"),
                                   HasSubstr("There is no revision " + std::to_string(revision))))
                << "before question " << n;
            told += got != whole;
            if (isOver || HasFailure()) break;
        }
        EXPECT_GT(told, 0);
    }

    QvSmartPtr<TestNode> project = Sample();

  private:
    int m_edition = 0;
};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryPruning, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryPruning, LeavesALoadWholeOrTold) {
    PruneWhile([&](long revision) {
        const QvSmartPtr<TestNode> node = ReadTestProject(*ContextAt(revision));
        return node ? node->Dump(false) : std::string();
    });
}

TEST_P(RepositoryPruning, LeavesADocumentWholeOrTold) {
    PruneWhile([&](long revision) {
        TklByteBuffer bytes;
        QvByteBufferWriter writer(bytes);
        ContextAt(revision)->ReadDocument(writer);
        return std::string(bytes.view());
    });
}

TEST_P(RepositoryPruning, LeavesADifferenceWholeOrTold) {
    PruneWhile([&](long revision) { return Tell(repository->Changes(NUMBER, revision, revision + 1)); });
}

TEST_P(RepositoryPruning, LeavesAComparisonWholeOrTold) {
    const QvSmartPtr<TestNode> other = Sample();
    PruneWhile([&](long revision) -> std::string {
        try {
            return Tell(ContextAt(revision)->Compare(*other));
        } catch (const TklRuntimeError& error) {
            repository->CountChanges(NUMBER, 0, revision);  // tells that the revision went
            return error.what();
        }
    });
}

TEST_P(RepositoryPruning, TakesNoRevisionForDamaged) {
    PruneWhile([&](long revision) { return testing::PrintToString(repository->Faults(NUMBER, revision)); });
}

TEST_P(RepositoryPruning, OfTheBaseOfASaveLetsItComeSecond) {
    long second = 0;
    for (long n = 1;; n += GetParam().name == std::string_view("Memory") ? 1 : 6) {
        const auto context = repository->OpenProject(NUMBER);
        const long base = context->Revision();
        const QvSmartPtr<TestNode> mine = Sample();
        plan->Meanwhile(n, [&] {
            Save();
            repository->Prune(NUMBER, 1);
        });
        CaughtLog log;
        const bool isSaved = mine->write(*context);
        const bool isOver = plan->meanwhile != nullptr;
        plan->meanwhile = nullptr;
        EXPECT_TRUE(isSaved || context->MovedOn()) << "before question " << n << ": " << log.Only();
        EXPECT_EQ(context->Revision(), isSaved ? base + 1 : base);
        second += !isSaved;
        if (isOver || HasFailure()) break;
    }
    EXPECT_GT(second, 0);
}

}  // namespace
