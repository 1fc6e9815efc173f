#pragma once

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

#include "core/repository/smrepository.h"
#include "tests/core/repository/testnode.h"

/**
 * Puts of one project, each of which writes its number into every object, takes an object away and adds one, so that a mixture of two of
 * them cannot be mistaken for either.
 */
class NumberedPuts {
  public:
    /** Makes the repository with put number 1. */
    static void MakeFirst(const std::string& location);
    /** One more. Gives its number when it was acknowledged, else 0, and in `told` why. */
    static long PutNext(const std::string& location, std::string* told = nullptr);
    /** The same in a repository that stays open as long as puts are acknowledged; null: it is opened. */
    static long PutNext(std::unique_ptr<SMRepository>& opened, const std::string& location, std::string* told = nullptr);
    /** The number of the put that stands, whole; a message in `fault` when it is a mixture. */
    static long Standing(const std::string& location, std::string& fault);
};

/** A process that puts again and again, whatever fails. It ends with the object. */
class Putter {
  public:
    explicit Putter(const std::string& location);
    ~Putter() { Kill(); }
    Putter(const Putter&) = delete;
    Putter& operator=(const Putter&) = delete;

    /** Ends it without a chance to do anything. */
    void Kill();
    /** The number of the last put that was acknowledged to it; 0 for none. */
    long Acknowledged();

  private:
    pid_t m_process = -1;
    int m_told = -1;
    long m_last = 0;
};
