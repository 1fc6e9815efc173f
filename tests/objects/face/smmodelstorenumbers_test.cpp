// What a put of a document writes of the numbers of siblings.
#include <algorithm>
#include <random>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smmodelstore_002_000.h"
#include "tests/core/repository/repositorytest.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;

using Names = std::vector<std::string>;

/** Filters, subjects and calculations, which stand in tables of their own and in one order. */
std::string Element(const std::string& name) {
    const std::string head = "<name locale=\"en\">" + name + "</name><property name=\"id\">" + name + "</property>";
    if (name.front() == 'f') return "<filter>" + head + "<expression>1</expression></filter>";
    if (name.front() == 'c') return "<calculation>" + head + "<expression>1</expression></calculation>";
    return "<querySubject>" + head + "<definition id=\"d" + name + "\"><modelQuery></modelQuery></definition></querySubject>";
}

std::string Section(const std::string& name, const Names& children) {
    std::string content = "<property name=\"id\">" + name + "</property>";
    for (const std::string& child : children) content += Element(child);
    return NamespaceElement(name, content);
}

class PutOfNumbers : public RepositoryTest {
  protected:
    static QvSmartPtr<SMProject2> Load(const Names& first, const Names& second) {
        return SMLoadModelBytes(ModelDocument(NamespaceElement(
                                    "root", "<property name=\"id\">root</property>" + Section("A", first) + Section("B", second))))
            .project;
    }
    /** Puts and gives how many rows were written, without those of the revision and its document, and ended. */
    std::pair<long, long> PutOf(const Names& first, const Names& second) {
        const bool isNew = repository->Projects().empty();
        const auto context = isNew ? repository->NewProject() : repository->OpenProject(1);
        const QvSmartPtr<SMProject2> project = Load(first, second);
        const long before = context->Revision();
        EXPECT_TRUE(SMPutModel(*project, *context).IsDone());
        EXPECT_EQ(TextOfRows(), CanonicalText(*project));
        EXPECT_TRUE(repository->OpenProject(1)->Compare(*Load(first, second)).empty());
        return {context->Counters().rowsWritten - (context->Revision() > before ? REVISION + PIECE : 0), context->Counters().rowsEnded};
    }
    /** So small a document is one. */
    static constexpr long PIECE = 1;
    /** The record that lists the siblings of a kind, where one of them moved among these. */
    static constexpr long ORDER = 1;
    std::string TextOfRows() {
        const SMGetResult got = SMGetModel(*repository->OpenProject(1));
        return got.IsDone() ? CanonicalText(*got.project) : "not read";
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, PutOfNumbers, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(PutOfNumbers, WritesNoSiblingOfOneThatWent) {
    PutOf({"f1", "s2", "c3", "f4", "s5", "c6", "f7", "s8"}, {});
    EXPECT_EQ(PutOf({"s2", "c3", "f4", "s5", "c6", "f7", "s8"}, {}), std::make_pair(0L, 1L));
    EXPECT_EQ(PutOf({"s2", "c3", "f4", "c6", "f7"}, {}), std::make_pair(0L, 4L)) << "two subjects, and their definitions";
}

TEST_P(PutOfNumbers, WritesOfAMoveTheOneThatMoved) {
    PutOf({"f1", "f2", "f3", "c4", "c5", "f6"}, {"f7", "c8"});
    EXPECT_EQ(PutOf({"f2", "f3", "c4", "c5", "f6", "f1"}, {"f7", "c8"}), std::make_pair(1 + ORDER, 1L)) << "to the end";
    EXPECT_EQ(PutOf({"f2", "c4", "c5", "f6", "f1"}, {"f7", "c8", "f3"}), std::make_pair(1 + ORDER, 1L)) << "below another parent";
    EXPECT_EQ(PutOf({"f2", "c4", "f1", "c5", "f6"}, {"f7", "c8", "f3"}).first, 3L + ORDER)
        << "in between, where no number is left: those behind, too";
    EXPECT_EQ(PutOf({"f2", "c4", "f1", "f6", "c5"}, {"f7", "c8", "f3"}), std::make_pair(1L, 1L));
    EXPECT_EQ(PutOf({"f2", "c4", "c5", "f1", "f6"}, {"f7", "c8", "f3"}), std::make_pair(1L, 1L)) << "in between, where there is room";
}

TEST_P(PutOfNumbers, WritesOfAnInsertionTheNewOneWhereThereIsRoom) {
    PutOf({"f1", "f2", "f3"}, {"c4", "c5"});
    EXPECT_EQ(PutOf({"f1", "f2", "f3", "c6"}, {"c4", "c5"}), std::make_pair(1L, 0L));
    EXPECT_EQ(PutOf({"f1", "f2", "f3", "c6"}, {"c7", "c4", "c5"}), std::make_pair(3 + ORDER, 2L)) << "those behind make room";
    EXPECT_EQ(PutOf({"f1", "f2", "f3", "c6"}, {"c7", "f8", "c4", "f9", "c5"}), std::make_pair(2L, 0L)) << "and leave some";
    EXPECT_EQ(PutOf({"f2", "f3", "c6"}, {"c7", "f8", "c4", "f9", "c5"}), std::make_pair(0L, 1L));
    EXPECT_EQ(PutOf({"f0", "f2", "f3", "c6"}, {"c7", "f8", "c4", "f9", "c5"}), std::make_pair(1L, 0L)) << "in the place of one that went";
}

TEST_P(PutOfNumbers, WritesNothingOfTheSameModelAgain) {
    PutOf({"f1", "s2", "f3"}, {"c4", "c5"});
    PutOf({"s2", "f3"}, {"c5", "c4"});
    EXPECT_EQ(PutOf({"s2", "f3"}, {"c5", "c4"}), std::make_pair(0L, 0L));
}

TEST_P(PutOfNumbers, AreToldAsChangedOnlyOfWhatMoved) {
    PutOf({"f1", "c2", "f3"}, {"c4", "f5", "c6"});
    PutOf({"f1", "s9", "c2", "f3"}, {"c4", "f5", "c6"});
    PutOf({"f1", "c2", "f3"}, {"f5", "c6", "c4"});
    EXPECT_EQ(repository->OpenProject(1)->Compare(*Load({"f1", "c2", "f3"}, {"f5", "c6", "c4"})).size(), 0u);
    EXPECT_EQ(repository->CountChanges(1, 1, 2).changed, 0) << "those behind an insertion have other numbers, and no other place";
    const std::vector<SMRepositoryChange> changes = repository->Changes(1, 1, 3);
    std::string told;
    for (const SMRepositoryChange& change : changes) told += std::string(change.name.utf8()) + (change.order ? "'s order " : " ");
    EXPECT_EQ(told, "B's order c4 ");
}

TEST_P(PutOfNumbers, TellTheOrderAfterAnySeriesOfEdits) {
    std::minstd_rand random(11);
    Names sections[2] = {{"f1", "c2", "s3", "f4", "c5"}, {"c6", "f7"}};
    int last = 7;
    const int edits = std::string_view(GetParam().name) == "Postgres" ? 15 : 60;
    for (int edit = 0; edit < edits && !HasFailure(); ++edit) {
        PutOf(sections[0], sections[1]);
        Names& from = sections[random() % 2];
        Names& to = sections[random() % 2];
        std::string name = "fcs"[random() % 3] + std::to_string(++last);
        if (random() % 3 != 0 && !from.empty()) {
            const auto gone = from.begin() + static_cast<std::ptrdiff_t>(random() % from.size());
            name = *gone;
            from.erase(gone);
            if (random() % 3 == 0) continue;
        }
        to.insert(to.begin() + static_cast<std::ptrdiff_t>(random() % (to.size() + 1)), name);
    }
}

TEST_P(PutOfNumbers, AreThoseOfMemoryInASaveWithoutADocument) {
    PutOf({"f1", "f2", "c3"}, {});
    const auto context = repository->OpenProject(1);
    EXPECT_TRUE(Load({"f2", "c3"}, {})->write(*context));
    EXPECT_EQ(context->Counters().rowsEnded, 3L) << "who saves rows alone says what stands in them";
}

}  // namespace
