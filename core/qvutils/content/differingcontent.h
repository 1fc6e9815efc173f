#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/contenthasher.h"
#include "core/qvutils/content/contentsums.h"
#include "core/qvutils/content/hashingsink.h"

namespace qv {

/**
 * Chooses the elements of a document and of the one written for it that are to be compared, since something of the document may not be
 * in the other. What a save adds, such as ids, is no such thing. It borrows the sums of both documents.
 */
class SM_API DifferingContent {
  public:
    using Given = std::vector<std::uint64_t>;

    explicit DifferingContent(const ContentSums& sums) : m_sums(sums) {}

    /** First, those of the written document. */
    void AddWritten(const Given& given) { m_written.insert(m_written.end(), given.begin(), given.end()); }
    void Settle();

    /** Then each element of the document as it ends; `holds` tells that an element in it is chosen. */
    bool IsOfDocument(const ContentHasher::Digests& element, const Given& given, bool holds);
    /** At last each element of the written one. */
    bool IsOfWritten(const ContentHasher::Digests& element, bool holds) const {
        return holds || !m_sums.IsBalanced(ContentSums::Kind::element, element.bare) || m_chosen.count(element.bare) > 0;
    }

  private:
    bool IsWritten(std::uint64_t given);

    const ContentSums& m_sums;
    /** In their order, each once, and how often each is there for the taking. */
    Given m_written;
    std::vector<std::uint32_t> m_left;
    /** Digests of the chosen ones that differ in what is given alone. */
    std::unordered_set<std::uint64_t> m_chosen;
};

/** Tells what is given in the written document. */
class GivenSink final : public HashingSink {
  public:
    /** Borrowed, and settled when this goes. */
    explicit GivenSink(DifferingContent& differing) : m_differing(differing) {}
    ~GivenSink() override { m_differing.Settle(); }

  private:
    void Take(const ContentHasher::Digests&, const std::vector<std::uint64_t>& given) override { m_differing.AddWritten(given); }

    DifferingContent& m_differing;
};

}  // namespace qv
