// Records that zor_main has not acknowledged yet: counted, read for resending, cleared.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "history/ChargingRecord.h"
#include "history/HistoryDatabase.h"

int CRuntimeData::Checkcache() {
    const CAppPath path(kHistoryFile);
    CDiagLine(__func__).Print("%s", path.c_str());
    CSqliteDb database;
    if (database.Open(path.c_str(), m_historyWait) != SQLITE_OK) return 0;
    const CSqliteTable table(database, "select * from tagYC where sendcount >= 1 and sendcount < 6");
    if (!table.Ok()) {
        CDiagLine(__func__).Print("sqlite3_get_table Fail:\n");
        return 0;
    }
    m_datacache = table.Rows();
    if (m_datacache == 0)
        CDiagLine(__func__).Print("cache data is empty!");
    else
        CDiagLine(__func__).Print("m_datacache:%d\n", m_datacache);
    return 0;
}

int CRuntimeData::ReadCacheYCdata(YcHistoryRecord* records, int& count) {
    if (records == nullptr || count == 0) return 0;
    const int capacity = count;
    count = 0;
    CSqliteDb database;
    if (database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait) != SQLITE_OK) return 0;
    CDiagLine(__func__).Print("You have opened zorycdata.db successfully!---");
    const CSqliteTable table(database, "SELECT * FROM tagYC where sendcount >=1 and sendcount < 6");
    if (!table.Ok()) CDiagLine(__func__).Print("search cache data failed:%s\n", table.Error());
    if (table.Rows() == 0) {
        CDiagLine(__func__).Print("get no data!");
        records[0].status = ERecordStatus::Missing;
        return 0;
    }
    count = std::min(table.Rows(), capacity);
    for (int i = 0; i < count; ++i) FillRecord(records[i], table, i, __func__);
    CDiagLine(__func__).Print("get tagYC %d data!\n", count);
    RaiseSendCounts(database, table, count);
    return 0;
}

// A record counts as sent once it is read, whatever becomes of the message.
void CRuntimeData::RaiseSendCounts(CSqliteDb& database, const CSqliteTable& table, int count) {
    database.Exec("begin transaction");
    for (int i = 0; i < count; ++i) {
        const std::int32_t id = ParseInt32(table.Cell(i, kHistoryId));
        CSqlText<128> sql;
        sql.Format("UPDATE tagYC SET sendcount=%d where id = %d",
                   ParseInt32(table.Cell(i, kHistorySendCount)) + 1, id);
        if (database.Exec(sql) != SQLITE_OK) {
            std::fprintf(stderr, "delete data failed: %s\n", database.Error());
            break;
        }
        CDiagLine("ReadCacheYCdata").Print("updates %d data OK!\n", id);
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
               sql.Quoted(prefix));
    if (const int result = database.Exec(sql); result != SQLITE_OK) {
        CDiagLine(__func__).Print("UPDATE data failed: %s\n", database.Error());
        return result;
    }
    sql.Format("select * from tagYC where portNo='%d' and sendcount >= 1 and sendcount < 6", port);
    const CSqliteTable table(database, sql);
    if (!table.Ok()) {
        CDiagLine(__func__).Print("Delete data failed:%s", table.Error());
        return table.Result();
    }
    // Of this port only: what the others still have is counted at the next check.
    m_datacache = table.Rows();
    CDiagLine(__func__).Print("m_datacache:%d\n", m_datacache);
    return SQLITE_OK;
}
