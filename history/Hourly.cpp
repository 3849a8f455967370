// The charging records of a full hour: written to the history, and posted live.
#include <cstdio>
#include <cstring>
#include <iterator>

#include "System/AppFiles.h"
#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "history/ChargingRecord.h"
#include "history/HistoryDatabase.h"
#include "ipc/Messages.h"
#include "points/ShmCtrl.h"

namespace {

constexpr char kOperation[] = "InsertYC";
using InsertSql = CSqlText<1024>;

// Of the twelve points that a record has slots for, the last two (charge count and charge time) are not read:
// their slots stay 0, and the first one is read for nothing. zor_main's side counts on it.
constexpr int kRecordPoints[] = {173, 192, 193, 194, 195, 153, 154, 156, 157, 158, 211, 212};
constexpr std::size_t kPointsRead = 10;
constexpr std::size_t kFreTimeSlot = 5;

// What one row is made of.
struct RowValues {
    long long slots[std::size(kRecordPoints)] = {};
    long long energy = 0;
    char fretime[31] = {};
    char tradenumber[2 * kTradeNumberSize + 1] = {};
    std::int32_t tradeelec = 0;
};

RowValues ReadRowValues(CShmCTRL& shm, int port) {
    const int base = PortBase(port);
    RowValues values;
    for (std::size_t i = 0; i < kPointsRead; ++i) {
        const LiveYc live = shm.Yc(base + kRecordPoints[i]);
        values.slots[i] = live.raw;
        if (i == kFreTimeSlot) std::memcpy(values.fretime, live.area, sizeof values.fretime - 1);
    }
    values.energy = static_cast<long long>(shm.Counter(CounterBase(port)));
    const LiveYc trade = shm.Yc(base + kYcTradeNumber);
    for (std::size_t i = 0; i < kTradeNumberSize; ++i)
        std::snprintf(values.tradenumber + 2 * i, 3, "%02x", unsigned{trade.area[i]});
    values.tradeelec = static_cast<std::int32_t>(shm.Yc(base + kYcTradeEnergy).raw);
    return values;
}

void ComplainOf(const CSqliteDb& database) {
    std::fprintf(stderr, "insert into zorycdata.db error!: %s\n", database.Error());
}

// Writes one record; a failure is printed and loses it.
int StoreRecord(CSqliteDb& database, const InsertSql& sql) {
    const int result = database.Exec(sql);
    if (result != SQLITE_OK) ComplainOf(database);
    return result;
}

// The records of one hour: all in one transaction, each by itself where that comes to nothing.
class CHourRecords {
  public:
    explicit CHourRecords(CSqliteDb& database) : m_database(database) { m_transaction.Begin(); }

    InsertSql& Of(int port) { return m_rows[port]; }
    // Writes the record of `port`; a failure is printed and loses it.
    void Store(int port) {
        if (m_transaction.HasDied()) return;  // it comes again, with all others
        const int result = m_database.Exec(Of(port));
        if (result == SQLITE_OK) m_lastRow = sqlite3_last_insert_rowid(m_database.Handle());
        if (result == SQLITE_OK || m_transaction.HasDied()) return;
        ComplainOf(m_database);
        m_lost[port] = true;
    }
    // Makes sure that they stand in the file.
    void Finish(const PortRange& ports, CBusyWait& wait) {
        if (!m_transaction.HasBegun() || Commit(wait)) return;
        for (int port = ports.first; port <= ports.last; ++port)
            if (!m_lost[port]) StoreRecord(m_database, Of(port));
    }

  private:
    bool Commit(CBusyWait& wait) {
        if (m_transaction.HasDied()) return false;
        if (m_transaction.Commit() == SQLITE_OK) return true;
        CSqlText<128> sql;
        sql.Format("SELECT rowid FROM tagYC WHERE rowid=%lld", static_cast<long long>(m_lastRow));
        return m_transaction.IsStoredAfterAll(CAppPath(kHistoryFile).c_str(), wait, sql);
    }

    CSqliteDb& m_database;
    CSqliteTransaction m_transaction{m_database};
    InsertSql m_rows[kPortSlots];
    bool m_lost[kPortSlots] = {};
    sqlite3_int64 m_lastRow = 0;  // rows count from 1
};

}  // namespace

void CRuntimeData::FormatRecord(CSqlTextBase& sql, std::uint32_t hour, std::uint32_t port) {
    const RowValues values = ReadRowValues(*m_shm, static_cast<int>(port));
    const long long* slot = values.slots;
    sql.Format(
        "INSERT INTO "
        "tagYC(portNo,sendcount,mvalue,mvalue_1,mvalue_2,mvalue_3,mvalue_4,fvalue,fvalue_1,fvalue_2,"
        "fvalue_3,fvalue_4,tradenumber,tradeelec,fretime,chargeCnt,chargeTime,dcK1Cnt,dcK2Cnt) "
        "values('%d','%d','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%lld','%s','%d','%"
        "s','%lld',"
        "'%lld','%d','%d')",
        static_cast<int>(port), hour == 0 ? kFirstPending : 0, values.energy, slot[1], slot[2], slot[3],
        slot[4], slot[5], slot[6], slot[7], slot[8], slot[9], values.tradenumber, values.tradeelec,
        sql.Quotable(values.fretime), slot[10], slot[11], k1Cnt[port], k2Cnt[port]);
}

std::int32_t CRuntimeData::InsertYC(std::uint32_t hour, std::uint32_t port) {
    InsertSql sql;
    FormatRecord(sql, hour, port);
    CSqliteDb database;
    if (const int result = database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait); result != SQLITE_OK)
        return result;
    CDiagLine(kOperation).Print("InsertYc You have opened zorycdata.db successfully!");
    CDiagLine(kOperation).Print("sqlcommand is %s\n", sql.Text());
    return StoreRecord(database, sql);
}

void CRuntimeData::RecordHour(std::uint32_t hour) {
    const PortRange ports = PortsOf(m_portCount);
    CSqliteDb database;
    const bool opened = database.Open(CAppPath(kHistoryFile).c_str(), m_historyWait) == SQLITE_OK;
    CHourRecords records(database);
    for (int i = ports.first; i <= ports.last; ++i) {
        const auto port = static_cast<std::uint32_t>(i);
        if (opened) {
            FormatRecord(records.Of(i), hour, port);
            CDiagLine(kOperation).Print("InsertYc You have opened zorycdata.db successfully!");
            CDiagLine(kOperation).Print("sqlcommand is %s\n", records.Of(i).Text());
            records.Store(i);
        } else if (i > ports.first) {
            InsertYC(hour, port);
        }
        if (m_sendflag == 1) Send_A1_16(port);
    }
    if (opened) records.Finish(ports, m_historyWait);
}

void CRuntimeData::Send_A1_16(std::uint32_t port) {
    RecordBody body{};
    std::uint32_t length = 0;
    BuildA1_16Record(body, length, port);
    CDiagLine(__func__).Dump("msgcode: 34520 data:", body.data(), length);
    PostMsg(kCodeA1_16, body.data(), length);
}
