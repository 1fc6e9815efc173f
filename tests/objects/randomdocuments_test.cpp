// Random documents with every kind of object: what must hold for any document is held against each.
#include <gmock/gmock.h>

#include <memory>

#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/repository/memory/memorybackend.h"
#include "core/repository/smrepository.h"
#include "core/repository/sqlite/sqlitebackend.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "objects/face/smmodelrename_002_000.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/facts.h"
#include "tests/support/losses.h"
#include "tests/support/randomdocument.h"
#include "tests/support/tempdir.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

constexpr unsigned SEEDS = 20;

class RandomDocuments : public testing::TestWithParam<unsigned> {
  protected:
    static unsigned Seed() { return GetParam(); }
};

std::map<std::string, int> KindsOf(const SMProject2& project) {
    std::map<std::string, int> kinds;
    SMForEachObject(project, [&](const SMObjectBase& object, int) { ++kinds[SMKindOf(object)]; });
    return kinds;
}

/** What a document is but for ids, versions, and what hangs on them. */
class Shape : public QvNeutralHandler {
  public:
    static std::string Of(const std::string& document) {
        Shape shape;
        ParseInto(shape, document);
        return shape.m_text;
    }
    void startElement(const I18NString&, const I18NString&, const I18NString& qName, const QvXMLAttributes& attrs) override {
        m_isIdentity = Str(attrs.getValue("type")) == "hidden";
        m_text += "<" + Str(qName);
        for (int i = 0; i < attrs.getLength(); ++i)
            if (const std::string name = Str(attrs.getQName(i)); name != "id" && name != "version")
                m_text += " " + name + "=" + Str(attrs.getValue(i));
        m_text += ">";
    }
    void characters(const I18NString& text) override {
        if (!m_isIdentity) m_text += Str(text);
    }
    void endElement(const I18NString&, const I18NString&, const I18NString& qName) override {
        m_text += "</" + Str(qName) + ">";
        m_isIdentity = false;
    }

  private:
    std::string m_text;
    bool m_isIdentity = false;
};

/** A definition whose query is kept XML is told of whenever it is loaded: as the format has it. */
bool TellsOfAKeptQuery(const SMDiagnostic& diagnostic) {
    return diagnostic.message.find("Constructing a definition with query type '") == 0;
}

void ExpectDone(const SMResult& result) {
    EXPECT_TRUE(result.IsDone()) << (result.diagnostics.empty() ? "" : result.diagnostics.back().message);
}

void ExpectNoFindings(const SMResult& result) {
    ExpectDone(result);
    for (const SMDiagnostic& diagnostic : result.diagnostics)
        EXPECT_TRUE(TellsOfAKeptQuery(diagnostic)) << diagnostic.message << " [" << diagnostic.objectPath << "]";
}

/** A list of what is lost names kept XML by its outermost element. */
bool IsListed(const Losses& listed, std::string field) {
    for (;;) {
        if (listed.count("repository " + field)) return true;
        const std::size_t dot = field.rfind('.');
        if (dot == std::string::npos) return false;
        field.resize(dot);
    }
}

/** What got lost on the way through a repository stands in the list. */
void ExpectListed(const Facts& before, const Facts& after, const Losses& listed) {
    for (const std::string& field : DifferingFields(before, after)) {
        if (IsListed(listed, field)) continue;
        for (const auto& [fact, count] : before)
            if (const auto other = after.find(fact); fact.first == field && (other == after.end() || other->second != count))
                ADD_FAILURE() << field << " is lost, but not listed: " << fact.second;
        for (const auto& [fact, count] : after)
            if (fact.first == field && !before.count(fact)) ADD_FAILURE() << field << " was not there before: " << fact.second;
    }
}

}  // namespace

TEST(RandomDocument, IsTheSameForTheSameSeed) {
    EXPECT_EQ(RandomDocument(7).Text(), RandomDocument(7).Text());
    EXPECT_NE(RandomDocument(7).Text(), RandomDocument(8).Text());
}

TEST(RandomDocument, HasEveryKindUnderSomeSeed) {
    std::set<std::string> kinds;
    for (unsigned seed = 1; seed <= SEEDS; ++seed) {
        const RandomDocument document(seed);
        for (const auto& [kind, count] : document.Kinds()) kinds.insert(kind);
    }
    EXPECT_THAT(kinds,
                testing::ElementsAre("calculation", "dataSource", "dbQuery", "definition", "determinant", "dimension", "filter",
                                     "filterDefinition", "folder", "function", "hierarchy", "level", "measure", "measureFolder",
                                     "measureScope", "modelQuery", "namespace", "package", "parameterMap", "parameterMapEntry", "project",
                                     "promptInfo", "queryItem", "queryItemFolder", "querySubject", "relationship", "relationshipShortcut",
                                     "role", "scope", "scopeRelationship", "securityView", "shortcut", "updateSubject"));
}

