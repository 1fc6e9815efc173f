#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "core/qvutils/base/takennumbers.h"
#include "core/qvutils/text/qvulstring.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

class QvSAX2Parser;

namespace schema_002_000 {

class SMNamespace2;

using SMNamespaceMap = std::map<QvULString, SMNamespace2*>;
/** The numbers behind names that are taken, by what stands before the number. */
using SMTakenNames = std::map<I18NString, qv::TakenNumbers>;

/**
 * A table of renames of namespaces, objects and items, and the engine that carries them into texts. References are bracketed,
 * "[namespace].[object].[item]", three parts or more; shorter ones are left as they are.
 */
class SM_API SMRenameList2 {
  public:
    SMRenameList2();
    ~SMRenameList2();
    SMRenameList2(const SMRenameList2&) = delete;
    SMRenameList2& operator=(const SMRenameList2&) = delete;

    /** An empty old name or item stands for any. The first rename of a key wins; one that changes nothing is not stored. */
    void AddRename(const I18NString& oldNamespace, const I18NString& oldName, const I18NString& oldItem, const I18NString& newNamespace,
                   const I18NString& newName, const I18NString& newItem);
    /** Renames a namespace in all references, and takes the new name as used up. */
    void AddRenameNamespace(const I18NString& oldName, const I18NString& newName);
    /** Renames a namespace to a name that neither map has and that no other namespace was renamed to. */
    void AddRenameUniqueNamespace(const I18NString& oldName, const SMNamespaceMap& first, const SMNamespaceMap& second, I18NString& result);

    /**
     * Renames the references in a text. True when the last complete reference of the text was renamed; only then does the text
     * change. As callers have come to expect, a bracket that opens no complete reference is lost from a text that changes.
     */
    bool PerformRenames(I18NString& text);
    bool PerformRenames(QvULString& text);
    /** Looks one reference up and renames its parts. */
    bool PerformRenames(I18NString& nameSpace, I18NString& name, I18NString& item);
    /** Renames in the texts, names and attributes of an XML fragment. A fragment that does not parse raises, and is empty then. */
    void PerformRenamesEscaped(TklByteBuffer& xml);

    /** The name itself, or with the next free number: "Sales2" after "Sales" and "Sales1". */
    static I18NString GenerateUniqueNamespaceName(const I18NString& name, const SMNamespaceMap& existing);
    /** The same; `taken` remembers what was found, and must be forgotten when a name leaves the map. */
    static I18NString GenerateUniqueNamespaceName(const I18NString& name, const SMNamespaceMap& existing, SMTakenNames& taken);

    bool empty() const noexcept { return renames.empty(); }

  private:
    struct Record {
        I18NString newNamespace, newName, newItem;
    };
    /** Compares with parts of a text too, so that looking a reference up copies nothing. */
    struct ByText {
        using is_transparent = void;
        static std::string_view View(const I18NString& text) { return text.utf8(); }
        static std::string_view View(std::string_view text) { return text; }
        template <class A, class B>
        bool operator()(const A& a, const B& b) const {
            return View(a) < View(b);
        }
    };
    using Items = std::map<I18NString, Record, ByText>;
    using Names = std::map<I18NString, Items, ByText>;

    static void _SplitNameAndSuffix(const I18NString& name, I18NString& base, long& suffix);
    static void _AddSuffixToName(I18NString& name, long suffix);
    static void _FindUniqueSuffixUsingNamespaceMap(const I18NString& base, long suffix, const SMNamespaceMap& existing, I18NString& result);
    void _FindUniqueSuffixUsingNamespaceMapAndRenameTargets(const I18NString& base, long suffix, const SMNamespaceMap& first,
                                                            const SMNamespaceMap& second, I18NString& result) const;
    const Record* FindRecord(std::string_view nameSpace, std::string_view name, std::string_view item) const;
    void RenameDocument(TklByteBuffer& xml, bool ownRoot);
    /** Walks the references of a text; writes the renamed text to `out`, if given. True when the last one is renamed. */
    bool Scan(std::string_view text, std::string* out) const;
    static void AppendReference(std::string& out, const Record* record, std::string_view nameSpace, std::string_view name,
                                std::string_view item);

    std::map<I18NString, Names, ByText> renames;
    std::set<I18NString> renameTargets;
    /** Made by the first fragment, and used for all; so is the copy of the fragment that is parsed. */
    std::unique_ptr<QvSAX2Parser> parser;
    TklByteBuffer m_document{256, 256};
};

/** Prints what it receives with the references renamed; without the outermost element where that is a root of our own. */
class SM_API SAX2RenameHandler : public QvSAX2PrintHandler {
  public:
    /** Target and list are borrowed; a null list renames nothing. */
    SAX2RenameHandler(QvXMLFormatTarget& target, SMRenameList2* list, bool ownRoot = true);
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override;
    void characters(const I18NString& text) override;
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  private:
    I18NString Renamed(const I18NString& text) const;

    SMRenameList2* m_list;
    int m_depth;
};

}  // namespace schema_002_000
