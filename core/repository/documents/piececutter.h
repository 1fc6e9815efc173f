#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qv {

/**
 * Cuts a stream of bytes where its content says so, not at counted places: after a change, all pieces but those around it are the
 * same again. A cut falls where a hash of the last 64 bytes ends a window, 16 KB after another one on average.
 */
class PieceCutter {
  public:
    static constexpr std::size_t MIN_BYTES = 4 * 1024, MAX_BYTES = 64 * 1024;

    /** Gets each piece; the bytes are good during the call. */
    using Take = std::function<void(std::string_view piece)>;

    explicit PieceCutter(Take take) : m_take(std::move(take)) {}
    void Add(std::string_view bytes);
    /** Gives out what is left. Nothing may be added afterwards. */
    void Finish();

  private:
    /** Where the piece that begins at `start` ends, or npos when it is not yet told. */
    std::size_t FindEnd(std::size_t start);

    Take m_take;
    std::string m_bytes;
    /** Bytes of the first piece that were looked at, and the hash behind them. */
    std::size_t m_seen = 0;
    std::uint64_t m_hash = 0;
};

}  // namespace qv
