// Writing the hourly charging record of a port, and reading the records of a port back by date and hour.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/DiagLine.h"
#include "System/FixedText.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "history/ChargingRecord.h"
#include "history/HistoryDatabase.h"
#include "history/HistoryIndexes.h"
#include "points/ShmCtrl.h"

namespace {

constexpr int kInsertSize = 1024;
constexpr int kQuerySize = 128;

// Of the twelve points that a record has slots for, the last two (charge count and charge time) are not read:
// their slots stay 0, and the first one is read for nothing. zor_main's side counts on it.
constexpr int kRecordPoints[] = {173, 192, 193, 194, 195, 153, 154, 156, 157, 158, 211, 212};
constexpr std::size_t kPointsRead = 10;
constexpr std::size_t kFreTimeSlot = 5;

// What one row is made of.
struct Snapshot {
    long long slots[std::size(kRecordPoints)] = {};
    long long energy = 0;
    char fretime[31] = {};
    char tradenumber[2 * kTradeNumberSize + 1] = {};
    std::int32_t tradeelec = 0;
};

Snapshot TakeSnapshot(CShmCTRL& shm, int port) {
    const int base = PortBase(port);
    Snapshot snapshot;
    for (std::size_t i = 0; i < kPointsRead; ++i) {
        const LiveYc live = shm.Yc(base + kRecordPoints[i]);
        snapshot.slots[i] = live.raw;
        if (i == kFreTimeSlot) std::memcpy(snapshot.fretime, live.area, sizeof snapshot.fretime - 1);
    }
    snapshot.energy = static_cast<long long>(shm.Counter(CounterBase(port)));
    const LiveYc trade = shm.Yc(base + kYcTradeNumber);
    for (std::size_t i = 0; i < kTradeNumberSize; ++i)
        std::snprintf(snapshot.tradenumber + 2 * i, 3, "%02x", unsigned{trade.area[i]});
    snapshot.tradeelec = static_cast<std::int32_t>(shm.Yc(base + kYcTradeEnergy).raw);
    return snapshot;
}

// The row that was written after `row` (-1: the first one). An index may give the rows of a day by time,
// which is another order once the clock was set back.
int NextById(const CSqliteTable& table, int row) {
    const auto id = [&table](int r) { return ParseInt64(table.Cell(r, kHistoryId)); };
    int next = -1;
    for (int r = 0; r < table.Rows(); ++r)
        if ((row < 0 || id(r) > id(row)) && (next < 0 || id(r) < id(next))) next = r;
    return next;
}

// Marks `record` as one that no row was found for.
void MarkMissing(YcHistoryRecord& record, const char* collecttime) {
    record = {};
    record.status = ERecordStatus::Missing;
    CopyText(record.collecttime, collecttime);
}

}  // namespace

std::int32_t CRuntimeData::InsertYC(std::uint32_t hour, std::uint32_t port) {
    const Snapshot snapshot = TakeSnapshot(*m_shm, static_cast<int>(port));
    const long long* slot = snapshot.slots;
    CSqliteDb database;
    if (const int result = database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait); result != SQLITE_OK)
        return result;
    CDiagLine(__func__).Print("InsertYc You have opened zorycdata.db successfully!");
    CSqlText<kInsertSize> sql;
    sql.Format(
        "INSERT INTO "
        "tagYC(portNo,sendcount,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,fvalue_1,fvalue_2,"
        "fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) "
        "values('%d','%d','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%s','%d','%"
        "s','%lld',"
        "'%lld','%d','%d')",
        static_cast<int>(port), hour == 0 ? 1 : 0, snapshot.energy, slot[1], slot[2], slot[3], slot[4],
        slot[5], slot[6], slot[7], slot[8], slot[9], snapshot.tradenumber, snapshot.tradeelec,
        sql.Quoted(snapshot.fretime), slot[10], slot[11], k1Cnt[port], k2Cnt[port]);
    CDiagLine(__func__).Print("sqlcommand is %s\n", sql.Text());
    const int result = database.Exec(sql);
    if (result != SQLITE_OK) std::fprintf(stderr, "insert into zorycdata.db error!: %s\n", database.Error());
    return result;
}

