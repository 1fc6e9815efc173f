#pragma once

#include <map>
#include <string>
#include <vector>

#include "objects/base/smenums_002_000.h"
#include "tests/support/randomxml.h"

namespace smtest {

/**
 * A random model document, the same for the same seed: every kind of object in every place, optional elements there or not, elements
 * in any order that the readers take. It has none of the three things that a document does not bring back: roles that are
 * intrinsic, the lists of dimensions and hierarchies of a calculation, and publications at times that are none.
 */
class RandomDocument {
  public:
    struct Forms {
        /** What a rename does not bring back: references of two parts, and brackets in texts that are no references. */
        bool unrenamable = true;
        /**
         * What a repository loses without a field that tells of it: expressions with attributes or a prefix, items of a hierarchy's
         * own, the identity of sections.
         */
        bool unstored = true;
    };

    explicit RandomDocument(unsigned seed) : RandomDocument(seed, Forms()) {}
    RandomDocument(unsigned seed, Forms forms);

    const std::string& Text() const { return m_text; }
    /** How many objects it has of a kind, by the name of its element. */
    const std::map<std::string, int>& Kinds() const { return m_kinds; }
    /** Default names, each once, the root's first; only those in the document. */
    const std::vector<std::string>& Namespaces() const { return m_namespaces; }

  private:
    using Parts = RandomXml::Parts;
    using Maker = std::string (RandomDocument::*)();

    std::string Project();
    // containers
    std::string Namespace(int depth);
    std::string Folder(int depth);
    void AddContents(Parts& parts, int depth);
    // the query layer
    std::string QuerySubject();
    std::string UpdateSubject();
    void AddSubjectParts(Parts& parts);
    std::string Definition();
    std::string Query(const char* tag);
    std::string FilterDefinition();
    std::string PreviewFilters();
    std::string SecurityFilters();
    std::string Determinant();
    void AddItems(Parts& parts);
    std::string QueryItem();
    std::string QueryItemFolder();
    void AddItemParts(Parts& parts);
    std::string PromptInfo();
    std::string Roles();
    std::string Calculation();
    std::string Filter();
    // dimensions
    std::string Dimension();
    std::string Hierarchy();
    std::string Level();
    std::string Measure();
    std::string MeasureFolder();
    // links
    std::string Relationship();
    std::string ScopeRelationship();
    std::string Scope();
    std::string RelationshipShortcut();
    std::string Shortcut();
    void AddEnds(Parts& parts, bool withCardinalities);
    // what stands in the sections
    std::string DataSource();
    std::string ParameterMap();
    std::string ParameterMapEntry();
    std::string SecurityView();
    std::string Package();
    std::string Function();
    std::string ProcParameter();
    void AddColumnProperties(Parts& parts);

    /** An object's element, which is counted. */
    std::string Object(const std::string& kind, const std::string& content, const std::string& attributes = "");
    /** Some of what `make` makes; while there is room for more objects in the document. */
    void AddSome(Parts& parts, Maker make);
    bool HasRoom() const { return m_objects < MOST_OBJECTS; }

    // simple elements: each is there or not, as chance will have it
    std::string Maybe(const std::string& tag, const std::string& text);
    std::string MaybeText(const std::string& tag) { return Maybe(tag, m_xml.Odd()); }
    std::string MaybeReference(const std::string& tag) { return Maybe(tag, Reference()); }
    std::string MaybeFlag(const std::string& tag) { return Maybe(tag, Flag()); }
    std::string MaybeNumber(const std::string& tag) { return Maybe(tag, Number()); }
    template <class E>
    std::string MaybeEnum(const std::string& tag) {
        return Maybe(tag, EnumText<E>());
    }
    template <class E>
    std::string EnumText() {
        for (;;) {  // numbers have gaps
            const I18NString& text = schema_002_000::EnumText<E>(typename E::Enum(m_xml.Below(40)));
            if (!text.empty()) return text.c_str();
        }
    }
    /** The attribute. */
    std::string Status();

    std::string Flag() { return m_xml.Chance(2) ? "true" : "false"; }
    std::string Number() { return std::to_string(m_xml.Below(40)); }
    std::string Date();
    std::string Reference();
    /** XML that the model keeps as it is. */
    std::string Kept(const std::string& tag, const std::string& attributes = "", int depth = 0);
    std::string Expression();
    std::string LocaleTexts(const std::string& tag, const std::string& inDefault);
    std::string Property(const std::string& name, const std::string& type, const std::string& text);
    std::string Id();
    /** Date, id, version, properties. */
    void AddBase(Parts& parts);
    void AddNames(Parts& parts, const std::string& what);
    void AddTexts(Parts& parts, const std::string& what);

    static constexpr int MOST_OBJECTS = 150;

    Forms m_forms;
    RandomXml m_xml;
    std::map<std::string, int> m_kinds;
    std::vector<std::string> m_namespaces;
    int m_objects = 0;
    int m_names = 0;
    std::string m_text;
};

}  // namespace smtest
