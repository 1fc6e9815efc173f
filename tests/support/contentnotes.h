#pragma once

#include <string>
#include <string_view>

#include "core/qvutils/content/contentsink.h"

/** Writes down what it is told. */
class ContentNotes final : public qv::ContentSink {
  public:
    void Start(std::string_view name) override { text.append("<").append(name); }
    void Attribute(std::string_view name, std::string_view value) override { text.append(" ").append(name).append("=").append(value); }
    void Forget(std::string_view, std::string_view) override { text += "?"; }
    void Text(std::string_view piece) override { text.append("[").append(piece).append("]"); }
    void End() override { text += ">"; }
    void StartPart() override { text += "?"; }
    void EndPart(bool) override { text += "?"; }
    void Become(std::string_view name) override { text.append("=").append(name); }

    std::string text;
};
