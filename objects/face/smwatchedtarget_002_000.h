#pragma once

#include <memory>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "objects/face/smguard_002_000.h"

namespace schema_002_000 {

/** Hands bytes on in blocks, and counts them on a ticker: so its caller may watch, and end it, at each block. Borrows both. */
class SMWatchedTarget : public QvXMLFormatTarget {
  public:
    SMWatchedTarget(QvXMLFormatTarget& target, SMTicker& ticker) : m_target(target), m_ticker(ticker), m_window(new char[WINDOW]) {
        m_at = m_window.get();
        m_end = m_at + WINDOW;
    }

    void flush() override {
        HandOn();
        m_target.flush();
    }

  protected:
    void overflow(const char* bytes, std::size_t length) override {
        HandOn();
        if (length < WINDOW) return write(bytes, length);
        m_ticker.Add(length);
        m_target.write(bytes, length);
    }

  private:
    static constexpr std::size_t WINDOW = std::size_t{64} << 10;

    void HandOn() {
        const auto length = static_cast<std::size_t>(m_at - m_window.get());
        m_at = m_window.get();
        m_ticker.Add(length);
        m_target.write(m_window.get(), length);
    }

    QvXMLFormatTarget& m_target;
    SMTicker& m_ticker;
    std::unique_ptr<char[]> m_window;
};

}  // namespace schema_002_000
