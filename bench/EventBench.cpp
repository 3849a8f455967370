// A burst of events: every point of the station changes in one tick.
#include "System/AppFiles.h"
#include "bench/Bare.h"
#include "bench/Operation.h"
#include "bench/Station.h"

namespace {

// Events of a station that is new, its first one being that of the new file, and of one that has run for
// long: the file is as large as it gets, every insert drops a row and every walk ends in a VACUUM.
constexpr int kNewFile = 1;
constexpr int kFullFile = 100100;

template <int kStored>
struct StationWithEvents : BenchStation {
    StationWithEvents() { StoreBareEvents(kStored - kNewFile); }
};

template <int kStored>
void Burst(benchmark::State& state) {
    StationWithEvents<kStored> station;
    for (auto run : state) {
        state.PauseTiming();
        station.FlipSignals();
        state.ResumeTiming();
        station.runtime.DetectStatusChanges();
    }
    Require(QueryNumber(AppFile(kEventFile), "SELECT max(id) FROM tagSOE") ==
                kStored + kBenchPoints * static_cast<int>(state.iterations()),
            "other events than expected");
}

void BareTransaction(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) StoreBareEvents(kBenchPoints);
}

void BareVacuum(benchmark::State& state) {
    StationWithEvents<kFullFile> station;
    const auto store = [](CSqliteDb& database) {
        CBareStatement(database, "DELETE FROM tagSOE WHERE id<=(SELECT max(id) FROM tagSOE)-100001+?1")
            .Run(kBenchPoints);
        StoreBareEvents(database, kBenchPoints);
    };
    for (auto run : state) InBareTransaction(kEventFile, store, "VACUUM");
}

void Singly(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) station.StoreEventsSingly();
}

}  // namespace

Operations BurstOperations() {
    return {{"burst/612_events",
             Burst<kNewFile>,
             {"one transaction", BareTransaction, 4},
             {"one per event", Singly, 40, true}},
            {"burst/612_events_full", Burst<kFullFile>, {"commit and VACUUM", BareVacuum}}};
}
