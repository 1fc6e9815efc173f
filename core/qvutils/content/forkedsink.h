#pragma once

#include "core/qvutils/content/contentsink.h"

namespace qv {

/** Tells two sinks the same, one after the other. */
class ForkedSink final : public ContentSink {
  public:
    /** Both are borrowed. */
    ForkedSink(ContentSink& first, ContentSink& second) : m_first(first), m_second(second) {}

    void Start(std::string_view name) override {
        m_first.Start(name);
        m_second.Start(name);
    }
    void Attribute(std::string_view name, std::string_view value) override {
        m_first.Attribute(name, value);
        m_second.Attribute(name, value);
    }
    void Text(std::string_view text) override {
        m_first.Text(text);
        m_second.Text(text);
    }
    void End() override {
        m_first.End();
        m_second.End();
    }
    void Forget(std::string_view name, std::string_view value) override {
        m_first.Forget(name, value);
        m_second.Forget(name, value);
    }
    void StartPart() override {
        m_first.StartPart();
        m_second.StartPart();
    }
    void EndPart(bool isWhole) override {
        m_first.EndPart(isWhole);
        m_second.EndPart(isWhole);
    }
    void Become(std::string_view name) override {
        m_first.Become(name);
        m_second.Become(name);
    }

  private:
    ContentSink& m_first;
    ContentSink& m_second;
};

}  // namespace qv
