#pragma once

#include <stdexcept>

#include <unistd.h>

/** Waits until it is so. Raises std::runtime_error after two minutes: then it never will be, however slow the machine. */
template <class Condition>
void WaitFor(Condition condition) {
    constexpr int STEP = 2'000, LONGEST = 120'000'000;
    for (int waited = 0; !condition(); waited += STEP) {
        if (waited >= LONGEST) throw std::runtime_error("waited for two minutes in vain");
        ::usleep(STEP);
    }
}
