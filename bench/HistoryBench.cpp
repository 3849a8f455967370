// History operations on files of one day, one year and ten years of eight ports.
#include "System/AppFiles.h"
#include "bench/HistoryStation.h"
#include "bench/Operation.h"
#include "history/ChargingRecord.h"

namespace {

constexpr int kHour = 10;
constexpr int kPort = 3;

// `kOperate`, which returns how many records it found or stored, on a history that is new before the first
// time, and with `kRestored` before each.
template <auto kOperate, int kExpected, EIndexed kIndexed = EIndexed::Yes, bool kRestored = false>
void On(benchmark::State& state) {
    HistoryStation station(static_cast<int>(state.range(0)), kIndexed);
    for (auto run : state) {
        if (kRestored) {
            state.PauseTiming();
            station.Restore();
            state.ResumeTiming();
        }
        Require(kOperate(station) == kExpected, "other records than expected");
    }
}

int CheckCache(HistoryStation& station) {
    station.runtime.Checkcache();
    return station.runtime.m_datacache;
}

int ResendPass(HistoryStation& station) {
    YcHistoryRecord records[kBenchPorts] = {};
    int count = kBenchPorts;
    station.runtime.ReadCacheYCdata(records, count);
    return count;
}

template <int kAsked>
int Request(HistoryStation& station) {
    YcHistoryRecord records[24] = {};
    int count = 24;
    station.runtime.ReadDBSingleYCdata("2023-12-31", kPort, kAsked, records, count);
    return count;
}

int HourlyStep(HistoryStation& station) {
    station.runtime.RecordHour(1);
    return kBenchPorts;
}

int StartUpCheck(HistoryStation& station) {
    return station.runtime.CheckYCDB();
}

// Reads the records of these hours of the last day and these ports on a connection that stays open.
template <int kFirstHour, int kLastHour, int kFirstPort, int kLastPort>
void ByKey(benchmark::State& state) {
    HistoryStation station(static_cast<int>(state.range(0)));
    InBareTransaction(kHistoryFile, [&](CSqliteDb& database) {
        CBareStatement read(database, "SELECT * FROM tagYC WHERE id=?1");
        for (auto run : state)
            for (int hour = kFirstHour; hour <= kLastHour; ++hour)
                for (int port = kFirstPort; port <= kLastPort; ++port) read.Run(station.Id(hour, port));
    });
}

// Opens the file, asks `kSql` and closes it: what every operation of one query has to do.
template <const char* kSql>
void OpenAskClose(benchmark::State& state) {
    HistoryStation station(static_cast<int>(state.range(0)));
    const CAppPath path(kHistoryFile);
    for (auto run : state) {
        sqlite3* database = nullptr;
        char** cells = nullptr;
        int rows = 0;
        sqlite3_open(path.c_str(), &database);
        const int result = sqlite3_get_table(database, kSql, &cells, &rows, nullptr, nullptr);
        Require(result == SQLITE_OK && rows > 0, "the bare query finds nothing");
        sqlite3_free_table(cells);
        sqlite3_close(database);
    }
}

constexpr char kPendingRows[] = "select * from tagYC where sendcount >= 1 and sendcount < 6";
constexpr char kRowOfHour[] =
    "SELECT * FROM tagYC WHERE portNo='3' AND timestamp < '2023-12-31 10:00:10' ORDER BY timestamp DESC "
    "LIMIT 1";

int ResendBare(HistoryStation& station) {
    InBareTransaction(kHistoryFile, [&](CSqliteDb& database) { station.RaiseBareRecords(database); });
    return kBenchPorts;
}

int StoreTogether(HistoryStation& /*station*/) {
    InBareTransaction(kHistoryFile, [](CSqliteDb& database) { StoreBareRecords(database, 1, kBenchPorts); });
    return kBenchPorts;
}

int StoreSingly(HistoryStation& /*station*/) {
    for (int port = 1; port <= kBenchPorts; ++port)
        InBareTransaction(kHistoryFile, [&](CSqliteDb& database) { StoreBareRecords(database, port, port); });
    return kBenchPorts;
}

// An operation that looks for `kExpected` records.
template <auto kOperate, int kExpected, bool kRestored = false>
Operation Reading(const char* name, const Reference& floor, double growthLimit) {
    return {name,  On<kOperate, kExpected, EIndexed::Yes, kRestored>,
            floor, {"no indexes", On<kOperate, kExpected, EIndexed::No, kRestored>},
            true,  growthLimit};
}

}  // namespace

Operations HistoryOperations() {
    constexpr int kPorts = kBenchPorts;
    return {
        Reading<CheckCache, kPorts>("history/cache_check",
                                    {"open, query, close", OpenAskClose<kPendingRows>, 3}, 1.5),
        Reading<ResendPass, kPorts, true>("history/resend_pass",
                                          {"rows by key", On<ResendBare, kPorts, EIndexed::Yes, true>}, 1.5),
        Reading<Request<kHour>, 1>("history/hour_request",
                                   {"open, query, close", OpenAskClose<kRowOfHour>, 3}, 3),
        Reading<Request<kWholeDay>, 24>("history/day_request", {"rows by key", ByKey<0, 23, kPort, kPort>},
                                        0),
        {"history/hourly_step",
         On<HourlyStep, kPorts>,
         {"one transaction", On<StoreTogether, kPorts>, 2.5},
         {"one per port", On<StoreSingly, kPorts>},
         true,
         1.5},
        {"history/start_up_check", On<StartUpCheck, 0>, {"rows by key", ByKey<23, 23, 1, kPorts>}, {}, true},
    };
}
