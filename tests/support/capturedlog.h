#pragma once

#include <gmock/gmock.h>

#include <iosfwd>
#include <string>
#include <vector>

#include "core/qvutils/diag/diagnostics.h"

namespace smtest {

/** One event of the log. `origin` is category and product, the same for nearly all. */
struct LoggedEvent {
    int level = 0;
    std::string module, className, method, message, detail;
    std::string origin = "code/QvOne";

    bool operator==(const LoggedEvent&) const = default;
};
std::ostream& operator<<(std::ostream& out, const LoggedEvent& event);

/** Takes the events of this thread for as long as it lives. */
class CapturedLog : public SMLogSink {
  public:
    CapturedLog() : m_scope(*this) {}
    void Take(const QvLogEvent& event, const SMSourceContext* context) override;

    const std::vector<LoggedEvent>& Events() const { return m_events; }
    /** Level and message of each event: "4 Unknown tag ''". */
    std::vector<std::string> Messages() const;
    void Clear() { m_events.clear(); }

  private:
    std::vector<LoggedEvent> m_events;
    SMLogScope m_scope;
};

}  // namespace smtest
