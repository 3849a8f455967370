// Runs the benchmarks in a station of their own and puts each figure beside its floor.
//
//   zor_bench FOLDER [Google Benchmark's options]
//
// FOLDER is where the databases lie meanwhile: on a disk, not in memory, or syncing costs nothing.
#include <benchmark/benchmark.h>
#include <sys/mount.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "System/AppFiles.h"
#include "tests/support/Sandbox.h"

namespace {

// Two figures of one run, and what their ratio must not exceed (or, `least`, must reach).
struct Comparison {
    const char* what;
    const char* figure;
    const char* base;
    double limit;
    bool least;
};

constexpr Comparison kComparisons[] = {
    {"quiet tick / read pass", "tick/quiet", "tick/read_pass", 3, false},
    {"quiet tick with list copies / quiet tick", "tick/quiet_with_copies", "tick/quiet", 50, true},
    {"burst / bare transaction", "burst/one_walk/real_time", "burst/bare_transaction/real_time", 8, false},
    {"burst singly / burst", "burst/singly/iterations:3/real_time", "burst/one_walk/real_time", 40, true},
    {"cache check, ten years / day", "history/cache_check/3650/real_time", "history/cache_check/1/real_time",
     1.5, false},
    {"resend pass, ten years / day", "history/resend_pass/3650/real_time", "history/resend_pass/1/real_time",
     1.5, false},
    {"hourly step, ten years / day", "history/hourly_step/3650/real_time", "history/hourly_step/1/real_time",
     1.5, false},
    {"hour request, ten years / day", "history/hour_request/3650/real_time",
     "history/hour_request/1/real_time", 3, false},
};

// Prints as usual and keeps the figures, in the benchmark's own unit of time.
class CFigures : public benchmark::ConsoleReporter {
  public:
    CFigures() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (!run.error_occurred)
                m_seconds[run.benchmark_name()] =
                    run.real_accumulated_time / static_cast<double>(run.iterations > 0 ? run.iterations : 1);
    }

    // Prints the ratios; false when one is beyond its limit, or when `all` are wanted and one lacks a figure.
    bool Compare(bool all) const {
        bool within = true;
        std::printf("\n%-44s %10s %10s\n", "ratio", "measured", "limit");
        for (const Comparison& comparison : kComparisons) {
            const auto figure = m_seconds.find(comparison.figure);
            const auto base = m_seconds.find(comparison.base);
            if (figure == m_seconds.end() || base == m_seconds.end()) {
                if (all) std::printf("%-44s %10s\n", comparison.what, "MISSING");
                within = within && !all;
                continue;
            }
            const double ratio = figure->second / base->second;
            const bool ok = comparison.least ? ratio >= comparison.limit : ratio <= comparison.limit;
            std::printf("%-44s %10.2f %9.1f%c %s\n", comparison.what, ratio, comparison.limit,
                        comparison.least ? '+' : '-', ok ? "" : "BEYOND");
            within = within && ok;
        }
        return within;
    }

  private:
    std::map<std::string, double> m_seconds;
};

int Run(const char* folder, bool all) {
    CleanStation();
    if (mount(folder, kAppDirectory, nullptr, MS_BIND, nullptr) != 0) {
        std::perror("zor_bench: mounting the folder");
        return 1;
    }
    CFigures figures;
    benchmark::RunSpecifiedBenchmarks(&figures);
    return figures.Compare(all) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const bool all = std::none_of(argv, argv + argc, [](const char* argument) {
        return std::strncmp(argument, "--benchmark_filter", std::strlen("--benchmark_filter")) == 0;
    });
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: zor_bench FOLDER [--benchmark_filter=REGEX ...]\n");
        return 2;
    }
    return RunInSandbox([argv, all] { return Run(argv[1], all); });
}
