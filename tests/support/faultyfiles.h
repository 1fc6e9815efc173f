#pragma once

#include <string>

/**
 * The files of all stores of SQLite of this process that are opened while it lives, and what they pass to the real ones: each step that
 * changes something is counted, and one of them, or all from it on, can be made to fail. Nothing waits for the disk. One at a time, used
 * from one thread.
 */
class FaultyFiles {
  public:
    enum Fault {
        /** The step fails; a write, a sync, a change of a file's length, shared memory, a file made or taken away. */
        breaks,
        /** A write leaves half of its bytes, then fails. */
        shortens,
        /** What needs room fails; the rest works. */
        full,
    };

    FaultyFiles();
    ~FaultyFiles();
    FaultyFiles(const FaultyFiles&) = delete;
    FaultyFiles& operator=(const FaultyFiles&) = delete;

    /** Counts from now on. The n-th step, from 1, fails; `andAfter`: those behind it too. 0: none. */
    void FailAt(long n, Fault fault = breaks, bool andAfter = false);
    /** Steps since then. */
    long Steps() const;
    /** Whether one of them was made to fail. */
    bool HasFailed() const;
};
