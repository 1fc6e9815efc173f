#include "objects/face/smreferences_002_000.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/codes.h"
#include "objects/base/smobjectbuilder_002_000.h"
#include "objects/face/smmodelcheck_002_000.h"
#include "objects/face/smmodelrename_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/links/smrelationship2_002_000.h"
#include "objects/query/smpromptinfo2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/facemodel.h"
#include "tests/support/modelclasses.h"

namespace {

using namespace schema_002_000;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSubsetOf;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

// ---- each kind of reference, once resolving and once dangling

/** Elements around references, which stand as "%". Content of the namespace comes before that of the project. */
struct Kind {
    std::string inNamespace, inProject, holder, field;
    std::string target = "[N].[s].[i]";

    friend std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.holder << " " << kind.field; }
};

std::string Named(const std::string& tag, const std::string& name, const std::string& content) {
    return "<" + tag + "><name locale=\"en\">" + name + "</name>" + content + "</" + tag + ">";
}

std::string Subject(const std::string& content) {
    return Named("querySubject", "t", content);
}
std::string Item(const std::string& content) {
    return Subject(Named("queryItem", "x", content));
}
std::string Defined(const std::string& query) {
    return Subject("<definition>" + query + "</definition>");
}
std::string Measure(const std::string& content) {
    return Named("dimension", "u", Named("measure", "x", content));
}
std::string Calculation(const std::string& content) {
    return Named("calculation", "c", content);
}
std::string Ends(const std::string& left, const std::string& right) {
    return "<name>r</name><left><refobj>" + left + "</refobj></left><right><refobj>" + right + "</refobj></right>";
}
std::string Scope(const std::string& content) {
    return "<scopeRelationship>" + Ends("[N].[d]", "[N].[d]") + "<scope>" + content + "</scope></scopeRelationship>";
}
std::string RelationshipShortcut(const std::string& left, const std::string& right, const std::string& target) {
    return Named("relationshipShortcut", "rs",
                 "<left><refobj>" + left + "</refobj></left><right><refobj>" + right + "</refobj></right><relationshipRef>" + target +
                     "</relationshipRef>");
}

const std::string SOURCE = "[].[dataSources].[src]", VIEW = "[].[securityViews].[v]", MAP = "[].[parameterMaps].[m]";
const std::string EXPRESSION = "<expression>1 + <refobj>%</refobj></expression>";

