#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/content/hashingsink.h"

namespace qv {

/**
 * Tells whether one document holds all elements of another: the digests of all that is in that are added, those of the one are taken
 * away, each in one of many sums that its bits choose. What differs leaves its sum other than zero. What a save may add is besides kept
 * apart, by eight bytes each of the document and of those written that may be among them, as long as that is no more than `MOST`.
 */
class SM_API ContentSums {
  public:
    /** What a save may add has sums of its own, since it may be so much that hardly one of these stays balanced. */
    enum class Kind { element, given };
    static constexpr std::size_t MOST = std::size_t{1} << 22;

    /** Of the document; then of the written one. */
    void Add(Kind kind, std::uint64_t digest) {
        Change(kind, digest, digest);
        if (kind == Kind::given) Keep(m_standing, digest);
    }
    void Take(Kind kind, std::uint64_t digest) {
        Change(kind, digest, 0 - digest);
        if (kind == Kind::given && MayStand(digest)) Keep(m_written, digest);
    }
    /** To be called before the sums are asked. */
    void Settle() {
        for (Due& due : m_due) m_sums[due.sum] += std::exchange(due.change, 0);
    }
    /** Whether what has this digest is (but for rare chance, that lets it be false) as often in both documents. */
    bool IsBalanced(Kind kind, std::uint64_t digest) const { return m_sums[SumOf(kind, digest)] == 0; }
    /** Whether nothing of the document is missing in the written one, which may hold more of what a save adds. */
    bool AreCovered();

  private:
    struct Due {
        std::size_t sum = 0;
        std::uint64_t change = 0;
    };
    static constexpr std::size_t ELEMENTS = std::size_t{1} << 16, GIVEN = std::size_t{1} << 14;

    /** The sum is fetched ahead, since it is mostly in no cache. */
    void Change(Kind kind, std::uint64_t digest, std::uint64_t change) {
        Due& due = m_due[m_next++ % m_due.size()];
        m_sums[due.sum] += due.change;
        due = {SumOf(kind, digest), change};
        __builtin_prefetch(&m_sums[due.sum], 1);
    }
    void Keep(std::vector<std::uint64_t>& kept, std::uint64_t digest) {
        if (kept.size() < MOST)
            kept.push_back(digest);
        else
            m_isCut = true;
    }
    bool MayStand(std::uint64_t digest) {
        if (m_mayStand.empty()) LookAtStanding();
        return m_mayStand[digest & (m_mayStand.size() - 1)];
    }
    void LookAtStanding();

    static std::size_t SumOf(Kind kind, std::uint64_t digest) {
        return kind == Kind::element ? digest % ELEMENTS : ELEMENTS + digest % GIVEN;
    }

    std::vector<std::uint64_t> m_sums = std::vector<std::uint64_t>(ELEMENTS + GIVEN);
    std::array<Due, 16> m_due;
    std::size_t m_next = 0;
    /** What is given in the document, and of the written one what is likely to be among that. */
    std::vector<std::uint64_t> m_standing, m_written;
    /** By the lowest bits of digests: whether one of the document has them. */
    std::vector<bool> m_mayStand;
    bool m_isCut = false;
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
        Tell(ContentSums::Kind::element, element.bare);
        for (const std::uint64_t one : given) Tell(ContentSums::Kind::given, one);
    }
    void Tell(ContentSums::Kind kind, std::uint64_t digest) {
        if (m_way == Way::add)
            m_sums.Add(kind, digest);
        else
            m_sums.Take(kind, digest);
    }

    ContentSums& m_sums;
    Way m_way;
};

}  // namespace qv
