#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/qvutils/content/hashingsink.h"

namespace qv {

/**
 * Tells whether two documents hold the same elements, in an amount of memory that does not depend on their size: the digests of all
 * that is in one are added, those of the other taken away, each in one of many sums that its bits choose. What differs
 * leaves its sum other than zero.
 */
class ContentSums {
  public:
    /** What a save may add has sums of its own, since it may be so much that hardly one of these stays balanced. */
    enum class Kind { element, given };

    /** To add a digest, or its negative to take it away. The sum is fetched ahead, since it is mostly in no cache. */
    void Change(Kind kind, std::uint64_t digest, std::uint64_t change) {
        Due& due = m_due[m_next++ % m_due.size()];
        m_sums[due.sum] += due.change;
        due = {SumOf(kind, digest), change};
        __builtin_prefetch(&m_sums[due.sum], 1);
    }
    /** To be called before the sums are asked. */
    void Settle() {
        for (Due& due : m_due) m_sums[due.sum] += std::exchange(due.change, 0);
    }
    /** Whether what has this digest is (but for rare chance, that lets it be false) as often in both documents. */
    bool IsBalanced(Kind kind, std::uint64_t digest) const { return m_sums[SumOf(kind, digest)] == 0; }
    bool AreBalanced() const {
        return std::all_of(m_sums.begin(), m_sums.end(), [](std::uint64_t sum) { return sum == 0; });
    }

  private:
    struct Due {
        std::size_t sum = 0;
        std::uint64_t change = 0;
    };
    static constexpr std::size_t ELEMENTS = std::size_t{1} << 16, GIVEN = std::size_t{1} << 14;

    static std::size_t SumOf(Kind kind, std::uint64_t digest) {
        return kind == Kind::element ? digest % ELEMENTS : ELEMENTS + digest % GIVEN;
    }

    std::vector<std::uint64_t> m_sums = std::vector<std::uint64_t>(ELEMENTS + GIVEN);
    std::array<Due, 16> m_due;
    std::size_t m_next = 0;
};

/**
 * Adds the elements of a document to sums, or takes them away. The sums are settled when it goes. What a broken part has added stays: the
 * document is not whole anyhow, and its places are looked for.
 */
class SummingSink final : public HashingSink {
  public:
    enum class Way { add, take };
    /** `sums` is borrowed. */
    SummingSink(ContentSums& sums, Way way) : m_sums(sums), m_way(way) {}
    ~SummingSink() override { m_sums.Settle(); }

  private:
    void Take(const ContentHasher::Digests& element, const std::vector<std::uint64_t>& given) override {
        if (element.isGiven) return;
        Change(ContentSums::Kind::element, element.bare);
        for (const std::uint64_t one : given) Change(ContentSums::Kind::given, one);
    }
    void Change(ContentSums::Kind kind, std::uint64_t digest) { m_sums.Change(kind, digest, m_way == Way::add ? digest : 0 - digest); }

    ContentSums& m_sums;
    Way m_way;
};

}  // namespace qv