std::vector<Kind> Kinds() {
    const std::string preview = "<previewFilters><previewFilter>", security = "<securityFilters><securityFilterDefinition>";
    const std::string previewEnd = "</previewFilter></previewFilters>", securityEnd = "</securityFilterDefinition></securityFilters>";
    const std::string level =
        Named("hierarchy", "h", Named("level", "l", "<memberSort><sortItem><refobj>%</refobj></sortItem></memberSort>"));
    return {
        {Item(EXPRESSION), "", "[N].[t].[x]", "expression"},
        {Item("<sortOnRef>%</sortOnRef>"), "", "[N].[t].[x]", "sortOnRef"},
        {Item("<promptInfo><promptDisplayItemRef>%</promptDisplayItemRef></promptInfo>"), "", "[N].[t].[x]",
         "promptInfo/promptDisplayItemRef"},
        {Item("<promptInfo><promptFilterItemRef>%</promptFilterItemRef></promptInfo>"), "", "[N].[t].[x]",
         "promptInfo/promptFilterItemRef"},
        {Item("<promptInfo><promptUseItemRef>%</promptUseItemRef></promptInfo>"), "", "[N].[t].[x]", "promptInfo/promptUseItemRef"},
        {Subject(Named("queryItemFolder", "qf", Named("queryItem", "x", EXPRESSION))), "", "[N].[t].[x]", "expression"},
        {Subject("<determinants><determinant><name>k</name><key><refobj>%</refobj></key></determinant></determinants>"), "", "[N].[t]",
         "determinant k/key"},
        {Subject("<determinants><determinant><name>k</name><attributes><refobj>%</refobj></attributes></determinant></determinants>"), "",
         "[N].[t]", "determinant k/attributes"},
        {Subject(preview + "<refobj>%</refobj>" + previewEnd), "", "[N].[t]", "previewFilter/refobj", "[N].[f]"},
        {Subject(preview + EXPRESSION + previewEnd), "", "[N].[t]", "previewFilter/expression"},
        {Subject(security + "<refobj>%</refobj>" + securityEnd), "", "[N].[t]", "securityFilterDefinition/refobj", "[N].[f]"},
        {Subject(security + EXPRESSION + securityEnd), "", "[N].[t]", "securityFilterDefinition/expression"},
        {Subject("<hierarchies><refobj>%</refobj></hierarchies>"), "", "[N].[t]", "hierarchies", "[N].[d].[h]"},
        {Subject("<levels><refobj>%</refobj></levels>"), "", "[N].[t]", "levels", "[N].[d].[h].[l]"},
        {Defined("<dbQuery><sources><dataSourceRef>%</dataSourceRef></sources></dbQuery>"), "", "[N].[t]",
         "definition/dbQuery/dataSourceRef", SOURCE},
        {Defined("<dbQuery><sql>select <refobj>%</refobj></sql></dbQuery>"), "", "[N].[t]", "definition/dbQuery/sql"},
        {Defined("<dbQuery><filters><filterDefinition><refobj>%</refobj></filterDefinition></filters></dbQuery>"), "", "[N].[t]",
         "definition/dbQuery/filterDefinition/refobj", "[N].[f]"},
        {Defined("<modelQuery><filters><filterDefinition>" + EXPRESSION + "</filterDefinition></filters></modelQuery>"), "", "[N].[t]",
         "definition/modelQuery/filterDefinition/expression"},
        {Defined("<modelQuery><sql>select <column>%</column> from <table>t0</table></sql></modelQuery>"), "", "[N].[t]",
         "definition/modelQuery/sql"},
        {Defined("<modelQuery><sql>select * from <table>%</table></sql></modelQuery>"), "", "[N].[t]", "definition/modelQuery/sql",
         "[N].[s]"},
        {Defined("<mdQuery><dataSourceRef>%</dataSourceRef></mdQuery>"), "", "[N].[t]", "definition/mdQuery", SOURCE},
        {Defined("<storedProcedure><dataSourceRef>%</dataSourceRef></storedProcedure>"), "", "[N].[t]", "definition/storedProcedure",
         SOURCE},
        {Defined("<queryOperation><set><refobj>%</refobj></set></queryOperation>"), "", "[N].[t]", "definition/queryOperation", "[N].[s]"},
        {Measure(EXPRESSION), "", "[N].[u].[x]", "expression", "[N].[d].[m]"},
        {Measure("<aggregateRules><aggregateRule><dimensionRef><refobj>%</refobj></dimensionRef></aggregateRule></aggregateRules>"), "",
         "[N].[u].[x]", "aggregateRules", "[N].[d]"},
        {Named("dimension", "u", level), "", "[N].[u].[h].[l]", "memberSort", "[N].[d].[h].[l].[li]"},
        {Named("filter", "g", EXPRESSION), "", "[N].[g]", "expression"},
        {Calculation(EXPRESSION), "", "[N].[c]", "expression"},
        {Calculation("<sortOnRef>%</sortOnRef>"), "", "[N].[c]", "sortOnRef"},
        {Calculation("<dimensions><refobj>%</refobj></dimensions>"), "", "[N].[c]", "dimensions", "[N].[d]"},
        {Calculation("<hierarchies><refobj>%</refobj></hierarchies>"), "", "[N].[c]", "hierarchies", "[N].[d].[h]"},
        {Calculation("<dataSources><dataSourceRef>%</dataSourceRef></dataSources>"), "", "[N].[c]", "dataSourceRef", SOURCE},
        {Calculation(preview + EXPRESSION + previewEnd), "", "[N].[c]", "previewFilter/expression"},
        {Calculation(security + "<refobj>%</refobj>" + securityEnd), "", "[N].[c]", "securityFilterDefinition/refobj", "[N].[f]"},
        {"<relationship>" + Ends("%", "[N].[s]") + "</relationship>", "", "[N].[r]", "left", "[N].[s]"},
        {"<relationship>" + Ends("[N].[s]", "%") + "</relationship>", "", "[N].[r]", "right", "[N].[cut]"},
        {"<relationship>" + Ends("[N].[s]", "[N].[s]") + EXPRESSION + "</relationship>", "", "[N].[r]", "expression"},
        {"<scopeRelationship>" + Ends("%", "[N].[d]") + "</scopeRelationship>", "", "[N].[r]", "left", "[N].[d]"},
        {"<scopeRelationship>" + Ends("[N].[d]", "%") + "</scopeRelationship>", "", "[N].[r]", "right", "[N].[d]"},
        {Scope("<levelRef>%</levelRef>"), "", "[N].[r]", "scope/levelRef", "[N].[d].[h].[l]"},
        {Scope("<measureScope><refobj>%</refobj></measureScope>"), "", "[N].[r]", "scope/measureScope/refobj", "[N].[d].[m]"},
        {Scope("<measureScope><allocation>%</allocation><refobj>[N].[d].[m]</refobj></measureScope>"), "", "[N].[r]",
         "scope/measureScope/allocation", "[N].[d].[m]"},
        {Named("shortcut", "k", "<refobj>%</refobj>"), "", "[N].[k]", "refobj", "[N].[f]"},
        {RelationshipShortcut("%", "[N].[s]", "[N].[old r]"), "", "[N].[rs]", "left", "[N].[s]"},
        {RelationshipShortcut("[N].[s]", "%", "[N].[old r]"), "", "[N].[rs]", "right", "[N].[s]"},
        {RelationshipShortcut("[N].[s]", "[N].[s]", "%"), "", "[N].[rs]", "relationshipRef", "[N].[old r]"},
        {Named("function", "fn", "<dataSourceRef>%</dataSourceRef>"), "", "[N].[fn]", "dataSourceRef", SOURCE},
        {"", "<dataSources>" + Named("dataSource", "e", "<aliasTableMapRef>%</aliasTableMapRef>") + "</dataSources>",
         "[].[dataSources].[e]", "aliasTableMapRef", MAP},
        {"", "<dataSources>" + Named("dataSource", "e", "<type><refobj>%</refobj></type>") + "</dataSources>", "[].[dataSources].[e]",
         "type"},
        {"", "<parameterMaps><parameterMap><name>q</name><queryItemMap><keyRef>%</keyRef></queryItemMap></parameterMap></parameterMaps>",
         "[].[parameterMaps].[q]", "keyRef"},
        {"",
         "<parameterMaps><parameterMap><name>q</name><queryItemMap><valueRef>%</valueRef></queryItemMap></parameterMap></parameterMaps>",
         "[].[parameterMaps].[q]", "valueRef"},
        {"",
         "<securityViews>" + Named("securityView", "w", "<definition><set includeRule=\"include\"><refobj>%</refobj></set></definition>") +
             "</securityViews>",
         "[].[securityViews].[w]", "definition"},
        {"",
         "<securityViews>" + Named("securityView", "w", "<definition><set includeRule=\"hide\"><viewref>%</viewref></set></definition>") +
             "</securityViews>",
         "[].[securityViews].[w]", "definition", VIEW},
        {"", "<securityViews>" + Named("securityView", "w", "<access><refobj>%</refobj></access>") + "</securityViews>",
         "[].[securityViews].[w]", "access", "[N]"},
        {"", "<packages>" + Named("package", "p", "<definition><viewref>%</viewref></definition>") + "</packages>", "[].[packages].[p]",
         "definition", VIEW},
        {"", "<packages>" + Named("package", "p", "<adminAccess><viewref>%</viewref></adminAccess>") + "</packages>", "[].[packages].[p]",
         "adminAccess", VIEW},
    };
}

