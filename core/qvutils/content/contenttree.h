#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/content/contenthasher.h"
#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/content/contentsums.h"
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

/** An element that not both documents hold alike, or that is around such a one. */
struct ContentNode {
    std::string name;
    std::uint64_t digest = 0;
    /** What tells it from its siblings of the same name; empty when nothing does. */
    std::string key;
    /** Behind its start tag. */
    ContentPlace place;
    std::vector<ContentAttribute> attributes;
    std::vector<ContentText> texts;
    std::vector<ContentNode> children;
    /** The model object that it fills a part of; null where that is not known. */
    QvSmartPtr<IOObject> object;
};

/** Where the parser stands, and which object it fills now. */
struct ContentWitness {
    std::function<ContentPlace()> place;
    std::function<QvSmartPtr<IOObject>()> object;
};

/** Builds the tree of those elements of a document that are not balanced in the sums; it grows with the differences alone. */
class ContentTreeSink final : public ContentSink {
  public:
    /** `sums` is borrowed. A document that no parser reads has no witness. */
    explicit ContentTreeSink(const ContentSums& sums, ContentWitness witness = {});

    void Start(std::string_view name) override;
    void Attribute(std::string_view name, std::string_view value) override;
    void Forget(std::string_view name, std::string_view value) override;
    void Text(std::string_view text) override;
    void End() override;
    void StartPart() override;
    void EndPart(bool isWhole) override;

    /** The root, or an element without a name when both documents are alike. */
    ContentNode& Root() { return m_open.front().node; }

  private:
    struct Level {
        ContentNode node;
        /** The text of its first "name" element, which may not stay in the tree. */
        std::string name;
        bool startsText = true;
    };

    /** A placeholder as it was before its part. */
    struct Part {
        std::size_t depth = 0;
        ContentNode placeholder;
    };

    ContentPlace Here() const { return m_witness.place ? m_witness.place() : ContentPlace(); }

    static void Become(Level& placeholder, Level root);

    const ContentSums& m_sums;
    ContentWitness m_witness;
    ContentHasher m_hasher;
    /** The first level is around the document. */
    std::vector<Level> m_open;
    std::vector<Part> m_parts;
    ContentPlace m_behindMarkup;
};

}  // namespace qv
