// Ticks: nothing due, every report due, everything due.
#include <cstring>

#include "System/AppFiles.h"
#include "bench/HistoryStation.h"
#include "bench/Operation.h"
#include "points/LiveEntry.h"

namespace {

void CopyForAllBuilders(BenchStation& station) {
    for (int port = 1; port <= kBenchPorts; ++port) {
        CopyForBuilder(station.Telemetry());         // charging status
        CopyForBuilder(station.Telemetry());         // idle status
        CopyForBuilder(station.runtime.m_yxPoints);  // signal changes
        CopyForBuilder(station.runtime.m_yxPoints);  // gun signals
    }
}

void ReadLiveEntries(BenchStation& station) {
    std::uint32_t sum = 0;
    const auto add = [&sum](const void* entry, std::size_t offset, std::size_t size) {
        std::uint32_t value = 0;
        std::memcpy(&value, static_cast<const std::uint8_t*>(entry) + offset, size);
        sum += value;
    };
    for (const YxPointRecord& point : station.runtime.m_yxPoints)
        add(station.live.getYx(point.pointNumber), kYxState, sizeof(std::uint8_t));
    for (const YcPointRecord& point : station.Telemetry())
        add(station.live.getYc(point.pointNumber), kYcRaw, sizeof(std::uint32_t));
    benchmark::DoNotOptimize(sum);
}

void Tick(BenchStation& station) {
    station.runtime.SchedulerTick();
}

void TickWithCopies(BenchStation& station) {
    Tick(station);
    CopyForAllBuilders(station);
}

template <void (*kRun)(BenchStation&)>
void Repeat(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) kRun(station);
}

// Charging or idle status, snapshot, changes and state of every port. Of gun signals, which are known by
// their numbers alone, the places of the copies leave ports 1, 2, 4 and 7.
constexpr int kReports = 4 * kBenchPorts + 4;

// Ticks, each of which has to post `kMessages`. What makes them due and takes them away is not measured.
template <typename Station, void (*kMakeDue)(Station&), int kMessages, void (*kRun)(BenchStation&)>
void Report(benchmark::State& state) {
    Station station;
    for (auto run : state) {
        state.PauseTiming();
        kMakeDue(station);
        state.ResumeTiming();
        kRun(station);
        state.PauseTiming();
        Require(station.runtime.DropOutbound().messages == kMessages, "other messages than expected");
        state.ResumeTiming();
    }
}

void MakeReportsDue(BenchStation& station) {
    station.MakeReportsDue();
}

template <void (*kRun)(BenchStation&)>
constexpr auto kAllReports = Report<BenchStation, MakeReportsDue, kReports, kRun>;

void ReadPassAndCopy(benchmark::State& state) {
    BenchStation station;
    station.MakeReportsDue();
    Tick(station);
    CSameBytes bytes(station.runtime.DropOutbound().bytes);
    for (auto run : state) {
        ReadLiveEntries(station);
        bytes.Copy();
    }
}

struct BusyStation : HistoryStation {
    BusyStation() : HistoryStation(1) {}

    // All reports, the records of a new hour, a resend pass. Not the cache check, which has a minute of its
    // own.
    void MakeAllDue() {
        constexpr std::time_t kTwoOClock = FakeClock::kStart + std::time_t{15} * 60;
        Restore();
        MakeReportsDue();
        runtime.m_datacache = kBenchPorts;
        m_later = 3600 - m_later;
        FakeClock::Set(kTwoOClock + m_later);
    }

  private:
    std::time_t m_later = 0;
};

void MakeAllDue(BusyStation& station) {
    station.MakeAllDue();
}

void MakeAllDueWithEvents(BusyStation& station) {
    station.MakeAllDue();
    station.FlipSignals();
}

void TickPlainly(BenchStation& station) {
    station.StoreEventsSingly();
    TickWithCopies(station);
}

// And the live record of each port and a stored one.
template <void (*kMakeDue)(BusyStation&), void (*kRun)(BenchStation&)>
constexpr auto kEverything = Report<BusyStation, kMakeDue, kReports + 2 * kBenchPorts, kRun>;

void BareRows(benchmark::State& state) {
    BusyStation station;
    for (auto run : state) {
        StoreBareEvents(kBenchPoints);
        InBareTransaction(kHistoryFile, [&](CSqliteDb& database) {
            StoreBareRecords(database, 1, kBenchPorts);
            station.RaiseBareRecords(database);
        });
    }
}

}  // namespace

Operations TickOperations() {
    return {
        {"tick/quiet",
         Repeat<Tick>,
         {"read pass", Repeat<ReadLiveEntries>, 3},
         {"list copies", Repeat<TickWithCopies>, 50}},
        {"tick/all_reports",
         kAllReports<Tick>,
         {"read pass, memcpy", ReadPassAndCopy, 10},
         {"list copies", kAllReports<TickWithCopies>}},
        // All reports, 612 events, the records of an hour, a resend pass.
        {"tick/everything_due",
         kEverything<MakeAllDueWithEvents, Tick>,
         {"two transactions", BareRows},
         {"copies, one per event", kEverything<MakeAllDue, TickPlainly>, 0, true}},
    };
}