/** What references may lead to, with none of its own that dangles. */
std::string Targets() {
    return Named("querySubject", "s", Named("queryItemFolder", "if", Named("queryItem", "i", ""))) + Named("filter", "f", "") +
           Named("dimension", "d",
                 Named("measureFolder", "mf", Named("measure", "m", "")) +
                     Named("hierarchy", "h", Named("level", "l", Named("queryItem", "li", "")))) +
           Named("folder", "fo", Named("shortcut", "cut", "<refobj>[N].[s]</refobj>")) + "<relationship><name>old r</name></relationship>";
}

std::string DocumentOf(const std::string& inNamespace, const std::string& inProject) {
    return ModelDocument(NamespaceElement("N", Targets() + inNamespace) + "<dataSources>" + Named("dataSource", "src", "") +
                         "</dataSources><parameterMaps><parameterMap><name>m</name></parameterMap></parameterMaps>" + "<securityViews>" +
                         Named("securityView", "v", "") + "</securityViews>" + inProject);
}

SMLoadResult Load(const std::string& inNamespace, const std::string& inProject = {}) {
    return SMLoadModelBytes(DocumentOf(inNamespace, inProject));
}

std::string Filled(std::string content, const std::string& text) {
    for (std::size_t at = content.find('%'); at != std::string::npos; at = content.find('%', at + text.size()))
        content.replace(at, 1, text);
    return content;
}

