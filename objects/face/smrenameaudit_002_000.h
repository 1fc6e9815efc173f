#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/xml/qvxmlattributes.h"
#include "objects/face/smmodelrename_002_000.h"

namespace schema_002_000 {

/** What a rename should have made of the texts of a document, by the place of a text among all texts and attribute values. */
class SMRenameAudit {
  public:
    /** The renames are borrowed. */
    explicit SMRenameAudit(const std::vector<SMNamespaceRename>& renames);

    /** Takes the texts of the document as it was, kept XML included. Raises TklRuntimeError when it cannot be read. */
    void ReadBefore(const I18NString& document);
    /** Compares, and logs what is not as it should be, each at its place in the document. */
    void CompareAfter(const I18NString& document, const std::string& documentName, const SMControl& control);

    struct Verdict {
        /** Old names by which the text still knows namespaces. */
        std::vector<std::string> stillNamed;
        bool lostBracket = false;
    };
    Verdict Judge(std::string_view before, std::string_view after) const;

  private:
    /** The namespaces that take part, by old or by new name, where a reference begins with them. A name behind a point is of something
     * else. */
    std::vector<std::string_view> MentionsIn(std::string_view text) const;
    const std::string* NewNameOf(std::string_view name) const;

    std::map<std::string, std::string, std::less<>> m_newNames;
    std::map<std::size_t, std::string> m_before;
    std::size_t m_count = 0;
};

}  // namespace schema_002_000