TEST_P(RandomDocuments, AreReadWhole) {
    const CapturedLog log;
    const RandomDocument document(Seed());
    const ProjectPtr project = ParseProject(document.Text());
    EXPECT_EQ(KindsOf(*project), document.Kinds());
    EXPECT_THAT(log.Events(), testing::IsEmpty()) << document.Text();
}

TEST_P(RandomDocuments, AreAFixedPointOnceWritten) {
    const CapturedLog log;
    const std::string once = WriteProject(*ParseProject(RandomDocument(Seed()).Text()));
    EXPECT_TRUE(SameXml(once, WriteProject(*ParseProject(once))));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST_P(RandomDocuments, CanBeSavedAndLoadedWithTheListedLossesOnly) {
    const TempDir dir;
    const std::pair<const char*, std::shared_ptr<qv::StoreBackend>> stores[] = {{"memory", qv::MakeMemoryBackend("memory")},
                                                                                {"sqlite", qv::MakeSqliteBackend(dir.Path("models.db"))}};
    const Losses listed = ListedLosses();
    for (const auto& [name, backend] : stores) {
        SCOPED_TRACE(name);
        SMRepository repository(backend, SMRepository::createIfAbsent);
        const ProjectPtr put = ParseProject(RandomDocument(Seed(), {.unstored = false}).Text());
        ExpectNoFindings(SMPutModel(*put, *repository.NewProject()));
        const SMGetResult got = SMGetModel(*repository.OpenProject(1));
        ExpectNoFindings(got);
        ASSERT_TRUE(got.project);
        ExpectListed(FactsOf(*put), FactsOf(*got.project), listed);

        const auto again = repository.OpenProject(1);
        EXPECT_TRUE(put->write(*again));
        EXPECT_EQ(again->Counters().rowsWritten, 0);
        const auto loaded = repository.OpenProject(1);
        const SMGetResult once = SMGetModel(*loaded);
        EXPECT_TRUE(once.project->write(*loaded));
        EXPECT_EQ(loaded->Counters().rowsWritten, 0);
    }
}

TEST_P(RandomDocuments, ComeBackFromBeingRenamed) {
    const RandomDocument document(Seed(), {.unrenamable = false});
    const std::string before = WriteProject(*ParseProject(WriteProject(*ParseProject(document.Text()))));
    std::vector<SMNamespaceRename> there, back;
    for (const std::string& name : document.Namespaces()) {
        there.push_back({name, "renamed " + std::to_string(there.size())});
        back.push_back({there.back().newName, name});
    }
    const ProjectPtr project = ParseProject(before);
    // what still names them afterwards, since not every text is one that a rename reads, is not changed on the way back either
    ExpectDone(SMRenameNamespaces(*project, there, "there"));
    SMForEachObject(*project, [&](const SMObjectBase& object, int) {
        if (object.GetSMType() != SMEnum_xmltag::Enum::queryItem) return;
        const SMPromptInfo2* prompt = static_cast<const SMQueryItem2&>(object).GetPromptInfo();
        const std::string reference = prompt ? Str(prompt->GetPromptFilterItemRef()) : "";
        EXPECT_TRUE(reference.empty() || reference.starts_with("[renamed ") || reference.starts_with("[elsewhere]")) << reference;
    });
    ExpectDone(SMRenameNamespaces(*project, back, "back"));
    EXPECT_TRUE(SameXml(before, WriteProject(*project)));
}

TEST_P(RandomDocuments, KeepTheirShapeWithNewIds) {
    const ProjectPtr project = ParseProject(RandomDocument(Seed()).Text());
    const std::string before = WriteProject(*project);
    const auto kinds = KindsOf(*project);
    std::map<QvULString, QvULString> ids;
    project->RegenerateIds(ids);
    EXPECT_EQ(KindsOf(*project), kinds);
    EXPECT_TRUE(SameXml(Shape::Of(before), Shape::Of(WriteProject(*project))));
}

INSTANTIATE_TEST_SUITE_P(Model, RandomDocuments, testing::Range(1u, SEEDS + 1));
