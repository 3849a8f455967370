// Answers to history requests: the records of a port by date and hour.
#include <unistd.h>

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
#include "ipc/Commands.h"
#include "ipc/Messages.h"

namespace {

constexpr int kQuerySize = 128;
constexpr int kRecordsOfDay = 24;

unsigned FromBcd(std::uint8_t byte) {
    return (byte >> 4) * 10U + (byte & 0xFU);
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
            port, sql.Quotable(date), hour, kHourAnswerEnd);
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
            port, sql.Quotable(date), date);
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

int CRuntimeData::MsgCall_A1_16(const std::uint8_t* body, std::uint32_t port) {
    const std::uint8_t day = body[kRequestDay];
    const std::uint8_t month = body[kRequestMonth];
    const std::uint8_t year = body[kRequestYear];
    const std::uint8_t century = body[kRequestCentury];
    const CDiagLine line(__func__);
    line.Print("Rcv:%02x-%02x-%02x-%02x\n", unsigned{century}, unsigned{year}, unsigned{month},
               unsigned{day});
    char date[32];
    std::snprintf(date, sizeof date, "%02u%02u-%02u-%02u", FromBcd(century), FromBcd(year), FromBcd(month),
                  FromBcd(day));

    RecordBody answer{};
    std::uint32_t length = 0;
    BuildA1_16Record(answer, length, port);
    YcHistoryRecord records[kRecordsOfDay] = {};
    int count = kRecordsOfDay;
    ReadDBSingleYCdata(date, static_cast<int>(port), body[kRequestHour], records, count);
    line.Print("Read History YCdata lenth:%d\n", count);
    if (count == 0) {
        PostMsg(kCodeA1_16, answer.data(), 0);  // no row: the message comes without a body
        return 0;
    }
    for (int i = 0; i < count; ++i) {
        line.Print("collecttime :%s\n", records[i].collecttime);
        PutStoredRecord(answer, records[i]);
        line.Print("tradenumber:%s\n", records[i].tradenumber);
        line.Print("fretime:%s\n", records[i].fretime);
        PostMsg(kCodeA1_16, answer.data(), length);
        usleep(kPauseBetweenRecords);
    }
    return 0;
}
