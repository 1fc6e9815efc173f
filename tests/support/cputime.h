#pragma once

#include <ctime>

/** Seconds of the processor that this process took for the work: other processes make no difference. */
template <class Work>
double CpuSecondsOf(Work&& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}
