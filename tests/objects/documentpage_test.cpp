// docs/document.md and the pages beside it, held against what the library writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "core/qvutils/xml/qvneutralhandler.h"
#include "objects/base/smenums_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/dimensional/smhierarchy2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/facemodel.h"
#include "tests/support/modelclasses.h"
#include "tests/support/page.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

constexpr unsigned ROUNDS = 25;
const char* const PAGES[] = {"docs/document.md", "docs/document/query.md", "docs/document/dimensional.md", "docs/document/links.md",
                             "docs/document/publication.md"};

/** An element: its attributes, with "@" before each, and its children. */
struct Element {
    std::string tag;
    std::vector<std::string> names;
    std::vector<Element> children;
};

class Tree : public QvNeutralHandler {
  public:
    Element root;

    void startElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes& attrs) override {
        Element& parent = *m_open.back();
        parent.names.push_back(Str(localName));
        parent.children.push_back({Str(localName), {}, {}});
        Element& element = parent.children.back();
        for (int i = 0; i < attrs.getLength(); ++i) element.names.push_back("@" + Str(attrs.getQName(i)));
        m_open.push_back(&element);
    }
    void endElement(const I18NString&, const I18NString&, const I18NString&) override { m_open.pop_back(); }

  private:
    std::vector<Element*> m_open{&root};
};

Element TreeOf(const std::string& document) {
    Tree tree;
    ParseInto(tree, document);
    return tree.root.children.at(0);
}

/** One line of the table of an element. */
struct Line {
    std::vector<std::string> names;
    std::string content, written;
    bool IsAlways() const { return written.rfind("always", 0) == 0; }
    bool IsKept() const { return content.find("kept XML") != std::string::npos; }
};

class Pages {
  public:
    using Section = std::vector<Line>;

    Pages() {
        for (const char* const page : PAGES)
            for (const PageTable& table : TablesOf(page)) {
                if (table.head.at(0) != "Attribute or child, in order") continue;
                Section section;
                for (const PageTable::Row& row : table.rows) section.push_back({CodesIn(row.at(0)), row.at(1), row.at(2)});
                for (const std::string& element : WordsIn(table.heading)) {
                    EXPECT_TRUE(m_sections.emplace(element, section).second) << element << " has two sections";
                    for (const Line& line : section) {
                        if (!line.IsAlways()) m_neverMissing.insert(element + " " + line.names.front());
                        for (const std::string& name : line.names) m_unseen.insert(element + " " + name);
                    }
                }
            }
    }

    /** Holds an element, and all inside it, against the pages. */
    void Check(const Element& element) {
        const auto found = m_sections.find(element.tag);
        ASSERT_NE(found, m_sections.end()) << "nothing tells what stands in the element " << element.tag;
        const Section& section = found->second;
        CheckOrder(element, section);
        for (const Line& line : section) {
            if (Has(element, line)) continue;
            EXPECT_FALSE(line.IsAlways()) << element.tag << " without " << line.names.front();
            m_neverMissing.erase(element.tag + " " + line.names.front());
        }
        for (const Element& child : element.children) {
            const Line* line = LineOf(section, child.tag);
            if (line && !line->IsKept()) CheckChild(child, line->content);
        }
    }

    std::set<std::string> KeptElements() const {
        std::set<std::string> kept;
        for (const auto& [element, section] : m_sections)
            for (const Line& line : section)
                if (line.IsKept()) kept.insert(line.names.begin(), line.names.end());
        return kept;
    }

    /** What the pages name and no document had. */
    const std::set<std::string>& Unseen() const { return m_unseen; }
    /** What the pages do not tell to be always written, and every document had. */
    const std::set<std::string>& NeverMissing() const { return m_neverMissing; }

  private:
    static bool Has(const Element& element, const Line& line) {
        return std::any_of(line.names.begin(), line.names.end(), [&](const std::string& name) {
            return std::find(element.names.begin(), element.names.end(), name) != element.names.end();
        });
    }
    static const Line* LineOf(const Section& section, const std::string& name) {
        for (const Line& line : section)
            if (std::find(line.names.begin(), line.names.end(), name) != line.names.end()) return &line;
        return nullptr;
    }
    void CheckOrder(const Element& element, const Section& lines) {
        const Line* last = lines.data();
        for (const std::string& name : element.names) {
            const Line* const line = LineOf(lines, name);
            ASSERT_TRUE(line) << element.tag << " has no line for " << name;
            EXPECT_GE(line, last) << name << " in " << element.tag << " stands behind " << last->names.front();
            last = line;
            m_unseen.erase(element.tag + " " + name);
        }
    }
    /** A child either has a section, or its parent's line names what stands in it. */
    void CheckChild(const Element& child, const std::string& content) {
        if (child.names.empty() || child.tag == "smnamespacefile" || child.tag == "packagefile") return;
        const std::vector<std::string> told = CodesIn(content);
        const auto isTold = [&](const std::string& name) { return std::find(told.begin(), told.end(), name) != told.end(); };
        if (!std::all_of(child.names.begin(), child.names.end(), isTold)) return Check(child);
        for (const Element& grandchild : child.children) CheckChild(grandchild, content);
    }

    std::map<std::string, Section> m_sections;
    std::set<std::string> m_unseen, m_neverMissing;
};

