// A burst of events: every point of the station changes in one tick.
#include "System/AppFiles.h"
#include "bench/Bare.h"
#include "bench/Operation.h"
#include "bench/Station.h"

namespace {

void Burst(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        state.PauseTiming();
        station.FlipSignals();
        state.ResumeTiming();
        station.runtime.DetectStatusChanges();
    }
    // A new file begins with one of its own.
    Require(QueryNumber(AppFile(kEventFile), "SELECT max(id) FROM tagSOE") ==
                1 + kBenchPoints * static_cast<int>(state.iterations()),
            "other events than expected");
}

void BareTransaction(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) StoreBareEvents(kBenchPoints);
}

void Singly(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) station.StoreEventsSingly();
}

}  // namespace

Operations BurstOperations() {
    return {{"burst/612_events",
             Burst,
             {"one transaction", BareTransaction, 8},
             {"one per event", Singly, 40, true}}};
}
