#pragma once

#include <string_view>

namespace qv {

/**
 * Takes the content of a document: its elements, attributes and texts, without what is layout, such as comments and the way in which
 * characters are written. All views are good for the time of the call.
 */
class ContentSink {
  public:
    virtual ~ContentSink() = default;
    /** `name` is a local name. */
    virtual void Start(std::string_view name) = 0;
    /** Of the element that has just started. */
    virtual void Attribute(std::string_view name, std::string_view value) = 0;
    virtual void Text(std::string_view text) = 0;
    virtual void End() = 0;
    /** An attribute that has just been told is no content after all. */
    virtual void Forget(std::string_view name, std::string_view value) = 0;
    /**
     * The element that is open stands for the root of another document, which follows: it becomes that root, and what it holds itself
     * comes behind what that holds. `isWhole` false at the end takes back all that was told of the other document.
     */
    virtual void StartPart() = 0;
    virtual void EndPart(bool isWhole) = 0;
    /** The element that is open is a placeholder that stands for one of this name, with all that it has itself. */
    virtual void Become(std::string_view name) = 0;
};

/** White space between elements is layout. */
inline bool IsLayout(std::string_view text) noexcept {
    for (const char character : text)
        if (character != ' ' && character != '\n' && character != '\t' && character != '\r') return false;
    return true;
}

inline std::string_view LocalName(std::string_view qualifiedName) noexcept {
    return qualifiedName.substr(qualifiedName.find(':') + 1);  // none is one before the first
}

}  // namespace qv
