#pragma once

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
    void Text(const I18NString& text) { m_sink.Text(text.utf8()); }
    void End() { m_sink.End(); }

    /**
     * What follows is the document for which the element stands that has just been started; its attributes of these names only lead
     * there, and are no content.
     */
    void StartPart(const std::vector<I18NString>& leading);
    void EndPart(bool isWhole) { m_sink.EndPart(isWhole); }

  private:
    ContentSink& m_sink;
    /** Those of the innermost element, borrowed for the time of its start event. */
    const QvXMLAttributes* m_attributes = nullptr;
};

}  // namespace qv
