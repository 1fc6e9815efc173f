#pragma once

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstddef>

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
        m_floor = std::min(m_floor, TimeOf(floor));
        const double seconds = TimeOf(work);
        m_work = std::min(m_work, seconds);
        m_state.SetIterationTime(seconds);
    }

  private:
    benchmark::State& m_state;
    double m_must, m_goal;
    double m_floor = 1e9, m_work = 1e9;
};

}  // namespace bench
