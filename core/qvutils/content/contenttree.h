#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/content/contenthasher.h"
#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/persist/ioobject.h"

namespace qv {

/** Where a parser stood. `file` counts the files of a document in the order in which they were met. */
struct ContentPlace {
    std::size_t file = 0;
    long line = 0, column = 0;
};

/** `place` is behind the start tag. */
struct ContentAttribute {
    std::string name, value;
    ContentPlace place;
};

/** Adjacent character data. `place` is behind the markup before it. */
struct ContentText {
    std::string text;
    ContentPlace place;
};

/**
 * Elements by their numbers in the order of their start tags: those from the first to the one before the end. An element and all that is
 * in it have one such range.
 */
struct ContentRange {
    std::size_t first = 0, end = 0;

    bool Contains(const ContentRange& other) const { return first <= other.first && other.end <= end; }
};

/**
 * An element that not both documents may hold alike, or that is around such a one; with all that is in it. What else is in a chosen element
 * tells there which of its siblings it is, and no more than that when it holds elements of its own: it is hollow.
 */
struct SM_API ContentNode {
    ContentNode() = default;
    ContentNode(const ContentNode&) = default;
    ContentNode(ContentNode&&) noexcept = default;
    ContentNode& operator=(const ContentNode&) = default;
    ContentNode& operator=(ContentNode&&) noexcept = default;
    /** Takes no more of the stack for a tree that is deep. */
    ~ContentNode();

    std::string name;
    /** That of the placeholder which became this one; empty when it was none. Its attributes and texts are then in the file of `place`. */
    std::string placeholder;
    bool isChosen = false, isHollow = false;
    ContentRange range;
    /** With all that is in it; and without what a save may have added. */
    std::uint64_t digest = 0, bareDigest = 0;
    /** What tells it from its siblings of the same name; empty when nothing does. */
    std::string key;
    /** The texts of the elements "name" in it that are behind the first one: its names in other languages. */
    std::vector<std::string> otherNames;
    /** Behind its start tag. */
    ContentPlace place;
    std::vector<ContentAttribute> attributes;
    std::vector<ContentText> texts;
    std::vector<ContentNode> children;
    /** The model object that it fills a part of; null where that is not known. */
    QvSmartPtr<IOObject> object;
    /** The same for comparison alone, since the object may be gone; also of a simple element that is not chosen. */
    const IOObject* filled = nullptr;
};

/** Whether there is no element in it. */
inline bool IsSimple(const ContentNode& node) {
    return node.children.empty() && !node.isHollow;
}

inline std::string WholeText(const ContentNode& node) {
    std::string whole;
    for (const ContentText& text : node.texts) whole += text.text;
    return whole;
}

/** That of an object, as an attribute or as a property, of which readers take the last; empty when it has none. */
std::string IdOf(const ContentNode& object);

/** Where the parser stands, and which object it fills now. */
struct ContentWitness {
    std::function<ContentPlace()> place;
    /** Without holding it, and so that it lasts as long as the witness. */
    std::function<const IOObject*()> filled;
    std::function<QvSmartPtr<IOObject>()> object;
};

/** An element that ends. All is borrowed. */
struct EndedElement {
    const ContentHasher::Digests& digests;
    /** What a save may have added right in it. */
    const std::vector<std::uint64_t>& given;
    /** Whether an element in it is chosen. */
    bool holds;
    /** Its name, and that of the element around it; empty around the root. */
    std::string_view name, outer;
};

/** Whether an element that ends is chosen for the tree; what is around a chosen one has to be, too. */
using ContentChoice = std::function<bool(const EndedElement&)>;

/** Builds the tree of the chosen elements of a document; it grows with these and their children. */
class SM_API ContentTreeSink final : public ContentSink {
  public:
    /** A document that no parser reads has no witness. */
    explicit ContentTreeSink(ContentChoice isChosen, ContentWitness witness = {});

    void Start(std::string_view name) override;
    void Attribute(std::string_view name, std::string_view value) override;
    void Forget(std::string_view name, std::string_view value) override;
    void Text(std::string_view text) override;
    void End() override;
    void StartPart() override;
    void EndPart(bool isWhole) override;
    void Become(std::string_view name) override;

    /** Takes ranges of elements that are not to be hollow, nor all in them; in their order, before the document. */
    void KeepWhole(std::vector<ContentRange> ranges) { m_whole = std::move(ranges); }

    /** It holds the root. */
    ContentNode& Document() { return m_open.front().node; }

  private:
    /** An open element. Its memory is used again for the next one that opens there. */
    struct Level {
        ContentNode node;
        /** The texts of its "name" elements, which may not stay in the tree. */
        std::vector<std::string> names;
        bool startsText = true, holds = false;

        void Clear();
    };

    /** A placeholder as it was before its part. */
    struct Part {
        std::size_t depth = 0;
        Level placeholder;
    };

    ContentPlace Here() const { return m_witness.place ? m_witness.place() : ContentPlace(); }
    Level& Innermost() { return m_open[m_depth - 1]; }

    bool IsWhole(const ContentRange& range) const;
    bool Finish(Level& level, const ContentHasher::Digests& digests, std::string_view outer);
    void TakeRoot(Level& placeholder, Level& root) const;

    ContentChoice m_isChosen;
    ContentWitness m_witness;
    ContentHasher m_hasher;
    /** The first level is around the document, and those behind the depth are closed. */
    std::vector<Level> m_open;
    std::size_t m_depth = 1;
    std::vector<Part> m_parts;
    std::vector<ContentRange> m_whole;
    std::size_t m_started = 0;
    ContentPlace m_behindMarkup;
};

}  // namespace qv