/** What none of the other documents has. */
std::vector<std::string> RareElements() {
    const ProjectPtr project = NewProject();
    const QvSmartPtr<SMHierarchy2> hierarchy = new SMHierarchy2(RootOf(*project), project);
    hierarchy->AddNestedChild(new SMHierarchy2(hierarchy, project));
    const auto model = SMLoadModelBytes(
        ModelDocument("<namespace><folder><updateSubject/></folder><querySubject/>"
                      "<function><result/><procParameters><procParameter/></procParameters></function></namespace>"
                      "<securityViews><securityView><qosOverrides><qosOverride/></qosOverrides></securityView></securityViews>"));
    return {WriteElement(*hierarchy), WriteElement(*model.project)};
}

const ModelClass& ClassNamed(const std::string& name) {
    return *std::find_if(ModelClasses().begin(), ModelClasses().end(), [&](const ModelClass& entry) { return entry.name == name; });
}

/** A measure with all that a query item has. */
std::string MeasureLikeItem(unsigned seed) {
    const ProjectPtr project = NewProject();
    const std::string element = WriteElement(*ClassNamed("SMQueryItem2").Filled(*project, Values(seed)));
    const std::string inside = element.substr(element.find('>') + 1, element.rfind('<') - element.find('>') - 1);
    return WriteElement(*ClassNamed("SMMeasure2").read(*project, "<measure>" + inside + "</measure>"));
}

/** A document with a reference for each text of its elements, but for those that the model needs to stand. */
std::string FullOfReferences(const std::string& document) {
    static const std::regex text(">([^<>]*[^<>\\s][^<>]*)</(\\w+)>");
    static const std::set<std::string> needed = {"name", "locale", "defaultLocale", "property"};
    std::string result;
    auto from = document.begin();
    for (std::sregex_iterator at(document.begin(), document.end(), text), end; at != end; ++at) {
        if (needed.count(at->str(2))) continue;
        result.append(from, (*at)[1].first).append("[Old].[object].[item]");
        from = (*at)[1].second;
    }
    return result.append(from, document.end());
}

/** The elements whose text holds a word; of kept XML, the whole of it. */
std::set<std::string> ElementsWith(const std::string& word, const std::string& document, const std::set<std::string>& kept) {
    static const std::regex token("<(/?)(\\w+)[^>]*>|([^<]+)");
    std::set<std::string> elements;
    std::vector<std::string> open;
    for (std::sregex_iterator at(document.begin(), document.end(), token), end; at != end; ++at) {
        if (at->str(3).find(word) != std::string::npos) {
            const auto outermost = std::find_if(open.begin(), open.end(), [&](const std::string& tag) { return kept.count(tag) > 0; });
            elements.insert(outermost == open.end() ? open.back() : *outermost);
        } else if ((*at)[2].matched && at->str(1).empty()) {
            open.push_back(at->str(2));
        } else if ((*at)[2].matched) {
            open.pop_back();
        }
    }
    return elements;
}

}  // namespace

TEST(DocumentPage, ListsWhatIsWrittenInItsOrder) {
    const CapturedLog log;
    Pages pages;
    for (const ModelClass& entry : ModelClasses()) {
        pages.Check(TreeOf(WriteElement(*entry.make(*NewProject()))));
        for (unsigned seed = 0; seed <= ROUNDS; ++seed)
            pages.Check(TreeOf(WriteElement(*entry.Filled(*NewProject(), seed == 0 ? Values() : Values(seed)))));
    }
    for (const char* const name : {"everything", "foodmart", "tpcds", "reader_forms", "multifile/single"})
        pages.Check(TreeOf(CanonicalText(*SMLoadModel(std::string(SMODEL_SOURCE_DIR "/examples/models/") + name + ".xml").project)));
    pages.Check(TreeOf(ReadFile(SMODEL_SOURCE_DIR "/examples/models/multifile/main.xml")));  // names its part files
    for (const std::string& element : RareElements()) pages.Check(TreeOf(element));
    for (unsigned seed = 1; seed <= ROUNDS; ++seed) pages.Check(TreeOf(MeasureLikeItem(seed)));
    for (const std::string& name : pages.Unseen()) ADD_FAILURE() << name << " is on a page, but never written";
    for (const std::string& name : pages.NeverMissing()) ADD_FAILURE() << name << " is always written";
}

TEST(DocumentPage, ListsTheWordsOfEachVocabulary) {
    std::map<std::string, std::vector<std::string>> words;
#define SM_ENUM_BEGIN(CLASS) \
    {                        \
        auto& list = words[#CLASS];
#define SM_ENUM_VALUE(NUMBER, IDENTIFIER, TEXT) list.push_back(TEXT);
#define SM_ENUM_END(CLASS) }
#include "objects/base/smenums_list.inc"
    std::size_t listed = 0;
    for (const PageTable& table : TablesOf(PAGES[0])) {
        if (table.heading != "Words") continue;
        for (const PageTable::Row& row : table.rows) {
            EXPECT_EQ(CodesIn(row.at(2)), words["SMEnum_" + row.at(0)]) << row.at(0);
            ++listed;
        }
    }
    EXPECT_EQ(listed, words.size());
}

TEST(DocumentPage, ListsTheElementsThatARenameFollows) {
    const CapturedLog log;
    const auto model = SMLoadModelBytes(FullOfReferences(ReadFile(SMODEL_SOURCE_DIR "/examples/models/everything.xml")));
    SMRenameList2 renames;
    renames.AddRenameNamespace("Old", "New");
    model.project->RenameObjects(renames);
    const std::string document = CanonicalText(*model.project).substr(std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>").size());
    std::set<std::string> listed;
    for (const PageTable& table : TablesOf(PAGES[0]))
        if (table.heading == "What a rename follows")
            for (const PageTable::Row& row : table.rows)
                for (const std::string& element : CodesIn(row.at(0))) listed.insert(element);
    EXPECT_EQ(ElementsWith("[New]", document, Pages().KeptElements()), listed);
}