std::vector<std::string> Lines(const SMReferenceCheck& check) {
    std::vector<std::string> lines;
    for (const SMDanglingReference& found : check.dangling)
        lines.push_back(SMAddressOf(*found.place.holder) + " " + found.place.field + " " + found.text);
    return lines;
}

class SMReferencesOfEachKind : public testing::TestWithParam<Kind> {
  protected:
    static SMReferenceCheck Check(const std::string& text) {
        const SMLoadResult loaded = Load(Filled(GetParam().inNamespace, text), Filled(GetParam().inProject, text));
        EXPECT_THAT(loaded.diagnostics, IsEmpty());
        s_project = loaded.project;
        return SMCheckReferences(*loaded.project);
    }
    static inline QvSmartPtr<SMProject2> s_project;
};

TEST_P(SMReferencesOfEachKind, ResolveWhereTheObjectIsInTheModel) {
    const SMReferenceCheck check = Check(GetParam().target);
    EXPECT_TRUE(check.IsDone());
    EXPECT_THAT(Lines(check), IsEmpty());
}

TEST_P(SMReferencesOfEachKind, DangleWhereItIsNot) {
    const Kind& kind = GetParam();
    const std::string gone = kind.target.substr(0, kind.target.rfind('[')) + "[gone &amp; away]";
    const std::string told = kind.target.substr(0, kind.target.rfind('[')) + "[gone & away]";
    EXPECT_THAT(Lines(Check(gone)), ElementsAre(kind.holder + " " + kind.field + " " + told));
}

TEST_P(SMReferencesOfEachKind, AreToldWhereTheirTextStands) {
    const Kind& kind = GetParam();
    const std::string gone = kind.target.substr(0, kind.target.rfind('[')) + "[gone]";
    const std::string document = DocumentOf(Filled(kind.inNamespace, gone), Filled(kind.inProject, gone));
    const SMCheckResult checked = SMCheckModelBytes(document);
    std::vector<SMDiagnostic> dangling;
    for (const SMDiagnostic& found : checked.findings)
        if (found.code == qv::code::DANGLING_REFERENCE) dangling.push_back(found);
    ASSERT_THAT(dangling, SizeIs(1));
    const std::size_t at = document.find(gone), line = document.rfind('\n', at);
    EXPECT_EQ(dangling[0].line, 2);
    EXPECT_EQ(dangling[0].column, static_cast<long>(at - line));
    EXPECT_EQ(dangling[0].objectPath, kind.holder);
}

INSTANTIATE_TEST_SUITE_P(Model, SMReferencesOfEachKind, testing::ValuesIn(Kinds()));

