#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/io/qvxmlformattarget.h"

namespace qv {

/**
 * Takes the bytes of a document or of a piece of one that the library prints, and tells a sink its content. They are well-formed UTF-8
 * without a DOCTYPE, so one pass suffices that asks no parser; kept XML may have comments, CDATA sections and processing instructions.
 */
class SM_API PrintedContent final : public QvXMLFormatTarget {
  public:
    /** `sink` is borrowed. */
    explicit PrintedContent(ContentSink& sink);
    /** Tells all that has come, up to an unfinished piece of markup. What comes later begins a text of its own. */
    void flush() override {
        if (m_at != m_buffer.data()) Finish();
    }

  protected:
    void overflow(const char* bytes, std::size_t length) override;

  private:
    void Consume();
    void Finish();
    /** The piece of markup at the start of `rest`; empty when its end has not come yet. */
    std::string_view MarkupOf(std::string_view rest) const;
    void Tell(std::string_view markup);
    void TellStart(std::string_view tag);
    std::string_view Plain(std::string_view escaped);

    ContentSink& m_sink;
    std::vector<char> m_buffer;
    std::string m_plain;
};

}  // namespace qv
