// What a put writes of texts in other locales, which have rows of their own.
#include <gmock/gmock.h>

#include <algorithm>

#include "core/repository/smrepository.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "tests/core/repository/repositorytest.h"
#include "tests/support/facemodel.h"
#include "tests/support/storerows.h"

namespace {

using namespace schema_002_000;

/** A section, a calculation and an item, each with its French name; an empty one is left out. */
std::string Model(const std::string& section, const std::string& calculation, const std::string& item, const std::string& size = "1") {
    const auto named = [](const std::string& id, const std::string& french) {
        return "<name locale=\"en\">" + id + "</name>" + (french.empty() ? "" : "<name locale=\"fr\">" + french + "</name>") +
               "<property name=\"id\">" + id + "</property>";
    };
    return ModelDocument(
        "<namespace>" + named("s", section) + "<calculation>" + named("c", calculation) + "<size>" + size +
        "</size><expression>1</expression></calculation><querySubject><name locale=\"en\">q</name><property name=\"id\">q</property>"
        "<definition id=\"d\"><modelQuery></modelQuery></definition><queryItem>" +
        named("i", item) + "<expression>1</expression></queryItem></querySubject></namespace>");
}

class PutOfTexts : public RepositoryTest {
  protected:
    static QvSmartPtr<SMProject2> Load(const std::string& model) { return SMLoadModelBytes(model).project; }
    void PutOf(const std::string& model) {
        const auto context = repository->Projects().empty() ? repository->NewProject() : repository->OpenProject(1);
        ASSERT_TRUE(SMPutModel(*Load(model), *context).IsDone());
        EXPECT_EQ(Told(repository->OpenProject(1)->Compare(*Load(model))), "");
    }
    static std::string Told(const std::vector<SMRepositoryChange>& changes) {
        std::string told;
        for (const SMRepositoryChange& change : changes)
            for (const SMRepositoryValue& value : change.values)
                told += std::string(change.name.utf8()) + " " + std::string(value.name.utf8()) + ": " + std::string(value.before.utf8()) +
                        " -> " + std::string(value.after.utf8()) + "\n";
        return told;
    }
    /** The French name and the revision that set it. */
    std::pair<std::string, long> BlamedFor(const char* id) {
        for (const SMRepositoryBlame& line : repository->Blame(1, id))
            if (line.name.utf8() == "name[fr]") return {std::string(line.value.utf8()), line.revision.number};
        return {};
    }
    std::string Told(long from, long to) { return Told(repository->Changes(1, from, to)); }
};

INSTANTIATE_TEST_SUITE_P(Stores, PutOfTexts, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(PutOfTexts, WritesATextThatAloneChanged) {
    PutOf(Model("section", "calcul", "article"));
    PutOf(Model("section", "compte", "article"));
    EXPECT_EQ(Told(1, 2), "c name[fr]: calcul -> compte\n");
    EXPECT_EQ(BlamedFor("c"), (std::pair<std::string, long>("compte", 2)));
}

TEST_P(PutOfTexts, WritesThoseOfEachKindThatHasThem) {
    PutOf(Model("section", "calcul", "article"));
    PutOf(Model("partie", "calcul", "chose"));
    EXPECT_THAT(Told(1, 2), testing::HasSubstr("i name[fr]: article -> chose\n"));
    EXPECT_THAT(Told(1, 2), testing::HasSubstr("s name[fr]: section -> partie\n"));
    EXPECT_THAT(Told(1, 2), testing::Not(testing::HasSubstr("calcul")));
}

TEST_P(PutOfTexts, RemovesATextThatWent) {
    PutOf(Model("section", "calcul", "article"));
    PutOf(Model("section", "", "article"));
    EXPECT_EQ(Told(1, 2), "c name[fr]: calcul -> \n");
    PutOf(Model("section", "calcul", "article"));
    EXPECT_EQ(Told(1, 3), "");
}

TEST_P(PutOfTexts, BlamesTheRevisionThatSetTheTextNotOneThatSetAnotherValue) {
    PutOf(Model("section", "calcul", "article"));
    PutOf(Model("section", "compte", "article"));
    PutOf(Model("section", "compte", "article", "2"));
    EXPECT_EQ(BlamedFor("c"), (std::pair<std::string, long>("compte", 2)));
}

TEST_P(PutOfTexts, WritesNothingWhereNoneChanged) {
    PutOf(Model("section", "calcul", "article"));
    const auto context = repository->OpenProject(1);
    ASSERT_TRUE(SMPutModel(*Load(Model("section", "calcul", "article")), *context).IsDone());
    EXPECT_EQ(context->Counters().rowsWritten, 0);
    EXPECT_EQ(context->Revision(), 1);
}

TEST_P(PutOfTexts, WritesThemFromOneContextAgainAndAgain) {
    const auto context = repository->NewProject();
    const QvSmartPtr<SMProject2> project = Load(Model("section", "calcul", "article"));
    ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
    SMCalculation2* const calculation = project->GetRootNamespace()->GetCalculations().front().get();
    for (const char* const text : {"compte", "somme", "calcul"}) {
        const long written = context->Counters().rowsWritten, read = context->Counters().rowsRead;
        calculation->AddName("fr", QvULString(std::string_view(text)));
        ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
        EXPECT_EQ(context->Counters().rowsWritten - written, 4) << "the calculation, its text, the document and the revision";
        EXPECT_LE(context->Counters().rowsRead - read, 4) << "the revision and its document";
    }
    EXPECT_EQ(Told(1, 4), "");
    EXPECT_EQ(Told(2, 3), "c name[fr]: compte -> somme\n");
}

TEST_P(PutOfTexts, KnowsThoseThatItWroteBeforeItAskedForAny) {
    PutOf(Model("section", "calcul", "article"));
    const auto context = repository->OpenProject(1);
    const QvSmartPtr<SMProject2> project = Load(Model("partie", "calcul", "article"));
    project->SetName("other");
    project->GetRootNamespace()->ChangeDefaultScreenTip("tip");
    ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
    project->GetRootNamespace()->GetQuerySubjects().front()->ChangeDefaultName("renamed");
    ASSERT_TRUE(SMPutModel(*project, *context).IsDone());
    EXPECT_EQ(project->GetRootNamespace()->GetVersionNo(), 2) << "not written again";
    EXPECT_EQ(repository->CountChanges(1, 2, 3).changed, 1u) << Told(2, 3);
}

TEST_P(PutOfTexts, KeepsThoseThatAModelReadFromRowsLacks) {
    PutOf(Model("section", "calcul", "article"));
    const auto context = repository->OpenProject(1);
    const SMGetResult got = SMGetModel(*context);
    ASSERT_TRUE(got.IsDone() && got.project->write(*context));
    EXPECT_EQ(context->Revision(), 1) << "readers do not ask for all of them";
}

TEST_P(PutOfTexts, AreComparedWithThoseOfTheStore) {
    PutOf(Model("section", "calcul", "article"));
    changedByHand = true;
    SetInRows(*backend, plan->tables, "SM_LANG_TEXT", "VALUE", qv::Cell::Text("other"), "OBJECT_ID", "c");
    EXPECT_EQ(Told(repository->OpenProject(1)->Compare(*Load(Model("section", "calcul", "article")))), "c name[fr]: other -> calcul\n");
}

}  // namespace
