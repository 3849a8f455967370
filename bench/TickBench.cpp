// Ticks: nothing due, everything due; the floor is one read pass over the same live entries, the plain way
// copies the lists for every report of every port.
#include <benchmark/benchmark.h>

#include <cstring>

#include "bench/Station.h"
#include "points/Signals.h"

namespace {

// What a report builder of the plain way gets: the whole list, copied.
template <typename List>
void CopyForBuilder(const List& list) {
    const List copy = list;  // NOLINT(performance-unnecessary-copy-initialization): it is what is measured
    benchmark::DoNotOptimize(copy.size());
}

void ReadPass(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        unsigned sum = 0;
        for (const YxPointRecord& point : station.runtime.m_yxPoints) {
            std::uint8_t value = 0;
            station.shm.ReadSignal(point.source, point.pointNumber, value);
            sum += value;
        }
        for (const YcGroup& group : station.runtime.m_ycGroups)
            for (const YcPointRecord& point : group.points) {
                const LiveYc live = station.shm.Yc(point.pointNumber);
                sum += live.raw + live.area[0];
            }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(ReadPass)->Name("tick/read_pass");

void QuietTick(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) station.runtime.SchedulerTick();
}
BENCHMARK(QuietTick)->Name("tick/quiet");

void QuietTickWithCopies(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        station.runtime.SchedulerTick();
        for (int port = 1; port <= kBenchPorts; ++port) {
            CopyForBuilder(station.runtime.m_ycGroups.front().points);  // charging status
            CopyForBuilder(station.runtime.m_ycGroups.front().points);  // idle status
            CopyForBuilder(station.runtime.m_yxPoints);                 // signal changes
            CopyForBuilder(station.runtime.m_yxPoints);                 // gun signals
        }
    }
}
BENCHMARK(QuietTickWithCopies)->Name("tick/quiet_with_copies");

void FullTick(benchmark::State& state) {
    BenchStation station;
    for (int port = 1; port <= kBenchPorts; port += 2)
        station.shm.SetSignal(PortBase(port) + kSignalCharging, 1);
    station.runtime.SchedulerTick();
    station.runtime.m_workReportTicks = station.runtime.m_idleReportTicks = station.runtime.m_yxReportTicks =
        0;
    for (auto run : state) {
        station.runtime.SchedulerTick();
        station.runtime.DropOutbound();
    }
}
BENCHMARK(FullTick)->Name("tick/everything_due");

}  // namespace
