// Random objects go through the document and through the repository; whatever does not come back must stand in docs/losses.md.
#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/facts.h"
#include "tests/support/losses.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

constexpr unsigned ROUNDS = 25;

class Journey {
  public:
    Journey(const ModelClass& entry, unsigned seed) : m_entry(entry), m_object(entry.Filled(*m_first, Values(seed))) {
        m_facts = FactsOf(*m_object);
    }

    void ThroughDocument() {
        const auto read = m_entry.read(*m_second, WriteElement(*m_object));
        NoteAndGoOn("document ", read);
    }
    void ThroughRepository() {
        StoreContext store;
        ASSERT_TRUE(m_object->write(store));
        m_facts = FactsOf(*m_object);  // a save gives versions and ids where there are none
        const std::string table = Str(store.Actions()[0].params->GetByName(IOParamTag::TABLE_NAME)->GetQvStringValue());
        const auto read = m_entry.make(*m_third);
        read->constructFromIOParameter(*store.RowOf(table, Str(m_object->GetId())));
        ASSERT_TRUE(read->read(store));
        EXPECT_THAT(store.Faults(), testing::IsEmpty());
        NoteAndGoOn("repository ", read);
    }
    const Losses& GetLosses() const { return m_losses; }

  private:
    static ProjectPtr ProjectFor() {
        ProjectPtr project = NewProject();
        project->SetId("project");
        return project;
    }
    void NoteAndGoOn(const std::string& face, const ModelClass::Object& read) {
        const Facts facts = FactsOf(*read);
        for (const std::string& field : DifferingFields(m_facts, facts)) m_losses.insert(face + field);
        m_object = read;
        m_facts = facts;
    }

    ProjectPtr m_first = ProjectFor(), m_second = ProjectFor(), m_third = ProjectFor();
    const ModelClass& m_entry;
    ModelClass::Object m_object;
    Facts m_facts;
    Losses m_losses;
};

Losses LossesOf(const ModelClass& entry, unsigned seed) {
    Losses losses;
    for (const bool documentFirst : {true, false}) {
        Journey journey(entry, seed);
        if (documentFirst) journey.ThroughDocument();
        journey.ThroughRepository();
        if (!documentFirst) journey.ThroughDocument();
        losses.insert(journey.GetLosses().begin(), journey.GetLosses().end());
    }
    return losses;
}

}  // namespace

TEST(Losses, AreTheOnesOfThePage) {
    const CapturedLog log;
    Losses seen;
    for (const ModelClass& entry : ModelClasses())
        for (unsigned seed = 1; seed <= ROUNDS; ++seed) seen.merge(LossesOf(entry, seed));
    const Losses listed = ListedLosses();
    for (const std::string& field : seen) EXPECT_EQ(listed.count(field), 1u) << field << " is lost, but not listed";
    for (const std::string& field : listed) EXPECT_EQ(seen.count(field), 1u) << field << " is listed, but not lost";
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}
