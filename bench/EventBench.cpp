// A burst of events: every point of the station changes in one tick. The floor is one bare transaction with
// the same rows, the plain way opens, inserts and closes for each event.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "System/AppFiles.h"
#include "bench/Station.h"
#include "events/EventDatabase.h"

namespace {

void FlipAll(BenchStation& station, std::uint8_t state) {
    for (const YxPointRecord& point : station.runtime.m_yxPoints)
        station.shm.SetSignal(point.pointNumber, state);
}

void Burst(benchmark::State& state) {
    BenchStation station;
    std::uint8_t value = 0;
    for (auto run : state) {
        state.PauseTiming();
        value ^= 1U;
        FlipAll(station, value);
        state.ResumeTiming();
        station.runtime.DetectStatusChanges();
    }
}
BENCHMARK(Burst)->Name("burst/one_walk")->Unit(benchmark::kMillisecond)->UseRealTime();

void BurstSingly(benchmark::State& state) {
    BenchStation station;
    for (auto run : state)
        for (const YxPointRecord& point : station.runtime.m_yxPoints)
            station.runtime.InsertSOE(1, point.pointNumber, 0, point.name);
}
BENCHMARK(BurstSingly)->Name("burst/singly")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BareTransaction(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        CSqliteDb database;
        database.Open(CAppPath(kEventFile).c_str(), kBusyInLoopMs);
        database.Exec("begin transaction");
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(database.Handle(), "INSERT INTO tagSOE values(?,?,?,?,?,?)", -1, &statement,
                           nullptr);
        for (const YxPointRecord& point : station.runtime.m_yxPoints) {
            sqlite3_bind_null(statement, 1);
            sqlite3_bind_text(statement, 2, point.name, -1, SQLITE_STATIC);
            sqlite3_bind_int(statement, 3, 1);
            sqlite3_bind_int(statement, 4, point.pointNumber);
            sqlite3_bind_int(statement, 5, 0);
            sqlite3_bind_text(statement, 6, "2024-03-05 09:45:00", -1, SQLITE_STATIC);
            sqlite3_step(statement);
            sqlite3_reset(statement);
        }
        sqlite3_finalize(statement);
        database.Exec("commit transaction");
    }
}
BENCHMARK(BareTransaction)->Name("burst/bare_transaction")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
