#include "core/qvutils/base/qvuuid.h"

#include <pthread.h>
#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <system_error>

namespace {

/**
 * The ids of the process: 48 bits of milliseconds, then 74 bits that start at random in each millisecond and grow by a random
 * step within it. A clock that goes back changes nothing; when a millisecond is used up, the next one is taken early.
 */
class IdSource {
  public:
    static IdSource& Instance() {
        static IdSource& source = *new IdSource;  // never destroyed: ids may be asked for while the process ends
        return source;
    }

    void Next(std::array<std::uint8_t, 16>& bytes) {
        const std::lock_guard lock(m_mutex);
        Step(Now());
        for (unsigned i = 0; i < 6; ++i) bytes[i] = static_cast<std::uint8_t>(m_time >> (40 - 8 * i));
        bytes[6] = static_cast<std::uint8_t>(0x70U | (m_high >> 8));
        bytes[7] = static_cast<std::uint8_t>(m_high);
        for (unsigned i = 0; i < 8; ++i) bytes[8 + i] = static_cast<std::uint8_t>(m_low >> (56 - 8 * i));
        bytes[8] = static_cast<std::uint8_t>(0x80U | (bytes[8] & 0x3FU));
    }

  private:
    static constexpr std::uint64_t LOW_LIMIT = std::uint64_t{1} << 62;
    static constexpr std::uint64_t HIGH_LIMIT = std::uint64_t{1} << 12;

    IdSource() {
        // A forked child must neither find the lock held nor repeat the parent's ids.
        pthread_atfork([] { Instance().m_mutex.lock(); }, [] { Instance().m_mutex.unlock(); }, [] { Instance().AfterFork(); });
    }

    void AfterFork() {
        m_left = 0;
        ++m_time;
        m_fresh = true;
        m_mutex.unlock();
    }

    static std::uint64_t Now() {
        const auto time = std::chrono::system_clock::now().time_since_epoch();
        return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
    }

    void Step(std::uint64_t now) {
        if (now <= m_time && !m_fresh) {
            m_low += 1 + (Random() & 0xFFFFFFFFU);
            if (m_low >= LOW_LIMIT) {
                m_low -= LOW_LIMIT;
                ++m_high;
            }
            if (m_high < HIGH_LIMIT) return;
            now = m_time + 1;
        }
        m_fresh = false;
        m_time = std::max(now, m_time);
        m_high = Random() % (HIGH_LIMIT / 2);  // the upper half is room to grow
        m_low = Random() % LOW_LIMIT;
    }

    /** Asking the kernel costs more than the rest of an id, so random bytes are fetched by the block. */
    std::uint64_t Random() {
        if (m_left == 0) {
            for (std::size_t filled = 0; filled < sizeof m_random;) {
                const ssize_t got = getrandom(reinterpret_cast<char*>(m_random.data()) + filled, sizeof m_random - filled, 0);
                if (got > 0)
                    filled += static_cast<std::size_t>(got);
                else if (errno != EINTR)
                    throw std::system_error(errno, std::generic_category(), "no random bytes for an id");
            }
            m_left = m_random.size();
        }
        return m_random[--m_left];
    }

    std::mutex m_mutex;
    std::uint64_t m_time = 0, m_high = 0, m_low = 0;
    bool m_fresh = false;
    std::array<std::uint64_t, 64> m_random{};
    std::size_t m_left = 0;
};

}  // namespace

QvULString QvUUID::GetAsQvULString() const {
    static constexpr char HEX[] = "0123456789abcdef";
    char text[36];
    std::size_t at = 0;
    for (std::size_t i = 0; i < m_bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text[at++] = '-';
        text[at++] = HEX[m_bytes[i] >> 4];
        text[at++] = HEX[m_bytes[i] & 0xF];
    }
    return QvULString(std::string_view(text, sizeof text));
}

QvUUID QvUUIDGen::Create() {
    QvUUID id;
    IdSource::Instance().Next(id.m_bytes);
    return id;
}
