// History operations on files of one day, one year and ten years of eight ports.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "System/AppFiles.h"
#include "bench/Station.h"
#include "history/HistoryDatabase.h"

namespace {

constexpr int kDay = 1;
constexpr int kYear = 365;
constexpr int kTenYears = 3650;

// Rows of the last `days` days up to 2024-01-01, the last midnight pending.
void FillHistory(int days) {
    CSqliteDb database;
    database.Open(CAppPath(kHistoryFile).c_str(), kBusyInLoopMs);
    database.Exec("begin transaction");
    CSqlText<1024> sql;
    sql.Format(
        "WITH RECURSIVE h(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM h WHERE i<%d), p(n) AS (SELECT 1 UNION "
        "ALL SELECT "
        "n+1 FROM p WHERE n<%d) INSERT INTO "
        "tagYC(portNo,sendcount,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,"
        "fvalue_1,fvalue_2,fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,timestamp,chargeCnt,chargeTime,"
        "dcK1Cnt,"
        "dcK2Cnt) SELECT n,CASE WHEN i>=%d AND i%%24=0 THEN 1 ELSE 0 "
        "END,'123456789','1','2','3','4','5','6','7','8',"
        "'9','00112233445566778899aabbccddeeff','77','20230830101112',datetime('2024-01-01','-%d "
        "days','+'||i||"
        "' hours','+3 seconds'),'0','0','11','12' FROM h,p",
        days * 24 - 1, kBenchPorts, (days - 1) * 24, days);
    if (database.Exec(sql) != SQLITE_OK) {
        std::fprintf(stderr, "zor_bench: %s\n", database.Error());
        std::exit(1);
    }
    database.Exec("commit transaction");
}

struct HistoryStation : BenchStation {
    explicit HistoryStation(const benchmark::State& state) { FillHistory(static_cast<int>(state.range(0))); }
};

void CacheCheck(benchmark::State& state) {
    HistoryStation station(state);
    for (auto run : state) station.runtime.Checkcache();
}
BENCHMARK(CacheCheck)->Name("history/cache_check")->Arg(kDay)->Arg(kYear)->Arg(kTenYears)->UseRealTime();

// Eight records that are pending before each pass.
void ResendPass(benchmark::State& state) {
    HistoryStation station(state);
    YcHistoryRecord records[kBenchPorts] = {};
    for (auto run : state) {
        state.PauseTiming();
        {
            CSqliteDb database;
            database.Open(CAppPath(kHistoryFile).c_str(), kBusyInLoopMs);
            database.Exec("update tagYC set sendcount=1 where sendcount >= 1 and sendcount < 6");
        }
        state.ResumeTiming();
        int count = kBenchPorts;
        station.runtime.ReadCacheYCdata(records, count);
        if (count != kBenchPorts) state.SkipWithError("no pending record");
    }
}
BENCHMARK(ResendPass)->Name("history/resend_pass")->Arg(kDay)->Arg(kYear)->Arg(kTenYears)->UseRealTime();

void HourlyStep(benchmark::State& state) {
    HistoryStation station(state);
    for (auto run : state)
        for (unsigned port = 1; port <= kBenchPorts; ++port) station.runtime.InsertYC(1, port);
}
BENCHMARK(HourlyStep)->Name("history/hourly_step")->Arg(kDay)->Arg(kYear)->Arg(kTenYears)->UseRealTime();

void Request(benchmark::State& state, int hour) {
    HistoryStation station(state);
    YcHistoryRecord records[24] = {};
    for (auto run : state) {
        int count = 24;
        station.runtime.ReadDBSingleYCdata("2023-12-31", 3, hour, records, count);
        if (count == 0) state.SkipWithError("no record");
    }
}
BENCHMARK_CAPTURE(Request, hour, 10)
    ->Name("history/hour_request")
    ->Arg(kDay)
    ->Arg(kYear)
    ->Arg(kTenYears)
    ->UseRealTime();
BENCHMARK_CAPTURE(Request, day, kWholeDay)
    ->Name("history/day_request")
    ->Arg(kDay)
    ->Arg(kYear)
    ->Arg(kTenYears)
    ->UseRealTime();

void StartUpCheck(benchmark::State& state) {
    HistoryStation station(state);
    for (auto run : state) station.runtime.CheckYCDB();
}
BENCHMARK(StartUpCheck)->Name("history/start_up_check")->Arg(kDay)->Arg(kTenYears)->UseRealTime();

}  // namespace