TEST(SMReferences, AreNoWordsOfAnAllocation) {
    const SMLoadResult loaded = Load(Scope("<measureScope><allocation>constant</allocation></measureScope>"));
    EXPECT_THAT(Lines(SMCheckReferences(*loaded.project)), IsEmpty());
}

TEST(SMReferences, KnowFieldsThatNoDocumentHolds) {
    const SMLoadResult loaded = Load("<relationship>" + Ends("[N].[s]", "[N].[s]") + "</relationship>" +
                                     Item("<promptInfo><promptType>editBox</promptType></promptInfo>"));
    const SMReferenceIndex index(*loaded.project);
    auto* relationship = static_cast<const SMRelationship2*>(index.Find("[N].[r]"));
    ASSERT_TRUE(relationship);
    const_cast<SMRelationship2*>(relationship)->sql = new SMXMLObject2("sql", "<refobj>[N].[x]</refobj>", true);
    static_cast<const SMQueryItem2*>(index.Find("[N].[t].[x]"))->GetPromptInfo()->SetPromptCascadeOnRef("[N].[y]");
    EXPECT_THAT(Lines(SMCheckReferences(*loaded.project)),
                ElementsAre("[N].[r] sql [N].[x]", "[N].[t].[x] promptInfo/promptCascadeOnRef [N].[y]"));
}

// ---- completeness

/** Gathers the texts of the elements that name objects, wherever they stand. */
class ReferenceElements : public QvXmlBuildBase {
  public:
    void realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes&) override {
        const std::string_view name = localName.utf8();
        m_collecting = name == "refobj" || name == "viewref" || name.ends_with("Ref");
    }
    void realCharacters(const I18NString& text) override {
        if (m_collecting) texts.push_back(smtest::Str(text));
    }
    void realEndElement(const I18NString&, const I18NString&, const I18NString&) override { m_collecting = false; }

    std::vector<std::string> texts;

  private:
    bool m_collecting = false;
};

class SMReferencesOfEachClass : public testing::TestWithParam<smtest::ModelClass> {};

TEST_P(SMReferencesOfEachClass, HoldAllThatItsDocumentNames) {
    const smtest::ProjectPtr project = smtest::NewProject();
    const auto object = GetParam().Filled(*project);
    std::vector<std::string> visited;
    const auto visit = [&](std::string_view, std::string_view text) { visited.emplace_back(text); };
    SMForEachReference(*object, visit);
    for (const SMObjectBase* other : project->GetAllObjects().GetObjects())
        if (other && other != object.get()) SMForEachReference(*other, visit);
    ReferenceElements document;
    smtest::ParseInto(document, smtest::WriteElement(*object));
    EXPECT_THAT(document.texts, IsSubsetOf(visited));
}

INSTANTIATE_TEST_SUITE_P(Model, SMReferencesOfEachClass, testing::ValuesIn(smtest::ModelClasses()),
                         [](const auto& entry) { return entry.param.name; });

// ---- whole models

SMLoadResult Example(const std::string& name) {
    return SMLoadModel(SMODEL_SOURCE_DIR "/examples/models/" + name);
}

