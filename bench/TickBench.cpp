// Ticks: nothing due, every report due, everything due.
#include "System/AppFiles.h"
#include "bench/HistoryStation.h"
#include "bench/Operation.h"

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
    unsigned sum = 0;
    for (const YxPointRecord& point : station.runtime.m_yxPoints) {
        std::uint8_t value = 0;
        station.live.ReadSignal(point.source, point.pointNumber, value);
        sum += value;
    }
    for (const YcPointRecord& point : station.Telemetry()) {
        const LiveYc live = station.live.Yc(point.pointNumber);
        sum += live.raw + live.area[0];
    }
    benchmark::DoNotOptimize(sum);
}

void ReadPass(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) ReadLiveEntries(station);
}

void Quiet(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) station.runtime.SchedulerTick();
}

void QuietWithCopies(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        station.runtime.SchedulerTick();
        CopyForAllBuilders(station);
    }
}

// Charging or idle status, snapshot, changes and state of every port. Of gun signals, which are known by
// their numbers alone, the places of the copies leave ports 1, 2, 4 and 7.
constexpr int kReports = 4 * kBenchPorts + 4;

// One tick, which has to post so many messages; returns how many bytes these have.
std::size_t Report(BenchStation& station, int messages) {
    station.runtime.SchedulerTick();
    const CBenchRuntime::Dropped dropped = station.runtime.DropOutbound();
    Require(dropped.messages == messages, "other messages than expected");
    return dropped.bytes;
}

std::size_t ReportAll(BenchStation& station) {
    station.MakeReportsDue();
    return Report(station, kReports);
}

void AllReports(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) ReportAll(station);
}

void ReadPassAndCopy(benchmark::State& state) {
    BenchStation station;
    CSameBytes bytes(ReportAll(station));
    for (auto run : state) {
        ReadLiveEntries(station);
        bytes.Copy();
    }
}

void AllReportsWithCopies(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        ReportAll(station);
        CopyForAllBuilders(station);
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

void Everything(benchmark::State& state) {
    BusyStation station;
    for (auto run : state) {
        state.PauseTiming();
        station.MakeAllDue();
        station.FlipSignals();
        state.ResumeTiming();
        Report(station, kReports + 2 * kBenchPorts);  // and the live record and a stored one
    }
}

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

void EverythingPlainly(benchmark::State& state) {
    BusyStation station;
    for (auto run : state) {
        state.PauseTiming();
        station.MakeAllDue();
        state.ResumeTiming();
        station.StoreEventsSingly();
        Report(station, kReports + 2 * kBenchPorts);  // and the live record and a stored one
        CopyForAllBuilders(station);
    }
}

}  // namespace

Operations TickOperations() {
    return {
        {"tick/quiet", Quiet, {"read pass", ReadPass, 3}, {"list copies", QuietWithCopies, 50}},
        {"tick/all_reports",
         AllReports,
         {"read pass, memcpy", ReadPassAndCopy},
         {"list copies", AllReportsWithCopies}},
        // All reports, 612 events, the records of an hour, a resend pass.
        {"tick/everything_due",
         Everything,
         {"two transactions", BareRows},
         {"copies, one per event", EverythingPlainly, 0, true}},
    };
}
