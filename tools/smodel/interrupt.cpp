#include "tools/smodel/interrupt.h"

#include <csignal>
#include <cstring>

#include <unistd.h>

#include "tools/smodel/status.h"

namespace {

std::atomic<bool> g_interrupted{false};
std::atomic<bool> g_leaveAtOnce{false};
std::atomic<bool> g_progressShown{false};
std::atomic<int> g_signal{SIGINT};
/** What to say; null for nothing. */
std::atomic<const char*> g_told{nullptr};
std::atomic<bool> g_done{false};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free &&
                  std::atomic<const char*>::is_always_lock_free,
              "a signal handler may not wait");

void Tell(const char* text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

extern "C" void TakeSignal(int number) {
    g_signal = number;
    if (!g_interrupted.exchange(true) && !g_leaveAtOnce) return;
    if (g_progressShown) Tell("\r\x1b[K");
    if (const char* const told = g_told) Tell(told);
    ::_exit(g_done ? STATUS_CLEAN : InterruptedStatus());
}

}  // namespace

void WatchInterrupts() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction old {};
        ::sigaction(number, nullptr, &old);
        if (old.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = TakeSignal;
        ::sigaction(number, &action, nullptr);
    }
}

const std::atomic<bool>& Interrupted() {
    return g_interrupted;
}

int InterruptedStatus() {
    return 128 + g_signal;
}

LeaveAtOnce::LeaveAtOnce(bool active, const char* told) : m_outer(g_leaveAtOnce), m_outerTold(g_told) {
    if (!active) return;
    g_told = told;
    g_leaveAtOnce = true;
}

LeaveAtOnce::~LeaveAtOnce() {
    g_leaveAtOnce = m_outer;
    g_told = m_outerTold;
}

void TellWhenInterrupted(const char* line, Outcome outcome) {
    g_done = outcome == Outcome::done;
    g_told = line;
}

void SetProgressShown(bool shown) {
    g_progressShown = shown;
}
