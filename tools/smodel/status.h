#pragma once

/** What the command tells by its exit status. */
enum Status : int {
    STATUS_CLEAN = 0,
    /** There are findings, or differences. */
    STATUS_FINDINGS = 1,
    /** Wrong usage, or something that cannot be read or written. */
    STATUS_UNUSABLE = 2,
    /** Nothing was written, since content would be lost. */
    STATUS_LOSS = 3,
    /** Nothing was written, since the repository holds a newer revision. */
    STATUS_MOVED_ON = 4,
};
