// A station for the benchmarks: a runtime object with full point lists, and live values that move.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

#include "tests/support/TestRuntime.h"

inline constexpr int kBenchPorts = 8;
inline constexpr int kBenchPoints = 612;  // of each kind

class CBenchRuntime : public CTestRuntime {
  public:
    struct Dropped {
        int messages;
        std::size_t bytes;  // of their bodies
    };
    // Takes everything that waits for zor_main away.
    Dropped DropOutbound();
};

// Keeps the diagnostic lines of the code under test out of the table, for as long as it lives.
class CQuiet {
  public:
    CQuiet();
    ~CQuiet();
    CQuiet(const CQuiet&) = delete;
    CQuiet& operator=(const CQuiet&) = delete;

  private:
    int m_stdout;
};

// Eight ports, 612 status and 612 telemetry points out of a settings database, ports 1, 3, 5 and 7 charging,
// reporting on, every interval longer than any benchmark; it is 2024-03-05 01:45. What is on has been
// reported.
struct BenchStation {
    BenchStation();

    // Removes what the stations of this run left in the application directory.
    static void CleanUp();

    std::list<YcPointRecord>& Telemetry() { return runtime.m_ycGroups.front().points; }
    // Switches every status point.
    void FlipSignals();
    // One event of each status point, each on a connection of its own.
    void StoreEventsSingly();
    // Every signal and the state of `port` then differ from what was last reported.
    void ForgetReported(int port);
    // Every report of every port is due at the next tick.
    void MakeReportsDue();

    CQuiet quiet;  // first, so that it outlasts the others
    CLiveValues live;
    CBenchRuntime runtime;
};

// What a report builder of the plain way gets: the whole list, copied.
template <typename List>
void CopyForBuilder(const List& list) {
    const List copy = list;  // NOLINT(performance-unnecessary-copy-initialization): it is what is measured
    benchmark::DoNotOptimize(copy.size());
}
