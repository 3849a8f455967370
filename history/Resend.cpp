// Records that zor_main has not acknowledged yet: counted, resent, cleared.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "app/RuntimeData.h"
#include "history/ChargingRecord.h"
#include "history/HistoryDatabase.h"
#include "ipc/Commands.h"
#include "ipc/Messages.h"

namespace {

constexpr int kRecordsPerPass = 8;
constexpr std::uint32_t kRestAfterLockMs = 10000;  // a file that is locked for long is not tried every tick

}  // namespace

int CRuntimeData::Checkcache() {
    const CAppPath path(kHistoryFile);
    CDiagLine(__func__).Print("%s", path.c_str());
    CSqliteDb database;
    if (database.Open(path.c_str(), m_historyWait) != SQLITE_OK) return 0;
    CSqlText<128> sql;
    sql.Format("select * from tagYC where sendcount >= %d and sendcount < %d", kFirstPending, kGivenUp);
    const CSqlRows pending(database, sql.Text());
    if (!pending.Ok()) {
        CDiagLine(__func__).Print("sqlite3_get_table Fail:\n");
        return 0;
    }
    m_datacache = pending.Count();
    if (m_datacache == 0)
        CDiagLine(__func__).Print("cache data is empty!");
    else
        CDiagLine(__func__).Print("m_datacache:%d\n", m_datacache);
    return 0;
}

int CRuntimeData::ReadCacheYCdata(YcHistoryRecord* records, int& count) {
    if (records == nullptr || count <= 0) return 0;
    const int capacity = count;
    count = 0;
    CSqliteDb database;
    if (database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait) != SQLITE_OK) return 0;
    CDiagLine(__func__).Print("You have opened zorycdata.db successfully!---");
    const std::unique_ptr<SentRow[]> sent(new (std::nothrow) SentRow[static_cast<std::size_t>(capacity)]);
    const auto take = [&](int i, const SqlRow& row) {
        if (i >= capacity || sent == nullptr) return;
        sent[static_cast<std::size_t>(i)] = {ParseInt32(row.Cell(kHistoryId)),
                                             ParseInt32(row.Cell(kHistorySendCount))};
        FillRecord(records[i], HistoryCellsOf(row));
    };
    CSqlText<128> sql;
    sql.Format("SELECT * FROM tagYC where sendcount >=%d and sendcount < %d", kFirstPending, kGivenUp);
    const CSqlRows pending(database, sql.Text(), take);
    const char* error = sent == nullptr ? "out of memory" : pending.Ok() ? nullptr : pending.Error();
    if (error != nullptr) {
        CDiagLine(__func__).Print("search cache data failed:%s\n", error);
        std::fill_n(records, capacity, YcHistoryRecord{});  // of rows before the failure
    }
    if (error != nullptr || pending.Count() == 0) {
        CDiagLine(__func__).Print("get no data!");
        records[0].status = ERecordStatus::Missing;
        return 0;
    }
    count = std::min(pending.Count(), capacity);
    for (int i = 0; i < count; ++i) PrintRecord(records[i], __func__);
    CDiagLine(__func__).Print("get tagYC %d data!\n", count);
    RaiseSendCounts(database, sent.get(), count);
    return 0;
}

// A record counts as sent once it is read, whatever becomes of the message.
void CRuntimeData::RaiseSendCounts(CSqliteDb& database, const SentRow* rows, int count) {
    database.Exec("begin transaction");
    for (const SentRow* row = rows; row < rows + count; ++row) {
        CSqlText<128> sql;
        sql.Format("UPDATE tagYC SET sendcount=%d where id = %d", row->sendCount + 1, row->id);
        if (database.Exec(sql) != SQLITE_OK) {
            std::fprintf(stderr, "delete data failed: %s\n", database.Error());
            break;
        }
        CDiagLine("ReadCacheYCdata").Print("updates %d data OK!\n", row->id);
    }
    database.Exec("commit transaction");
}

