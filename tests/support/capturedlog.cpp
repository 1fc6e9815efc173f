#include "tests/support/capturedlog.h"

#include <ostream>

namespace smtest {

std::ostream& operator<<(std::ostream& out, const LoggedEvent& event) {
    out << event.level << ' ' << event.origin << ' ' << event.module << ' ' << event.className << ' ' << event.method << ": "
        << event.message;
    return event.detail.empty() ? out : out << " | " << event.detail;
}

void CapturedLog::Take(const QvLogEvent& event, const SMSourceContext*) {
    EXPECT_EQ(event.action, 0);
    m_events.push_back({event.level, event.module.c_str(), event.className.c_str(), event.method.c_str(), event.message.c_str(),
                        event.detail.c_str(), std::string(event.category.utf8()) + "/" + event.product.c_str()});
}

std::vector<std::string> CapturedLog::Messages() const {
    std::vector<std::string> messages;
    for (const LoggedEvent& event : m_events) messages.push_back(std::to_string(event.level) + " " + event.message);
    return messages;
}

}  // namespace smtest
