#pragma once

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

namespace bench {

inline double Seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

template <class Work>
double TimeOf(Work work) {
    const double start = Seconds();
    work();
    return Seconds() - start;
}

/** Bytes that the heap holds, large blocks included. */
inline double HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/** The most memory that the process has in use from now on. */
class PeakMemory {
  public:
    PeakMemory() {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5;
        m_before = Figure("VmRSS:");
    }
    /** Bytes above what was in use at the beginning. */
    double Grown() const { return Figure("VmHWM:") - m_before; }

  private:
    /** As the kernel tells it, in kB. */
    static double Figure(const std::string& name) {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;)
            if (double kilobytes = 0; word == name && status >> kilobytes) return kilobytes * 1024;
        return 0;
    }
    double m_before;
};

/** Shows a figure beside what it must be and what it should be. */
inline void Report(benchmark::State& state, double figure, double must, double goal) {
    state.counters["ratio"] = figure;
    state.counters["must"] = must;
    state.counters["goal"] = goal;
}

/**
 * A work and its floor, measured in turns in one run, since the machines are noisy: the best of each counts. The benchmark's own
 * time is the work's.
 */
class Ratio {
  public:
    Ratio(benchmark::State& state, double must, double goal) : m_state(state), m_must(must), m_goal(goal) {}
    Ratio(const Ratio&) = delete;
    Ratio& operator=(const Ratio&) = delete;
    ~Ratio() {
        Report(m_state, m_work / m_floor, m_must, m_goal);
        m_state.counters["floor_ms"] = m_floor * 1e3;
        m_state.counters["best_ms"] = m_work * 1e3;
    }
    template <class Floor, class Work>
    void Run(Floor floor, Work work) {
        for (auto _ : m_state) Take(floor, work);
    }
    /** One turn, for those who have something to do between them. */
    template <class Floor, class Work>
    void Take(Floor floor, Work work) {
        const double floorSeconds = TimeOf(floor);
        Count(floorSeconds, TimeOf(work));
    }
    /** The same, timed by the caller. */
    void Count(double floorSeconds, double seconds) {
        m_floor = std::min(m_floor, floorSeconds);
        m_work = std::min(m_work, seconds);
        m_state.SetIterationTime(seconds);
    }

  private:
    benchmark::State& m_state;
    double m_must, m_goal;
    double m_floor = 1e9, m_work = 1e9;
};

}  // namespace bench