int CRuntimeData::DealCacheData(const std::uint8_t* body, std::uint32_t port) {
    char hour[8];
    std::snprintf(hour, sizeof hour, "%02d", int{body[kAckHour]});
    CDiagLine(__func__).Print("str:%s state:%d\n", hour, m_datacache);
    // Only midnight records are resent, so only they are acknowledged.
    const int result = std::strcmp(hour, "00");
    if (result != 0) return result;
    if (body[kAckResult] == kAckAccepted) {
        char prefix[32];
        std::snprintf(prefix, sizeof prefix, "%02x%02x-%02x-%02x 00:", unsigned{body[kAckCentury]},
                      unsigned{body[kAckYear]}, unsigned{body[kAckMonth]}, unsigned{body[kAckDay]});
        CDiagLine(__func__).Print("delete str:%s\n", prefix);
        DeletCacheData(prefix, static_cast<int>(port));
    } else if (body[kAckResult] == kAckRejected) {
        m_datacache = 0;
    }
    return result;
}

int CRuntimeData::DeletCacheData(const char* prefix, int port) {
    const CAppPath path(kHistoryFile);
    CDiagLine(__func__).Print("%s", path.c_str());
    CSqliteDb database;
    if (database.Open(path.c_str(), m_historyWait) != SQLITE_OK) return 0;
    CDiagLine(__func__).Print("You have opened a sqlite3 database named zorycdata.db successfully!");
    CSqlText<128> sql;
    sql.Format("UPDATE tagYC SET sendcount = 0 where portNo='%d' and timestamp LIKE '%s%%'", port,
               sql.Quotable(prefix));
    if (const int result = database.Exec(sql); result != SQLITE_OK) {
        CDiagLine(__func__).Print("UPDATE data failed: %s\n", database.Error());
        return result;
    }
    sql.Format("select * from tagYC where portNo='%d' and sendcount >= %d and sendcount < %d", port,
               kFirstPending, kGivenUp);
    const CSqlRows pending(database, sql.Text());
    if (!pending.Ok()) {
        CDiagLine(__func__).Print("Delete data failed:%s", pending.Error());
        return pending.Result();
    }
    // Of this port only: what the others still have is counted at the next check.
    m_datacache = pending.Count();
    CDiagLine(__func__).Print("m_datacache:%d\n", m_datacache);
    return SQLITE_OK;
}

int CRuntimeData::History_A1_16() {
    if (m_resendRest > 0) --m_resendRest;
    if (m_sendflag != 1 || m_datacache < 1 || m_resendRest > 0 || HasWaited()) return 0;
    YcHistoryRecord records[kRecordsPerPass] = {};
    int count = kRecordsPerPass;
    ReadCacheYCdata(records, count);
    if (m_historyWait.IsSpent()) m_resendRest = static_cast<std::int32_t>(kRestAfterLockMs / m_tickPeriodMs);
    if (count == 0) return 0;
    const CDiagLine line(__func__);
    line.Print("_YCDB Count:%d\n", count);
    for (int i = 0; i < count; ++i) {
        const YcHistoryRecord& record = records[i];
        const auto port = static_cast<std::uint32_t>(record.portNo);
        line.Print("collecttime :%s\n", record.collecttime);
        RecordBody body{};
        std::uint32_t length = 0;
        BuildA1_16Record(body, length, port);
        PutStoredRecord(body, record);
        line.Print("tradenumber:%s\n", record.tradenumber);
        std::uint8_t trade[kTradeNumberSize] = {};
        StrToBcd(trade, sizeof trade, record.tradenumber);
        for (const std::uint8_t byte : trade) std::printf("%02x ", unsigned{byte});
        line.Print("fretime:%s\n", record.fretime);
        PostMsg(kCodeA1_16, body.data(), length);
        usleep(kPauseBetweenRecords);
    }
    m_datacache = 0;
    return 0;
}