int CRuntimeData::ReadDBSingleYCdata(const char* date, int port, int hour, YcHistoryRecord* records,
                                     int& count) {
    if (records == nullptr || count == 0) return 0;
    const int capacity = count;
    count = 0;
    CSqliteDb database;
    if (database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait) != SQLITE_OK) return 0;
    const CDiagLine line(__func__);
    line.Print("You have opened zorycdata.db successfully!");
    CSqlText<kQuerySize> sql;
    int hours = 1;
    if (hour != kWholeDay)
        sql.Format(
            "SELECT * FROM tagYC WHERE portNo='%d' AND timestamp < '%s %02d:00:%02d' ORDER BY timestamp DESC "
            "LIMIT 1",
            port, sql.Quoted(date), hour, kHourAnswerEnd);
    else
        hours = FormatDayQuery(sql, date, port);
    const CSqliteTable table(database, sql);
    if (!table.Ok()) line.Print("ReadDBSingleYCdata search failed :%s\n", table.Error());
    if (table.Rows() == 0) {
        char asked[64];
        std::snprintf(asked, sizeof asked, "%s %02d:00:00", date, hour);
        MarkMissing(records[0], asked);
    } else if (hour != kWholeDay) {
        FillRecord(records[0], HistoryCellsOf(table, 0));
        PrintRecord(records[0], __func__);
        count = 1;
    } else {
        count = std::min({hours, table.Rows(), capacity});
        const bool numbered = HasNumberedRows(database);
        int row = -1;
        for (int h = 0; h < count; ++h) {
            row = numbered ? NextById(table, row) : row + 1;
            FillHour(records[h], table, row, date, h);
        }
    }
    return 0;
}

// Formats the query for a whole day; returns how many hours the day has so far.
int CRuntimeData::FormatDayQuery(CSqlTextBase& sql, const char* date, int port) {
    const CDiagLine line("ReadDBSingleYCdata");
    const CDateTime now = CDateTime::Now();
    char today[16];
    now.Write(today, sizeof today, CDateTime::kDateFormat);
    line.Print("today is:%s\n", today);
    if (std::strstr(today, date) == nullptr) {
        line.Print("this is not the same day!");
        sql.Format(
            "select * from tagYC where portNo='%d' and timestamp between '%s 00:00:00' and '%s 23:58:00'",
            port, sql.Quoted(date), date);
        return 24;
    }
    const int hours = now.Hour() + 1;
    line.Print("this is the same day:%d!\n", hours);
    sql.Format(
        "select * from tagYC where portNo='%d' and timestamp between '%s 00:00:00' and '%s %02d:58:00'", port,
        today, today, now.Hour());
    return hours;
}

// Rows and hours are matched by place: the `h`th row is compared with hour `h` only, so that a missing hour
// marks itself and all that follow.
void CRuntimeData::FillHour(YcHistoryRecord& record, const CSqliteTable& table, int row, const char* date,
                            int h) {
    constexpr char kOperation[] = "ReadDBSingleYCdata";
    char prefix[32];
    std::snprintf(prefix, sizeof prefix, "%s %02d:", date, h);
    CDiagLine(kOperation).Print("timeStr:%s\n", prefix);
    const char* timestamp = table.Cell(row, kHistoryTimestamp);
    if (timestamp != nullptr && std::strstr(timestamp, prefix) != nullptr) {
        FillRecord(record, HistoryCellsOf(table, row));
        PrintRecord(record, kOperation);
        return;
    }
    char asked[48];  // the prefix brings a colon of its own
    std::snprintf(asked, sizeof asked, "%s:%02d:00", prefix, 0);
    MarkMissing(record, asked);
}
