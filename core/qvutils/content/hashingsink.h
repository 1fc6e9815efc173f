#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/qvutils/content/contenthasher.h"
#include "core/qvutils/content/contentsink.h"

namespace qv {

/** Makes the digests of all elements of a document, and hands each on as its element ends. */
class HashingSink : public ContentSink {
  public:
    void Start(std::string_view name) final { m_hasher.Start(name); }
    void Attribute(std::string_view name, std::string_view value) final { m_hasher.Attribute(name, value); }
    void Forget(std::string_view name, std::string_view value) final { m_hasher.Forget(name, value); }
    void Text(std::string_view text) final { m_hasher.Text(text); }
    void End() final {
        if (const ContentHasher::Digests* const digests = m_hasher.End()) Take(*digests, m_hasher.Given());
    }
    void StartPart() final { m_hasher.StartPart(); }
    void EndPart(bool isWhole) final { m_hasher.EndPart(isWhole); }
    void Become(std::string_view name) final { m_hasher.Become(name); }

  protected:
    /** `given` is that of the hasher. Nothing is handed on for the root of a part, whose placeholder ends later. */
    virtual void Take(const ContentHasher::Digests& element, const std::vector<std::uint64_t>& given) = 0;

  private:
    ContentHasher m_hasher;
};

}  // namespace qv
