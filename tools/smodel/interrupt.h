#pragma once

#include <atomic>

/** Starts to watch for the signals by which users and systems end a process. Those that are ignored already stay so. */
void WatchInterrupts();

/** Becomes true with the first signal. The second one ends the process at once. */
const std::atomic<bool>& Interrupted();

/** The exit status after a signal: 130 for Ctrl-C. */
int InterruptedStatus();

/** A line for a signal that comes before anything was written. */
inline constexpr const char* NOTHING_WRITTEN = "smodel: error: interrupted; nothing was written\n";

/** While it lives there is nothing to tidy up, and the first signal ends the process at once, even out of a read that blocks. */
class LeaveAtOnce {
  public:
    /** `active` false: does nothing. `told` is what the signal says, as for `TellWhenInterrupted`. */
    explicit LeaveAtOnce(bool active = true, const char* told = nullptr);
    ~LeaveAtOnce();
    LeaveAtOnce(const LeaveAtOnce&) = delete;
    LeaveAtOnce& operator=(const LeaveAtOnce&) = delete;

  private:
    bool m_outer;
    const char* m_outerTold;
};

/** What is known of what the user asked for, when the second signal ends the process. */
enum class Outcome { unknown, done };

/**
 * From now on the second signal says this, a whole line, and ends the process: with status 0 when what the user asked for is done, though
 * the command goes on for a while. Borrowed; null: it says nothing.
 */
void TellWhenInterrupted(const char* line, Outcome outcome = Outcome::unknown);

/** Whether a line of progress stands on standard error, to be wiped by whoever leaves. */
void SetProgressShown(bool shown);