TEST(SMReferences, AllResolveInCompleteModels) {
    for (const char* name : {"tpcds.xml", "foodmart.xml", "minimal.xml", "multifile/main.xml", "multifile/single.xml"}) {
        const SMLoadResult loaded = Example(name);
        EXPECT_THAT(Lines(SMCheckReferences(*loaded.project)), IsEmpty()) << name;
    }
    EXPECT_EQ(SMCheckReferences(*Example("minimal.xml").project).references, 0u);
    EXPECT_GT(SMCheckReferences(*Example("tpcds.xml").project).references, 1'500u);
}

TEST(SMReferences, DangleInAModelMadeOfVocabulary) {
    const SMLoadResult loaded = Example("everything.xml");
    EXPECT_THAT(Lines(SMCheckReferences(*loaded.project)),
                ElementsAre("[Everything].[md] definition/mdQuery VIEWREF", "[Everything].[md] definition/mdQuery REFOBJ",
                            "[Everything].[s <1>] scope/levelRef x"));
}

TEST(SMReferences, AreLeftBehindByARenameOnlyWhereItTouchesNone) {
    const SMLoadResult loaded = Example("tpcds.xml");
    SMRenameNamespaces(*loaded.project, {{"Database Layer", "Raw"}}, "tpcds");
    const SMReferenceCheck check = SMCheckReferences(*loaded.project);
    EXPECT_THAT(check.dangling, Not(IsEmpty()));  // references of two parts keep the old name
    for (const SMDanglingReference& found : check.dangling) {
        EXPECT_THAT(found.text, StartsWith("[Database Layer]"));
        EXPECT_NE(found.place.field, "expression") << found.text;
    }
}

TEST(SMReferences, AreLookedUpWithoutChangingTheModel) {
    const SMLoadResult loaded = Example("everything.xml");
    const std::string before = CanonicalText(*loaded.project);
    SMCheckReferences(*loaded.project);
    EXPECT_EQ(CanonicalText(*loaded.project), before);
}

TEST(SMReferences, TellOfKeptXmlThatCannotBeRead) {
    const SMLoadResult loaded = Load(Item(EXPRESSION));
    const SMReferenceIndex index(*loaded.project);
    static_cast<const SMQueryItem2*>(index.Find("[N].[t].[x]"))->GetExpression()->SetInnerXML("<refobj>");
    const SMReferenceCheck check = SMCheckReferences(*loaded.project);
    EXPECT_TRUE(check.IsDone());
    ASSERT_THAT(check.diagnostics, SizeIs(1));
    EXPECT_THAT(check.diagnostics[0].message, HasSubstr("The kept XML in 'expression' of [N].[t].[x] cannot be read."));
    EXPECT_TRUE(check.HasFindings());
}

TEST(SMReferences, StopWhenTheirCallerWishes) {
    const SMLoadResult loaded = Load("");
    const std::atomic<bool> cancelled{true};
    SMControl control;
    control.cancelled = &cancelled;
    EXPECT_EQ(SMCheckReferences(*loaded.project, control).status, SMStatus::cancelled);
}

// ---- the index

TEST(SMReferenceIndex, KnowsItemsInFoldersLevelsAndDimensions) {
    const SMLoadResult loaded = Load(Named("dimension", "u", Named("queryItemFolder", "qf", Named("queryItem", "direct", ""))));
    const SMReferenceIndex index(*loaded.project);
    for (const char* address : {"[N]", "[N].[s].[i]", "[N].[d].[m]", "[N].[d].[h].[l].[li]", "[N].[u].[direct]", "[N].[cut]", "[N].[f]",
                                "[].[dataSources].[src]", "[].[securityViews].[v]", "[].[parameterMaps].[m]"}) {
        const SMObjectBase* const object = index.Find(address);
        ASSERT_TRUE(object) << address;
        EXPECT_EQ(SMAddressOf(*object), address);
    }
    for (const char* address : {"", "[]", "N", "[N].[fo]", "[n]", "[N].[s].[i].[x]", "[].[dataSources].[]"})
        EXPECT_FALSE(index.Find(address)) << address;
}

TEST(SMReferenceIndex, GivesTheFirstOfSeveralWithOneAddress) {
    const SMLoadResult loaded = Load(Named("filter", "two", "") + Named("querySubject", "two", ""));
    EXPECT_EQ(SMKindOf(*SMReferenceIndex(*loaded.project).Find("[N].[two]")), "filter");
}

TEST(SMReferenceIndex, FindsTheLikestAddressFirst) {
    const SMLoadResult loaded = Load("");
    const SMReferenceIndex index(*loaded.project);
    EXPECT_THAT(index.FindAlike("[n].[S].[j]", 1), ElementsAre("[N].[s].[i]"));
    EXPECT_THAT(index.FindAlike("somewhere.[LI]", 3), ElementsAre("[N].[d].[h].[l].[li]"));
    EXPECT_THAT(index.FindAlike("nothing that is alike", 3), IsEmpty());
}

}  // namespace
