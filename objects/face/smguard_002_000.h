#pragma once

#include "core/qvutils/xml/limits.h"
#include "objects/base/smpartfiles_002_000.h"
#include "objects/face/smoperation_002_000.h"

namespace schema_002_000 {

/** Thrown by an operation of the face through whatever it calls, because its caller wants it to end. */
struct SMCancelled : SMReadEnded {};

/** Counts the steps of an operation: tells its caller from time to time, and ends it when the caller says so. */
class SMTicker {
  public:
    /** The control is borrowed. `interval`: steps between two calls of its callback. */
    SMTicker(const SMControl& control, SMProgress::Unit unit, std::size_t interval)
        : m_control(control), m_interval(interval), m_progress{unit, 0, 0} {}

    void Add(std::size_t steps) {
        if (m_control.cancelled && m_control.cancelled->load(std::memory_order_relaxed)) throw SMCancelled();
        m_progress.done += steps;
        if (m_progress.done >= m_next) Tell();
    }
    std::size_t Done() const { return m_progress.done; }
    /** A count to tell along; borrowed. */
    void WatchBytes(const std::size_t& bytes) { m_bytes = &bytes; }

  private:
    void Tell() {
        m_next = m_progress.done + m_interval;
        if (m_bytes) m_progress.bytesRead = *m_bytes;
        if (m_control.progress) m_control.progress(m_progress);
    }

    const SMControl& m_control;
    std::size_t m_interval;
    std::size_t m_next = 0;
    SMProgress m_progress;
    const std::size_t* m_bytes = nullptr;
};

/**
 * Runs an operation with its log collected, and turns the way it ends into a result: `body` gives false for a failure that it has
 * logged; what it throws, but for std::bad_alloc, becomes a diagnostic. Objects that diagnostics name must live until this returns.
 * More events than `most` are not listed, but counted.
 */
void SMRunGuarded(SMResult& result, std::size_t most, const std::function<bool()>& body);
inline void SMRunGuarded(SMResult& result, const std::function<bool()>& body) {
    SMRunGuarded(result, SMXMLLimits().findings, body);
}

/** Drops all events, for questions about objects that may log when there is no answer. */
class SMQuietSink : public SMLogSink {
  public:
    void Take(const QvLogEvent&, const SMSourceContext*) override {}
};

}  // namespace schema_002_000
