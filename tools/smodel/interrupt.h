#pragma once

#include <atomic>

/** Starts to watch for the signals by which users and systems end a process. Those that are ignored already stay so. */
void WatchInterrupts();

/** Becomes true with the first signal. The second one ends the process at once. */
const std::atomic<bool>& Interrupted();

/** The exit status after a signal: 130 for Ctrl-C. */
int InterruptedStatus();

/** While it lives there is nothing to tidy up, and the first signal ends the process at once, even out of a read that blocks. */
class LeaveAtOnce {
  public:
    /** `active` false: does nothing. */
    explicit LeaveAtOnce(bool active = true);
    ~LeaveAtOnce();
    LeaveAtOnce(const LeaveAtOnce&) = delete;
    LeaveAtOnce& operator=(const LeaveAtOnce&) = delete;

  private:
    bool m_outer;
};

/**
 * From now on what the user asked for is done, though the command goes on for a while: the second signal says this, a whole line, and ends
 * the process with status 0. Borrowed.
 */
void TellWhenInterrupted(const char* line);

/** Whether a line of progress stands on standard error, to be wiped by whoever leaves. */
void SetProgressShown(bool shown);
