#pragma once

/** For the time of its life, the n-th allocation of this thread by `operator new` fails; n is from 1, and 0 fails none. */
class FailingNew {
  public:
    explicit FailingNew(long n);
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;

    bool HasFailed() const;
};
