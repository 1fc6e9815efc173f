#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/xml/qvcontenthandler.h"

namespace qv {

/** Tells a sink the content of a document that is being parsed, and of the documents that its placeholders stand for. */
class SM_API ContentSource {
  public:
    /** `sink` is borrowed. */
    explicit ContentSource(ContentSink& sink) : m_sink(sink) {}

    void Start(const I18NString& localName, const QvXMLAttributes& attributes);
    void Text(const I18NString& text);
    void End();

    /**
     * What follows is the document for which the element stands that has just been started. Its attributes `leading` only lead there, and
     * are no content. Those of the names `repeated` repeat what the root of that document has in an element or property of the name; one
     * that says something else is content, and told at the end.
     */
    void StartPart(const std::vector<I18NString>& leading, const std::vector<I18NString>& repeated);
    void EndPart(bool isWhole);
    void Become(const I18NString& name) { m_sink.Become(name.utf8()); }

  private:
    struct Attribute {
        std::string name, value;
    };
    struct Part {
        /** Those of which the document has not said the same yet. */
        std::vector<Attribute> repeated;
        std::size_t depth = 0;
        /** The element or property right in the root that is open, if it is one of those names. */
        std::string name, text;
    };

    void StartInPart(Part& part, const I18NString& localName, const QvXMLAttributes& attributes);
    void Forget(const I18NString& name);

    ContentSink& m_sink;
    std::vector<Part> m_parts;
    /** Those of the innermost element, borrowed for the time of its start event. */
    const QvXMLAttributes* m_attributes = nullptr;
};

}  // namespace qv
