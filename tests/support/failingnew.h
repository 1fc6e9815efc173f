#pragma once

/**
 * For the time of its life, the n-th allocation of this thread fails, by `operator new` or by a call of malloc or realloc in the
 * libraries; n is from 1, and 0 fails none.
 */
class FailingNew {
  public:
    explicit FailingNew(long n);
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;

    bool HasFailed() const;
    /** Whether malloc counts; under a sanitizer it does not. */
    static bool CountsMalloc();
};
